// Tells the address sanitizer which memory of a pool is in use. Does nothing in other builds.
#ifndef ZRB_PLUGIN_KEYS_POISON_H
#define ZRB_PLUGIN_KEYS_POISON_H

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define ZRB_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZRB_ADDRESS_SANITIZER 1
#endif
#endif

#ifdef ZRB_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>

inline void poison(const void* address, std::size_t bytes) {
  __asan_poison_memory_region(address, bytes);
}
inline void unpoison(const void* address, std::size_t bytes) {
  __asan_unpoison_memory_region(address, bytes);
}
#else
inline void poison(const void*, std::size_t) {}
inline void unpoison(const void*, std::size_t) {}
#endif

#endif
