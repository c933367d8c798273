// Hashed storage: unique keys in chained buckets, of which there is a prime number.
//
// Layout. An array of bucket heads, each the first node of a singly linked chain. A key belongs to
// the bucket `hash(key) % bucket count`. New nodes go to the head of their chain. Nodes come from a
// pool of the table's own and never move.
//
// Order. Iteration visits the buckets in ascending order and each chain from its head. Programs see
// this order, so it is fixed: the newest element of a bucket comes first, and each growth step,
// which moves the chains over node by node, reverses what stays together.
//
// Growth. Before an insertion, of a new key or not, the table makes room for one element more than
// it has: when that exceeds the bucket count, the next larger prime of `bucket_sizes` is taken. So
// there is never more than one element a bucket on average. Buckets never become fewer.
//
// Hashes are not kept. Each operation on a key hashes that key once; growth hashes every key once.
//
// Exceptions. Hash, equality, the copying of a key and the destruction of an element may throw.
// The table then stays valid, nothing is leaked, and the exception passes on:
//  - a search, and an insertion that needs no growth, leave the elements as they were;
//  - a hash that throws during growth costs the elements moved so far: they are destroyed, and the
//    table goes on with its old buckets and the rest;
//  - an element whose destruction throws is gone all the same, and a removal of several goes on to
//    the end first.
//
// Source: the hashtable of the SGI Standard Template Library (growth, order, prime sizes).
#ifndef ZRB_PLUGIN_KEYS_HASHED_STORAGE_H
#define ZRB_PLUGIN_KEYS_HASHED_STORAGE_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include "keys/bucket_sizes.h"
#include "keys/entry.h"
#include "keys/finish.h"
#include "keys/node_pool.h"

/// `Hash(key)` gives 32 unsigned bits, `Equal(a, b)` a boolean; both are stateless. `Value` is
/// NoValue for a set. Costs are averages for keys that hash well; n is `size()`.
template <class Key, class Value, class Hash, class Equal>
class HashedStorage {
 public:
  struct Node : Entry<Key, Value> {
    using Entry<Key, Value>::Entry;
    Node* next = nullptr;
  };

  /// An element, or with a null node the end. Valid as long as the element and the table are.
  struct Position {
    Node* node = nullptr;
    HashedStorage* table = nullptr;

    bool is_end() const { return node == nullptr; }
    Entry<Key, Value>& entry() const { return *node; }
    bool operator==(const Position& other) const { return node == other.node; }
  };

  struct InsertResult {
    Entry<Key, Value>& entry;
    bool inserted;
  };

  /// Buckets that a new container asks for.
  static constexpr std::uint32_t initial_size_hint = 100;

  explicit HashedStorage(std::uint32_t size_hint = initial_size_hint)
      : buckets_(bucket_size_for(size_hint)) {}
  HashedStorage(const HashedStorage&) = delete;
  HashedStorage& operator=(const HashedStorage&) = delete;
  ~HashedStorage() noexcept(false) { clear(); }

  std::uint32_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  std::uint32_t bucket_count() const { return buckets_.count; }
  static constexpr std::uint32_t max_size() { return std::numeric_limits<std::uint32_t>::max(); }

  /// The first element, or the end. O(empty buckets before it).
  Position begin() { return {first_node_from(0), this}; }
  Position end() { return {nullptr, this}; }

  /// Moves to the next element, or to the end; stays at the end. Hashes the key at a chain's end.
  static void advance(Position& position) {
    Node* node = position.node;
    if (node == nullptr) return;
    HashedStorage& table = *position.table;
    position.node =
        node->next != nullptr ? node->next : table.first_node_from(table.bucket_of(node->key) + 1);
  }

  /// Calls `visit(entry)` for each element in order, until it returns false. Hashes nothing.
  template <class Visit>
  void for_each(Visit visit) {
    for (std::uint32_t bucket = 0; bucket < buckets_.count; ++bucket) {
      for (Node* node = buckets_[bucket]; node != nullptr; node = node->next) {
        if (!visit(*node)) return;
      }
    }
  }

  /// The element with this key, or the end. O(1).
  Position find(const Key& key) { return {find_in(bucket_of(key), key), this}; }

  /// 1 when the key is there, else 0. O(1).
  std::uint32_t count(const Key& key) { return find(key).is_end() ? 0 : 1; }

  /// The element with this key; if there is none, a new one with an empty value. Grows first.
  /// O(1), or O(n) when it grows.
  InsertResult insert_unique(const Key& key) {
    make_room_for(size_ + 1);
    const std::uint32_t hash = Hash{}(key);
    if (Node* present = find_in(hash % buckets_.count, key)) return {*present, false};
    Node* node = pool_.create(key);
    push(buckets_[hash % buckets_.count], node);
    ++size_;
    return {*node, true};
  }

  /// Removes every element of the key's bucket that has this key; how many went. O(1). Compares
  /// every key of the chain, the head last.
  ///
  /// That is 0 or 1, but for keys that are equal and hash differently (texts alike up to a zero
  /// byte): they are kept beside each other until growth brings them into one bucket.
  std::uint32_t erase(const Key& key) {
    Node*& head = buckets_[bucket_of(key)];
    if (head == nullptr) return 0;
    std::uint32_t removed = 0;
    for (Node** link = &head->next; *link != nullptr;) {
      if (Equal{}((*link)->key, key)) {
        remove(*link);
        ++removed;
      } else {
        link = &(*link)->next;
      }
    }
    if (Equal{}(head->key, key)) {
      remove(head);
      ++removed;
    }
    return removed;
  }

  /// Removes the element at `position`; at the end, nothing. O(1).
  void erase(Position position) {
    if (position.is_end()) return;
    Node** link = link_to(position.node, bucket_of(position.node->key));
    if (link != nullptr) remove(*link);
  }

  /// Removes the elements from `first` up to but not including `last`. O(buckets and elements
  /// between them).
  void erase(Position first, Position last) {
    if (first.node == last.node || first.is_end()) return;
    const std::uint32_t first_bucket = bucket_of(first.node->key);
    const std::uint32_t last_bucket = last.is_end() ? buckets_.count : bucket_of(last.node->key);
    if (first_bucket > last_bucket) return;
    Node** link = link_to(first.node, first_bucket);
    if (link == nullptr) return;
    finish_despite_exceptions([&] {
      while (*link != nullptr && *link != last.node) remove(*link);
      for (std::uint32_t bucket = first_bucket + 1; bucket < last_bucket; ++bucket) {
        while (buckets_[bucket] != nullptr) remove(buckets_[bucket]);
      }
      if (first_bucket == last_bucket || last.is_end()) return;
      Node*& head = buckets_[last_bucket];
      while (head != nullptr && head != last.node) remove(head);
    });
  }

  /// Removes every element and gives their memory back; the bucket count stays. O(buckets + n).
  void clear() {
    finish_despite_exceptions([this] {
      for (std::uint32_t bucket = 0; bucket < buckets_.count; ++bucket) {
        while (buckets_[bucket] != nullptr) remove(buckets_[bucket]);
      }
    });
    pool_.release_blocks();
  }

 private:
  friend struct HashedStorageInspector;  // the invariant checker of the tests

  struct Buckets {
    explicit Buckets(std::uint32_t bucket_count)
        : heads(new Node*[within_limit(bucket_count)]()), count(bucket_count) {}

    // What the host's own address space could hold, in a wider one too.
    static std::size_t within_limit(std::uint32_t bucket_count) {
      if (bucket_count >= 0x40000000) throw std::bad_alloc();
      return bucket_count;
    }

    Node*& operator[](std::uint32_t bucket) { return heads[bucket]; }

    std::unique_ptr<Node*[]> heads;
    std::uint32_t count;
  };

  std::uint32_t bucket_of(const Key& key) const { return Hash{}(key) % buckets_.count; }

  Node* first_node_from(std::uint32_t bucket) {
    for (; bucket < buckets_.count; ++bucket) {
      if (buckets_[bucket] != nullptr) return buckets_[bucket];
    }
    return nullptr;
  }

  Node* find_in(std::uint32_t bucket, const Key& key) {
    for (Node* node = buckets_[bucket]; node != nullptr; node = node->next) {
      if (Equal{}(node->key, key)) return node;
    }
    return nullptr;
  }

  // The link of the chain that points to `node`; null when the node is not in this bucket.
  Node** link_to(const Node* node, std::uint32_t bucket) {
    for (Node** link = &buckets_[bucket]; *link != nullptr; link = &(*link)->next) {
      if (*link == node) return link;
    }
    return nullptr;
  }

  static void push(Node*& head, Node* node) {
    node->next = head;
    head = node;
  }

  // Unlinks the node before its destruction, which may throw or call back.
  void remove(Node*& link) {
    Node* node = link;
    link = node->next;
    --size_;
    pool_.destroy(node);
  }

  void make_room_for(std::uint32_t elements) {
    if (elements <= buckets_.count) return;
    const std::uint32_t larger = bucket_size_for(elements);
    if (larger > buckets_.count) rehash(larger);
  }

  void rehash(std::uint32_t bucket_count) {
    Buckets larger(bucket_count);
    try {
      for (std::uint32_t bucket = 0; bucket < buckets_.count; ++bucket) {
        while (Node* node = buckets_[bucket]) {
          Node*& home = larger[Hash{}(node->key) % bucket_count];
          buckets_[bucket] = node->next;
          push(home, node);
        }
      }
    } catch (...) {
      discard(larger);
      throw;
    }
    std::swap(buckets_, larger);
  }

  // Destroys what a failed growth had moved already; the failure is on its way, so what the
  // elements throw meanwhile is dropped.
  void discard(Buckets& moved) {
    for (std::uint32_t bucket = 0; bucket < moved.count; ++bucket) {
      while (moved[bucket] != nullptr) {
        try {
          remove(moved[bucket]);
        } catch (...) {
        }
      }
    }
  }

  NodePool<Node> pool_;
  Buckets buckets_;
  std::uint32_t size_ = 0;
};

#endif
