// The buddy system: halving chunks into blocks and joining them again.
#include "keys/buddy_blocks.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

namespace {

constexpr std::uint32_t chunk_units = 1U << BuddyBlocks::chunk_order;

// Two chunks of memory and what a buddy system needs beside them.
class BuddyBlocksTest : public testing::Test {
 protected:
  BuddyBlocksTest() { blocks_.manage(memory_.data(), free_orders_.data()); }

  std::vector<std::byte> memory_{std::size_t{2} * chunk_units * BuddyBlocks::unit_bytes};
  std::vector<std::uint8_t> free_orders_ = std::vector<std::uint8_t>(2 * chunk_units);
  BuddyBlocks blocks_;
};

TEST_F(BuddyBlocksTest, has_nothing_before_the_first_chunk) {
  for (unsigned order = 0; order < BuddyBlocks::chunk_order; ++order) {
    EXPECT_EQ(blocks_.take(order), BuddyBlocks::no_block);
  }
}

TEST_F(BuddyBlocksTest, cuts_a_block_from_the_beginning_of_a_chunk_and_keeps_the_rest) {
  EXPECT_EQ(blocks_.cut(chunk_units, 3), chunk_units);
  EXPECT_EQ(blocks_.take(3), chunk_units + 8);  // its buddy, the smallest that is free
  EXPECT_EQ(blocks_.take(3), chunk_units + 16);
  EXPECT_EQ(blocks_.take(BuddyBlocks::chunk_order - 1), chunk_units + chunk_units / 2);
  EXPECT_EQ(blocks_.take(BuddyBlocks::chunk_order - 1), BuddyBlocks::no_block);
}

TEST_F(BuddyBlocksTest, gives_a_chunk_back_when_its_last_block_comes_back) {
  const std::uint32_t first = blocks_.cut(0, 5);
  const std::uint32_t second = blocks_.take(0);
  EXPECT_EQ(blocks_.give_back(first, 5), BuddyBlocks::no_block);
  EXPECT_EQ(blocks_.give_back(second, 0), 0U);
  EXPECT_EQ(blocks_.take(0), BuddyBlocks::no_block);
}

TEST_F(BuddyBlocksTest, a_whole_chunk_is_one_block) {
  EXPECT_EQ(blocks_.cut(0, BuddyBlocks::chunk_order), 0U);
  EXPECT_EQ(blocks_.take(0), BuddyBlocks::no_block);
  EXPECT_EQ(blocks_.give_back(0, BuddyBlocks::chunk_order), 0U);
}

TEST_F(BuddyBlocksTest, does_not_join_a_block_with_a_buddy_that_was_cut_further) {
  const std::uint32_t large = blocks_.cut(0, 4);
  const std::uint32_t small = blocks_.take(0);  // from the buddy of `large`
  EXPECT_EQ(small, 16U);
  EXPECT_EQ(blocks_.give_back(large, 4), BuddyBlocks::no_block);
  EXPECT_EQ(blocks_.take(5), 32U);
}

TEST_F(BuddyBlocksTest, blocks_in_use_never_overlap_and_all_comes_back) {
  std::mt19937 random(7);  // NOLINT: the same course each time
  std::map<std::uint32_t, unsigned> in_use;
  std::vector<std::uint32_t> chunks = {chunk_units, 0};
  const auto give_back = [&](std::map<std::uint32_t, unsigned>::iterator block) {
    const std::uint32_t chunk = blocks_.give_back(block->first, block->second);
    if (chunk != BuddyBlocks::no_block) chunks.push_back(chunk);
    in_use.erase(block);
  };
  for (int step = 0; step < 20000; ++step) {
    if (!in_use.empty() && random() % 2 == 0) {
      give_back(std::next(in_use.begin(), static_cast<std::ptrdiff_t>(random() % in_use.size())));
      continue;
    }
    const auto order = static_cast<unsigned>(random() % (BuddyBlocks::chunk_order - 2));
    std::uint32_t block = blocks_.take(order);
    if (block == BuddyBlocks::no_block) {
      if (chunks.empty()) continue;
      block = blocks_.cut(chunks.back(), order);
      chunks.pop_back();
    }
    ASSERT_EQ(block % (1U << order), 0U);
    const auto [at, added] = in_use.emplace(block, order);
    ASSERT_TRUE(added);
    if (at != in_use.begin()) {
      const auto before = std::prev(at);
      ASSERT_LE(before->first + (1U << before->second), block);
    }
    if (std::next(at) != in_use.end()) {
      ASSERT_LE(block + (1U << order), std::next(at)->first);
    }
  }
  while (!in_use.empty()) give_back(in_use.begin());
  EXPECT_EQ(chunks.size(), 2U);
}

}  // namespace
