// Strings as elements: order, equality and hash by their UTF-8 text, whatever their encoding.
#ifndef ZRB_PLUGIN_KEYS_STRING_KEY_H
#define ZRB_PLUGIN_KEYS_STRING_KEY_H

#include <algorithm>
#include <cstdint>
#include <optional>

#include "host/binary_interface.h"
#include "host/locked_handle.h"
#include "keys/compare_bytes.h"
#include "keys/comparison_locks.h"
#include "keys/text_view.h"

/// A stored string: one host string, locked while it is held; nil is allowed and equals "".
using RBString = LockedHandle<REALstringStruct>;

/// A string that is searched for. Its text is asked of the host once, and serves the hash and all
/// comparisons of one operation.
class StringProbe : public SoughtHandle<REALstringStruct> {
 public:
  explicit StringProbe(REALstring string);  // not inline: most routines make one

  rbText& text() const { return text_; }

 private:
  mutable rbText text_;  // reads when it is first asked
};

/// The ELF hash of a UTF-8 text, its bytes each sign-extended to 32 bits before they are added; 0
/// for an empty text. The sign extension decides the bucket, and so the iteration order, of every
/// key that is not pure ASCII. `text` was not read yet. O(length).
/// Source: System V Application Binary Interface, "Hash Table".
std::uint32_t GetStringHash(rbText& text);

/// 0 when the texts are equal, negative when `a` sorts first: bytes of the UTF-8 texts, unsigned,
/// case-sensitive, a prefix before what it begins. A zero byte ends the comparison.
inline std::int32_t Compare(rbText& a, rbText& b) {
  const std::int32_t length_a = a.LengthUTF8();
  const std::int32_t length_b = b.LengthUTF8();
  const auto shorter = static_cast<std::size_t>(std::min(length_a, length_b));
  // One byte more than the shorter text: its terminator sorts a prefix first.
  return compare_bytes(a.GetUTF8(), b.GetUTF8(), shorter + 1);
}

/// Compares the texts and leaves one lock on either string, see `leave_comparison_locks`: that lock
/// also holds the stored string while it is read. Every step down a tree comes here.
ZRB_CODE_LINE std::int32_t compare_leaving_locks(const RBString& stored, const StringProbe& key);

struct EqualRBString {
  bool operator()(const RBString& stored, const StringProbe& key) const {
    return compare_leaving_locks(stored, key) == 0;
  }

  /// Of two strings that stay in their containers meanwhile.
  bool operator()(const RBString& stored, const RBString& other) const;

  /// What a comparison leaves, for strings that are known to differ.
  static void leave_locks(const RBString& stored, const RBString& other) {
    leave_comparison_locks(stored, other);
  }
};
struct LTRBString {
  /// Both answers at once: negative when the stored string comes first, 0 when they are equal.
  static std::int32_t compare(const RBString& stored, const StringProbe& key) {
    return compare_leaving_locks(stored, key);
  }

  /// Compares without leaving locks, to guess what a comparison would tell.
  static bool is_larger(const StringProbe& key, const RBString& stored);

  /// What a comparison leaves, for an order that is known.
  template <class Operand>
  static void leave_locks(const RBString& stored, const Operand& key) {
    leave_comparison_locks(stored, key);
  }
};

struct RBStringHash {
  std::uint32_t operator()(const StringProbe& key) const { return GetStringHash(key.text()); }

  /// Of a string that stays in its container meanwhile.
  std::uint32_t operator()(const RBString& stored) const;

  /// The same if every string that is equal has that hash. Nothing for a text with a zero byte:
  /// what is behind it counts for the hash alone.
  std::optional<std::uint32_t> shared_with_equals(const RBString& stored) const;
};

#endif
