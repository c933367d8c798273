// The bucket counts of hashed storage.
#ifndef ZRB_PLUGIN_KEYS_BUCKET_SIZES_H
#define ZRB_PLUGIN_KEYS_BUCKET_SIZES_H

#include <algorithm>
#include <array>
#include <cstdint>

/// Primes, each about double the one before. Source: the hash tables of the SGI Standard Template
/// Library, whose users took them over widely.
inline constexpr std::array<std::uint32_t, 28> bucket_sizes = {
    53,        97,        193,       389,       769,        1543,       3079,
    6151,      12289,     24593,     49157,     98317,      196613,     393241,
    786433,    1572869,   3145739,   6291469,   12582917,   25165843,   50331653,
    100663319, 201326611, 402653189, 805306457, 1610612741, 3221225473, 4294967291};

/// The smallest bucket count that holds `elements` at one a bucket; the largest there is, if none.
constexpr std::uint32_t bucket_size_for(std::uint32_t elements) {
  const auto found = std::lower_bound(bucket_sizes.begin(), bucket_sizes.end(), elements);
  return found == bucket_sizes.end() ? bucket_sizes.back() : *found;
}

#endif
