// Keys and values that a careful program would not make, but a host may hold: ill-formed text, text
// of other encodings, embedded zero bytes, numbers that are none, objects.
#ifndef ZRB_TESTS_MODEL_ODD_CONTENTS_H
#define ZRB_TESTS_MODEL_ODD_CONTENTS_H

#include <cstdint>
#include <string>
#include <vector>

#include "runtime/handles.h"

namespace model {

/// A text as bytes of an encoding.
struct EncodedText {
  std::uint32_t encoding;
  std::string bytes;
};

/// Strings that are the same key.
struct OddText {
  std::string text;  // what a key reads, in UTF-8; no other row has the same up to a zero byte
  std::vector<EncodedText> forms;
};
const std::vector<OddText>& odd_texts();

/// A variant that is no text.
struct OddVariant {
  /// A new one; the other form has other bytes, if there are such of an equal value.
  standin::ObjectRef (*make)(bool other_form);
  /// Whether it is equal to itself alone, as objects and NaNs are.
  bool has_identity = false;
  bool is_nan = false;
  /// Whether it belongs to a choice of which no two have a type with an order of values in common.
  bool is_unlike = false;
};
const std::vector<OddVariant>& odd_variants();
/// So many of them, the first ones, are Doubles in ascending order.
int odd_real_count();

}  // namespace model

#endif
