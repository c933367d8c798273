// Ordered storage: unique keys in a red-black tree, visited in ascending order.
//
// Two keys are one when neither is less than the other. The order is the caller's; when it is not
// transitive (programs can mix keys that have no common order) searches may miss elements, but the
// tree stays sound and nothing is lost. Nodes come from a pool of the tree's own and never move.
//
// Exceptions. The order, the copying of a key and the destruction of an element may throw. The tree
// then stays valid, nothing is leaked, and the exception passes on: a search or insertion leaves
// the elements as they were; an element whose destruction throws is gone all the same, and a
// removal of several goes on to the end first.
#ifndef ZRB_PLUGIN_KEYS_ORDERED_STORAGE_H
#define ZRB_PLUGIN_KEYS_ORDERED_STORAGE_H

#include <cstdint>
#include <limits>
#include <type_traits>

#include "keys/entry.h"
#include "keys/finish.h"
#include "keys/node_pool.h"
#include "keys/red_black_tree.h"

/// `Less(a, b)` is stateless. `Value` is NoValue for a set. n is `size()`.
template <class Key, class Value, class Less>
class OrderedStorage {
  using NodeBase = red_black_tree::NodeBase;

 public:
  struct Node : NodeBase, Entry<Key, Value> {
    using Entry<Key, Value>::Entry;
  };

  /// An element, or the end, which is the tree's header. Valid as long as what it names is.
  struct Position {
    NodeBase* node = nullptr;

    bool is_end() const { return node->is_header(); }
    Entry<Key, Value>& entry() const { return *static_cast<Node*>(node); }
    bool operator==(const Position& other) const { return node == other.node; }
  };

  struct InsertResult {
    Entry<Key, Value>& entry;
    bool inserted;
  };

  OrderedStorage() = default;
  OrderedStorage(const OrderedStorage&) = delete;
  OrderedStorage& operator=(const OrderedStorage&) = delete;
  ~OrderedStorage() noexcept(false) { clear(); }

  std::uint32_t size() const { return size_; }
  bool empty() const { return size_ == 0; }

  /// How many elements of 32-bit words the host's address space could hold.
  static constexpr std::uint32_t max_size() {
    constexpr std::uint32_t words = std::is_same_v<Value, NoValue> ? 1 : 2;
    return std::numeric_limits<std::uint32_t>::max() / (words * 4);
  }

  /// The smallest element, or the end. O(1).
  Position begin() { return {header_.left}; }
  Position end() { return {&header_}; }

  /// Moves to the next larger element, from the largest to the end; stays at the end. O(log n).
  static void advance(Position& position) {
    if (!position.is_end()) position.node = red_black_tree::successor(position.node);
  }

  /// Moves to the next smaller element, from the end to the largest, from the smallest to the end.
  /// O(log n).
  static void retreat(Position& position) {
    position.node = red_black_tree::predecessor(position.node);
  }

  /// Calls `visit(entry)` for each element in order, until it returns false.
  template <class Visit>
  void for_each(Visit visit) {
    for (Position position = begin(); !position.is_end(); advance(position)) {
      if (!visit(position.entry())) return;
    }
  }

  /// The element with this key, or the end. O(log n).
  Position find(const Key& key) {
    const Position found = lower_bound(key);
    return found.is_end() || Less{}(key, found.entry().key) ? end() : found;
  }

  /// 1 when the key is there, else 0. O(log n).
  std::uint32_t count(const Key& key) { return find(key).is_end() ? 0 : 1; }

  /// The first element whose key is not less than `key`, or the end. O(log n).
  Position lower_bound(const Key& key) {
    return {lower_bound_below(header_.parent, &header_, key)};
  }

  /// The first element whose key is greater than `key`, or the end. O(log n).
  Position upper_bound(const Key& key) {
    return {upper_bound_below(header_.parent, &header_, key)};
  }

  /// The element with this key; if there is none, a new one with an empty value. O(log n).
  InsertResult insert_unique(const Key& key) {
    NodeBase* parent = &header_;
    bool as_left_child = true;
    for (NodeBase* node = header_.parent; node != nullptr;) {
      parent = node;
      as_left_child = Less{}(key, key_of(node));
      node = as_left_child ? node->left : node->right;
    }
    // Only the element before the place found can have the same key; the header stands for none.
    NodeBase* before = as_left_child ? red_black_tree::predecessor(parent) : parent;
    if (!before->is_header() && !Less{}(key_of(before), key))
      return {*static_cast<Node*>(before), false};
    Node* node = pool_.create(key);
    red_black_tree::insert(node, parent, as_left_child, header_);
    ++size_;
    return {*node, true};
  }

  /// Removes the elements with this key; the number removed, 0 or 1 in a consistent order. O(log
  /// n).
  std::uint32_t erase(const Key& key) {
    const auto [first, last] = equal_range(key);
    return erase(first, last);
  }

  /// Removes the element at `position`; at the end, nothing. O(log n).
  void erase(Position position) {
    if (!position.is_end()) remove(position.node);
  }

  /// Removes the elements from `first` up to but not including `last`; how many went. O(k log n)
  /// for k elements, O(n) for all of them.
  std::uint32_t erase(Position first, Position last) {
    std::uint32_t removed = 0;
    if (first == begin() && last.is_end()) {
      removed = size_;
      clear();
      return removed;
    }
    finish_despite_exceptions([&] {
      while (first != last && !first.is_end()) {
        NodeBase* node = first.node;
        advance(first);
        ++removed;
        remove(node);
      }
    });
    return removed;
  }

  /// Removes every element and gives their memory back. O(n).
  void clear() {
    NodeBase* rest = header_.parent;
    size_ = 0;
    header_.reset();
    // The tree is empty to whoever looks; `rest` is taken apart without rebalancing.
    finish_despite_exceptions([&] {
      while (rest != nullptr) destroy(red_black_tree::take_leaf(rest));
    });
    pool_.release_blocks();
  }

 private:
  struct Range {
    Position first, last;
  };

  static const Key& key_of(NodeBase* node) { return static_cast<Node*>(node)->key; }

  // The bounds within the subtree at `node`; `otherwise` when it has no such element.
  static NodeBase* lower_bound_below(NodeBase* node, NodeBase* otherwise, const Key& key) {
    while (node != nullptr) {
      if (Less{}(key_of(node), key)) {
        node = node->right;
      } else {
        otherwise = node;
        node = node->left;
      }
    }
    return otherwise;
  }

  static NodeBase* upper_bound_below(NodeBase* node, NodeBase* otherwise, const Key& key) {
    while (node != nullptr) {
      if (Less{}(key, key_of(node))) {
        otherwise = node;
        node = node->left;
      } else {
        node = node->right;
      }
    }
    return otherwise;
  }

  // Both bounds are sought below one element with the key, so that the first is never behind the
  // last, whatever the order says.
  Range equal_range(const Key& key) {
    NodeBase* larger = &header_;
    for (NodeBase* node = header_.parent; node != nullptr;) {
      if (Less{}(key_of(node), key)) {
        node = node->right;
      } else if (Less{}(key, key_of(node))) {
        larger = node;
        node = node->left;
      } else {
        return {{lower_bound_below(node->left, node, key)},
                {upper_bound_below(node->right, larger, key)}};
      }
    }
    return {{larger}, {larger}};
  }

  // Unlinks the node before its destruction, which may throw or call back.
  void remove(NodeBase* node) {
    red_black_tree::remove(node, header_);
    --size_;
    destroy(node);
  }

  void destroy(NodeBase* node) { pool_.destroy(static_cast<Node*>(node)); }

  NodePool<Node> pool_;
  red_black_tree::Header header_;
  std::uint32_t size_ = 0;
};

#endif
