#include "keys/red_black_tree.h"

#include <initializer_list>
#include <new>

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
  header_->parent_and_colour = header_->left = header_->right = nil_;
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
    for (const NodeLink child : {node.left, node.right}) {
      prefetch(&at(child));
      nodes[count] = child;
      count += child != nil_ ? 1U : 0U;
    }
  }
}

// Whoever steps will step on: asks for the nodes that lie ahead, below those that come next.
template <RedBlackTree::Child Forwards, RedBlackTree::Child Backwards>
TreeLinks* RedBlackTree::step(TreeLinks* node) const {
  if (node->*Forwards != nil_) {
    TreeLinks* found = &at(node->*Forwards);
    int levels = 0;
    while (found->*Backwards != nil_) {
      prefetch(&at(found->*Forwards));
      found = &at(found->*Backwards);
      ++levels;
    }
    prefetch(&at(found->*Forwards));
    if (levels >= group_levels && memory_.bytes() >= cached_bytes) [[unlikely]]
      prefetch_group(*found);
    return found;
  }
  // Up, to the first node that is reached from the side it is not to be left on.
  NodeLink link = node->parent();
  TreeLinks* above = &at(link);
  if (link != nil_ && &at(above->*Forwards) == node) {
    NodeLink below;
    do {
      below = link;
      link = above->parent();
      above = &at(link);
    } while (link != nil_ && above->*Forwards == below);
  }
  prefetch(&at(at(above->*Forwards).*Backwards));
  return above;
}

TreeLinks* RedBlackTree::successor(TreeLinks* node) const {
  return step<&TreeLinks::right, &TreeLinks::left>(node);
}

TreeLinks* RedBlackTree::predecessor(TreeLinks* node) const {
  if (node == header_) return &at(largest());
  return step<&TreeLinks::left, &TreeLinks::right>(node);
}

// Makes `replacement` the child that `node` was to its parent.
void RedBlackTree::replace_in_parent(NodeLink parent, NodeLink node, NodeLink replacement) {
  if (parent == nil_) {
    header_->parent_and_colour = replacement;
  } else {
    TreeLinks& above = at(parent);
    (above.left == node ? above.left : above.right) = replacement;
  }
}

void RedBlackTree::replace_child(NodeLink node, NodeLink replacement) {
  const NodeLink parent = at(node).parent();
  replace_in_parent(parent, node, replacement);
  if (replacement != nil_) at(replacement).set_parent(parent);
}

// Lets the child on the other side rise; `node` becomes its child on `side`. Gives the riser.
template <RedBlackTree::Child side, RedBlackTree::Child other>
NodeLink RedBlackTree::rotate(NodeLink node) {
  TreeLinks& sinker = at(node);
  const NodeLink riser_link = sinker.*other;
  TreeLinks& riser = at(riser_link);
  const NodeLink parent = sinker.parent();
  const NodeLink inner = riser.*side;
  sinker.*other = inner;
  if (inner != nil_) at(inner).set_parent(node);
  riser.*side = node;
  riser.set_parent(parent);
  sinker.set_parent(riser_link);
  replace_in_parent(parent, node, riser_link);
  return riser_link;
}

// The red node `node` has a red parent, which is the child on `side` of `grandparent`, and a black
// uncle: ends that with at most two rotations.
template <RedBlackTree::Child side, RedBlackTree::Child other>
void RedBlackTree::rotate_red_child_up(NodeLink node, NodeLink parent, NodeLink grandparent) {
  if (node == at(parent).*other) parent = rotate<side, other>(parent);
  at(parent).make_black();
  at(grandparent).make_red();
  rotate<other, side>(grandparent);
}

// A red node may have a red parent: recolours upwards, then rotates.
void RedBlackTree::repair_red_child(NodeLink node, NodeLink parent) {
  for (;;) {
    TreeLinks& above = at(parent);
    if (!above.is_red()) break;  // a black node, or the header
    const NodeLink grandparent = above.parent();
    TreeLinks& top = at(grandparent);
    const bool parent_is_left = parent == top.left;
    TreeLinks& uncle = at(parent_is_left ? top.right : top.left);
    if (!uncle.is_red()) {
      if (parent_is_left) {
        rotate_red_child_up<&TreeLinks::left, &TreeLinks::right>(node, parent, grandparent);
      } else {
        rotate_red_child_up<&TreeLinks::right, &TreeLinks::left>(node, parent, grandparent);
      }
      return;  // the node on top is black
    }
    above.make_black();
    uncle.make_black();
    node = grandparent;
    parent = top.parent();
    if (parent == nil_) break;  // the root stays black
    top.make_red();
  }
}

// The paths through `node`, the child on `side` of `parent` and perhaps missing, lack one black
// node: ends that with at most three rotations, or tells that the same now holds for `parent`.
template <RedBlackTree::Child side, RedBlackTree::Child other>
bool RedBlackTree::gain_black(NodeLink parent) {
  TreeLinks& above = at(parent);
  NodeLink sibling = above.*other;
  if (at(sibling).is_red()) {
    at(sibling).make_black();
    above.make_red();
    rotate<side, other>(parent);
    sibling = above.*other;
  }
  if (!is_red(at(sibling).left) && !is_red(at(sibling).right)) {
    at(sibling).make_red();
    return false;
  }
  if (!is_red(at(sibling).*other)) sibling = rotate<other, side>(sibling);
  TreeLinks& risen = at(sibling);
  above.is_red() ? risen.make_red() : risen.make_black();
  above.make_black();
  at(risen.*other).make_black();
  rotate<side, other>(parent);
  return true;
}

void RedBlackTree::repair_missing_black(NodeLink node, NodeLink parent) {
  while (parent != nil_ && !is_red(node)) {
    const bool done = node == at(parent).left
                          ? gain_black<&TreeLinks::left, &TreeLinks::right>(parent)
                          : gain_black<&TreeLinks::right, &TreeLinks::left>(parent);
    if (done) return;
    node = parent;
    parent = at(node).parent();
  }
  if (node != nil_) at(node).make_black();
}

void RedBlackTree::insert(NodeLink node, NodeLink parent, bool as_left_child) {
  TreeLinks& links = at(node);
  links.left = links.right = nil_;
  links.parent_and_colour = parent;
  if (parent == nil_) {
    header_->parent_and_colour = header_->left = header_->right = node;
    return;  // the root, which is black
  }
  links.make_red();
  TreeLinks& above = at(parent);
  if (as_left_child) {
    above.left = node;
    if (parent == header_->left) header_->left = node;
  } else {
    above.right = node;
    if (parent == header_->right) header_->right = node;
  }
  repair_red_child(node, parent);
}

void RedBlackTree::remove(NodeLink node) {
  TreeLinks& links = at(node);
  if (node == header_->left) header_->left = link_to(successor(&links));
  if (node == header_->right) header_->right = link_to(predecessor(&links));

  bool removed_red = links.is_red();
  NodeLink moved_up;         // takes the place that loses a node; may be missing
  NodeLink moved_up_parent;  // so its parent is kept apart
  if (links.left == nil_ || links.right == nil_) {
    moved_up = links.left != nil_ ? links.left : links.right;
    moved_up_parent = links.parent();
    replace_child(node, moved_up);
  } else {
    // The successor, which has no left child, takes over the node's place and colour.
    NodeLink heir = links.right;
    while (at(heir).left != nil_) heir = at(heir).left;
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
  int levels = 0;
  while (at(leaf).left != nil_ || at(leaf).right != nil_) {
    leaf = at(leaf).left != nil_ ? at(leaf).left : at(leaf).right;
    ++levels;
  }
  if (levels >= group_levels && memory_.bytes() >= cached_bytes) prefetch_group(at(leaf));
  const NodeLink parent = at(leaf).parent();
  if (parent != nil_) {
    TreeLinks& above = at(parent);
    (above.left == leaf ? above.left : above.right) = nil_;
  }
  cursor = parent;
  return leaf;
}
