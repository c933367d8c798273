// The data of a container instance: its storage, and host arrays that cache its content.
#ifndef ZRB_PLUGIN_CONTAINERS_INSTANCE_H
#define ZRB_PLUGIN_CONTAINERS_INSTANCE_H

#include <memory>
#include <utility>

#include "containers/container_class.h"
#include "containers/taken_caches.h"
#include "diagnosis/iterator_book.h"
#include "diagnosis/switch.h"
#include "host/class_record.h"
#include "host/errors.h"
#include "host/locked_handle.h"

/// The host hands this out zeroed. `storage` is null until a constructor has run; the instance owns
/// it. Each cache holds one lock and is null when it is not valid: after every change of content.
template <class Storage>
struct SetData {
  Storage* storage;
  REALarray keysCache;
};

template <class Storage>
struct MapData {
  Storage* storage;
  REALarray keysCache;
  REALarray valuesCache;
};

template <class C>
using ContainerData =
    std::conditional_t<C::is_map, MapData<typename C::Storage>, SetData<typename C::Storage>>;

template <class C>
ContainerData<C>& container_data(REALobject instance) {
  return instance_data<ContainerData<C>>(instance, ClassRecord<C>::container);
}

template <class C>
void raise_not_initialized() {
  C::is_map ? raise_map_not_initialized() : raise_set_not_initialized();
}

/// The instance's storage; null, with the exception of the class raised, when it has none.
template <class C>
typename C::Storage* storage_or_raise(REALobject instance) {
  auto* storage = container_data<C>(instance).storage;
  if (storage == nullptr) [[unlikely]]
    raise_not_initialized<C>();
  return storage;
}

/// Makes the instance's caches invalid: takes them out. Its slots are empty before the arrays are
/// unlocked, since that may run host code, which must not find them.
template <class C>
[[nodiscard]] TakenCaches take_caches(REALobject instance) {
  auto& data = container_data<C>(instance);
  REALarray* values = nullptr;
  if constexpr (C::is_map) values = &data.valuesCache;
  return TakenCaches(data.keysCache, values);
}

/// Keys and values are cached together.
template <class C>
bool has_caches(REALobject instance) {
  return container_data<C>(instance).keysCache != nullptr;
}

template <class C>
void drop_caches(REALobject instance) {
  if (!has_caches<C>(instance)) [[likely]]
    return;
  const TakenCaches dropped = take_caches<C>(instance);
}

/// Drops the caches, then calls `change`, which changes the storage. Dropping may run host code, in
/// which the instance can die: the storage stays usable until `change` has returned.
template <class C, class Change>
auto change_storage(REALobject instance, typename C::Storage& storage, Change change) {
  if (!has_caches<C>(instance)) [[likely]]
    return change();
  const InUse use(storage);
  drop_caches<C>(instance);
  return change();
}

/// Storage that is destroyed with all its elements when this dies. Not a unique_ptr: a host may
/// throw when an element is unlocked, and that passes on.
template <class Storage>
struct DoomedStorage {
  Storage* storage;
  ~DoomedStorage() noexcept(false) {
    if (storage != nullptr) destroy_storage(storage);
  }
};

/// Gives the instance fresh, empty storage; what was there is left as it is, unreleased. On
/// std::bad_alloc nothing has changed.
template <class C>
[[gnu::cold]] void install_fresh_storage(REALobject instance) {
  auto fresh = std::make_unique<typename C::Storage>();
  const TakenCaches dropped = take_caches<C>(instance);
  if constexpr (diagnosis::enabled) {
    diagnosis::IteratorBook::instance().storage_ends(container_data<C>(instance).storage,
                                                     diagnosis::Loss::content_replaced);
  }
  container_data<C>(instance).storage = fresh.release();
}

/// Gives the instance fresh, empty storage and destroys what was there. On std::bad_alloc nothing
/// has changed.
template <class C>
[[gnu::cold]] void replace_storage(REALobject instance) {
  auto fresh = std::make_unique<typename C::Storage>();
  const TakenCaches dropped = take_caches<C>(instance);
  auto& storage = container_data<C>(instance).storage;
  if constexpr (diagnosis::enabled) {
    diagnosis::IteratorBook::instance().storage_ends(storage, diagnosis::Loss::content_replaced);
  }
  const DoomedStorage<typename C::Storage> former{std::exchange(storage, fresh.release())};
}

#endif
