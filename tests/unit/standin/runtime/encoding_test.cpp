// Conversion between encodings, what cannot be converted, and what is replaced.
#include "runtime/encodings.h"

#include <gtest/gtest.h>

namespace standin::encodings {
namespace {

using host_encoding::as_stored;
using host_encoding::ascii;
using host_encoding::utf16;
using host_encoding::utf32;
using host_encoding::utf8;

template <class Unit>
std::string bytes_of(std::basic_string_view<Unit> text) {
  return std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(Unit));
}

// e-acute, the euro sign, and a character beyond 16 bits.
const std::string in_utf8 = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
const std::string in_utf16 = bytes_of(std::u16string_view(u"a\u00E9\u20AC\U0001F600"));
const std::string in_utf32 = bytes_of(std::u32string_view(U"a\u00E9\u20AC\U0001F600"));

TEST(Encodings, unicode_forms_convert_into_each_other) {
  const std::pair<std::uint32_t, std::string> forms[] = {
      {utf8, in_utf8}, {utf16, in_utf16}, {utf32, in_utf32}};
  for (const auto& [from, source] : forms) {
    for (const auto& [to, target] : forms) {
      EXPECT_EQ(convert(source, from, to), target) << name(from) << " to " << name(to);
    }
  }
}

TEST(Encodings, a_zero_byte_is_a_character) {
  const std::string text("a\0b", 3);
  EXPECT_EQ(convert(text, utf8, windows_latin1), text);
  EXPECT_EQ(convert(convert(text, utf8, utf16).value(), utf16, ascii), text);
}

TEST(Encodings, the_two_latin_encodings_differ_between_0x80_and_0x9F) {
  EXPECT_EQ(convert("\x80\xE9", windows_latin1, utf8), "\xE2\x82\xAC\xC3\xA9");
  EXPECT_EQ(convert("\x80\xE9", iso_latin1, utf8), "\xC2\x80\xC3\xA9");
  EXPECT_EQ(convert("\xE2\x82\xAC", utf8, windows_latin1), "\x80");
  EXPECT_EQ(convert("\xE2\x82\xAC", utf8, iso_latin1), std::nullopt);
  EXPECT_EQ(convert("\x81", windows_latin1, utf8), std::nullopt);
}

TEST(Encodings, every_byte_of_iso_latin_1_comes_back) {
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  EXPECT_EQ(convert(convert(all, iso_latin1, utf8).value(), utf8, iso_latin1), all);
}

TEST(Encodings, ascii_has_no_bytes_above_0x7F) {
  EXPECT_EQ(convert("abc", ascii, utf16), bytes_of(std::u16string_view(u"abc")));
  EXPECT_EQ(convert("\xE9", ascii, utf8), std::nullopt);
  EXPECT_EQ(convert(in_utf8, utf8, ascii), std::nullopt);
}

TEST(Encodings, ill_formed_text_is_not_converted) {
  EXPECT_EQ(convert("\xC3", utf8, utf16), std::nullopt);
  EXPECT_EQ(convert("\xC0\x80", utf8, utf16), std::nullopt);
  EXPECT_EQ(convert("\xED\xA0\x80", utf8, utf16), std::nullopt);
  EXPECT_EQ(convert(bytes_of(std::u16string_view(u"\xD800")), utf16, utf8), std::nullopt);
  EXPECT_EQ(convert("abc", utf16, utf8), std::nullopt);
  EXPECT_EQ(convert(std::string("\0\0\x11\0", 4).substr(0, 3), utf32, utf8), std::nullopt);
  EXPECT_EQ(convert(bytes_of(std::u32string_view(U"\x00110000", 1)), utf32, utf8), std::nullopt);
}

TEST(Encodings, bytes_stay_as_they_are_for_the_same_encoding_and_as_stored) {
  EXPECT_EQ(convert("\xC3", utf8, utf8), "\xC3");
  EXPECT_EQ(convert("\xC3", utf8, as_stored), "\xC3");
  EXPECT_EQ(convert("abc", as_stored, as_stored), "abc");
}

TEST(Encodings, what_has_no_encoding_cannot_be_converted) {
  EXPECT_EQ(convert("abc", as_stored, utf8), std::nullopt);
  EXPECT_EQ(convert("abc", 0x1234, utf8), std::nullopt);
  EXPECT_EQ(convert("abc", utf8, 0x1234), std::nullopt);
  EXPECT_FALSE(is_known(as_stored));
  EXPECT_TRUE(is_known(iso_latin1));
}

TEST(Encodings, lossy_reading_replaces_each_ill_formed_piece_once) {
  EXPECT_EQ(to_utf8_lossy("a\xE2\x82z", utf8), "a\xEF\xBF\xBDz");
  EXPECT_EQ(to_utf8_lossy("a\xE9z", ascii), "a\xEF\xBF\xBDz");
  EXPECT_EQ(to_utf8_lossy("\xC3\xA9\xFF", as_stored), "\xC3\xA9\xEF\xBF\xBD");
  EXPECT_EQ(to_utf8_lossy(in_utf16 + "x", utf16), in_utf8 + "\xEF\xBF\xBD");
}

}  // namespace
}  // namespace standin::encodings
