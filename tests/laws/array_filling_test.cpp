// `AddKeys` and `AddValues`: a map's content put in front of what an array holds.
#include "runtime/arrays.h"
#include "support/host_arrays.h"
#include "support/lock_changes.h"
#include "support/plugin_test.h"

namespace {

using standin::ArrayRef;
using support::Container;
using support::Element;
using support::LockWatch;

class ArrayFilling : public support::ClassTest {
 protected:
  static void add_keys(const Container& map, REALarray target) {
    map.call<void>("AddKeys(targetArray() as {K})", target);
  }
  static void add_values(const Container& map, REALarray target) {
    map.call<void>("AddValues(targetArray() as {V})", target);
  }
  ArrayRef array_of_keys(const std::vector<Element>& elements) const {
    return support::host_array(container_class().key, elements);
  }
  ArrayRef array_of_values(const std::vector<Element>& elements) const {
    return support::host_array(*container_class().value, elements);
  }
};
ZRB_FOR_CLASSES(ArrayFilling, support::map_classes());

TEST_P(ArrayFilling, keys_land_before_what_the_array_held) {
  const Container map = make_with(210);
  const ArrayRef target = array_of_keys({key(1000), key(1001)});
  add_keys(map, target.get());
  std::vector<std::string> expected = map.described_keys();
  expected.push_back(support::describe(key(1000)));
  expected.push_back(support::describe(key(1001)));
  EXPECT_EQ(support::described(container_class().key, target.get()), expected);
}

TEST_P(ArrayFilling, values_land_before_what_the_array_held) {
  const Container map = make_with(210);
  const ArrayRef target = array_of_values({value(1000)});
  add_values(map, target.get());
  std::vector<std::string> expected = map.described_values();
  expected.push_back(support::describe(value(1000)));
  EXPECT_EQ(support::described(*container_class().value, target.get()), expected);
}

TEST_P(ArrayFilling, an_empty_array_is_filled_with_the_content) {
  const Container map = make_with(3);
  const ArrayRef target = array_of_keys({});
  add_keys(map, target.get());
  EXPECT_EQ(support::described(container_class().key, target.get()), map.described_keys());
}

TEST_P(ArrayFilling, an_empty_map_adds_nothing) {
  const ArrayRef target = array_of_keys({key(5)});
  add_keys(make(), target.get());
  EXPECT_EQ(standin::upper_bound(target.get()), 0);
}

TEST_P(ArrayFilling, each_element_is_locked_once_by_the_array) {
  const Element stored_key = key(1);
  const Element stored_value = value(1);
  const Container map = make();
  map.assign_value(stored_key, stored_value);
  const ArrayRef keys = array_of_keys({});
  const ArrayRef values = array_of_values({});
  const LockWatch watch;
  add_keys(map, keys.get());
  add_values(map, values.get());
  support::LockChanges expected;
  support::expect(expected, stored_key, 1);
  support::expect(expected, stored_value, 1);
  EXPECT_EQ(watch.changes(), expected);
}

TEST_P(ArrayFilling, the_maps_own_arrays_are_neither_made_nor_changed) {
  const Container map = make_with(5);
  host().calls().reset();
  const ArrayRef target = array_of_keys({key(7)});
  add_keys(map, target.get());
  EXPECT_EQ(host().calls().of("RuntimeArrayCreateSingleDimBoundedArray"), 0u);
  const ArrayRef kept = ArrayRef::adopt(map.call<REALarray>("Keys as {K}()"));
  add_keys(map, target.get());
  EXPECT_EQ(ArrayRef::adopt(map.call<REALarray>("Keys as {K}()")).get(), kept.get());
  EXPECT_EQ(support::described(container_class().key, kept.get()), map.described_keys());
}

TEST_P(ArrayFilling, a_nil_array_is_refused) {
  const Container map = make_with(1);
  add_keys(map, nullptr);
  EXPECT_EQ(raised(), "NilObjectException: array is nil");
  add_values(map, nullptr);
  EXPECT_EQ(raised(), "NilObjectException: array is nil");
}

TEST_P(ArrayFilling, a_nil_array_is_refused_before_a_map_without_storage) {
  const Container map = Container::without_storage(container_class());
  add_keys(map, nullptr);
  EXPECT_EQ(raised(), "NilObjectException: array is nil");
  add_values(map, nullptr);
  EXPECT_EQ(raised(), "NilObjectException: array is nil");
}

TEST_P(ArrayFilling, a_map_without_storage_raises_and_leaves_the_array) {
  const Container map = Container::without_storage(container_class());
  const ArrayRef keys = array_of_keys({key(5)});
  const ArrayRef values = array_of_values({value(5)});
  add_keys(map, keys.get());
  EXPECT_EQ(raised(), "NilObjectException: Map not initialized");
  add_values(map, values.get());
  EXPECT_EQ(raised(), "NilObjectException: Map not initialized");
  EXPECT_EQ(standin::upper_bound(keys.get()), 0);
  EXPECT_EQ(standin::upper_bound(values.get()), 0);
}

TEST_P(ArrayFilling, a_host_without_insertion_gets_nothing_inserted) {
  restart_without({"RuntimeArrayDirectGetInsertProc"});
  const Container map = make_with(3);
  const ArrayRef target = array_of_keys({key(5)});
  add_keys(map, target.get());
  EXPECT_EQ(standin::upper_bound(target.get()), 0);
  EXPECT_EQ(raised(), "");
}

}  // namespace
