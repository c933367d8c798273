// What only maps do with a key: read, assign, look up with a default, remove.
#ifndef ZRB_PLUGIN_MAPS_MAP_OPERATIONS_H
#define ZRB_PLUGIN_MAPS_MAP_OPERATIONS_H

#include <cstdint>
#include <utility>

#include "containers/keyed_access.h"
#include "keys/hints.h"

/// Costs are O(1) hashed, O(log n) ordered. A map without storage raises "Map not initialized".
template <class C>
struct MapOperations : private KeyedAccess<C> {
  using KeyHost = typename C::KeyHost;
  using ValueHost = typename C::ValueHost;
  using StoredValue = typename C::StoredValue;
  using Storage = typename C::Storage;

  /// The key's value; an absent key raises "KeyNotFoundException" and reads as nil or 0.
  static ValueHost getValue(REALobject instance, KeyHost key) {
    auto* storage = storage_or_raise<C>(instance);
    if (storage == nullptr) return {};
    const typename C::ElementUse use(*storage);
    const auto position = find(*storage, key);
    if (position.is_end()) {
      raise_key_not_found();
      return {};
    }
    return C::Value::hand_out(position.entry().value);
  }

  /// Gives the key this value; an absent key is added, of a present one the stored key stays. Nil
  /// is a value like any other. When the host throws while the value is locked, an added key stays,
  /// with a nil value.
  static void setValue(REALobject instance, KeyHost key, ValueHost value) {
    auto* storage = storage_or_raise<C>(instance);
    if (storage == nullptr) return;
    prefetch_held(value);  // which is locked when the key has been found
    change_storage<C>(instance, *storage, [&] {
      const typename C::ElementUse use(*storage);
      assign(*storage, typename C::KeyProbe(key), value);
    });
  }

  /// The key's value, or `default_value` for an absent key, which is not added.
  static ValueHost lookup(REALobject instance, KeyHost key, ValueHost default_value) {
    auto* storage = storage_or_raise<C>(instance);
    if (storage == nullptr) return {};
    const typename C::ElementUse use(*storage);
    if constexpr (requires { storage->value_or(key, default_value); }) {
      return storage->value_or(key, default_value);
    } else {
      const auto position = find(*storage, key);
      if (position.is_end()) return C::Value::hand_out(StoredValue(default_value));
      return C::Value::hand_out(position.entry().value);
    }
  }

  /// Removes the key with its value; 1 when it was there, else 0.
  static std::int32_t erase3(REALobject instance, KeyHost key) {
    auto* storage = storage_or_raise<C>(instance);
    if (storage == nullptr) return 0;
    return KeyedAccess<C>::remove_key(instance, *storage, key);
  }

  /// Finds or adds the key and replaces its value, as assignment by a program does; for the other
  /// map routines too. The caller has the storage in use.
  static void assign(Storage& storage, const typename C::KeyProbe& key, ValueHost value) {
    replace_value(storage.insert_unique(key).entry, value);
  }

  static void replace_value(typename C::Element& entry, ValueHost value) {
    StoredValue replacement(value);
    std::swap(entry.value, replacement);
  }

 private:
  static typename C::Position find(Storage& storage, KeyHost key) {
    const typename C::KeyProbe probe(key);
    return storage.find(probe);
  }
};

#endif
