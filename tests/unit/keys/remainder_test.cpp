// Remainders without a division.
#include "keys/remainder.h"

#include <gtest/gtest.h>

#include <random>

#include "keys/bucket_sizes.h"

namespace {

TEST(Remainder, is_exact_for_every_bucket_count) {
  std::mt19937 random(17);
  for (const std::uint32_t size : bucket_sizes) {
    const Remainder remainder(size);
    for (const std::uint32_t number :
         {0U, 1U, size - 1, size, size + 1, 2 * size - 1, 2 * size, 2147483647U, 2147483648U,
          4294967295U, 4294967295U / size * size, 4294967295U / size * size - 1}) {
      ASSERT_EQ(remainder(number), number % size) << number << " by " << size;
    }
    for (int i = 0; i < 20000; ++i) {
      const auto number = static_cast<std::uint32_t>(random());
      ASSERT_EQ(remainder(number), number % size) << number << " by " << size;
    }
  }
}

}  // namespace
