// Host strings as keys of peers, step by step as the contract for them reads, with no call saved:
// each hash and each side of a comparison makes a view of its own (encoding, lock, data, dispose,
// unlock), and a comparison takes copies of both strings whose locks stay behind.
#ifndef ZRB_SUBJECTS_HELD_STRING_H
#define ZRB_SUBJECTS_HELD_STRING_H

#include <cstddef>
#include <utility>

#include "host/binary_interface.h"

/// The host services that a peer calls, through the same resolver as the plugin.
struct StringServices {
  void (*lock)(REALstring);
  void (*unlock)(REALstring);
  std::uint32_t (*get_encoding)(REALstring);
  bool (*get_data)(REALstring, std::uint32_t, REALstringData*);
  void (*dispose_data)(REALstringData*);

  static StringServices& instance();
  void look_up(HostResolver resolver);
};

/// A string, locked while held; null is allowed.
class HeldString {
 public:
  HeldString() = default;
  explicit HeldString(REALstring string) : string_(string) { lock(); }
  HeldString(const HeldString& other) : string_(other.string_) { lock(); }
  HeldString(HeldString&& other) noexcept : string_(std::exchange(other.string_, nullptr)) {}
  HeldString& operator=(HeldString other) noexcept {
    std::swap(string_, other.string_);
    return *this;
  }
  ~HeldString() {
    if (string_ != nullptr) StringServices::instance().unlock(string_);
  }

  REALstring get() const { return string_; }

 private:
  void lock() {
    if (string_ != nullptr) StringServices::instance().lock(string_);
  }

  REALstring string_ = nullptr;
};

struct StringElement {
  using Stored = HeldString;
  static REALstring hand_out(const HeldString& string) {
    if (string.get() != nullptr) StringServices::instance().lock(string.get());
    return string.get();
  }
};

/// Not noexcept, as a host call may throw; std::unordered_map stores the codes of such a hash, and
/// so hashes and compares less often than the other tables.
struct HeldStringHash {
  std::size_t operator()(const HeldString& string) const;
};
/// The same hash with the promise that it does not throw, for which std::unordered_map computes the
/// codes anew where it needs them, as the plugin does.
struct HeldStringPromisedHash {
  std::size_t operator()(const HeldString& string) const noexcept {
    return HeldStringHash()(string);
  }
};
struct HeldStringEqual {
  bool operator()(const HeldString& a, const HeldString& b) const;
};
struct HeldStringLess {
  bool operator()(const HeldString& a, const HeldString& b) const;
};

#endif
