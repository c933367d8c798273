// The comparisons of one search, each made once.
//
// A search in a tree asks of a stored key whether it comes before the key that is searched for, or
// behind it. Where an order answers both at once, by `Less::compare`, some questions need not be
// asked again: the other one about the same stored key, and any once the equal key is found, since
// whatever the search still comes to lies in order around it. Programs see the locks that
// comparisons leave, though, and those are left for each question.
#ifndef ZRB_PLUGIN_KEYS_COMPARISONS_H
#define ZRB_PLUGIN_KEYS_COMPARISONS_H

#include <cstdint>

#include "keys/hints.h"

/// `Less(a, b)` orders a stored Key and a Probe, either way round. With `Less::compare(stored,
/// probe)`, negative when the stored key comes before the probe, 0 when they are equal, it has
/// `Less::leave_locks(stored, probe)` too.
template <class Less, class Key, class Probe>
class Comparisons {
 public:
  static constexpr bool answers_both = requires(const Key& stored, const Probe& key) {
    Less::compare(stored, key);
  };

  explicit Comparisons(const Probe& key) : key_(key) {}

  /// Whether a stored key comes before the one that is searched for.
  ZRB_ALWAYS_INLINE bool is_before(const Key& stored) {
    if constexpr (answers_both) {
      return ask(stored, [](std::int32_t order) { return order < 0; });
    } else {
      return Less{}(stored, key_);
    }
  }

  /// Whether a stored key comes behind it.
  ZRB_ALWAYS_INLINE bool is_behind(const Key& stored) {
    if constexpr (answers_both) {
      return ask(stored, [](std::int32_t order) { return order > 0; });
    } else {
      return Less{}(key_, stored);
    }
  }

 private:
  // A search asks again about a key for which the answer was "no". That is every other one, so it
  // is remembered without a branch.
  template <class IsYes>
  ZRB_ALWAYS_INLINE bool ask(const Key& stored, IsYes is_yes) {
    if (is_known(stored)) return answer_again(stored, is_yes(order_));
    const std::int32_t order = Less::compare(stored, key_);
    known_ = choose(is_yes(opaque(order)), known_, &stored);
    order_ = choose(is_yes(opaque(order)), order_, order);
    return is_yes(opaque(order));
  }

  bool is_known(const Key& stored) const { return order_ == 0 || &stored == known_; }

  // Beside an equal key, all others are where the search expects them.
  [[gnu::noinline]] bool answer_again(const Key& stored, bool of_known) const {
    Less::leave_locks(stored, key_);
    return &stored != known_ || of_known;
  }

  const Probe& key_;
  const Key* known_ = nullptr;
  std::int32_t order_ = 1;  // of the known key; 0 when it is equal
};

#endif
