// Questions about one key, which sets and maps answer alike.
#ifndef ZRB_PLUGIN_CONTAINERS_KEYED_ACCESS_H
#define ZRB_PLUGIN_CONTAINERS_KEYED_ACCESS_H

#include <cstdint>

#include "containers/instance.h"

/// Costs are O(1) hashed, O(log n) ordered.
template <class C>
struct KeyedAccess {
  /// How many elements have this key: 1 or 0.
  [[gnu::noinline]] static std::int32_t count(REALobject instance, typename C::KeyHost key) {
    auto* storage = storage_or_raise<C>(instance);
    if (storage == nullptr) return 0;
    const typename C::KeyUse use(*storage);
    const typename C::KeyProbe probe(key);
    return static_cast<std::int32_t>(storage->count(probe));
  }

  /// Whether an element has this key.
  static bool contains(REALobject instance, typename C::KeyHost key) {
    return count(instance, key) != 0;
  }

 protected:
  /// Drops the caches and removes the element with this key; how many went.
  static std::int32_t remove_key(REALobject instance, typename C::Storage& storage,
                                 typename C::KeyHost key) {
    return change_storage<C>(instance, storage, [&] {
      const typename C::ElementUse use(storage);
      const typename C::KeyProbe probe(key);
      return static_cast<std::int32_t>(storage.erase(probe));
    });
  }
};

#endif
