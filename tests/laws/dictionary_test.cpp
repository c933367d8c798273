// Maps made from the host's Dictionary, and turned into one.
#include "runtime/dictionary.h"
#include "runtime/encodings.h"
#include "runtime/variants.h"
#include "support/leak_sanitizer.h"
#include "support/lock_changes.h"
#include "support/plugin_test.h"

namespace {

using standin::ObjectRef;
using support::Container;
using support::Element;
using support::ElementType;
using support::LockWatch;

constexpr const char* construct_from_dictionary = "Constructor(dic as dictionary)";
constexpr const char* convert_from_dictionary = "Operator_Convert(dic as dictionary)";
constexpr const char* clone_dictionary = "CloneDictionary as Dictionary";
constexpr const char* convert_to_dictionary = "Operator_Convert as Dictionary";

class FromDictionary : public support::ClassTest {
 protected:
  /// An element as the Dictionary holds it.
  static ObjectRef boxed(const Element& element) {
    if (const auto* integer = std::get_if<std::int32_t>(&element)) {
      return standin::variant_from_integer(*integer);
    }
    if (const auto* string = std::get_if<standin::StringRef>(&element)) {
      return standin::variant_from_string(string->get());
    }
    return std::get<ObjectRef>(element);
  }
  ObjectRef dictionary_with(int count) const {
    ObjectRef dictionary = standin::make_dictionary();
    for (int i = 0; i < count; ++i) {
      standin::dictionary_set(dictionary.get(), boxed(key(i)).get(), boxed(value(i)).get());
    }
    return dictionary;
  }
  Container map_of(REALobject dictionary,
                   const char* declaration = construct_from_dictionary) const {
    const Container map = Container::without_storage(container_class());
    map.call<void>(declaration, dictionary);
    return map;
  }
};
class FromDictionaryOfObjects : public FromDictionary {};
class ToDictionary : public support::ClassTest {
 protected:
  static ObjectRef converted(const Container& map, const char* declaration) {
    return ObjectRef::adopt(map.call<REALobject>(declaration));
  }
};
ZRB_FOR_CLASSES(FromDictionary, support::map_classes());
ZRB_FOR_CLASSES(FromDictionaryOfObjects,
                support::classes_where([](const support::ContainerClass& c) {
                  return c.value == ElementType::variant;
                }));
ZRB_FOR_CLASSES(ToDictionary, support::map_classes());

TEST_P(FromDictionary, the_map_has_every_entry) {
  const ObjectRef dictionary = dictionary_with(230);
  for (const char* declaration : {construct_from_dictionary, convert_from_dictionary}) {
    SCOPED_TRACE(declaration);
    const Container map = map_of(dictionary.get(), declaration);
    EXPECT_EQ(map.count(), 230);
    for (int i = 0; i < 230; ++i) {
      ASSERT_EQ(support::describe(map.value(key(i))), support::describe(value(i)));
    }
    EXPECT_EQ(map.described_keys(), make_with(230).described_keys());
  }
  EXPECT_EQ(standin::dictionary_count(dictionary.get()), 230);
}

TEST_P(FromDictionary, nil_makes_an_empty_map) {
  const Container map = map_of(nullptr);
  EXPECT_EQ(map.count(), 0);
  EXPECT_EQ(raised(), "");
  map.put(1);
  EXPECT_EQ(map.count(), 1);
}

TEST_P(FromDictionary, former_content_is_released) {
  const Element former_key = key(1);
  const Element former_value = value(1);
  const Container map = make();
  map.assign_value(former_key, former_value);
  map.call<void>(convert_from_dictionary, REALobject{nullptr});
  EXPECT_EQ(map.count(), 0);
  EXPECT_EQ(support::locks(former_key), support::one_lock(former_key));
  EXPECT_EQ(support::locks(former_value), support::one_lock(former_value));
}

TEST_P(FromDictionary, arrays_made_before_are_dropped) {
  const Container map = make_with(3);
  const auto keys = standin::ArrayRef::adopt(map.call<REALarray>("Keys as {K}()"));
  map.call<void>(convert_from_dictionary, dictionary_with(1).get());
  EXPECT_EQ(standin::lock_count(keys.get()), 1u);
}

TEST_P(FromDictionary, only_the_maps_own_locks_stay) {
  const ObjectRef dictionary = dictionary_with(1);
  const auto live = host().ledger().live_count();
  const LockWatch watch;
  {
    const Container map = map_of(dictionary.get());
    ASSERT_EQ(map.count(), 1);
    // A variant is shared with the Dictionary; a string is shared with the variant that holds it.
    const Element stored_key = map.first().key();
    const Element stored_value = map.first().value();
    support::LockChanges expected;
    expected[map.get()] = 1;
    support::expect(expected, stored_key, 2);  // the map's and this test's
    support::expect(expected, stored_value, 2);
    EXPECT_EQ(watch.changes(), expected);
  }
  EXPECT_EQ(watch.changes(), support::LockChanges());
  EXPECT_EQ(host().ledger().live_count(), live);
}

TEST_P(FromDictionary, keys_that_become_equal_keep_the_later_value) {
  const ObjectRef dictionary = standin::make_dictionary();
  const auto add = [&](const Element& as_key, int as_value) {
    standin::dictionary_set(dictionary.get(), boxed(as_key).get(), boxed(value(as_value)).get());
  };
  // Two encodings are two keys of a Dictionary and one of a map; so are 5 and "5" where keys are
  // converted.
  const std::uint32_t latin = standin::encodings::windows_latin1;
  if (container_class().key == ElementType::integer) {
    add(support::variant_integer(5), 1);
    add(support::variant_string("5"), 2);
  } else {
    add(support::variant_string("\xC3\xA9"), 1);
    add(support::variant_string("\xE9", latin), 2);
  }
  ASSERT_EQ(standin::dictionary_count(dictionary.get()), 2);
  const Container map = map_of(dictionary.get());
  EXPECT_EQ(map.count(), 1);
  EXPECT_EQ(support::describe(map.first().value()), support::describe(value(2)));
}

TEST_P(FromDictionary, variants_are_converted_to_the_types_of_the_map) {
  const ObjectRef dictionary = standin::make_dictionary();
  standin::dictionary_set(dictionary.get(), standin::variant_from_double(12).get(),
                          standin::variant_from_int64(34).get());
  const Container map = map_of(dictionary.get());
  ASSERT_EQ(map.count(), 1);
  const auto expected = [](ElementType type, const char* integer, const char* string,
                           const char* variant) {
    return type == ElementType::integer ? integer
                                        : (type == ElementType::string ? string : variant);
  };
  EXPECT_EQ(support::describe(map.first().key()),
            expected(container_class().key, "12", "\"12\" in 8000100", "Double 12.000000"));
  EXPECT_EQ(support::describe(map.first().value()),
            expected(*container_class().value, "34", "\"34\" in 8000100", "Int64 34"));
}

TEST_P(FromDictionary, nil_becomes_nothing_of_the_maps_types) {
  const ObjectRef dictionary = standin::make_dictionary();
  standin::dictionary_set(dictionary.get(), nullptr, nullptr);
  const Container map = map_of(dictionary.get());
  ASSERT_EQ(map.count(), 1);
  EXPECT_TRUE(support::is_neutral(map.first().key()));
  EXPECT_TRUE(support::is_neutral(map.first().value()));
}

TEST_P(FromDictionaryOfObjects, an_object_in_a_variant_is_kept_itself) {
  const ObjectRef object = standin::make_dictionary();
  const ObjectRef dictionary = standin::make_dictionary();
  standin::dictionary_set(dictionary.get(), boxed(key(1)).get(),
                          standin::box_object(object.get()).get());
  const Container map = map_of(dictionary.get());
  EXPECT_EQ(support::handle(map.first().value()), object.get());
}

TEST_P(FromDictionary, methods_are_loaded_once_for_a_dictionary) {
  const ObjectRef one = dictionary_with(3);
  const ObjectRef other = dictionary_with(3);
  const auto loads = [this](const ObjectRef& dictionary) {
    host().calls().reset();
    map_of(dictionary.get());
    return host().calls().of("REALLoadObjectMethod");
  };
  EXPECT_EQ(loads(one), 3u);
  EXPECT_EQ(loads(one), 0u);
  EXPECT_EQ(loads(other), 3u);
  EXPECT_EQ(loads(one), 3u);
}

TEST_P(FromDictionary, a_dictionary_whose_methods_cannot_be_loaded_gives_nil_for_nil) {
  restart_without({"REALLoadObjectMethod"});
  const Container map = map_of(dictionary_with(3).get());
  EXPECT_EQ(map.count(), 1);
  EXPECT_TRUE(support::is_neutral(map.first().key()));
  EXPECT_TRUE(support::is_neutral(map.first().value()));
  EXPECT_EQ(raised(), "");
}

TEST_P(FromDictionary, a_dictionary_whose_count_cannot_be_read_is_empty) {
  restart_without({"REALGetPropValueInt"});
  EXPECT_EQ(map_of(dictionary_with(3).get()).count(), 0);
}

TEST_P(ToDictionary, the_dictionary_is_empty_and_so_is_the_map_afterwards) {
  const support::LeaksExpected former_storage;
  for (const char* declaration : {clone_dictionary, convert_to_dictionary}) {
    SCOPED_TRACE(declaration);
    const Container map = make_with(200);
    const ObjectRef dictionary = converted(map, declaration);
    ASSERT_TRUE(dictionary);
    EXPECT_TRUE(standin::is_dictionary(dictionary.get()));
    EXPECT_EQ(standin::dictionary_count(dictionary.get()), 0);
    EXPECT_EQ(standin::lock_count(dictionary.get()), 1u);
    EXPECT_EQ(map.count(), 0);
    if (container_class().is_hashed()) {
      EXPECT_EQ(map.bin_count(), 193);
    }
    map.put(1);
    EXPECT_EQ(map.count(), 1);
  }
}

TEST_P(ToDictionary, the_former_entries_stay_locked) {
  const support::LeaksExpected former_storage;
  const Element stored_key = key(1);
  const Element stored_value = value(1);
  {
    const Container map = make();
    map.assign_value(stored_key, stored_value);
    converted(map, clone_dictionary);
  }
  EXPECT_EQ(support::locks(stored_key), 2 * support::one_lock(stored_key));
  EXPECT_EQ(support::locks(stored_value), 2 * support::one_lock(stored_value));
}

TEST_P(ToDictionary, arrays_made_before_are_dropped) {
  const support::LeaksExpected former_storage;
  const Container map = make_with(3);
  const auto keys = standin::ArrayRef::adopt(map.call<REALarray>("Keys as {K}()"));
  converted(map, clone_dictionary);
  EXPECT_EQ(standin::lock_count(keys.get()), 1u);
}

TEST_P(ToDictionary, a_map_without_storage_raises_and_gives_nil) {
  const Container map = Container::without_storage(container_class());
  for (const char* declaration : {clone_dictionary, convert_to_dictionary}) {
    EXPECT_FALSE(converted(map, declaration));
    EXPECT_EQ(raised(), "NilObjectException: Map not initialized");
  }
  EXPECT_EQ(map.first_word(), nullptr);
}

TEST_P(ToDictionary, a_host_that_makes_no_dictionary_gets_nil_and_an_unchanged_map) {
  const Container map = make_with(3);
  host().faults().answer_null_at("PluginNewInstance", 1);
  EXPECT_FALSE(converted(map, clone_dictionary));
  host().faults().clear();
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(map.count(), 3);
}

}  // namespace
