#include "keys/string_key.h"

#include "keys/comparison_locks.h"

namespace {

std::int32_t compare_leaving_locks(const RBString& stored, const StringProbe& key) {
  const REALstring handle = stored.get();
  leave_comparison_locks(handle, key.get());
  rbText text(handle);
  return Compare(text, key.text());
}

}  // namespace

// The definition takes the upper four bits off and folds them back in after each byte. Here they
// stay until the end, as the next shift drops them anyway, and the fold is taken along beside that
// shift: four operations that wait for each other instead of six.
std::uint32_t GetStringHash(rbText& text) {
  const std::int32_t length = text.LengthUTF8();
  const char* bytes = text.GetUTF8();
  std::uint32_t hash = 0;
  for (std::int32_t i = 0; i < length; ++i) {
    const auto byte = static_cast<signed char>(bytes[i]);
    const std::uint32_t shifted = (hash << 4) ^ ((hash >> 20) & 0xF00U);
    hash = shifted + static_cast<std::uint32_t>(std::int32_t{byte});
  }
  const std::uint32_t top = hash & 0xF0000000U;
  return hash ^ top ^ (top >> 24);
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
  rbText text(stored.get());
  return GetStringHash(text);
}
