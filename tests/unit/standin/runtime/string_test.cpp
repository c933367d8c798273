// Strings through the runtime and through the entry points.
#include "runtime/strings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "runtime/encodings.h"
#include "runtime/services.h"

namespace standin {
namespace {

using services::HostBoolean;

TEST(Strings, keep_bytes_and_encoding) {
  const StringRef text = make_string(std::string_view("a\0b", 3), encodings::windows_latin1);
  EXPECT_EQ(bytes(text.get()), std::string_view("a\0b", 3));
  EXPECT_EQ(encoding(text.get()), encodings::windows_latin1);
}

TEST(Strings, the_empty_string_may_be_null_or_not) {
  EXPECT_TRUE(make_string(""));
  EXPECT_EQ(bytes(make_string("").get()), "");
  EXPECT_EQ(bytes(nullptr), "");
  EXPECT_EQ(encoding(nullptr), host_encoding::utf8);
  EXPECT_FALSE(convert(nullptr, host_encoding::utf16));
}

TEST(Strings, conversion_gives_a_new_string) {
  const StringRef text = make_string("abc");
  const StringRef same = convert(text.get(), host_encoding::utf8);
  EXPECT_NE(same.get(), text.get());
  EXPECT_EQ(bytes(same.get()), "abc");
  EXPECT_FALSE(convert(make_string("\xFF").get(), host_encoding::utf16));
}

TEST(Strings, text_of_any_encoding_reads_as_utf8) {
  EXPECT_EQ(utf8(make_string("\x80", encodings::windows_latin1).get()), "\xE2\x82\xAC");
}

TEST(StringServices, building_leaves_the_encoding_open) {
  const StringRef text = StringRef::adopt(services::build_string("abcd", 3));
  EXPECT_EQ(bytes(text.get()), "abc");
  EXPECT_EQ(services::get_string_encoding(text.get()), host_encoding::as_stored);
  services::set_string_encoding(text.get(), host_encoding::ascii);
  EXPECT_EQ(services::get_string_encoding(text.get()), host_encoding::ascii);
  EXPECT_EQ(services::build_string("abc", -1), nullptr);
  EXPECT_EQ(services::build_string(nullptr, 1), nullptr);
  EXPECT_TRUE(StringRef::adopt(services::build_string(nullptr, 0)));
}

TEST(StringServices, data_comes_in_the_wanted_encoding_with_four_zero_bytes) {
  const StringRef text = make_string("\xC3\xA9");
  REALstringData record{};
  ASSERT_EQ(services::get_string_data(text.get(), host_encoding::utf16, &record), HostBoolean::yes);
  EXPECT_EQ(record.length, 2U);
  EXPECT_EQ(record.encoding, host_encoding::utf16);
  char16_t unit;
  std::memcpy(&unit, record.data, 2);
  EXPECT_EQ(unit, u'\u00E9');
  EXPECT_EQ(std::string(static_cast<char*>(record.data) + 2, 4), std::string(4, '\0'));
  services::dispose_string_data(&record);
  EXPECT_EQ(record.data, nullptr);
}

TEST(StringServices, data_as_stored_is_not_converted) {
  const StringRef text = make_string("\xFF\xFE", host_encoding::utf16);
  REALstringData record{};
  ASSERT_EQ(services::get_string_data(text.get(), host_encoding::as_stored, &record),
            HostBoolean::yes);
  EXPECT_EQ(std::string(static_cast<char*>(record.data), record.length), "\xFF\xFE");
  services::dispose_string_data(&record);
}

TEST(StringServices, no_data_of_nil_or_of_what_cannot_be_converted) {
  REALstringData record{};
  EXPECT_EQ(services::get_string_data(nullptr, host_encoding::utf8, &record), HostBoolean::no);
  const StringRef text = make_string("abc", host_encoding::as_stored);
  EXPECT_EQ(services::get_string_data(text.get(), host_encoding::utf8, &record), HostBoolean::no);
  EXPECT_EQ(record.data, nullptr);
}

TEST(StringServices, a_buffer_of_the_plugin_may_be_disposed_of) {
  REALstringData record{std::malloc(8), 8, host_encoding::utf8};
  services::dispose_string_data(&record);
  EXPECT_EQ(record.data, nullptr);
}

TEST(StringServices, bytes_and_length_are_told_directly) {
  const StringRef text = make_string(std::string_view("a\0b", 3));
  EXPECT_EQ(services::length_in_bytes(text.get()), 3);
  EXPECT_EQ(services::string_get_cstring(text.get()), bytes(text.get()).data());
  EXPECT_EQ(services::length_in_bytes(nullptr), 0);
  EXPECT_STREQ(services::string_get_cstring(nullptr), "");
}

}  // namespace
}  // namespace standin
