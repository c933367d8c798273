// Memory for the nodes of one container.
//
// Nodes are cut from blocks (node_blocks.h), which double from 128 bytes to four kibibytes and
// from then on add about an eighth: a small container stays small, and a large one wastes little.
// Freed nodes are used again, the last one first. Blocks are given back all at once, when the
// container dies or is cleared; a node never moves.
#ifndef ZRB_PLUGIN_KEYS_NODE_MEMORY_H
#define ZRB_PLUGIN_KEYS_NODE_MEMORY_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "keys/node_links.h"

class NodeMemory {
 public:
  /// `node_size`: bytes, a multiple of 4, at most 64.
  explicit NodeMemory(std::uint32_t node_size) : node_size_(node_size) {}
  NodeMemory(const NodeMemory&) = delete;
  NodeMemory& operator=(const NodeMemory&) = delete;
  ~NodeMemory() { release_all(); }

  std::uint32_t node_size() const { return node_size_; }

  /// How much memory there is, for nodes in use and others.
  std::size_t bytes() const { return bytes_; }

  /// Memory for one node, aligned to 8 bytes if its size is, else to 4; std::bad_alloc when there
  /// is none. O(1).
  NodeLink allocate() {
    if (const NodeLink link = freed_; link != no_node) {
      std::memcpy(&freed_, node_at(link), sizeof freed_);
      return link;
    }
    if (untouched_left_ < node_size_) [[unlikely]]
      add_block();
    std::byte* const node = untouched_;
    untouched_ += node_size_;
    untouched_left_ -= node_size_;
    return link_to(node);
  }

  /// Takes a node's memory back. O(1).
  void deallocate(NodeLink link) {
    std::memcpy(node_at(link), &freed_, sizeof freed_);
    freed_ = link;
  }

  /// Gives all memory back; no node may be in use. O(blocks).
  void release_all();

 private:
  // Stands at the beginning of each block.
  struct alignas(8) Block {
    Block* previous;
    std::uint32_t bytes;
  };

  std::uint32_t next_block_bytes() const;
  void add_block();

  NodeLink freed_ = no_node;          // the first freed node, whose first bytes link to the next
  std::uint32_t node_size_;           // bytes
  std::byte* untouched_ = nullptr;    // what was never used of the newest block
  std::uint32_t untouched_left_ = 0;  // bytes
  Block* newest_ = nullptr;
  std::size_t bytes_ = 0;  // in all blocks
};

#endif
