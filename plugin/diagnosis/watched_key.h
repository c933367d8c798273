// Keys as the diagnostic build stores them: the book hears when one dies, and its element with it.
#ifndef ZRB_PLUGIN_DIAGNOSIS_WATCHED_KEY_H
#define ZRB_PLUGIN_DIAGNOSIS_WATCHED_KEY_H

#include <cstdint>
#include <type_traits>

#include "diagnosis/iterator_book.h"
#include "diagnosis/switch.h"

namespace diagnosis {

/// A key with nothing added to it. Keys outside of containers are in nobody's book, so whoever uses
/// one as a temporary does no harm.
template <class Stored>
class WatchedKey : public Stored {
 public:
  WatchedKey(const Stored& key) : Stored(key) {}
  WatchedKey(const WatchedKey&) = default;
  WatchedKey& operator=(const WatchedKey&) = default;
  ~WatchedKey() { IteratorBook::instance().element_ends(this); }
};

/// Since it is not trivially copyable, storage destroys the keys that it removes, and does not just
/// forget them.
template <>
class WatchedKey<std::int32_t> {
 public:
  WatchedKey(std::int32_t key) noexcept : key_(key) {}
  WatchedKey(const WatchedKey&) noexcept = default;
  WatchedKey& operator=(const WatchedKey&) noexcept = default;
  ~WatchedKey() { IteratorBook::instance().element_ends(this); }

  operator std::int32_t() const noexcept { return key_; }

 private:
  std::int32_t key_;
};

/// What storage keeps for a key.
template <class Stored>
using KeyInStorage = std::conditional_t<enabled, WatchedKey<Stored>, Stored>;

}  // namespace diagnosis

#endif
