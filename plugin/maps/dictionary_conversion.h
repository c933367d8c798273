// Maps from and to the host's Dictionary.
#ifndef ZRB_PLUGIN_MAPS_DICTIONARY_CONVERSION_H
#define ZRB_PLUGIN_MAPS_DICTIONARY_CONVERSION_H

#include <cstdint>

#include "containers/instance.h"
#include "maps/dictionary_access.h"
#include "maps/map_operations.h"

template <class C>
struct DictionaryConversion {
  /// Replaces this map's content by a Dictionary's entries, in the order of their indices; of keys
  /// that the map takes for equal the last one's value stays. A nil Dictionary leaves the map
  /// empty.
  [[gnu::cold]] static void theMapConstructorDic(REALobject instance, REALdictionary dictionary) {
    const LentObject held_instance(instance);
    const LentObject held_dictionary(dictionary);
    replace_storage<C>(instance);
    if (dictionary == nullptr) return;
    auto& storage = *container_data<C>(instance).storage;
    const InUse use(storage);
    const std::int32_t count = GetDictionaryCount(dictionary);
    for (std::int32_t index = 0; index < count; ++index) {
      const auto key = LockedObject::adopt(GetDictionaryKey(dictionary, index));
      const auto value = LockedObject::adopt(GetDictionaryValue(dictionary, key.get()));
      const auto stored_key = C::Key::from_variant(key.get());
      const auto stored_value = C::Value::from_variant(value.get());
      MapOperations<C>::assign(storage, typename C::KeyProbe(C::Key::lend(stored_key)),
                               C::Value::lend(stored_value));
    }
  }

  /// A new Dictionary, owned by the caller; nil when the host refuses it. It is empty, the map is
  /// empty afterwards, and the former entries stay locked for good: the content moves out of the
  /// map before it is walked. Programs rely on the map being empty after its conversion.
  [[gnu::cold]] static REALdictionary cloneDictionary(REALobject instance) {
    if (storage_or_raise<C>(instance) == nullptr) return nullptr;
    const LentObject held_instance(instance);
    auto dictionary = LockedObject::adopt(NewDictionary());
    if (dictionary.get() == nullptr) return nullptr;
    install_fresh_storage<C>(instance);
    container_data<C>(instance).storage->for_each([&](const auto& entry) {
      const auto key = LockedObject::adopt(C::Key::to_variant(entry.key));
      const auto value = LockedObject::adopt(C::Value::to_variant(entry.value));
      SetDictionaryValue(dictionary.get(), key.get(), value.get());
      return true;
    });
    return dictionary.detach();
  }
};

#endif
