// What distinguishes one container class from another, as a type.
#ifndef ZRB_PLUGIN_CONTAINERS_CONTAINER_CLASS_H
#define ZRB_PLUGIN_CONTAINERS_CONTAINER_CLASS_H

#include <type_traits>

#include "diagnosis/watched_key.h"
#include "host/fixed_string.h"
#include "keys/elements.h"
#include "keys/hashed_storage.h"
#include "keys/ordered_storage.h"

struct Hashed {
  static constexpr bool is_ordered = false;
  template <class Key, class Value>
  using Engine = HashedStorage<diagnosis::KeyInStorage<typename Key::Stored>,
                               typename Value::Stored, typename Key::Hash, typename Key::Equal>;
};

struct Ordered {
  static constexpr bool is_ordered = true;
  template <class Key, class Value>
  using Engine = OrderedStorage<diagnosis::KeyInStorage<typename Key::Stored>,
                                typename Value::Stored, typename Key::Less>;
};

/// A set when `ValueElement` is NoElement, else a map.
template <FixedString Name, FixedString IteratorName, class KeyElement, class ValueElement,
          class Kind>
struct ContainerClass {
  static constexpr FixedString name = Name;
  static constexpr FixedString iterator_name = IteratorName;
  static constexpr bool is_map = !std::is_same_v<ValueElement, NoElement>;
  static constexpr bool is_ordered = Kind::is_ordered;

  using Key = KeyElement;
  using Value = ValueElement;
  using KeyHost = typename Key::Host;
  using ValueHost = typename Value::Host;
  using StoredKey = typename Key::Stored;
  using StoredValue = typename Value::Stored;
  using KeyProbe = typename Key::Probe;
  using Storage = typename Kind::template Engine<Key, Value>;
  using Position = typename Storage::Position;
  using Element = typename Storage::Element;
  using ElementUse = typename Storage::ElementUse;
  /// Guards what begins with a KeyProbe, which locks its key: that may run host code, too.
  using KeyUse = typename Storage::KeyUse;
};

#endif
