// Blocks of a 32-bit process, where every address fits a link: the heap's.
#include <new>

#include "keys/node_blocks.h"
#include "keys/node_links.h"

const std::uint64_t zero_node[8] = {};

std::byte* allocate_node_block(std::uint32_t bytes) {
  return static_cast<std::byte*>(::operator new(bytes));
}

void release_node_block(std::byte* block, std::uint32_t) noexcept {
  ::operator delete(block);
}
