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

/// What the nodes of a chain begin with.
struct ChainLink {
  NodeLink next = no_node;
};

/// Nodes that were gathered may be changed; neither buckets nor nodes that are still to come may.
class BucketWalk {
 public:
  /// Through no buckets.
  BucketWalk() = default;

  /// Through the nodes from `rest` on, the end of the chain before, and through those of all
  /// buckets. `is_large`: whether the nodes do not fit the cache and are worth a prefetch.
  BucketWalk(const NodeLink* heads, std::uint32_t bucket_count, NodeLink rest, bool is_large)
      : next_(heads), end_(heads + bucket_count), rest_(rest), is_large_(is_large) {}

  /// Writes the links of the next nodes, at most `capacity`, which is at least 2; how many. 0 when
  /// there are no more. O(buckets passed).
  std::uint32_t gather(NodeLink* links, std::uint32_t capacity);

 private:
  static const ChainLink& readable(NodeLink link) {
    return *static_cast<const ChainLink*>(readable_node_at(link));
  }

  const NodeLink* next_ = nullptr;
  const NodeLink* end_ = nullptr;
  NodeLink rest_ = no_node;  // of the chain of the last bucket
  bool is_large_ = false;
};

/// Asks the processor to load what nodes of the type Element refer to.
template <class Element>
ZRB_ALWAYS_INLINE void prefetch_contents(std::span<const NodeLink> nodes) {
  for (const NodeLink node : nodes) prefetch_content(*static_cast<Element*>(node_at(node)));
}

/// A walk that keeps what it gathers. `Element` derives from ChainLink.
template <class Element>
class ElementWalk {
 public:
  /// The most nodes that are gathered at once.
  static constexpr std::uint32_t capacity = 64;

  /// See BucketWalk.
  ElementWalk(const NodeLink* heads, std::uint32_t bucket_count, bool is_large)
      : walk_(heads, bucket_count, no_node, is_large), is_large_(is_large) {}

  /// Goes on to the next nodes; false when there are none. O(buckets passed). Not inline: a call is
  /// nothing beside the nodes, and every kind of walk would have a copy.
  [[gnu::noinline]] bool gather() {
    count_ = walk_.gather(links_, capacity);
    if (is_large_) prefetch_contents<Element>(gathered());
    return count_ != 0;
  }

  /// The nodes at which the walk is, in order.
  std::span<const NodeLink> gathered() const { return {links_, count_}; }

 private:
  BucketWalk walk_;
  std::uint32_t count_ = 0;
  bool is_large_;
  NodeLink links_[capacity];
};

#endif
