// Locks of keys: what storing, seeking and removing a key takes and leaves.
//
// Each comparison of two strings or variants leaves one lock on either of them for good. How many
// there are is certain where a container holds one key or two.
#include "laws/locks/lock_test.h"

namespace {

using support::expect;

class KeyLocks : public locks::LockTest {};
class OrderedKeyLocks : public locks::LockTest {};
class ObjectKeyLocks : public locks::LockTest {};
ZRB_FOR_CLASSES(KeyLocks, support::all_classes());
ZRB_FOR_CLASSES(OrderedKeyLocks, support::ordered_classes());
ZRB_FOR_CLASSES(ObjectKeyLocks, support::classes_where([](const support::ContainerClass& c) {
                  return c.key != support::ElementType::integer;
                }));

ZRB_LOCK_TEST(KeyLocks, the_first_key_and_its_value_get_one_lock_each, member::insert,
              member::set_value) {
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

ZRB_LOCK_TEST(KeyLocks, putting_an_equal_key_stores_only_the_value, member::insert,
              member::set_value) {
  const auto [container, stored_key, former] = single();
  const Element equal_key = key(1);
  const Element later = value(2);
  const LockWatch watch;
  container.put(equal_key, later);
  LockChanges expected;
  add_comparisons(expected, equal_key, stored_key, comparisons_of_equals());
  if (container_class().is_map()) {
    expect(expected, former, -1);
    expect(expected, later, 1);
  }
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(ObjectKeyLocks, a_key_is_held_by_the_lock_that_its_comparison_leaves,
              member::count_key) {
  const auto [container, stored_key, stored_value] = single();
  const Element equal_key = key(1);
  const bool is_string = container_class().key == ElementType::string;
  host().calls().reset();
  EXPECT_EQ(container.count_key(equal_key), 1);
  const auto locks = host().calls().of(is_string ? "REALLockString" : "REALLockObject");
  EXPECT_EQ(locks, static_cast<std::uint64_t>(2 * comparisons_of_equals()));
  EXPECT_EQ(host().calls().of(is_string ? "REALUnlockString" : "REALUnlockObject"), 0U);
}

ZRB_LOCK_TEST(KeyLocks, a_key_that_only_its_container_holds_dies_with_its_removal, member::insert,
              member::set_value, member::remove_key) {
  const Container container = make();
  const LockWatch watch;
  const auto live = host().ledger().live_count();
  container.put(1);
  EXPECT_EQ(container.remove(key(1)), 1);
  if (container_class().key == ElementType::integer) {
    EXPECT_EQ(watch.changes(), LockChanges());
  } else {
    // Both keys were compared, and so outlive their last owner: each with the locks of comparisons.
    EXPECT_EQ(host().ledger().live_count(), live + 2);
    for (const auto& [handle, change] : watch.changes()) {
      EXPECT_EQ(change, comparisons_of_equals());
    }
  }
}

ZRB_LOCK_TEST(KeyLocks, each_search_for_a_present_key_leaves_what_comparisons_leave,
              member::set_lookup, member::has_key, member::count_key, member::find, member::value,
              member::map_lookup) {
  for (const Search& search : searches()) {
    SCOPED_TRACE(search.name);
    const auto [container, stored_key, stored_value] = single();
    const Element equal_key = key(1);
    const LockWatch watch;
    search.run(container, equal_key);
    LockChanges expected;
    add_comparisons(expected, equal_key, stored_key, comparisons_of_equals());
    EXPECT_EQ(watch.changes(), expected);
  }
}

ZRB_LOCK_TEST(KeyLocks, each_search_for_the_stored_key_itself_leaves_both_locks_on_it,
              member::set_lookup, member::has_key, member::count_key, member::find, member::value,
              member::map_lookup) {
  for (const Search& search : searches()) {
    SCOPED_TRACE(search.name);
    const auto [container, stored_key, stored_value] = single();
    const LockWatch watch;
    search.run(container, stored_key);
    LockChanges expected;
    add_comparisons(expected, stored_key, stored_key, comparisons_of_equals());
    EXPECT_EQ(watch.changes(), expected);
  }
}

ZRB_LOCK_TEST(KeyLocks, each_search_in_an_empty_container_leaves_nothing, member::set_lookup,
              member::has_key, member::count_key, member::find, member::value, member::map_lookup,
              member::remove_key) {
  const Container container = make();
  const Element sought = key(1);
  const LockWatch watch;
  for (const Search& search : searches()) search.run(container, sought);
  container.remove(sought);
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(KeyLocks, removing_a_key_gives_back_the_locks_of_key_and_value, member::remove_key) {
  const auto [container, stored_key, stored_value] = single();
  const Element equal_key = key(1);
  const LockWatch watch;
  EXPECT_EQ(container.remove(equal_key), 1);
  LockChanges expected;
  add_comparisons(expected, equal_key, stored_key, comparisons_of_equals());
  expect(expected, stored_key, -1);
  if (container_class().is_map()) expect(expected, stored_value, -1);
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(KeyLocks, in_larger_containers_both_sides_of_a_comparison_gain_alike,
              member::set_lookup, member::has_key, member::count_key, member::find, member::value,
              member::map_lookup) {
  const Container container = make();
  std::vector<Element> stored;
  for (int i = 0; i < 60; ++i) {
    stored.push_back(key(i));
    container.put(stored.back(), value(i));
  }
  for (const Search& search : searches()) {
    for (const int index : {0, 31, 59, 60, -1}) {
      const Element sought = key(index);
      const LockWatch watch;
      search.run(container, sought);
      LockChanges others = watch.changes();
      std::int64_t stored_gain = 0;
      for (const Element& stored_key : stored) {
        stored_gain += watch.change(stored_key);
        others.erase(support::handle(stored_key));
      }
      EXPECT_EQ(watch.change(sought), stored_gain) << search.name << " " << index;
      others.erase(support::handle(sought));
      EXPECT_EQ(others, LockChanges()) << "something else was locked";
    }
  }
}

ZRB_LOCK_TEST(OrderedKeyLocks, a_second_key_is_compared_with_the_first_once_or_twice,
              member::insert, member::set_value) {
  // Below the first key there is no other that could be equal; above it the first one could.
  for (const auto& [index, comparisons] : {std::pair{0, 1}, std::pair{2, 2}}) {
    const auto [container, stored_key, stored_value] = single();
    const Element new_key = key(index);
    const Element new_value = value(index);
    const LockWatch watch;
    container.put(new_key, new_value);
    LockChanges expected;
    add_comparisons(expected, new_key, stored_key, comparisons);
    expect(expected, new_key, 1);
    expect(expected, new_value, container_class().is_map() ? 1 : 0);
    EXPECT_EQ(watch.changes(), expected) << index;
  }
}

ZRB_LOCK_TEST(OrderedKeyLocks, a_search_for_an_absent_key_compares_it_once_or_twice_with_the_only,
              member::set_lookup, member::has_key, member::count_key, member::find, member::value,
              member::map_lookup, member::remove_key) {
  std::vector<Search> all = searches();
  all.push_back({"Remove", [](const Container& c, const Element& sought) { c.remove(sought); }});
  for (const Search& search : all) {
    for (const int index : {0, 2}) {
      SCOPED_TRACE(search.name);
      const auto [container, stored_key, stored_value] = single();
      const Element sought = key(index);
      const LockWatch watch;
      search.run(container, sought);
      const std::int64_t made = watch.change(sought);
      EXPECT_GE(made, support::one_lock(sought));
      EXPECT_LE(made, 2);
      LockChanges expected;
      add_comparisons(expected, sought, stored_key, static_cast<int>(made));
      EXPECT_EQ(watch.changes(), expected) << index;
    }
  }
}

ZRB_LOCK_TEST(OrderedKeyLocks, a_bound_in_a_container_of_one_key_compares_once, member::lower_bound,
              member::upper_bound) {
  for (const int index : {0, 1, 2}) {
    for (const bool lower : {true, false}) {
      const auto [container, stored_key, stored_value] = single();
      const Element sought = key(index);
      const LockWatch watch;
      const Iterator at = lower ? container.lower_bound(sought) : container.upper_bound(sought);
      LockChanges expected;
      add_comparisons(expected, sought, stored_key);
      expected[at.get()] = 1;
      EXPECT_EQ(watch.changes(), expected) << index;
    }
  }
}

ZRB_LOCK_TEST(OrderedKeyLocks, a_bound_in_an_empty_container_compares_nothing, member::lower_bound,
              member::upper_bound) {
  const Container container = make();
  const Element sought = key(1);
  const LockWatch watch;
  container.lower_bound(sought);
  container.upper_bound(sought);
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(ObjectKeyLocks, nil_has_no_locks_stored_sought_or_removed, member::insert,
              member::set_value, member::set_lookup, member::has_key, member::count_key,
              member::find, member::value, member::map_lookup, member::remove_key) {
  const Container container = make();
  const Element nil = support::neutral(container_class().key);
  const Element stored_value = value(1);
  const LockWatch watch;
  container.put(nil, stored_value);
  container.put(nil, stored_value);
  for (const Search& search : searches()) search.run(container, nil);
  LockChanges expected;
  if (container_class().is_map()) expect(expected, stored_value, 1);
  EXPECT_EQ(watch.changes(), expected);
  EXPECT_EQ(container.remove(nil), 1);
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(ObjectKeyLocks, a_comparison_with_nil_leaves_a_lock_on_the_other_side_alone,
              member::set_lookup, member::has_key) {
  const Container container = make();
  container.put(support::neutral(container_class().key), value(1));
  // The empty text belongs into the bucket of nil; of strings it equals nil.
  const bool strings = container_class().key == ElementType::string;
  const Element empty_text = strings ? support::string("") : support::variant_string("");
  const LockWatch watch;
  EXPECT_EQ(container.contains(empty_text), strings);
  const std::int64_t made = watch.change(empty_text);
  if (container_class().is_hashed() || strings) {
    EXPECT_EQ(made, comparisons_of_equals());
  } else {
    EXPECT_GE(made, 1);
    EXPECT_LE(made, 2);
  }
  LockChanges expected;
  expect(expected, empty_text, made);
  EXPECT_EQ(watch.changes(), expected);
}

}  // namespace
