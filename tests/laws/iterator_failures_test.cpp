// Iterators without a position (made by the host's `New`), and nil in the place of an iterator.
#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;
using support::Iterator;

class IteratorFailures : public support::ClassTest {
 protected:
  std::string not_initialized() const {
    return "NilObjectException: " + container_class().iterator_not_initialized_message();
  }
  Iterator without_position() const { return Iterator::without_position(container_class()); }
};
class OrderedIteratorFailures : public IteratorFailures {};
class MapIteratorFailures : public IteratorFailures {};
ZRB_FOR_CLASSES(IteratorFailures, support::all_classes());
ZRB_FOR_CLASSES(OrderedIteratorFailures, support::ordered_classes());
ZRB_FOR_CLASSES(MapIteratorFailures, support::map_classes());

constexpr const char* other_is_nil = "NilObjectException: other iterator is nil";

TEST_P(IteratorFailures, move_next_without_position_raises) {
  without_position().move_next();
  EXPECT_EQ(raised(), not_initialized());
}

TEST_P(OrderedIteratorFailures, move_prev_without_position_raises) {
  without_position().move_prev();
  EXPECT_EQ(raised(), not_initialized());
}

TEST_P(IteratorFailures, key_without_position_raises_and_returns_the_neutral_value) {
  EXPECT_TRUE(support::is_neutral(without_position().key()));
  EXPECT_EQ(raised(), not_initialized());
}

TEST_P(MapIteratorFailures, value_without_position_raises_and_returns_the_neutral_value) {
  EXPECT_TRUE(support::is_neutral(without_position().value()));
  EXPECT_EQ(raised(), not_initialized());
}

TEST_P(MapIteratorFailures, assigning_a_value_without_position_raises_and_keeps_no_lock) {
  const Element assigned = value(1);
  without_position().set_value(assigned);
  EXPECT_EQ(raised(), not_initialized());
  EXPECT_EQ(support::locks(assigned), support::one_lock(assigned));
}

TEST_P(IteratorFailures, comparing_with_nil_raises_and_is_false_both_ways) {
  const Container container = make_with(1);
  const Iterator at = container.first();
  EXPECT_FALSE(at.is_equal(nullptr));
  EXPECT_EQ(raised(), other_is_nil);
  EXPECT_FALSE(at.is_not_equal(nullptr));
  EXPECT_EQ(raised(), other_is_nil);
}

TEST_P(IteratorFailures, an_iterator_without_position_too_refuses_nil) {
  EXPECT_FALSE(without_position().is_equal(nullptr));
  EXPECT_EQ(raised(), other_is_nil);
  EXPECT_FALSE(without_position().is_not_equal(nullptr));
  EXPECT_EQ(raised(), other_is_nil);
}

TEST_P(IteratorFailures, an_iterator_without_position_is_neither_equal_nor_unequal) {
  const Container container = make_with(1);
  const Iterator at = container.first();
  const Iterator unplaced = without_position();
  for (const auto& [one, other] : {std::pair(&unplaced, &at), {&at, &unplaced}}) {
    EXPECT_FALSE(one->is_equal(*other));
    EXPECT_FALSE(one->is_not_equal(*other));
  }
  EXPECT_EQ(raised(), "");
}

TEST_P(IteratorFailures, the_end_has_no_key_and_nothing_behind_it) {
  for (const Container& container : {make(), make_with(3)}) {
    const Iterator end = container.last();
    EXPECT_TRUE(support::is_neutral(end.key()));
    end.move_next();
    EXPECT_TRUE(end.is_equal(container.last()));
    container.remove(end);
    EXPECT_EQ(raised(), "");
  }
}

TEST_P(MapIteratorFailures, the_end_has_no_value_to_read_or_replace) {
  const Container map = make_with(3);
  const Iterator end = map.last();
  const Element assigned = value(9);
  EXPECT_TRUE(support::is_neutral(end.value()));
  end.set_value(assigned);
  EXPECT_EQ(support::locks(assigned), support::one_lock(assigned));
  EXPECT_EQ(map.count(), 3);
  EXPECT_EQ(raised(), "");
}

TEST_P(IteratorFailures, a_raised_exception_changes_nothing_and_leaves_no_lock) {
  const Container container = make_with(3);
  const Iterator at = container.first();
  const auto before = host().ledger().snapshot();
  at.is_equal(nullptr);
  EXPECT_EQ(raised(), other_is_nil);
  without_position().move_next();
  EXPECT_EQ(raised(), not_initialized());
  EXPECT_TRUE(host().ledger().changes_since(before).empty());
  EXPECT_TRUE(at.is_equal(container.first()));
}

}  // namespace
