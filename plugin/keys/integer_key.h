// Integers as elements: signed order, hashed to themselves.
#ifndef ZRB_PLUGIN_KEYS_INTEGER_KEY_H
#define ZRB_PLUGIN_KEYS_INTEGER_KEY_H

#include <cstdint>

// Declared noexcept, by which the storage engines know that nobody is called.
struct IntegerHash {
  std::uint32_t operator()(std::int32_t key) const noexcept {
    return static_cast<std::uint32_t>(key);
  }
};
struct IntegerEqual {
  bool operator()(std::int32_t a, std::int32_t b) const noexcept { return a == b; }
};
struct IntegerLess {
  bool operator()(std::int32_t a, std::int32_t b) const noexcept { return a < b; }
};

#endif
