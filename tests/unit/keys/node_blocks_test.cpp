// Blocks that links lead into, taken from the system.
#include "keys/node_blocks.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <new>
#include <thread>
#include <vector>

#include "keys/node_links.h"

namespace {

TEST(NodeBlocks, come_in_all_sizes_and_keep_what_is_written) {
  std::vector<std::pair<std::byte*, std::uint32_t>> blocks;
  for (std::uint32_t bytes = smallest_node_block; bytes <= largest_node_block; bytes *= 2) {
    for (int i = 0; i < 3; ++i) {
      blocks.emplace_back(allocate_node_block(bytes), bytes);
      std::memset(blocks.back().first, static_cast<int>(blocks.size()), bytes);
    }
  }
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    const auto [block, bytes] = blocks[i];
    EXPECT_EQ(std::to_integer<std::size_t>(block[0]), i + 1);
    EXPECT_EQ(std::to_integer<std::size_t>(block[bytes - 1]), i + 1);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 8, 0U);
    release_node_block(block, bytes);
  }
}

// Containers of several threads take from the same region.
TEST(NodeBlocks, serve_several_threads_at_once) {
  constexpr int rounds = 20000;
  std::atomic<int> damaged = 0;
  const auto work = [&damaged](int mark) {
    std::vector<std::byte*> blocks;
    for (int round = 0; round < rounds; ++round) {
      blocks.push_back(allocate_node_block(smallest_node_block));
      std::memset(blocks.back(), mark, smallest_node_block);
      if (round % 16 != 0) continue;
      for (std::byte* block : blocks) {
        for (std::uint32_t i = 0; i < smallest_node_block; ++i) {
          if (std::to_integer<int>(block[i]) != mark) ++damaged;
        }
        release_node_block(block, smallest_node_block);
      }
      blocks.clear();
    }
    for (std::byte* block : blocks) release_node_block(block, smallest_node_block);
  };
  std::vector<std::thread> threads;
  for (int mark = 1; mark <= 4; ++mark) threads.emplace_back(work, mark);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(damaged, 0);
}

TEST(NodeBlocks, links_lead_to_every_node_of_a_block_and_back) {
  std::byte* const block = allocate_node_block(largest_node_block);
  for (std::uint32_t offset = 0; offset < largest_node_block; offset += 4) {
    const NodeLink link = link_to(block + offset);
    ASSERT_NE(link, no_node);
    ASSERT_EQ(link % 2, 0U);
    ASSERT_EQ(node_at(link), block + offset);
    ASSERT_EQ(readable_node_at(link), block + offset);
  }
  release_node_block(block, largest_node_block);
}

TEST(NodeBlocks, no_node_can_be_read_as_zeros) {
  const char zeros[64] = {};
  EXPECT_EQ(std::memcmp(readable_node_at(no_node), zeros, sizeof zeros), 0);
}

#if !defined(__SANITIZE_ADDRESS__)  // which needs more memory than is allowed here

// Asks for the largest blocks until there are no more; 0 when all is well after that.
int exhaust_memory() {
  const rlimit limit{64U << 20, 64U << 20};
  if (::setrlimit(RLIMIT_DATA, &limit) != 0) return 1;
  std::vector<std::byte*> blocks;
  blocks.reserve(1000);
  bool refused = false;
  while (!refused && blocks.size() < 1000) {
    try {
      blocks.push_back(allocate_node_block(largest_node_block));
    } catch (const std::bad_alloc&) {
      refused = true;
    }
  }
  if (!refused || blocks.empty()) return 2;
  const std::size_t before = blocks.size();
  release_node_block(blocks.back(), largest_node_block);
  blocks.back() = allocate_node_block(largest_node_block);
  std::memset(blocks.back(), 1, largest_node_block);
  for (std::byte* block : blocks) release_node_block(block, largest_node_block);
  for (std::byte*& block : blocks) block = allocate_node_block(largest_node_block);
  return blocks.size() == before ? 0 : 3;
}

// In a process of its own.
TEST(NodeBlocksDeathTest, tell_when_there_is_no_memory_and_recover) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  EXPECT_EXIT(::_exit(exhaust_memory()), testing::ExitedWithCode(0), "");
}
#endif

// All that this process has in memory, in bytes.
std::size_t resident() {
  std::FILE* const file = std::fopen("/proc/self/statm", "r");
  unsigned long total = 0;
  unsigned long pages = 0;
  const int read = std::fscanf(file, "%lu %lu", &total, &pages);
  std::fclose(file);
  return read == 2 ? pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) : 0;
}

TEST(NodeBlocks, give_most_of_their_memory_back_to_the_system) {
  std::vector<std::byte*> blocks;
  for (int i = 0; i < 100; ++i) {
    blocks.push_back(allocate_node_block(largest_node_block));
    std::memset(blocks.back(), 1, largest_node_block);
  }
  const std::size_t before = resident();
  for (std::byte* block : blocks) release_node_block(block, largest_node_block);
  EXPECT_LT(resident(), before - std::size_t{50} * largest_node_block);
}

}  // namespace
