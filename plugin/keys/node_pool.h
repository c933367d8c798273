// Memory for the nodes of one container.
//
// Nodes are cut from blocks, of which each is twice as large as the one before up to a limit, and
// freed nodes are used again, the last one first. Blocks go back to the heap all at once: when the
// pool dies, or when `release_blocks` is called while no node is in use. An element never moves.
#ifndef ZRB_PLUGIN_KEYS_NODE_POOL_H
#define ZRB_PLUGIN_KEYS_NODE_POOL_H

#include <algorithm>
#include <cstddef>
#include <new>

template <class Node>
class NodePool {
 public:
  NodePool() = default;
  NodePool(const NodePool&) = delete;
  NodePool& operator=(const NodePool&) = delete;
  ~NodePool() { free_all_blocks(); }

  /// A node constructed from `arguments`; std::bad_alloc when there is no memory. When its
  /// constructor throws, the memory is taken back. O(1).
  template <class... Arguments>
  Node* create(const Arguments&... arguments) {
    Slot* slot = allocate();
    try {
      return new (slot->memory) Node(arguments...);
    } catch (...) {
      deallocate(slot);
      throw;
    }
  }

  /// Destroys a node and takes its memory back, also when its destructor throws. O(1).
  void destroy(Node* node) {
    struct GiveBack {
      NodePool& pool;
      Slot* slot;
      ~GiveBack() { pool.deallocate(slot); }
    } give_back{*this, reinterpret_cast<Slot*>(node)};
    node->~Node();
  }

  /// Gives all memory back to the heap, unless a node is in use. O(blocks).
  void release_blocks() {
    if (in_use_ != 0) return;
    free_all_blocks();
    blocks_ = nullptr;
    free_ = untouched_ = untouched_end_ = nullptr;
    next_block_size_ = first_block_size;
  }

 private:
  union Slot {
    Slot* next;
    alignas(Node) unsigned char memory[sizeof(Node)];
  };
  struct Block {
    Block* previous;
  };

  static constexpr std::size_t first_block_size = 8;
  static constexpr std::size_t largest_block_size = 4096;
  static_assert(std::max(alignof(Slot), alignof(Block)) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);
  static constexpr std::size_t header_size =
      (sizeof(Block) + alignof(Slot) - 1) / alignof(Slot) * alignof(Slot);

  Slot* allocate() {
    if (free_ == nullptr) add_block();
    Slot* slot = free_;
    // The slots of a block are chained as they are first used, so a new block costs nothing.
    free_ = slot == untouched_ ? next_untouched() : slot->next;
    ++in_use_;
    return slot;
  }

  void deallocate(Slot* slot) {
    slot->next = free_;
    free_ = slot;
    --in_use_;
  }

  // Called when the free list ends at the untouched part of the newest block.
  Slot* next_untouched() {
    ++untouched_;
    if (untouched_ == untouched_end_) untouched_ = untouched_end_ = nullptr;
    return untouched_;
  }

  void add_block() {
    const std::size_t slots = next_block_size_;
    auto* block = static_cast<Block*>(::operator new(header_size + slots * sizeof(Slot)));
    block->previous = blocks_;
    blocks_ = block;
    untouched_ = reinterpret_cast<Slot*>(reinterpret_cast<unsigned char*>(block) + header_size);
    untouched_end_ = untouched_ + slots;
    free_ = untouched_;
    next_block_size_ = std::min(slots * 2, largest_block_size);
  }

  void free_all_blocks() {
    for (Block* block = blocks_; block != nullptr;) {
      Block* previous = block->previous;
      ::operator delete(block);
      block = previous;
    }
  }

  Block* blocks_ = nullptr;
  Slot* free_ = nullptr;       // freed slots first, then the untouched ones
  Slot* untouched_ = nullptr;  // first slot of the newest block that was never used
  Slot* untouched_end_ = nullptr;
  std::size_t next_block_size_ = first_block_size;
  std::size_t in_use_ = 0;
};

#endif
