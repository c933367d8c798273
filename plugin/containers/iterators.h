// Iterators: host objects that each name one position in one container.
#ifndef ZRB_PLUGIN_CONTAINERS_ITERATORS_H
#define ZRB_PLUGIN_CONTAINERS_ITERATORS_H

#include <cstddef>
#include <new>
#include <utility>

#include "containers/instance.h"
#include "containers/iterator_checks.h"
#include "host/services.h"

/// The data of an iterator instance, zeroed by the host. `position` is null until a container has
/// made the iterator, and points to the record behind it from then on: so an iterator costs no heap
/// block and leaves nothing behind. It holds no lock on its container and stays valid only as long
/// as the element that it names.
template <class C>
struct IteratorData {
  typename C::Position* position;
  alignas(typename C::Position) unsigned char record[sizeof(typename C::Position)];
};

/// What registration rounds an iterator's declared size up to; see `declared_iterator_size`.
inline constexpr std::size_t registered_iterator_size = sizeof(void*) == 4 ? 16 : 32;

/// The iterator's position; null when it has none, as in one that a program made with New. Nothing
/// but an iterator points to its own record: so an object of another class, which holds something
/// else in that place, has no position either.
template <class C>
typename C::Position* position_of(REALobject iterator) {
  auto& data = instance_data<IteratorData<C>>(iterator, ClassRecord<C>::iterator);
  const void* const record = data.record;
  return data.position == record ? data.position : nullptr;
}

/// A new iterator object at `position`, owned by the caller; nil when the host refuses it.
template <class C>
[[gnu::noinline]] REALobject new_iterator(const typename C::Position& position) {
  static_assert(sizeof(IteratorData<C>) <= registered_iterator_size);
  REALobject iterator = REALnewInstance(C::iterator_name.text);
  if (iterator == nullptr) return nullptr;
  auto& data = instance_data<IteratorData<C>>(iterator, ClassRecord<C>::iterator);
  data.position = new (data.record) typename C::Position(position);
  IteratorChecks<C>::note_made(*data.position);
  return iterator;
}

/// Routines of the container that make iterators, and that remove through them. Without storage
/// they raise "not initialized" and return nil.
template <class C>
struct ContainerIterators {
  using Storage = typename C::Storage;
  using Position = typename C::Position;
  using Checks = IteratorChecks<C>;

  /// O(1); hashed O(bucket count) while the low buckets are empty.
  [[gnu::cold]] static REALobject getbegin(REALobject instance) {
    auto* storage = storage_or_raise<C>(instance);
    return storage == nullptr ? nullptr : new_iterator<C>(storage->begin());
  }

  /// The position behind the last element. O(1).
  [[gnu::cold]] static REALobject getend(REALobject instance) {
    auto* storage = storage_or_raise<C>(instance);
    return storage == nullptr ? nullptr : new_iterator<C>(storage->end());
  }

  // At the end when there is no such element. O(1) hashed, O(log n) ordered.
  static REALobject find(REALobject instance, typename C::KeyHost key) {
    return search(instance, key, [](Storage& storage, const auto& k) { return storage.find(k); });
  }
  static REALobject lower_bound(REALobject instance, typename C::KeyHost key) {
    return search(instance, key,
                  [](Storage& storage, const auto& k) { return storage.lower_bound(k); });
  }
  static REALobject upper_bound(REALobject instance, typename C::KeyHost key) {
    return search(instance, key,
                  [](Storage& storage, const auto& k) { return storage.upper_bound(k); });
  }

  /// Removes the element that `pos` names; `pos` must not be used afterwards. Nothing happens for a
  /// nil iterator, one without a position, at the end, or of another container. O(1) hashed, O(log
  /// n) ordered.
  [[gnu::cold]] static void erase1(REALobject instance, REALobject pos) {
    auto* storage = storage_or_raise<C>(instance);
    if (storage == nullptr || pos == nullptr) return;
    const Position* position = position_of<C>(pos);
    if (position == nullptr) return;
    if constexpr (diagnosis::enabled) {
      if (!Checks::may_remove(*storage, *position)) return;
    }
    const Position place = *position;
    const InUse use(*storage);
    // Unlocked when the element is gone: host code that runs then could remove it itself.
    const TakenCaches dropped = take_caches<C>(instance);
    if (is_in(*storage, place)) storage->erase(place);
  }

  /// Removes the elements from `first` up to but not including `last`, in iteration order. Nothing
  /// is removed where either is of another container.
  [[gnu::cold]] static void erase2(REALobject instance, REALobject first, REALobject last) {
    auto* storage = storage_or_raise<C>(instance);
    if (storage == nullptr || first == nullptr || last == nullptr) return;
    const Position* from = position_of<C>(first);
    const Position* to = position_of<C>(last);
    if (from == nullptr || to == nullptr) return;
    if constexpr (diagnosis::enabled) {
      if (!Checks::may_remove(*storage, *from, *to)) return;
    }
    const Position range[] = {*from, *to};
    const InUse use(*storage);
    const TakenCaches dropped = take_caches<C>(instance);  // as above
    if (is_in(*storage, range[0]) && is_in(*storage, range[1])) storage->erase(range[0], range[1]);
  }

 private:
  // The end of a hashed container is that of all of them.
  static bool is_in(Storage& storage, const Position& position) {
    return &position.storage() == &storage || position == storage.end();
  }

  template <class Search>
  static REALobject search(REALobject instance, typename C::KeyHost key, Search search_storage) {
    auto* storage = storage_or_raise<C>(instance);
    if (storage == nullptr) return nullptr;
    Position position;
    {
      const typename C::KeyUse use(*storage);
      const typename C::KeyProbe probe(key);
      position = search_storage(*storage, probe);
    }
    return new_iterator<C>(position);
  }
};

/// Routines of the iterator itself. One without a position raises "Iterator is nil" (sets) or
/// "Iterator not initialized" (maps) and reads as nil or 0. At the end there is nothing to read,
/// nothing to assign to and nowhere to go on to: the neutral value, and nothing done.
template <class C>
struct IteratorObject {
  using Position = typename C::Position;
  using Checks = IteratorChecks<C>;

  /// To the next element, or to the end. O(1) on average, hashed O(bucket count) at worst.
  static void MoveNext(REALobject iterator) {
    Position* position = position_if(iterator, [](const auto& at) { return Checks::may_step(at); });
    if (position == nullptr) return;
    C::Storage::advance(*position);
    Checks::note_moved(*position);
  }

  /// To the element before; from the end to the last element. O(1) on average.
  static void MovePrev(REALobject iterator) {
    Position* position =
        position_if(iterator, [](const auto& at) { return Checks::may_step_back(at); });
    if (position == nullptr) return;
    C::Storage::retreat(*position);
    Checks::note_moved(*position);
  }

  static typename C::KeyHost GetKey(REALobject iterator) {
    Position* position = element_position(iterator, "Key");
    if (position == nullptr) return {};
    const typename C::ElementUse use(position->storage());
    return C::Key::hand_out(position->entry().key);
  }

  static typename C::ValueHost GetValue(REALobject iterator) {
    Position* position = element_position(iterator, "Value");
    if (position == nullptr) return {};
    const typename C::ElementUse use(position->storage());
    return C::Value::hand_out(position->entry().value);
  }

  /// Replaces the element's value. The container's cached arrays keep the old one: an iterator does
  /// not know its container.
  static void SetValue(REALobject iterator, typename C::ValueHost value) {
    Position* position = element_position(iterator, "Value");
    if (position == nullptr) return;
    const typename C::ElementUse use(position->storage());
    auto& element = position->entry();
    typename C::StoredValue replacement(value);
    std::swap(element.value, replacement);
  }

  // Whether both name the same element, or both the end. A nil `other` raises and gives false for
  // both questions, and so does, without an exception, an iterator that has no position.
  static bool isEqual(REALobject iterator, REALobject other) {
    const auto [mine, theirs] = both_positions(iterator, other);
    if constexpr (diagnosis::enabled) {
      if (!Checks::may_compare(mine, theirs, "isEqual")) return false;
    }
    return mine != nullptr && theirs != nullptr && *mine == *theirs;
  }
  static bool isNotEqual(REALobject iterator, REALobject other) {
    const auto [mine, theirs] = both_positions(iterator, other);
    if constexpr (diagnosis::enabled) {
      if (!Checks::may_compare(mine, theirs, "isNotEqual")) return false;
    }
    return mine != nullptr && theirs != nullptr && !(*mine == *theirs);
  }

 private:
  struct TwoPositions {
    const Position* mine = nullptr;
    const Position* theirs = nullptr;
  };

  static Position* position_or_raise(REALobject iterator) {
    Position* position = position_of<C>(iterator);
    if (position == nullptr) [[unlikely]] {
      C::is_map ? raise_iterator_not_initialized() : raise_iterator_is_nil();
    }
    return position;
  }

  // The position, if it may be used, which only a diagnostic build asks.
  template <class MayUse>
  static Position* position_if(REALobject iterator, [[maybe_unused]] MayUse may_use) {
    Position* position = position_or_raise(iterator);
    if constexpr (diagnosis::enabled) {
      if (position != nullptr && !may_use(*position)) return nullptr;
    }
    return position;
  }

  // The position, unless there is no element; `part` of it will be used.
  static Position* element_position(REALobject iterator, [[maybe_unused]] const char* part) {
    Position* position =
        position_if(iterator, [=](const auto& at) { return Checks::may_use_element(at, part); });
    return position == nullptr || position->is_end() ? nullptr : position;
  }

  static TwoPositions both_positions(REALobject iterator, REALobject other) {
    if (other == nullptr) {
      raise_other_iterator_is_nil();
      return {};
    }
    return {position_of<C>(iterator), position_of<C>(other)};
  }
};

#endif
