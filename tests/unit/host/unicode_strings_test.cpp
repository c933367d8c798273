// Host strings from text in each encoding.
#include "host/unicode_strings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "host/resolver.h"
#include "runtime/host.h"
#include "runtime/strings.h"
#include "with_faults.h"

namespace {

class UnicodeStrings : public testing::Test {
 protected:
  UnicodeStrings() { keep_resolver(standin::Host::resolver()); }

  static standin::StringRef build(const void* bytes, std::int64_t count, std::uint32_t encoding) {
    return standin::StringRef::adopt(REALBuildUnicodeString(bytes, count, encoding));
  }

  static standin::StringRef build_utf32(std::size_t bytes, char32_t unit) {
    const std::vector<char32_t> text(bytes / 4 + 1, unit);
    return build(text.data(), static_cast<std::int64_t>(bytes), host_encoding::utf32);
  }

  standin::Host host_{with_faults()};
};

// Numbers of the host's, not ours to choose.
TEST(Encodings, have_the_numbers_that_the_host_gives_them) {
  EXPECT_EQ(host_encoding::utf8, 0x08000100U);
  EXPECT_EQ(host_encoding::utf16, 0x0100U);
  EXPECT_EQ(host_encoding::utf32, 0x0C000100U);
  EXPECT_EQ(host_encoding::ascii, 0x0600U);
  EXPECT_EQ(host_encoding::as_stored, 0xFFFFU);
}

TEST_F(UnicodeStrings, no_text_gives_no_string) {
  EXPECT_FALSE(build(nullptr, 3, host_encoding::utf8));
  EXPECT_FALSE(build("abc", 0, host_encoding::utf8));
  EXPECT_FALSE(build("abc", -1, host_encoding::utf8));
  EXPECT_FALSE(build("abc", 0x7FFFFFFF, host_encoding::utf8));
}

TEST_F(UnicodeStrings, an_8_bit_text_keeps_its_bytes_and_gets_its_encoding) {
  const standin::StringRef ascii = build("abc", 3, host_encoding::ascii);
  EXPECT_EQ(standin::bytes(ascii.get()), "abc");
  EXPECT_EQ(standin::encoding(ascii.get()), host_encoding::ascii);
  EXPECT_EQ(standin::lock_count(ascii.get()), 1U);
}

TEST_F(UnicodeStrings, utf_16_becomes_utf_8) {
  const char16_t text[] = u"h\u00e9";
  const standin::StringRef string = build(text, 4, host_encoding::utf16);
  EXPECT_EQ(standin::bytes(string.get()), "h\xC3\xA9");
  EXPECT_EQ(standin::encoding(string.get()), host_encoding::utf8);
  EXPECT_EQ(standin::lock_count(string.get()), 1U);
}

TEST_F(UnicodeStrings, utf_32_becomes_utf_8_by_the_low_halves_of_its_units) {
  const char32_t text[] = {U'a', U'\u00e9', U'\U0001F041'};  // the last one is cut to U+F041
  const standin::StringRef string = build(text, 12, host_encoding::utf32);
  EXPECT_EQ(standin::bytes(string.get()), "a\xC3\xA9\xEF\x81\x81");
  EXPECT_EQ(standin::encoding(string.get()), host_encoding::utf8);
}

TEST_F(UnicodeStrings, utf_32_works_alike_in_the_local_buffer_and_in_the_heap_block) {
  for (const std::size_t bytes : {4U, 796U, 799U, 800U, 801U, 803U, 804U, 8000U}) {
    const standin::StringRef string = build_utf32(bytes, U'x');
    EXPECT_EQ(standin::bytes(string.get()), std::string(bytes / 4, 'x')) << bytes;
  }
}

TEST_F(UnicodeStrings, utf_32_ignores_one_to_three_bytes_at_the_end) {
  for (const std::size_t bytes : {8U, 9U, 10U, 11U}) {
    EXPECT_EQ(standin::bytes(build_utf32(bytes, U'y').get()), "yy") << bytes;
  }
}

TEST(ClearMemory, is_zeroed_and_has_limits) {
  auto* block = static_cast<unsigned char*>(AllocateClearMemory(1000));
  ASSERT_NE(block, nullptr);
  for (int i = 0; i < 1000; ++i) ASSERT_EQ(block[i], 0);
  FreeMemoryNow(block);
  EXPECT_EQ(AllocateClearMemory(0), nullptr);
  EXPECT_EQ(AllocateClearMemory(-1), nullptr);
  EXPECT_EQ(AllocateClearMemory(0x80000000), nullptr);
}

TEST_F(UnicodeStrings, a_host_that_builds_none_gives_none) {
  for (const std::uint32_t encoding :
       {host_encoding::utf8, host_encoding::utf16, host_encoding::utf32}) {
    host_.faults().answer_null_at("REALBuildString", 1);
    EXPECT_FALSE(build("a\0\0\0", 4, encoding)) << encoding;
    host_.faults().clear();
  }
}

}  // namespace
