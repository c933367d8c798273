// Red-black trees without elements: links, colours, stepping and rebalancing.
//
// Every node has a colour. The root is black, a red node has no red child, and each path from a
// node down to a missing child meets the same number of black nodes. So the longest path is at most
// twice as long as the shortest, and a tree of n nodes is at most 2 * log2(n + 1) deep.
//
// A header stands above the root: its parent is the root, its left and right are the smallest and
// the largest node. It is the end position; it has a colour of its own, so that a node can tell.
//
// What depends on elements (search, creation, destruction) is in ordered_storage.h.
//
// Source: T. H. Cormen, C. E. Leiserson, R. L. Rivest, C. Stein, "Introduction to Algorithms",
// chapter "Red-Black Trees".
#ifndef ZRB_PLUGIN_KEYS_RED_BLACK_TREE_H
#define ZRB_PLUGIN_KEYS_RED_BLACK_TREE_H

namespace red_black_tree {

enum class Colour : unsigned char { red, black, header };

struct NodeBase {
  NodeBase* parent = nullptr;
  NodeBase* left = nullptr;
  NodeBase* right = nullptr;
  Colour colour = Colour::red;

  bool is_header() const { return colour == Colour::header; }
};

/// The header of an empty tree.
struct Header : NodeBase {
  Header() { reset(); }
  Header(const Header&) = delete;
  Header& operator=(const Header&) = delete;

  /// Forgets all nodes.
  void reset() {
    colour = Colour::header;
    parent = nullptr;
    left = right = this;
  }
};

/// In-order neighbours. The successor of the largest node is the header, the predecessor of the
/// header the largest node, of the smallest node the header. O(log n), O(1) on average.
NodeBase* successor(NodeBase* node);
NodeBase* predecessor(NodeBase* node);

/// Links a new node as the left or right child of `parent`, a node that has no such child (or the
/// header of an empty tree), and rebalances. O(log n), O(1) amortised.
void insert(NodeBase* node, NodeBase* parent, bool as_left_child, NodeBase& header);

/// Unlinks a node and rebalances; all other nodes stay where they are in memory. O(log n), O(1)
/// amortised.
void remove(NodeBase* node, NodeBase& header);

/// Takes a tree apart: unlinks some leaf of what is left below and around `cursor`, first the root,
/// which moves on to the next place to look and is null when all is gone. O(1) amortised; neither
/// rebalances nor recurses.
NodeBase* take_leaf(NodeBase*& cursor);

}  // namespace red_black_tree

#endif
