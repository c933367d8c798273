// The buckets of a hashed table: the first node of each chain, and which chain a hash belongs to.
#ifndef ZRB_PLUGIN_KEYS_BUCKETS_H
#define ZRB_PLUGIN_KEYS_BUCKETS_H

#include <cstdint>
#include <memory>
#include <utility>

#include "keys/hints.h"
#include "keys/node_links.h"
#include "keys/remainder.h"

class Buckets {
 public:
  /// A bucket and the first node of its chain.
  struct Filled {
    std::uint32_t bucket;
    NodeLink head;
  };

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

  /// Gives these away and goes on with `count` empty ones; null, and nothing is changed, when there
  /// is no memory for that. O(count).
  std::unique_ptr<Buckets> exchange(std::uint32_t count);

  std::uint32_t count() const { return count_; }
  const NodeLink* begin() const { return heads_; }
  NodeLink& operator[](std::uint32_t bucket) { return heads_[bucket]; }

  /// The bucket that a hash belongs to.
  std::uint32_t of(std::uint32_t hash) const { return remainder_(hash); }

  /// The first of four buckets, from `bucket` on, that is not empty; the last one, if all are.
  /// Without a branch on them, since how many empty ones follow each other would be guessed wrong.
  ZRB_ALWAYS_INLINE Filled first_filled_of_four(std::uint32_t bucket) const {
    const NodeLink* const heads = heads_ + bucket;
    Filled filled = {bucket + 3, heads[3]};
    filled.bucket = choose(opaque(heads[2]) != no_node, bucket + 2, filled.bucket);
    filled.head = choose(heads[2] != no_node, heads[2], filled.head);
    filled.bucket = choose(opaque(heads[1]) != no_node, bucket + 1, filled.bucket);
    filled.head = choose(heads[1] != no_node, heads[1], filled.head);
    filled.bucket = choose(opaque(heads[0]) != no_node, bucket, filled.bucket);
    filled.head = choose(heads[0] != no_node, heads[0], filled.head);
    return filled;
  }

  /// Empties all of them. O(count).
  void forget_all();

 private:
  NodeLink* heads_;
  Remainder remainder_;
  std::uint32_t count_;
};

#endif
