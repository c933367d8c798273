// Hashes of texts, beside the definition of the ELF hash taken word for word.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "host/resolver.h"
#include "keys/string_key.h"
#include "runtime/host.h"
#include "runtime/strings.h"
#include "with_faults.h"

namespace {

class TextHash : public testing::Test {
 protected:
  TextHash() { keep_resolver(standin::Host::resolver()); }

  static std::uint32_t hash(const std::string& bytes) {
    const standin::StringRef string = standin::make_string(bytes, host_encoding::utf8);
    rbText text(string.get());
    return GetStringHash(text);
  }

  standin::Host host_{with_faults()};
};

std::uint32_t elf_hash(const std::string& bytes) {
  std::uint32_t hash = 0;
  for (const char byte : bytes) {
    hash = (hash << 4) + static_cast<std::uint32_t>(static_cast<signed char>(byte));
    if (const std::uint32_t top = hash & 0xF0000000U; top != 0) {
      hash ^= top >> 24;
      hash &= ~top;
    }
  }
  return hash;
}

TEST_F(TextHash, is_the_elf_hash) {
  EXPECT_EQ(hash(""), 0U);
  EXPECT_EQ(hash("a"), 0x61U);
  EXPECT_EQ(hash("printf"), 0x077905A6U);
  EXPECT_EQ(hash("jmpbuf"), 0x071469B6U);
}

TEST_F(TextHash, extends_the_sign_of_each_byte) {
  EXPECT_EQ(hash("\xC3\xA9"), 0x0FFFF229U);
}

TEST_F(TextHash, agrees_with_the_definition_for_texts_of_all_lengths) {
  std::mt19937 random(1);
  for (int length = 1; length < 300; ++length) {
    std::string bytes;
    while (bytes.size() < static_cast<std::size_t>(length)) {
      bytes +=
          random() % 4 == 0 ? "\xC3\xBF" : std::string(1, static_cast<char>(random() % 127 + 1));
    }
    EXPECT_EQ(hash(bytes), elf_hash(bytes)) << length;
  }
}

}  // namespace
