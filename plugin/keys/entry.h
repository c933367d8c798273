// What a storage engine keeps for one element: a key, and for maps a value beside it.
#ifndef ZRB_PLUGIN_KEYS_ENTRY_H
#define ZRB_PLUGIN_KEYS_ENTRY_H

/// What a set stores for a value: nothing.
struct NoValue {};

template <class Key, class Value>
struct Entry {
  explicit Entry(const Key& new_key) : key(new_key) {}

  Key key;
  Value value{};
};

template <class Key>
struct Entry<Key, NoValue> {
  explicit Entry(const Key& new_key) : key(new_key) {}

  Key key;
};

#endif
