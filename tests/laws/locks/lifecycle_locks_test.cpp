// Locks over a container's life: construction, properties, Clear and destruction.
#include "laws/locks/lock_test.h"
#include "support/leak_sanitizer.h"

namespace {

using standin::ArrayRef;
using support::expect;

class LifecycleLocks : public locks::LockTest {
 protected:
  /// The container's own locks on its content are gone.
  LockChanges released(const Single& content) const {
    LockChanges expected;
    expect(expected, content.key, -1);
    if (container_class().is_map()) expect(expected, content.value, -1);
    return expected;
  }
};
class HashedLifecycleLocks : public LifecycleLocks {};
class SetLifecycleLocks : public LifecycleLocks {};
class VariantSetLifecycleLocks : public LifecycleLocks {};
ZRB_FOR_CLASSES(LifecycleLocks, support::all_classes());
ZRB_FOR_CLASSES(HashedLifecycleLocks, support::hashed_classes());
ZRB_FOR_CLASSES(SetLifecycleLocks, support::set_classes());
ZRB_FOR_CLASSES(VariantSetLifecycleLocks,
                support::classes_where([](const support::ContainerClass& c) {
                  return c.is_set() && c.key == support::ElementType::variant;
                }));

ZRB_LOCK_TEST(LifecycleLocks, a_constructor_locks_nothing, member::constructor) {
  const Container container = Container::without_storage(container_class());
  const LockWatch watch;
  container.construct();
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(LifecycleLocks, a_second_construction_leaves_former_content_locked_for_good,
              member::constructor, member::destructor) {
  const support::LeaksExpected former_storage;
  Single content = single();
  const LockWatch watch;
  content.container.construct();
  EXPECT_EQ(watch.changes(), LockChanges());
  content.container.release();
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(LifecycleLocks, properties_lock_nothing, member::count, member::empty,
              member::max_size) {
  const Container container = make_with(10);
  const LockWatch watch;
  container.count();
  container.empty();
  container.max_size();
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(HashedLifecycleLocks, the_number_of_buckets_is_told_without_a_lock,
              member::bin_count) {
  const Container container = make_with(10);
  const LockWatch watch;
  container.bin_count();
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(LifecycleLocks, clearing_gives_back_every_lock_and_compares_nothing, member::clear) {
  const Single content = single();
  const Element other_key = key(2);
  const Element other_value = value(2);
  content.container.put(other_key, other_value);
  const LockWatch watch;
  content.container.clear();
  LockChanges expected = released(content);
  expect(expected, other_key, -1);
  if (container_class().is_map()) expect(expected, other_value, -1);
  EXPECT_EQ(watch.changes(), expected);
  content.container.clear();
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(LifecycleLocks, destruction_gives_back_every_lock_and_compares_nothing,
              member::destructor) {
  Single content = single();
  const Element other_key = key(2);
  const Element other_value = value(2);
  content.container.put(other_key, other_value);
  const LockWatch watch;
  content.container.release();
  LockChanges expected = released(content);
  expect(expected, other_key, -1);
  if (container_class().is_map()) expect(expected, other_value, -1);
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(LifecycleLocks, destruction_without_storage_changes_no_lock, member::destructor) {
  const LockWatch watch;
  { const Container container = Container::without_storage(container_class()); }
  EXPECT_EQ(watch.changes(), LockChanges());
}

// Such an instance has no arrays of its own accord; the destructor relies on nothing.
ZRB_LOCK_TEST(LifecycleLocks, destruction_without_storage_gives_up_the_arrays_alone,
              member::destructor) {
  std::vector<ArrayRef> arrays(container_class().is_map() ? 2 : 1);
  {
    const Container container = Container::without_storage(container_class());
    for (std::size_t slot = 0; slot < arrays.size(); ++slot) {
      arrays[slot] = support::host_array(ElementType::integer, {1, 2, 3});
      container.plant_array(slot, arrays[slot]);
    }
    for (const ArrayRef& array : arrays) EXPECT_EQ(standin::lock_count(array.get()), 2U);
  }
  for (const ArrayRef& array : arrays) EXPECT_EQ(standin::lock_count(array.get()), 1U);
}

ZRB_LOCK_TEST(SetLifecycleLocks, a_set_made_from_an_array_locks_each_key_once, member::from_array) {
  const Element stored_key = key(1);
  const ArrayRef array = support::host_array(container_class().key, {stored_key});
  const Container set = Container::without_storage(container_class());
  const LockWatch watch;
  set.call<void>(member::from_array, array.get());
  LockChanges expected;
  expect(expected, stored_key, 1);
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(SetLifecycleLocks, an_equal_key_of_the_array_is_compared_and_not_locked,
              member::from_array) {
  const Element stored_key = key(1);
  const Element equal_key = key(1);
  const ArrayRef array = support::host_array(container_class().key, {stored_key, equal_key});
  const Container set = Container::without_storage(container_class());
  const LockWatch watch;
  set.call<void>(member::from_array, array.get());
  LockChanges expected;
  expect(expected, stored_key, 1);
  add_comparisons(expected, stored_key, equal_key, comparisons_of_equals());
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(SetLifecycleLocks, a_nil_array_changes_no_lock, member::from_array) {
  const Container set = Container::without_storage(container_class());
  const LockWatch watch;
  set.call<void>(member::from_array, REALarray{nullptr});
  EXPECT_EQ(raised(), "NilObjectException: values array is nil");
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(VariantSetLifecycleLocks, a_string_of_an_array_is_held_by_a_variant_of_the_set,
              member::from_strings) {
  const Element text = support::string("text");
  const ArrayRef array = support::host_array(ElementType::string, {text});
  const Container set = Container::without_storage(container_class());
  const LockWatch watch;
  set.call<void>(member::from_strings, array.get());
  LockChanges changes = watch.changes();
  const Element variant = set.first().key();
  EXPECT_EQ(changes, (LockChanges{{support::handle(text), 1}, {support::handle(variant), 1}}));
}

ZRB_LOCK_TEST(VariantSetLifecycleLocks, the_variant_of_an_equal_string_has_the_locks_of_comparisons,
              member::from_strings) {
  const Element text = support::string("text");
  const Element equal_text = support::string("text");
  const ArrayRef array = support::host_array(ElementType::string, {text, equal_text});
  const Container set = Container::without_storage(container_class());
  const LockWatch watch;
  set.call<void>(member::from_strings, array.get());
  LockChanges changes = watch.changes();
  const Element stored = set.first().key();
  EXPECT_EQ(changes[support::handle(text)], 1);
  EXPECT_EQ(changes[support::handle(stored)], 1 + comparisons_of_equals());
  // The other variant is not stored, and lives on by its comparison, with its string.
  EXPECT_EQ(changes[support::handle(equal_text)], 1);
  for (const void* seen :
       {support::handle(text), support::handle(stored), support::handle(equal_text)}) {
    changes.erase(seen);
  }
  ASSERT_EQ(changes.size(), 1U);
  EXPECT_EQ(changes.begin()->second, comparisons_of_equals());
}

ZRB_LOCK_TEST(VariantSetLifecycleLocks, a_nil_array_of_strings_changes_no_lock,
              member::from_strings) {
  const Container set = Container::without_storage(container_class());
  const LockWatch watch;
  set.call<void>(member::from_strings, REALarray{nullptr});
  EXPECT_EQ(raised(), "NilObjectException: values array is nil");
  EXPECT_EQ(watch.changes(), LockChanges());
}

}  // namespace
