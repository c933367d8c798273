// Walks through chains that are made by hand.
#include "keys/bucket_walk.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <numeric>
#include <random>
#include <vector>

#include "chains.h"

namespace {

using Walk = ElementWalk<ChainedNode>;

Walk elements_of(const Chains& chains, bool is_large) {
  return {chains.heads(), chains.bucket_count(), is_large};
}

std::vector<std::uint32_t> keys_on(Walk walk) {
  std::vector<std::uint32_t> keys;
  while (walk.gather()) {
    EXPECT_FALSE(walk.gathered().empty());
    for (const NodeLink link : walk.gathered()) {
      keys.push_back(static_cast<const ChainedNode*>(node_at(link))->key);
    }
  }
  EXPECT_TRUE(walk.gathered().empty());
  return keys;
}

void expect_all_in_order(const std::vector<std::uint32_t>& lengths) {
  const Chains chains(lengths);
  std::vector<std::uint32_t> expected(chains.count());
  std::iota(expected.begin(), expected.end(), 0U);
  EXPECT_EQ(keys_on(elements_of(chains, false)), expected);
  EXPECT_EQ(keys_on(elements_of(chains, true)), expected);
}

TEST(BucketWalk, finds_nothing_in_empty_buckets) {
  expect_all_in_order({});
  expect_all_in_order({0});
  expect_all_in_order(std::vector<std::uint32_t>(1000, 0));
}

TEST(BucketWalk, finds_the_only_node_in_any_bucket) {
  for (std::size_t bucket = 0; bucket < 100; ++bucket) {
    std::vector<std::uint32_t> lengths(100, 0);
    lengths[bucket] = 1;
    expect_all_in_order(lengths);
  }
}

TEST(BucketWalk, goes_on_within_chains_of_any_length) {
  for (std::uint32_t length = 0; length <= 3 * Walk::capacity; ++length) {
    expect_all_in_order({length});
    expect_all_in_order({1, length, 2});
    expect_all_in_order({0, Walk::capacity - 2, length, length, 0, 3});
  }
}

TEST(BucketWalk, meets_every_node_once_in_order_whatever_the_lengths) {
  std::mt19937 random(7);
  for (const std::uint32_t longest : {1U, 2U, 3U, 5U, 90U}) {
    std::vector<std::uint32_t> lengths(500);
    for (std::uint32_t& length : lengths)
      length = static_cast<std::uint32_t>(random()) % (longest + 1);
    expect_all_in_order(lengths);
  }
}

TEST(BucketWalk, does_not_look_at_gathered_nodes_again) {
  const Chains chains({2, 1, 3, 200, 1});
  Walk walk = elements_of(chains, false);
  std::uint32_t expected = 0;
  while (walk.gather()) {
    for (const NodeLink link : walk.gathered()) {
      auto& node = *static_cast<ChainedNode*>(node_at(link));
      EXPECT_EQ(node.key, expected++);
      node = ChainedNode(0);
    }
  }
  EXPECT_EQ(expected, chains.count());
}

}  // namespace
