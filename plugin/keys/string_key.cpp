#include "keys/string_key.h"

#include <algorithm>
#include <cstring>

#include "keys/comparison_locks.h"
#include "keys/text_view.h"

std::uint32_t GetStringHash(REALstring string) {
  rbText text(string);
  const char* bytes = text.GetUTF8();
  const std::int32_t length = text.LengthUTF8();
  std::uint32_t hash = 0;
  for (std::int32_t i = 0; i < length; ++i) {
    const auto byte = static_cast<signed char>(bytes[i]);
    hash = (hash << 4) + static_cast<std::uint32_t>(std::int32_t{byte});
    const std::uint32_t top = hash & 0xF0000000U;
    hash ^= top ^ (top >> 24);
  }
  return hash;
}

std::int32_t Compare(REALstring a, REALstring b) {
  rbText text_a(a);
  rbText text_b(b);
  const std::int32_t length_a = text_a.LengthUTF8();
  const std::int32_t length_b = text_b.LengthUTF8();
  const auto shorter = static_cast<std::size_t>(std::min(length_a, length_b));
  // One byte more than the shorter text: its terminator sorts a prefix first.
  return std::strncmp(text_a.GetUTF8(), text_b.GetUTF8(), shorter + 1);
}

bool EqualRBString::operator()(const RBString& a, const RBString& b) const {
  leave_comparison_locks(a, b);
  return Compare(a.get(), b.get()) == 0;
}

bool LTRBString::operator()(const RBString& a, const RBString& b) const {
  leave_comparison_locks(a, b);
  return Compare(a.get(), b.get()) < 0;
}
