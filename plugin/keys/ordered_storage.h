// Ordered storage: unique keys in a red-black tree, visited in ascending order.
//
// Two keys are one when neither is less than the other. The order is the caller's; when it is not
// transitive (programs can mix keys that have no common order) searches may miss elements, but the
// tree stays sound and nothing is lost. Nodes never move.
//
// Speed. A node of a map from integers to integers has 20 bytes (red_black_tree.h), so that more of
// a large tree is in the cache. A search turns without branches on the way down (plain_descent.h).
// An ascending key is compared with the largest one first and then needs no way down at all. A step
// goes down, or follows a thread, and never goes up (red_black_tree.h). A copy of plain elements
// takes over the tree's shape, without a comparison, level by level. A walk through a large tree
// asks for some hundred nodes at once (red_black_tree.cpp), and so does the destruction of elements
// that hold something.
//
// Where a comparison asks the host, none is made whose outcome is known (comparisons.h): in a
// search that has found its key, in a run of ascending keys, in a copy. The locks that it would
// leave are left all the same. What the next comparison will touch, on either side, is asked for
// while one is made.
//
// Exceptions. The order, the copying of a key and the destruction of an element may throw, unless
// they are declared noexcept. The tree then stays valid, nothing is leaked, and the exception
// passes on: a search or insertion leaves the elements as they were; an element whose destruction
// throws is gone all the same, and a removal of several goes on to the end first.
//
// Reentrancy. Each of these calls may change the tree itself, see in_use.h: a search that finds the
// tree changed under it begins again, and removals unlink all nodes before they destroy any.
#ifndef ZRB_PLUGIN_KEYS_ORDERED_STORAGE_H
#define ZRB_PLUGIN_KEYS_ORDERED_STORAGE_H

#include <cstdint>
#include <limits>
#include <type_traits>

#include "keys/comparisons.h"
#include "keys/entry.h"
#include "keys/entry_nodes.h"
#include "keys/finish.h"
#include "keys/hints.h"
#include "keys/in_use.h"
#include "keys/node_removal.h"
#include "keys/plain_descent.h"
#include "keys/red_black_tree.h"

/// `Less(a, b)` is stateless. Where an operation takes a `Probe`, that is a Key or derived from one
/// (a key prepared for a search), and Less takes it on either side. `Value` is NoValue for a set. n
/// is `size()`.
template <class Key, class Value, class Less>
class OrderedStorage : public Usable, private NodeRemoval<OrderedStorage<Key, Value, Less>> {
 public:
  using Element = Entry<TreeLinks, Key, Value>;

  /// An element, or the end, which is the tree's header. Valid as long as what it names is.
  struct Position {
    TreeLinks* node = nullptr;
    OrderedStorage* tree = nullptr;

    bool is_end() const { return node == tree->tree_.header(); }
    Element& entry() const { return *static_cast<Element*>(node); }
    bool operator==(const Position& other) const { return node == other.node; }
    OrderedStorage& storage() const { return *tree; }
  };

  struct InsertResult {
    Element& entry;
    bool inserted;
  };

  /// Whether searching for keys calls nobody who could throw or change the tree.
  static constexpr bool plain_keys = std::is_nothrow_invocable_v<Less, const Key&, const Key&> &&
                                     std::is_trivially_copyable_v<Key>;
  /// Whether nothing that is done to elements does.
  static constexpr bool plain_elements = plain_keys && std::is_trivially_copyable_v<Value>;

  /// What whoever calls an operation holds meanwhile: one on a key, or one on elements.
  using KeyUse = std::conditional_t<plain_keys, NotInUse, InUse<OrderedStorage>>;
  using ElementUse = std::conditional_t<plain_elements, NotInUse, InUse<OrderedStorage>>;

  OrderedStorage() = default;
  OrderedStorage(const OrderedStorage&) = delete;
  OrderedStorage& operator=(const OrderedStorage&) = delete;
  ~OrderedStorage() noexcept(plain_elements) {
    if constexpr (!plain_elements) clear();
  }

  std::uint32_t size() const { return size_; }
  bool empty() const { return size_ == 0; }

  /// How many elements of 32-bit words the host's address space could hold.
  static constexpr std::uint32_t max_size() {
    constexpr std::uint32_t words = std::is_same_v<Value, NoValue> ? 1 : 2;
    return std::numeric_limits<std::uint32_t>::max() / (words * 4);
  }

  /// The smallest element, or the end. O(1).
  Position begin() noexcept { return position(tree_.smallest()); }
  Position end() noexcept { return position(nil()); }

  /// Moves to the next larger element, from the largest to the end; stays at the end. O(log n).
  static void advance(Position& position) {
    if (position.is_end()) return;
    OrderedStorage& storage = *position.tree;
    position.node = storage.size_ < cached_steps ? RedBlackTree::near_successor(position.node)
                                                 : storage.tree_.successor(position.node);
  }

  /// Moves to the next smaller element, from the end to the largest, from the smallest to the end.
  /// O(log n).
  static void retreat(Position& position) {
    position.node = position.tree->tree_.predecessor(position.node);
  }

  /// Calls `visit(element)` for each element in order, until it returns false. False when the walk
  /// was given up because a visit changed the tree.
  template <class Visit>
  bool for_each(Visit visit) {
    const InUse use(*this);
    const std::uint32_t changes_before = changes();
    for (TreeLinks* node = begin().node; node != tree_.header(); node = tree_.successor(node)) {
      if (!visit(static_cast<Element&>(*node))) return true;
      if (changes() != changes_before) [[unlikely]]
        return false;
    }
    return true;
  }

  /// The element with this key, or the end. O(log n).
  template <class Probe>
  Position find(const Probe& key) {
    if constexpr (plain_keys) return position(find_plain(key));
    return position(search_again([&] {
      Comparing<Probe> comparing(key);
      const NodeLink found = lower_bound_below(tree_.root(), nil(), comparing);
      return found == nil() || comparing.is_behind(key_at(found)) ? nil() : found;
    }));
  }

  /// 1 when the key is there, else 0. O(log n).
  template <class Probe>
  std::uint32_t count(const Probe& key) {
    return find(key).is_end() ? 0 : 1;
  }

  /// The first element whose key is not less than `key`, or the end. O(log n).
  template <class Probe>
  Position lower_bound(const Probe& key) {
    return position(search_again([&] {
      Comparing<Probe> comparing(key);
      return lower_bound_below(tree_.root(), nil(), comparing);
    }));
  }

  /// The first element whose key is greater than `key`, or the end. O(log n).
  template <class Probe>
  Position upper_bound(const Probe& key) {
    return position(search_again([&] {
      Comparing<Probe> comparing(key);
      return upper_bound_below(tree_.root(), nil(), comparing);
    }));
  }

  /// The element with this key; if there is none, a new one with an empty value. O(log n); O(1)
  /// amortised for a plain key that is larger than all others.
  template <class Probe>
  InsertResult insert_unique(const Probe& key) {
    for (int attempts = 1;; ++attempts) {
      TreePlace place = place_of(key);
      if (place.present != no_node) return {element(place.present), false};
      const std::uint32_t changes_before = changes();
      const NodeLink node = create(key);
      const bool is_place = plain_keys || changes() == changes_before;
      if (is_place || attempts == search_attempts) {
        if (!is_place) place = behind_the_largest();
        link(node, place);
        return {element(node), true};
      }
      destroy(node);
    }
  }

  /// Removes the elements with this key; the number removed, 0 or 1 in a consistent order. O(log
  /// n).
  template <class Probe>
  std::uint32_t erase(const Probe& key) {
    if constexpr (plain_keys) {
      const NodeLink found = find_plain(key);
      return found == nil() ? 0 : remove_one(found);
    }
    for (int attempts = 0; attempts < search_attempts; ++attempts) {
      const std::uint32_t changes_before = changes();
      const Range range = equal_range(key);
      if (changes() == changes_before) return remove_range(range.first, range.last);
    }
    return 0;
  }

  /// Removes the element at `position`; at the end, nothing. O(log n).
  void erase(Position position) {
    if (position.is_end()) return;
    remove_one(link_to(position.node));
  }

  /// Removes the elements from `first` up to but not including `last`; how many went. O(k log n)
  /// for k elements, O(n) for all of them.
  std::uint32_t erase(Position first, Position last) {
    if (first == begin() && last.is_end()) {
      const std::uint32_t removed = size_;
      clear();
      return removed;
    }
    return remove_range(link_to(first.node), link_to(last.node));
  }

  /// Removes every element and gives their memory back. O(n).
  void clear() {
    const InUse use(*this);
    NodeLink rest = tree_.root();
    size_ = 0;
    tree_.forget_all();
    count_change();
    if constexpr (!plain_elements) {
      // The tree is empty to whoever looks; `rest` is taken apart without rebalancing.
      if (is_used_by_several() && is_child(rest)) {
        put_off_all(rest);
      } else {
        destroy_all(rest);
      }
    }
    if (size_ == 0 && !has_put_off() && !is_used_by_several()) tree_.memory().release_all();
  }

  /// Takes on the elements of another tree, which must be plain, into this empty one. O(n).
  void copy_from(const OrderedStorage& other) requires plain_elements {
    tree_.copy_from<Element>(other.tree_, other.size_);
    size_ = other.size_;
    count_change();
  }

  /// Fills an empty tree with keys in ascending order. None of them is compared, but they are left
  /// the locks that the comparisons would leave on the way to their places.
  class Appender {
   public:
    explicit Appender(OrderedStorage& storage)
        : storage_(storage), changes_(storage.changes()), was_empty_(storage.empty()) {}

    /// The new element, with an empty value; null, and nothing is added, when others have filled or
    /// changed the tree. O(log n).
    Element* append(const Key& key) {
      if (!was_empty_ || is_disturbed()) return nullptr;
      storage_.leave_locks_to_largest(key);
      const NodeLink node = storage_.create(key);
      if (is_disturbed()) {
        storage_.destroy(node);
        return nullptr;
      }
      storage_.link(node, storage_.behind_the_largest());
      changes_ = storage_.changes();
      return &storage_.element(node);
    }

   private:
    bool is_disturbed() const { return storage_.changes() != changes_; }

    OrderedStorage& storage_;
    std::uint32_t changes_;  // when the last key was appended
    bool was_empty_;
  };

 private:
  friend class OrderedStorageInspector;  // the invariant checker of the tests
  friend class InUse<OrderedStorage>;
  friend class NodeRemoval<OrderedStorage>;
  using Removal = NodeRemoval<OrderedStorage>;
  using Removal::destroy_or_put_off;
  using Removal::finish_work;
  using Removal::has_put_off;
  using typename Removal::RemovedNodes;

  using Descent = PlainDescent<Element, Less>;

  template <class Probe>
  using Comparing = Comparisons<Less, Key, Probe>;

  static constexpr std::uint32_t cached_elements = 1024;  // fewer need no prefetch
  static constexpr std::uint32_t cached_steps = 4096;     // fewer need none for a step

  // The links from `first` up to but not including `last`.
  struct Range {
    NodeLink first;
    NodeLink last;
  };

  NodeLink nil() const { return tree_.nil(); }
  Position position(NodeLink node) noexcept { return {&tree_.at(node), this}; }
  Element& element(NodeLink node) const noexcept { return static_cast<Element&>(tree_.at(node)); }
  const Key& key_at(NodeLink node) const noexcept { return element(node).key; }
  // Of nodes that were taken out. Their right links still lead on: see RedBlackTree::remove.
  NodeLink& next_in_chain(NodeLink node) const { return tree_.at(node).parent_and_colour; }
  NodeLink link_after(NodeLink node) { return link_to(tree_.successor(&tree_.at(node))); }

  static void prefetch_content_of(const TreeLinks& node) {
    prefetch_content(static_cast<const Element&>(node));
  }

  // Runs a search that gives a node, again if the tree changed under it.
  template <class Search>
  NodeLink search_again(Search search) {
    for (int attempts = 0; attempts < search_attempts; ++attempts) {
      const std::uint32_t changes_before = changes();
      const NodeLink found = search();
      if (plain_keys || changes() == changes_before) return found;
    }
    return nil();
  }

  // The bounds within the subtree at `node`; `otherwise` when it has no such element. They end
  // early when the tree changes.
  template <class Probe>
  NodeLink lower_bound_below(NodeLink node, NodeLink otherwise, Comparing<Probe>& key) const {
    return bound_below(node, otherwise, [&](const Key& stored) { return key.is_before(stored); });
  }
  template <class Probe>
  NodeLink upper_bound_below(NodeLink node, NodeLink otherwise, Comparing<Probe>& key) const {
    return bound_below(node, otherwise, [&](const Key& stored) { return !key.is_behind(stored); });
  }

  // The first element that is not before the bound.
  template <class IsBefore>
  NodeLink bound_below(NodeLink node, NodeLink otherwise, IsBefore is_before) const {
    const std::uint32_t changes_before = changes();
    while (is_child(node)) {
      const Element& at_node = element(node);
      prefetch_below(at_node);
      const bool before = is_before(at_node.key);
      if (!plain_keys && changes() != changes_before) return nil();
      otherwise = choose(opaque(before), otherwise, node);  // opaque, so that both stay choices
      node = turn(!opaque(before), at_node.left(), at_node.right());
    }
    return otherwise;
  }

  // While the host compares the key of a node: asks for what the next comparison touches, and for
  // the nodes after that.
  ZRB_ALWAYS_INLINE void prefetch_below(const TreeLinks& node) const {
    if constexpr (!plain_keys) {
      if (size_ < cached_elements) return;
      for (const NodeLink child : node.child) {
        if (!is_child(child)) continue;
        prefetch_held(key_at(child));
        prefetch(node_at(tree_.at(child).left()));
        prefetch(node_at(tree_.at(child).right()));
      }
    }
  }

  NodeLink find_plain(const Key& key) const noexcept {
    return Descent::find(tree_.root(), nil(), key);
  }

  template <class Probe>
  TreePlace place_of(const Probe& key) {
    if constexpr (plain_keys) {
      if (size_ != 0 && Less{}(key_at(tree_.largest()), key)) return behind_the_largest();
      return Descent::find_place(tree_.root(), nil(), key);
    } else {
      for (int attempts = 0; attempts < search_attempts; ++attempts) {
        const std::uint32_t changes_before = changes();
        const TreePlace place = search_place(key);
        if (changes() == changes_before) return place;
      }
      return behind_the_largest();
    }
  }

  // Where a key goes that is larger than all others, or that has no other place: the host changes
  // the tree whenever it is asked.
  TreePlace behind_the_largest() const { return {no_node, tree_.largest(), right_side}; }

  void link(NodeLink node, const TreePlace& place) {
    tree_.insert(node, place.parent, place.side);
    ++size_;
    count_change();
    if constexpr (!plain_keys) grows_upwards_ = tree_.largest() == node;
  }

  // Where the first key of all goes.
  TreePlace root_place() const { return {no_node, nil(), left_side}; }

  // Leaves the locks of the comparisons that would bring a key that is larger than all others to
  // its place, if they leave any. Ends early when the tree changes.
  template <class Operand>
  void leave_locks_to_largest(const Operand& key) {
    if constexpr (requires { Less::leave_locks(key_at(tree_.largest()), key); }) {
      const std::uint32_t changes_before = changes();
      for (NodeLink node = tree_.root(); is_child(node); node = tree_.at(node).right()) {
        Less::leave_locks(key_at(node), key);
        if (changes() != changes_before) return;
      }
      if (!empty()) Less::leave_locks(key_at(tree_.largest()), key);
    }
  }

  template <class Probe>
  TreePlace search_place(const Probe& key) {
    const std::uint32_t changes_before = changes();
    Comparing<Probe> comparing(key);
    if constexpr (Comparing<Probe>::answers_both) {
      if (grows_upwards_ && !empty() && Less::is_larger(key, key_at(tree_.largest()))) {
        leave_locks_to_largest(key);
        return behind_the_largest();
      }
    }
    TreePlace place = root_place();
    for (NodeLink node = tree_.root(); is_child(node);) {
      const Element& at_node = element(node);
      prefetch_below(at_node);
      const bool to_the_left = comparing.is_behind(at_node.key);
      if (!plain_keys && changes() != changes_before) return root_place();
      place = {no_node, node, to_the_left ? left_side : right_side};
      node = turn(opaque(to_the_left), at_node.left(), at_node.right());
    }
    // Only the element before the place found can have the same key; the header stands for none.
    const NodeLink before = place.side == left_side
                                ? link_to(tree_.predecessor(&tree_.at(place.parent)))
                                : place.parent;
    if (before != nil() && !comparing.is_before(key_at(before))) place.present = before;
    return place;
  }

  // Both bounds are sought below one element with the key, so that the first is never behind the
  // last, whatever the order says. Ends early when the tree changes.
  template <class Probe>
  Range equal_range(const Probe& key) {
    const std::uint32_t changes_before = changes();
    Comparing<Probe> comparing(key);
    NodeLink larger = nil();
    for (NodeLink node = tree_.root(); is_child(node) && changes() == changes_before;) {
      const Element& at_node = element(node);
      prefetch_below(at_node);
      if (comparing.is_before(at_node.key)) {
        node = at_node.right();
      } else if (comparing.is_behind(at_node.key)) {
        larger = node;
        node = at_node.left();
      } else if (changes() == changes_before) {
        const NodeLink right = at_node.right();
        const NodeLink first = lower_bound_below(at_node.left(), node, comparing);
        if (changes() != changes_before) break;
        return {first, upper_bound_below(right, larger, comparing)};
      }
    }
    return {larger, larger};
  }

  template <class Probe>
  NodeLink create(const Probe& key) {
    return create_entry<Element>(tree_.memory(), key);
  }
  void destroy(NodeLink node) { destroy_entry<Element>(tree_.memory(), node); }

  // Unlinks all nodes before it destroys any. Within another operation, that is left to the end of
  // it.
  std::uint32_t remove_range(NodeLink first, NodeLink last) {
    RemovedNodes removed(*this);
    while (first != last && first != nil()) {
      const NodeLink next = link_after(first);
      unlink(first);
      removed.add(first);
      first = next;
    }
    return removed.destroy();
  }

  std::uint32_t remove_one(NodeLink node) {
    unlink(node);
    destroy_or_put_off(node);
    return 1;
  }

  void unlink(NodeLink node) {
    tree_.remove(node);
    --size_;
    count_change();
  }

  // All nodes of a tree that was forgotten.
  void destroy_all(NodeLink& root) {
    finish_despite_exceptions([&] {
      while (is_child(root)) destroy(tree_.take_leaf(root));
    });
  }

  // All nodes of a tree that was forgotten, at least one, to be destroyed before those put off
  // already.
  [[gnu::cold]] void put_off_all(NodeLink root) {
    RemovedNodes leaves(*this);
    while (is_child(root)) leaves.add(tree_.take_leaf(root));
    leaves.destroy();
  }

  RedBlackTree tree_{sizeof(Element), plain_elements ? nullptr : &prefetch_content_of};
  std::uint32_t size_ = 0;
  bool grows_upwards_ = false;  // whether the newest element is the largest one
};

#endif
