// What only sets do: be made from an array, take keys, and answer for keys.
#ifndef ZRB_PLUGIN_CONTAINERS_SETS_H
#define ZRB_PLUGIN_CONTAINERS_SETS_H

#include <cstdint>
#include <type_traits>

#include "containers/keyed_access.h"
#include "host/arrays.h"

template <class C>
struct SetOperations : private KeyedAccess<C> {
  using Key = typename C::Key;
  using KeyHost = typename C::KeyHost;
  using StoredKey = typename C::StoredKey;

  /// A set of an array's elements; of equal ones the first stays. A nil array raises, and the set
  /// stays without storage. O(n) hashed, O(n log n) ordered.
  [[gnu::cold]] static void theMapConstructor2(REALobject instance, REALarray keys) {
    construct(instance, keys,
              [](REALarray array, std::int32_t index) { return fetch<Key>(array, index); });
  }

  /// The same for a variant set and an array of strings, each of which becomes a variant.
  [[gnu::cold]] static void theMapConstructor3(REALobject instance, REALarray keys) {
    construct(instance, keys, [](REALarray array, std::int32_t index) {
      StoredKey key;
      {
        const RBString string = fetch<StringElement>(array, index);
        key = StoredKey::adopt(REALnewVariant(string.get()));
      }
      return key;
    });
  }

  /// Adds the key unless an equal one is there, which then stays. O(1) hashed, O(log n) ordered.
  static void insert(REALobject instance, KeyHost key) {
    auto* storage = storage_or_raise<C>(instance);
    if (storage == nullptr) return;
    const TakenCaches dropped = take_caches<C>(instance);  // also when nothing is inserted
    const typename C::KeyUse use(*storage);
    const typename C::KeyProbe probe(key);
    storage->insert_unique(probe);
  }

  /// Removes the key; 1 when it was there, else 0. The caches go in any case, even when the set
  /// turns out to have no storage. O(1) hashed, O(log n) ordered.
  static std::int32_t erase3(REALobject instance, KeyHost key) {
    auto* storage = container_data<C>(instance).storage;
    if (storage != nullptr) return KeyedAccess<C>::remove_key(instance, *storage, key);
    drop_caches<C>(instance);
    raise_not_initialized<C>();
    return 0;
  }

 private:
  template <class Element>
  static typename Element::Stored fetch(REALarray array, std::int32_t index) {
    typename Element::Host element{};
    REALGetArrayValue(array, index, &element);
    if constexpr (std::is_same_v<Element, IntegerElement>) {
      return element;
    } else {
      return Element::Stored::adopt(element);
    }
  }

  template <class Fetch>
  [[gnu::cold]] static void construct(REALobject instance, REALarray keys, Fetch fetch_key) {
    if (keys == nullptr) return raise_values_array_is_nil();
    const LentObject held_instance(instance);
    const LentArray held_keys(keys);
    install_fresh_storage<C>(instance);
    const std::int32_t upper_bound = REALGetArrayUBound(keys);
    for (std::int64_t index = 0; index <= upper_bound; ++index) {  // which may be the largest index
      const StoredKey key = fetch_key(keys, static_cast<std::int32_t>(index));
      if (container_data<C>(instance).storage == nullptr) return;  // destroyed by what it called
      insert(instance, C::Key::lend(key));
    }
  }
};

#endif
