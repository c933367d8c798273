// Locks of maps made from a Dictionary, and turned into one.
#include "laws/locks/lock_test.h"
#include "runtime/dictionary.h"
#include "runtime/variants.h"
#include "support/leak_sanitizer.h"

namespace {

using standin::ObjectRef;
using support::expect;

class DictionaryLocks : public locks::LockTest {
 protected:
  static ObjectRef boxed(const Element& element) {
    if (const auto* integer = std::get_if<std::int32_t>(&element)) {
      return standin::variant_from_integer(*integer);
    }
    if (const auto* string = std::get_if<standin::StringRef>(&element)) {
      return standin::variant_from_string(string->get());
    }
    return std::get<ObjectRef>(element);
  }
  static void add_to(const ObjectRef& dictionary, const Element& key, const Element& value) {
    standin::dictionary_set(dictionary.get(), boxed(key).get(), boxed(value).get());
  }
};
ZRB_FOR_CLASSES(DictionaryLocks, support::map_classes());

constexpr std::array from_dictionary = {member::from_dictionary, member::convert_from_dictionary};
constexpr std::array to_dictionary = {member::clone_dictionary, member::convert_to_dictionary};

ZRB_LOCK_TEST(DictionaryLocks, a_map_locks_each_key_and_value_of_the_dictionary_once,
              member::from_dictionary, member::convert_from_dictionary, member::destructor) {
  const Element stored_key = key(1);
  const Element stored_value = value(1);
  const ObjectRef dictionary = standin::make_dictionary();
  add_to(dictionary, stored_key, stored_value);
  for (const char* declaration : from_dictionary) {
    SCOPED_TRACE(declaration);
    const LockWatch watch;
    {
      const Container map = Container::without_storage(container_class());
      map.call<void>(declaration, dictionary.get());
      ASSERT_EQ(map.count(), 1);
      LockChanges expected{{map.get(), 1}};
      expect(expected, stored_key, 1);
      expect(expected, stored_value, 1);
      EXPECT_EQ(watch.changes(), expected);
    }
    EXPECT_EQ(watch.changes(), LockChanges());
  }
}

ZRB_LOCK_TEST(DictionaryLocks, two_entries_are_compared_in_a_tree_alone, member::from_dictionary,
              member::convert_from_dictionary) {
  const Element first_key = key(1);
  const Element second_key = key(2);
  const Element stored_value = value(1);
  const ObjectRef dictionary = standin::make_dictionary();
  add_to(dictionary, first_key, stored_value);
  add_to(dictionary, second_key, stored_value);
  for (const char* declaration : from_dictionary) {
    const Container map = Container::without_storage(container_class());
    const LockWatch watch;
    map.call<void>(declaration, dictionary.get());
    LockChanges expected;
    expect(expected, first_key, 1);
    expect(expected, second_key, 1);
    expect(expected, stored_value, 2);
    if (container_class().is_ordered()) add_comparisons(expected, first_key, second_key, 2);
    EXPECT_EQ(watch.changes(), expected) << declaration;
  }
}

ZRB_LOCK_TEST(DictionaryLocks, former_content_is_given_back, member::from_dictionary,
              member::convert_from_dictionary) {
  for (const char* declaration : from_dictionary) {
    const Single content = single();
    const LockWatch watch;
    content.container.call<void>(declaration, REALobject{nullptr});
    LockChanges expected;
    expect(expected, content.key, -1);
    expect(expected, content.value, -1);
    EXPECT_EQ(watch.changes(), expected) << declaration;
  }
}

ZRB_LOCK_TEST(DictionaryLocks, a_value_replaced_by_a_later_equal_key_is_given_back,
              member::from_dictionary, member::convert_from_dictionary) {
  // Two keys of a Dictionary that a map takes for one.
  const bool integers = container_class().key == ElementType::integer;
  const bool strings = container_class().key == ElementType::string;
  const std::string_view utf16("a\0", 2);
  const Element one = integers  ? support::variant_integer(5)
                      : strings ? support::string("a")
                                : support::variant_string("a");
  const Element other = integers  ? support::variant_string("5")
                        : strings ? support::string(utf16, host_encoding::utf16)
                                  : support::variant_string(utf16, host_encoding::utf16);
  const Element former = value(1);
  const Element later = value(2);
  const ObjectRef dictionary = standin::make_dictionary();
  add_to(dictionary, one, former);
  add_to(dictionary, other, later);
  ASSERT_EQ(standin::dictionary_count(dictionary.get()), 2);
  for (const char* declaration : from_dictionary) {
    const Container map = Container::without_storage(container_class());
    const LockWatch watch;
    map.call<void>(declaration, dictionary.get());
    ASSERT_EQ(map.count(), 1);
    LockChanges expected;
    if (!integers) {
      expect(expected, one, 1);
      add_comparisons(expected, one, other, comparisons_of_equals());
    }
    expect(expected, later, 1);
    EXPECT_EQ(watch.changes(), expected) << declaration;
  }
}

ZRB_LOCK_TEST(DictionaryLocks, a_dictionary_without_methods_changes_no_lock,
              member::from_dictionary, member::convert_from_dictionary) {
  restart_without({"REALLoadObjectMethod"});
  const ObjectRef dictionary = standin::make_dictionary();
  add_to(dictionary, key(1), value(1));
  add_to(dictionary, key(2), value(2));
  const Container map = Container::without_storage(container_class());
  for (const char* declaration : from_dictionary) {
    const LockWatch watch;
    map.call<void>(declaration, dictionary.get());
    EXPECT_EQ(watch.changes(), LockChanges()) << declaration;
  }
}

ZRB_LOCK_TEST(DictionaryLocks, a_dictionary_returned_has_one_lock_and_entries_stay_locked_for_good,
              member::clone_dictionary, member::convert_to_dictionary, member::destructor) {
  const support::LeaksExpected former_storage;
  for (const char* declaration : to_dictionary) {
    SCOPED_TRACE(declaration);
    Single content = single();
    const LockWatch watch;
    {
      const ObjectRef dictionary =
          ObjectRef::adopt(content.container.call<REALobject>(declaration));
      EXPECT_EQ(watch.changes(), (LockChanges{{dictionary.get(), 1}}));
    }
    EXPECT_EQ(watch.changes(), LockChanges());
    content.container.release();
    EXPECT_EQ(watch.changes(), LockChanges()) << "the locks of the former entries are not undone";
  }
}

ZRB_LOCK_TEST(DictionaryLocks, a_dictionary_that_cannot_be_made_changes_no_lock,
              member::clone_dictionary, member::convert_to_dictionary) {
  const Single content = single();
  const Container without_storage = Container::without_storage(container_class());
  for (const char* declaration : to_dictionary) {
    const LockWatch watch;
    EXPECT_EQ(without_storage.call<REALobject>(declaration), nullptr);
    EXPECT_EQ(raised(), "NilObjectException: Map not initialized");
    host().faults().answer_null_at("PluginNewInstance", 1);
    EXPECT_EQ(content.container.call<REALobject>(declaration), nullptr);
    host().faults().clear();
    EXPECT_EQ(watch.changes(), LockChanges());
  }
}

}  // namespace
