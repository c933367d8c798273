// Blocks of a 64-bit process: all from one region of the address space, so that 32 bits lead
// anywhere in it.
//
// The region is reserved once, as addresses without memory. Memory is asked of the system in chunks
// of two mebibytes, which a buddy system cuts into blocks (buddy_blocks.h). A chunk that is whole
// again gives its memory back to the system, but for a few that are kept for the next container.
//
// Limits. Links of 32 bits reach eight gibibytes of nodes in all; where a process may not reserve
// so many addresses, half of that, and so on. Beyond that, std::bad_alloc.
#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <bit>
#include <mutex>
#include <new>

#include "keys/buddy_blocks.h"
#include "keys/node_blocks.h"
#include "keys/node_links.h"
#include "keys/poison.h"

namespace {

// Stands for the beginning of the region before there is one.
std::byte zeros[64];

}  // namespace

std::byte* node_region = zeros;

namespace {

constexpr std::size_t chunk_bytes = largest_node_block;
constexpr std::size_t units_in_chunk = chunk_bytes / BuddyBlocks::unit_bytes;
constexpr std::size_t most_chunks = (std::size_t{2} << 32) / chunk_bytes;
constexpr std::size_t fewest_chunks = 32;
constexpr std::uint32_t kept_chunks = 4;

static_assert(chunk_bytes == std::size_t{BuddyBlocks::unit_bytes} << BuddyBlocks::chunk_order);
static_assert(smallest_node_block == BuddyBlocks::unit_bytes);

enum class ChunkState : std::uint8_t { without_memory, kept, used };

class Region {
 public:
  constexpr Region() = default;

  std::byte* allocate(unsigned order) {
    const std::lock_guard guard(mutex_);
    std::uint32_t block = blocks_.take(order);
    if (block == BuddyBlocks::no_block) block = blocks_.cut(take_chunk(), order);
    return node_region + std::size_t{block} * BuddyBlocks::unit_bytes;
  }

  void release(std::byte* block, unsigned order) {
    const std::lock_guard guard(mutex_);
    const auto unit = static_cast<std::uint32_t>((block - node_region) / BuddyBlocks::unit_bytes);
    const std::uint32_t chunk = blocks_.give_back(unit, order);
    if (chunk != BuddyBlocks::no_block) return_chunk(chunk / units_in_chunk);
  }

  // Gives the addresses back, unless some are still in use.
  void dissolve() {
    if (node_region == zeros || used_ != 0) return;
    ::munmap(node_region, reserved_bytes());
    node_region = zeros;
  }

 private:
  // The chunks, and behind them the bytes that the buddy system keeps for the units.
  std::size_t reserved_bytes() const { return chunk_count_ * (chunk_bytes + units_in_chunk); }
  std::byte* chunk_at(std::size_t chunk) const { return node_region + chunk * chunk_bytes; }
  std::byte* unit_bytes_of(std::size_t chunk) const {
    return chunk_at(chunk_count_) + chunk * units_in_chunk;
  }

  void reserve() {
    for (chunk_count_ = most_chunks; chunk_count_ >= fewest_chunks; chunk_count_ /= 2) {
      void* const region = ::mmap(nullptr, reserved_bytes(), PROT_NONE,
                                  MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
      if (region == MAP_FAILED) continue;
      if (::mprotect(region, sizeof zeros, PROT_READ) != 0) {
        ::munmap(region, reserved_bytes());
        break;
      }
      node_region = static_cast<std::byte*>(region);
      blocks_.manage(node_region, reinterpret_cast<std::uint8_t*>(unit_bytes_of(0)));
      return;
    }
    throw std::bad_alloc();
  }

  // The first unit of a chunk with memory. The first chunk of all stays without: no node may have
  // the link `no_node`.
  std::uint32_t take_chunk() {
    if (node_region == zeros) reserve();
    const auto first = states_.begin() + 1;
    const auto end = states_.begin() + static_cast<std::ptrdiff_t>(chunk_count_);
    auto chosen = kept_ == 0 ? end : std::find(first, end, ChunkState::kept);
    if (chosen == end) {
      chosen = std::find(first, end, ChunkState::without_memory);
      if (chosen == end) throw std::bad_alloc();
      give_memory(number_of(chosen));
    } else {
      --kept_;
    }
    *chosen = ChunkState::used;
    ++used_;
    return static_cast<std::uint32_t>(number_of(chosen) * units_in_chunk);
  }

  std::size_t number_of(const ChunkState* state) const {
    return static_cast<std::size_t>(state - states_.begin());
  }

  void give_memory(std::size_t chunk) {
    constexpr int access = PROT_READ | PROT_WRITE;
    if (::mprotect(chunk_at(chunk), chunk_bytes, access) != 0 ||
        ::mprotect(unit_bytes_of(chunk), units_in_chunk, access) != 0) {
      throw std::bad_alloc();
    }
  }

  // No block of it is in use.
  void return_chunk(std::size_t chunk) {
    --used_;
    unpoison(chunk_at(chunk), chunk_bytes);
    if (kept_ < kept_chunks) {
      ++kept_;
      states_[chunk] = ChunkState::kept;
    } else {
      ::madvise(chunk_at(chunk), chunk_bytes, MADV_DONTNEED);
      states_[chunk] = ChunkState::without_memory;
    }
  }

  std::mutex mutex_;
  BuddyBlocks blocks_;
  std::array<ChunkState, most_chunks> states_ = {};
  std::size_t chunk_count_ = 0;
  std::uint32_t kept_ = 0;
  std::uint32_t used_ = 0;
};

constinit Region region;

// When the plugin is unloaded; a constructor to pair it with would run before the plugin is called.
[[gnu::destructor]] void dissolve_region() {
  region.dissolve();
}

unsigned order_of(std::uint32_t bytes) {
  return static_cast<unsigned>(std::countr_zero(bytes / smallest_node_block));
}

}  // namespace

std::byte* allocate_node_block(std::uint32_t bytes) {
  std::byte* const block = region.allocate(order_of(bytes));
  unpoison(block, bytes);
  return block;
}

void release_node_block(std::byte* block, std::uint32_t bytes) noexcept {
  poison(block, bytes);
  region.release(block, order_of(bytes));
}
