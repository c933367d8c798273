// Red-black trees without elements: links, colours, stepping and rebalancing.
//
// Every node has a colour. The root is black, a red node has no red child, and each path from a
// node down to a missing child meets the same number of black nodes. So the longest path is at most
// twice as long as the shortest, and a tree of n nodes is at most 2 * log2(n + 1) deep.
//
// Layout. A node's links are three 32-bit words (node_links.h): its parent with the colour in the
// lowest bit, which no link uses, and its children. A map from integers to integers so takes 20
// bytes a node.
//
// Threads. Half of the nodes have no right child. In its place they hold a link to their successor,
// marked by the lowest bit: a step to it takes one load, where the way up the tree would take as
// many as it has levels, and as many guesses. A missing left child is marked alike; its link leads
// nowhere that anybody asks for.
//
// A header stands above the root, under the link `nil()`: its parent is the root, its left and
// right are the smallest and the largest node. It is the end position, and the largest node's
// thread leads to it. In an empty tree its left and right are itself, and its parent is marked as
// missing.
//
// What depends on elements (search, creation, destruction) is in ordered_storage.h.
//
// Sources: T. H. Cormen, C. E. Leiserson, R. L. Rivest, C. Stein, "Introduction to Algorithms",
// chapter "Red-Black Trees"; for threads, D. E. Knuth, "The Art of Computer Programming", volume 1,
// section 2.3.1 (right-threaded trees).
#ifndef ZRB_PLUGIN_KEYS_RED_BLACK_TREE_H
#define ZRB_PLUGIN_KEYS_RED_BLACK_TREE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include "keys/hints.h"
#include "keys/node_memory.h"

enum TreeSide : std::uint32_t { left_side, right_side };

inline TreeSide opposite(TreeSide side) {
  return side == left_side ? right_side : left_side;
}

struct TreeLinks {
  static constexpr NodeLink colour_bit = 1;
  static constexpr NodeLink no_child_bit = 1;

  NodeLink parent_and_colour = no_node;
  NodeLink child[2] = {no_node, no_node};  // by side

  NodeLink parent() const { return parent_and_colour & ~colour_bit; }
  NodeLink left() const { return child[left_side]; }
  NodeLink right() const { return child[right_side]; }
  bool is_red() const { return (parent_and_colour & colour_bit) != 0; }

  void set_parent(NodeLink parent) {
    parent_and_colour = parent | (parent_and_colour & colour_bit);
  }
  void set_colour_of(const TreeLinks& other) {
    parent_and_colour = parent() | (other.parent_and_colour & colour_bit);
  }
  void make_red() { parent_and_colour |= colour_bit; }
  void make_black() { parent_and_colour &= ~colour_bit; }
};

/// Whether a link leads to a child, or to a root.
inline bool is_child(NodeLink link) {
  return (link & TreeLinks::no_child_bit) == 0;
}

/// In place of a right child that is missing: leads to the successor.
inline NodeLink thread_to(NodeLink successor) {
  return successor | TreeLinks::no_child_bit;
}

/// Where an element is, or else where it belongs.
struct TreePlace {
  NodeLink present;  // `no_node` when it is not there
  NodeLink parent;
  TreeSide side;
};

/// The tree and the memory of its nodes, each of which begins with its links.
class RedBlackTree {
 public:
  /// Asks the processor to load what a node refers to, other than nodes.
  using ContentPrefetch = void (*)(const TreeLinks& node);

  /// `node_size`: bytes, a multiple of 4. `prefetch_content` is null when nodes refer to nothing.
  /// std::bad_alloc when there is no memory for the header.
  RedBlackTree(std::uint32_t node_size, ContentPrefetch prefetch_content);
  RedBlackTree(const RedBlackTree&) = delete;
  RedBlackTree& operator=(const RedBlackTree&) = delete;
  ~RedBlackTree();

  NodeMemory& memory() { return memory_; }
  TreeLinks* header() const { return header_; }

  /// The link that leads to the header.
  NodeLink nil() const { return nil_; }

  /// The node that a link leads to.
  static TreeLinks& at(NodeLink link) { return *static_cast<TreeLinks*>(node_at(link)); }

  /// No child when the tree is empty.
  NodeLink root() const { return header_->parent_and_colour; }

  /// `nil()` when the tree is empty.
  NodeLink smallest() const { return header_->left(); }
  NodeLink largest() const { return header_->right(); }

  /// In-order neighbours. The successor of the largest node is the header, the predecessor of the
  /// header the largest node, of the smallest node the header. O(log n), O(1) on average. The
  /// header has no successor.
  TreeLinks* successor(TreeLinks* node) const;
  TreeLinks* predecessor(TreeLinks* node) const;

  /// The successor in a tree that the cache holds: asks for nothing ahead. In line, since a call
  /// takes as long as the step.
  ZRB_ALWAYS_INLINE static TreeLinks* near_successor(const TreeLinks* node) {
    NodeLink link = node->right();
    if (!is_child(link)) return &at(link & ~TreeLinks::no_child_bit);
    for (NodeLink left; left = at(link).left(), is_child(left);) link = left;
    return &at(link);
  }

  /// Links a new node as the child on `side` of `parent`, a node that has no such child (or `nil()`
  /// in an empty tree), and rebalances. O(log n), O(1) amortised.
  void insert(NodeLink node, NodeLink parent, TreeSide side);

  /// Unlinks a node and rebalances; all other nodes stay where they are in memory. A step from the
  /// removed node, which must not happen, still leads to a neighbour instead of round and round.
  /// O(log n), O(1) amortised.
  void remove(NodeLink node);

  /// Forgets all nodes; their memory stays in use.
  void forget_all();

  /// Takes a tree apart that was forgotten: unlinks some leaf of what is left below and around
  /// `cursor`, first the former root, which moves on to the next place to look and is no child
  /// when all is gone. O(1) amortised; neither rebalances nor recurses.
  NodeLink take_leaf(NodeLink& cursor) const;

  /// Takes on copies of all nodes of `other`, which are `count` of the type Node, into this empty
  /// tree. Without memory for them it stays empty: std::bad_alloc. O(n).
  template <class Node>
  void copy_from(const RedBlackTree& other, std::uint32_t count);

 private:
  // A group is a subtree whose first node lies so many levels below its top: some hundred nodes.
  static constexpr int group_levels = 6;
  static constexpr std::uint32_t largest_group = 256;
  static constexpr std::size_t cached_bytes = std::size_t{1} << 20;  // fewer need no such prefetch

  NodeLink no_child() const { return thread_to(nil_); }
  static bool is_red(NodeLink node);
  static TreeSide side_of(NodeLink node, NodeLink parent);

  NodeLink outermost(NodeLink node, TreeSide side) const;
  TreeLinks* step_down(NodeLink subtree, TreeSide side) const;
  void prefetch_group(const TreeLinks& outermost) const;
  void replace_in_parent(NodeLink parent, NodeLink node, NodeLink replacement);
  NodeLink rotate(NodeLink node, TreeSide side);
  void repair_red_child(NodeLink node, NodeLink parent);
  bool gain_black(NodeLink parent, TreeSide side);
  void repair_missing_black(NodeLink parent, TreeSide side);
  void exchange_with_predecessor(NodeLink node);

  TreeLinks* header_;
  NodeLink nil_;
  ContentPrefetch prefetch_content_;
  NodeMemory memory_;
};

// Copies level by level: a copy links to the originals of its children until its turn comes to get
// copies of them. So the copies are the queue of what is left to do, and many originals are loaded
// at once, since where the next ones lie is known long before. Beside that queue stands one of the
// bounds, the next larger nodes outside the subtrees: the threads of those without a right child.
//
// Source: C. J. Cheney, "A nonrecursive list compacting algorithm", Communications of the ACM 13
// (1970).
template <class Node>
void RedBlackTree::copy_from(const RedBlackTree& other, std::uint32_t count) {
  memory_.release_all();
  if (!is_child(other.root())) return;
  const NodeLink nil = nil_;
  try {
    const auto bounds = std::make_unique_for_overwrite<NodeLink[]>(count);
    NodeLink* newest_bound = bounds.get();
    NodeMemory::Run room = memory_.untouched();
    const auto replace_by_copy = [&](NodeLink& link, NodeLink parent, NodeLink bound) {
      if (!is_child(link)) {
        link = thread_to(bound);
        return;
      }
      if (room.next == room.end) [[unlikely]]
        memory_.allocate_all(room);
      auto* const copy = new (room.next) Node(static_cast<const Node&>(at(link)));
      copy->parent_and_colour = parent | (copy->parent_and_colour & TreeLinks::colour_bit);
      link = link_to(copy);
      *newest_bound++ = bound;
      room.next += sizeof(Node);
    };
    // The header begins as a node whose left child is the root.
    *header_ = {no_node, {other.root(), no_child()}};
    const NodeLink* bound = &nil;
    NodeMemory::Sequence copies(memory_);
    for (NodeLink copy = nil;; copy = copies.next()) {
      replace_by_copy(at(copy).child[left_side], copy, copy);
      replace_by_copy(at(copy).child[right_side], copy, *bound);
      if (copies.is_at(room.next)) break;
      bound = bound == &nil ? bounds.get() : bound + 1;
    }
    memory_.allocate_until(room.next);
    header_->parent_and_colour = header_->left();
  } catch (...) {
    forget_all();
    memory_.release_all();
    throw;
  }
  header_->child[left_side] = outermost(root(), left_side);
  header_->child[right_side] = outermost(root(), right_side);
}

#endif
