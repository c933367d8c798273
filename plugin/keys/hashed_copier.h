// Copies of hashed tables whose keys ask the host.
//
// A copy inserts the keys of another table, in its order, into an empty one, and much of what that
// would ask is known.
//
// Hashes. Each key is hashed once, ahead of its insertion, and growth takes the hashes from there.
// They are forgotten with the copy.
//
// Equality. Few keys have to be read again to tell that they differ. Keys that are equal hash
// alike, so they lie in one bucket of the other table and come right after each other; of those,
// only keys with one hash are compared. All others are just left the locks that their comparison
// leaves.
//
// A key that does not fit this is inserted as everything else is: one that could equal a key with
// another hash, or that comes too late, as the host changed its text. When that, or the host, has
// changed the copy, the rest is inserted so as well.
//
// Speed. The other table is gone through by the nodes that a walk gathers at once: all of them are
// hashed, and what their insertion will touch is asked for, before the first one is inserted.
// Growth goes through the elements in the order in which they came, which is that of their memory.
#ifndef ZRB_PLUGIN_KEYS_HASHED_COPIER_H
#define ZRB_PLUGIN_KEYS_HASHED_COPIER_H

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "keys/bucket_sizes.h"
#include "keys/buckets.h"
#include "keys/entry_nodes.h"
#include "keys/growth_order.h"
#include "keys/hashed_storage.h"
#include "keys/hints.h"
#include "keys/in_use.h"

template <class Key, class Value, class Hash, class Equal>
class HashedStorage<Key, Value, Hash, Equal>::Copier {
 public:
  /// `target` is empty, and in use by the caller. std::bad_alloc when there is no memory for the
  /// hashes.
  Copier(HashedStorage& target, HashedStorage& source)
      : target_(target),
        source_(source),
        first_bucket_count_(target.bucket_count()),
        copies_(std::make_unique_for_overwrite<Copy[]>(source.size_ + 1)),
        changes_(target.changes()),
        changes_of_source_(source.changes()),
        was_empty_(target.empty()) {
    copies_[0] = {};
  }

  /// Inserts the source's elements in its order, until the host changes the source. Calls
  /// `take_value(copy, element)` where a key was inserted or found, and `insert(element)` for those
  /// that it leaves to the caller. What these throw, and what the host does, passes on; the
  /// elements before are in the copy then. O(n).
  template <class TakeValue, class Insert>
  void run(TakeValue take_value, Insert insert) {
    const InUse use(source_);
    for (Walk walk = source_.walk_all(); walk.gather();) {
      const std::span<const NodeLink> nodes = walk.gathered();
      try {
        hash_ahead(nodes);
      } catch (...) {
        copy(nodes.first(hashed_), take_value, insert);
        throw;
      }
      if (!copy(nodes, take_value, insert)) return;
    }
  }

 private:
  // An element of the copy. They are numbered from 1 on, in the order in which they came.
  struct Copy {
    std::uint32_t hash;
    NodeLink node;
  };

  bool source_has_changed() const { return source_.changes() != changes_of_source_; }
  bool is_disturbed() const {
    return !was_empty_ || target_.changes() != changes_ || source_has_changed();
  }

  // As many of the nodes as can be.
  ZRB_PROTECT_STACK void hash_ahead(std::span<const NodeLink> nodes) {
    hashed_ = 0;
    for (const NodeLink link : nodes) {
      if (is_disturbed()) return;
      const std::optional<std::uint32_t> hash =
          Hash{}.shared_with_equals(source_.element(link).key);
      if (!hash) return;
      hashes_[hashed_++] = *hash;
      prefetch(&head_for(*hash));
    }
    if (target_.size_ >= cached_elements) prefetch_chains();
  }

  // What comparisons with the first key of each chain will touch.
  ZRB_ALWAYS_INLINE void prefetch_chains() {
    NodeLink firsts[Walk::capacity];
    for (std::uint32_t i = 0; i < hashed_; ++i) {
      firsts[i] = head_for(hashes_[i]);
      prefetch(readable_node_at(firsts[i]));
    }
    for (std::uint32_t i = 0; i < hashed_; ++i) {
      const auto& first = *static_cast<const Element*>(readable_node_at(firsts[i]));
      prefetch_held(first.key);
      prefetch(readable_node_at(first.next));
    }
  }

  // False when the source has changed: who knows what its walk would come to.
  template <class TakeValue, class Insert>
  bool copy(std::span<const NodeLink> nodes, TakeValue take_value, Insert insert) {
    for (std::uint32_t i = 0; i < nodes.size(); ++i) {
      const Element& element = source_.element(nodes[i]);
      Element* const copied = i < hashed_ ? append(element.key, hashes_[i]) : nullptr;
      if (copied != nullptr) {
        take_value(*copied, element);
      } else {
        insert(element);
      }
      if (source_has_changed()) return false;
    }
    return true;
  }

  // The element with the next key, mostly a new one with an empty value; null, and nothing is
  // added, when that cannot be told.
  Element* append(const Key& key, std::uint32_t hash) {
    if (is_disturbed() || !goes_on_in_source(hash)) return nullptr;
    if (target_.size_ >= target_.bucket_count()) grow();
    const bool may_be_there = has_met_in_bucket(hash);
    NodeLink& head = head_for(hash);
    for (NodeLink link = head; link != no_node; link = target_.element(link).next) {
      Element& present = target_.element(link);
      bool equal = false;
      if (may_be_there) {
        equal = Equal{}(present.key, key);
      } else {
        Equal::leave_locks(present.key, key);
      }
      if (is_disturbed()) return nullptr;
      if (equal) return &present;
    }
    const NodeLink node = target_.create(key);
    if (is_disturbed()) {
      destroy_entry<Element>(target_.memory_, node);
      return nullptr;
    }
    Element& added = target_.link(head, node);
    changes_ = target_.changes();
    copies_[target_.size_] = {hash, node};
    return &added;
  }

  NodeLink& head_for(std::uint32_t hash) { return target_.buckets_[target_.buckets_.of(hash)]; }

  // Whether a key with this hash can come next: none from a bucket that lies behind.
  bool goes_on_in_source(std::uint32_t hash) {
    const std::uint32_t bucket = source_.buckets_.of(hash);
    if (bucket < source_bucket_) return false;
    if (bucket > source_bucket_) {
      source_bucket_ = bucket;
      first_of_bucket_ = target_.size_ + 1;
    }
    return true;
  }

  // Whether a key from the bucket of the source in which this one lies had the same hash.
  bool has_met_in_bucket(std::uint32_t hash) const {
    for (std::uint32_t number = first_of_bucket_; number <= target_.size_; ++number) {
      if (copies_[number].hash == hash) return true;
    }
    return false;
  }

  // Growth that hashes nothing. Until the end, links hold the numbers of elements, by which their
  // hashes are found.
  [[gnu::noinline]] void grow() {
    const std::uint32_t size = target_.size_;
    const GrowthOrder order(first_bucket_count_, size + 1);
    Buckets larger(order.final_count());
    for (std::uint32_t number = 1; number <= size; ++number) {
      const Copy& newer = copies_[number];
      NodeLink* place = &larger[larger.of(newer.hash)];
      while (*place != no_node &&
             !order.is_newer_first(number - 1, newer.hash, copies_[*place].hash)) {
        place = &target_.element(copies_[*place].node).next;
      }
      target_.element(newer.node).next = *place;
      *place = number;
    }
    for (std::uint32_t number = 1; number <= size; ++number) {
      NodeLink& next = target_.element(copies_[number].node).next;
      next = copies_[next].node;
    }
    for (std::uint32_t bucket = 0; bucket < larger.count(); ++bucket) {
      larger[bucket] = copies_[larger[bucket]].node;
    }
    target_.buckets_.swap(larger);
    target_.note_change();
    changes_ = target_.changes();
  }

  HashedStorage& target_;
  HashedStorage& source_;
  const std::uint32_t first_bucket_count_;
  const std::unique_ptr<Copy[]> copies_;
  std::uint32_t hashes_[Walk::capacity];  // of the keys at which the walk is
  std::uint32_t hashed_ = 0;              // how many of them
  std::uint32_t source_bucket_ = 0;       // of the last key
  std::uint32_t first_of_bucket_ = 1;     // the number of the first element from it
  std::uint32_t changes_;                 // when the last key was inserted
  const std::uint32_t changes_of_source_;
  const bool was_empty_;
};

#endif
