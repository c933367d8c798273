#include "keys/string_key.h"

#include <cstddef>
#include <cstring>

namespace {

// Texts of this many bytes and more begin with some that are hashed at once.
constexpr std::int32_t at_once = 8;

bool is_ascii(std::uint64_t bytes) {
  return (bytes & 0x8080808080808080U) == 0;
}

// The hash of the first seven of eight ASCII bytes, which is not folded yet: none of them comes to
// the upper four bits before the seventh. So they are only shifted and added, here in pairs.
std::uint32_t hash_of_first_seven(std::uint64_t bytes) {
  const std::uint64_t seven = bytes << 8;  // in memory, behind a zero
  const std::uint64_t twos =
      ((seven & 0x00FF00FF00FF00FFU) << 4) + (seven >> 8 & 0x00FF00FF00FF00FFU);
  const std::uint64_t fours =
      ((twos & 0x0000FFFF0000FFFFU) << 8) + (twos >> 16 & 0x0000FFFF0000FFFFU);
  return static_cast<std::uint32_t>((fours << 16) + (fours >> 32));
}

}  // namespace

StringProbe::StringProbe(REALstring string) : SoughtHandle(string), text_(string) {}

// The definition takes the upper four bits off and folds them back in after each byte. Here they
// stay until the end, as the next shift drops them anyway, and the fold is taken along beside that
// shift: four operations that wait for each other instead of six.
std::uint32_t GetStringHash(rbText& text) {
  text.read_inline();
  const std::int32_t length = text.LengthUTF8();
  const char* bytes = text.GetUTF8();
  std::uint32_t hash = 0;
  std::int32_t i = 0;
  if (length >= at_once) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, bytes, sizeof eight);
    if (is_ascii(eight)) {
      hash = hash_of_first_seven(eight);
      i = 7;
    }
  }
  for (; i < length; ++i) {
    const auto byte = static_cast<signed char>(bytes[i]);
    const std::uint32_t shifted = (hash << 4) ^ ((hash >> 20) & 0xF00U);
    hash = shifted + static_cast<std::uint32_t>(std::int32_t{byte});
  }
  const std::uint32_t top = hash & 0xF0000000U;
  return hash ^ top ^ (top >> 24);
}

std::int32_t compare_leaving_locks(const RBString& stored, const StringProbe& key) {
  leave_comparison_locks(stored, key);
  rbText text(stored.get());
  text.read_inline();
  return Compare(text, key.text());
}

bool EqualRBString::operator()(const RBString& stored, const RBString& other) const {
  leave_comparison_locks(stored, other);
  rbText stored_text(stored.get());
  rbText other_text(other.get());
  return Compare(stored_text, other_text) == 0;
}

bool LTRBString::is_larger(const StringProbe& key, const RBString& stored) {
  rbText text(stored.get());
  return Compare(text, key.text()) < 0;
}

std::uint32_t RBStringHash::operator()(const RBString& stored) const {
  rbText text(stored.get());
  return GetStringHash(text);
}

std::optional<std::uint32_t> RBStringHash::shared_with_equals(const RBString& stored) const {
  rbText text(stored.get());
  const std::uint32_t hash = GetStringHash(text);
  const auto length = static_cast<std::size_t>(text.LengthUTF8());
  const bool has_zero_byte = std::memchr(text.GetUTF8(), 0, length) != nullptr;
  return has_zero_byte ? std::nullopt : std::optional(hash);
}
