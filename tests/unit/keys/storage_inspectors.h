// Invariant checkers of the storage engines: each describes what is wrong, and the whole state.
#ifndef ZRB_TESTS_UNIT_KEYS_STORAGE_INSPECTORS_H
#define ZRB_TESTS_UNIT_KEYS_STORAGE_INSPECTORS_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>

#include "keys/hashed_storage.h"
#include "keys/ordered_storage.h"

inline std::int32_t number_of(std::int32_t key) {
  return key;
}
template <class Key>
std::int32_t number_of(const Key& key) {
  return key.number();
}

/// Checks that every element lies in the bucket of its key, and that the size is the number of
/// elements and never above the bucket count, which is one of the primes.
struct HashedStorageInspector {
  template <class Storage>
  static testing::AssertionResult check(Storage& storage) {
    std::ostringstream state;
    std::uint32_t elements = 0;
    std::string wrong;
    for (std::uint32_t bucket = 0; bucket < storage.buckets_.count(); ++bucket) {
      if (storage.buckets_[bucket] == no_node) continue;
      state << "\n  bucket " << bucket << ':';
      for (NodeLink link = storage.buckets_[bucket]; link != no_node;) {
        const auto& element = storage.element(link);
        link = element.next;
        const std::int32_t number = number_of(element.key);
        state << ' ' << number;
        ++elements;
        if (static_cast<std::uint32_t>(number) % storage.buckets_.count() != bucket) {
          wrong = "a key lies in a foreign bucket";
        }
        if (elements > storage.size_) break;  // perhaps a cycle
      }
    }
    if (elements != storage.size_) wrong = "size() is not the number of elements";
    if (storage.size_ > storage.buckets_.count()) wrong = "more elements than buckets";
    if (!std::ranges::count(bucket_sizes, storage.buckets_.count())) wrong = "no prime of the list";
    if (wrong.empty()) return testing::AssertionSuccess();
    return testing::AssertionFailure() << wrong << "; size " << storage.size_ << ", "
                                       << storage.buckets_.count() << " buckets" << state.str();
  }
};

/// Checks links, threads, colours, black heights, the order of keys, the header and the size.
class OrderedStorageInspector {
 public:
  template <class Storage>
  static testing::AssertionResult check(Storage& storage) {
    OrderedStorageInspector inspector(storage.tree_);
    const auto number = [&](NodeLink node) { return number_of(storage.key_at(node)); };
    inspector.check_root();
    inspector.black_height(storage.tree_.root(), number);
    inspector.check_order(number);
    if (inspector.nodes_ != storage.size()) inspector.wrong_ = "size() is not the number of nodes";
    if (inspector.wrong_.empty()) return testing::AssertionSuccess();
    return testing::AssertionFailure() << inspector.wrong_ << "; size " << storage.size()
                                       << ", tree " << inspector.state_.str();
  }

 private:
  explicit OrderedStorageInspector(RedBlackTree& tree) : tree_(tree) {}

  void check_root() {
    const NodeLink root = tree_.root();
    if (!is_child(root)) return;
    if (tree_.header()->is_red()) wrong_ = "the header is not black";
    if (tree_.at(root).parent() != tree_.nil()) wrong_ = "the root's parent is not the header";
    if (tree_.at(root).is_red()) wrong_ = "the root is not black";
  }

  template <class Number>
  int black_height(NodeLink node, Number number) {
    if (!is_child(node)) return 0;
    const TreeLinks& links = tree_.at(node);
    ++nodes_;
    state_ << (links.is_red() ? "(r" : "(b") << number(node);
    for (const NodeLink child : links.child) {
      if (!is_child(child)) continue;
      if (tree_.at(child).parent() != node) wrong_ = "a child does not know its parent";
      if (links.is_red() && tree_.at(child).is_red()) wrong_ = "red below red";
    }
    const int left = black_height(links.left(), number);
    const int right = black_height(links.right(), number);
    state_ << ')';
    if (left != right) wrong_ = "black heights differ";
    return left + (links.is_red() ? 0 : 1);
  }

  template <class Number>
  void check_order(Number number) {
    NodeLink smallest = tree_.nil();
    NodeLink largest = tree_.nil();
    for (NodeLink node = tree_.root(); is_child(node); node = tree_.at(node).left())
      smallest = node;
    for (NodeLink node = tree_.root(); is_child(node); node = tree_.at(node).right())
      largest = node;
    if (tree_.smallest() != smallest || tree_.largest() != largest) {
      wrong_ = "the header does not point to the ends";
      return;
    }
    if (is_child(tree_.root()) && tree_.at(largest).right() != thread_to(tree_.nil())) {
      wrong_ = "the largest node's thread does not lead to the header";
    }
    for (NodeLink node = smallest; node != largest;) {
      TreeLinks* following = tree_.successor(&tree_.at(node));
      if (tree_.near_successor(&tree_.at(node)) != following) wrong_ = "near steps lead elsewhere";
      const NodeLink next = link_to(following);
      if (next == tree_.nil() || number(node) >= number(next)) {
        wrong_ = "keys are out of order";
        return;
      }
      if (tree_.predecessor(following) != &tree_.at(node)) wrong_ = "steps back lead elsewhere";
      node = next;
    }
  }

  RedBlackTree& tree_;
  std::uint32_t nodes_ = 0;
  std::string wrong_;
  std::ostringstream state_;
};

#endif
