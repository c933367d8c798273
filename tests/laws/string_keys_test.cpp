// String keys: equality and order by UTF-8 bytes, whatever the encoding, and the hash behind the
// bucket order. Variant keys that hold strings obey the same laws, so both kinds run through them.
#include "support/bucket_witness.h"

#include "runtime/encodings.h"
#include "support/plugin_test.h"

namespace {

using namespace std::string_view_literals;
using support::Container;
using support::Element;
using support::ElementType;

class StringKeys : public support::ClassTest {
 protected:
  Element text(std::string_view bytes, std::uint32_t encoding = host_encoding::utf8) const {
    return container_class().key == ElementType::string ? support::string(bytes, encoding)
                                                        : support::variant_string(bytes, encoding);
  }
  void put(const Container& container, std::string_view bytes) const {
    container.put(text(bytes), value(1));
  }
  std::vector<std::string> described(std::initializer_list<std::string_view> texts) const {
    std::vector<std::string> result;
    for (const std::string_view bytes : texts) result.push_back(support::describe(text(bytes)));
    return result;
  }

  /// A text of two ASCII characters whose hash falls into the given one of 193 buckets.
  static std::string text_in_bucket(std::uint32_t bucket) {
    for (char a = '!'; a < '~'; ++a) {
      for (char b = '!'; b < '~'; ++b) {
        const std::string candidate = {a, b};
        if (support::elf_hash(candidate) % 193 == bucket) return candidate;
      }
    }
    throw std::logic_error("no such text");
  }

  /// Whether two texts share a bucket of 193: then the newer one always comes first.
  bool share_a_bucket(const Element& a, const Element& b) const {
    const Container b_newer = make();
    b_newer.put(a, value(1));
    b_newer.put(b, value(1));
    const Container a_newer = make();
    a_newer.put(b, value(1));
    a_newer.put(a, value(1));
    return support::handle(b_newer.first().key()) == support::handle(b) &&
           support::handle(a_newer.first().key()) == support::handle(a);
  }
};
class NilStringKeys : public StringKeys {};
class OrderedTexts : public StringKeys {};

class HashedStringKeys : public StringKeys {
 protected:
  /// Of texts that all differ.
  void expect_the_order_of_the_witness(const std::vector<std::string>& texts) const {
    const Container container = make();
    support::BucketWitness witness;
    for (std::size_t i = 0; i < texts.size(); ++i) {
      put(container, texts[i]);
      witness.insert(support::elf_hash(texts[i]), static_cast<int>(i));
    }
    std::vector<std::string> expected;
    for (const int i : witness.order()) {
      expected.push_back(support::describe(text(texts[static_cast<std::size_t>(i)])));
    }
    EXPECT_EQ(container.described_keys(), expected);
    EXPECT_EQ(container.bin_count(), witness.bucket_count());
  }
};

class OrderedStringKeys : public StringKeys {};

bool has_text_keys(const support::ContainerClass& c) {
  return c.key != ElementType::integer;
}
ZRB_FOR_CLASSES(StringKeys, support::classes_where(has_text_keys));
ZRB_FOR_CLASSES(NilStringKeys, support::classes_with_key(ElementType::string));
ZRB_FOR_CLASSES(HashedStringKeys, support::classes_where([](const support::ContainerClass& c) {
                  return has_text_keys(c) && c.is_hashed();
                }));
ZRB_FOR_CLASSES(OrderedStringKeys, support::classes_where([](const support::ContainerClass& c) {
                  return has_text_keys(c) && c.is_ordered();
                }));
ZRB_FOR_CLASSES(OrderedTexts, support::classes_where([](const support::ContainerClass& c) {
                  return c.key == ElementType::string && c.is_ordered();
                }));

TEST_P(StringKeys, equal_texts_are_one_key) {
  const Container container = make();
  put(container, "a");
  put(container, "a");
  EXPECT_EQ(container.count(), 1);
  EXPECT_TRUE(container.contains(text("a")));
}

TEST_P(StringKeys, case_matters) {
  const Container container = make();
  put(container, "A");
  put(container, "a");
  EXPECT_EQ(container.count(), 2);
}

TEST_P(StringKeys, a_prefix_is_another_key) {
  const Container container = make();
  put(container, "ab");
  EXPECT_FALSE(container.contains(text("a")));
  EXPECT_FALSE(container.contains(text("abc")));
  EXPECT_TRUE(container.contains(text("ab")));
}

TEST_P(StringKeys, one_text_in_several_encodings_is_one_key) {
  const std::u16string_view utf16 = u"\u00e9t\u00e9";
  const std::u32string_view utf32 = U"\u00e9t\u00e9";
  const std::vector<Element> same = {
      text("\xC3\xA9t\xC3\xA9"),
      text({reinterpret_cast<const char*>(utf16.data()), 2 * utf16.size()}, host_encoding::utf16),
      text({reinterpret_cast<const char*>(utf32.data()), 4 * utf32.size()}, host_encoding::utf32),
      text("\xE9t\xE9", standin::encodings::windows_latin1),
      text("\xE9t\xE9", standin::encodings::iso_latin1)};
  for (const Element& stored : same) {
    const Container container = make();
    container.put(stored, value(1));
    for (const Element& sought : same) {
      EXPECT_TRUE(container.contains(sought)) << support::describe(sought);
      container.put(sought, value(2));
    }
    EXPECT_EQ(container.count(), 1);
    EXPECT_EQ(container.remove(same.front()), 1);
  }
}

TEST_P(StringKeys, ascii_text_is_the_same_key_as_utf8) {
  const Container container = make();
  container.put(text("word", host_encoding::ascii), value(1));
  EXPECT_TRUE(container.contains(text("word")));
}

TEST_P(StringKeys, bytes_without_an_encoding_are_taken_as_utf8) {
  const Container container = make();
  container.put(text("\xC3\xA9", host_encoding::as_stored), value(1));
  EXPECT_TRUE(container.contains(text("\xC3\xA9")));
  EXPECT_TRUE(container.contains(text("\xC3\xA9", host_encoding::as_stored)));
  EXPECT_FALSE(container.contains(text("e")));
}

TEST_P(StringKeys, text_that_cannot_be_converted_counts_as_empty) {
  const Container container = make();
  container.put(text("\x01\xD8"sv, host_encoding::utf16), value(1));  // half a surrogate pair
  EXPECT_TRUE(container.contains(text("")));
  EXPECT_FALSE(container.contains(text("a")));
  container.put(text(""), value(1));
  EXPECT_EQ(container.count(), 1);
}

TEST_P(StringKeys, the_empty_text_is_a_key) {
  const Container container = make();
  put(container, "");
  put(container, "a");
  EXPECT_EQ(container.count(), 2);
  EXPECT_TRUE(container.contains(text("")));
  EXPECT_EQ(container.remove(text("")), 1);
  EXPECT_FALSE(container.contains(text("")));
}

TEST_P(NilStringKeys, nil_and_the_empty_string_are_one_string_key) {
  const Element nil = support::neutral(ElementType::string);
  const Container container = make();
  container.put(nil, value(1));
  EXPECT_TRUE(container.contains(text("")));
  container.put(text(""), value(2));
  EXPECT_EQ(container.count(), 1);
  EXPECT_TRUE(support::is_neutral(container.first().key())) << "the key stored first is kept";
  EXPECT_EQ(container.remove(text("")), 1);
}

TEST_P(StringKeys, long_texts_differ_in_their_last_byte) {
  const std::string same(5000, 'x');
  const Container container = make();
  put(container, same + "a");
  put(container, same + "b");
  EXPECT_EQ(container.count(), 2);
  EXPECT_TRUE(container.contains(text(same + "b")));
  EXPECT_FALSE(container.contains(text(same)));
}

TEST_P(OrderedStringKeys, sort_by_the_bytes_of_their_utf8_text) {
  const Container container = make();
  for (const std::string_view bytes : {"b"sv, "\xF0\x9F\x98\x80"sv, "ab"sv, "B"sv, "\xC3\xA9"sv,
                                       "a"sv, ""sv, "\xEF\xBF\xBD"sv, "Z"sv, "aB"sv, "a b"sv}) {
    put(container, bytes);
  }
  EXPECT_EQ(container.described_keys(),
            described({"", "B", "Z", "a", "a b", "aB", "ab", "b", "\xC3\xA9", "\xEF\xBF\xBD",
                       "\xF0\x9F\x98\x80"}));
}

TEST_P(OrderedStringKeys, the_order_is_that_of_utf8_even_for_other_encodings) {
  const Container container = make();
  // In UTF-16 the supplementary character's surrogates would sort before U+FFFD.
  const Element high = text("\x3D\xD8\x00\xDE"sv, host_encoding::utf16);  // U+1F600
  const Element lower = text("\xFD\xFF"sv, host_encoding::utf16);         // U+FFFD
  container.put(high, value(1));
  container.put(lower, value(1));
  EXPECT_EQ(support::handle(container.first().key()), support::handle(lower));
}

TEST_P(OrderedStringKeys, what_follows_an_embedded_zero_byte_does_not_count) {
  const Container container = make();
  put(container, "a\0b"sv);
  put(container, "a\0c"sv);
  put(container, "a"sv);
  EXPECT_EQ(container.count(), 1);
  EXPECT_TRUE(container.contains(text("a\0zzz"sv)));
  EXPECT_FALSE(container.contains(text("a\1"sv)));
}

TEST_P(HashedStringKeys, what_follows_an_embedded_zero_byte_counts_for_the_bucket_alone) {
  // Equal texts for the comparison, met only where the hash leads to one bucket.
  const std::string stored("a\0b", 3);
  const auto with_tail = [](bool same_bucket) {
    for (char a = '!'; a < '~'; ++a) {
      for (char b = '!'; b < '~'; ++b) {
        const std::string candidate = {'a', '\0', a, b};
        const bool same =
            support::elf_hash(candidate) % 193 == support::elf_hash(std::string("a\0b", 3)) % 193;
        if (same == same_bucket) return candidate;
      }
    }
    throw std::logic_error("no such text");
  };
  const Container container = make();
  put(container, stored);
  EXPECT_TRUE(container.contains(text(with_tail(true))));
  EXPECT_FALSE(container.contains(text(with_tail(false))));
}

TEST_P(HashedStringKeys, the_hash_of_abc_is_0x6783) {
  EXPECT_EQ(support::elf_hash("abc"), 0x6783u);
  const Element abc = text("abc");
  EXPECT_TRUE(share_a_bucket(abc, text(text_in_bucket(0x6783 % 193))));
  EXPECT_FALSE(share_a_bucket(abc, text(text_in_bucket(0x6783 % 193 + 1))));
}

TEST_P(HashedStringKeys, bytes_are_hashed_as_signed_numbers) {
  EXPECT_EQ(support::elf_hash("\xC3\xA9"), 0x0FFFF229u);
  const Element accented = text("\xC3\xA9");
  EXPECT_TRUE(share_a_bucket(accented, text(text_in_bucket(0x0FFFF229 % 193))));
  EXPECT_FALSE(share_a_bucket(accented, text(text_in_bucket(0x0FFFF229 % 193 + 1))));
  // Unsigned bytes would give 0xCD9.
  ASSERT_NE(0xCD9 % 193, 0x0FFFF229 % 193);
  EXPECT_FALSE(share_a_bucket(accented, text(text_in_bucket(0xCD9 % 193))));
}

TEST_P(HashedStringKeys, the_empty_text_hashes_to_0) {
  EXPECT_TRUE(share_a_bucket(text(""), text(text_in_bucket(0))));
  EXPECT_FALSE(share_a_bucket(text(""), text(text_in_bucket(1))));
}

TEST_P(HashedStringKeys, nil_hashes_to_0) {
  const Element nil = support::neutral(container_class().key);
  EXPECT_TRUE(share_a_bucket(nil, text(text_in_bucket(0))));
  EXPECT_FALSE(share_a_bucket(nil, text(text_in_bucket(1))));
}

TEST_P(HashedStringKeys, all_encodings_of_a_text_fall_into_its_bucket) {
  const Element latin = text("\xE9", standin::encodings::windows_latin1);
  EXPECT_TRUE(share_a_bucket(latin, text(text_in_bucket(0x0FFFF229 % 193))));
  const Element stored = text("\xC3\xA9", host_encoding::as_stored);
  EXPECT_TRUE(share_a_bucket(stored, text(text_in_bucket(0x0FFFF229 % 193))));
}

TEST_P(HashedStringKeys, words_of_many_lengths_follow_the_witness) {
  std::vector<std::string> words;
  for (int i = 0; i < 700; ++i) {
    std::string word;
    for (int n = i; n >= 0; n = n / 7 - 1) word += static_cast<char>("a\xC3z\xFFQ 9"[n % 7]);
    // Only well-formed text: a lead byte gets its continuation.
    std::string well_formed;
    for (const char c : word) {
      if (c == '\xC3') {
        well_formed += "\xC3\xA9";
      } else if (c == '\xFF') {
        well_formed += "\xE2\x82\xAC";
      } else {
        well_formed += c;
      }
    }
    words.push_back(well_formed);
  }
  expect_the_order_of_the_witness(words);
}

TEST_P(HashedStringKeys, each_byte_of_short_and_long_texts_counts_for_the_bucket) {
  std::vector<std::string> texts;
  for (const std::string_view filling : {" "sv, "a"sv, "\x7F"sv}) {
    for (std::size_t length = 1; length <= 20; ++length) {
      std::string text;
      while (text.size() < length) text += filling;
      for (const std::string_view other : {"\1"sv, "Z"sv, "\xC2\x80"sv, "\xE9\x9F\xBF"sv}) {
        for (std::size_t at = 0; at <= length; ++at) {
          texts.push_back(std::string(text).insert(at, other));
        }
      }
    }
  }
  expect_the_order_of_the_witness(texts);
}

/// What is put behind all others, as in a sorted list, is compared with the last one alone.
TEST_P(OrderedTexts, that_ascend_are_asked_of_the_host_twice_each) {
  const Container container = make();
  const std::uint64_t before = host().calls().of("PluginGetStringData");
  for (int i = 100; i < 200; ++i) put(container, std::to_string(i));
  EXPECT_LE(host().calls().of("PluginGetStringData") - before, 200U);
  for (int i = 100; i < 200; ++i) EXPECT_TRUE(container.contains(text(std::to_string(i))));
}

}  // namespace
