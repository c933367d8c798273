// The key-to-value operations of maps.
#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;
using support::Iterator;

class MapValues : public support::ClassTest {
 protected:
  Element nothing() const { return support::neutral(*container_class().value); }
};
class MapsOfObjects : public MapValues {};
ZRB_FOR_CLASSES(MapValues, support::map_classes());
ZRB_FOR_CLASSES(MapsOfObjects, support::classes_where([](const support::ContainerClass& c) {
                  return c.is_map() && c.value != support::ElementType::integer;
                }));

TEST_P(MapValues, a_value_read_is_the_value_assigned) {
  const Container map = make_with(300);
  for (int i = 0; i < 300; ++i) {
    ASSERT_EQ(support::describe(map.value(key(i))), support::describe(value(i)));
  }
}

TEST_P(MapsOfObjects, the_very_object_assigned_is_returned_with_a_lock_for_the_caller) {
  const Container map = make();
  const Element assigned = value(1);
  map.assign_value(key(1), assigned);
  EXPECT_EQ(support::locks(assigned), 2);
  {
    const Element read = map.value(key(1));
    EXPECT_EQ(support::handle(read), support::handle(assigned));
    EXPECT_EQ(support::locks(assigned), 3);
    const Element looked_up = map.lookup(key(1), nothing());
    EXPECT_EQ(support::handle(looked_up), support::handle(assigned));
    EXPECT_EQ(support::locks(assigned), 4);
  }
  EXPECT_EQ(support::locks(assigned), 2);
}

TEST_P(MapValues, assigning_to_a_present_key_replaces_its_value_and_keeps_its_place) {
  const Container map = make_with(150);
  const std::vector<std::string> order = map.described_keys();
  for (int i = 0; i < 150; ++i) map.assign_value(key(i), value(1000 + i));
  EXPECT_EQ(map.count(), 150);
  EXPECT_EQ(map.described_keys(), order);
  for (int i = 0; i < 150; ++i) {
    ASSERT_EQ(support::describe(map.value(key(i))), support::describe(value(1000 + i)));
  }
}

TEST_P(MapsOfObjects, replacing_a_value_releases_the_former_one) {
  const Container map = make();
  const Element former = value(1);
  const Element later = value(2);
  map.assign_value(key(1), former);
  map.assign_value(key(1), later);
  EXPECT_EQ(support::locks(former), 1);
  EXPECT_EQ(support::locks(later), 2);
}

TEST_P(MapsOfObjects, a_former_value_that_only_the_map_held_is_freed) {
  const Container map = make();
  map.assign_value(key(1), value(1));
  const Iterator at = map.first();
  const auto live = host().ledger().live_count();
  at.set_value(nothing());
  EXPECT_EQ(host().ledger().live_count(), live - 1);
}

TEST_P(MapsOfObjects, assigning_the_stored_value_again_changes_no_lock) {
  const Container map = make();
  const Element assigned = value(1);
  map.assign_value(key(1), assigned);
  map.assign_value(key(1), assigned);
  EXPECT_EQ(support::locks(assigned), 2);
  map.first().set_value(assigned);
  EXPECT_EQ(support::locks(assigned), 2);
}

TEST_P(MapsOfObjects, nil_is_a_value_like_any_other) {
  const Container map = make();
  map.assign_value(key(1), value(1));
  map.assign_value(key(1), nothing());
  EXPECT_TRUE(map.contains(key(1)));
  EXPECT_EQ(map.count(), 1);
  EXPECT_EQ(map.count_key(key(1)), 1);
  EXPECT_TRUE(support::is_neutral(map.value(key(1))));
  EXPECT_EQ(raised(), "");
  EXPECT_TRUE(support::is_neutral(map.lookup(key(1), value(5)))) << "not the default";
  map.assign_value(key(2), nothing());
  EXPECT_TRUE(map.contains(key(2)));
  EXPECT_EQ(map.count(), 2);
}

TEST_P(MapValues, reading_an_absent_key_raises_without_a_message) {
  const Container map = make_with(3);
  EXPECT_TRUE(support::is_neutral(map.value(key(3))));
  ASSERT_TRUE(host().has_pending_exception());
  EXPECT_FALSE(standin::exception_message(host().pending_exception()));
  EXPECT_EQ(raised(), "KeyNotFoundException: ");
  EXPECT_EQ(map.count(), 3);
  EXPECT_FALSE(map.contains(key(3)));
}

TEST_P(MapValues, reading_from_an_empty_map_raises_too) {
  EXPECT_TRUE(support::is_neutral(make().value(key(0))));
  EXPECT_EQ(raised(), "KeyNotFoundException: ");
}

TEST_P(MapValues, lookup_of_an_absent_key_returns_the_default_and_inserts_nothing) {
  const Container map = make_with(3);
  const Element default_value = value(42);
  {
    const Element result = map.lookup(key(3), default_value);
    EXPECT_EQ(support::describe(result), support::describe(default_value));
    EXPECT_EQ(support::handle(result), support::handle(default_value));
    EXPECT_EQ(support::locks(default_value), 2 * support::one_lock(default_value));
  }
  EXPECT_EQ(support::locks(default_value), support::one_lock(default_value));
  EXPECT_EQ(map.count(), 3);
  EXPECT_FALSE(map.contains(key(3)));
  EXPECT_EQ(raised(), "");
}

TEST_P(MapValues, lookup_returns_a_nil_default_as_nil) {
  EXPECT_TRUE(support::is_neutral(make().lookup(key(1), nothing())));
  EXPECT_EQ(raised(), "");
}

TEST_P(MapValues, lookup_of_a_present_key_ignores_the_default) {
  const Container map = make_with(3);
  const Element default_value = value(42);
  EXPECT_EQ(support::describe(map.lookup(key(2), default_value)), support::describe(value(2)));
  EXPECT_EQ(support::locks(default_value), support::one_lock(default_value));
}

TEST_P(MapValues, the_stored_key_object_is_kept_when_an_equal_one_is_assigned) {
  const Container map = make();
  const Element first_key = key(1);
  const Element second_key = key(1);
  map.assign_value(first_key, value(1));
  map.assign_value(second_key, value(2));
  EXPECT_EQ(support::handle(map.first().key()), support::handle(first_key));
  EXPECT_EQ(map.count(), 1);
}

TEST_P(MapValues, reading_changes_nothing) {
  const Container map = make_with(20);
  const std::vector<std::string> keys = map.described_keys();
  const std::vector<std::string> values = map.described_values();
  map.value(key(3));
  map.lookup(key(30), value(1));
  map.contains(key(5));
  map.count_key(key(50));
  map.find(key(7));
  EXPECT_EQ(map.described_keys(), keys);
  EXPECT_EQ(map.described_values(), values);
}

}  // namespace
