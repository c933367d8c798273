// Walks through chains that are made by hand.
#include "keys/bucket_walk.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <numeric>
#include <random>
#include <vector>

#include "keys/node_memory.h"

namespace {

struct Node {
  NodeLink next;
  std::uint32_t key;
};

using Walk = BucketWalk<Node>;

// Buckets with chains of the given lengths; keys count up in the order of a walk.
class Chains {
 public:
  explicit Chains(const std::vector<std::uint32_t>& lengths) {
    for (const std::uint32_t length : lengths) {
      heads_.push_back(no_node);
      NodeLink* end = &heads_.back();
      for (std::uint32_t i = 0; i < length; ++i) {
        *end = memory_.allocate();
        end = &(new (node_at(*end)) Node{no_node, count_++})->next;
      }
    }
  }

  std::uint32_t count() const { return count_; }
  Walk walk(bool is_large) const {
    return {heads_.data(), static_cast<std::uint32_t>(heads_.size()), is_large};
  }

 private:
  NodeMemory memory_{sizeof(Node)};
  std::vector<NodeLink> heads_;
  std::uint32_t count_ = 0;
};

std::vector<std::uint32_t> keys_on(Walk walk) {
  std::vector<std::uint32_t> keys;
  while (walk.gather()) {
    EXPECT_FALSE(walk.gathered().empty());
    for (const NodeLink link : walk.gathered()) {
      keys.push_back(static_cast<const Node*>(node_at(link))->key);
    }
  }
  EXPECT_TRUE(walk.gathered().empty());
  return keys;
}

void expect_all_in_order(const std::vector<std::uint32_t>& lengths) {
  const Chains chains(lengths);
  std::vector<std::uint32_t> expected(chains.count());
  std::iota(expected.begin(), expected.end(), 0U);
  EXPECT_EQ(keys_on(chains.walk(false)), expected);
  EXPECT_EQ(keys_on(chains.walk(true)), expected);
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
  Walk walk = chains.walk(false);
  std::uint32_t expected = 0;
  while (walk.gather()) {
    for (const NodeLink link : walk.gathered()) {
      auto& node = *static_cast<Node*>(node_at(link));
      EXPECT_EQ(node.key, expected++);
      node = {no_node, 0};
    }
  }
  EXPECT_EQ(expected, chains.count());
}

}  // namespace
