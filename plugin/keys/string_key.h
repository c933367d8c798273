// Strings as elements: order, equality and hash by their UTF-8 text, whatever their encoding.
#ifndef ZRB_PLUGIN_KEYS_STRING_KEY_H
#define ZRB_PLUGIN_KEYS_STRING_KEY_H

#include <cstdint>

#include "host/binary_interface.h"
#include "host/locked_handle.h"

/// A stored string: one host string, locked while it is held; nil is allowed and equals "".
using RBString = LockedHandle<REALstringStruct>;

/// The ELF hash of the string's UTF-8 bytes, each sign-extended to 32 bits before it is added; 0
/// for an empty text. The sign extension decides the bucket, and so the iteration order, of every
/// key that is not pure ASCII. O(length).
/// Source: System V Application Binary Interface, "Hash Table".
std::uint32_t GetStringHash(REALstring string);

/// 0 when the texts are equal, negative when `a` sorts first: bytes of the UTF-8 texts, unsigned,
/// case-sensitive, a prefix before what it begins. A zero byte ends the comparison.
std::int32_t Compare(REALstring a, REALstring b);

// Equality and order leave one lock on either operand at every call, see `leave_comparison_locks`.
struct EqualRBString {
  bool operator()(const RBString& a, const RBString& b) const;
};
struct LTRBString {
  bool operator()(const RBString& a, const RBString& b) const;
};
struct RBStringHash {
  std::uint32_t operator()(const RBString& string) const { return GetStringHash(string.get()); }
};

#endif
