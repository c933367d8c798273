// Nodes that were taken out of a storage: destroyed at once, or when nobody looks at them any more.
//
// The destruction of an element calls the host, which can change the storage, or throw. So nodes
// are first taken out, all that go, as a chain by a link that each of them no longer needs. Within
// another operation (in_use.h) the chain waits for the end of the outermost one.
#ifndef ZRB_PLUGIN_KEYS_NODE_REMOVAL_H
#define ZRB_PLUGIN_KEYS_NODE_REMOVAL_H

#include <cstdint>
#include <utility>

#include "host/locked_handle.h"
#include "keys/finish.h"
#include "keys/hints.h"
#include "keys/in_use.h"
#include "keys/node_links.h"

/// A base class of `Storage`, which is Usable and a friend, tells whether its elements are plain
/// (`plain_elements`: their destruction calls nobody), finds an element (`element`) and the link of
/// a removed one that leads on in the chain (`next_in_chain`), and destroys one node (`destroy`).
template <class Storage>
class NodeRemoval {
 protected:
  /// Nodes that were taken out, in the order in which they were, and are still to be destroyed.
  class RemovedNodes {
   public:
    explicit RemovedNodes(NodeRemoval& removal) : removal_(removal) {}
    RemovedNodes(const RemovedNodes&) = delete;
    RemovedNodes& operator=(const RemovedNodes&) = delete;

    /// When an exception passes: destroys them; see `release_in_destructor`.
    ~RemovedNodes() noexcept(Storage::plain_elements) {
      if constexpr (!Storage::plain_elements) {
        if (first_ != no_node) release_in_destructor([this] { destroy(); });
      }
    }

    void add(NodeLink node) {
      Storage& storage = removal_.storage();
      storage.next_in_chain(node) = no_node;
      (first_ == no_node ? first_ : storage.next_in_chain(last_)) = node;
      last_ = node;
      ++count_;
    }

    /// Destroys the nodes, or leaves that to the end of the outermost operation; how many there
    /// were. What destruction throws passes on when all of them are gone.
    std::uint32_t destroy() {
      if (first_ != no_node) removal_.destroy_all_or_put_off(std::exchange(first_, no_node), last_);
      return count_;
    }

   private:
    NodeRemoval& removal_;
    NodeLink first_ = no_node;
    NodeLink last_ = no_node;
    std::uint32_t count_ = 0;
  };

  /// The same for one node.
  void destroy_or_put_off(NodeLink node) {
    if (Storage::plain_elements || !storage().is_used_by_several()) {
      storage().destroy(node);
    } else {
      put_off(node, node);
    }
  }

  /// Whether nodes that were taken out are still in memory, although the storage is empty.
  bool has_put_off() const { return put_off_ != no_node; }

  /// What was put off: for the end of the outermost operation.
  [[gnu::cold]] void finish_work() {
    finish_despite_exceptions([this] { destroy_chain(put_off_); });
  }

 private:
  Storage& storage() { return static_cast<Storage&>(*this); }

  // Not inline: every way to remove several comes here.
  [[gnu::noinline]] void destroy_all_or_put_off(NodeLink first, NodeLink last) {
    if constexpr (Storage::plain_elements) {
      destroy_chain(first);
    } else if (storage().is_used_by_several()) {
      put_off(first, last);
    } else if (first == last) {
      storage().destroy(first);
    } else {
      finish_despite_exceptions([&] { destroy_chain(first); });
    }
  }

  void put_off(NodeLink first, NodeLink last) {
    storage().next_in_chain(last) = std::exchange(put_off_, first);
    storage().put_off_work();
  }

  [[gnu::noinline]] void destroy_chain(NodeLink& first) {
    while (first != no_node) {
      const NodeLink node = first;
      first = storage().next_in_chain(node);
      if (first != no_node) prefetch_content(storage().element(first));
      storage().destroy(node);
    }
  }

  NodeLink put_off_ = no_node;  // a chain
};

#endif
