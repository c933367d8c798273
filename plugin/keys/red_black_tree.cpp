#include "keys/red_black_tree.h"

#include <new>
#include <utility>

#include "keys/hints.h"
#include "keys/node_blocks.h"

RedBlackTree::RedBlackTree(std::uint32_t node_size, ContentPrefetch prefetch_content)
    : header_(new (allocate_node_block(smallest_node_block)) TreeLinks),
      nil_(link_to(header_)),
      prefetch_content_(prefetch_content),
      memory_(node_size) {
  forget_all();
}

RedBlackTree::~RedBlackTree() {
  release_node_block(reinterpret_cast<std::byte*>(header_), smallest_node_block);
}

void RedBlackTree::forget_all() {
  *header_ = {no_child(), {nil_, nil_}};
}

// Asks for the nodes of the subtree that a walk has just come to, and for what they hold, level by
// level: so that many cache misses are under way at once, where a step waits for one after the
// other. `outermost` is the first of these nodes. Compilers keep the call, since it calls a
// function that they do not know.
ZRB_PROTECT_STACK [[gnu::noinline]] void RedBlackTree::prefetch_group(
    const TreeLinks& outermost) const {
  NodeLink top = outermost.parent();
  for (int level = 1; level < group_levels; ++level) top = at(top).parent();
  NodeLink nodes[largest_group];
  nodes[0] = top;
  std::uint32_t count = 1;
  for (std::uint32_t i = 0; i < count && count <= largest_group - 2; ++i) {
    const TreeLinks& node = at(nodes[i]);
    if (prefetch_content_ != nullptr) prefetch_content_(node);
    for (const NodeLink child : node.child) {
      prefetch(node_at(child));
      nodes[count] = child;
      count += is_child(child) ? 1U : 0U;
    }
  }
}

// The outermost node of a subtree. Whoever steps will step on: asks for the nodes that lie ahead.
TreeLinks* RedBlackTree::step_down(NodeLink subtree, TreeSide side) const {
  TreeLinks* found = &at(subtree);
  int levels = 0;
  for (;; ++levels) {
    prefetch(node_at(found->child[opposite(side)]));
    const NodeLink below = found->child[side];
    if (!is_child(below)) break;
    found = &at(below);
  }
  if (levels >= group_levels && memory_.bytes() >= cached_bytes) [[unlikely]]
    prefetch_group(*found);
  return found;
}

TreeLinks* RedBlackTree::successor(TreeLinks* node) const {
  return is_child(node->right()) ? step_down(node->right(), left_side) : near_successor(node);
}

TreeLinks* RedBlackTree::predecessor(TreeLinks* node) const {
  if (node == header_) return &at(largest());
  if (is_child(node->left())) return step_down(node->left(), right_side);
  NodeLink below = link_to(node);
  NodeLink above = node->parent();
  while (above != nil_ && at(above).left() == below)
    below = std::exchange(above, at(above).parent());
  return &at(above);
}

NodeLink RedBlackTree::outermost(NodeLink node, TreeSide side) const {
  while (is_child(at(node).child[side])) node = at(node).child[side];
  return node;
}

bool RedBlackTree::is_red(NodeLink node) {
  return is_child(node) && at(node).is_red();
}

// Which child of `parent`, a node, `node` is. No branch is to come of it, which would be guessed
// wrong every other time.
TreeSide RedBlackTree::side_of(NodeLink node, NodeLink parent) {
  return static_cast<TreeSide>(at(parent).right() == node);
}

// Makes `replacement`, a child or none, what `node` was to its parent.
void RedBlackTree::replace_in_parent(NodeLink parent, NodeLink node, NodeLink replacement) {
  if (parent == nil_) {
    header_->parent_and_colour = replacement;
  } else {
    at(parent).child[side_of(node, parent)] = replacement;
  }
}

// Lets the child on the other side rise; `node` becomes its child on `side`. Gives the riser.
NodeLink RedBlackTree::rotate(NodeLink node, TreeSide side) {
  TreeLinks& sinker = at(node);
  const NodeLink riser_link = sinker.child[opposite(side)];
  TreeLinks& riser = at(riser_link);
  const NodeLink parent = sinker.parent();
  const NodeLink inner = riser.child[side];
  if (is_child(inner)) {
    sinker.child[opposite(side)] = inner;
    at(inner).set_parent(node);
  } else {
    sinker.child[opposite(side)] = thread_to(riser_link);  // on the left any marked link will do
  }
  riser.child[side] = node;
  riser.set_parent(parent);
  sinker.set_parent(riser_link);
  replace_in_parent(parent, node, riser_link);
  return riser_link;
}

// A red node may have a red parent: recolours upwards, then ends that with at most two rotations.
void RedBlackTree::repair_red_child(NodeLink node, NodeLink parent) {
  for (;;) {
    TreeLinks& above = at(parent);
    if (!above.is_red()) break;
    const NodeLink grandparent = above.parent();
    TreeLinks& top = at(grandparent);
    const TreeSide side = side_of(parent, grandparent);
    const NodeLink uncle = top.child[opposite(side)];
    if (!is_red(uncle)) {
      if (node == above.child[opposite(side)]) parent = rotate(parent, side);
      at(parent).make_black();
      top.make_red();
      rotate(grandparent, opposite(side));
      return;  // the node on top is black
    }
    above.make_black();
    at(uncle).make_black();
    node = grandparent;
    parent = top.parent();
    if (parent == nil_) break;  // the root stays black
    top.make_red();
  }
}

// The paths through the child on `side` of `parent`, black and perhaps missing, lack one black
// node: ends that with at most three rotations, or tells that the same now holds for `parent`.
bool RedBlackTree::gain_black(NodeLink parent, TreeSide side) {
  const TreeSide other = opposite(side);
  TreeLinks& above = at(parent);
  NodeLink sibling = above.child[other];
  if (at(sibling).is_red()) {
    at(sibling).make_black();
    above.make_red();
    rotate(parent, side);
    sibling = above.child[other];
  }
  if (!is_red(at(sibling).left()) && !is_red(at(sibling).right())) {
    at(sibling).make_red();
    return false;
  }
  if (!is_red(at(sibling).child[other])) sibling = rotate(sibling, other);
  TreeLinks& risen = at(sibling);
  risen.set_colour_of(above);
  above.make_black();
  at(risen.child[other]).make_black();
  rotate(parent, side);
  return true;
}

// The paths through the child on `side` of `parent` lack one black node. `parent` is `nil()` when
// that is the root.
void RedBlackTree::repair_missing_black(NodeLink parent, TreeSide side) {
  while (parent != nil_) {
    const NodeLink node = at(parent).child[side];
    if (is_red(node)) return at(node).make_black();
    if (gain_black(parent, side)) return;
    const NodeLink above = at(parent).parent();
    side = side_of(parent, above);
    parent = above;
  }
  if (is_child(root())) at(root()).make_black();
}

void RedBlackTree::insert(NodeLink node, NodeLink parent, TreeSide side) {
  TreeLinks& links = at(node);
  if (parent == nil_) {
    links = {nil_, {no_child(), thread_to(nil_)}};
    *header_ = {node, {node, node}};
    return;  // the root, which is black
  }
  TreeLinks& above = at(parent);
  links.parent_and_colour = parent | TreeLinks::colour_bit;
  links.child[left_side] = no_child();
  links.child[right_side] = choose(side == left_side, thread_to(parent), above.right());
  above.child[side] = node;
  if (parent == header_->child[side]) header_->child[side] = node;
  repair_red_child(node, parent);
}

// A node with both children and its predecessor, which has no right one, change places and colours.
// The threads stay right but for the one to a left child's successor, which is about to be set.
void RedBlackTree::exchange_with_predecessor(NodeLink node) {
  TreeLinks& links = at(node);
  const NodeLink heir = outermost(links.left(), right_side);
  TreeLinks& heir_links = at(heir);
  const TreeLinks place = heir_links;
  heir_links.parent_and_colour = links.parent_and_colour;
  replace_in_parent(links.parent(), node, heir);
  heir_links.child[right_side] = links.right();
  at(links.right()).set_parent(heir);
  links.parent_and_colour = place.parent_and_colour;
  if (place.parent() == node) {
    heir_links.child[left_side] = node;
    links.set_parent(heir);
  } else {
    heir_links.child[left_side] = links.left();
    at(links.left()).set_parent(heir);
    at(place.parent()).child[right_side] = node;
  }
  links.child[left_side] = place.left();
  links.child[right_side] = thread_to(heir);
}

void RedBlackTree::remove(NodeLink node) {
  TreeLinks& links = at(node);
  if (node == smallest()) header_->child[left_side] = link_to(successor(&links));
  if (node == largest()) header_->child[right_side] = link_to(predecessor(&links));
  if (is_child(links.left()) && is_child(links.right())) exchange_with_predecessor(node);

  const NodeLink parent = links.parent();
  const TreeSide side = side_of(node, parent);
  NodeLink moved_up = links.right();  // a child, or the thread
  if (is_child(links.left())) {
    moved_up = links.left();  // red, so it has no children, and its successor was the node
    at(moved_up).child[right_side] = links.right();
  }
  if (is_child(moved_up)) at(moved_up).set_parent(parent);
  replace_in_parent(parent, node, moved_up);
  if (!links.is_red()) repair_missing_black(parent, side);
}

NodeLink RedBlackTree::take_leaf(NodeLink& cursor) const {
  NodeLink leaf = cursor;
  int levels = 0;
  for (;; ++levels) {
    const TreeLinks& links = at(leaf);
    if (is_child(links.left())) {
      leaf = links.left();
    } else if (is_child(links.right())) {
      leaf = links.right();
    } else {
      break;
    }
  }
  if (levels >= group_levels && memory_.bytes() >= cached_bytes) prefetch_group(at(leaf));
  const NodeLink parent = at(leaf).parent();
  if (parent == nil_) {
    cursor = no_child();
  } else {
    at(parent).child[side_of(leaf, parent)] = no_child();
    cursor = parent;
  }
  return leaf;
}
