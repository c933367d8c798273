// The life of a container: a new one, one cleared, one destroyed.
#include "support/leak_sanitizer.h"
#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;

class Lifecycle : public support::ClassTest {};
ZRB_FOR_CLASSES(Lifecycle, support::all_classes());

TEST_P(Lifecycle, a_new_container_is_empty) {
  const Container container = make();
  EXPECT_EQ(container.count(), 0);
  EXPECT_TRUE(container.empty());
}

TEST_P(Lifecycle, the_constructor_gives_an_instance_its_storage) {
  const Container container = Container::without_storage(container_class());
  EXPECT_EQ(container.first_word(), nullptr);
  container.construct();
  EXPECT_NE(container.first_word(), nullptr);
}

TEST_P(Lifecycle, count_follows_insertions_and_removals) {
  const Container container = make();
  for (int i = 0; i < 20; ++i) {
    container.put(i);
    EXPECT_EQ(container.count(), i + 1);
    EXPECT_FALSE(container.empty());
  }
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(container.remove(key(i)), 1);
    EXPECT_EQ(container.count(), 19 - i);
  }
  EXPECT_TRUE(container.empty());
}

TEST_P(Lifecycle, max_size_is_a_fixed_number_of_the_storage_kind) {
  const bool ordered_map = container_class().is_ordered() && container_class().is_map();
  const std::int32_t expected =
      container_class().is_hashed() ? -1 : (ordered_map ? 536870911 : 1073741823);
  const Container container = make();
  EXPECT_EQ(container.max_size(), expected);
  container.put_all(0, 50);
  EXPECT_EQ(container.max_size(), expected);
}

TEST_P(Lifecycle, clearing_removes_every_element) {
  const Container container = make_with(100);
  container.clear();
  EXPECT_EQ(container.count(), 0);
  EXPECT_TRUE(container.empty());
  EXPECT_TRUE(container.first().is_equal(container.last()));
  EXPECT_FALSE(container.contains(key(5)));
}

TEST_P(Lifecycle, a_cleared_container_takes_elements_again) {
  const Container container = make_with(100);
  container.clear();
  container.put_all(50, 100);
  EXPECT_EQ(container.count(), 100);
  EXPECT_TRUE(container.contains(key(149)));
  EXPECT_FALSE(container.contains(key(49)));
}

TEST_P(Lifecycle, clearing_an_empty_container_changes_nothing) {
  const Container container = make();
  container.clear();
  container.clear();
  EXPECT_EQ(container.count(), 0);
}

TEST_P(Lifecycle, clearing_releases_the_locks_of_keys_and_values) {
  const Element stored_key = key(1);
  const Element stored_value = value(1);
  const Container container = make();
  container.put(stored_key, stored_value);
  EXPECT_EQ(support::locks(stored_key), 2 * support::one_lock(stored_key));
  container.clear();
  EXPECT_EQ(support::locks(stored_key), support::one_lock(stored_key));
  EXPECT_EQ(support::locks(stored_value), support::one_lock(stored_value));
}

TEST_P(Lifecycle, destroying_releases_the_locks_of_keys_and_values) {
  const Element stored_key = key(1);
  const Element stored_value = value(1);
  {
    const Container container = make();
    container.put(stored_key, stored_value);
    EXPECT_EQ(support::locks(stored_key), 2 * support::one_lock(stored_key));
  }
  EXPECT_EQ(support::locks(stored_key), support::one_lock(stored_key));
  EXPECT_EQ(support::locks(stored_value), support::one_lock(stored_value));
}

TEST_P(Lifecycle, destroying_an_instance_without_storage_does_nothing) {
  const auto before = host().ledger().snapshot();
  { const Container container = Container::without_storage(container_class()); }
  EXPECT_TRUE(host().ledger().held_since(before).empty());
}

TEST_P(Lifecycle, constructing_twice_leaves_the_former_storage_unreleased) {
  const support::LeaksExpected former_storage;
  const Element stored_key = key(1);
  const Element stored_value = value(1);
  {
    const Container container = make();
    container.put(stored_key, stored_value);
    container.construct();
    EXPECT_EQ(container.count(), 0);
    container.put(5);
    EXPECT_EQ(container.count(), 1);
  }
  EXPECT_EQ(support::locks(stored_key), 2 * support::one_lock(stored_key));
  if (container_class().is_map()) {
    EXPECT_EQ(support::locks(stored_value), 2 * support::one_lock(stored_value));
  }
}

TEST_P(Lifecycle, instances_do_not_share_their_content) {
  const Container one = make_with(3);
  const Container other = make_with(7);
  one.clear();
  EXPECT_EQ(one.count(), 0);
  EXPECT_EQ(other.count(), 7);
}

class HashedLifecycle : public support::ClassTest {};
ZRB_FOR_CLASSES(HashedLifecycle, support::hashed_classes());

TEST_P(HashedLifecycle, a_new_hashed_container_has_193_buckets) {
  EXPECT_EQ(make().bin_count(), 193);
}

TEST_P(HashedLifecycle, the_194th_element_makes_389_buckets_and_the_390th_makes_769) {
  const Container container = make_with(193);
  EXPECT_EQ(container.bin_count(), 193);
  container.put(193);
  EXPECT_EQ(container.bin_count(), 389);
  container.put_all(194, 195);
  EXPECT_EQ(container.count(), 389);
  EXPECT_EQ(container.bin_count(), 389);
  container.put(389);
  EXPECT_EQ(container.bin_count(), 769);
}

TEST_P(HashedLifecycle, removing_elements_keeps_the_buckets) {
  const Container container = make_with(194);
  for (int i = 0; i < 194; ++i) EXPECT_EQ(container.remove(key(i)), 1);
  EXPECT_EQ(container.count(), 0);
  EXPECT_EQ(container.bin_count(), 389);
}

TEST_P(HashedLifecycle, clearing_keeps_the_buckets) {
  const Container container = make_with(194);
  container.clear();
  EXPECT_EQ(container.count(), 0);
  EXPECT_EQ(container.bin_count(), 389);
}

TEST_P(HashedLifecycle, inserting_a_present_key_changes_no_count) {
  const Container container = make_with(192);
  container.put(0);
  EXPECT_EQ(container.count(), 192);
  EXPECT_EQ(container.bin_count(), 193);
}

TEST_P(HashedLifecycle, a_full_table_grows_even_for_a_key_that_is_present) {
  const Container container = make_with(193);
  container.put(0);
  EXPECT_EQ(container.count(), 193);
  EXPECT_EQ(container.bin_count(), 389);
}

}  // namespace
