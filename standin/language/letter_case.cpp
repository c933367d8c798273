// Upper and lower case of letters.
#include "language/letter_case.h"

#include <utf8.h>

#include <string>

#include "runtime/encodings.h"
#include "runtime/strings.h"

namespace standin::language {
namespace {

// Upper-case letters whose lower-case ones lie at a fixed distance.
struct Range {
  char32_t first, last;
  char32_t distance;
};
constexpr Range ranges[] = {
    {0x00C0, 0x00D6, 32}, {0x00D8, 0x00DE, 32},
    {0x0391, 0x03A1, 32}, {0x03A3, 0x03AB, 32},  // Greek
    {0x0410, 0x042F, 32}, {0x0400, 0x040F, 80},  // Cyrillic
};

// Latin Extended-A and Cyrillic extensions, where the two cases alternate; whether the upper-case
// letter has the even code.
struct Alternating {
  char32_t first, last;
  bool upper_is_even;
};
constexpr Alternating alternating[] = {
    {0x0100, 0x012F, true}, {0x0132, 0x0137, true},  {0x0139, 0x0148, false},
    {0x014A, 0x0177, true}, {0x0179, 0x017E, false}, {0x0460, 0x0481, true},
    {0x048A, 0x04BF, true}, {0x04D0, 0x052F, true},
};

}  // namespace

char32_t lower_letter(char32_t letter) {
  if (letter < 0x80) return letter >= U'A' && letter <= U'Z' ? letter + 32 : letter;
  for (const Range& range : ranges) {
    if (letter >= range.first && letter <= range.last) return letter + range.distance;
  }
  for (const Alternating& range : alternating) {
    if (letter < range.first || letter > range.last) continue;
    return (letter % 2 == 0) == range.upper_is_even ? letter + 1 : letter;
  }
  return letter == 0x0178 ? 0x00FF : letter;
}

char32_t upper_letter(char32_t letter) {
  if (letter < 0x80) return letter >= U'a' && letter <= U'z' ? letter - 32 : letter;
  for (const Range& range : ranges) {
    const char32_t upper = letter - range.distance;
    if (letter >= range.distance && upper >= range.first && upper <= range.last) return upper;
  }
  for (const Alternating& range : alternating) {
    if (letter < range.first || letter > range.last) continue;
    return (letter % 2 == 0) == range.upper_is_even ? letter : letter - 1;
  }
  return letter == 0x00FF ? 0x0178 : letter;
}

StringRef with_letters(REALstring text, LetterReplacement replacement) {
  const std::uint32_t code = encoding(text);
  char32_t before = 0;
  const auto readable = encodings::convert(bytes(text), code, host_encoding::utf8);
  if (readable && utf8::is_valid(readable->begin(), readable->end())) {
    std::string result;
    for (auto at = readable->begin(); at != readable->end();) {
      const char32_t letter = utf8::next(at, readable->end());
      utf8::append(replacement(letter, before), std::back_inserter(result));
      before = letter;
    }
    const auto back = encodings::convert(result, host_encoding::utf8, code);
    if (back) return make_string(*back, code);
    before = 0;
  }
  std::string result(bytes(text));
  for (char& c : result) {
    const char32_t letter = static_cast<unsigned char>(c);
    if (letter < 0x80) c = static_cast<char>(replacement(letter, before));
    before = letter;
  }
  return make_string(result, code);
}

}  // namespace standin::language
