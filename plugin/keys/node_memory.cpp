#include "keys/node_memory.h"

#include <algorithm>
#include <new>

namespace {

constexpr std::uint32_t first_block_nodes = 8;
constexpr std::uint32_t doubling_limit = 4096;  // nodes in a block; see the head of node_memory.h
constexpr std::uint32_t later_growth = 8;       // from then on, an eighth of what there is

}  // namespace

NodeMemory::NodeMemory(std::uint32_t node_size, void* at_no_node) : node_size_(node_size) {
  blocks_[no_node] = static_cast<std::byte*>(at_no_node);
}

void NodeMemory::release_all() {
  for (std::uint32_t number = 1; number < block_count_; ++number) {
    ::operator delete(blocks_[number]);
  }
  if (blocks_ != first_table_) {
    ::operator delete(blocks_);
    blocks_ = first_table_;
  }
  freed_ = untouched_ = untouched_end_ = no_node;
  block_count_ = 1;
  table_size_ = first_table_size;
  capacity_ = 0;
}

void NodeMemory::copy_from(const NodeMemory& other) {
  try {
    for (std::uint32_t number = 1; number < other.block_count_; ++number) {
      const std::uint32_t bytes = next_block_nodes() * node_size_;
      add_block();
      // Of the last block, only what was ever used.
      const bool partly_used = number == other.block_count_ - 1;
      const std::uint32_t used =
          partly_used ? bytes - (other.untouched_end_ - other.untouched_) * offset_unit : bytes;
      std::memcpy(blocks_[number], other.blocks_[number], used);
    }
  } catch (...) {
    release_all();
    throw;
  }
  freed_ = other.freed_;
  untouched_ = other.untouched_;
  untouched_end_ = other.untouched_end_;
}

std::uint32_t NodeMemory::next_block_nodes() const {
  if (capacity_ == 0) return first_block_nodes;
  const std::uint32_t wanted =
      std::max(std::min(capacity_, doubling_limit), capacity_ / later_growth);
  return std::min(wanted, largest_block_bytes / node_size_);
}

void NodeMemory::add_block() {
  if (block_count_ == block_limit) throw std::bad_alloc();
  if (block_count_ == table_size_) enlarge_table();
  const std::uint32_t nodes = next_block_nodes();
  blocks_[block_count_] = static_cast<std::byte*>(::operator new (std::size_t{nodes} * node_size_));
  untouched_ = block_count_ << offset_bits;
  untouched_end_ = untouched_ + nodes * link_step();
  ++block_count_;
  capacity_ += nodes;
}

void NodeMemory::enlarge_table() {
  const std::uint32_t larger_size = table_size_ * 2;
  auto** larger = static_cast<std::byte**>(::operator new(larger_size * sizeof(std::byte*)));
  std::copy_n(blocks_, block_count_, larger);
  if (blocks_ != first_table_) ::operator delete(blocks_);
  blocks_ = larger;
  table_size_ = larger_size;
}
