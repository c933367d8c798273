// Memory of nodes, and the links between them.
#include "keys/node_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <set>
#include <vector>

#include "keys/node_blocks.h"

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

/// Sizes in bytes of the next blocks, told by where nodes do not follow each other.
std::vector<std::uint32_t> next_block_sizes(NodeMemory& memory, std::size_t count) {
  std::vector<std::uint32_t> sizes;
  const auto* previous = static_cast<const std::byte*>(node_at(memory.allocate()));
  for (std::uint32_t nodes = 1; sizes.size() < count; ++nodes) {
    const auto* const node = static_cast<const std::byte*>(node_at(memory.allocate()));
    if (node != previous + memory.node_size()) {
      sizes.push_back(std::bit_ceil(nodes * memory.node_size()));
      nodes = 0;
    }
    previous = node;
  }
  return sizes;
}

std::vector<std::uint32_t> first_block_sizes() {
  std::vector<std::uint32_t> sizes = {128, 128, 256, 512, 1024, 2048};  // as much as there is
  sizes.insert(sizes.end(), 15, 4096);
  sizes.insert(sizes.end(), 8, 8192);  // an eighth of what there is
  sizes.push_back(16384);
  return sizes;
}

TEST(NodeMemory, takes_blocks_that_double_and_then_add_an_eighth) {
  NodeMemory memory(node_size);
  const auto expected = first_block_sizes();
  EXPECT_EQ(next_block_sizes(memory, expected.size()), expected);
}

TEST(NodeMemory, takes_no_block_larger_than_there_are) {
  NodeMemory memory(64);
  std::uint32_t largest = 0;
  for (std::uint32_t bytes = 0; bytes < 40U << 20;) {
    largest = next_block_sizes(memory, 1)[0];
    ASSERT_LE(largest, largest_node_block);
    bytes += largest;
  }
  EXPECT_EQ(largest, largest_node_block);
}

TEST(NodeMemory, takes_small_blocks_again_after_a_release) {
  NodeMemory memory(node_size);
  const auto links = allocate(memory, 20000);
  memory.deallocate(links[5]);
  memory.release_all();
  const auto expected = first_block_sizes();
  EXPECT_EQ(next_block_sizes(memory, expected.size()), expected);
}

// Blocks of a 64-bit process come from the same region in the same order.
TEST(NodeMemory, gives_its_blocks_back_when_it_is_released_and_when_it_dies) {
  if (sizeof(void*) == sizeof(NodeLink))
    GTEST_SKIP() << "where they lie is the heap's own business";
  std::vector<NodeLink> first;
  {
    NodeMemory memory(node_size);
    first = allocate(memory, 20000);
  }
  NodeMemory memory(node_size);
  EXPECT_EQ(allocate(memory, 20000), first);
  memory.release_all();
  NodeMemory another(node_size);
  EXPECT_EQ(allocate(another, 20000), first);
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

TEST(NodeMemory, allocates_runs_of_nodes_as_it_allocates_one_by_one) {
  std::vector<NodeLink> one_by_one;
  {
    NodeMemory memory(node_size);
    one_by_one = allocate(memory, 20000);
  }
  NodeMemory memory(node_size);
  std::vector<const void*> in_runs;
  while (in_runs.size() < one_by_one.size()) {
    const NodeMemory::Run run = memory.untouched();
    ASSERT_LT(run.next, run.end);
    // Some of the run, then the rest.
    const auto nodes = static_cast<std::size_t>(run.end - run.next) / node_size;
    auto* const middle = run.next + nodes / 3 * node_size;
    memory.allocate_until(middle);
    EXPECT_EQ(memory.untouched().next, middle);
    EXPECT_EQ(memory.untouched().end, run.end);
    for (auto* node = run.next; node != run.end; node += node_size) in_runs.push_back(node);
    memory.allocate_until(run.end);
  }
  const auto* const after = node_at(memory.allocate());
  EXPECT_EQ(std::ranges::count(in_runs, after), 0);
  if (sizeof(void*) == sizeof(NodeLink)) return;  // where blocks lie is the heap's own business
  in_runs.resize(one_by_one.size());
  std::vector<const void*> expected;
  for (const NodeLink link : one_by_one) expected.push_back(node_at(link));
  EXPECT_EQ(in_runs, expected);
}

TEST(NodeMemory, goes_through_nodes_in_the_order_of_their_allocation) {
  NodeMemory memory(node_size);
  std::vector<NodeLink> links = allocate(memory, 1);
  NodeMemory::Sequence sequence(memory);
  EXPECT_EQ(sequence.next(), links[0]);
  for (int round = 0; round < 300; ++round) {
    for (const NodeLink link : allocate(memory, 17)) {
      EXPECT_EQ(sequence.next(), link);
      EXPECT_TRUE(sequence.is_at(static_cast<std::byte*>(node_at(link)) + node_size));
    }
  }
}

}  // namespace
