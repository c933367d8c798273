// Searches in the chain of one bucket, for keys that ask nobody when they are compared.
//
// Where a chain ends, zeros are read and compared instead of testing for the end first: such a test
// is guessed wrong every other time, and most chains have no more than two nodes. A key of 0 is
// found there, as the node that is none. Which of the two nodes it is, if any, is guessed wrong at
// every fourth hit. In tables that are not large a search therefore loads both and chooses without
// a branch; far away in memory, waiting for the second one would take longer than wrong guesses do.
#ifndef ZRB_PLUGIN_KEYS_PLAIN_CHAIN_H
#define ZRB_PLUGIN_KEYS_PLAIN_CHAIN_H

#include <cstdint>
#include <type_traits>

#include "keys/hints.h"
#include "keys/node_links.h"

/// `Element` begins with ChainLink. `first` is the first node of the chain, or `no_node`.
/// O(length).
template <class Element, class Equal>
struct PlainChain {
  using Key = decltype(Element::key);

  /// The node with this key, or `no_node`.
  ZRB_ALWAYS_INLINE static NodeLink find(NodeLink first, const Key& key) {
    const Element& one = readable(first);
    if (Equal{}(one.key, key)) return first;
    const NodeLink second = one.next;
    const Element& two = readable(second);
    if (Equal{}(two.key, key)) return second;
    return find_behind(two, key);
  }

  /// The same, for nodes that are likely in the cache.
  ZRB_ALWAYS_INLINE static NodeLink find_near(NodeLink first, const Key& key) {
    const Element& one = readable(first);
    const NodeLink second = one.next;
    const Element& two = readable(second);
    NodeLink link = choose(Equal{}(two.key, key), second, no_node);
    link = choose(Equal{}(one.key, key), first, link);
    return link != no_node ? link : find_behind(two, key);
  }

  /// The value of this key, `otherwise` when there is none, for integers of 32 bits that are likely
  /// in the cache; `key` is not 0, as which the end of a chain is read. Key and value are chosen
  /// together, in one register: so a search whose key is what another one has found waits for one
  /// load less.
  template <class Value>
  ZRB_ALWAYS_INLINE static Value value_near_or(NodeLink first, const Key& key,
                                               const Value& otherwise) {
    const Element& one = readable(first);
    const Element& two = readable(one.next);
    const std::uint64_t in_first = key_and_value(one);
    const std::uint64_t found = choose(key_in(in_first) == key, in_first, key_and_value(two));
    if (key_in(found) == key) [[likely]]
      return static_cast<Value>(found >> 32);
    const NodeLink link = find_behind(two, key);
    return link == no_node ? otherwise : readable(link).value;
  }

 private:
  static const Element& readable(NodeLink link) {
    return *static_cast<const Element*>(readable_node_at(link));
  }

  ZRB_ALWAYS_INLINE static NodeLink find_behind(const Element& before, const Key& key) {
    NodeLink link = before.next;
    while (link != no_node && !Equal{}(element(link).key, key)) link = element(link).next;
    return link;
  }

  static const Element& element(NodeLink link) {
    return *static_cast<const Element*>(node_at(link));
  }

  static std::uint64_t key_and_value(const Element& element) {
    return opaque(std::uint64_t{static_cast<std::uint32_t>(element.value)} << 32 |
                  static_cast<std::uint32_t>(element.key));
  }
  static Key key_in(std::uint64_t key_and_value) { return static_cast<Key>(key_and_value); }
};

#endif
