// The host's Dictionary, through the runtime, as programs see it, and through its methods by
// declaration.
#include "runtime/dictionary.h"

#include <gtest/gtest.h>

#include "runtime/arrays.h"
#include "runtime/date.h"
#include "runtime/encodings.h"
#include "runtime/host.h"
#include "runtime/services.h"
#include "runtime/strings.h"
#include "runtime/variants.h"

namespace standin {
namespace {

class DictionaryTest : public testing::Test {
 protected:
  DictionaryTest() : dictionary_(make_dictionary()) {}

  static ObjectRef text(std::string_view bytes, std::uint32_t encoding = host_encoding::utf8) {
    return variant_from_string(make_string(bytes, encoding).get());
  }
  void put(const ObjectRef& key, std::int32_t value) {
    dictionary_set(dictionary_.get(), key.get(), variant_from_integer(value).get());
  }
  // -1 if there is no such key.
  std::int32_t at(const ObjectRef& key) {
    if (!dictionary_has(dictionary_.get(), key.get())) return -1;
    return to_int32(dictionary_value(dictionary_.get(), key.get()).get());
  }
  std::int32_t count() { return dictionary_count(dictionary_.get()); }
  std::vector<std::int32_t> keys() {
    std::vector<std::int32_t> result;
    for (std::int32_t i = 0; i < count(); ++i) {
      result.push_back(to_int32(dictionary_key(dictionary_.get(), i).get()));
    }
    return result;
  }
  Value call(const char* declaration, std::vector<Value> arguments = {}) {
    return invoke(*host_.find_class("Dictionary")->find_method(declaration), dictionary_.get(),
                  arguments);
  }
  std::string take_pending_class() {
    const ObjectRef exception = host_.take_pending_exception();
    return exception ? class_of(exception.get())->name() : "none";
  }

  Host host_;
  ObjectRef dictionary_;
};

TEST_F(DictionaryTest, a_key_has_one_value) {
  put(variant_from_integer(1), 10);
  put(variant_from_integer(1), 20);
  EXPECT_EQ(count(), 1);
  EXPECT_EQ(at(variant_from_integer(1)), 20);
  EXPECT_EQ(at(variant_from_integer(2)), -1);
}

TEST_F(DictionaryTest, string_keys_ignore_ascii_case_but_not_encoding) {
  put(text("Key\xC3\xA9"), 1);
  EXPECT_EQ(at(text("kEY\xC3\xA9")), 1);
  EXPECT_EQ(at(text("key\xC3\x89")), -1);
  put(text("abc"), 2);
  put(text("abc", host_encoding::ascii), 3);
  EXPECT_EQ(count(), 3);
  EXPECT_EQ(at(text("ABC")), 2);
  EXPECT_EQ(at(text("ABC", host_encoding::ascii)), 3);
}

TEST_F(DictionaryTest, equal_numbers_are_one_key_whatever_their_type) {
  put(variant_from_integer(3), 1);
  EXPECT_EQ(at(variant_from_int64(3)), 1);
  EXPECT_EQ(at(variant_from_double(3.0)), 1);
  EXPECT_EQ(at(variant_from_single(3.0F)), 1);
  EXPECT_EQ(at(variant_from_currency(30000)), 1);
  EXPECT_EQ(at(variant_from_double(3.5)), -1);
  EXPECT_EQ(at(text("3")), -1);
  EXPECT_EQ(at(variant_from_color(3)), -1);
  put(variant_from_double(1.5), 2);
  EXPECT_EQ(at(variant_from_currency(15000)), 2);
  put(variant_from_int64(9007199254740993), 3);
  EXPECT_EQ(at(variant_from_int64(9007199254740992)), -1);
}

TEST_F(DictionaryTest, booleans_nil_and_objects_are_keys) {
  put(variant_from_boolean(true), 1);
  put(nullptr, 2);
  const ObjectRef date = make_date(5);
  put(date, 3);
  EXPECT_EQ(at(variant_from_boolean(true)), 1);
  EXPECT_EQ(at(variant_from_boolean(false)), -1);
  EXPECT_EQ(at(variant_from_integer(1)), -1);
  EXPECT_EQ(at(nullptr), 2);
  EXPECT_EQ(at(date), 3);
  EXPECT_EQ(at(make_date(5)), -1);
}

TEST_F(DictionaryTest, keys_stay_in_the_order_of_insertion) {
  for (const std::int32_t key : {5, 3, 9, 1}) put(variant_from_integer(key), key);
  dictionary_remove(dictionary_.get(), variant_from_integer(3).get());
  put(variant_from_integer(5), 50);
  EXPECT_EQ(keys(), (std::vector<std::int32_t>{5, 9, 1}));
  put(variant_from_integer(3), 3);
  EXPECT_EQ(keys(), (std::vector<std::int32_t>{5, 9, 1, 3}));
  EXPECT_EQ(at(variant_from_integer(1)), 1);
}

TEST_F(DictionaryTest, every_entry_is_locked_once) {
  const ObjectRef key = text("key");
  const ObjectRef value = variant_from_integer(1);
  dictionary_set(dictionary_.get(), key.get(), value.get());
  const std::uint32_t held_key = lock_count(key.get());
  EXPECT_EQ(lock_count(value.get()), 2U);
  dictionary_set(dictionary_.get(), text("KEY").get(), value.get());
  EXPECT_EQ(lock_count(value.get()), 2U);
  EXPECT_EQ(lock_count(key.get()), held_key);
  dictionary_remove(dictionary_.get(), key.get());
  EXPECT_EQ(lock_count(key.get()), 1U);
  EXPECT_EQ(lock_count(value.get()), 1U);
  dictionary_set(dictionary_.get(), key.get(), value.get());
  dictionary_clear(dictionary_.get());
  EXPECT_EQ(lock_count(value.get()), 1U);
  dictionary_set(dictionary_.get(), key.get(), value.get());
  dictionary_.reset();
  EXPECT_EQ(lock_count(key.get()), 1U);
  EXPECT_EQ(lock_count(value.get()), 1U);
}

TEST_F(DictionaryTest, programs_see_its_members) {
  const Value key = Value::of_variant(text("k"));
  const MethodInfo* value =
      host_.find_class("Dictionary")->find_method("Value(key As Variant) As Variant");
  const std::vector<Value> assignment = {key, Value::of_variant(variant_from_integer(4))};
  invoke_setter(*value, dictionary_.get(), assignment);
  EXPECT_TRUE(call("HasKey(key As Variant) As Boolean", {key}).as_boolean());
  EXPECT_EQ(to_int32(call("Value(key As Variant) As Variant", {key}).as_object()), 4);
  const Value seven = Value::of_variant(variant_from_integer(7));
  const char* lookup = "Lookup(key As Variant, defaultValue As Variant) As Variant";
  EXPECT_EQ(to_int32(call(lookup, {key, seven}).as_object()), 4);
  EXPECT_EQ(call(lookup, {seven, seven}).as_object(), seven.as_object());
  EXPECT_EQ(upper_bound(call("Keys As Variant()").as_array()), 0);
  EXPECT_EQ(to_int32(get(call("Values As Variant()").as_array(), 0).as_object()), 4);
  EXPECT_EQ(read_property(*host_.find_class("Dictionary")->property("count"), dictionary_.get())
                .as_integer(),
            1);
  call("Remove(key As Variant)", {key});
  EXPECT_THROW(call("Remove(key As Variant)", {key}), HostException);
  EXPECT_THROW(call("Value(key As Variant) As Variant", {key}), HostException);
  EXPECT_THROW(call("Key(index As Integer) As Variant", {Value::of_integer(0)}), HostException);
}

TEST_F(DictionaryTest, plugins_reach_its_methods_by_declaration) {
  const auto load = [&](const char* declaration) {
    return services::load_object_method(dictionary_.get(), declaration);
  };
  auto* set_value = reinterpret_cast<void (*)(REALobject, REALobject, REALobject)>(
      load("Value(key As Variant, Assigns _value As Variant)"));
  auto* get_value = reinterpret_cast<REALobject (*)(REALobject, REALobject)>(
      load("value( KEY as variant ) as variant"));
  auto* get_key = reinterpret_cast<REALobject (*)(REALobject, std::int32_t)>(
      load("Key(index As Integer) As Variant"));
  ASSERT_TRUE(set_value != nullptr && get_value != nullptr && get_key != nullptr);
  EXPECT_EQ(load("Ghost"), nullptr);
  EXPECT_EQ(load("VarType(value As Variant) As Int32"), nullptr);

  const ObjectRef key = text("k");
  const ObjectRef value = variant_from_integer(4);
  set_value(dictionary_.get(), key.get(), value.get());
  const ObjectRef got = ObjectRef::adopt(get_value(dictionary_.get(), key.get()));
  EXPECT_EQ(got.get(), value.get());
  EXPECT_EQ(lock_count(value.get()), 3U);
  EXPECT_EQ(ObjectRef::adopt(get_key(dictionary_.get(), 0)).get(), key.get());
  EXPECT_EQ(get_key(dictionary_.get(), 1), nullptr);
  EXPECT_EQ(take_pending_class(), "OutOfBoundsException");
  EXPECT_EQ(get_value(dictionary_.get(), value.get()), nullptr);
  EXPECT_EQ(take_pending_class(), "KeyNotFoundException");
}

TEST_F(DictionaryTest, many_entries_survive_growth_and_removal) {
  for (std::int32_t i = 0; i < 5000; ++i) put(variant_from_integer(i), i * 2);
  for (std::int32_t i = 0; i < 5000; i += 2) {
    dictionary_remove(dictionary_.get(), variant_from_integer(i).get());
  }
  EXPECT_EQ(count(), 2500);
  EXPECT_EQ(to_int32(dictionary_key(dictionary_.get(), 10).get()), 21);
  EXPECT_EQ(at(variant_from_integer(4999)), 9998);
  EXPECT_EQ(at(variant_from_integer(4998)), -1);
}

}  // namespace
}  // namespace standin
