// The order of short texts, most of which differ in their first bytes.
#ifndef ZRB_PLUGIN_KEYS_COMPARE_BYTES_H
#define ZRB_PLUGIN_KEYS_COMPARE_BYTES_H

#include <cstddef>
#include <cstdint>
#include <cstring>

/// What `std::strncmp` says of two texts of at least `count` bytes each: 0 when they are equal up
/// to there or to the first zero byte, else negative when `a` sorts first. O(count).
inline int compare_bytes(const char* a, const char* b, std::size_t count) {
  if (count >= 4) [[likely]] {
    // As numbers they sort as the texts do, unless both texts end within them.
    const auto first_four = [](const char* text) {
      const auto* const bytes = reinterpret_cast<const unsigned char*>(text);
      return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 |
             std::uint32_t{bytes[2]} << 8 | std::uint32_t{bytes[3]};
    };
    const std::uint32_t four_of_a = first_four(a);
    const std::uint32_t four_of_b = first_four(b);
    const bool has_zero_byte = ((four_of_a - 0x01010101U) & ~four_of_a & 0x80808080U) != 0;
    if (four_of_a != four_of_b && !has_zero_byte) return four_of_a < four_of_b ? -1 : 1;
  }
  return std::strncmp(a, b, count);
}

#endif
