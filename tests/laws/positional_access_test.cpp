// `Key(index)` and `ValueAtIndex(index)`: the content by position.
#include "runtime/handles.h"
#include "support/lock_changes.h"
#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;
using support::LockWatch;

class PositionalAccess : public support::ClassTest {
 protected:
  static Element key_at(const Container& container, std::int32_t index) {
    return container.call_for(container.container_class().key, "Key(index as integer) as {K}",
                              index);
  }
  static Element value_at(const Container& container, std::int32_t index) {
    return container.call_for(*container.container_class().value,
                              "ValueAtIndex(index as integer) as {V}", index);
  }
  /// From now on the host makes no arrays, so that nothing can be cached.
  void refuse_arrays() {
    host().faults().answer_null_at("RuntimeArrayCreateSingleDimBoundedArray", 1,
                                   standin::Faults::Repeat::from_there_on);
  }
};
class MapPositionalAccess : public PositionalAccess {};
class SetPositionalAccess : public PositionalAccess {};
ZRB_FOR_CLASSES(PositionalAccess, support::all_classes());
ZRB_FOR_CLASSES(MapPositionalAccess, support::map_classes());
ZRB_FOR_CLASSES(SetPositionalAccess, support::set_classes());

TEST_P(PositionalAccess, key_of_an_index_is_the_key_at_that_place_of_the_iteration) {
  const Container container = make_with(220);
  const std::vector<std::string> order = container.described_keys();
  for (std::int32_t i = 0; i < 220; ++i) {
    ASSERT_EQ(support::describe(key_at(container, i)), order[static_cast<std::size_t>(i)]) << i;
  }
}

TEST_P(MapPositionalAccess, value_at_an_index_belongs_to_the_key_at_that_index) {
  const Container map = make_with(220);
  for (std::int32_t i = 0; i < 220; ++i) {
    ASSERT_EQ(support::describe(value_at(map, i)), support::describe(map.value(key_at(map, i))));
  }
}

TEST_P(PositionalAccess, the_array_is_made_once_for_many_reads) {
  const Container container = make_with(50);
  host().calls().reset();
  for (std::int32_t i = 0; i < 50; ++i) key_at(container, i);
  EXPECT_EQ(host().calls().of("RuntimeArrayCreateSingleDimBoundedArray"),
            container_class().is_map() ? 2u : 1u);
}

TEST_P(PositionalAccess, places_follow_changes_of_the_content) {
  const Container container = make_with(5);
  key_at(container, 0);
  container.remove(container.first());
  EXPECT_EQ(support::describe(key_at(container, 0)), container.described_keys()[0]);
  EXPECT_EQ(container.count(), 4);
}

TEST_P(PositionalAccess, the_element_has_one_lock_for_the_caller) {
  const Element stored_key = key(1);
  const Container container = make();
  container.put(stored_key, value(1));
  key_at(container, 0);
  const LockWatch watch;
  {
    const Element read = key_at(container, 0);
    EXPECT_EQ(support::handle(read), support::handle(stored_key));
    EXPECT_EQ(watch.change(stored_key), support::one_lock(stored_key));
  }
  EXPECT_EQ(watch.changes(), support::LockChanges());
}

TEST_P(PositionalAccess, an_index_out_of_range_is_left_to_the_hosts_array) {
  const Container container = make_with(3);
  for (const std::int32_t index : {3, -1, 1000}) {
    EXPECT_TRUE(support::is_neutral(key_at(container, index)));
    EXPECT_TRUE(raised().starts_with("OutOfBoundsException")) << index;
    if (container_class().is_map()) {
      EXPECT_TRUE(support::is_neutral(value_at(container, index)));
      EXPECT_TRUE(raised().starts_with("OutOfBoundsException")) << index;
    }
  }
}

TEST_P(SetPositionalAccess, without_storage_a_set_has_no_key_and_raises_nothing) {
  const Container set = Container::without_storage(container_class());
  EXPECT_TRUE(support::is_neutral(key_at(set, 0)));
  EXPECT_EQ(raised(), "");
}

TEST_P(MapPositionalAccess, without_storage_a_map_raises) {
  const Container map = Container::without_storage(container_class());
  EXPECT_TRUE(support::is_neutral(key_at(map, 0)));
  EXPECT_EQ(raised(), "NilObjectException: Map not initialized");
  EXPECT_TRUE(support::is_neutral(value_at(map, 0)));
  EXPECT_EQ(raised(), "NilObjectException: Map not initialized");
}

TEST_P(SetPositionalAccess, without_arrays_a_set_gives_nothing) {
  const Container set = make_with(3);
  refuse_arrays();
  EXPECT_TRUE(support::is_neutral(key_at(set, 1)));
  EXPECT_EQ(raised(), "");
}

TEST_P(MapPositionalAccess, without_arrays_a_map_is_walked) {
  const Container map = make_with(20);
  const std::vector<std::string> keys = map.described_keys();
  const std::vector<std::string> values = map.described_values();
  refuse_arrays();
  for (std::int32_t i = 0; i < 20; ++i) {
    EXPECT_EQ(support::describe(key_at(map, i)), keys[static_cast<std::size_t>(i)]);
    EXPECT_EQ(support::describe(value_at(map, i)), values[static_cast<std::size_t>(i)]);
  }
  EXPECT_TRUE(support::is_neutral(key_at(map, 20)));
  EXPECT_TRUE(support::is_neutral(value_at(map, 20)));
  EXPECT_EQ(raised(), "");
}

TEST_P(MapPositionalAccess, a_walk_gives_one_lock_to_the_caller) {
  const Element stored_key = key(1);
  const Element stored_value = value(1);
  const Container map = make();
  map.assign_value(stored_key, stored_value);
  refuse_arrays();
  const LockWatch watch;
  {
    const Element read_key = key_at(map, 0);
    const Element read_value = value_at(map, 0);
    EXPECT_EQ(watch.change(stored_key), support::one_lock(stored_key));
    EXPECT_EQ(watch.change(stored_value), support::one_lock(stored_value));
  }
  EXPECT_EQ(watch.changes(), support::LockChanges());
}

TEST_P(MapPositionalAccess, the_plugins_own_array_procedures_give_one_lock_on_values_too) {
  restart_without({"RuntimeArrayDirectGetGetProc", "RuntimeArrayDirectGetSetProc"});
  const Element stored_value = value(1);
  const Container map = make();
  map.assign_value(key(1), stored_value);
  value_at(map, 0);
  const LockWatch watch;
  {
    const Element read = value_at(map, 0);
    EXPECT_EQ(support::describe(read), support::describe(stored_value));
    EXPECT_EQ(watch.change(stored_value), support::one_lock(stored_value));
  }
  EXPECT_EQ(watch.changes(), support::LockChanges());
}

TEST_P(PositionalAccess, the_plugins_own_array_procedures_give_one_lock_to_the_caller) {
  restart_without({"RuntimeArrayDirectGetGetProc", "RuntimeArrayDirectGetSetProc"});
  const Element stored_key = key(1);
  const Container container = make();
  container.put(stored_key, value(1));
  key_at(container, 0);
  const LockWatch watch;
  {
    const Element read = key_at(container, 0);
    EXPECT_EQ(support::describe(read), support::describe(stored_key));
    EXPECT_EQ(watch.change(stored_key), support::one_lock(stored_key));
  }
  EXPECT_EQ(watch.changes(), support::LockChanges());
}

}  // namespace
