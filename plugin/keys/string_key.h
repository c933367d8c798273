// Strings as elements: order, equality and hash by their UTF-8 text, whatever their encoding.
#ifndef ZRB_PLUGIN_KEYS_STRING_KEY_H
#define ZRB_PLUGIN_KEYS_STRING_KEY_H

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "host/binary_interface.h"
#include "host/locked_handle.h"
#include "keys/text_view.h"

/// A stored string: one host string, locked while it is held; nil is allowed and equals "".
using RBString = LockedHandle<REALstringStruct>;

/// A string that is searched for. Its text is asked of the host once, and serves the hash and all
/// comparisons of one operation.
class StringProbe : public RBString {
 public:
  explicit StringProbe(REALstring string) : RBString(string), text_(string) {}

  rbText& text() const { return text_; }

 private:
  mutable rbText text_;  // reads when it is first asked
};

/// The ELF hash of a UTF-8 text, its bytes each sign-extended to 32 bits before they are added; 0
/// for an empty text. The sign extension decides the bucket, and so the iteration order, of every
/// key that is not pure ASCII. O(length).
/// Source: System V Application Binary Interface, "Hash Table".
std::uint32_t GetStringHash(rbText& text);

/// 0 when the texts are equal, negative when `a` sorts first: bytes of the UTF-8 texts, unsigned,
/// case-sensitive, a prefix before what it begins. A zero byte ends the comparison.
inline std::int32_t Compare(rbText& a, rbText& b) {
  const std::int32_t length_a = a.LengthUTF8();
  const std::int32_t length_b = b.LengthUTF8();
  const auto shorter = static_cast<std::size_t>(std::min(length_a, length_b));
  // One byte more than the shorter text: its terminator sorts a prefix first.
  return std::strncmp(a.GetUTF8(), b.GetUTF8(), shorter + 1);
}

// Equality and order leave one lock on either operand at every call, see `leave_comparison_locks`:
// that lock also holds the stored string while it is read.
struct EqualRBString {
  bool operator()(const RBString& stored, const StringProbe& key) const;
};
struct LTRBString {
  bool operator()(const RBString& stored, const StringProbe& key) const;
  bool operator()(const StringProbe& key, const RBString& stored) const;
};

struct RBStringHash {
  std::uint32_t operator()(const StringProbe& key) const { return GetStringHash(key.text()); }

  /// Of a string that stays in its container meanwhile.
  std::uint32_t operator()(const RBString& stored) const;
};

#endif
