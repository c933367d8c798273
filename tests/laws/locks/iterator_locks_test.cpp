// Locks of iterators: each is the caller's alone, none holds its container, and stepping and
// comparing them lock nothing. Removal through them gives back the locks of what goes.
#include <array>

#include "laws/locks/lock_test.h"

namespace {

using support::expect;

class IteratorLocks : public locks::LockTest {
 protected:
  /// Three entries, the program's own elements listed in the order of iteration.
  struct Three {
    Container container;
    std::array<Element, 3> keys, values;
  };
  Three three() const {
    Three result{make(), {}, {}};
    std::vector<std::pair<Element, Element>> entries;
    for (int i = 0; i < 3; ++i) {
      entries.emplace_back(key(i), value(i));
      result.container.put(entries.back().first, entries.back().second);
    }
    const std::vector<std::string> order = result.container.described_keys();
    for (const auto& [stored_key, stored_value] : entries) {
      for (std::size_t place = 0; place < order.size(); ++place) {
        if (order[place] != support::describe(stored_key)) continue;
        result.keys[place] = stored_key;
        result.values[place] = stored_value;
      }
    }
    return result;
  }
  void add_removal(LockChanges& expected, const Three& content, std::size_t place) const {
    expect(expected, content.keys[place], -1);
    if (container_class().is_map()) expect(expected, content.values[place], -1);
  }
};
class OrderedIteratorLocks : public IteratorLocks {};
ZRB_FOR_CLASSES(IteratorLocks, support::all_classes());
ZRB_FOR_CLASSES(OrderedIteratorLocks, support::ordered_classes());

ZRB_LOCK_TEST(IteratorLocks, first_and_last_have_one_lock_for_the_caller, member::first,
              member::last) {
  for (const Container& container : {make(), make_with(10)}) {
    const LockWatch watch;
    {
      const Iterator first = container.first();
      const Iterator last = container.last();
      LockChanges while_held;
      while_held[first.get()] = 1;
      while_held[last.get()] = 1;
      EXPECT_EQ(watch.changes(), while_held);
    }
    EXPECT_EQ(watch.changes(), LockChanges());
  }
}

ZRB_LOCK_TEST(IteratorLocks, a_found_iterator_has_one_lock_for_the_caller, member::find) {
  const auto [container, stored_key, stored_value] = single();
  const Element equal_key = key(1);
  LockChanges expected;
  add_comparisons(expected, equal_key, stored_key, comparisons_of_equals());
  const LockWatch watch;
  {
    const Iterator found = container.find(equal_key);
    LockChanges while_held = expected;
    while_held[found.get()] = 1;
    EXPECT_EQ(watch.changes(), while_held);
  }
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(IteratorLocks, an_iterator_for_an_absent_key_has_one_lock_too, member::find) {
  const Container container = make();
  const Element sought = key(1);
  const LockWatch watch;
  {
    const Iterator found = container.find(sought);
    LockChanges while_held;
    while_held[found.get()] = 1;
    EXPECT_EQ(watch.changes(), while_held);
  }
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(IteratorLocks, a_key_read_has_one_lock_for_the_caller, member::iterator_key) {
  const auto [container, stored_key, stored_value] = single();
  const Iterator at = container.first();
  const LockWatch watch;
  {
    const Element read = at.key();
    EXPECT_EQ(support::handle(read), support::handle(stored_key));
    LockChanges while_held;
    expect(while_held, stored_key, 1);
    EXPECT_EQ(watch.changes(), while_held);
  }
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(IteratorLocks, at_the_end_there_is_no_key_to_lock, member::iterator_key) {
  const auto [container, stored_key, stored_value] = single();
  const Iterator last = container.last();
  const LockWatch watch;
  last.key();
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(IteratorLocks, stepping_and_comparing_lock_nothing, member::move_next,
              member::is_equal, member::is_not_equal) {
  const Container container = make_with(40);
  const Iterator at = container.first();
  const Iterator last = container.last();
  const LockWatch watch;
  while (at.is_not_equal(last)) at.move_next();
  EXPECT_TRUE(at.is_equal(last));
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(OrderedIteratorLocks, stepping_back_locks_nothing, member::move_prev) {
  const Container container = make_with(40);
  const Iterator at = container.last();
  const Iterator first = container.first();
  const LockWatch watch;
  while (!at.is_equal(first)) at.move_prev();
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(IteratorLocks, removing_an_element_gives_back_its_locks_and_compares_nothing,
              member::remove_at) {
  for (std::size_t place = 0; place < 3; ++place) {
    const Three content = three();
    const Iterator at = content.container.first();
    for (std::size_t i = 0; i < place; ++i) at.move_next();
    const LockWatch watch;
    content.container.remove(at);
    LockChanges expected;
    add_removal(expected, content, place);
    EXPECT_EQ(watch.changes(), expected) << place;
  }
}

ZRB_LOCK_TEST(IteratorLocks, removing_a_range_gives_back_the_locks_of_what_lies_in_it,
              member::remove_range) {
  for (const auto& [from, to] : {std::pair{0U, 0U}, {0U, 1U}, {0U, 3U}, {1U, 2U}, {1U, 3U}}) {
    const Three content = three();
    const Iterator first = content.container.first();
    for (std::size_t i = 0; i < from; ++i) first.move_next();
    const Iterator last = content.container.first();
    for (std::size_t i = 0; i < to; ++i) last.move_next();
    const LockWatch watch;
    content.container.remove(first, last);
    LockChanges expected;
    for (std::size_t place = from; place < to; ++place) add_removal(expected, content, place);
    EXPECT_EQ(watch.changes(), expected) << from << " to " << to;
  }
}

ZRB_LOCK_TEST(IteratorLocks, removing_through_nil_or_without_position_changes_no_lock,
              member::remove_at, member::remove_range) {
  const Container container = make_with(3);
  const Iterator unplaced = Iterator::without_position(container_class());
  const Iterator first = container.first();
  const LockWatch watch;
  container.remove_at(nullptr);
  container.remove(unplaced);
  container.remove_range(nullptr, nullptr);
  container.remove_range(first.get(), nullptr);
  container.remove_range(nullptr, first.get());
  container.remove(first, unplaced);
  container.remove(unplaced, first);
  EXPECT_EQ(watch.changes(), LockChanges());
}

}  // namespace
