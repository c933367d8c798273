// The buckets of a hashed table: the first node of each chain, and which chain a hash belongs to.
#ifndef ZRB_PLUGIN_KEYS_BUCKETS_H
#define ZRB_PLUGIN_KEYS_BUCKETS_H

#include <bit>
#include <cstdint>
#include <utility>

#include "keys/hints.h"
#include "keys/node_links.h"
#include "keys/remainder.h"

class Buckets {
 public:
  /// `count` of them, at least 2, all empty. std::bad_alloc when there is no memory, or the host's
  /// own address space could not hold them. O(count).
  explicit Buckets(std::uint32_t count);
  Buckets(const Buckets&) = delete;
  Buckets& operator=(const Buckets&) = delete;
  ~Buckets();

  void swap(Buckets& other) noexcept {
    std::swap(heads_, other.heads_);
    std::swap(remainder_, other.remainder_);
    std::swap(count_, other.count_);
  }

  std::uint32_t count() const { return count_; }
  const NodeLink* begin() const { return heads_; }
  NodeLink& operator[](std::uint32_t bucket) { return heads_[bucket]; }

  /// The bucket that a hash belongs to.
  std::uint32_t of(std::uint32_t hash) const { return remainder_(hash); }

  /// The first bucket from `bucket` on that is not empty; `count()` when there is none. Looks at
  /// four at once: how many empty ones follow each other would be guessed wrong. O(buckets passed).
  ZRB_ALWAYS_INLINE std::uint32_t first_filled(std::uint32_t bucket) const {
    for (; bucket + 4 <= count_; bucket += 4) {
      const NodeLink* const heads = heads_ + bucket;
      const std::uint32_t filled =
          std::uint32_t{heads[0] != no_node} | std::uint32_t{heads[1] != no_node} << 1 |
          std::uint32_t{heads[2] != no_node} << 2 | std::uint32_t{heads[3] != no_node} << 3;
      if (filled != 0) return bucket + static_cast<std::uint32_t>(std::countr_zero(filled));
    }
    while (bucket < count_ && heads_[bucket] == no_node) ++bucket;
    return bucket;
  }

  /// Empties all of them. O(count).
  void forget_all();

 private:
  NodeLink* heads_;
  Remainder remainder_;
  std::uint32_t count_;
};

#endif
