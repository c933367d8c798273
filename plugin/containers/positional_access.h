// Elements by index, and whole contents as host arrays.
//
// Both are served from arrays that the instance keeps: built at the first such call, handed out
// as they are, and dropped by the next change of content. So a program that reads `Key(i)` in a
// loop pays for one walk through the container, whatever the size.
#ifndef ZRB_PLUGIN_CONTAINERS_POSITIONAL_ACCESS_H
#define ZRB_PLUGIN_CONTAINERS_POSITIONAL_ACCESS_H

#include <cstdint>

#include "containers/instance.h"
#include "host/arrays.h"

/// Indices count from 0 in iteration order.
template <class C>
struct PositionalAccess {
  using Key = typename C::Key;
  using Value = typename C::Value;
  using ContainerEntry = Entry<typename C::StoredKey, typename C::StoredValue>;

  /// All keys, or all values, as the cached array itself, with one lock for the caller: a program
  /// that changes it changes the cache. Nil, without an exception, for an instance without storage.
  /// O(n) after a change, else O(1).
  static REALarray rbGetKeys(REALobject instance) {
    BuildArrays(instance);
    return LockedArray(container_data<C>(instance).keysCache).detach();
  }
  static REALarray rbGetValues(REALobject instance) {
    BuildArrays(instance);
    return LockedArray(container_data<C>(instance).valuesCache).detach();
  }

  /// The key, or value, at `index`, read from the cached array: an index out of range is the host's
  /// to report. Where no array could be made, a set gives nil and a map counts its elements out;
  /// nil behind the last.
  static typename C::KeyHost KeyAtIndex(REALobject instance, std::int32_t index) {
    return at<Key>(instance, index, &ContainerData<C>::keysCache, &ContainerEntry::key);
  }
  static typename C::ValueHost ValueAtIndex(REALobject instance, std::int32_t index) {
    return at<Value>(instance, index, &ContainerData<C>::valuesCache, &ContainerEntry::value);
  }

  /// Inserts all keys, or all values, in iteration order before what `target` holds. Caches are
  /// neither used nor changed. O(n) insertions.
  static void rbGetKeys2(REALobject instance, REALarray target) {
    insert_all<Key>(instance, target, &ContainerEntry::key);
  }
  static void rbGetValues2(REALobject instance, REALarray target) {
    insert_all<Value>(instance, target, &ContainerEntry::value);
  }

 private:
  // Makes the caches valid, unless the instance has no storage or the host no array.
  static void BuildArrays(REALobject instance) {
    auto& data = container_data<C>(instance);
    if (data.keysCache != nullptr || data.storage == nullptr) return;
    const auto upper_bound = static_cast<std::int32_t>(data.storage->size()) - 1;
    auto keys = LockedArray::adopt(Key::create_array(upper_bound));
    if (keys.get() == nullptr) return;
    LockedArray values;
    if constexpr (C::is_map) {
      values = LockedArray::adopt(Value::create_array(upper_bound));
      if (values.get() == nullptr) return;
    }
    std::int32_t index = 0;
    data.storage->for_each([&](const ContainerEntry& entry) {
      store<Key>(keys.get(), index, entry.key);
      if constexpr (C::is_map) store<Value>(values.get(), index, entry.value);
      ++index;
      return true;
    });
    data.keysCache = keys.detach();
    if constexpr (C::is_map) data.valuesCache = values.detach();
  }

  template <class Element>
  static void store(REALarray array, std::int32_t index, const typename Element::Stored& element) {
    const typename Element::Stored held(element);
    REALSetArrayValue(array, index, Element::lend(held));
  }

  template <class Element>
  static typename Element::Host at(REALobject instance, std::int32_t index,
                                   REALarray ContainerData<C>::*cache,
                                   typename Element::Stored ContainerEntry::*part) {
    BuildArrays(instance);
    typename Element::Host element{};
    if (REALarray array = container_data<C>(instance).*cache; array != nullptr) {
      REALGetArrayValue(array, index, &element);
    } else if constexpr (C::is_map) {
      auto* storage = storage_or_raise<C>(instance);
      if (storage == nullptr || index < 0) return element;
      storage->for_each([&](const ContainerEntry& entry) {
        if (index-- > 0) return true;
        element = Element::hand_out(entry.*part);
        return false;
      });
    }
    return element;
  }

  template <class Element>
  static void insert_all(REALobject instance, REALarray target,
                         typename Element::Stored ContainerEntry::*part) {
    if (target == nullptr) return raise_array_is_nil();
    auto* storage = storage_or_raise<C>(instance);
    if (storage == nullptr) return;
    std::int32_t index = 0;
    storage->for_each([&](const ContainerEntry& entry) {
      const typename Element::Stored held(entry.*part);
      REALInsertArrayValue(target, index++, Element::lend(held));
      return true;
    });
  }
};

#endif
