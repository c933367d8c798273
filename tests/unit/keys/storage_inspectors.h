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
    for (std::uint32_t bucket = 0; bucket < storage.buckets_.count; ++bucket) {
      if (storage.buckets_[bucket] == nullptr) continue;
      state << "\n  bucket " << bucket << ':';
      for (auto* node = storage.buckets_[bucket]; node != nullptr; node = node->next) {
        state << ' ' << number_of(node->key);
        ++elements;
        if (static_cast<std::uint32_t>(number_of(node->key)) % storage.buckets_.count != bucket) {
          wrong = "a key lies in a foreign bucket";
        }
        if (elements > storage.size_) break;  // perhaps a cycle
      }
    }
    if (elements != storage.size_) wrong = "size() is not the number of elements";
    if (storage.size_ > storage.buckets_.count) wrong = "more elements than buckets";
    if (!std::ranges::count(bucket_sizes, storage.buckets_.count)) wrong = "no prime of the list";
    if (wrong.empty()) return testing::AssertionSuccess();
    return testing::AssertionFailure() << wrong << "; size " << storage.size_ << ", "
                                       << storage.buckets_.count << " buckets" << state.str();
  }
};

/// Checks links, colours, black heights, the order of keys, the header and the size.
class OrderedStorageInspector {
 public:
  template <class Storage>
  static testing::AssertionResult check(Storage& storage) {
    OrderedStorageInspector inspector;
    using Node = typename Storage::Node;
    NodeBase* header = storage.end().node;
    NodeBase* root = header->parent;
    if (root != nullptr) {
      if (root->parent != header) inspector.wrong_ = "the root's parent is not the header";
      if (root->colour != Colour::black) inspector.wrong_ = "the root is not black";
    }
    const auto print = [&](NodeBase* node) {
      inspector.state_ << number_of(static_cast<Node*>(node)->key);
    };
    const auto less = [](NodeBase* a, NodeBase* b) {
      return number_of(static_cast<Node*>(a)->key) < number_of(static_cast<Node*>(b)->key);
    };
    inspector.black_height(root, print);
    inspector.check_order(root, header, less);
    if (inspector.nodes_ != storage.size()) inspector.wrong_ = "size() is not the number of nodes";
    if (inspector.wrong_.empty()) return testing::AssertionSuccess();
    return testing::AssertionFailure() << inspector.wrong_ << "; size " << storage.size()
                                       << ", tree " << inspector.state_.str();
  }

 private:
  using NodeBase = red_black_tree::NodeBase;
  using Colour = red_black_tree::Colour;

  template <class Print>
  int black_height(NodeBase* node, Print print) {
    if (node == nullptr) return 0;
    ++nodes_;
    state_ << (node->colour == Colour::red ? "(r" : "(b");
    print(node);
    for (NodeBase* child : {node->left, node->right}) {
      if (child == nullptr) continue;
      if (child->parent != node) wrong_ = "a child does not know its parent";
      if (node->colour == Colour::red && child->colour == Colour::red) wrong_ = "red below red";
    }
    const int left = black_height(node->left, print);
    const int right = black_height(node->right, print);
    state_ << ')';
    if (left != right) wrong_ = "black heights differ";
    return left + (node->colour == Colour::black ? 1 : 0);
  }

  template <class Less>
  void check_order(NodeBase* root, NodeBase* header, Less less) {
    NodeBase* smallest = header;
    NodeBase* largest = header;
    for (NodeBase* node = root; node != nullptr; node = node->left) smallest = node;
    for (NodeBase* node = root; node != nullptr; node = node->right) largest = node;
    if (header->left != smallest || header->right != largest) {
      wrong_ = "the header does not point to the ends";
      return;
    }
    for (NodeBase* node = smallest; node != header && node != largest;) {
      NodeBase* next = red_black_tree::successor(node);
      if (next == header || !less(node, next)) {
        wrong_ = "keys are out of order";
        return;
      }
      if (red_black_tree::predecessor(next) != node) wrong_ = "steps back lead elsewhere";
      node = next;
    }
  }

  std::uint32_t nodes_ = 0;
  std::string wrong_;
  std::ostringstream state_;
};

#endif
