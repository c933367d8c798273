#include "keys/growth_order.h"

#include <gtest/gtest.h>

namespace {

TEST(GrowthOrder, tells_how_many_buckets_there_are_in_the_end) {
  EXPECT_EQ(GrowthOrder(193, 0).final_count(), 193U);
  EXPECT_EQ(GrowthOrder(193, 193).final_count(), 193U);
  EXPECT_EQ(GrowthOrder(193, 194).final_count(), 389U);
  EXPECT_EQ(GrowthOrder(53, 1000).final_count(), 1543U);
}

TEST(GrowthOrder, tells_how_many_elements_there_are_at_the_last_step) {
  EXPECT_EQ(GrowthOrder(193, 193).elements_at_last_step(), 0U);
  EXPECT_EQ(GrowthOrder(193, 194).elements_at_last_step(), 193U);
  EXPECT_EQ(GrowthOrder(193, 1000).elements_at_last_step(), 769U);
}

TEST(GrowthOrder, puts_what_comes_after_the_last_step_first) {
  const GrowthOrder order(193, 1000);
  EXPECT_TRUE(order.is_newer_first(769, 5, 5 + 1543));
  EXPECT_TRUE(order.is_newer_first(769, 5 + 1543, 5));
  EXPECT_TRUE(GrowthOrder(193, 193).is_newer_first(7, 5, 5 + 193));
}

// 1543 is 5 in 769 buckets, 1543 * 769 is 0.
TEST(GrowthOrder, puts_what_the_last_step_met_later_first) {
  const GrowthOrder order(193, 1000);
  EXPECT_FALSE(order.is_newer_first(768, 1, 1 + 1543));
  EXPECT_TRUE(order.is_newer_first(768, 1 + 1543, 1));
}

TEST(GrowthOrder, goes_back_by_a_step_for_hashes_that_shared_the_former_bucket) {
  const GrowthOrder order(193, 1000);
  constexpr std::uint32_t apart = 1543 * 769;  // and 117 buckets apart among 389
  static_assert(apart % 389 == 117);
  // The former buckets were the heads of chains, where the newer came first, and so last after.
  EXPECT_FALSE(order.is_newer_first(768, 1, 1 + apart));
  EXPECT_FALSE(order.is_newer_first(389, 1, 1 + apart));
  EXPECT_FALSE(order.is_newer_first(389, 1 + apart, 1));
  // Both were there at that step as well: the one from the lower bucket went behind the other.
  EXPECT_TRUE(order.is_newer_first(388, 1, 1 + apart));
  EXPECT_FALSE(order.is_newer_first(388, 1 + apart, 1));
}

}  // namespace
