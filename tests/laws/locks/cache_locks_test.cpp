// Locks of the arrays that a container keeps: every change of content gives them up, and with them
// the locks that they hold on the elements; nothing else does.
#include "laws/locks/lock_test.h"
#include "support/leak_sanitizer.h"

namespace {

using standin::ArrayRef;
using support::expect;

class CacheLocks : public locks::LockTest {
 protected:
  void SetUp() override {
    LockTest::SetUp();
    start_over();
  }
  void TearDown() override {
    content_.container.release();
    content_ = {Container::without_storage(container_class()), {}, {}};
    content_.container.release();
    LockTest::TearDown();
  }

  /// A container with one entry and its arrays, which it alone holds.
  void start_over() {
    content_ = single();
    ArrayRef::adopt(content_.container.call<REALarray>(member::keys));
    ASSERT_EQ(array_count(), container_class().is_map() ? 2 : 1);
  }
  int array_count() {
    int result = 0;
    for (const standin::HandleReport& report : host().ledger().live()) {
      if (report.kind == standin::HandleKind::array) ++result;
    }
    return result;
  }
  /// What a change gives up with the arrays, to be added to the changes that it makes otherwise.
  LockChanges arrays_given_up() const {
    LockChanges expected;
    expect_entry(expected, -1);
    return expected;
  }
  void expect_entry(LockChanges& expected, std::int64_t change) const {
    expect(expected, content_.key, change);
    if (container_class().is_map()) expect(expected, content_.value, change);
  }

  Single content_{make(), {}, {}};
};
class SetCacheLocks : public CacheLocks {};
class MapCacheLocks : public CacheLocks {};
class OrderedCacheLocks : public CacheLocks {};
class HashedCacheLocks : public CacheLocks {};
ZRB_FOR_CLASSES(CacheLocks, support::all_classes());
ZRB_FOR_CLASSES(SetCacheLocks, support::set_classes());
ZRB_FOR_CLASSES(MapCacheLocks, support::map_classes());
ZRB_FOR_CLASSES(OrderedCacheLocks, support::ordered_classes());
ZRB_FOR_CLASSES(HashedCacheLocks, support::hashed_classes());

ZRB_LOCK_TEST(CacheLocks, a_new_key_gives_the_arrays_up, member::insert, member::set_value) {
  const Element new_key = key(0);
  const Element new_value = value(0);
  const LockWatch watch;
  content_.container.put(new_key, new_value);
  LockChanges expected = arrays_given_up();
  expect(expected, new_key, 1);
  if (container_class().is_map()) expect(expected, new_value, 1);
  // Below the only key: one comparison of order; in another bucket: none of equality.
  if (container_class().is_ordered()) add_comparisons(expected, new_key, content_.key);
  EXPECT_EQ(watch.changes(), expected);
  EXPECT_EQ(array_count(), 0);
}

ZRB_LOCK_TEST(CacheLocks, an_equal_key_gives_the_arrays_up, member::insert, member::set_value) {
  const Element equal_key = key(1);
  const LockWatch watch;
  content_.container.put(equal_key, content_.value);
  LockChanges expected = arrays_given_up();
  add_comparisons(expected, equal_key, content_.key, comparisons_of_equals());
  EXPECT_EQ(watch.changes(), expected);
  EXPECT_EQ(array_count(), 0);
}

ZRB_LOCK_TEST(CacheLocks, removing_a_key_gives_the_arrays_up, member::remove_key) {
  const Element equal_key = key(1);
  const LockWatch watch;
  content_.container.remove(equal_key);
  LockChanges expected = arrays_given_up();
  expect_entry(expected, -1);
  add_comparisons(expected, equal_key, content_.key, comparisons_of_equals());
  EXPECT_EQ(watch.changes(), expected);
  EXPECT_EQ(array_count(), 0);
}

ZRB_LOCK_TEST(CacheLocks, removing_an_absent_key_gives_the_arrays_up, member::remove_key) {
  const Element sought = key(0);
  const LockWatch watch;
  content_.container.remove(sought);
  LockChanges expected = arrays_given_up();
  const int comparisons = static_cast<int>(watch.change(sought));
  if (container_class().is_hashed()) {
    EXPECT_EQ(comparisons, 0);
  }
  add_comparisons(expected, sought, content_.key, comparisons);
  EXPECT_EQ(watch.changes(), expected);
  EXPECT_EQ(array_count(), 0);
}

ZRB_LOCK_TEST(CacheLocks, removing_by_iterators_gives_the_arrays_up, member::remove_at,
              member::remove_range) {
  const LockWatch watch;
  content_.container.remove(content_.container.last(), content_.container.last());
  LockChanges expected = arrays_given_up();
  EXPECT_EQ(watch.changes(), expected) << "an empty range";
  EXPECT_EQ(array_count(), 0);

  start_over();
  const LockWatch second;
  content_.container.remove(content_.container.first());
  expected = arrays_given_up();
  expect_entry(expected, -1);
  EXPECT_EQ(second.changes(), expected);
  EXPECT_EQ(array_count(), 0);

  start_over();
  const LockWatch third;
  content_.container.remove(content_.container.first(), content_.container.last());
  expected = arrays_given_up();
  expect_entry(expected, -1);
  EXPECT_EQ(third.changes(), expected);
  EXPECT_EQ(array_count(), 0);
}

ZRB_LOCK_TEST(CacheLocks, clearing_and_destruction_give_the_arrays_up, member::clear,
              member::destructor) {
  const LockWatch watch;
  content_.container.clear();
  LockChanges expected = arrays_given_up();
  expect_entry(expected, -1);
  EXPECT_EQ(watch.changes(), expected);
  EXPECT_EQ(array_count(), 0);

  start_over();
  const LockWatch second;
  const void* const instance = content_.container.get();
  content_.container.release();
  expected = arrays_given_up();
  expect_entry(expected, -1);
  EXPECT_FALSE(second.changes().contains(instance));
  EXPECT_EQ(second.changes(), expected);
  EXPECT_EQ(array_count(), 0);
}

ZRB_LOCK_TEST(CacheLocks, a_second_construction_gives_up_the_arrays_alone, member::constructor) {
  const support::LeaksExpected former_storage;
  start_over();
  const LockWatch watch;
  content_.container.construct();
  EXPECT_EQ(watch.changes(), arrays_given_up());
  EXPECT_EQ(array_count(), 0);
}

ZRB_LOCK_TEST(SetCacheLocks, construction_from_an_array_gives_up_the_arrays_alone,
              member::from_array) {
  const support::LeaksExpected former_storage;
  start_over();
  const ArrayRef nothing = support::host_array(container_class().key, {});
  const LockWatch watch;
  content_.container.call<void>(member::from_array, nothing.get());
  EXPECT_EQ(watch.changes(), arrays_given_up());
  EXPECT_EQ(array_count(), 1) << "the argument";
}

ZRB_LOCK_TEST(MapCacheLocks, construction_from_a_map_gives_the_arrays_up, member::from_map) {
  const Container other = make();
  const LockWatch watch;
  content_.container.call<void>(member::from_map, other.get());
  LockChanges expected = arrays_given_up();
  expect_entry(expected, -1);
  EXPECT_EQ(watch.changes(), expected);
  EXPECT_EQ(array_count(), 0);
}

ZRB_LOCK_TEST(MapCacheLocks, construction_from_a_dictionary_gives_the_arrays_up,
              member::from_dictionary, member::convert_from_dictionary) {
  for (const char* declaration : {member::from_dictionary, member::convert_from_dictionary}) {
    start_over();
    const LockWatch watch;
    content_.container.call<void>(declaration, REALobject{nullptr});
    LockChanges expected = arrays_given_up();
    expect_entry(expected, -1);
    EXPECT_EQ(watch.changes(), expected);
    EXPECT_EQ(array_count(), 0);
  }
}

ZRB_LOCK_TEST(MapCacheLocks, conversion_to_a_dictionary_gives_up_the_arrays_alone,
              member::clone_dictionary, member::convert_to_dictionary) {
  const support::LeaksExpected former_storage;
  for (const char* declaration : {member::clone_dictionary, member::convert_to_dictionary}) {
    start_over();
    const LockWatch watch;
    standin::ObjectRef::adopt(content_.container.call<REALobject>(declaration));
    EXPECT_EQ(watch.changes(), arrays_given_up());
    EXPECT_EQ(array_count(), 0);
  }
}

ZRB_LOCK_TEST(CacheLocks, reading_keeps_the_arrays_with_their_locks, member::first, member::last,
              member::count, member::empty, member::max_size, member::iterator_key,
              member::move_next) {
  const LockWatch watch;
  content_.container.count();
  content_.container.empty();
  content_.container.max_size();
  content_.container.described_keys();
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(CacheLocks, searching_keeps_the_arrays_with_their_locks, member::set_lookup,
              member::has_key, member::count_key, member::find, member::value, member::map_lookup) {
  const Element equal_key = key(1);
  for (const Search& search : searches()) {
    const LockWatch watch;
    search.run(content_.container, equal_key);
    LockChanges expected;
    add_comparisons(expected, equal_key, content_.key, comparisons_of_equals());
    EXPECT_EQ(watch.changes(), expected) << search.name;
  }
}

ZRB_LOCK_TEST(HashedCacheLocks, the_number_of_buckets_keeps_the_arrays, member::bin_count) {
  const LockWatch watch;
  content_.container.bin_count();
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(OrderedCacheLocks, bounds_keep_the_arrays_with_their_locks, member::lower_bound,
              member::upper_bound) {
  const Element sought = key(1);
  const LockWatch watch;
  content_.container.lower_bound(sought);
  content_.container.upper_bound(sought);
  LockChanges expected;
  add_comparisons(expected, sought, content_.key, 2);
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(MapCacheLocks, cloning_and_adding_keep_the_arrays_with_their_locks, member::clone,
              member::add_keys, member::add_values) {
  const ArrayRef of_keys = support::host_array(container_class().key, {});
  const ArrayRef of_values = support::host_array(*container_class().value, {});
  const LockWatch watch;
  {
    const Container clone =
        Container::adopt(container_class(), content_.container.call<REALobject>(member::clone));
    LockChanges while_held{{clone.get(), 1}};
    expect_entry(while_held, 1);
    EXPECT_EQ(watch.changes(), while_held);
  }
  content_.container.call<void>(member::add_keys, of_keys.get());
  content_.container.call<void>(member::add_values, of_values.get());
  LockChanges expected;
  expect_entry(expected, 1);
  EXPECT_EQ(watch.changes(), expected);
}

}  // namespace
