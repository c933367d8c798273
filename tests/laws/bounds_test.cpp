// LowerBound and UpperBound of ordered containers, and ranges made with them.
#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;
using support::Iterator;

class Bounds : public support::ClassTest {
 protected:
  /// The keys 0, 10, 20 ... 190.
  Container tens() const {
    const Container container = make();
    for (int i = 0; i < 20; ++i) container.put(10 * i);
    return container;
  }
  void expect_at(const Container& container, const Iterator& at, int index) const {
    ASSERT_TRUE(at);
    ASSERT_FALSE(at.is_equal(container.last())) << "at the end instead of at " << index;
    EXPECT_EQ(support::describe(at.key()), support::describe(key(index)));
  }
};
ZRB_FOR_CLASSES(Bounds, support::ordered_classes());

TEST_P(Bounds, the_lower_bound_of_a_present_key_is_that_key) {
  const Container container = tens();
  for (int i = 0; i < 20; ++i) expect_at(container, container.lower_bound(key(10 * i)), 10 * i);
}

TEST_P(Bounds, the_upper_bound_of_a_present_key_is_the_next_key) {
  const Container container = tens();
  for (int i = 0; i < 19; ++i) {
    expect_at(container, container.upper_bound(key(10 * i)), 10 * i + 10);
  }
}

TEST_P(Bounds, both_bounds_of_an_absent_key_are_the_next_key) {
  const Container container = tens();
  for (int i = 0; i < 20; ++i) {
    expect_at(container, container.lower_bound(key(10 * i - 1)), 10 * i);
    expect_at(container, container.upper_bound(key(10 * i - 1)), 10 * i);
  }
}

TEST_P(Bounds, beyond_the_greatest_key_both_are_last) {
  const Container container = tens();
  EXPECT_TRUE(container.lower_bound(key(191)).is_equal(container.last()));
  EXPECT_TRUE(container.upper_bound(key(190)).is_equal(container.last()));
  EXPECT_TRUE(container.upper_bound(key(191)).is_equal(container.last()));
}

TEST_P(Bounds, below_the_smallest_key_both_are_first) {
  const Container container = tens();
  EXPECT_TRUE(container.lower_bound(key(-5)).is_equal(container.first()));
  EXPECT_TRUE(container.upper_bound(key(-5)).is_equal(container.first()));
}

TEST_P(Bounds, in_an_empty_container_both_are_last) {
  const Container container = make();
  EXPECT_TRUE(container.lower_bound(key(1)).is_equal(container.last()));
  EXPECT_TRUE(container.upper_bound(key(1)).is_equal(container.last()));
}

TEST_P(Bounds, from_lower_to_upper_bound_lie_the_keys_between) {
  const Container container = tens();
  const Iterator end = container.upper_bound(key(130));
  std::vector<std::string> found;
  for (const Iterator at = container.lower_bound(key(95)); !at.is_equal(end); at.move_next()) {
    found.push_back(support::describe(at.key()));
  }
  std::vector<std::string> expected;
  for (const int index : {100, 110, 120, 130}) expected.push_back(support::describe(key(index)));
  EXPECT_EQ(found, expected);
}

TEST_P(Bounds, a_range_of_bounds_can_be_removed) {
  const Container container = tens();
  container.remove(container.lower_bound(key(50)), container.upper_bound(key(150)));
  EXPECT_EQ(container.count(), 9);
  EXPECT_FALSE(container.contains(key(50)));
  EXPECT_FALSE(container.contains(key(150)));
  EXPECT_TRUE(container.contains(key(40)));
  EXPECT_TRUE(container.contains(key(160)));
}

TEST_P(Bounds, searching_leaves_only_what_comparisons_leave) {
  const Container container = tens();
  const Element sought = key(42);
  container.lower_bound(sought);
  container.upper_bound(sought);
  if (container_class().key == support::ElementType::integer) {
    EXPECT_EQ(support::locks(sought), 0);
  } else {
    EXPECT_GT(support::locks(sought), 1);
  }
  const Element in_an_empty_one = key(42);
  const Container empty = make();
  empty.lower_bound(in_an_empty_one);
  empty.upper_bound(in_an_empty_one);
  EXPECT_EQ(support::locks(in_an_empty_one), support::one_lock(in_an_empty_one));
}

}  // namespace
