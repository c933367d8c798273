// Memory of nodes, and the links between them.
#include "keys/node_memory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <vector>

namespace {

constexpr std::uint32_t node_size = 12;

void write(NodeMemory& memory, NodeLink link, std::uint32_t number) {
  std::memcpy(memory.at(link), &number, sizeof number);
}
std::uint32_t read(const NodeMemory& memory, NodeLink link) {
  std::uint32_t number;
  std::memcpy(&number, memory.at(link), sizeof number);
  return number;
}

std::vector<NodeLink> allocate(NodeMemory& memory, std::uint32_t count) {
  std::vector<NodeLink> links;
  for (std::uint32_t i = 0; i < count; ++i) {
    links.push_back(memory.allocate());
    write(memory, links.back(), i);
  }
  return links;
}

TEST(NodeMemory, gives_each_node_a_place_and_a_link_of_its_own) {
  NodeMemory memory(node_size);
  const auto links = allocate(memory, 200000);
  EXPECT_EQ(std::set<NodeLink>(links.begin(), links.end()).size(), links.size());
  for (std::uint32_t i = 0; i < links.size(); ++i) ASSERT_EQ(read(memory, links[i]), i);
}

TEST(NodeMemory, no_link_is_that_of_no_node_and_the_lowest_bit_is_free) {
  for (const std::uint32_t size : {8U, 12U, 16U, 20U, 24U, 32U, 40U}) {
    NodeMemory memory(size);
    for (const NodeLink link : allocate(memory, 50000)) {
      ASSERT_NE(link, no_node);
      ASSERT_EQ(link % 2, 0U);
      ASSERT_EQ(reinterpret_cast<std::uintptr_t>(memory.at(link)) % (size % 8 == 0 ? 8 : 4), 0U);
    }
  }
}

TEST(NodeMemory, leads_from_no_node_to_what_it_was_given) {
  int header = 0;
  NodeMemory memory(node_size, &header);
  EXPECT_EQ(memory.at(no_node), &header);
  allocate(memory, 100000);
  EXPECT_EQ(memory.at(no_node), &header);
  memory.release_all();
  EXPECT_EQ(memory.at(no_node), &header);
}

TEST(NodeMemory, uses_the_last_freed_place_first) {
  NodeMemory memory(node_size);
  const auto links = allocate(memory, 3);
  memory.deallocate(links[0]);
  memory.deallocate(links[1]);
  EXPECT_EQ(memory.allocate(), links[1]);
  EXPECT_EQ(memory.allocate(), links[0]);
  EXPECT_EQ(read(memory, links[2]), 2U);
}

TEST(NodeMemory, begins_anew_after_a_release) {
  NodeMemory memory(node_size);
  const auto links = allocate(memory, 100000);
  memory.deallocate(links[5]);
  memory.release_all();
  const auto again = allocate(memory, 100000);
  EXPECT_EQ(again, links);
  for (std::uint32_t i = 0; i < again.size(); ++i) ASSERT_EQ(read(memory, again[i]), i);
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

TEST(NodeMemory, a_copy_has_the_same_nodes_under_the_same_links) {
  for (const std::uint32_t count : {0U, 1U, 8U, 9U, 1000U, 70000U}) {
    NodeMemory memory(node_size);
    const auto links = allocate(memory, count);
    if (count > 4) memory.deallocate(links[3]);
    NodeMemory copy(node_size);
    copy.copy_from(memory);
    for (std::uint32_t i = 4; i < count; ++i) {
      ASSERT_EQ(read(copy, links[i]), i);
      ASSERT_NE(copy.at(links[i]), memory.at(links[i]));
    }
    for (int i = 0; i < 100; ++i) ASSERT_EQ(copy.allocate(), memory.allocate());
  }
}

}  // namespace
