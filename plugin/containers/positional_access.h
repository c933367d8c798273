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
  using Element = typename C::Element;

  /// All keys, or all values, as the cached array itself, with one lock for the caller: a program
  /// that changes it changes the cache. Nil, without an exception, for an instance without storage.
  /// O(n) after a change, else O(1).
  [[gnu::cold]] static REALarray rbGetKeys(REALobject instance) {
    return array(instance, &ContainerData<C>::keysCache);
  }
  [[gnu::cold]] static REALarray rbGetValues(REALobject instance) {
    return array(instance, &ContainerData<C>::valuesCache);
  }

  /// The key, or value, at `index`, read from the cached array: an index out of range is the host's
  /// to report. Where no array could be made, a set gives nil and a map counts its elements out;
  /// nil behind the last.
  static typename C::KeyHost KeyAtIndex(REALobject instance, std::int32_t index) {
    return at<Key>(instance, index, &ContainerData<C>::keysCache, &Element::key);
  }
  static typename C::ValueHost ValueAtIndex(REALobject instance, std::int32_t index) {
    return at<Value>(instance, index, &ContainerData<C>::valuesCache, &Element::value);
  }

  /// Inserts all keys, or all values, in iteration order before what `target` holds. Caches are
  /// neither used nor changed. O(n) insertions.
  [[gnu::cold]] static void rbGetKeys2(REALobject instance, REALarray target) {
    insert_all<Key>(instance, target, &Element::key);
  }
  [[gnu::cold]] static void rbGetValues2(REALobject instance, REALarray target) {
    insert_all<Value>(instance, target, &Element::value);
  }

 private:
  // Makes the caches valid, unless the instance has no storage or the host no array. When the host
  // changes the container meanwhile, the arrays are begun again. The result holds the instance,
  // where host code ran, for as long as the caller looks at it.
  [[nodiscard, gnu::cold]] static LentObject BuildArrays(REALobject instance) {
    LentObject held_instance(instance);
    auto& data = container_data<C>(instance);
    for (int attempts = 0; attempts < search_attempts; ++attempts) {
      if (data.keysCache != nullptr || data.storage == nullptr || try_to_build_arrays(data)) break;
    }
    return held_instance;
  }

  [[gnu::cold]] static REALarray array(REALobject instance, REALarray ContainerData<C>::*cache) {
    LentObject held_instance;
    if (container_data<C>(instance).keysCache == nullptr) held_instance = BuildArrays(instance);
    return LockedArray(container_data<C>(instance).*cache).detach();
  }

  // False when the container changed meanwhile.
  [[gnu::cold]] static bool try_to_build_arrays(ContainerData<C>& data) {
    auto* storage = data.storage;
    const InUse use(*storage);
    const std::uint32_t changes_before = storage->changes();
    const auto upper_bound = static_cast<std::int32_t>(storage->size()) - 1;
    auto keys = LockedArray::adopt(Key::create_array(upper_bound));
    if (keys.get() == nullptr) return true;
    LockedArray values;
    if constexpr (C::is_map) {
      values = LockedArray::adopt(Value::create_array(upper_bound));
      if (values.get() == nullptr) return true;
    }
    if (storage->changes() != changes_before) return false;
    ArrayWriter<typename Key::Host> key_writer(keys.get());
    [[maybe_unused]] ArrayWriter<typename Value::Host> value_writer(values.get());
    std::int32_t index = 0;
    const bool complete = storage->for_each([&](const Element& element) {
      key_writer.set(index, Key::lend(element.key));  // a key stays while its storage is in use
      if constexpr (C::is_map) {
        const typename Value::Stored held(element.value);  // a value could be replaced meanwhile
        value_writer.set(index, Value::lend(held));
      }
      ++index;
      return true;
    });
    if (!complete || data.storage != storage || data.keysCache != nullptr) return false;
    data.keysCache = keys.detach();
    if constexpr (C::is_map) data.valuesCache = values.detach();
    return true;
  }

  template <class Kind, class Part>
  static typename Kind::Host at(REALobject instance, std::int32_t index,
                                REALarray ContainerData<C>::*cache, Part Element::*part) {
    if (REALarray array = container_data<C>(instance).*cache; array != nullptr) [[likely]]
      return element_of<Kind>(array, index);
    return at_in_new_array<Kind>(instance, index, cache, part);
  }

  template <class Kind>
  static typename Kind::Host element_of(REALarray array, std::int32_t index) {
    typename Kind::Host element{};
    REALGetArrayValue(array, index, &element);
    return element;
  }

  template <class Kind, class Part>
  [[gnu::cold]] static typename Kind::Host at_in_new_array(REALobject instance, std::int32_t index,
                                                           REALarray ContainerData<C>::*cache,
                                                           Part Element::*part) {
    const LentObject held_instance = BuildArrays(instance);
    if (REALarray array = container_data<C>(instance).*cache; array != nullptr)
      return element_of<Kind>(array, index);
    if constexpr (C::is_map) return count_out<Kind>(instance, index, part);
    return {};
  }

  template <class Kind, class Part>
  [[gnu::cold]] static typename Kind::Host count_out(REALobject instance, std::int32_t index,
                                                     Part Element::*part) {
    auto* storage = storage_or_raise<C>(instance);
    if (storage == nullptr || index < 0) return {};
    typename Kind::Host element{};
    storage->for_each([&](const Element& entry) {
      if (index-- > 0) return true;
      element = Kind::hand_out(entry.*part);
      return false;
    });
    return element;
  }

  template <class Kind, class Part>
  [[gnu::cold]] static void insert_all(REALobject instance, REALarray target, Part Element::*part) {
    if (target == nullptr) return raise_array_is_nil();
    auto* storage = storage_or_raise<C>(instance);
    if (storage == nullptr) return;
    const InUse use(*storage);
    const LentArray held_target(target);
    std::int32_t index = 0;
    storage->for_each([&](const Element& entry) {
      const typename Kind::Stored held(entry.*part);
      REALInsertArrayValue(target, index++, Kind::lend(held));
      return true;
    });
  }
};

#endif
