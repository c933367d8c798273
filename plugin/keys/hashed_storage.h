// Hashed storage: unique keys in chained buckets, of which there is a prime number.
//
// Layout. An array of bucket heads, each the first node of a singly linked chain. A key belongs to
// the bucket `hash(key) % bucket count`. New nodes go to the head of their chain. Heads and links
// are 32 bits wide in every build (node_links.h), so that a map from integers to integers takes 12
// bytes a node and 4 a bucket; nodes never move.
//
// Order. Iteration visits the buckets in ascending order and each chain from its head. Programs see
// this order, so it is fixed: the newest element of a bucket comes first, and each growth step,
// which moves the chains over node by node, reverses what stays together.
//
// Growth. Before an insertion, of a new key or not, the table makes room for one element more than
// it has: when that exceeds the bucket count, the next larger prime of `bucket_sizes` is taken. So
// there is never more than one element a bucket on average. Buckets never become fewer.
//
// Hashes are not kept. Each operation on a key hashes that key once; growth hashes every key once,
// unless it is that of a copy (hashed_copier.h).
//
// Speed. The bucket is found without a division (remainder.h), and in its chain a key that asks
// nobody, almost without a guess (plain_chain.h). Growth, copies, exports and destruction go
// through the chains by a walk that guesses nothing (bucket_walk.h), and so do the steps of an
// iteration, some at once (steps_ahead.h). In large tables, a walk asks for nodes long before it
// comes to them, and growth for the new buckets too, so that many cache misses are under way at
// once; a large array of buckets lies in large pages (buckets.cpp). Elements that call nobody when
// they die are never visited for it.
//
// Exceptions. Hash, equality, the copying of a key and the destruction of an element may throw,
// unless they are declared noexcept. The table then stays valid, nothing is leaked, and the
// exception passes on:
//  - a search, and an insertion that needs no growth, leave the elements as they were;
//  - a hash that throws during growth costs the elements before it in the order: they are
//    destroyed, and the table goes on with its old buckets and the rest;
//  - an element whose destruction throws is gone all the same, and a removal of several goes on to
//    the end first.
//
// Reentrancy. Each of these calls may change the table itself, see in_use.h. So no operation is
// halfway when it calls: growth hashes all keys before it moves any, removals unlink all nodes
// before they destroy any, and a search that finds the table changed under it begins again.
//
// Source: the hashtable of the SGI Standard Template Library (growth, order, prime sizes).
#ifndef ZRB_PLUGIN_KEYS_HASHED_STORAGE_H
#define ZRB_PLUGIN_KEYS_HASHED_STORAGE_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>

#include "host/locked_handle.h"
#include "keys/bucket_sizes.h"
#include "keys/bucket_walk.h"
#include "keys/buckets.h"
#include "keys/entry.h"
#include "keys/entry_nodes.h"
#include "keys/finish.h"
#include "keys/growth_order.h"
#include "keys/hints.h"
#include "keys/in_use.h"
#include "keys/node_memory.h"
#include "keys/node_removal.h"
#include "keys/plain_chain.h"
#include "keys/steps_ahead.h"

/// `Hash(key)` gives 32 unsigned bits, `Equal(stored, key)` a boolean; both are stateless. Where an
/// operation takes a `Probe`, that is a Key or derived from one (a key prepared for a search), and
/// Hash and Equal take it too. `Value` is NoValue for a set. Costs are averages for keys that hash
/// well; n is `size()`.
template <class Key, class Value, class Hash, class Equal>
class HashedStorage : public Usable, private NodeRemoval<HashedStorage<Key, Value, Hash, Equal>> {
 public:
  using Element = Entry<ChainLink, Key, Value>;

  /// An element, or with a null node the end. Valid as long as the element and the table are.
  struct Position {
    Element* node = nullptr;
    HashedStorage* table = nullptr;

    bool is_end() const { return node == nullptr; }
    Element& entry() const { return *node; }
    bool operator==(const Position& other) const { return node == other.node; }
    HashedStorage& storage() const { return *table; }
  };

  struct InsertResult {
    Element& entry;
    bool inserted;
  };

  /// Whether searching for keys calls nobody who could throw or change the table.
  static constexpr bool plain_keys = std::is_nothrow_invocable_v<Hash, const Key&> &&
                                     std::is_nothrow_invocable_v<Equal, const Key&, const Key&> &&
                                     std::is_trivially_copyable_v<Key>;
  /// Whether nothing that is done to elements does.
  static constexpr bool plain_elements = plain_keys && std::is_trivially_copyable_v<Value>;
  static constexpr bool integers_to_integers =
      std::is_same_v<Key, std::int32_t> && std::is_same_v<Value, std::int32_t>;

  /// Whether a copy need not read most of its keys again: see hashed_copier.h.
  static constexpr bool has_copier = requires(const Key& key) { Hash{}.shared_with_equals(key); };
  class Copier;

  /// What whoever calls an operation holds meanwhile: one on a key, or one on elements.
  using KeyUse = std::conditional_t<plain_keys, NotInUse, InUse<HashedStorage>>;
  using ElementUse = std::conditional_t<plain_elements, NotInUse, InUse<HashedStorage>>;

  /// Buckets that a new container asks for.
  static constexpr std::uint32_t initial_size_hint = 100;

  explicit HashedStorage(std::uint32_t size_hint = initial_size_hint)
      : buckets_(bucket_size_for(size_hint)) {}
  HashedStorage(const HashedStorage&) = delete;
  HashedStorage& operator=(const HashedStorage&) = delete;
  ~HashedStorage() noexcept(plain_elements) {
    if constexpr (!plain_elements) destroy_all(bucket_size_for(0));  // nobody needs more now
  }

  std::uint32_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  std::uint32_t bucket_count() const { return buckets_.count(); }
  static constexpr std::uint32_t max_size() { return std::numeric_limits<std::uint32_t>::max(); }

  /// The first element, or the end. O(empty buckets before it).
  Position begin() { return {first_element_from(0), this}; }
  Position end() { return {nullptr, this}; }

  /// Moves to the next element, or to the end; stays at the end. Hashes the key at a chain's end,
  /// unless the last step in this table came there and it was not changed since. O(1), O(buckets)
  /// where many are empty.
  static void advance(Position& position) {
    if (position.is_end()) return;
    HashedStorage& table = *position.table;
    void* const next = table.ahead_.after(position.node);
    position.node = next != nullptr ? static_cast<Element*>(next) : table.step_from(position.node);
  }

  /// Calls `visit(element)` for each element in order, until it returns false. Hashes nothing.
  /// False when the walk was given up because a visit changed the table.
  template <class Visit>
  bool for_each(Visit visit) {
    const InUse use(*this);
    const std::uint32_t changes_before = changes();
    for (Walk walk = walk_all(); walk.gather();) {
      for (const NodeLink link : walk.gathered()) {
        if (!visit(element(link))) return true;
        if (changes() != changes_before) [[unlikely]]
          return false;
      }
    }
    return true;
  }

  /// The element with this key, or the end. O(1).
  template <class Probe>
  Position find(const Probe& key) {
    const std::uint32_t hash = Hash{}(key);
    const NodeLink found = find_link(hash, key);
    return {found == no_node ? nullptr : &element(found), this};
  }

  /// The value of this key, `otherwise` when there is none. O(1).
  Value value_or(const Key& key, const Value& otherwise) requires integers_to_integers {
    // In place of a node that is not there zeros are read, which are taken for an element here.
    if (size_ < near_elements && key != 0) [[likely]]
      return Chain::value_near_or(buckets_[buckets_.of(Hash{}(key))], key, otherwise);
    return value_far_or(key, otherwise);
  }

  /// 1 when the key is there, else 0. O(1).
  template <class Probe>
  std::uint32_t count(const Probe& key) {
    return find(key).is_end() ? 0 : 1;
  }

  /// The element with this key; if there is none, a new one with an empty value. Grows first.
  /// O(1), or O(n) when it grows.
  template <class Probe>
  InsertResult insert_unique(const Probe& key) {
    make_room_for_one();
    const std::uint32_t hash = Hash{}(key);
    for (int attempts = 1;; ++attempts) {
      if (const NodeLink present = find_link(hash, key); present != no_node)
        return {element(present), false};
      const std::uint32_t changes_before = changes();
      const NodeLink link = create(key);
      if (plain_keys || changes() == changes_before || attempts == search_attempts) {
        return {this->link(buckets_[buckets_.of(hash)], link), true};
      }
      destroy(link);
      make_room_for_one();
    }
  }

  /// Removes every element of the key's bucket that has this key; how many went. O(1). Compares
  /// every key of the chain, the head last.
  ///
  /// That is 0 or 1, but for keys that are equal and hash differently (texts alike up to a zero
  /// byte): they are kept beside each other until growth brings them into one bucket.
  template <class Probe>
  std::uint32_t erase(const Probe& key) {
    const std::uint32_t hash = Hash{}(key);
    if constexpr (plain_keys) {
      NodeLink* link = &buckets_[buckets_.of(hash)];
      while (*link != no_node && !Equal{}(element(*link).key, key)) link = &element(*link).next;
      return *link == no_node ? 0 : remove(*link);
    } else {
      RemovedNodes removed(*this);
      for (int attempts = 0; attempts < search_attempts; ++attempts) {
        if (take_equal(buckets_[buckets_.of(hash)], key, removed)) break;
      }
      return removed.destroy();
    }
  }

  /// Removes the element at `position`; at the end, nothing. O(1).
  void erase(Position position) {
    if (position.is_end()) return;
    const std::uint32_t hash = Hash{}(position.node->key);
    if (NodeLink* link = link_to(position.node, buckets_.of(hash))) remove(*link);
  }

  /// Removes the elements from `first` up to but not including `last`. O(buckets and elements
  /// between them).
  void erase(Position first, Position last) {
    if (first.node == last.node || first.is_end()) return;
    const std::uint32_t first_hash = Hash{}(first.node->key);
    const std::uint32_t last_hash = last.is_end() ? 0 : Hash{}(last.node->key);
    const std::uint32_t first_bucket = buckets_.of(first_hash);
    const std::uint32_t last_bucket = last.is_end() ? buckets_.count() : buckets_.of(last_hash);
    if (first_bucket > last_bucket) return;
    NodeLink* link = link_to(first.node, first_bucket);
    if (link == nullptr) return;
    RemovedNodes removed(*this);
    take_chain(*link, last.node, removed);
    for (std::uint32_t bucket = first_bucket + 1; bucket < last_bucket; ++bucket) {
      take_chain(buckets_[bucket], nullptr, removed);
    }
    if (first_bucket != last_bucket && !last.is_end())
      take_chain(buckets_[last_bucket], last.node, removed);
    removed.destroy();
  }

  /// Removes every element and gives their memory back; the bucket count stays. O(buckets + n).
  void clear() {
    if constexpr (plain_elements) {
      const InUse use(*this);
      buckets_.forget_all();
      size_ = 0;
      note_change();
      release_memory();
    } else {
      destroy_all(buckets_.count());
    }
  }

  /// Inserts the elements of another table, in its order, into this empty one; both hold plain
  /// elements. What that gives is the same as inserting them one by one, but no key is searched
  /// for, and all the room is made at once. O(n).
  ZRB_PROTECT_STACK void copy_from(const HashedStorage& other) requires plain_elements {
    const GrowthOrder order(buckets_.count(), other.size_);
    if (order.final_count() != buckets_.count()) Buckets(order.final_count()).swap(buckets_);
    std::uint32_t hashes[Walk::capacity];
    for (Walk walk = other.walk_all(); walk.gather();) {
      std::uint32_t* hash = hashes;
      for (const NodeLink link : walk.gathered()) {
        *hash = Hash{}(other.element(link).key);
        prefetch(&buckets_[buckets_.of(*hash++)]);
      }
      hash = hashes;
      for (const NodeLink link : walk.gathered()) {
        const Element& source = other.element(link);
        const NodeLink copy = create(source.key);
        if constexpr (!std::is_same_v<Value, NoValue>) element(copy).value = source.value;
        this->link(place_by(order, *hash++), copy);
      }
    }
  }

 private:
  friend struct HashedStorageInspector;  // the invariant checker of the tests
  friend class InUse<HashedStorage>;

  friend class NodeRemoval<HashedStorage>;
  using Removal = NodeRemoval<HashedStorage>;
  using Removal::destroy_or_put_off;
  using Removal::finish_work;
  using Removal::has_put_off;
  using typename Removal::RemovedNodes;

  using Walk = ElementWalk<Element>;
  using Chain = PlainChain<Element, Equal>;

  static constexpr std::uint32_t cached_elements = 4096;  // fewer need no prefetch
  // Of fewer, a search does better to load two nodes than to guess which one it needs.
  static constexpr std::uint32_t near_elements = 131072;

  void note_change() noexcept {
    count_change();
    ahead_.forget();
  }

  Element& element(NodeLink link) const { return *static_cast<Element*>(node_at(link)); }

  NodeLink& next_in_chain(NodeLink link) const { return element(link).next; }

  template <class Probe>
  NodeLink create(const Probe& key) {
    return create_entry<Element>(memory_, key);
  }
  void destroy(NodeLink link) { destroy_entry<Element>(memory_, link); }

  // Removes the node that `link` leads to; how many that are: 1.
  std::uint32_t remove(NodeLink& link) {
    const NodeLink node = link;
    link = element(node).next;
    --size_;
    note_change();
    destroy_or_put_off(node);
    return 1;
  }

  // Takes out the node that `link` leads to; `link` then leads to the next one.
  void take(NodeLink& link, RemovedNodes& removed) {
    const NodeLink node = link;
    link = element(node).next;
    removed.add(node);
    --size_;
    note_change();
  }

  // Takes out the nodes from `link` on, up to but not including the element `end`.
  void take_chain(NodeLink& link, const Element* end, RemovedNodes& removed) {
    while (link != no_node && &element(link) != end) take(link, removed);
  }

  // Destroys every element of a table that goes on with so many buckets, if there is memory for
  // them.
  [[gnu::noinline]] void destroy_all(std::uint32_t bucket_count) {
    const InUse use(*this);
    if (size_ != 0 && (is_used_by_several() || !destroy_with_buckets(bucket_count))) unlink_all();
    release_memory();
  }

  // Unless nodes are in use, or are looked at by an operation around this one.
  void release_memory() {
    if (size_ == 0 && !has_put_off() && !is_used_by_several()) memory_.release_all();
  }

  // Takes the elements out with the array of buckets itself: a walk goes through that faster than
  // anyone could follow a chain of all of them. False, and nothing is done, when there is no memory
  // for other buckets.
  bool destroy_with_buckets(std::uint32_t bucket_count) {
    const std::unique_ptr<Buckets> detached = buckets_.exchange(bucket_count);
    if (detached == nullptr) return false;
    Walk walk(detached->begin(), detached->count(), size_ >= cached_elements);
    size_ = 0;
    note_change();
    std::span<const NodeLink> left;
    finish_despite_exceptions([&] { destroy_rest(walk, left); });
    return true;
  }

  // Unlinks every element before any is destroyed, now or at the end of the outermost operation.
  [[gnu::cold]] void unlink_all() {
    RemovedNodes removed(*this);
    for (std::uint32_t bucket = 0; bucket < buckets_.count(); ++bucket) {
      take_chain(buckets_[bucket], nullptr, removed);
    }
    removed.destroy();
  }

  // Whatever the walk comes to, from those on that are left of what it gathered.
  [[gnu::noinline]] void destroy_rest(Walk& walk, std::span<const NodeLink>& left) {
    for (;;) {
      if (left.empty()) {
        if (!walk.gather()) return;
        left = walk.gathered();
      }
      const NodeLink link = left.front();
      left = left.subspan(1);
      destroy(link);
    }
  }

  Element& link(NodeLink& head, NodeLink node) {
    Element& added = element(node);
    added.next = head;
    head = node;
    ++size_;
    note_change();
    return added;
  }

  // The element after one from which no step is known. Not inline, for the sake of others.
  [[gnu::noinline]] Element* step_from(const Element* from) {
    if (ahead_.is_at(from)) return go_on();
    if (!plain_keys && from->next != no_node) return &element(from->next);  // needs no hash
    const KeyUse use(*this);
    const std::uint32_t bucket = buckets_.of(Hash{}(from->key));
    if (plain_keys && from->next != no_node) return came_to(from->next, bucket);
    return first_element_from(bucket + 1);
  }

  // Past what was gathered; null at the end.
  Element* go_on() {
    auto* const next = static_cast<Element*>(ahead_.go_on());
    if (!plain_elements && size_ >= cached_elements) prefetch_contents<Element>(ahead_.gathered());
    return next;
  }

  // Null when all buckets from there on are empty.
  [[gnu::noinline]] Element* first_element_from(std::uint32_t bucket) {
    for (; bucket < buckets_.count(); ++bucket) {
      if (buckets_[bucket] != no_node) return came_to(buckets_[bucket], bucket);
    }
    return nullptr;
  }

  // The element of a bucket to which a step has come.
  Element* came_to(NodeLink link, std::uint32_t bucket) {
    Element& found = element(link);
    const std::uint32_t others = buckets_.count() - bucket - 1;
    ahead_.start(link, {&buckets_[bucket] + 1, others, found.next, size_ >= cached_elements});
    return &found;
  }

  // Where a new element goes that is to be where growth, step by step, would have taken it.
  NodeLink& place_by(const GrowthOrder& order, std::uint32_t hash) {
    NodeLink* place = &buckets_[buckets_.of(hash)];
    if (size_ >= order.elements_at_last_step()) return *place;
    while (*place != no_node && !order.is_newer_first(size_, hash, Hash{}(element(*place).key))) {
      place = &element(*place).next;
    }
    return *place;
  }

  Walk walk_all() const {
    return Walk(buckets_.begin(), buckets_.count(), size_ >= cached_elements);
  }

  template <class Probe>
  ZRB_ALWAYS_INLINE NodeLink find_link(std::uint32_t hash, const Probe& key) {
    if constexpr (plain_keys) {
      const NodeLink first = buckets_[buckets_.of(hash)];
      return size_ < near_elements ? Chain::find_near(first, key) : Chain::find(first, key);
    } else {
      return find_link_asking(hash, key);
    }
  }

  // Not inline, so that a search that is near needs no stack.
  [[gnu::noinline]] Value value_far_or(Key key, Value otherwise) {
    const NodeLink found = find_link(Hash{}(key), key);
    return found == no_node ? otherwise : element(found).value;
  }

  // `find_link` for keys that ask the host when they are compared. Not inline: the call is nothing
  // beside those of the host.
  template <class Probe>
  [[gnu::noinline]] NodeLink find_link_asking(std::uint32_t hash, const Probe& key) {
    for (int attempts = 0; attempts < search_attempts; ++attempts) {
      const std::uint32_t changes_before = changes();
      NodeLink link = buckets_[buckets_.of(hash)];
      bool found = false;
      while (link != no_node && !found && changes() == changes_before) {
        prefetch(readable_node_at(element(link).next));
        prefetch_content(element(link));
        found = Equal{}(element(link).key, key);
        if (!found) link = element(link).next;
      }
      if (changes() == changes_before) return link;
    }
    return no_node;
  }

  // Takes every equal node out of a chain, the head last; false when the table changed meanwhile.
  template <class Probe>
  bool take_equal(NodeLink& head, const Probe& key, RemovedNodes& removed) {
    if (head == no_node) return true;
    const auto is_equal = [&](NodeLink link) { return Equal{}(element(link).key, key); };
    for (NodeLink* link = &element(head).next; *link != no_node;) {
      const std::uint32_t changes_before = changes();
      const bool equal = is_equal(*link);
      if (changes() != changes_before) return false;
      if (equal) {
        take(*link, removed);
      } else {
        link = &element(*link).next;
      }
    }
    const std::uint32_t changes_before = changes();
    const bool equal = is_equal(head);
    if (changes() != changes_before) return false;
    if (equal) take(head, removed);
    return true;
  }

  // The link of the chain that leads to `element`; null when it is not in this bucket.
  NodeLink* link_to(const Element* wanted, std::uint32_t bucket) {
    for (NodeLink* link = &buckets_[bucket]; *link != no_node; link = &element(*link).next) {
      if (&element(*link) == wanted) return link;
    }
    return nullptr;
  }

  void make_room_for_one() {
    if (size_ < buckets_.count()) [[likely]]
      return;
    for (int attempts = 0; attempts < search_attempts && size_ >= buckets_.count(); ++attempts) {
      grow(bucket_size_for(size_ + 1));
    }
  }

  // Changes nothing when the table is changed meanwhile.
  [[gnu::noinline]] void grow(std::uint32_t bucket_count) {
    Buckets larger(bucket_count);
    if constexpr (plain_keys) {
      move_all(larger, [](const Key& key) { return Hash{}(key); });
    } else {
      const std::uint32_t changes_before = changes();
      const auto hashes = std::make_unique<std::uint32_t[]>(size_);
      hash_all(hashes.get());
      if (changes() != changes_before) return;
      move_all(larger, [next = hashes.get()](const Key&) mutable { return *next++; });
    }
    buckets_.swap(larger);
    note_change();
  }

  // Hashes the keys in order, until the table changes; when that throws, the elements before go.
  void hash_all(std::uint32_t* hashes) {
    const std::uint32_t changes_before = changes();
    std::uint32_t hashed = 0;
    try {
      for (Walk walk = walk_all(); walk.gather();) {
        for (const NodeLink link : walk.gathered()) {
          hashes[hashed] = Hash{}(element(link).key);
          if (changes() != changes_before) return;
          ++hashed;
        }
      }
    } catch (...) {
      if (changes() != changes_before) throw;
      RemovedNodes removed(*this);
      for (std::uint32_t bucket = 0; hashed > 0; ++bucket) {
        for (; hashed > 0 && buckets_[bucket] != no_node; --hashed) take(buckets_[bucket], removed);
      }
      throw;
    }
  }

  // Moves every node, in order, to the head of its new chain: as many at once as a walk gathers, of
  // which the heads that are touched are then on their way into the cache.
  template <class HashOf>
  ZRB_PROTECT_STACK void move_all(Buckets& larger, HashOf hash_of) {
    std::uint32_t homes[Walk::capacity];
    for (Walk walk = walk_all(); walk.gather();) {
      std::uint32_t* home = homes;
      for (const NodeLink link : walk.gathered()) {
        *home = larger.of(hash_of(element(link).key));
        prefetch(&larger[*home++]);
      }
      home = homes;
      for (const NodeLink link : walk.gathered()) {
        NodeLink& head = larger[*home++];
        element(link).next = head;
        head = link;
      }
    }
  }

  NodeMemory memory_{sizeof(Element)};
  Buckets buckets_;
  StepsAhead ahead_;
  std::uint32_t size_ = 0;
};

#endif
