// Steps through chains that are made by hand.
#include "keys/steps_ahead.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <random>
#include <vector>

#include "chains.h"

namespace {

std::uint32_t key_of(const void* node) {
  return static_cast<const ChainedNode*>(node)->key;
}

// Starts at the first node of a bucket, which must have one.
void start_in(StepsAhead& steps, const Chains& chains, std::uint32_t bucket) {
  const NodeLink node = chains.heads()[bucket];
  const NodeLink rest = static_cast<const ChainedNode*>(node_at(node))->next;
  const std::uint32_t others = chains.bucket_count() - bucket - 1;
  steps.start(node, {chains.heads() + bucket + 1, others, rest, false});
}

// The keys that steps come to from the first node of all, which is the first of a bucket.
std::vector<std::uint32_t> keys_by_steps(const Chains& chains) {
  std::vector<std::uint32_t> keys;
  std::uint32_t bucket = 0;
  while (bucket < chains.bucket_count() && chains.heads()[bucket] == no_node) ++bucket;
  if (bucket == chains.bucket_count()) return keys;
  StepsAhead steps;
  start_in(steps, chains, bucket);
  for (void* at = node_at(chains.heads()[bucket]); at != nullptr;) {
    keys.push_back(key_of(at));
    EXPECT_TRUE(steps.is_at(at));
    void* next = steps.after(at);
    at = next != nullptr ? next : steps.go_on();
  }
  return keys;
}

void expect_all_in_order(const std::vector<std::uint32_t>& lengths) {
  const Chains chains(lengths);
  std::vector<std::uint32_t> expected(chains.count());
  std::iota(expected.begin(), expected.end(), 0U);
  EXPECT_EQ(keys_by_steps(chains), expected);
}

TEST(StepsAhead, know_nothing_at_first) {
  const Chains chains({1});
  StepsAhead steps;
  void* const node = node_at(chains.heads()[0]);
  EXPECT_FALSE(steps.is_at(node));
  EXPECT_EQ(steps.after(node), nullptr);
}

TEST(StepsAhead, come_to_every_node_in_order) {
  for (std::uint32_t length = 1; length < 60; ++length) {
    expect_all_in_order({length});
    expect_all_in_order({length, 0, 0, length, 1});
    expect_all_in_order(std::vector<std::uint32_t>(length, 1));
    expect_all_in_order({0, 0, 2, length, 0});
  }
  std::mt19937 random(11);
  for (const std::uint32_t longest : {1U, 2U, 4U, 40U}) {
    std::vector<std::uint32_t> lengths(400);
    for (std::uint32_t& length : lengths)
      length = static_cast<std::uint32_t>(random()) % (longest + 1);
    expect_all_in_order(lengths);
  }
}

TEST(StepsAhead, know_the_next_nodes_only_when_they_have_gone_on) {
  const Chains chains({2, 1});
  StepsAhead steps;
  start_in(steps, chains, 0);
  void* const start = node_at(chains.heads()[0]);
  EXPECT_EQ(steps.after(start), nullptr);
  void* const second = steps.go_on();
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(key_of(second), 1U);
  ASSERT_EQ(steps.gathered().size(), 2U);
  EXPECT_EQ(node_at(steps.gathered().front()), second);
  void* const third = steps.after(second);
  ASSERT_NE(third, nullptr);
  EXPECT_EQ(key_of(third), 2U);
  EXPECT_EQ(steps.after(third), nullptr);
  EXPECT_EQ(steps.go_on(), nullptr);
}

TEST(StepsAhead, know_nothing_of_other_nodes) {
  const Chains chains({3});
  StepsAhead steps;
  start_in(steps, chains, 0);
  void* const start = node_at(chains.heads()[0]);
  void* const second = steps.go_on();
  EXPECT_FALSE(steps.is_at(start));
  EXPECT_EQ(steps.after(start), nullptr) << "they have left it";
  EXPECT_NE(steps.after(second), nullptr) << "that changes nothing";
}

TEST(StepsAhead, forget_where_they_are) {
  const Chains chains({3});
  StepsAhead steps;
  start_in(steps, chains, 0);
  void* const second = steps.go_on();
  steps.forget();
  EXPECT_FALSE(steps.is_at(second));
  EXPECT_EQ(steps.after(second), nullptr);
}

}  // namespace
