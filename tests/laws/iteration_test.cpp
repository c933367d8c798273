// Iterators: where containers place them, how they step, and how they compare.
#include <algorithm>

#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;
using support::Iterator;

class Iteration : public support::ClassTest {};
class OrderedIteration : public support::ClassTest {};
class OrderedIntegerIteration : public support::ClassTest {};
class MapIteration : public support::ClassTest {};
ZRB_FOR_CLASSES(Iteration, support::all_classes());
ZRB_FOR_CLASSES(OrderedIteration, support::ordered_classes());
ZRB_FOR_CLASSES(OrderedIntegerIteration,
                support::classes_where([](const support::ContainerClass& c) {
                  return c.is_ordered() && c.key == support::ElementType::integer;
                }));
ZRB_FOR_CLASSES(MapIteration, support::map_classes());

TEST_P(Iteration, on_an_empty_container_first_equals_last) {
  const Container container = make();
  EXPECT_TRUE(container.first().is_equal(container.last()));
  EXPECT_FALSE(container.first().is_not_equal(container.last()));
}

TEST_P(Iteration, first_stepped_count_times_equals_last_and_not_before) {
  const Container container = make_with(300);
  const Iterator last = container.last();
  const Iterator at = container.first();
  for (int i = 0; i < 300; ++i) {
    ASSERT_FALSE(at.is_equal(last)) << "after " << i << " steps";
    ASSERT_TRUE(at.is_not_equal(last));
    at.move_next();
  }
  EXPECT_TRUE(at.is_equal(last));
}

TEST_P(Iteration, every_key_is_visited_once) {
  const Container container = make_with(300);
  std::vector<std::string> visited = container.described_keys();
  std::vector<std::string> expected;
  for (int i = 0; i < 300; ++i) expected.push_back(support::describe(key(i)));
  std::sort(visited.begin(), visited.end());
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(visited, expected);
}

TEST_P(Iteration, find_names_the_element_of_the_key) {
  const Container container = make_with(50);
  for (int i = 0; i < 50; ++i) {
    const Iterator found = container.find(key(i));
    ASSERT_TRUE(found);
    EXPECT_EQ(support::describe(found.key()), support::describe(key(i)));
  }
}

TEST_P(Iteration, find_of_a_missing_key_equals_last) {
  const Container container = make_with(5);
  EXPECT_TRUE(container.find(key(6)).is_equal(container.last()));
  const Container empty = make();
  EXPECT_TRUE(empty.find(key(6)).is_equal(empty.last()));
}

TEST_P(Iteration, two_iterators_of_one_element_are_equal_whatever_the_way_to_it) {
  const Container container = make_with(3);
  const Iterator second = container.first();
  second.move_next();
  const Iterator found = container.find(second.key());
  EXPECT_TRUE(second.is_equal(found));
  EXPECT_FALSE(second.is_not_equal(found));
  EXPECT_FALSE(second.is_equal(container.first()));
  EXPECT_TRUE(second.is_not_equal(container.first()));
}

TEST_P(Iteration, each_call_makes_an_iterator_of_its_own) {
  const Container container = make_with(2);
  const Iterator one = container.first();
  const Iterator other = container.first();
  ASSERT_NE(one.get(), other.get());
  one.move_next();
  EXPECT_FALSE(one.is_equal(other));
  EXPECT_TRUE(other.is_equal(container.first()));
}

TEST_P(Iteration, an_iterator_belongs_to_the_caller_and_leaves_nothing_behind) {
  const Container container = make_with(3);
  const auto before = host().ledger().snapshot();
  {
    const Iterator first = container.first();
    const Iterator last = container.last();
    EXPECT_EQ(standin::lock_count(first.get()), 1u);
    EXPECT_EQ(standin::lock_count(container.get()), 1u);
    first.move_next();
    EXPECT_EQ(host().ledger().held_since(before).size(), 2u);
  }
  EXPECT_TRUE(host().ledger().held_since(before).empty());
}

TEST_P(Iteration, an_iterator_survives_insertions_next_to_it) {
  const Container container = make_with(10);
  const Iterator at = container.find(key(5));
  container.put_all(10, 400);
  EXPECT_EQ(support::describe(at.key()), support::describe(key(5)));
  EXPECT_TRUE(at.is_equal(container.find(key(5))));
}

TEST_P(Iteration, a_host_that_makes_no_iterator_gets_nil_back) {
  const Container container = make_with(2);
  const Element sought = key(1);
  const auto locks = support::locks(sought);
  host().faults().answer_null_at("PluginNewInstance", 1, standin::Faults::Repeat::from_there_on);
  EXPECT_FALSE(container.first());
  EXPECT_FALSE(container.last());
  const auto before_find = host().ledger().live_count();
  EXPECT_FALSE(container.find(sought));
  EXPECT_EQ(host().ledger().live_count(), before_find);
  // What comparisons leave is at most their own two locks; the search key's own lock is given back.
  if (container_class().key == support::ElementType::integer) {
    EXPECT_EQ(support::locks(sought), locks);
  }
  host().faults().clear();
  EXPECT_TRUE(container.first());
}

TEST_P(MapIteration, value_is_the_value_of_the_key) {
  const Container container = make_with(50);
  const Iterator end = container.last();
  for (const Iterator at = container.first(); !at.is_equal(end); at.move_next()) {
    EXPECT_EQ(support::describe(at.value()), support::describe(container.value(at.key())));
  }
}

TEST_P(MapIteration, a_value_assigned_through_an_iterator_is_the_maps_value) {
  const Container container = make_with(10);
  container.find(key(4)).set_value(value(77));
  EXPECT_EQ(support::describe(container.value(key(4))), support::describe(value(77)));
  EXPECT_EQ(support::describe(container.find(key(4)).value()), support::describe(value(77)));
  EXPECT_EQ(support::describe(container.value(key(5))), support::describe(value(5)));
  EXPECT_EQ(container.count(), 10);
}

TEST_P(MapIteration, nil_or_0_can_be_assigned_through_an_iterator) {
  const Container container = make_with(3);
  const Element nothing = support::neutral(*container_class().value);
  container.find(key(1)).set_value(nothing);
  EXPECT_TRUE(support::is_neutral(container.find(key(1)).value()));
  EXPECT_TRUE(container.contains(key(1)));
  container.find(key(1)).set_value(value(9));
  EXPECT_EQ(support::describe(container.value(key(1))), support::describe(value(9)));
}

TEST_P(OrderedIteration, keys_ascend) {
  const Container container = make();
  for (int i = 0; i < 200; ++i) container.put((i * 37) % 200);
  std::vector<std::string> expected;
  for (int i = 0; i < 200; ++i) expected.push_back(support::describe(key(i)));
  EXPECT_EQ(container.described_keys(), expected);
}

TEST_P(OrderedIntegerIteration, goes_from_the_most_negative_key_to_the_most_positive) {
  const Container container = make();
  for (const std::int32_t key : {5, INT32_MAX, -5, 0, INT32_MIN, -193, 1, -1}) {
    container.put(key, value(1));
  }
  const std::vector<Element> ascending = {INT32_MIN, -193, -5, -1, 0, 1, 5, INT32_MAX};
  EXPECT_EQ(container.keys(), ascending);
}

TEST_P(OrderedIteration, last_stepped_back_names_the_greatest_key) {
  const Container container = make_with(20);
  const Iterator at = container.last();
  at.move_prev();
  EXPECT_EQ(support::describe(at.key()), support::describe(key(19)));
}

TEST_P(OrderedIteration, stepping_back_from_last_visits_the_keys_in_descending_order) {
  const Container container = make_with(100);
  const Iterator at = container.last();
  for (int i = 99; i >= 0; --i) {
    at.move_prev();
    ASSERT_EQ(support::describe(at.key()), support::describe(key(i)));
  }
  EXPECT_TRUE(at.is_equal(container.first()));
}

TEST_P(OrderedIteration, a_step_forth_and_a_step_back_end_where_they_began) {
  const Container container = make_with(50);
  for (int i = 0; i < 50; ++i) {
    const Iterator at = container.find(key(i));
    at.move_next();
    at.move_prev();
    EXPECT_TRUE(at.is_equal(container.find(key(i)))) << i;
  }
}

}  // namespace
