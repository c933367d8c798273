// The bytes of a string where the host has no string data service.
#include <gtest/gtest.h>
#include <malloc.h>

#include <cstring>
#include <string>
#include <string_view>

#include "host/fallbacks.h"
#include "host/resolver.h"
#include "runtime/encodings.h"
#include "runtime/host.h"
#include "runtime/strings.h"
#include "with_faults.h"

namespace {

using namespace std::string_view_literals;

class StringDataFallback : public testing::Test {
 protected:
  StringDataFallback() { keep_resolver(standin::Host::resolver()); }
  ~StringDataFallback() override { fallbacks::dispose_string_data(&record_); }

  bool fill(const standin::StringRef& string, std::uint32_t encoding, std::uint32_t length = 0) {
    fallbacks::dispose_string_data(&record_);
    record_ = {nullptr, length, 0};
    return fallbacks::get_string_data(string.get(), encoding, &record_);
  }
  /// The bytes with the 32-bit word that follows them.
  std::string bytes_and_word() const {
    return {static_cast<const char*>(record_.data), record_.length + 4};
  }

  standin::Host host_{with_faults()};
  REALstringData record_{};
};

TEST_F(StringDataFallback, the_bytes_are_followed_by_a_zero_32_bit_word) {
  for (const std::string_view text : {"abc"sv, ""sv, "a\0b"sv}) {
    const standin::StringRef string = standin::make_string(text, host_encoding::utf8);
    ASSERT_TRUE(fill(string, host_encoding::utf8));
    EXPECT_EQ(record_.length, text.size());
    EXPECT_EQ(record_.encoding, host_encoding::utf8);
    EXPECT_EQ(bytes_and_word(), std::string(text) + std::string(4, '\0'));
  }
}

TEST_F(StringDataFallback, another_encoding_is_converted_and_leaves_no_lock) {
  const standin::StringRef string =
      standin::make_string("\xE9", standin::encodings::windows_latin1);
  ASSERT_TRUE(fill(string, host_encoding::utf8));
  EXPECT_EQ(bytes_and_word(), "\xC3\xA9\0\0\0\0"sv);
  EXPECT_EQ(record_.encoding, host_encoding::utf8);
  EXPECT_EQ(standin::lock_count(string.get()), 1U);
}

TEST_F(StringDataFallback, bytes_as_stored_go_into_a_buffer_of_the_length_announced) {
  const standin::StringRef string = standin::make_string("\xE9t", host_encoding::utf16);
  for (const std::uint32_t announced : {2U, 100U}) {
    ASSERT_TRUE(fill(string, host_encoding::as_stored, announced));
    EXPECT_EQ(record_.length, 2U);
    EXPECT_EQ(record_.encoding, host_encoding::as_stored);
    EXPECT_EQ(bytes_and_word(), "\xE9t\0\0\0\0"sv);
    EXPECT_GE(malloc_usable_size(record_.data), announced + 4);
  }
}

TEST_F(StringDataFallback, nil_and_what_cannot_be_converted_give_nothing) {
  EXPECT_FALSE(fill(standin::StringRef(), host_encoding::utf8));
  const standin::StringRef half_a_pair = standin::make_string("\x01\xD8"sv, host_encoding::utf16);
  EXPECT_FALSE(fill(half_a_pair, host_encoding::utf8));
  EXPECT_EQ(record_.data, nullptr);
}

}  // namespace
