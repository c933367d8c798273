// Locks of arrays: the container's own, those handed out, those filled for the caller, and the
// elements in each.
#include "laws/locks/lock_test.h"

namespace {

using standin::ArrayRef;
using support::expect;

class ArrayLocks : public locks::LockTest {
 protected:
  static ArrayRef keys(const Container& container) {
    return ArrayRef::adopt(container.call<REALarray>(member::keys));
  }
  static ArrayRef values(const Container& map) {
    return ArrayRef::adopt(map.call<REALarray>(member::values));
  }
  static Element key_at(const Container& container, std::int32_t index) {
    return container.call_for(container.container_class().key, member::key_at, index);
  }
  static Element value_at(const Container& map, std::int32_t index) {
    return map.call_for(*map.container_class().value, member::value_at, index);
  }
  /// The arrays that came into being, whoever holds them, with all their locks.
  static std::vector<std::int64_t> locks_of_new_arrays(const LockWatch& watch) {
    std::vector<std::int64_t> result;
    const LockChanges changes = watch.changes();
    for (const standin::HandleReport& report : standin::Host::current().ledger().live()) {
      const auto changed = changes.find(report.handle);
      if (report.kind == standin::HandleKind::array && changed != changes.end()) {
        result.push_back(changed->second);
      }
    }
    return result;
  }
  std::size_t array_count() const { return container_class().is_map() ? 2 : 1; }
  /// The changes of everything but arrays.
  static LockChanges changes_of_elements(const LockWatch& watch) {
    LockChanges changes = watch.changes();
    for (const standin::HandleReport& report : standin::Host::current().ledger().live()) {
      if (report.kind == standin::HandleKind::array) changes.erase(report.handle);
    }
    return changes;
  }
  /// Each element once more, as an array of keys and one of values hold them.
  LockChanges held_by_arrays(const Single& content) const {
    LockChanges expected;
    expect(expected, content.key, 1);
    if (container_class().is_map()) expect(expected, content.value, 1);
    return expected;
  }
  void refuse_arrays() {
    host().faults().answer_null_at("RuntimeArrayCreateSingleDimBoundedArray", 1,
                                   standin::Faults::Repeat::from_there_on);
  }
};
class MapArrayLocks : public ArrayLocks {};
ZRB_FOR_CLASSES(ArrayLocks, support::all_classes());
ZRB_FOR_CLASSES(MapArrayLocks, support::map_classes());

ZRB_LOCK_TEST(ArrayLocks, keys_are_held_by_the_container_and_the_caller, member::keys) {
  const Single content = single();
  const LockWatch watch;
  const ArrayRef first = keys(content.container);
  LockChanges expected = held_by_arrays(content);
  EXPECT_EQ(changes_of_elements(watch), expected);
  EXPECT_EQ(standin::lock_count(first.get()), 2U) << "the container's and the caller's";
  EXPECT_EQ(locks_of_new_arrays(watch).size(), array_count());

  const LockWatch again;
  const ArrayRef second = keys(content.container);
  EXPECT_EQ(again.changes(), (LockChanges{{first.get(), 1}}));
}

ZRB_LOCK_TEST(MapArrayLocks, values_are_held_by_the_map_and_the_caller, member::values) {
  const Single content = single();
  const LockWatch watch;
  const ArrayRef first = values(content.container);
  EXPECT_EQ(changes_of_elements(watch), held_by_arrays(content));
  EXPECT_EQ(standin::lock_count(first.get()), 2U) << "the map's and the caller's";
  EXPECT_EQ(locks_of_new_arrays(watch).size(), 2U);

  const LockWatch again;
  const ArrayRef second = values(content.container);
  EXPECT_EQ(again.changes(), (LockChanges{{first.get(), 1}}));
}

ZRB_LOCK_TEST(ArrayLocks, a_key_by_index_has_one_lock_for_the_caller, member::key_at) {
  const Single content = single();
  const LockWatch watch;
  LockChanges expected = held_by_arrays(content);
  {
    const Element read = key_at(content.container, 0);
    LockChanges while_held = expected;
    expect(while_held, content.key, 1);
    EXPECT_EQ(changes_of_elements(watch), while_held);
  }
  EXPECT_EQ(changes_of_elements(watch), expected);
  EXPECT_EQ(locks_of_new_arrays(watch), std::vector<std::int64_t>(array_count(), 1));

  const LockWatch again;
  {
    const Element read = key_at(content.container, 0);
    LockChanges while_held;
    expect(while_held, content.key, 1);
    EXPECT_EQ(again.changes(), while_held);
  }
  key_at(content.container, 1);  // out of range
  EXPECT_TRUE(raised().starts_with("OutOfBoundsException"));
  EXPECT_EQ(again.changes(), LockChanges());
}

ZRB_LOCK_TEST(MapArrayLocks, a_value_by_index_has_one_lock_for_the_caller, member::value_at) {
  const Single content = single();
  const LockWatch watch;
  {
    const Element read = value_at(content.container, 0);
    LockChanges while_held = held_by_arrays(content);
    expect(while_held, content.value, 1);
    EXPECT_EQ(changes_of_elements(watch), while_held);
  }
  EXPECT_EQ(changes_of_elements(watch), held_by_arrays(content));
  EXPECT_EQ(locks_of_new_arrays(watch), std::vector<std::int64_t>(2, 1));

  const LockWatch again;
  value_at(content.container, 0);
  value_at(content.container, 1);  // out of range
  EXPECT_TRUE(raised().starts_with("OutOfBoundsException"));
  EXPECT_EQ(again.changes(), LockChanges());
}

ZRB_LOCK_TEST(ArrayLocks, without_arrays_nothing_stays_locked, member::keys, member::values,
              member::key_at, member::value_at) {
  const Single content = single();
  refuse_arrays();
  const LockWatch watch;
  keys(content.container);
  LockChanges while_held;
  {
    const Element read_key = key_at(content.container, 0);
    // A set needs its array; a map counts its elements out.
    if (container_class().is_map()) expect(while_held, content.key, 1);
    EXPECT_EQ(watch.changes(), while_held);
    if (container_class().is_map()) {
      values(content.container);
      const Element read_value = value_at(content.container, 0);
      expect(while_held, content.value, 1);
      EXPECT_EQ(watch.changes(), while_held);
    }
  }
  key_at(content.container, 1);
  if (container_class().is_map()) value_at(content.container, 1);
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(MapArrayLocks, one_array_without_the_other_is_given_back, member::keys) {
  const Single content = single();
  const LockWatch watch;
  host().faults().answer_null_at("RuntimeArrayCreateSingleDimBoundedArray", 2);
  EXPECT_FALSE(keys(content.container));
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(MapArrayLocks, adding_to_an_array_locks_each_element_once, member::add_keys,
              member::add_values) {
  const Single content = single();
  const ArrayRef of_keys = support::host_array(container_class().key, {key(7)});
  const ArrayRef of_values = support::host_array(*container_class().value, {value(7)});
  const LockWatch watch;
  content.container.call<void>(member::add_keys, of_keys.get());
  LockChanges expected;
  expect(expected, content.key, 1);
  EXPECT_EQ(watch.changes(), expected);
  content.container.call<void>(member::add_values, of_values.get());
  expect(expected, content.value, 1);
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(MapArrayLocks, an_array_keeps_the_value_that_an_iterator_replaced,
              member::iterator_set_value, member::values) {
  const Single content = single();
  const ArrayRef array = values(content.container);
  const Element later = value(2);
  const Iterator at = content.container.first();
  const LockWatch watch;
  at.set_value(later);
  LockChanges expected;
  expect(expected, content.value, -1);
  expect(expected, later, 1);
  EXPECT_EQ(watch.changes(), expected);
  // The map's, the array's and the program's: the first is gone.
  EXPECT_EQ(support::locks(content.value), 2 * support::one_lock(content.value));
}

ZRB_LOCK_TEST(ArrayLocks, the_plugins_own_procedures_take_the_same_locks, member::keys,
              member::values, member::key_at, member::value_at) {
  restart_without({"RuntimeArrayDirectGetGetProc", "RuntimeArrayDirectGetSetProc"});
  const Single content = single();
  const LockWatch watch;
  {
    const Element read = key_at(content.container, 0);
    LockChanges while_held = held_by_arrays(content);
    expect(while_held, content.key, 1);
    EXPECT_EQ(changes_of_elements(watch), while_held);
  }
  if (container_class().is_map()) {
    const Element read = value_at(content.container, 0);
    LockChanges while_held = held_by_arrays(content);
    expect(while_held, content.value, 1);
    EXPECT_EQ(changes_of_elements(watch), while_held);
    EXPECT_EQ(standin::lock_count(values(content.container).get()), 2U);
  }
  EXPECT_EQ(standin::lock_count(keys(content.container).get()), 2U);
  EXPECT_EQ(changes_of_elements(watch), held_by_arrays(content));
}

}  // namespace
