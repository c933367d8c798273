// Which keys a container holds: `lookup` of sets, `hasKey` of maps, `CountKey`, `insert`.
#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;

class Membership : public support::ClassTest {};
class SetMembership : public support::ClassTest {};
class ObjectKeys : public support::ClassTest {};
class IntegerKeys : public support::ClassTest {};
ZRB_FOR_CLASSES(Membership, support::all_classes());
ZRB_FOR_CLASSES(SetMembership, support::set_classes());
ZRB_FOR_CLASSES(ObjectKeys, support::classes_where([](const support::ContainerClass& c) {
                  return c.key != support::ElementType::integer;
                }));
ZRB_FOR_CLASSES(IntegerKeys, support::classes_with_key(support::ElementType::integer));

TEST_P(Membership, what_was_put_in_is_there_and_nothing_else) {
  const Container container = make();
  for (int i = 0; i < 400; i += 2) container.put(i);
  for (int i = 0; i < 400; ++i) {
    ASSERT_EQ(container.contains(key(i)), i % 2 == 0) << i;
    ASSERT_EQ(container.count_key(key(i)), i % 2 == 0 ? 1 : 0) << i;
  }
}

TEST_P(Membership, an_empty_container_holds_no_key) {
  const Container container = make();
  EXPECT_FALSE(container.contains(key(0)));
  EXPECT_EQ(container.count_key(key(0)), 0);
}

TEST_P(Membership, a_key_is_counted_once_however_often_it_is_put_in) {
  const Container container = make();
  for (int i = 0; i < 5; ++i) container.put(1);
  EXPECT_EQ(container.count(), 1);
  EXPECT_EQ(container.count_key(key(1)), 1);
}

TEST_P(Membership, asking_for_an_absent_key_raises_nothing_and_adds_nothing) {
  const Container container = make_with(3);
  container.contains(key(9));
  container.count_key(key(9));
  container.find(key(9));
  container.remove(key(9));
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(container.count(), 3);
}

TEST_P(SetMembership, a_set_keeps_the_key_object_that_came_first) {
  const Container set = make();
  const Element first_key = key(1);
  const Element second_key = key(1);
  set.insert(first_key);
  set.insert(second_key);
  EXPECT_EQ(support::handle(set.first().key()), support::handle(first_key));
}

TEST_P(ObjectKeys, nil_is_a_key_like_any_other) {
  const Container container = make_with(5);
  const Element nil = support::neutral(container_class().key);
  EXPECT_FALSE(container.contains(nil));
  container.put(nil, value(7));
  EXPECT_EQ(container.count(), 6);
  EXPECT_TRUE(container.contains(nil));
  EXPECT_EQ(container.count_key(nil), 1);
  EXPECT_TRUE(support::is_neutral(container.find(nil).key()));
  container.put(nil, value(8));
  EXPECT_EQ(container.count(), 6);
  if (container_class().is_map()) {
    EXPECT_EQ(support::describe(container.value(nil)), support::describe(value(8)));
    EXPECT_EQ(support::describe(container.lookup(nil, value(9))), support::describe(value(8)));
  }
  EXPECT_EQ(container.remove(nil), 1);
  EXPECT_EQ(container.remove(nil), 0);
  EXPECT_FALSE(container.contains(nil));
  EXPECT_EQ(container.count(), 5);
}

TEST_P(ObjectKeys, the_first_key_may_be_nil) {
  const Container container = make();
  const Element nil = support::neutral(container_class().key);
  container.put(nil, value(1));
  EXPECT_EQ(container.count(), 1);
  EXPECT_TRUE(support::is_neutral(container.first().key()));
  container.clear();
  EXPECT_EQ(container.count(), 0);
}

TEST_P(IntegerKeys, the_whole_range_of_keys_can_be_stored) {
  const Container container = make();
  const std::vector<std::int32_t> keys = {0, -1, 1, INT32_MIN, INT32_MAX, INT32_MIN + 1, -193, 193};
  for (const std::int32_t key : keys) container.put(key, value(1));
  EXPECT_EQ(container.count(), static_cast<std::int32_t>(keys.size()));
  for (const std::int32_t key : keys) {
    EXPECT_TRUE(container.contains(key)) << key;
    EXPECT_EQ(std::get<std::int32_t>(container.find(key).key()), key);
  }
  for (const std::int32_t key : keys) EXPECT_EQ(container.remove(key), 1) << key;
  EXPECT_TRUE(container.empty());
}

}  // namespace
