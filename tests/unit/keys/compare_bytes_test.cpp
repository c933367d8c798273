// The order of texts by their bytes.
#include "keys/compare_bytes.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

int sign(int number) {
  return (number > 0) - (number < 0);
}

// All texts of so many bytes that matter: zero, and the ends of the ranges on either side of 128.
std::vector<std::string> texts_of(std::size_t length) {
  std::vector<std::string> texts = {""};
  for (std::size_t i = 0; i < length; ++i) {
    std::vector<std::string> longer;
    for (const std::string& text : texts) {
      for (const int byte : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
        longer.push_back(text + static_cast<char>(byte));
      }
    }
    texts = std::move(longer);
  }
  return texts;
}

TEST(CompareBytes, orders_all_short_texts_as_the_standard_library_does) {
  for (const std::size_t length : {1U, 3U, 4U}) {
    const auto texts = texts_of(length);
    for (const std::string& a : texts) {
      for (const std::string& b : texts) {
        ASSERT_EQ(sign(compare_bytes(a.data(), b.data(), length)),
                  sign(std::strncmp(a.data(), b.data(), length)))
            << testing::PrintToString(a) << ' ' << testing::PrintToString(b);
      }
    }
  }
}

TEST(CompareBytes, looks_behind_the_first_four_bytes_and_at_no_more_than_asked) {
  EXPECT_LT(compare_bytes("abcdefgh", "abcdefgi", 9), 0);
  EXPECT_GT(compare_bytes("abcdefgi", "abcdefgh", 9), 0);
  EXPECT_EQ(compare_bytes("abcdefgh", "abcdefgi", 7), 0);
  EXPECT_LT(compare_bytes("abcd", "abcdefgh", 5), 0);
  EXPECT_LT(compare_bytes("abcd\x7F", "abcd\x80", 6), 0);
  EXPECT_EQ(compare_bytes("ab\0cdef", "ab\0xyz", 7), 0);
  EXPECT_EQ(compare_bytes("", "a", 0), 0);
}

}  // namespace
