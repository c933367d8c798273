// What every container can do: be made, destroyed and cleared, and tell its size.
#ifndef ZRB_PLUGIN_CONTAINERS_CONTAINER_OBJECT_H
#define ZRB_PLUGIN_CONTAINERS_CONTAINER_OBJECT_H

#include <cstdint>
#include <utility>

#include "containers/instance.h"

/// Routines as the host calls them. A member of an instance without storage raises "not
/// initialized" and returns 0 or false, unless told otherwise.
template <class C>
struct ContainerObject {
  /// Gives the instance empty storage. A second call replaces the storage and leaves the former
  /// one unreleased: a constructor does not look at what is there.
  [[gnu::cold]] static void theMapConstructor(REALobject instance) {
    install_fresh_storage<C>(instance);
  }

  /// Called by the host when the instance dies; an instance without storage is fine. O(n).
  [[gnu::cold]] static void theMapDestructor(REALobject instance) {
    auto& storage = container_data<C>(instance).storage;
    if constexpr (diagnosis::enabled) {
      diagnosis::IteratorBook::instance().storage_ends(storage,
                                                       diagnosis::Loss::container_destroyed);
    }
    const DoomedStorage<typename C::Storage> doomed{std::exchange(storage, nullptr)};
    drop_caches<C>(instance);
  }

  /// Removes every element; a hashed container keeps its bucket count. O(n).
  [[gnu::cold]] static void clear(REALobject instance) {
    auto* storage = storage_or_raise<C>(instance);
    if (storage == nullptr) return;
    const TakenCaches dropped = take_caches<C>(instance);
    if constexpr (diagnosis::enabled) diagnosis::IteratorBook::instance().elements_end(storage);
    storage->clear();
  }

  // Property getters; the host passes the property's parameter, which says nothing here. O(1).

  static std::int32_t GetMaxSize(REALobject instance, std::int32_t) {
    auto* storage = storage_or_raise<C>(instance);
    return storage == nullptr ? 0 : as_integer(storage->max_size());
  }

  static std::int32_t GetSize(REALobject instance, std::int32_t) {
    auto* storage = storage_or_raise<C>(instance);
    return storage == nullptr ? 0 : as_integer(storage->size());
  }

  static std::int32_t GetBucketCount(REALobject instance, std::int32_t) {
    auto* storage = storage_or_raise<C>(instance);
    return storage == nullptr ? 0 : as_integer(storage->bucket_count());
  }

  static bool GetEmpty(REALobject instance, std::int32_t) {
    auto* storage = storage_or_raise<C>(instance);
    return storage != nullptr && storage->empty();
  }

 private:
  // The host's Integer is signed: the largest unsigned number reads as -1.
  static std::int32_t as_integer(std::uint32_t number) { return static_cast<std::int32_t>(number); }
};

#endif
