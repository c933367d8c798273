// `Keys` and `Values`: the content as host arrays, kept by the container until the content changes.
#include "runtime/arrays.h"
#include "support/host_arrays.h"
#include "support/leak_sanitizer.h"
#include "support/lock_changes.h"
#include "support/plugin_test.h"

namespace {

using standin::ArrayRef;
using support::Container;
using support::Element;
using support::ElementType;
using support::Iterator;
using support::LockWatch;

class ArrayExport : public support::ClassTest {
 protected:
  static ArrayRef keys(const Container& container) {
    return ArrayRef::adopt(container.call<REALarray>("Keys as {K}()"));
  }
  static ArrayRef values(const Container& container) {
    return ArrayRef::adopt(container.call<REALarray>("Values as {V}()"));
  }
  std::vector<std::string> described_keys(const ArrayRef& array) const {
    return support::described(container_class().key, array.get());
  }
  std::vector<std::string> described_values(const ArrayRef& array) const {
    return support::described(*container_class().value, array.get());
  }
  /// Expects that an operation makes `Keys` (and `Values`) give new arrays of the new content.
  template <class Change>
  void expect_dropped_by(const Container& container, Change change) {
    const ArrayRef former = keys(container);
    ASSERT_EQ(standin::lock_count(former.get()), 2u);
    const ArrayRef former_values = container_class().is_map() ? values(container) : ArrayRef();
    change();
    EXPECT_EQ(raised(), "");
    EXPECT_EQ(standin::lock_count(former.get()), 1u) << "the container holds it still";
    if (former_values) {
      EXPECT_EQ(standin::lock_count(former_values.get()), 1u);
    }
    const ArrayRef later = keys(container);
    EXPECT_NE(later.get(), former.get());
    EXPECT_EQ(described_keys(later), container.described_keys());
    if (container_class().is_map()) {
      EXPECT_EQ(described_values(values(container)), container.described_values());
    }
  }
  template <class Read>
  void expect_kept_by(const Container& container, Read read) {
    const ArrayRef former = keys(container);
    read();
    EXPECT_EQ(standin::lock_count(former.get()), 2u);
    EXPECT_EQ(keys(container).get(), former.get());
  }
};
class MapArrayExport : public ArrayExport {};
ZRB_FOR_CLASSES(ArrayExport, support::all_classes());
ZRB_FOR_CLASSES(MapArrayExport, support::map_classes());

TEST_P(ArrayExport, an_empty_container_gives_an_empty_array) {
  const Container container = make();
  const ArrayRef array = keys(container);
  ASSERT_TRUE(array);
  EXPECT_EQ(standin::upper_bound(array.get()), -1);
  if (container_class().is_map()) {
    const ArrayRef of_values = values(container);
    ASSERT_TRUE(of_values);
    EXPECT_EQ(standin::upper_bound(of_values.get()), -1);
  }
}

TEST_P(ArrayExport, keys_are_all_keys_in_the_order_of_iteration) {
  const Container container = make_with(250);
  EXPECT_EQ(described_keys(keys(container)), container.described_keys());
}

TEST_P(MapArrayExport, values_stand_in_the_order_of_their_keys) {
  const Container map = make_with(250);
  EXPECT_EQ(described_values(values(map)), map.described_values());
  EXPECT_EQ(described_keys(keys(map)), map.described_keys());
}

TEST_P(ArrayExport, the_same_array_is_returned_until_the_content_changes) {
  const Container container = make_with(3);
  const ArrayRef one = keys(container);
  EXPECT_EQ(standin::lock_count(one.get()), 2u) << "the container's and the caller's";
  const ArrayRef other = keys(container);
  EXPECT_EQ(one.get(), other.get());
  EXPECT_EQ(standin::lock_count(one.get()), 3u);
  if (container_class().is_map()) {
    EXPECT_EQ(values(container).get(), values(container).get());
    EXPECT_NE(values(container).get(), one.get());
  }
}

TEST_P(ArrayExport, an_array_that_a_program_changes_is_changed_for_all) {
  const Container container = make_with(3);
  support::set_element(keys(container).get(), 1, key(77));
  EXPECT_EQ(described_keys(keys(container))[1], support::describe(key(77)));
  EXPECT_FALSE(container.contains(key(77)));
}

TEST_P(ArrayExport, each_element_is_locked_once_by_the_array) {
  const Element stored_key = key(1);
  const Element stored_value = value(1);
  const Container container = make();
  container.put(stored_key, stored_value);
  const LockWatch watch;
  {
    const ArrayRef array = keys(container);
    EXPECT_EQ(watch.change(stored_key), support::one_lock(stored_key));
    EXPECT_EQ(watch.change(stored_value),
              container_class().is_map() ? support::one_lock(stored_value) : 0);
  }
  container.clear();
  EXPECT_EQ(watch.change(stored_key), -support::one_lock(stored_key));
}

TEST_P(ArrayExport, changes_drop_the_arrays) {
  const Container container = make_with(20);
  expect_dropped_by(container, [&] { container.put(20); });
  expect_dropped_by(container, [&] { container.put(5); });  // present: still an assignment
  expect_dropped_by(container, [&] { container.remove(key(3)); });
  expect_dropped_by(container, [&] { container.remove(key(3)); });  // absent by now
  expect_dropped_by(container, [&] { container.remove(container.find(key(4))); });
  expect_dropped_by(container, [&] { container.remove(container.find(key(6)), container.last()); });
  expect_dropped_by(container, [&] { container.remove(container.last(), container.last()); });
  expect_dropped_by(container, [&] { container.clear(); });
}

TEST_P(ArrayExport, a_second_construction_drops_the_arrays) {
  const support::LeaksExpected former_storage;
  const Container container = make();
  const ArrayRef former = keys(container);
  container.construct();
  EXPECT_EQ(standin::lock_count(former.get()), 1u);
  EXPECT_NE(keys(container).get(), former.get());
}

TEST_P(ArrayExport, reading_keeps_the_arrays) {
  const Container container = make_with(20);
  expect_kept_by(container, [&] {
    container.contains(key(3));
    container.contains(key(30));
    container.count_key(key(3));
    container.find(key(3));
    container.count();
    container.empty();
    container.max_size();
    container.described_keys();
    container.first();
    container.last();
    if (container_class().is_map()) {
      container.value(key(3));
      container.lookup(key(30), value(1));
    }
    if (container_class().is_ordered()) {
      container.lower_bound(key(2));
      container.upper_bound(key(2));
    } else {
      container.bin_count();
    }
  });
}

TEST_P(ArrayExport, a_removal_that_does_nothing_for_lack_of_an_iterator_keeps_the_arrays) {
  const Container container = make_with(3);
  expect_kept_by(container, [&] {
    container.remove_at(nullptr);
    container.remove_range(container.first().get(), nullptr);
    container.remove(Iterator::without_position(container_class()));
  });
}

TEST_P(MapArrayExport, a_value_assigned_through_an_iterator_does_not_reach_the_arrays) {
  const Container map = make_with(1);
  const ArrayRef former = values(map);
  map.first().set_value(value(9));
  EXPECT_EQ(values(map).get(), former.get());
  EXPECT_EQ(described_values(former)[0], support::describe(value(0)));
  EXPECT_EQ(support::describe(map.value(key(0))), support::describe(value(9)));
}

TEST_P(ArrayExport, arrays_outlive_their_container) {
  ArrayRef array;
  std::vector<std::string> expected;
  {
    const Container container = make_with(10);
    array = keys(container);
    expected = container.described_keys();
  }
  EXPECT_EQ(standin::lock_count(array.get()), 1u);
  EXPECT_EQ(described_keys(array), expected);
}

TEST_P(ArrayExport, without_storage_there_is_no_array_and_no_error) {
  const Container container = Container::without_storage(container_class());
  EXPECT_FALSE(keys(container));
  if (container_class().is_map()) {
    EXPECT_FALSE(values(container));
  }
  EXPECT_EQ(raised(), "");
}

TEST_P(ArrayExport, a_host_that_makes_no_array_gets_nil) {
  const Container container = make_with(3);
  host().faults().answer_null_at("RuntimeArrayCreateSingleDimBoundedArray", 1,
                                 standin::Faults::Repeat::from_there_on);
  EXPECT_FALSE(keys(container));
  host().faults().clear();
  EXPECT_TRUE(keys(container));
}

TEST_P(MapArrayExport, a_host_that_makes_only_the_first_array_leaves_none_behind) {
  const Container map = make_with(3);
  const LockWatch watch;
  host().faults().answer_null_at("RuntimeArrayCreateSingleDimBoundedArray", 2);
  EXPECT_FALSE(keys(map));
  host().faults().clear();
  EXPECT_EQ(watch.changes(), support::LockChanges());
  EXPECT_TRUE(values(map));
}

TEST_P(ArrayExport, the_plugins_own_array_procedures_do_the_same) {
  restart_without({"RuntimeArrayDirectGetGetProc", "RuntimeArrayDirectGetSetProc"});
  const Container container = make_with(20);
  EXPECT_EQ(described_keys(keys(container)), container.described_keys());
  if (container_class().is_map()) {
    EXPECT_EQ(described_values(values(container)), container.described_values());
  }
  const Element stored_key = key(50);
  const Element stored_value = value(50);
  const Container single = make();
  single.put(stored_key, stored_value);
  const LockWatch watch;
  {
    const ArrayRef array = keys(single);
    EXPECT_EQ(watch.change(stored_key), support::one_lock(stored_key));
  }
  single.remove(single.first());
  EXPECT_EQ(watch.change(stored_key), -support::one_lock(stored_key));
}

}  // namespace
