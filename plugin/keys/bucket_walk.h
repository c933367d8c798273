// A walk through all chains of a bucket array, in order, a few dozen nodes at a time.
//
// Where a chain ends, and how many empty buckets follow, nobody can guess: a loop over chains loses
// two dozen cycles at about every node to a wrong guess, and more when the link that would tell is
// not in the cache. So a walk first gathers the links of the next nodes without a branch on them,
// and whoever walks then goes through a plain array. Links that lead nowhere are written too, and
// overwritten by the next. Only the third node of a chain takes a branch, and few chains have one.
#ifndef ZRB_PLUGIN_KEYS_BUCKET_WALK_H
#define ZRB_PLUGIN_KEYS_BUCKET_WALK_H

#include <cstdint>
#include <span>

#include "keys/hints.h"
#include "keys/node_links.h"

/// `Element` has a `next` link. Nodes that were gathered may be changed; neither buckets nor nodes
/// that are still to come may.
template <class Element>
class BucketWalk {
 public:
  /// The most nodes that are gathered at once.
  static constexpr std::uint32_t capacity = 64;

  /// `is_large`: whether the nodes do not fit the cache and are worth a prefetch.
  BucketWalk(const NodeLink* heads, std::uint32_t bucket_count, bool is_large)
      : next_(heads), end_(heads + bucket_count), is_large_(is_large) {}

  /// Goes on to the next nodes; false when there are none. O(buckets passed). Not inline: a call is
  /// nothing beside the nodes, and every kind of walk would have a copy.
  [[gnu::noinline]] bool gather() {
    std::uint32_t count = 0;
    for (;;) {
      for (; rest_ != no_node && count < capacity; rest_ = readable(rest_).next) {
        links_[count++] = rest_;
      }
      if (count > capacity - 2 || next_ == end_) break;
      if (is_large_) prefetch_ahead(next_, static_cast<std::uint32_t>(end_ - next_));
      const NodeLink first = *next_++;
      links_[count] = first;
      count += first != no_node ? 1U : 0U;
      const NodeLink second = readable(first).next;
      links_[count] = second;
      count += second != no_node ? 1U : 0U;
      rest_ = readable(second).next;
    }
    count_ = count;
    return count != 0;
  }

  /// The nodes at which the walk is, in order.
  std::span<const NodeLink> gathered() const { return {links_, count_}; }

  /// At a bucket, with `left` from there on: asks for the first node of a chain four dozen buckets
  /// ahead, and for the second one when the first has come; the same for what they hold.
  ZRB_ALWAYS_INLINE static void prefetch_ahead(const NodeLink* bucket, std::uint32_t left) {
    if (left <= buckets_ahead) return;
    prefetch(readable_node_at(bucket[buckets_ahead]));
    const Element& first = readable(bucket[buckets_ahead / 2]);
    prefetch(readable_node_at(first.next));
    prefetch_content(first);
    prefetch_content(readable(readable(bucket[buckets_ahead / 4]).next));
  }

 private:
  static constexpr std::uint32_t buckets_ahead = 48;

  static const Element& readable(NodeLink link) {
    return *static_cast<const Element*>(readable_node_at(link));
  }

  const NodeLink* next_;
  const NodeLink* end_;
  NodeLink rest_ = no_node;  // of the chain of the last bucket
  std::uint32_t count_ = 0;
  bool is_large_;
  NodeLink links_[capacity];
};

#endif
