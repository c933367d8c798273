// Entries as nodes of a container: where their memory comes from and goes to.
#ifndef ZRB_PLUGIN_KEYS_ENTRY_NODES_H
#define ZRB_PLUGIN_KEYS_ENTRY_NODES_H

#include <memory>
#include <type_traits>

#include "keys/hints.h"
#include "keys/node_memory.h"

/// A new entry with this key and an empty value. What copying the key throws passes on, and
/// std::bad_alloc; nothing is left behind then. O(1).
template <class Entry, class Probe>
NodeLink create_entry(NodeMemory& memory, const Probe& key) {
  using Key = decltype(Entry::key);
  const NodeLink node = memory.allocate();
  const auto construct = [&] { std::construct_at(static_cast<Entry*>(node_at(node)), key); };
  if constexpr (std::is_nothrow_copy_constructible_v<Key>) {
    construct();
  } else {
    try {
      construct();
    } catch (...) {
      memory.deallocate(node);
      throw;
    }
  }
  return node;
}

/// Destroys an entry. Takes its memory back also when its destructor throws, which passes on. O(1).
template <class Entry>
ZRB_ALWAYS_INLINE void destroy_entry(NodeMemory& memory, NodeLink node) {
  struct GiveBack {
    NodeMemory& memory;
    NodeLink node;
    ~GiveBack() { memory.deallocate(node); }
  } const give_back{memory, node};
  static_cast<Entry*>(node_at(node))->~Entry();
}

#endif
