#include "keys/string_key.h"

#include <algorithm>
#include <cstring>

#include "keys/comparison_locks.h"

namespace {

std::int32_t compare_leaving_locks(const RBString& stored, const StringProbe& key) {
  const REALstring handle = stored.get();
  leave_comparison_locks(handle, key.get());
  rbText text(handle, rbText::Held::by_caller);
  return Compare(text, key.text());
}

}  // namespace

std::uint32_t GetStringHash(rbText& text) {
  const std::int32_t length = text.LengthUTF8();
  const char* bytes = text.GetUTF8();
  std::uint32_t hash = 0;
  for (std::int32_t i = 0; i < length; ++i) {
    const auto byte = static_cast<signed char>(bytes[i]);
    hash = (hash << 4) + static_cast<std::uint32_t>(std::int32_t{byte});
    const std::uint32_t top = hash & 0xF0000000U;
    hash ^= top ^ (top >> 24);
  }
  return hash;
}

std::uint32_t GetStringHash(REALstring string) {
  rbText text(string);
  return GetStringHash(text);
}

std::int32_t Compare(rbText& a, rbText& b) {
  const std::int32_t length_a = a.LengthUTF8();
  const std::int32_t length_b = b.LengthUTF8();
  const auto shorter = static_cast<std::size_t>(std::min(length_a, length_b));
  // One byte more than the shorter text: its terminator sorts a prefix first.
  return std::strncmp(a.GetUTF8(), b.GetUTF8(), shorter + 1);
}

std::int32_t Compare(REALstring a, REALstring b) {
  rbText text_a(a);
  rbText text_b(b);
  return Compare(text_a, text_b);
}

bool EqualRBString::operator()(const RBString& stored, const StringProbe& key) const {
  return compare_leaving_locks(stored, key) == 0;
}

bool LTRBString::operator()(const RBString& stored, const StringProbe& key) const {
  return compare_leaving_locks(stored, key) < 0;
}

bool LTRBString::operator()(const StringProbe& key, const RBString& stored) const {
  return compare_leaving_locks(stored, key) > 0;
}

std::uint32_t RBStringHash::operator()(const RBString& stored) const {
  rbText text(stored.get(), rbText::Held::by_caller);
  return GetStringHash(text);
}
