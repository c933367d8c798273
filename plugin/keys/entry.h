// What a storage engine keeps for one element: its links, a key, and for maps a value.
#ifndef ZRB_PLUGIN_KEYS_ENTRY_H
#define ZRB_PLUGIN_KEYS_ENTRY_H

/// What a set stores for a value: nothing.
struct NoValue {};

// The links come first, so that a 32-bit key fills up what they leave of a pointer's width.
template <class Links, class Key, class Value>
struct Entry : Links {
  explicit Entry(const Key& new_key) : key(new_key) {}

  Key key;
  Value value{};
};

template <class Links, class Key>
struct Entry<Links, Key, NoValue> : Links {
  explicit Entry(const Key& new_key) : key(new_key) {}

  Key key;
};

#endif
