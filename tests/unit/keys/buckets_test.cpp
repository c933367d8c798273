#include "keys/buckets.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

// Arrays of all the places that they come from: small ones, those in the middle, large ones.
constexpr std::uint32_t counts[] = {53, 193, 12289, 24593, 393241, 786433};

bool are_empty(const Buckets& buckets) {
  const NodeLink* const end = buckets.begin() + buckets.count();
  return std::all_of(buckets.begin(), end, [](NodeLink link) { return link == no_node; });
}

void fill(Buckets& buckets) {
  for (std::uint32_t bucket = 0; bucket < buckets.count(); ++bucket) buckets[bucket] = bucket + 1;
}

TEST(Buckets, are_empty_at_first_whatever_lay_in_their_memory) {
  for (const std::uint32_t count : counts) {
    for (int round = 0; round < 3; ++round) {
      Buckets buckets(count);
      EXPECT_EQ(buckets.count(), count);
      EXPECT_TRUE(are_empty(buckets)) << count;
      fill(buckets);
      EXPECT_EQ(buckets[count - 1], count);
    }
  }
}

TEST(Buckets, are_empty_when_all_was_forgotten) {
  for (const std::uint32_t count : counts) {
    Buckets buckets(count);
    fill(buckets);
    buckets.forget_all();
    EXPECT_TRUE(are_empty(buckets)) << count;
  }
}

TEST(Buckets, that_live_at_once_lie_in_memory_of_their_own) {
  for (const std::uint32_t count : counts) {
    Buckets one(count);
    Buckets other(count);
    fill(one);
    fill(other);
    other.forget_all();
    for (std::uint32_t bucket = 0; bucket < count; ++bucket) ASSERT_EQ(one[bucket], bucket + 1);
  }
}

TEST(Buckets, change_places_with_others) {
  Buckets few(53);
  {
    Buckets many(24593);
    fill(many);
    few.swap(many);
    EXPECT_EQ(many.count(), 53U);
    EXPECT_EQ(many.of(53), 0U);
    EXPECT_TRUE(are_empty(many));
  }
  EXPECT_EQ(few.count(), 24593U);
  EXPECT_EQ(few.of(24593 + 7), 7U);
  EXPECT_EQ(few[24592], 24593U);
}

TEST(Buckets, give_their_memory_back) {
  const std::size_t before = ::mallinfo2().uordblks;
  for (int round = 0; round < 5000; ++round) {
    const Buckets few(193);
    const Buckets many(393241);  // all of them are more than links could lead into
    ASSERT_EQ(*few.begin(), no_node);
    ASSERT_EQ(*many.begin(), no_node);
  }
  EXPECT_LT(::mallinfo2().uordblks, before + 1'000'000);
}

}  // namespace
