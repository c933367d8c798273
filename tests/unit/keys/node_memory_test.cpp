// Memory of nodes, and the links between them.
#include "keys/node_memory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <vector>

namespace {

constexpr std::uint32_t node_size = 12;

void write(NodeLink link, std::uint32_t number) {
  std::memcpy(node_at(link), &number, sizeof number);
}
std::uint32_t read(NodeLink link) {
  std::uint32_t number;
  std::memcpy(&number, node_at(link), sizeof number);
  return number;
}

std::vector<NodeLink> allocate(NodeMemory& memory, std::uint32_t count) {
  std::vector<NodeLink> links;
  for (std::uint32_t i = 0; i < count; ++i) {
    links.push_back(memory.allocate());
    write(links.back(), i);
  }
  return links;
}

TEST(NodeMemory, gives_each_node_a_place_and_a_link_of_its_own) {
  NodeMemory memory(node_size);
  const auto links = allocate(memory, 200000);
  EXPECT_EQ(std::set<NodeLink>(links.begin(), links.end()).size(), links.size());
  for (std::uint32_t i = 0; i < links.size(); ++i) ASSERT_EQ(read(links[i]), i);
}

TEST(NodeMemory, no_link_is_that_of_no_node_and_the_lowest_bit_is_free) {
  for (const std::uint32_t size : {8U, 12U, 16U, 20U, 24U, 32U, 40U}) {
    NodeMemory memory(size);
    for (const NodeLink link : allocate(memory, 50000)) {
      ASSERT_NE(link, no_node);
      ASSERT_EQ(link % 2, 0U);
      ASSERT_EQ(reinterpret_cast<std::uintptr_t>(node_at(link)) % (size % 8 == 0 ? 8 : 4), 0U);
    }
  }
}

TEST(NodeMemory, uses_the_last_freed_place_first) {
  NodeMemory memory(node_size);
  const auto links = allocate(memory, 3);
  memory.deallocate(links[0]);
  memory.deallocate(links[1]);
  EXPECT_EQ(memory.allocate(), links[1]);
  EXPECT_EQ(memory.allocate(), links[0]);
  EXPECT_EQ(read(links[2]), 2U);
}

TEST(NodeMemory, begins_anew_after_a_release) {
  NodeMemory memory(node_size);
  const auto links = allocate(memory, 100000);
  memory.deallocate(links[5]);
  memory.release_all();
  const auto again = allocate(memory, 100000);
  EXPECT_EQ(std::set<NodeLink>(again.begin(), again.end()).size(), again.size());
  for (std::uint32_t i = 0; i < again.size(); ++i) ASSERT_EQ(read(again[i]), i);
}

TEST(NodeMemory, keeps_the_nodes_of_several_apart) {
  NodeMemory memories[3] = {NodeMemory(node_size), NodeMemory(node_size), NodeMemory(node_size)};
  std::set<NodeLink> links;
  for (int round = 0; round < 2000; ++round) {
    for (NodeMemory& memory : memories) links.insert(memory.allocate());
  }
  memories[1].release_all();
  const auto more = allocate(memories[0], 5000);
  EXPECT_EQ(links.size(), 6000U);
  for (std::uint32_t i = 0; i < more.size(); ++i) ASSERT_EQ(read(more[i]), i);
}

TEST(NodeMemory, mixes_reuse_and_new_places) {
  NodeMemory memory(node_size);
  std::vector<NodeLink> links;
  for (std::uint32_t round = 0; round < 1000; ++round) {
    const auto more = allocate(memory, 37);
    links.insert(links.end(), more.begin(), more.end());
    for (int i = 0; i < 20; ++i) {
      memory.deallocate(links.back());
      links.pop_back();
    }
  }
  EXPECT_EQ(std::set<NodeLink>(links.begin(), links.end()).size(), 17000U);
}

}  // namespace
