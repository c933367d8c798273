// Buckets whose chains are made by hand.
#ifndef ZRB_TESTS_UNIT_KEYS_CHAINS_H
#define ZRB_TESTS_UNIT_KEYS_CHAINS_H

#include <cstdint>
#include <new>
#include <vector>

#include "keys/bucket_walk.h"
#include "keys/node_memory.h"

struct ChainedNode : ChainLink {
  explicit ChainedNode(std::uint32_t number) : key(number) {}
  std::uint32_t key;
};

/// Buckets with chains of the given lengths; keys count up in the order of a walk.
class Chains {
 public:
  explicit Chains(const std::vector<std::uint32_t>& lengths) {
    for (const std::uint32_t length : lengths) {
      heads_.push_back(no_node);
      NodeLink* end = &heads_.back();
      for (std::uint32_t i = 0; i < length; ++i) {
        *end = memory_.allocate();
        end = &(new (node_at(*end)) ChainedNode(count_++))->next;
      }
    }
  }

  std::uint32_t count() const { return count_; }
  const NodeLink* heads() const { return heads_.data(); }
  std::uint32_t bucket_count() const { return static_cast<std::uint32_t>(heads_.size()); }

 private:
  NodeMemory memory_{sizeof(ChainedNode)};
  std::vector<NodeLink> heads_;
  std::uint32_t count_ = 0;
};

#endif
