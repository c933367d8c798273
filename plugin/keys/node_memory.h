// Memory for the nodes of one container.
//
// Nodes are cut from blocks (node_blocks.h), which double from 128 bytes to four kibibytes and
// from then on add about an eighth: a small container stays small, and a large one wastes little.
// Freed nodes are used again, the last one first. Blocks are given back all at once, when the
// container dies or is cleared; a node never moves. Blocks are linked from the oldest on, so that
// nodes can be gone through in the order in which they were allocated.
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

  /// Nodes that lie one after the other.
  struct Run {
    std::byte* next;
    std::byte* end;
  };

  /// At least one node that was never allocated, nor is by this; std::bad_alloc when there is no
  /// memory for one. O(1).
  Run untouched() {
    if (untouched_left_ < node_size_) [[unlikely]]
      add_block();
    return {untouched_, untouched_ + (untouched_left_ - untouched_left_ % node_size_)};
  }

  /// Allocates the nodes of `untouched()` that lie before `end`. Who needs many nodes and nothing
  /// else meanwhile keeps the place of the next one in a register that way, and takes half the
  /// time. O(1).
  void allocate_until(std::byte* end) {
    untouched_left_ -= static_cast<std::uint32_t>(end - untouched_);
    untouched_ = end;
  }

  /// Allocates all nodes of that run, which becomes the next one; std::bad_alloc when there is
  /// none.
  void allocate_all(Run& run);

  class Sequence;

  /// Gives all memory back; no node may be in use. O(blocks).
  void release_all();

 private:
  // Stands at the beginning of each block.
  struct alignas(8) Block {
    Block* next;
    std::uint32_t bytes;
  };

  std::uint32_t next_block_bytes() const;
  void add_block();

  NodeLink freed_ = no_node;          // the first freed node, whose first bytes link to the next
  std::uint32_t node_size_;           // bytes
  std::byte* untouched_ = nullptr;    // what was never used of the newest block
  std::uint32_t untouched_left_ = 0;  // bytes
  Block* oldest_ = nullptr;
  Block* newest_ = nullptr;
  std::size_t bytes_ = 0;  // in all blocks
};

/// The nodes of a memory to which none was given back, in the order in which they were allocated.
class NodeMemory::Sequence {
 public:
  /// `memory` has a node already.
  explicit Sequence(const NodeMemory& memory) : node_size_(memory.node_size_) {
    enter(memory.oldest_);
  }

  /// Whether the last node lies right before this place.
  bool is_at(const std::byte* place) const { return in_block_.next == place; }

  /// The next node, which must have been allocated by now. O(1).
  NodeLink next() {
    if (in_block_.next == in_block_.end) [[unlikely]]
      enter(block_->next);
    std::byte* const node = in_block_.next;
    in_block_.next += node_size_;
    return link_to(node);
  }

 private:
  void enter(Block* block) {
    block_ = block;
    const auto room = block->bytes - static_cast<std::uint32_t>(sizeof(Block));
    in_block_.next = reinterpret_cast<std::byte*>(block + 1);
    in_block_.end = in_block_.next + (room - room % node_size_);
  }

  std::uint32_t node_size_;  // bytes
  Block* block_;
  Run in_block_;
};

#endif
