// Blocks of memory that links can lead into, for all containers together.
//
// In a 32-bit process they come from the heap (node_blocks_narrow.cpp), in a 64-bit one from a
// region of the address space of their own (node_blocks_wide.cpp).
#ifndef ZRB_PLUGIN_KEYS_NODE_BLOCKS_H
#define ZRB_PLUGIN_KEYS_NODE_BLOCKS_H

#include <cstddef>
#include <cstdint>

inline constexpr std::uint32_t smallest_node_block = 128;      // bytes
inline constexpr std::uint32_t largest_node_block = 2U << 20;  // bytes

/// A block of so many bytes, a power of two between the smallest and the largest block; aligned to
/// at least 8 bytes. std::bad_alloc when there is no memory. May be called from any thread.
std::byte* allocate_node_block(std::uint32_t bytes);

/// Takes back a block of so many bytes.
void release_node_block(std::byte* block, std::uint32_t bytes) noexcept;

#endif
