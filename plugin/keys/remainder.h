// Remainders by a divisor that is used many times, without a division.
#ifndef ZRB_PLUGIN_KEYS_REMAINDER_H
#define ZRB_PLUGIN_KEYS_REMAINDER_H

#include <cstdint>
#include <limits>

/// `number % divisor` for every 32-bit number, by two multiplications: the fraction part of
/// number / divisor, in 64 bits, times the divisor.
/// Source: D. Lemire, O. Kaser, N. Kurz, "Faster Remainder by Direct Computation", Software:
/// Practice and Experience 49 (2019), which proves it exact.
class Remainder {
 public:
  /// `divisor`: at least 2.
  explicit Remainder(std::uint32_t divisor)
      : inverse_(std::numeric_limits<std::uint64_t>::max() / divisor + 1), divisor_(divisor) {}

  std::uint32_t operator()(std::uint32_t number) const {
    const std::uint64_t fraction = inverse_ * number;
#ifdef __SIZEOF_INT128__
    __extension__ using Product = unsigned __int128;
    return static_cast<std::uint32_t>((static_cast<Product>(fraction) * divisor_) >> 64);
#else
    const std::uint64_t low = (fraction & 0xFFFFFFFF) * divisor_;
    const std::uint64_t high = (fraction >> 32) * divisor_;
    return static_cast<std::uint32_t>((high + (low >> 32)) >> 32);
#endif
  }

 private:
  std::uint64_t inverse_;
  std::uint32_t divisor_;
};

#endif
