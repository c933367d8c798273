#include "keys/red_black_tree.h"

#include <utility>

namespace red_black_tree {

namespace {

using Child = NodeBase* NodeBase::*;

constexpr Child opposite(Child side) {
  return side == &NodeBase::left ? &NodeBase::right : &NodeBase::left;
}

// A missing child counts as black.
bool is_black(const NodeBase* node) {
  return node == nullptr || node->colour == Colour::black;
}

NodeBase* outermost(NodeBase* node, Child side) {
  while (node->*side != nullptr) node = node->*side;
  return node;
}

NodeBase* step(NodeBase* node, Child forwards) {
  const Child backwards = opposite(forwards);
  if (node->*forwards != nullptr) return outermost(node->*forwards, backwards);
  NodeBase* parent = node->parent;
  while (!parent->is_header() && node == parent->*forwards) {
    node = parent;
    parent = node->parent;
  }
  return parent;
}

// The analyzer cannot know that the black heights give every node below a sibling where one is
// looked for, nor that only nodes with two children are asked for an heir.
// NOLINTBEGIN(clang-analyzer-core.NullDereference)

// Makes `replacement`, which may be null, the child that `node` was to its parent.
void replace_child(NodeBase* node, NodeBase* replacement, NodeBase& header) {
  NodeBase* parent = node->parent;
  if (parent->is_header()) {
    header.parent = replacement;
  } else if (parent->left == node) {
    parent->left = replacement;
  } else {
    parent->right = replacement;
  }
  if (replacement != nullptr) replacement->parent = parent;
}

// Lets the child on the other side rise; `node` becomes its child on `side`.
void rotate(NodeBase* node, Child side, NodeBase& header) {
  const Child other = opposite(side);
  NodeBase* riser = node->*other;
  replace_child(node, riser, header);
  node->*other = riser->*side;
  if (node->*other != nullptr) (node->*other)->parent = node;
  riser->*side = node;
  node->parent = riser;
}

// A red node may have a red parent: recolours upwards, and ends with at most two rotations.
void repair_red_child(NodeBase* node, NodeBase& header) {
  while (!node->parent->is_header() && node->parent->colour == Colour::red) {
    NodeBase* parent = node->parent;
    NodeBase* grandparent = parent->parent;
    const Child side = parent == grandparent->left ? &NodeBase::left : &NodeBase::right;
    NodeBase* uncle = grandparent->*opposite(side);
    if (!is_black(uncle)) {
      parent->colour = uncle->colour = Colour::black;
      grandparent->colour = Colour::red;
      node = grandparent;
      continue;
    }
    if (node == parent->*opposite(side)) {
      rotate(parent, side, header);
      std::swap(node, parent);
    }
    parent->colour = Colour::black;
    grandparent->colour = Colour::red;
    rotate(grandparent, opposite(side), header);
  }
  header.parent->colour = Colour::black;
}

// The paths through `node`, which may be null, lack one black node: recolours upwards, and ends
// with at most three rotations.
void repair_missing_black(NodeBase* node, NodeBase* parent, NodeBase& header) {
  while (!parent->is_header() && is_black(node)) {
    const Child side = node == parent->left ? &NodeBase::left : &NodeBase::right;
    const Child other = opposite(side);
    NodeBase* sibling = parent->*other;
    if (!is_black(sibling)) {
      sibling->colour = Colour::black;
      parent->colour = Colour::red;
      rotate(parent, side, header);
      sibling = parent->*other;
    }
    if (is_black(sibling->left) && is_black(sibling->right)) {
      sibling->colour = Colour::red;
      node = parent;
      parent = node->parent;
      continue;
    }
    if (is_black(sibling->*other)) {
      (sibling->*side)->colour = Colour::black;
      sibling->colour = Colour::red;
      rotate(sibling, other, header);
      sibling = parent->*other;
    }
    sibling->colour = parent->colour;
    parent->colour = Colour::black;
    (sibling->*other)->colour = Colour::black;
    rotate(parent, side, header);
    break;
  }
  if (node != nullptr) node->colour = Colour::black;
}

}  // namespace

NodeBase* successor(NodeBase* node) {
  return step(node, &NodeBase::right);
}

NodeBase* predecessor(NodeBase* node) {
  return node->is_header() ? node->right : step(node, &NodeBase::left);
}

void insert(NodeBase* node, NodeBase* parent, bool as_left_child, NodeBase& header) {
  node->parent = parent;
  node->left = node->right = nullptr;
  node->colour = Colour::red;
  if (parent->is_header()) {
    header.parent = header.left = header.right = node;
  } else if (as_left_child) {
    parent->left = node;
    if (parent == header.left) header.left = node;
  } else {
    parent->right = node;
    if (parent == header.right) header.right = node;
  }
  repair_red_child(node, header);
}

void remove(NodeBase* node, NodeBase& header) {
  if (node == header.left) header.left = successor(node);
  if (node == header.right) header.right = predecessor(node);

  Colour removed_colour = node->colour;
  NodeBase* moved_up;         // takes the place that loses a node; may be null
  NodeBase* moved_up_parent;  // so its parent is kept apart
  if (node->left == nullptr || node->right == nullptr) {
    moved_up = node->left != nullptr ? node->left : node->right;
    moved_up_parent = node->parent;
    replace_child(node, moved_up, header);
  } else {
    // The successor, which has no left child, takes over the node's place and colour.
    NodeBase* heir = outermost(node->right, &NodeBase::left);
    removed_colour = heir->colour;
    moved_up = heir->right;
    moved_up_parent = heir;
    if (heir->parent != node) {
      moved_up_parent = heir->parent;
      replace_child(heir, moved_up, header);
      heir->right = node->right;
      heir->right->parent = heir;
    }
    replace_child(node, heir, header);
    heir->left = node->left;
    heir->left->parent = heir;
    heir->colour = node->colour;
  }
  if (removed_colour == Colour::black) repair_missing_black(moved_up, moved_up_parent, header);
}

// NOLINTEND(clang-analyzer-core.NullDereference)

NodeBase* take_leaf(NodeBase*& cursor) {
  NodeBase* leaf = cursor;
  while (leaf->left != nullptr || leaf->right != nullptr) {
    leaf = leaf->left != nullptr ? leaf->left : leaf->right;
  }
  NodeBase* parent = leaf->parent;
  if (parent->is_header()) {
    cursor = nullptr;
  } else {
    (parent->left == leaf ? parent->left : parent->right) = nullptr;
    cursor = parent;
  }
  return leaf;
}

}  // namespace red_black_tree
