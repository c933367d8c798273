// What the diagnostic plugin must leave alone: iterators that are used rightly, whatever happens
// around them.
#include <vector>

#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Iterator;

class RightUse : public support::ClassTest {};
ZRB_FOR_CLASSES(RightUse, support::all_classes());

TEST_P(RightUse, iterators_survive_the_removal_of_other_elements) {
  const Container container = make_with(5);
  const Iterator at = container.find(key(2));
  for (const int index : {0, 1, 3, 4}) container.remove(key(index));
  EXPECT_TRUE(at.is_equal(container.first()));
  EXPECT_EQ(support::describe(at.key()), support::describe(key(2)));
  EXPECT_EQ(raised(), "");
}

TEST_P(RightUse, iterators_survive_growth) {
  const Container container = make_with(1);
  const Iterator at = container.first();
  container.put_all(1, 800);
  EXPECT_EQ(support::describe(at.key()), support::describe(key(0)));
  EXPECT_EQ(raised(), "");
}

TEST_P(RightUse, the_end_survives_clear) {
  const Container container = make_with(3);
  const Iterator end = container.last();
  container.clear();
  EXPECT_TRUE(end.is_equal(container.first()));
  EXPECT_EQ(raised(), "");
}

TEST_P(RightUse, a_walk_that_steps_on_before_it_removes_is_sound) {
  const Container container = make_with(50);
  const Iterator at = container.first();
  while (at.is_not_equal(container.last())) {
    const Iterator doomed = container.find(at.key());
    at.move_next();
    container.remove(doomed);
  }
  EXPECT_EQ(container.count(), 0);
  EXPECT_EQ(raised(), "");
}

// The host gives a new iterator the memory of one that died; the entry of that one must not count.
TEST_P(RightUse, new_iterators_have_nothing_of_those_that_died) {
  restart(standin::HostOptions{});  // which uses memory again
  const Container container = make_with(3);
  for (int round = 0; round < 100; ++round) {
    Iterator at = container.find(key(1));
    EXPECT_EQ(support::describe(at.key()), support::describe(key(1)));
    container.remove(key(1));
    at.release();
    container.put(1);
  }
  EXPECT_EQ(raised(), "");
}

TEST_P(RightUse, the_walk_of_one_container_is_no_business_of_another) {
  const Container container = make_with(20);
  const Container other = make_with(20);
  const Iterator at = container.first();
  int steps = 0;
  for (; at.is_not_equal(container.last()); at.move_next()) {
    other.remove(key(steps));
    ++steps;
  }
  EXPECT_EQ(steps, 20);
  EXPECT_EQ(raised(), "");
}

}  // namespace
