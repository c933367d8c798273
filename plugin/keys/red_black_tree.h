// Red-black trees without elements: links, colours, stepping and rebalancing.
//
// Every node has a colour. The root is black, a red node has no red child, and each path from a
// node down to a missing child meets the same number of black nodes. So the longest path is at most
// twice as long as the shortest, and a tree of n nodes is at most 2 * log2(n + 1) deep.
//
// Layout. A node's links are three 32-bit words (node_links.h): its children, and its parent with
// the colour in the lowest bit, which no link uses. A map from integers to integers so takes 20
// bytes a node.
//
// A header stands above the root, under the link `nil()`: its parent is the root, its left and
// right are the smallest and the largest node. It is the end position, it is black, and all three
// lead back to it in an empty tree. So a missing child counts as black without a test for it.
//
// What depends on elements (search, creation, destruction) is in ordered_storage.h.
//
// Source: T. H. Cormen, C. E. Leiserson, R. L. Rivest, C. Stein, "Introduction to Algorithms",
// chapter "Red-Black Trees".
#ifndef ZRB_PLUGIN_KEYS_RED_BLACK_TREE_H
#define ZRB_PLUGIN_KEYS_RED_BLACK_TREE_H

#include <cstddef>
#include <cstdint>
#include <new>

#include "keys/hints.h"
#include "keys/node_memory.h"

struct TreeLinks {
  static constexpr NodeLink colour_bit = 1;

  NodeLink parent_and_colour = no_node;
  NodeLink left = no_node;
  NodeLink right = no_node;

  NodeLink parent() const { return parent_and_colour & ~colour_bit; }
  bool is_red() const { return (parent_and_colour & colour_bit) != 0; }

  void set_parent(NodeLink parent) {
    parent_and_colour = parent | (parent_and_colour & colour_bit);
  }
  void make_red() { parent_and_colour |= colour_bit; }
  void make_black() { parent_and_colour &= ~colour_bit; }
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

  /// The link that leads to the header, and stands for a missing child.
  NodeLink nil() const { return nil_; }

  /// The node that a link leads to.
  static TreeLinks& at(NodeLink link) { return *static_cast<TreeLinks*>(node_at(link)); }
  NodeLink root() const { return header_->parent_and_colour; }
  NodeLink smallest() const { return header_->left; }
  NodeLink largest() const { return header_->right; }

  /// In-order neighbours. The successor of the largest node is the header, the predecessor of the
  /// header the largest node, of the smallest node the header. O(log n), O(1) on average.
  TreeLinks* successor(TreeLinks* node) const;
  TreeLinks* predecessor(TreeLinks* node) const;

  /// Links a new node as the left or right child of `parent`, a node that has no such child (or
  /// `nil()` in an empty tree), and rebalances. O(log n), O(1) amortised.
  void insert(NodeLink node, NodeLink parent, bool as_left_child);

  /// Unlinks a node and rebalances; all other nodes stay where they are in memory. O(log n), O(1)
  /// amortised.
  void remove(NodeLink node);

  /// Forgets all nodes; their memory stays in use.
  void forget_all();

  /// Takes a tree apart that was forgotten: unlinks some leaf of what is left below and around
  /// `cursor`, first the former root, which moves on to the next place to look and is `nil()`
  /// when all is gone. O(1) amortised; neither rebalances nor recurses.
  NodeLink take_leaf(NodeLink& cursor) const;

  /// Takes on copies of the nodes of `other`, which are of the type Node, into this empty tree.
  /// Without memory for them it stays empty: std::bad_alloc. O(n).
  template <class Node>
  void copy_from(const RedBlackTree& other);

 private:
  using Child = NodeLink TreeLinks::*;

  // A group is a subtree whose first node lies so many levels below its top: some hundred nodes.
  static constexpr int group_levels = 6;
  static constexpr std::uint32_t largest_group = 256;
  static constexpr std::size_t cached_bytes = std::size_t{1} << 20;  // fewer need no such prefetch

  static bool is_red(NodeLink node) { return at(node).is_red(); }

  template <Child side>
  NodeLink outermost(NodeLink node) const;
  void prefetch_group(const TreeLinks& outermost) const;
  template <Child Forwards, Child Backwards>
  TreeLinks* step(TreeLinks* node) const;
  void replace_in_parent(NodeLink parent, NodeLink node, NodeLink replacement);
  void replace_child(NodeLink node, NodeLink replacement);
  template <Child side, Child other>
  NodeLink rotate(NodeLink node);
  template <Child side, Child other>
  void rotate_red_child_up(NodeLink node, NodeLink parent, NodeLink grandparent);
  void repair_red_child(NodeLink node, NodeLink parent);
  template <Child side, Child other>
  bool gain_black(NodeLink parent);
  void repair_missing_black(NodeLink node, NodeLink parent);

  TreeLinks* header_;
  NodeLink nil_;
  ContentPrefetch prefetch_content_;
  NodeMemory memory_;
};

// Copies level by level: a copy links to the originals of its children until its turn comes to get
// copies of them. So the copies are the queue of what is left to do, and many originals are loaded
// at once, since where the next ones lie is known long before.
//
// Source: C. J. Cheney, "A nonrecursive list compacting algorithm", Communications of the ACM 13
// (1970).
template <class Node>
void RedBlackTree::copy_from(const RedBlackTree& other) {
  memory_.release_all();
  if (other.root() == other.nil_) return;
  const NodeLink nil = nil_;
  const NodeLink nil_of_other = other.nil_;
  try {
    NodeMemory::Run room = memory_.untouched();
    const auto replace_by_copy = [&](NodeLink& link, NodeLink parent) {
      if (link == nil_of_other) {
        link = nil;
        return;
      }
      if (room.next == room.end) [[unlikely]]
        memory_.allocate_all(room);
      auto* const copy = new (room.next) Node(static_cast<const Node&>(at(link)));
      copy->parent_and_colour = parent | (copy->parent_and_colour & TreeLinks::colour_bit);
      link = link_to(copy);
      room.next += sizeof(Node);
    };
    // The header begins as a node whose left child is the root.
    *header_ = {no_node, other.root(), nil_of_other};
    NodeMemory::Sequence copies(memory_);
    for (NodeLink copy = nil;; copy = copies.next()) {
      replace_by_copy(at(copy).left, copy);
      replace_by_copy(at(copy).right, copy);
      if (copies.is_at(room.next)) break;
    }
    memory_.allocate_until(room.next);
    header_->parent_and_colour = header_->left;
  } catch (...) {
    forget_all();
    memory_.release_all();
    throw;
  }
  header_->left = outermost<&TreeLinks::left>(root());
  header_->right = outermost<&TreeLinks::right>(root());
}

template <RedBlackTree::Child side>
NodeLink RedBlackTree::outermost(NodeLink node) const {
  while (at(node).*side != nil_) node = at(node).*side;
  return node;
}

#endif
