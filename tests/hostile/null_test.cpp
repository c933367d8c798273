// Null where the interface never gives null, and null where it stands for something.
#include "routines.h"
#include "runtime/arrays.h"
#include "runtime/dictionary.h"
#include "runtime/value.h"
#include "runtime/variants.h"
#include "support/host_arrays.h"
#include "support/lock_changes.h"
#include "support/plugin_test.h"

namespace hostile {
namespace {

using faults::Argument;
using faults::Effect;
using faults::Part;
using faults::Routine;
using standin::Faults;
using support::Container;
using support::ContainerClass;
using support::Element;
using support::ElementType;
using support::Iterator;

class NothingButNulls : public support::ClassTest {
 protected:
  /// What a routine raises when it gets null, or 0, for every argument.
  std::string expected(const Routine& routine) const {
    if (routine.takes(Argument::array)) return "NilObjectException: values array is nil";
    if (routine.takes(Argument::target_array)) return "NilObjectException: array is nil";
    if (routine.takes(Argument::other_map)) return "NilObjectException: Other map is nil";
    if (routine.takes(Argument::other_iterator)) return "NilObjectException: other iterator is nil";
    const bool reads_value =
        routine.part == Part::method && !routine.of_iterator &&
        std::string_view(routine.driver->declaration) == "value(key as {K}) as {V}";
    return reads_value ? "KeyNotFoundException: " : "";
  }

  /// Null for every handle, 0 for every number.
  static standin::Value call(const Routine& routine, REALobject instance) {
    std::vector<standin::Value> nulls;
    if (routine.method != nullptr) {
      for (const standin::Parameter& parameter : routine.method->declaration.parameters) {
        nulls.push_back(standin::Value::initial(parameter.type));
      }
      if (routine.part == Part::setter) {
        nulls.push_back(standin::Value::initial(routine.method->declaration.result));
      }
    }
    return faults::call(routine, instance, nulls);
  }

  std::string outcome(const Routine& routine, REALobject instance) {
    try {
      call(routine, instance);
    } catch (const standin::HostException& exception) {
      return exception.class_name() + ": " + exception.message();
    }
    return "";
  }
};
ZRB_FOR_CLASSES(NothingButNulls, support::all_classes());

TEST_P(NothingButNulls, every_routine_raises_what_it_should_or_takes_null_for_a_key) {
  for (const Routine& routine : faults::registered_routines(container_class())) {
    if (routine.part == Part::destructor) continue;
    SCOPED_TRACE(routine.name);
    const Container container = make();
    container.put_all(1, 5);
    const Iterator iterator = container.find(key(3));
    const std::vector<std::string> before = container.described_keys();
    const REALobject instance = routine.of_iterator ? iterator.get() : container.get();
    EXPECT_EQ(outcome(routine, instance), expected(routine));
    const Effect effect = routine.driver->effect;
    const bool empties = effect == Effect::empties || effect == Effect::abandons ||
                         routine.takes(Argument::dictionary);
    if (empties) {
      EXPECT_EQ(container.count(), 0);
    } else if (effect == Effect::inserts && !routine.of_iterator) {
      EXPECT_EQ(container.count(), 6);
      EXPECT_TRUE(container.contains(support::neutral(container_class().key)));
    } else {
      EXPECT_EQ(container.described_keys(), before);
    }
  }
}

TEST_P(NothingButNulls, an_instance_without_storage_stays_without_unless_it_is_constructed) {
  for (const Routine& routine : faults::registered_routines(container_class())) {
    if (routine.part == Part::destructor) continue;
    SCOPED_TRACE(routine.name);
    const Container container = Container::without_storage(container_class());
    const Iterator iterator = Iterator::without_position(container_class());
    const std::string outcome_text =
        outcome(routine, routine.of_iterator ? iterator.get() : container.get());
    const Effect effect = routine.driver->effect;
    const bool converts_to = std::string_view(routine.driver->declaration).find("as Dictionary") !=
                             std::string_view::npos;
    const bool constructs =
        routine.takes(Argument::dictionary) || (effect == Effect::abandons && !converts_to);
    EXPECT_EQ(container.first_word() != nullptr, constructs);
    EXPECT_EQ(iterator.first_word(), nullptr);
    const bool is_silent_set = container_class().is_set() &&
                               (routine.takes(Argument::index) ||
                                std::string_view(routine.driver->declaration) == "Keys as {K}()");
    const bool is_silent_array = std::string_view(routine.driver->declaration) == "Keys as {K}()" ||
                                 std::string_view(routine.driver->declaration) == "Values as {V}()";
    EXPECT_EQ(outcome_text.empty(), constructs || is_silent_set || is_silent_array) << outcome_text;
  }
}

class NullKeys : public support::ClassTest {};
ZRB_FOR_CLASSES(NullKeys, support::classes_where([](const ContainerClass& c) {
                  return c.key != ElementType::integer;
                }));

TEST_P(NullKeys, null_is_a_key_like_any_other) {
  const Element null = support::neutral(container_class().key);
  const Container container = make_with(3);
  container.put(null, value(9));
  EXPECT_EQ(container.count(), 4);
  EXPECT_TRUE(container.contains(null));
  EXPECT_TRUE(support::is_neutral(container.find(null).key()));
  EXPECT_EQ(container.remove(null), 1);
  EXPECT_FALSE(container.contains(null));
  EXPECT_EQ(container.count(), 3);
}

class NullStrings : public support::ClassTest {};
ZRB_FOR_CLASSES(NullStrings, support::classes_with_key(ElementType::string));

TEST_P(NullStrings, a_null_string_is_the_empty_one) {
  const Container container = make();
  container.put(support::neutral(ElementType::string), value(1));
  EXPECT_TRUE(container.contains(support::string("")));
  container.put(support::string("", host_encoding::utf16), value(2));
  EXPECT_EQ(container.count(), 1);
  EXPECT_EQ(container.remove(support::string("", host_encoding::ascii)), 1);
}

class NullVariants : public support::ClassTest {};
ZRB_FOR_CLASSES(NullVariants, support::classes_with_key(ElementType::variant));

TEST_P(NullVariants, a_null_variant_is_no_empty_string_and_no_zero) {
  const Container container = make();
  container.put(support::neutral(ElementType::variant), value(1));
  EXPECT_FALSE(container.contains(support::variant_string("")));
  EXPECT_FALSE(container.contains(support::variant_integer(0)));
  EXPECT_TRUE(container.contains(support::neutral(ElementType::variant)));
}

class NullElements : public support::ClassTest {};
ZRB_FOR_CLASSES(NullElements, support::classes_where([](const ContainerClass& c) {
                  return c.is_set() && c.key != ElementType::integer;
                }));

TEST_P(NullElements, an_array_of_nulls_makes_a_set_of_one) {
  const Element null = support::neutral(container_class().key);
  const standin::ArrayRef nulls = support::host_array(container_class().key, {null, null, null});
  const Container set = Container::without_storage(container_class());
  set.call<void>("Constructor(Keys() as {K})", nulls.get());
  EXPECT_EQ(set.count(), 1);
  EXPECT_TRUE(set.contains(null));
}

class NullAnswers : public support::ClassTest {
 protected:
  void answer_null_from_now_on(std::initializer_list<const char*> entry_points) {
    for (const char* name : entry_points)
      host().faults().answer_null_at(name, 1, Faults::Repeat::from_there_on);
  }
};
ZRB_FOR_CLASSES(NullAnswers, support::map_classes());

TEST_P(NullAnswers, a_dictionary_that_gives_null_for_every_key_gives_one_entry) {
  const standin::ObjectRef dictionary = standin::make_dictionary();
  for (int i = 1; i < 4; ++i) {
    standin::dictionary_set(dictionary.get(), standin::variant_from_integer(i).get(),
                            standin::variant_from_integer(i).get());
  }
  answer_null_from_now_on({"Key(index As Integer) As Variant", "Value(key As Variant) As Variant"});
  const Container map = make_with(5);
  map.call<void>("Constructor(dic as dictionary)", dictionary.get());
  EXPECT_EQ(map.count(), 1);
  EXPECT_TRUE(support::is_neutral(map.first().key()));
  EXPECT_TRUE(support::is_neutral(map.first().value()));
}

TEST_P(NullAnswers, without_new_objects_every_maker_gives_nil_and_the_map_stays) {
  const Container map = make_with(5);
  answer_null_from_now_on({"PluginNewInstance"});
  EXPECT_FALSE(map.first());
  EXPECT_FALSE(map.find(key(1)));
  EXPECT_EQ(map.call<REALobject>("Clone as {Class}"), nullptr);
  EXPECT_EQ(map.call<REALobject>("CloneDictionary as Dictionary"), nullptr);
  host().faults().clear();
  EXPECT_EQ(map.count(), 5);
  EXPECT_EQ(map.described_keys().size(), 5U);
}

}  // namespace
}  // namespace hostile
