// A buddy system: blocks whose sizes are powers of two, cut from chunks and joined again.
//
// A chunk is halved until a block has the size that is asked for. Two halves of one block are
// buddies; their addresses differ in one bit, so when a block comes back, its buddy is found at
// once, and if that is free too, both become the block that they were. What has become a whole
// chunk again goes back to where it came from.
//
// Source: K. C. Knowlton, "A Fast Storage Allocator", Communications of the ACM 8 (1965).
#ifndef ZRB_PLUGIN_KEYS_BUDDY_BLOCKS_H
#define ZRB_PLUGIN_KEYS_BUDDY_BLOCKS_H

#include <cstddef>
#include <cstdint>

/// Blocks are named by the number of their first unit; a block of order k has 2^k units. Free ones
/// are linked in their own first bytes.
class BuddyBlocks {
 public:
  static constexpr std::uint32_t unit_bytes = 128;
  static constexpr unsigned chunk_order = 14;  // a chunk has 2 MiB
  static constexpr std::uint32_t no_block = UINT32_MAX;

  constexpr BuddyBlocks() = default;

  /// Sets out with memory that begins at `start`, and one byte for each of its units, which is 0;
  /// both need be usable only as far as chunks were given. No block may be in use or free.
  void manage(std::byte* start, std::uint8_t* free_orders);

  /// A block of this order from what is free; `no_block` when that takes a new chunk. O(chunk
  /// order).
  std::uint32_t take(unsigned order);

  /// A block of this order from a new chunk; the rest of it becomes free. O(chunk order).
  std::uint32_t cut(std::uint32_t chunk, unsigned order);

  /// Takes back a block. When that makes a chunk whole again, gives the chunk, which is out of the
  /// system then; else `no_block`. O(chunk order).
  std::uint32_t give_back(std::uint32_t block, unsigned order);

 private:
  struct FreeBlock {
    std::uint32_t next;
    std::uint32_t previous;
  };

  FreeBlock& at(std::uint32_t block) const;
  void add_free(std::uint32_t block, unsigned order);
  void remove_free(std::uint32_t block, unsigned order);
  std::uint32_t halve(std::uint32_t block, unsigned order, unsigned wanted);

  std::byte* start_ = nullptr;
  std::uint8_t* free_orders_ = nullptr;    // of the free block that begins at a unit: its order + 1
  std::uint32_t first_[chunk_order] = {};  // of each order: the first free block + 1
};

#endif
