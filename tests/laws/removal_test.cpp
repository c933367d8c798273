// Removing elements: by iterator, by a range of iterators, and by key.
#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;
using support::Iterator;

class Removal : public support::ClassTest {};
ZRB_FOR_CLASSES(Removal, support::all_classes());

TEST_P(Removal, by_iterator_removes_that_element_alone) {
  const Container container = make_with(30);
  std::vector<std::string> expected = container.described_keys();
  container.remove(container.nth(11));
  expected.erase(expected.begin() + 11);
  EXPECT_EQ(container.described_keys(), expected);
  EXPECT_EQ(container.count(), 29);
}

TEST_P(Removal, by_iterator_works_for_each_position) {
  for (int position = 0; position < 12; ++position) {
    const Container container = make_with(12);
    std::vector<std::string> expected = container.described_keys();
    container.remove(container.nth(position));
    expected.erase(expected.begin() + position);
    EXPECT_EQ(container.described_keys(), expected) << position;
  }
}

TEST_P(Removal, a_found_element_can_be_removed) {
  const Container container = make_with(300);
  for (int i = 0; i < 300; i += 2) container.remove(container.find(key(i)));
  EXPECT_EQ(container.count(), 150);
  for (int i = 0; i < 300; ++i) EXPECT_EQ(container.contains(key(i)), i % 2 == 1) << i;
}

TEST_P(Removal, by_iterator_releases_the_locks_of_key_and_value) {
  const Element stored_key = key(1);
  const Element stored_value = value(1);
  const Container container = make();
  container.put(stored_key, stored_value);
  container.remove(container.first());
  EXPECT_EQ(support::locks(stored_key), support::one_lock(stored_key));
  EXPECT_EQ(support::locks(stored_value), support::one_lock(stored_value));
}

TEST_P(Removal, through_nil_is_a_silent_no_op) {
  const Container container = make_with(3);
  container.remove_at(nullptr);
  container.remove_range(nullptr, nullptr);
  container.remove_range(container.first().get(), nullptr);
  container.remove_range(nullptr, container.last().get());
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(container.count(), 3);
}

TEST_P(Removal, through_an_iterator_without_position_is_a_silent_no_op) {
  const Container container = make_with(3);
  const Iterator unplaced = Iterator::without_position(container_class());
  container.remove(unplaced);
  container.remove(unplaced, unplaced);
  container.remove(container.first(), unplaced);
  container.remove(unplaced, container.last());
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(container.count(), 3);
}

TEST_P(Removal, of_the_whole_range_empties_the_container) {
  const Container container = make_with(400);
  container.remove(container.first(), container.last());
  EXPECT_EQ(container.count(), 0);
  EXPECT_TRUE(container.first().is_equal(container.last()));
  container.put(1);
  EXPECT_EQ(container.count(), 1);
}

TEST_P(Removal, of_an_empty_range_removes_nothing) {
  const Container container = make_with(20);
  container.remove(container.first(), container.first());
  container.remove(container.nth(7), container.nth(7));
  container.remove(container.last(), container.last());
  EXPECT_EQ(container.count(), 20);
}

// 250 elements in 389 buckets, or in a tree: ranges inside one chain, across chains, and to the
// end.
TEST_P(Removal, of_any_range_leaves_what_lies_outside_in_its_order) {
  for (const auto& [from, to] : std::vector<std::pair<int, int>>{{0, 1},
                                                                 {0, 249},
                                                                 {1, 2},
                                                                 {1, 3},
                                                                 {100, 101},
                                                                 {100, 104},
                                                                 {17, 230},
                                                                 {240, 250},
                                                                 {249, 250},
                                                                 {0, 250},
                                                                 {125, 250}}) {
    SCOPED_TRACE(std::to_string(from) + " to " + std::to_string(to));
    const Container container = make_with(250);
    std::vector<std::string> expected = container.described_keys();
    container.remove(container.nth(from), container.nth(to));
    expected.erase(expected.begin() + from, expected.begin() + to);
    EXPECT_EQ(container.described_keys(), expected);
    EXPECT_EQ(container.count(), static_cast<std::int32_t>(expected.size()));
  }
}

TEST_P(Removal, of_a_range_releases_the_locks_of_keys_and_values) {
  const Container container = make();
  std::vector<std::pair<Element, Element>> entries;
  for (int i = 0; i < 40; ++i) {
    entries.emplace_back(key(i), value(i));
    container.put(entries.back().first, entries.back().second);
  }
  std::vector<std::int64_t> locks;
  for (const auto& [stored_key, stored_value] : entries)
    locks.push_back(support::locks(stored_key));
  container.remove(container.first(), container.last());
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const auto& [stored_key, stored_value] = entries[i];
    EXPECT_EQ(support::locks(stored_key), locks[i] - support::one_lock(stored_key)) << i;
    EXPECT_EQ(support::locks(stored_value), support::one_lock(stored_value)) << i;
  }
}

TEST_P(Removal, by_key_returns_1_then_0) {
  const Container container = make_with(10);
  EXPECT_EQ(container.remove(key(4)), 1);
  EXPECT_EQ(container.count_key(key(4)), 0);
  EXPECT_EQ(container.remove(key(4)), 0);
  EXPECT_EQ(container.count(), 9);
}

TEST_P(Removal, by_an_absent_key_returns_0_and_changes_nothing) {
  const Container container = make_with(10);
  EXPECT_EQ(container.remove(key(10)), 0);
  EXPECT_EQ(container.count(), 10);
  const Container empty = make();
  EXPECT_EQ(empty.remove(key(0)), 0);
}

TEST_P(Removal, by_key_keeps_the_order_of_the_rest) {
  const Container container = make_with(250);
  std::vector<std::string> expected = container.described_keys();
  for (int i = 0; i < 250; i += 3) {
    EXPECT_EQ(container.remove(key(i)), 1);
    std::erase(expected, support::describe(key(i)));
  }
  EXPECT_EQ(container.described_keys(), expected);
}

TEST_P(Removal, a_removed_key_can_be_inserted_again) {
  const Container container = make_with(10);
  container.remove(key(3));
  EXPECT_FALSE(container.contains(key(3)));
  container.put(3);
  EXPECT_TRUE(container.contains(key(3)));
  EXPECT_EQ(container.count(), 10);
}

}  // namespace
