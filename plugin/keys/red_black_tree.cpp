#include "keys/red_black_tree.h"

#include <utility>

NodeLink RedBlackTree::link_of(const TreeLinks* node) const {
  if (node == &header_) return no_node;
  const NodeLink parent = node->parent();
  if (parent == no_node) return root();
  const TreeLinks& links = at(parent);
  return &at(links.left) == node ? links.left : links.right;
}

template <RedBlackTree::Child Forwards, RedBlackTree::Child Backwards>
TreeLinks* RedBlackTree::step(TreeLinks* node) const {
  if (node->*Forwards != no_node) {
    TreeLinks* found = &at(node->*Forwards);
    while (found->*Backwards != no_node) found = &at(found->*Backwards);
    return found;
  }
  // Up, to the first node that is reached from the side it is not to be left on.
  NodeLink link = node->parent();
  TreeLinks* above = &at(link);
  if (link == no_node || &at(above->*Forwards) != node) return above;
  for (;;) {
    const NodeLink below = link;
    link = above->parent();
    above = &at(link);
    if (link == no_node || above->*Forwards != below) return above;
  }
}

TreeLinks* RedBlackTree::successor(TreeLinks* node) const {
  return step<&TreeLinks::right, &TreeLinks::left>(node);
}

TreeLinks* RedBlackTree::predecessor(TreeLinks* node) const {
  if (node == &header_) return &at(largest());
  return step<&TreeLinks::left, &TreeLinks::right>(node);
}

// Makes `replacement`, which may be missing, the child that `node` was to its parent.
void RedBlackTree::replace_child(NodeLink node, NodeLink replacement) {
  const NodeLink parent = at(node).parent();
  if (parent == no_node) {
    header_.parent_and_colour = replacement;
  } else {
    TreeLinks& above = at(parent);
    (above.left == node ? above.left : above.right) = replacement;
  }
  if (replacement != no_node) at(replacement).set_parent(parent);
}

// Lets the child on the other side rise; `node` becomes its child on `side`.
void RedBlackTree::rotate(NodeLink node, Child side) {
  const Child other = opposite(side);
  TreeLinks& sinker = at(node);
  const NodeLink riser_link = sinker.*other;
  TreeLinks& riser = at(riser_link);
  replace_child(node, riser_link);
  const NodeLink inner = riser.*side;
  sinker.*other = inner;
  if (inner != no_node) at(inner).set_parent(node);
  riser.*side = node;
  sinker.set_parent(riser_link);
}

// A red node may have a red parent: recolours upwards, and ends with at most two rotations.
void RedBlackTree::repair_red_child(NodeLink node) {
  for (;;) {
    NodeLink parent = at(node).parent();
    if (!is_red(parent)) break;  // a black node, or the header
    const NodeLink grandparent = at(parent).parent();
    TreeLinks& top = at(grandparent);
    const Child side = parent == top.left ? &TreeLinks::left : &TreeLinks::right;
    const NodeLink uncle = top.*opposite(side);
    if (is_red(uncle)) {
      at(parent).make_black();
      at(uncle).make_black();
      top.make_red();
      node = grandparent;
      continue;
    }
    if (node == at(parent).*opposite(side)) {
      rotate(parent, side);
      std::swap(node, parent);
    }
    at(parent).make_black();
    top.make_red();
    rotate(grandparent, opposite(side));
    break;
  }
  at(root()).make_black();
}

// The paths through `node`, which may be missing, lack one black node: recolours upwards, and ends
// with at most three rotations.
void RedBlackTree::repair_missing_black(NodeLink node, NodeLink parent) {
  while (parent != no_node && !is_red(node)) {
    TreeLinks& above = at(parent);
    const Child side = node == above.left ? &TreeLinks::left : &TreeLinks::right;
    const Child other = opposite(side);
    NodeLink sibling = above.*other;
    if (is_red(sibling)) {
      at(sibling).make_black();
      above.make_red();
      rotate(parent, side);
      sibling = above.*other;
    }
    if (!is_red(at(sibling).left) && !is_red(at(sibling).right)) {
      at(sibling).make_red();
      node = parent;
      parent = above.parent();
      continue;
    }
    if (!is_red(at(sibling).*other)) {
      at(at(sibling).*side).make_black();
      at(sibling).make_red();
      rotate(sibling, other);
      sibling = above.*other;
    }
    TreeLinks& risen = at(sibling);
    above.is_red() ? risen.make_red() : risen.make_black();
    above.make_black();
    at(risen.*other).make_black();
    rotate(parent, side);
    break;
  }
  if (node != no_node) at(node).make_black();
}

void RedBlackTree::insert(NodeLink node, NodeLink parent, bool as_left_child) {
  TreeLinks& links = at(node);
  links.left = links.right = no_node;
  links.parent_and_colour = parent;
  if (parent == no_node) {
    header_.parent_and_colour = header_.left = header_.right = node;
    return;  // the root, which is black
  }
  links.make_red();
  TreeLinks& above = at(parent);
  if (as_left_child) {
    above.left = node;
    if (parent == header_.left) header_.left = node;
  } else {
    above.right = node;
    if (parent == header_.right) header_.right = node;
  }
  repair_red_child(node);
}

void RedBlackTree::remove(NodeLink node) {
  TreeLinks& links = at(node);
  if (node == header_.left) header_.left = link_of(successor(&links));
  if (node == header_.right) header_.right = link_of(predecessor(&links));

  bool removed_red = links.is_red();
  NodeLink moved_up;         // takes the place that loses a node; may be missing
  NodeLink moved_up_parent;  // so its parent is kept apart
  if (links.left == no_node || links.right == no_node) {
    moved_up = links.left != no_node ? links.left : links.right;
    moved_up_parent = links.parent();
    replace_child(node, moved_up);
  } else {
    // The successor, which has no left child, takes over the node's place and colour.
    NodeLink heir = links.right;
    while (at(heir).left != no_node) heir = at(heir).left;
    TreeLinks& heir_links = at(heir);
    removed_red = heir_links.is_red();
    moved_up = heir_links.right;
    moved_up_parent = heir;
    if (heir != links.right) {
      moved_up_parent = heir_links.parent();
      replace_child(heir, moved_up);
      heir_links.right = links.right;
      at(heir_links.right).set_parent(heir);
    }
    replace_child(node, heir);
    heir_links.left = links.left;
    at(heir_links.left).set_parent(heir);
    links.is_red() ? heir_links.make_red() : heir_links.make_black();
  }
  if (!removed_red) repair_missing_black(moved_up, moved_up_parent);
}

NodeLink RedBlackTree::take_leaf(NodeLink& cursor) const {
  NodeLink leaf = cursor;
  while (at(leaf).left != no_node || at(leaf).right != no_node) {
    leaf = at(leaf).left != no_node ? at(leaf).left : at(leaf).right;
  }
  const NodeLink parent = at(leaf).parent();
  if (parent != no_node) {
    TreeLinks& above = at(parent);
    (above.left == leaf ? above.left : above.right) = no_node;
  }
  cursor = parent;
  return leaf;
}

void RedBlackTree::copy_from(const RedBlackTree& other) {
  memory_.copy_from(other.memory_);
  header_ = other.header_;
}
