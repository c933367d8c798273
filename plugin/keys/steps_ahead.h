// The elements that the next steps of an iteration will come to.
//
// A program goes through a container step by step, and each step would have to find out where the
// chain ends and which bucket comes next, which nobody can guess. So the second of two steps one
// after the other goes some steps ahead at once, by a walk, and the next steps only read what that
// has gathered. Whatever changes the table has it forgotten.
#ifndef ZRB_PLUGIN_KEYS_STEPS_AHEAD_H
#define ZRB_PLUGIN_KEYS_STEPS_AHEAD_H

#include <cstdint>
#include <span>

#include "keys/bucket_walk.h"
#include "keys/hints.h"
#include "keys/node_links.h"

/// One for each table: of two iterations at once, only one goes ahead at a time.
class StepsAhead {
 public:
  StepsAhead() { way_[nowhere] = way_[nowhere + 1] = no_node; }

  /// The node that is known to come after this one, to which a step goes; null when none is known.
  /// O(1).
  ZRB_ALWAYS_INLINE void* after(const void* node) {
    const NodeLink next = way_[at_ + 1];
    if (!is_at(node) || next == no_node) return nullptr;
    ++at_;
    return node_at(next);
  }

  /// Whether the last step came to this node.
  bool is_at(const void* node) const { return node_at(way_[at_]) == node; }

  /// A step has come to a node, behind which the walk goes on.
  void start(NodeLink node, const BucketWalk& walk);

  /// Goes ahead from where the last step came to, when nothing more is known; null at the end.
  /// O(buckets passed).
  void* go_on();

  /// The nodes that were gathered when it last went on.
  std::span<const NodeLink> gathered() const { return {way_ + first, count_}; }

  void forget() noexcept { at_ = nowhere; }

 private:
  static constexpr std::uint32_t capacity = 16;
  // Places on the way: the first one stands for none, and leads to no node.
  static constexpr std::uint32_t nowhere = 0;
  static constexpr std::uint32_t first = 1;

  std::uint32_t at_ = nowhere;          // where the last step came to
  std::uint32_t count_ = 0;             // of the nodes that were gathered
  NodeLink way_[first + capacity + 1];  // these nodes, and `no_node` behind them
  BucketWalk walk_;
};

#endif
