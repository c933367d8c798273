// Hosts that lack services: the classes behave the same through what such a host has instead, or
// give neutral results where nothing can stand in.
#include <malloc.h>

#include "runtime/encodings.h"
#include "runtime/strings.h"
#include "runtime/variants.h"
#include "support/plugin_test.h"

namespace {

using namespace std::string_view_literals;
using support::Container;
using support::Element;
using support::ElementType;
using support::Iterator;

/// Keys of one type, with equals among them.
struct KeyList {
  const char* type;
  std::vector<Element> keys;
};

std::vector<std::string_view> texts() {
  return {"b"sv, "a"sv, "ab"sv, ""sv, "B"sv, "a"sv, "\xC3\xA9"sv, "abc"sv, "a longer text"sv};
}

std::vector<KeyList> key_lists(ElementType type) {
  using namespace standin;
  if (type == ElementType::integer) return {{"integers", {5, -3, 198, 5, 0, INT32_MIN}}};
  const auto add_texts = [type](KeyList list) {
    for (const std::string_view bytes : texts()) {
      list.keys.push_back(type == ElementType::string ? support::string(bytes)
                                                      : support::variant_string(bytes));
    }
    const auto latin = encodings::windows_latin1;
    list.keys.push_back(type == ElementType::string ? support::string("\xE9", latin)
                                                    : support::variant_string("\xE9", latin));
    // The plugin's own copy of the bytes has four to spare, so one text is far longer.
    const auto raw = host_encoding::as_stored;
    for (const std::string& bytes : {std::string("ab"), std::string(10'000, 'a')}) {
      list.keys.push_back(type == ElementType::string ? support::string(bytes, raw)
                                                      : support::variant_string(bytes, raw));
    }
    const std::string_view wide = "a\0\xE9\0"sv;  // UTF-16, low byte first
    const auto utf16 = host_encoding::utf16;
    list.keys.push_back(type == ElementType::string ? support::string(wide, utf16)
                                                    : support::variant_string(wide, utf16));
    return list;
  };
  if (type == ElementType::string) return {add_texts({"strings", {}})};
  const auto variants = [](const char* name, auto make) {
    KeyList list{name, {}};
    for (const int number : {5, -3, 198, 5, 0, 7, -3}) list.keys.emplace_back(make(number));
    return list;
  };
  return {add_texts({"Strings", {}}),
          variants("Integers", [](int n) { return variant_from_integer(n); }),
          variants("Int64s", [](int n) { return variant_from_int64(n * 4294967296); }),
          variants("Singles", [](int n) { return variant_from_single(static_cast<float>(n) / 4); }),
          variants("Doubles", [](int n) { return variant_from_double(n / 4.0); }),
          variants("Currencies", [](int n) { return variant_from_currency(n); })};
}

/// What a program sees of a container class that it fills and empties.
std::vector<std::string> transcript(const support::ContainerClass& container_class) {
  std::vector<std::string> lines;
  for (const KeyList& list : key_lists(container_class.key)) {
    const Container container = Container::make(container_class);
    lines.push_back(list.type);
    for (const Element& key : list.keys) {
      container.put(key, support::value(container_class, container.count()));
      lines.push_back("count " + std::to_string(container.count()));
    }
    for (const std::string& key : container.described_keys()) lines.push_back(key);
    for (const Element& key : list.keys) {
      lines.push_back(container.contains(key) ? "there" : "missing");
      if (container_class.is_map()) lines.push_back(support::describe(container.value(key)));
    }
    for (const Element& key : list.keys) {
      lines.push_back("removed " + std::to_string(container.remove(key)));
    }
  }
  return lines;
}

class Fallbacks : public support::ClassTest {
 protected:
  /// Runs the same program on this host and on one that differs, and expects no difference.
  void expect_same_behaviour(const standin::HostOptions& options) {
    const std::vector<std::string> expected = transcript(container_class());
    restart(options);
    EXPECT_EQ(transcript(container_class()), expected);
    restart(default_options());
  }
  void expect_same_behaviour_without(std::initializer_list<const char*> entry_points) {
    standin::HostOptions options = default_options();
    options.without.insert(entry_points.begin(), entry_points.end());
    expect_same_behaviour(options);
  }
};
class TextFallbacks : public Fallbacks {};
class VariantFallbacks : public Fallbacks {};
class HashedVariantFallbacks : public Fallbacks {};
ZRB_FOR_CLASSES(Fallbacks, support::all_classes());
ZRB_FOR_CLASSES(TextFallbacks, support::classes_where([](const support::ContainerClass& c) {
                  return c.key != ElementType::integer;
                }));
ZRB_FOR_CLASSES(VariantFallbacks, support::classes_with_key(ElementType::variant));
ZRB_FOR_CLASSES(HashedVariantFallbacks,
                support::classes_where([](const support::ContainerClass& c) {
                  return c.key == ElementType::variant && c.is_hashed();
                }));

TEST_P(TextFallbacks, string_data_come_through_the_c_string_and_lenb) {
  expect_same_behaviour_without({"PluginGetStringData"});
}

TEST_P(TextFallbacks, the_plugin_frees_its_own_string_data_where_the_host_has_no_service_for_it) {
  expect_same_behaviour_without({"PluginGetStringData", "PluginDisposeStringData"});

  restart_without({"PluginGetStringData", "PluginDisposeStringData"});
  const auto long_text = [this] {
    const std::string bytes(10'000, 'a');
    return container_class().key == ElementType::string ? support::string(bytes)
                                                        : support::variant_string(bytes);
  };
  const Container container = make();
  container.put(long_text(), value(1));
  const Element same_text = long_text();  // as the same object, it would not have to be read
  const std::size_t before = ::mallinfo2().uordblks;
  for (int i = 0; i < 500; ++i) EXPECT_TRUE(container.contains(same_text));
  EXPECT_LT(::mallinfo2().uordblks, before + 1'000'000);
}

TEST_P(TextFallbacks, a_host_before_2012_converts_strings) {
  standin::HostOptions options = default_options();
  options.version = 2011.4;
  expect_same_behaviour(options);
}

TEST_P(TextFallbacks, a_host_before_2012_without_lenb_ends_texts_at_their_zero_byte) {
  standin::HostOptions options = default_options();
  options.version = 2011.4;
  // Raw bytes need the length, so their key is read through the host's string data still.
  options.without = {"LenB( s as string ) as integer"};
  expect_same_behaviour(options);
}

TEST_P(TextFallbacks, a_host_without_a_version_is_served_like_a_recent_one) {
  standin::HostOptions options = default_options();
  options.version = std::nullopt;
  expect_same_behaviour(options);
}

TEST_P(TextFallbacks, the_version_2012_decides_which_service_reads_texts) {
  const auto reads = [this](std::optional<double> version) {
    standin::HostOptions options = default_options();
    options.version = version;
    restart(options);
    const auto text = [this] {
      return container_class().key == ElementType::string ? support::string("text")
                                                          : support::variant_string("text");
    };
    const Container container = make();
    container.put(text(), value(1));
    container.contains(text());  // not the very object, which would be equal unread
    return std::pair(host().calls().of("PluginGetStringData") > 0,
                     host().calls().of("REALConvertString") > 0);
  };
  EXPECT_EQ(reads(2012.0), std::pair(true, false));
  EXPECT_EQ(reads(2012.1), std::pair(true, false));
  EXPECT_EQ(reads(2011.4), std::pair(false, true));
  EXPECT_EQ(reads(std::nullopt), std::pair(true, false));
}

TEST_P(TextFallbacks, without_any_way_to_the_bytes_every_text_is_empty) {
  restart_without({"PluginGetStringData", "StringGetCString"});
  const Container container = make();
  container.put(container_class().key == ElementType::string ? support::string("a")
                                                             : support::variant_string("a"),
                value(1));
  EXPECT_TRUE(container.contains(container_class().key == ElementType::string
                                     ? support::string("b")
                                     : support::variant_string("")));
}

TEST_P(VariantFallbacks, each_accessor_has_a_property_to_stand_in) {
  for (const char* accessor :
       {"VarType(value As Variant) As Int32", "VariantToString", "VariantToInt32", "VariantToInt64",
        "VariantToSingle", "VariantToDouble", "VariantToObject"}) {
    SCOPED_TRACE(accessor);
    expect_same_behaviour_without({accessor});
  }
}

TEST_P(VariantFallbacks, properties_alone_are_enough) {
  expect_same_behaviour_without({"VarType(value As Variant) As Int32", "VariantToString",
                                 "VariantToInt32", "VariantToInt64", "VariantToSingle",
                                 "VariantToDouble", "VariantToObject"});
}

TEST_P(VariantFallbacks, without_framework_functions_the_classes_still_work) {
  expect_same_behaviour_without({"REALLoadGlobalMethod"});
}

TEST_P(HashedVariantFallbacks, without_variant_hash_all_but_texts_share_bucket_0) {
  restart_without({"VariantHash"});
  const Container container = make_with(20);
  std::vector<std::string> newest_first;
  for (int i = 19; i >= 0; --i) newest_first.push_back(support::describe(key(i)));
  EXPECT_EQ(container.described_keys(), newest_first);
  for (int i = 0; i < 20; ++i) EXPECT_TRUE(container.contains(key(i)));
  EXPECT_EQ(container.remove(key(7)), 1);
  EXPECT_EQ(container.count(), 19);
}

TEST_P(HashedVariantFallbacks, a_missing_entry_point_is_asked_for_again_at_the_next_call) {
  restart_without({"VariantHash"});
  const Container container = make();
  const Element sought = key(1);
  for (std::uint64_t calls = 1; calls <= 4; ++calls) {
    container.contains(sought);
    EXPECT_EQ(host().calls().lookups("VariantHash"), calls);
  }
}

TEST_P(Fallbacks, an_entry_point_that_was_found_is_not_asked_for_again) {
  const Container container = make_with(20);
  container.contains(key(3));
  container.find(key(3));
  container.remove(key(4));
  for (const char* name : {"PluginNewInstance", "REALLockObject", "REALUnlockObject",
                           "REALLockString", "REALUnlockString", "PluginGetStringData",
                           "PluginDisposeStringData", "VariantHash", "REALGetStringEncoding"}) {
    EXPECT_LE(host().calls().lookups(name), 1u) << name;
  }
  EXPECT_EQ(host().calls().lookups("PluginNewInstance"), 1u);
}

TEST_P(Fallbacks, without_lock_services_nothing_is_locked_and_the_rest_works) {
  restart_without({"REALLockString", "REALUnlockString", "REALLockObject", "REALUnlockObject"});
  std::vector<std::pair<Element, Element>> entries;
  for (int i = 0; i < 10; ++i) entries.emplace_back(key(i), value(i));
  {
    const Container container = make();
    for (const auto& [stored_key, stored_value] : entries) container.put(stored_key, stored_value);
    EXPECT_EQ(container.count(), 10);
    EXPECT_TRUE(container.contains(entries[4].first));
    EXPECT_EQ(container.remove(entries[4].first), 1);
  }
  for (const auto& [stored_key, stored_value] : entries) {
    EXPECT_EQ(support::locks(stored_key), support::one_lock(stored_key));
    EXPECT_EQ(support::locks(stored_value), support::one_lock(stored_value));
  }
}

TEST_P(Fallbacks, without_instances_iterators_are_nil) {
  restart_without({"PluginNewInstance"});
  const Container container = make_with(3);
  EXPECT_FALSE(container.first());
  EXPECT_FALSE(container.find(key(1)));
  EXPECT_EQ(container.count(), 3);
  EXPECT_EQ(host().calls().lookups("PluginNewInstance"), 2u);
}

}  // namespace
