// Searches in a tree, for keys that ask nobody when they are compared.
//
// They turn without branches on the way down: a wrongly guessed turn at every second node costs
// more than loading both children. Only the end, at an equal key or a missing child, is a branch.
#ifndef ZRB_PLUGIN_KEYS_PLAIN_DESCENT_H
#define ZRB_PLUGIN_KEYS_PLAIN_DESCENT_H

#include "keys/hints.h"
#include "keys/red_black_tree.h"

/// Which child it is to be, so that compilers do not make a branch of it: both were loaded.
ZRB_ALWAYS_INLINE NodeLink turn(bool to_the_left, NodeLink left, NodeLink right) {
  return choose(to_the_left, opaque(left), opaque(right));
}

/// `Element` begins with TreeLinks. A search begins at `root`, a child or none. O(log n).
template <class Element, class Less>
class PlainDescent {
  using Key = decltype(Element::key);

 public:
  /// The node with this key; `nil` when there is none. Its loop must not lie across two lines of
  /// the code: the processor then does not look ahead to the next search, of which a large tree
  /// takes twice as long.
  ZRB_CODE_LINE static NodeLink find(NodeLink root, NodeLink nil, Key key) noexcept {
    const MembersOnTheWay at;
    for (NodeLink node = root; is_child(node);) {
      const Key stored = at.keys[node];
      if (key == stored) return node;
      node = turn(Less{}(key, stored), at.lefts[node], at.rights[node]);
    }
    return nil;
  }

  /// Where the key is, or else where it belongs.
  static TreePlace find_place(NodeLink root, NodeLink nil, const Key& key) {
    const MembersOnTheWay at;
    NodeLink parent = nil;
    for (NodeLink node = root; is_child(node);) {
      const Key stored = at.keys[node];
      if (key == stored) return {node, nil, left_side};
      parent = node;
      node = turn(Less{}(key, stored), at.lefts[node], at.rights[node]);
    }
    if (parent == nil) return {no_node, nil, left_side};
    return {no_node, parent, Less{}(key, at.keys[parent]) ? left_side : right_side};
  }

 private:
  // What is loaded of each node.
  struct MembersOnTheWay {
    struct KeyOf {
      const Key& operator()(const Element& node) const { return node.key; }
    };
    template <TreeSide side>
    struct ChildOf {
      const NodeLink& operator()(const Element& node) const { return node.child[side]; }
    };

    MemberOfNodes<Element, KeyOf> keys;
    MemberOfNodes<Element, ChildOf<left_side>> lefts;
    MemberOfNodes<Element, ChildOf<right_side>> rights;
  };
};

#endif
