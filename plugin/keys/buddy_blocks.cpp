#include "keys/buddy_blocks.h"

#include "keys/poison.h"

void BuddyBlocks::manage(std::byte* start, std::uint8_t* free_orders) {
  start_ = start;
  free_orders_ = free_orders;
}

BuddyBlocks::FreeBlock& BuddyBlocks::at(std::uint32_t block) const {
  return *reinterpret_cast<FreeBlock*>(start_ + std::size_t{block} * unit_bytes);
}

void BuddyBlocks::add_free(std::uint32_t block, unsigned order) {
  const std::uint32_t next = first_[order] - 1;
  unpoison(&at(block), sizeof(FreeBlock));
  at(block) = {next, no_block};
  if (next != no_block) at(next).previous = block;
  first_[order] = block + 1;
  free_orders_[block] = static_cast<std::uint8_t>(order + 1);
}

void BuddyBlocks::remove_free(std::uint32_t block, unsigned order) {
  const FreeBlock links = at(block);
  if (links.previous == no_block) {
    first_[order] = links.next + 1;
  } else {
    at(links.previous).next = links.next;
  }
  if (links.next != no_block) at(links.next).previous = links.previous;
  free_orders_[block] = 0;
}

// Keeps what lies behind the wanted block at the beginning.
std::uint32_t BuddyBlocks::halve(std::uint32_t block, unsigned order, unsigned wanted) {
  while (order > wanted) {
    --order;
    add_free(block + (1U << order), order);
  }
  return block;
}

std::uint32_t BuddyBlocks::take(unsigned order) {
  for (unsigned larger = order; larger < chunk_order; ++larger) {
    if (first_[larger] == 0) continue;
    const std::uint32_t block = first_[larger] - 1;
    remove_free(block, larger);
    return halve(block, larger, order);
  }
  return no_block;
}

std::uint32_t BuddyBlocks::cut(std::uint32_t chunk, unsigned order) {
  return halve(chunk, chunk_order, order);
}

std::uint32_t BuddyBlocks::give_back(std::uint32_t block, unsigned order) {
  for (; order < chunk_order; ++order) {
    const std::uint32_t buddy = block ^ (1U << order);
    if (free_orders_[buddy] != order + 1) {
      add_free(block, order);
      return no_block;
    }
    remove_free(buddy, order);
    block &= ~(1U << order);
  }
  return block;
}
