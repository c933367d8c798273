// Locks, counted exactly: what each operation takes and leaves on keys and values, and that it
// leaves nothing else in the host.
//
// A comparison of two strings or variants leaves one lock on each of the two for good; so the
// operations below say how many comparisons they make. A hashed container that holds one key makes
// one to meet it; an ordered one makes as many as its descent needs, which shows on the search key.
#include <algorithm>

#include "support/lock_changes.h"
#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;
using support::expect;
using support::Iterator;
using support::LockChanges;
using support::LockWatch;

class LockBalance : public support::ClassTest {
 protected:
  /// How many comparisons an operation made, told by the search key; checks what is known of them.
  std::int64_t comparisons(const LockWatch& watch, const Element& search_key) const {
    const std::int64_t made = watch.change(search_key);
    if (container_class().key == support::ElementType::integer) return 0;
    if (container_class().is_hashed()) {
      EXPECT_EQ(made, 1);
    } else {
      EXPECT_GE(made, 1);
    }
    return made;
  }

  /// The changes after an operation that compared a search key with the one stored key.
  LockChanges after_comparing(const LockWatch& watch, const Element& search_key,
                              const Element& stored_key) const {
    const std::int64_t made = comparisons(watch, search_key);
    LockChanges expected;
    expect(expected, search_key, made);
    expect(expected, stored_key, made);
    return expected;
  }
};
class MapLockBalance : public LockBalance {};
ZRB_FOR_CLASSES(LockBalance, support::all_classes());
ZRB_FOR_CLASSES(MapLockBalance, support::map_classes());

TEST_P(LockBalance, the_first_key_and_its_value_get_one_lock_each) {
  const Container container = make();
  const Element stored_key = key(1);
  const Element stored_value = value(1);
  const LockWatch watch;
  container.put(stored_key, stored_value);
  LockChanges expected;
  expect(expected, stored_key, 1);
  expect(expected, stored_value, 1);
  EXPECT_EQ(watch.changes(), expected);
}

TEST_P(LockBalance, putting_an_equal_key_stores_only_the_value) {
  const Container container = make();
  const Element stored_key = key(1);
  const Element equal_key = key(1);
  const Element former = value(1);
  const Element later = value(2);
  container.put(stored_key, former);
  const LockWatch watch;
  container.put(equal_key, later);
  LockChanges expected = after_comparing(watch, equal_key, stored_key);
  expect(expected, former, -1);
  expect(expected, later, 1);
  EXPECT_EQ(watch.changes(), expected);
}

TEST_P(LockBalance, membership_leaves_what_comparisons_leave) {
  const Container container = make();
  const Element stored_key = key(1);
  const Element equal_key = key(1);
  container.put(stored_key, value(1));
  const LockWatch watch;
  EXPECT_TRUE(container.contains(equal_key));
  EXPECT_EQ(watch.changes(), after_comparing(watch, equal_key, stored_key));
}

TEST_P(LockBalance, counting_a_key_leaves_what_comparisons_leave) {
  const Container container = make();
  const Element stored_key = key(1);
  const Element equal_key = key(1);
  container.put(stored_key, value(1));
  const LockWatch watch;
  EXPECT_EQ(container.count_key(equal_key), 1);
  EXPECT_EQ(watch.changes(), after_comparing(watch, equal_key, stored_key));
}

TEST_P(LockBalance, finding_leaves_what_comparisons_leave) {
  const Container container = make();
  const Element stored_key = key(1);
  const Element equal_key = key(1);
  container.put(stored_key, value(1));
  const LockWatch watch;
  container.find(equal_key);
  EXPECT_EQ(watch.changes(), after_comparing(watch, equal_key, stored_key));
}

TEST_P(LockBalance, removing_a_key_gives_back_the_locks_of_key_and_value) {
  const Container container = make();
  const Element stored_key = key(1);
  const Element equal_key = key(1);
  const Element stored_value = value(1);
  container.put(stored_key, stored_value);
  const LockWatch watch;
  EXPECT_EQ(container.remove(equal_key), 1);
  LockChanges expected = after_comparing(watch, equal_key, stored_key);
  expect(expected, stored_key, -1);
  expect(expected, stored_value, -1);
  EXPECT_EQ(watch.changes(), expected);
}

TEST_P(LockBalance, comparing_a_key_with_itself_leaves_both_locks_on_it) {
  const Container container = make();
  const Element stored_key = key(1);
  container.put(stored_key, value(1));
  const LockWatch watch;
  EXPECT_TRUE(container.contains(stored_key));
  const std::int64_t change = watch.change(stored_key);
  EXPECT_EQ(change % 2, 0);
  if (container_class().key == support::ElementType::integer) {
    EXPECT_EQ(change, 0);
  } else if (container_class().is_hashed()) {
    EXPECT_EQ(change, 2);
  } else {
    EXPECT_GE(change, 2);
  }
}

TEST_P(LockBalance, searching_an_empty_container_leaves_nothing) {
  const Container container = make();
  const Element sought = key(1);
  const LockWatch watch;
  container.contains(sought);
  container.count_key(sought);
  container.find(sought);
  container.remove(sought);
  EXPECT_EQ(watch.changes(), LockChanges());
}

TEST_P(LockBalance, a_key_read_through_an_iterator_has_one_lock_for_the_caller) {
  const Container container = make();
  const Element stored_key = key(1);
  container.put(stored_key, value(1));
  const Iterator at = container.first();
  const LockWatch watch;
  {
    const Element read = at.key();
    EXPECT_EQ(support::handle(read), support::handle(stored_key));
    EXPECT_EQ(watch.change(stored_key), support::one_lock(stored_key));
  }
  EXPECT_EQ(watch.changes(), LockChanges());
}

TEST_P(LockBalance, stepping_and_comparing_iterators_lock_nothing) {
  const Container container = make_with(10);
  const Iterator at = container.first();
  const Iterator last = container.last();
  const LockWatch watch;
  while (!at.is_equal(last)) at.move_next();
  EXPECT_EQ(watch.changes(), LockChanges());
}

TEST_P(LockBalance, properties_and_ends_lock_nothing) {
  const Container container = make_with(10);
  const LockWatch watch;
  container.count();
  container.empty();
  container.max_size();
  if (container_class().is_hashed()) container.bin_count();
  container.first();
  container.last();
  EXPECT_EQ(watch.changes(), LockChanges());
}

TEST_P(LockBalance, in_larger_containers_both_sides_of_a_comparison_gain_alike) {
  const Container container = make();
  std::vector<Element> stored;
  for (int i = 0; i < 60; ++i) {
    stored.push_back(key(i));
    container.put(stored.back(), value(i));
  }
  for (const int sought : {0, 31, 59, 60, -1}) {
    const Element search_key = key(sought);
    const LockWatch watch;
    EXPECT_EQ(container.contains(search_key), sought >= 0 && sought < 60);
    std::int64_t stored_gain = 0;
    for (const Element& stored_key : stored) stored_gain += watch.change(stored_key);
    EXPECT_EQ(watch.change(search_key), stored_gain) << sought;
    EXPECT_EQ(watch.changes().size(),
              static_cast<std::size_t>(stored_gain > 0) +
                  static_cast<std::size_t>(std::count_if(
                      stored.begin(), stored.end(),
                      [&](const Element& stored_key) { return watch.change(stored_key) > 0; })))
        << "something else was locked";
  }
}

TEST_P(MapLockBalance, a_value_read_has_one_lock_for_the_caller) {
  const Container map = make();
  const Element stored_key = key(1);
  const Element equal_key = key(1);
  const Element stored_value = value(1);
  map.assign_value(stored_key, stored_value);
  const LockWatch watch;
  {
    const Element read = map.value(equal_key);
    EXPECT_EQ(watch.change(stored_value), support::one_lock(stored_value));
  }
  EXPECT_EQ(watch.changes(), after_comparing(watch, equal_key, stored_key));
}

TEST_P(MapLockBalance, a_value_looked_up_has_one_lock_for_the_caller) {
  const Container map = make();
  const Element stored_key = key(1);
  const Element equal_key = key(1);
  const Element stored_value = value(1);
  const Element default_value = value(2);
  map.assign_value(stored_key, stored_value);
  const LockWatch watch;
  {
    const Element read = map.lookup(equal_key, default_value);
    EXPECT_EQ(watch.change(stored_value), support::one_lock(stored_value));
    EXPECT_EQ(watch.change(default_value), 0);
  }
  EXPECT_EQ(watch.changes(), after_comparing(watch, equal_key, stored_key));
}

TEST_P(MapLockBalance, a_read_that_raises_leaves_no_lock) {
  const Container map = make();
  const Element sought = key(1);
  const LockWatch watch;
  map.value(sought);
  EXPECT_EQ(raised(), "KeyNotFoundException: ");
  EXPECT_EQ(watch.changes(), LockChanges());
}

TEST_P(MapLockBalance, a_value_through_an_iterator_is_read_and_replaced_with_one_lock_each) {
  const Container map = make();
  const Element former = value(1);
  const Element later = value(2);
  map.assign_value(key(1), former);
  const Iterator at = map.first();
  const LockWatch watch;
  {
    const Element read = at.value();
    EXPECT_EQ(watch.change(former), support::one_lock(former));
  }
  at.set_value(later);
  LockChanges expected;
  expect(expected, former, -1);
  expect(expected, later, 1);
  EXPECT_EQ(watch.changes(), expected);
}

}  // namespace
