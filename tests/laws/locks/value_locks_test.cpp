// Locks of a map's values: read, assigned, looked up, by key and through an iterator.
#include "laws/locks/lock_test.h"

namespace {

using support::expect;

class ValueLocks : public locks::LockTest {
 protected:
  Element nothing() const { return support::neutral(*container_class().value); }
};
ZRB_FOR_CLASSES(ValueLocks, support::map_classes());

ZRB_LOCK_TEST(ValueLocks, a_value_read_has_one_lock_for_the_caller, member::value) {
  const auto [map, stored_key, stored_value] = single();
  const Element equal_key = key(1);
  LockChanges expected;
  add_comparisons(expected, equal_key, stored_key, comparisons_of_equals());
  const LockWatch watch;
  {
    const Element read = map.value(equal_key);
    LockChanges while_held = expected;
    expect(while_held, stored_value, 1);
    EXPECT_EQ(watch.changes(), while_held);
  }
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(ValueLocks, a_value_looked_up_has_one_lock_and_the_default_none, member::map_lookup) {
  const auto [map, stored_key, stored_value] = single();
  const Element equal_key = key(1);
  const Element default_value = value(2);
  LockChanges expected;
  add_comparisons(expected, equal_key, stored_key, comparisons_of_equals());
  const LockWatch watch;
  {
    const Element read = map.lookup(equal_key, default_value);
    LockChanges while_held = expected;
    expect(while_held, stored_value, 1);
    EXPECT_EQ(watch.changes(), while_held);
  }
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(ValueLocks, a_default_returned_has_one_lock_for_the_caller, member::map_lookup) {
  const Container map = make();
  const Element sought = key(1);
  const Element default_value = value(2);
  const LockWatch watch;
  {
    const Element read = map.lookup(sought, default_value);
    LockChanges while_held;
    expect(while_held, default_value, 1);
    EXPECT_EQ(watch.changes(), while_held);
  }
  EXPECT_EQ(watch.changes(), LockChanges());
  map.lookup(sought, nothing());
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(ValueLocks, a_read_that_raises_leaves_no_lock, member::value) {
  const Container map = make();
  const Element sought = key(1);
  const LockWatch watch;
  map.value(sought);
  EXPECT_EQ(raised(), "KeyNotFoundException: ");
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(ValueLocks, replacing_a_value_moves_the_maps_lock, member::set_value) {
  const auto [map, stored_key, former] = single();
  const Element equal_key = key(1);
  const Element later = value(2);
  LockChanges comparisons;
  add_comparisons(comparisons, equal_key, stored_key, comparisons_of_equals());
  {
    const LockWatch watch;
    map.assign_value(equal_key, later);
    LockChanges expected = comparisons;
    expect(expected, former, -1);
    expect(expected, later, 1);
    EXPECT_EQ(watch.changes(), expected);
  }
  {
    const LockWatch watch;
    map.assign_value(equal_key, later);  // the same again
    EXPECT_EQ(watch.changes(), comparisons);
  }
  {
    const LockWatch watch;
    map.assign_value(equal_key, nothing());
    LockChanges expected = comparisons;
    expect(expected, later, -1);
    EXPECT_EQ(watch.changes(), expected);
  }
  {
    const LockWatch watch;
    map.value(equal_key);  // nothing, which has no locks
    EXPECT_EQ(watch.changes(), comparisons);
    map.assign_value(equal_key, later);
    LockChanges expected;
    add_comparisons(expected, equal_key, stored_key, 2 * comparisons_of_equals());
    expect(expected, later, 1);
    EXPECT_EQ(watch.changes(), expected);
  }
}

ZRB_LOCK_TEST(ValueLocks, a_former_value_that_only_the_map_held_dies, member::set_value,
              member::iterator_set_value) {
  const Container map = make();
  const Element stored_key = key(1);
  map.assign_value(stored_key, value(1));
  const Iterator at = map.first();
  const std::size_t counted = support::one_lock(value(1)) == 1 ? 1 : 0;
  const auto live = host().ledger().live_count();
  at.set_value(nothing());
  EXPECT_EQ(host().ledger().live_count(), live - counted);
  map.assign_value(stored_key, value(2));
  EXPECT_EQ(host().ledger().live_count(), live);
  map.assign_value(stored_key, nothing());
  EXPECT_EQ(host().ledger().live_count(), live - counted);
}

ZRB_LOCK_TEST(ValueLocks, an_iterator_reads_a_value_with_one_lock_for_the_caller,
              member::iterator_value) {
  const auto [map, stored_key, stored_value] = single();
  const Iterator at = map.first();
  const LockWatch watch;
  {
    const Element read = at.value();
    EXPECT_EQ(support::handle(read), support::handle(stored_value));
    LockChanges while_held;
    expect(while_held, stored_value, 1);
    EXPECT_EQ(watch.changes(), while_held);
  }
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(ValueLocks, at_the_end_there_is_no_value_to_lock, member::iterator_value) {
  const auto [map, stored_key, stored_value] = single();
  const Iterator last = map.last();
  const LockWatch watch;
  last.value();
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(ValueLocks, an_iterator_replaces_a_value_without_a_look_at_the_key,
              member::iterator_set_value, member::iterator_value) {
  const auto [map, stored_key, former] = single();
  const Element later = value(2);
  const Iterator at = map.first();
  const LockWatch watch;
  LockChanges expected;
  at.set_value(former);  // the same again
  EXPECT_EQ(watch.changes(), expected);
  at.set_value(later);
  expect(expected, former, -1);
  expect(expected, later, 1);
  EXPECT_EQ(watch.changes(), expected);
  at.set_value(nothing());
  at.value();
  expect(expected, later, -1);
  EXPECT_EQ(watch.changes(), expected);
}

}  // namespace
