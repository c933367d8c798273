// Searching a text for another without regard to case.
#include "language/caseless_pattern.h"

#include <algorithm>
#include <cstring>

#include "language/letter_case.h"
#include "runtime/encodings.h"
#include "runtime/strings.h"

namespace standin::language {
namespace {

bool is_ascii(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}
bool is_continuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

char32_t lowered(char32_t letter, char32_t) {
  return lower_letter(letter);
}
char32_t raised(char32_t letter, char32_t) {
  return upper_letter(letter);
}

}  // namespace

CaselessPattern::CaselessPattern(const SameEncoding& strings)
    : lower_(strings.b()), upper_(lower_), is_utf8_(strings.encoding() == host_encoding::utf8) {
  if (std::all_of(lower_.begin(), lower_.end(), is_ascii)) {
    for (char& c : lower_) c = static_cast<char>(lower_letter(static_cast<unsigned char>(c)));
    for (char& c : upper_) c = static_cast<char>(upper_letter(static_cast<unsigned char>(c)));
    return;
  }
  const StringRef part = make_string(strings.b(), strings.encoding());
  lower_ = bytes(with_letters(part.get(), lowered).get());
  upper_ = bytes(with_letters(part.get(), raised).get());
}

bool CaselessPattern::matches(std::string_view text, std::size_t at) const {
  std::size_t letter = 0;
  while (letter < size()) {
    std::size_t length = 1;
    while (is_utf8_ && letter + length < size() && is_continuation(lower_[letter + length])) {
      ++length;
    }
    // The bytes of one case, not some of either.
    const char* const found = text.data() + at + letter;
    if (std::memcmp(found, lower_.data() + letter, length) != 0 &&
        std::memcmp(found, upper_.data() + letter, length) != 0) {
      return false;
    }
    letter += length;
  }
  return true;
}

std::size_t CaselessPattern::find(std::string_view text, std::size_t from) const {
  if (from > text.size()) return std::string_view::npos;
  // What has no case, such as a comma between fields.
  if (lower_ == upper_) return text.find(lower_, from);
  for (std::size_t at = from; at + size() <= text.size(); ++at) {
    const bool begins = text[at] == lower_.front() || text[at] == upper_.front();
    if (begins && matches(text, at)) return at;
  }
  return std::string_view::npos;
}

}  // namespace standin::language
