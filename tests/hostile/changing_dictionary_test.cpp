// Dictionaries that change while they are read, whose Count lies, and whose methods cannot be
// loaded.
#include <cstring>
#include <limits>

#include "lies.h"
#include "runtime/arrays.h"
#include "runtime/dictionary.h"
#include "runtime/services.h"
#include "runtime/variants.h"
#include "support/plugin_test.h"

namespace hostile {
namespace {

using standin::ObjectRef;
using support::Container;
using support::ContainerClass;
using support::Element;
using support::ElementType;

constexpr const char* key_getter = "Key(index As Integer) As Variant";
constexpr const char* value_getter = "Value(key As Variant) As Variant";

std::int32_t told_count = 0;

standin::services::HostBoolean lying_count(REALobject object, const char* name,
                                           std::int32_t* value) {
  if (std::strcmp(name, "Count") != 0) {
    return standin::services::get_property_int32(object, name, value);
  }
  *value = told_count;
  return standin::services::HostBoolean::yes;
}

std::string hidden_method;

void* load_but_one(REALobject object, const char* declaration) {
  if (hidden_method == declaration) return nullptr;
  return standin::services::load_object_method(object, declaration);
}

class ChangingDictionary : public support::ClassTest {
 protected:
  /// Entries whose keys and values every map can take.
  ObjectRef dictionary(int first, int count) const {
    ObjectRef result = standin::make_dictionary();
    for (int i = first; i < first + count; ++i) add(result.get(), i);
    return result;
  }
  void add(REALobject dictionary, int index) const {
    standin::dictionary_set(dictionary, entry(index).get(), entry(index).get());
  }
  ObjectRef entry(int index) const {
    if (container_class().key == ElementType::string) {
      return std::get<ObjectRef>(support::variant_string(std::to_string(1000 + index)));
    }
    return std::get<ObjectRef>(support::variant_integer(1000 + index));
  }
  Element map_key(int index) const {
    if (container_class().key == ElementType::string) {
      return support::string(std::to_string(1000 + index));
    }
    if (container_class().key == ElementType::integer) return 1000 + index;
    return support::variant_integer(1000 + index);
  }
  Container made_from(const ObjectRef& dictionary) const {
    const Container map = make_with(4);
    map.call<void>("Constructor(dic as dictionary)", dictionary.get());
    return map;
  }
  void restart_with_count(std::int32_t count) {
    told_count = count;
    restart(default_options(), [](standin::Host& host) {
      load_with_lies(host, {{"REALGetPropValueInt", lie(&lying_count)}});
    });
  }
  void restart_without_method(const char* declaration) {
    hidden_method = declaration;
    restart(default_options(), [](standin::Host& host) {
      load_with_lies(host, {{"REALLoadObjectMethod", lie(&load_but_one)}});
    });
  }
  void expect_whole(const Container& map) {
    EXPECT_EQ(map.count(), static_cast<std::int32_t>(map.keys().size()));
    map.put(500);
    EXPECT_TRUE(map.contains(key(500)));
    EXPECT_EQ(map.remove(key(500)), 1);
  }
  /// The end of an index that the Dictionary does not have.
  static bool is_out_of_range(const std::string& exception) {
    return exception.rfind("OutOfBoundsException", 0) == 0 ||
           exception.rfind("KeyNotFoundException", 0) == 0;
  }
};
ZRB_FOR_CLASSES(ChangingDictionary, support::map_classes());

TEST_P(ChangingDictionary, that_is_cleared_gives_nil_for_the_rest) {
  const ObjectRef source = dictionary(0, 5);
  host().faults().call_at(key_getter, 3, [&] { standin::dictionary_clear(source.get()); });
  const Container map = made_from(source);
  EXPECT_TRUE(is_out_of_range(raised()));
  EXPECT_TRUE(map.contains(map_key(0)));
  EXPECT_TRUE(map.contains(map_key(1)));
  EXPECT_EQ(map.count(), 3) << "two entries, and nil once";
  expect_whole(map);
}

TEST_P(ChangingDictionary, that_is_nil_is_asked_for_nothing) {
  host().calls().reset();
  const Container map = made_from(nullptr);
  EXPECT_EQ(host().calls().of("REALGetPropValueInt"), 0U);
  expect_whole(map);
}

TEST_P(ChangingDictionary, whose_methods_could_not_all_be_loaded_is_asked_for_them_again) {
  for (std::uint64_t nth = 1; nth <= 3; ++nth) {
    restart(default_options());
    const ObjectRef source = dictionary(0, 5);
    host().faults().throw_at("REALLoadObjectMethod", nth);
    EXPECT_ANY_THROW(made_from(source)) << nth;
    host().faults().clear();
    const Container map = made_from(source);
    EXPECT_EQ(map.count(), 5) << nth;
    expect_whole(map);
  }
}

TEST_P(ChangingDictionary, that_grows_is_read_to_its_first_count) {
  const ObjectRef source = dictionary(0, 5);
  host().faults().call_at(key_getter, 2, [&] {
    for (int i = 10; i < 300; ++i) add(source.get(), i);
  });
  const Container map = made_from(source);
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(map.count(), 5);
  expect_whole(map);
}

TEST_P(ChangingDictionary, that_loses_the_key_just_read_has_no_value_for_it) {
  const ObjectRef source = dictionary(0, 5);
  host().faults().call_at(value_getter, 1,
                          [&] { standin::dictionary_remove(source.get(), entry(0).get()); });
  const Container map = made_from(source);
  EXPECT_TRUE(is_out_of_range(raised()));
  EXPECT_TRUE(map.contains(map_key(0)));
  EXPECT_TRUE(support::is_neutral(map.value(map_key(0))));
  expect_whole(map);
}

TEST_P(ChangingDictionary, that_is_released_meanwhile_is_held_to_the_end) {
  ObjectRef source = dictionary(0, 5);
  const Container map = make_with(4);
  host().faults().call_at(key_getter, 2, [&] { source.reset(); });
  map.call<void>("Constructor(dic as dictionary)", source.get());
  EXPECT_FALSE(source);
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(map.count(), 5);
  expect_whole(map);
}

TEST_P(ChangingDictionary, whose_reading_constructs_the_map_again_ends_with_either_content) {
  const ObjectRef source = dictionary(0, 5);
  const ObjectRef other = dictionary(20, 2);
  const Container map = make_with(4);
  host().faults().call_at(key_getter, 3,
                          [&] { map.call<void>("Constructor(dic as dictionary)", other.get()); });
  map.call<void>("Constructor(dic as dictionary)", source.get());
  EXPECT_EQ(map.count(), 2) << "the last to be given storage";
  EXPECT_TRUE(map.contains(map_key(20)));
  expect_whole(map);
}

TEST_P(ChangingDictionary, whose_count_is_negative_is_empty) {
  restart_with_count(-1);
  for (const std::int32_t count : {-1, -1000, std::numeric_limits<std::int32_t>::min()}) {
    SCOPED_TRACE(count);
    told_count = count;
    const Container map = made_from(dictionary(0, 5));
    EXPECT_EQ(map.count(), 0);
    EXPECT_EQ(raised(), "");
  }
}

TEST_P(ChangingDictionary, whose_count_is_too_large_gives_nil_for_what_is_not_there) {
  restart_with_count(2000);
  const Container map = made_from(dictionary(0, 5));
  EXPECT_TRUE(is_out_of_range(raised()));
  EXPECT_EQ(map.count(), 6) << "five entries, and nil once";
  EXPECT_TRUE(map.contains(support::neutral(container_class().key)));
  expect_whole(map);
}

TEST_P(ChangingDictionary, whose_count_is_too_small_gives_its_beginning) {
  restart_with_count(2);
  const Container map = made_from(dictionary(0, 5));
  EXPECT_EQ(map.count(), 2);
  EXPECT_TRUE(map.contains(map_key(1)));
  EXPECT_FALSE(map.contains(map_key(2)));
}

TEST_P(ChangingDictionary, whose_keys_cannot_be_loaded_gives_one_nil) {
  restart_without_method(key_getter);
  const Container map = made_from(dictionary(0, 5));
  static_cast<void>(raised());  // the Dictionary has no value for nil
  EXPECT_EQ(map.count(), 1);
  EXPECT_TRUE(support::is_neutral(map.first().key()));
  expect_whole(map);
}

TEST_P(ChangingDictionary, whose_values_cannot_be_loaded_gives_keys_alone) {
  restart_without_method(value_getter);
  const Container map = made_from(dictionary(0, 5));
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(map.count(), 5);
  EXPECT_TRUE(support::is_neutral(map.value(map_key(3))));
  expect_whole(map);
}

TEST_P(ChangingDictionary, that_is_a_map_gives_what_its_methods_of_those_names_give) {
  const Container other = make_with(3);
  const Container map = make_with(4);
  map.call<void>("Constructor(dic as dictionary)", other.get());
  static_cast<void>(raised());
  // Maps have a Count, too; but only those of variants to variants have the methods themselves.
  const bool is_alike = container_class().key == ElementType::variant;
  EXPECT_EQ(map.count(), is_alike ? 3 : 1);
  EXPECT_EQ(other.count(), 3);
  expect_whole(map);
}

}  // namespace
}  // namespace hostile
