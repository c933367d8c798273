// Memory for the nodes of one container, and the 32-bit links between them.
//
// Blocks. Nodes are cut from blocks. The first holds 8 nodes; each further one doubles what there
// is, up to 4096 nodes, then adds an eighth. So a small container stays small, and a large one
// wastes little. Freed nodes are used again, the last one first. Blocks go back to the heap all at
// once, when the container dies or is cleared; a node never moves.
//
// Links. A link is 32 bits wide in every build: the number of the block in its upper half, in its
// lower half the offset within the block in units of two bytes. A table of block addresses turns
// a link into an address with one load that is nearly always in the first cache level, since a
// million nodes have fewer than two hundred blocks. That is paid back by nodes of half the size:
// what stops fitting the cache costs far more than the translation. Two more properties are used:
//  - nodes are aligned to four bytes, so the lowest bit of a link is 0 and free for a flag;
//  - links do not depend on where blocks lie, so copying the blocks copies a whole structure.
//
// Limits. A block holds at most 128 KiB, and there are at most 65535: beyond that, std::bad_alloc.
#ifndef ZRB_PLUGIN_KEYS_NODE_MEMORY_H
#define ZRB_PLUGIN_KEYS_NODE_MEMORY_H

#include <cstddef>
#include <cstdint>
#include <cstring>

using NodeLink = std::uint32_t;
inline constexpr NodeLink no_node = 0;

class NodeMemory {
 public:
  /// `node_size`: bytes, a multiple of 4. `at_no_node`: what the link `no_node` leads to, null or
  /// an object that outlives this one.
  explicit NodeMemory(std::uint32_t node_size, void* at_no_node = nullptr);
  NodeMemory(const NodeMemory&) = delete;
  NodeMemory& operator=(const NodeMemory&) = delete;
  ~NodeMemory() { release_all(); }

  /// Where the node lies. O(1).
  void* at(NodeLink link) const {
    return blocks_[link >> offset_bits] + (link & offset_mask) * offset_unit;
  }

  /// Memory for one node, aligned as the heap aligns what has the node's size; std::bad_alloc when
  /// there is none. O(1).
  NodeLink allocate() {
    if (const NodeLink link = freed_; link != no_node) {
      std::memcpy(&freed_, at(link), sizeof freed_);
      return link;
    }
    if (untouched_ == untouched_end_) [[unlikely]]
      add_block();
    const NodeLink link = untouched_;
    untouched_ += link_step();
    return link;
  }

  /// Takes a node's memory back. O(1).
  void deallocate(NodeLink link) {
    std::memcpy(at(link), &freed_, sizeof freed_);
    freed_ = link;
  }

  /// Gives all memory back to the heap; no node may be in use. O(blocks).
  void release_all();

  /// Takes on an exact copy of what `other` holds, under the same links; this memory must be empty
  /// and for nodes of the same size. When there is no memory it stays empty: std::bad_alloc.
  /// O(bytes).
  void copy_from(const NodeMemory& other);

 private:
  static constexpr unsigned offset_bits = 16;
  static constexpr NodeLink offset_mask = (NodeLink{1} << offset_bits) - 1;
  static constexpr std::uint32_t offset_unit = 2;
  static constexpr std::uint32_t block_limit = NodeLink{1} << offset_bits;
  static constexpr std::uint32_t largest_block_bytes = (offset_mask + 1) * offset_unit;
  static constexpr std::uint32_t first_table_size = 12;

  NodeLink link_step() const { return node_size_ / offset_unit; }
  std::uint32_t next_block_nodes() const;
  void add_block();
  void enlarge_table();

  std::byte** blocks_ = first_table_;  // addresses by block number; entry 0 is for `no_node`
  NodeLink freed_ = no_node;           // the first freed node, whose first bytes link to the next
  NodeLink untouched_ = no_node;       // the first node of the newest block that was never used
  NodeLink untouched_end_ = no_node;
  std::uint32_t node_size_;
  std::uint32_t block_count_ = 1;
  std::uint32_t table_size_ = first_table_size;
  std::uint32_t capacity_ = 0;  // nodes in all blocks
  std::byte* first_table_[first_table_size] = {};
};

#endif
