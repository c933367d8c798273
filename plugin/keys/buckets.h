// The buckets of a hashed table: the first node of each chain, and which chain a hash belongs to.
#ifndef ZRB_PLUGIN_KEYS_BUCKETS_H
#define ZRB_PLUGIN_KEYS_BUCKETS_H

#include <cstdint>
#include <memory>
#include <utility>

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

  /// Gives these away and goes on with `count` empty ones; null, and nothing is changed, when there
  /// is no memory for that. O(count).
  std::unique_ptr<Buckets> exchange(std::uint32_t count);

  std::uint32_t count() const { return count_; }
  const NodeLink* begin() const { return heads_; }
  NodeLink& operator[](std::uint32_t bucket) { return heads_[bucket]; }

  /// The bucket that a hash belongs to.
  std::uint32_t of(std::uint32_t hash) const { return remainder_(hash); }

  /// Empties all of them. O(count).
  void forget_all();

 private:
  NodeLink* heads_;
  Remainder remainder_;
  std::uint32_t count_;
};

#endif
