// Maps made from maps.
#ifndef ZRB_PLUGIN_MAPS_MAP_COPY_H
#define ZRB_PLUGIN_MAPS_MAP_COPY_H

#include "containers/instance.h"
#include "host/services.h"
#include "keys/hashed_copier.h"
#include "maps/map_operations.h"

template <class C>
struct MapCopy {
  /// Replaces this map's content by a copy of `other`'s. The former content goes first: a map
  /// copied into itself ends empty, and so does one whose `other` has no storage, which raises
  /// "Map not initialized". A nil `other` raises and changes nothing. O(n) hashed, O(n log n)
  /// ordered.
  [[gnu::cold]] static void theMapConstructorClone(REALobject instance, REALobject other) {
    if (other == nullptr) return raise_other_map_is_nil();
    const LentObject held_instance(instance);
    const LentObject held_other(other);
    replace_storage<C>(instance);
    auto* source = storage_or_raise<C>(other);
    auto* target = container_data<C>(instance).storage;
    if (source != nullptr && target != nullptr) copy(*source, *target);
  }

  /// A new map with the same content, owned by the caller; nil when the host refuses the object.
  [[gnu::cold]] static REALobject cloneMap(REALobject instance) {
    auto* source = storage_or_raise<C>(instance);
    if (source == nullptr) return nullptr;
    const InUse use(*source);
    auto clone = LockedObject::adopt(REALnewInstance(C::name.text));
    if (clone.get() == nullptr) return nullptr;
    install_fresh_storage<C>(clone.get());
    copy(*source, *container_data<C>(clone.get()).storage);
    return clone.detach();
  }

 private:
  using Element = typename C::Element;

  // Entry by entry, as a program would assign them; faster where nobody could tell. To an empty
  // tree the entries come in its own order, so that none needs to be compared, and in a table few
  // texts do.
  [[gnu::cold]] static void copy(typename C::Storage& source, typename C::Storage& target) {
    if constexpr (C::Storage::plain_elements) {
      // Host code that ran when the former caches went may have filled the fresh storage again.
      if (target.empty()) return target.copy_from(source);
    }
    const InUse use(target);
    if constexpr (C::is_ordered && !C::Storage::plain_elements) {
      typename C::Storage::Appender appender(target);
      source.for_each([&](const Element& element) {
        if (auto* copied = appender.append(element.key)) {
          take_value(*copied, element);
        } else {
          assign(target, element);
        }
        return true;
      });
    } else if constexpr (requires { requires C::Storage::has_copier; }) {
      typename C::Storage::Copier(target, source).run(take_value, [&](const Element& element) {
        assign(target, element);
      });
    } else {
      source.for_each([&](const Element& element) {
        assign(target, element);
        return true;
      });
    }
  }

  static void take_value(Element& copied, const Element& element) {
    MapOperations<C>::replace_value(copied, C::Value::lend(element.value));
  }

  static void assign(typename C::Storage& target, const Element& element) {
    MapOperations<C>::assign(target, typename C::KeyProbe(C::Key::lend(element.key)),
                             C::Value::lend(element.value));
  }
};

#endif
