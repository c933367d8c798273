// Integers as elements: signed order, hashed to themselves.
#ifndef ZRB_PLUGIN_KEYS_INTEGER_KEY_H
#define ZRB_PLUGIN_KEYS_INTEGER_KEY_H

#include <cstdint>

struct IntegerHash {
  std::uint32_t operator()(std::int32_t key) const { return static_cast<std::uint32_t>(key); }
};

#endif
