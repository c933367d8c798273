// Links to nodes: 32 bits wide in every build, so that nodes stay small.
//
// In a 32-bit process a link is the node's address. In a 64-bit one, all nodes lie in one region of
// the address space (node_blocks_wide.cpp), and a link is the offset in it, in units of two bytes.
// Either way a link becomes an address within one instruction, and an address a link; nodes of half
// the size are what fits the cache twice as often.
//
// Nodes are aligned to four bytes, so the lowest bit of a link is 0 and free for a flag.
#ifndef ZRB_PLUGIN_KEYS_NODE_LINKS_H
#define ZRB_PLUGIN_KEYS_NODE_LINKS_H

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "keys/hints.h"

using NodeLink = std::uint32_t;

/// Leads to no node.
inline constexpr NodeLink no_node = 0;

/// Where the region of a 64-bit process begins: with zeros.
[[gnu::visibility("hidden")]] extern std::byte* node_region;

/// Zeros for a 32-bit process, as many as the largest node has bytes.
[[gnu::visibility("hidden")]] extern const std::uint64_t zero_node[8];

/// Where a node lies. For `no_node`, an address that must not be read from.
inline void* node_at(NodeLink link) {
  if constexpr (sizeof(void*) == sizeof link) {
    return reinterpret_cast<void*>(std::uintptr_t{link});
  } else {
    return node_region + std::size_t{link} * 2;
  }
}

/// Where a node lies; for `no_node`, zeros that may be read. Takes no branch, which would often be
/// guessed wrong.
inline const void* readable_node_at(NodeLink link) {
  if constexpr (sizeof(void*) == sizeof link) {
    const auto zeros = reinterpret_cast<std::uintptr_t>(zero_node);
    const auto instead = zeros & (std::uintptr_t{link != no_node} - 1);
    return reinterpret_cast<const void*>(link | instead);
  } else {
    return node_at(link);
  }
}

/// A member of all nodes of the type Node: `Member()(node)` refers to it. In a 64-bit process, a
/// link leads to it with one instruction less than by way of the node's address; a search through a
/// tree, where each load waits for the one before, takes a tenth of the time less.
template <class Node, class Member>
class MemberOfNodes {
  using Value = std::invoke_result_t<Member, const Node&>;  // a reference

 public:
  MemberOfNodes() {
    if constexpr (is_narrower_than_address) {
      in_first_ = opaque(&Member()(*static_cast<const Node*>(node_at(no_node))));
    }
  }

  ZRB_ALWAYS_INLINE Value operator[](NodeLink link) const {
    if constexpr (is_narrower_than_address) {
      const auto* const bytes = reinterpret_cast<const std::byte*>(in_first_);
      return *reinterpret_cast<Address>(bytes + std::size_t{link} * 2);
    } else {
      return Member()(*static_cast<const Node*>(node_at(link)));
    }
  }

 private:
  using Address = std::add_pointer_t<Value>;
  static constexpr bool is_narrower_than_address = sizeof(NodeLink) < sizeof(void*);

  Address in_first_ = nullptr;  // in a node that began the region
};

/// The link that leads to a node.
inline NodeLink link_to(const void* node) {
  if constexpr (sizeof(void*) == sizeof(NodeLink)) {
    return static_cast<NodeLink>(reinterpret_cast<std::uintptr_t>(node));
  } else {
    return static_cast<NodeLink>((static_cast<const std::byte*>(node) - node_region) / 2);
  }
}

#endif
