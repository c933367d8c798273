// Memory of nodes.
#include "keys/node_pool.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>
#include <vector>

namespace {

struct Node {
  explicit Node(int new_number) : number(new_number) {
    if (new_number < 0) throw std::invalid_argument("negative");
  }
  int number;
};

TEST(NodePool, gives_each_node_a_place_of_its_own) {
  NodePool<Node> pool;
  std::set<Node*> nodes;
  for (int i = 0; i < 20000; ++i) nodes.insert(pool.create(i));
  EXPECT_EQ(nodes.size(), 20000U);
  long sum = 0;
  for (Node* node : nodes) sum += node->number;
  EXPECT_EQ(sum, 20000L * 19999 / 2);
}

TEST(NodePool, uses_the_last_freed_place_first) {
  NodePool<Node> pool;
  pool.create(1);
  Node* second = pool.create(2);
  pool.create(3);
  pool.destroy(second);
  EXPECT_EQ(pool.create(4), second);
}

TEST(NodePool, takes_back_the_place_of_a_node_whose_constructor_throws) {
  NodePool<Node> pool;
  Node* first = pool.create(1);
  pool.destroy(first);
  EXPECT_THROW(pool.create(-1), std::invalid_argument);
  EXPECT_EQ(pool.create(2), first);
}

TEST(NodePool, keeps_its_blocks_while_a_node_is_in_use) {
  NodePool<Node> pool;
  Node* survivor = pool.create(1);
  pool.destroy(pool.create(2));
  pool.release_blocks();
  EXPECT_EQ(survivor->number, 1);
  pool.destroy(survivor);
  pool.release_blocks();
  EXPECT_EQ(pool.create(3)->number, 3);
}

TEST(NodePool, mixes_reuse_and_new_places) {
  NodePool<Node> pool;
  std::vector<Node*> nodes;
  for (int round = 0; round < 100; ++round) {
    for (int i = 0; i < 37; ++i) nodes.push_back(pool.create(round * 37 + i));
    for (int i = 0; i < 20; ++i) {
      pool.destroy(nodes.back());
      nodes.pop_back();
    }
  }
  EXPECT_EQ(std::set<Node*>(nodes.begin(), nodes.end()).size(), 1700U);
}

}  // namespace
