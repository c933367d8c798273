// Services whose answers make no sense: lengths, encodings, type codes, hashes, versions.
//
// A length is believed as far as nothing else contradicts it: the memory behind a data pointer is
// the host's, and how much of it there is only the host can tell. So the lengths here are negative
// where that can be told, too short, or come without data.
#include <algorithm>
#include <cmath>
#include <limits>

#include "lies.h"
#include "runtime/services.h"
#include "runtime/strings.h"
#include "runtime/variants.h"
#include "support/plugin_test.h"

namespace hostile {
namespace {

using standin::services::HostBoolean;
using support::Container;
using support::ContainerClass;
using support::Element;
using support::ElementType;

namespace services = standin::services;

constexpr const char* length_service = "LenB( s as string ) as integer";
constexpr const char* type_service = "VarType(value As Variant) As Int32";

std::int32_t garbage = 0;

HostBoolean data_without_buffer(REALstring, std::uint32_t encoding, REALstringData* record) {
  *record = {nullptr, 1000, encoding};
  return HostBoolean::yes;
}

HostBoolean data_of_three_bytes(REALstring string, std::uint32_t encoding, REALstringData* record) {
  const HostBoolean answer = services::get_string_data(string, encoding, record);
  if (record->length > 3) record->length = 3;
  return answer;
}

char not_to_be_freed[8] = "garbage";

HostBoolean data_but_no(REALstring, std::uint32_t encoding, REALstringData* record) {
  *record = {not_to_be_freed, sizeof not_to_be_freed, encoding};
  return HostBoolean::no;
}

HostBoolean no_stored_bytes(REALstring string, std::uint32_t encoding, REALstringData* record) {
  return encoding == host_encoding::as_stored ? data_but_no(string, encoding, record)
                                              : services::get_string_data(string, encoding, record);
}

// A host that makes room for bytes without an encoding by the length it is told beforehand.
HostBoolean stored_bytes_that_were_announced(REALstring string, std::uint32_t encoding,
                                             REALstringData* record) {
  const std::uint32_t announced = record->length;
  const HostBoolean answer = services::get_string_data(string, encoding, record);
  if (encoding == host_encoding::as_stored) record->length = std::min(record->length, announced);
  return answer;
}

HostBoolean data_in_another_encoding(REALstring string, std::uint32_t, REALstringData* record) {
  return services::get_string_data(string, host_encoding::utf16, record);
}

std::int32_t garbage_length(REALstring) {
  return garbage;
}

const char* no_bytes(REALstring) {
  return nullptr;
}

std::uint32_t garbage_encoding(REALstring) {
  return static_cast<std::uint32_t>(garbage);
}

std::int32_t garbage_type(REALobject) {
  return garbage;
}

std::uint32_t garbage_hash(REALobject) {
  return static_cast<std::uint32_t>(garbage);
}

REALobject no_object(REALobject) {
  return nullptr;
}

// A string object of an old host, whose data pointer leads nowhere.
struct {
  void* reserved = nullptr;
  const char* data = nullptr;
} nowhere_string;

REALstring nowhere(REALstring, std::uint32_t) {
  return reinterpret_cast<REALstring>(&nowhere_string);
}
void unlock_unless_nowhere(REALstring string) {
  if (string != reinterpret_cast<REALstring>(&nowhere_string)) services::unlock_string(string);
}

bool has_texts(const ContainerClass& c) {
  return c.key != ElementType::integer;
}

class GarbageTexts : public support::ClassTest {
 protected:
  Element text(std::string_view bytes, std::uint32_t encoding = host_encoding::utf8) const {
    return container_class().key == ElementType::string ? support::string(bytes, encoding)
                                                        : support::variant_string(bytes, encoding);
  }
  /// Starts a host with these lies, and maybe without a service.
  void restart_with(const Lies& lies, std::initializer_list<const char*> without = {},
                    std::optional<double> version = 2012.1) {
    standin::HostOptions options = default_options();
    options.without.insert(without.begin(), without.end());
    options.version = version;
    restart(options, [&](standin::Host& host) { load_with_lies(host, lies); });
  }
  /// All texts are one key, the empty one.
  void expect_one_key() {
    const Container container = make();
    for (const char* bytes : {"alpha", "beta", "", "gamma"}) container.put(text(bytes), value(1));
    EXPECT_EQ(container.count(), 1);
    EXPECT_TRUE(container.contains(text("delta")));
    EXPECT_EQ(container.remove(text("")), 1);
    EXPECT_EQ(raised(), "");
  }
  void expect_keys_as_usual() {
    const Container container = make();
    for (const char* bytes : {"alpha", "beta", "", "alpha"}) container.put(text(bytes), value(1));
    EXPECT_EQ(container.count(), 3);
    EXPECT_TRUE(container.contains(text("beta")));
    EXPECT_FALSE(container.contains(text("bet")));
    EXPECT_EQ(raised(), "");
  }
};
ZRB_FOR_CLASSES(GarbageTexts, support::classes_where(has_texts));

TEST_P(GarbageTexts, a_length_without_data_is_no_text) {
  restart_with({{"PluginGetStringData", lie(&data_without_buffer)}});
  expect_one_key();
}

TEST_P(GarbageTexts, data_that_come_with_a_refusal_are_neither_read_nor_disposed_of) {
  restart_with({{"PluginGetStringData", lie(&data_but_no)}});
  host().calls().reset();
  expect_one_key();
  EXPECT_EQ(host().calls().of("PluginDisposeStringData"), 0U);
}

TEST_P(GarbageTexts, bytes_without_an_encoding_that_come_with_a_refusal_are_no_text) {
  restart_with({{"PluginGetStringData", lie(&no_stored_bytes)}});
  const Container container = make();
  container.put(text("alpha", host_encoding::as_stored), value(1));
  EXPECT_TRUE(container.contains(text("")));
  EXPECT_FALSE(container.contains(text({not_to_be_freed, sizeof not_to_be_freed})));
  EXPECT_FALSE(container.contains(text("garbage")));
  EXPECT_EQ(raised(), "");
}

TEST_P(GarbageTexts, the_length_of_bytes_without_an_encoding_is_announced) {
  restart_with({{"PluginGetStringData", lie(&stored_bytes_that_were_announced)}});
  const Container container = make();
  container.put(text("alpha", host_encoding::as_stored), value(1));
  EXPECT_TRUE(container.contains(text("alpha")));
  EXPECT_FALSE(container.contains(text("")));
  EXPECT_EQ(raised(), "");
}

TEST_P(GarbageTexts, a_length_that_is_too_short_cuts_the_text) {
  restart_with({{"PluginGetStringData", lie(&data_of_three_bytes)}});
  // A text ends at its terminator; one cut short has none, and the next byte stands for it.
  const Container container = make();
  container.put(text("abcd"), value(1));
  EXPECT_TRUE(container.contains(text("abcd")));
  EXPECT_FALSE(container.contains(text("abd")));
  EXPECT_EQ(raised(), "");
}

TEST_P(GarbageTexts, data_in_an_encoding_that_was_not_asked_for_are_taken_as_they_are) {
  restart_with({{"PluginGetStringData", lie(&data_in_another_encoding)}});
  const Container container = make();
  container.put(text("alpha"), value(1));
  EXPECT_TRUE(container.contains(text("alpha")));
  EXPECT_EQ(container.count(), 1);
}

TEST_P(GarbageTexts, negative_lengths_are_no_text) {
  restart_with({{length_service, lie(&garbage_length)}}, {"PluginGetStringData"});
  for (const std::int32_t length : {-1, -1000, std::numeric_limits<std::int32_t>::min()}) {
    SCOPED_TRACE(length);
    garbage = length;
    expect_one_key();
  }
}

TEST_P(GarbageTexts, lengths_of_0_are_no_text) {
  garbage = 0;
  restart_with({{length_service, lie(&garbage_length)}}, {"PluginGetStringData"});
  expect_one_key();
}

TEST_P(GarbageTexts, lengths_that_are_too_short_cut_the_texts) {
  garbage = 2;
  restart_with({{length_service, lie(&garbage_length)}}, {"PluginGetStringData"});
  const Container container = make();
  for (const char* bytes : {"abc1", "abc2", "abd", "ac"}) container.put(text(bytes), value(1));
  EXPECT_EQ(container.count(), 2);
  EXPECT_TRUE(container.contains(text("abz")));
}

TEST_P(GarbageTexts, a_length_without_bytes_is_no_text) {
  garbage = 1000;
  restart_with({{length_service, lie(&garbage_length)}, {"StringGetCString", lie(&no_bytes)}},
               {"PluginGetStringData"});
  expect_one_key();
}

TEST_P(GarbageTexts, no_length_and_no_bytes_are_no_text) {
  garbage = 0;
  restart_with({{length_service, lie(&garbage_length)}, {"StringGetCString", lie(&no_bytes)}},
               {"PluginGetStringData"});
  expect_one_key();
}

TEST_P(GarbageTexts, a_converted_text_without_bytes_is_no_text) {
  garbage = 1000;
  restart_with({{length_service, lie(&garbage_length)}, {"StringGetCString", lie(&no_bytes)}},
               {"PluginGetStringData"});
  const Container container = make();
  container.put(text({"a\0", 2}, host_encoding::utf16), value(1));
  EXPECT_TRUE(container.contains(text({"b\0", 2}, host_encoding::utf16)));
}

TEST_P(GarbageTexts, a_text_converted_by_an_old_host_to_nowhere_is_no_text) {
  restart_with(
      {{"REALConvertString", lie(&nowhere)}, {"REALUnlockString", lie(&unlock_unless_nowhere)}}, {},
      2011.4);
  expect_one_key();
}

TEST_P(GarbageTexts, an_unknown_encoding_is_the_hosts_to_convert) {
  garbage = 0x12345678;
  restart_with({{"REALGetStringEncoding", lie(&garbage_encoding)}});
  expect_keys_as_usual();
}

TEST_P(GarbageTexts, an_encoding_of_none_makes_every_text_raw_bytes) {
  garbage = static_cast<std::int32_t>(host_encoding::as_stored);
  restart_with({{"REALGetStringEncoding", lie(&garbage_encoding)}});
  expect_keys_as_usual();
}

TEST_P(GarbageTexts, odd_byte_counts_in_utf16_are_keys_all_the_same) {
  const Container container = make();
  const Element odd = text(std::string_view("a\0b\0c", 5), host_encoding::utf16);
  const Element even = text(std::string_view("a\0b\0", 4), host_encoding::utf16);
  container.put(odd, value(1));
  container.put(even, value(2));
  EXPECT_TRUE(container.contains(odd));
  EXPECT_TRUE(container.contains(text("ab")));
  const std::int32_t count = container.count();
  EXPECT_EQ(container.remove(odd), 1);
  EXPECT_EQ(container.count(), count - 1);
}

TEST_P(GarbageTexts, lone_halves_and_cut_units_are_keys_all_the_same) {
  const struct {
    std::string_view bytes;
    std::uint32_t encoding;
  } ill_formed[] = {
      {{"\x00\xD8", 2}, host_encoding::utf16},      // a half without its other
      {{"\x00\xD8\x41", 3}, host_encoding::utf16},  // and half a unit
      {{"\x41", 1}, host_encoding::utf16},          // less than a unit
      {{"\x41\x00\x00", 3}, host_encoding::utf32},  // the same of four bytes
      {{"\xC3", 1}, host_encoding::utf8},           // a sequence cut short
      {{"\xFF\xFE\xFD", 3}, host_encoding::utf8},   // no sequence at all
      {{"\xE9", 1}, host_encoding::ascii},          // no such character
      {{"\xFF\x00\x41", 3}, host_encoding::as_stored},
  };
  for (const auto& [bytes, encoding] : ill_formed) {
    const Container container = make();
    const Element key = text(bytes, encoding);
    container.put(key, value(1));
    EXPECT_TRUE(container.contains(text(bytes, encoding)));
    EXPECT_EQ(container.remove(key), 1);
    EXPECT_TRUE(container.empty());
  }
  EXPECT_EQ(raised(), "");
}

TEST_P(GarbageTexts, versions_that_are_no_numbers_are_those_of_a_recent_host) {
  for (const double version : {std::nan(""), std::numeric_limits<double>::infinity(), 0.0}) {
    SCOPED_TRACE(version);
    restart_with({}, {}, version);
    host().calls().reset();
    expect_keys_as_usual();
    EXPECT_GT(host().calls().of("PluginGetStringData"), 0U);
  }
}

TEST_P(GarbageTexts, a_negative_version_is_that_of_an_old_host) {
  restart_with({}, {}, -1.0);
  host().calls().reset();
  expect_keys_as_usual();
  EXPECT_EQ(host().calls().of("PluginGetStringData"), 0U);
}

class GarbageVariants : public support::ClassTest {
 protected:
  void restart_with(const Lies& lies) {
    restart(default_options(), [&](standin::Host& host) { load_with_lies(host, lies); });
  }
};
ZRB_FOR_CLASSES(GarbageVariants, support::classes_with_key(ElementType::variant));

TEST_P(GarbageVariants, of_types_that_nobody_knows_are_themselves_and_no_other) {
  restart_with({{type_service, lie(&garbage_type)}});
  for (const std::int32_t type : {-1, 1, 10, 4711, std::numeric_limits<std::int32_t>::min(),
                                  std::numeric_limits<std::int32_t>::max()}) {
    SCOPED_TRACE(type);
    garbage = type;
    const Element stored = support::variant_integer(5);
    const Element equal = support::variant_integer(5);
    const Container container = make();
    container.put(stored, value(1));
    EXPECT_TRUE(container.contains(stored));
    EXPECT_FALSE(container.contains(equal));
    container.put(equal, value(2));
    EXPECT_EQ(container.count(), 2);
    EXPECT_EQ(container.remove(stored), 1);
    EXPECT_EQ(container.count(), 1);
  }
}

TEST_P(GarbageVariants, that_all_claim_to_be_nil_are_one_key) {
  garbage = 0;
  restart_with({{type_service, lie(&garbage_type)}});
  const Container container = make();
  container.put_all(0, 5);
  EXPECT_EQ(container.count(), container_class().is_hashed() ? 5 : 1)
      << "the hash still tells them apart, the order does not";
  EXPECT_TRUE(container.contains(key(2)));
}

TEST_P(GarbageVariants, with_the_largest_of_hashes_share_a_bucket) {
  garbage = -1;
  restart_with({{"VariantHash", lie(&garbage_hash)}});
  const Container container = make();
  container.put_all(0, 400);
  EXPECT_EQ(container.count(), 400);
  for (int i = 0; i < 400; i += 13) EXPECT_TRUE(container.contains(key(i)));
  EXPECT_FALSE(container.contains(key(400)));
  EXPECT_EQ(container.keys().size(), 400U);
}

class GarbageObjects : public support::ClassTest {};
ZRB_FOR_CLASSES(GarbageObjects, support::classes_where([](const ContainerClass& c) {
                  return c.is_map() && c.key == ElementType::variant;
                }));

TEST_P(GarbageObjects, variants_that_hold_nothing_come_out_of_a_dictionary_as_nil) {
  restart(default_options(), [](standin::Host& host) {
    load_with_lies(host, {{"VariantToObject", lie(&no_object)}});
  });
  const standin::ObjectRef dictionary =
      standin::ObjectRef::adopt(services::new_instance("Dictionary"));
  for (int i = 0; i < 3; ++i) {
    const standin::ObjectRef entry = standin::variant_from_integer(i);
    services::dictionary_set_value(dictionary.get(), entry.get(), entry.get());
  }
  const Container map = make_with(2);
  map.call<void>("Constructor(dic as dictionary)", dictionary.get());
  EXPECT_EQ(map.count(), 1);
  EXPECT_TRUE(support::is_neutral(map.first().key()));
}

}  // namespace
}  // namespace hostile
