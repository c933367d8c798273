#include "keys/node_memory.h"

#include <algorithm>
#include <bit>
#include <new>
#include <utility>

#include "keys/node_blocks.h"

namespace {

constexpr std::size_t doubling_limit = 4096;  // bytes in a block; see the head of node_memory.h
constexpr std::size_t later_growth = 8;       // from then on, an eighth of what there is

}  // namespace

void NodeMemory::release_all() {
  while (oldest_ != nullptr) {
    Block* const block = std::exchange(oldest_, oldest_->next);
    release_node_block(reinterpret_cast<std::byte*>(block), block->bytes);
  }
  newest_ = nullptr;
  freed_ = no_node;
  untouched_ = nullptr;
  untouched_left_ = 0;
  bytes_ = 0;
}

void NodeMemory::allocate_all(Run& run) {
  allocate_until(run.end);
  run = untouched();
}

std::uint32_t NodeMemory::next_block_bytes() const {
  const std::size_t wanted = std::max(std::min(bytes_, doubling_limit), bytes_ / later_growth);
  return static_cast<std::uint32_t>(
      std::bit_floor(std::clamp<std::size_t>(wanted, smallest_node_block, largest_node_block)));
}

void NodeMemory::add_block() {
  const std::uint32_t bytes = next_block_bytes();
  std::byte* const block = allocate_node_block(bytes);
  Block*& link = newest_ == nullptr ? oldest_ : newest_->next;
  newest_ = link = new (block) Block{nullptr, bytes};
  untouched_ = block + sizeof(Block);
  untouched_left_ = bytes - static_cast<std::uint32_t>(sizeof(Block));
  bytes_ += bytes;
}
