// Instances where others belong, constructors called again, and iterators used against the rules.
//
// An iterator points to a record within itself, which names the storage that it belongs to. By that
// the plugin tells: no position at all, an object that is no iterator, an iterator of another
// container when an element is to be removed, and the end. What storage a container has cannot be
// told from what another object holds in that place, so containers are not mistaken here unless
// they are empty.
#include "runtime/arrays.h"
#include "runtime/variants.h"
#include "support/leak_sanitizer.h"
#include "support/lock_changes.h"
#include "support/plugin_test.h"

namespace hostile {
namespace {

using support::Container;
using support::ContainerClass;
using support::Element;
using support::Iterator;

// In these hosts the data of all classes lie in the same place of an instance, so that there is
// something to mistake.
class WrongInstance : public support::ClassTest {
 protected:
  WrongInstance() {
    standin::HostOptions options = default_options();
    options.strict_ledger = false;
    restart(options);
  }
};
class WrongMapInstance : public WrongInstance {};
class WrongHashedInstance : public WrongInstance {};
ZRB_FOR_CLASSES(WrongInstance, support::all_classes());
ZRB_FOR_CLASSES(WrongMapInstance, support::map_classes());
ZRB_FOR_CLASSES(WrongHashedInstance, support::classes_where(&ContainerClass::is_hashed));

TEST_P(WrongInstance, iterators_of_any_other_container_remove_nothing) {
  const Container container = make_with(3);
  for (const ContainerClass& c : support::all_classes()) {
    SCOPED_TRACE(c.name);
    Container other = Container::make(c);
    other.put_all(0, 3);
    const Iterator first = other.first();
    const Iterator last = other.last();
    container.remove_at(first.get());
    container.remove_at(last.get());
    container.remove_range(first.get(), last.get());
    const Iterator own = container.first();
    if (!container_class().is_hashed() || !c.is_hashed())
      container.remove_range(own.get(), last.get());
    container.remove_range(first.get(), own.get());
    EXPECT_EQ(raised(), "");
    EXPECT_EQ(container.count(), 3);
    EXPECT_EQ(other.count(), 3);
  }
}

TEST_P(WrongHashedInstance, the_end_of_any_other_hashed_container_is_ones_own) {
  for (const ContainerClass& c : support::all_classes()) {
    if (!c.is_hashed()) continue;
    SCOPED_TRACE(c.name);
    const Container container = make_with(3);
    const Container other = Container::make(c);
    const Iterator end = other.last();
    container.remove_at(end.get());
    EXPECT_EQ(container.count(), 3);
    container.remove_range(end.get(), container.last().get());
    EXPECT_EQ(container.count(), 3);
    container.remove_range(container.first().get(), end.get());
    EXPECT_EQ(container.count(), 0);
  }
}

TEST_P(WrongInstance, an_iterator_of_another_container_still_makes_it_give_up_its_arrays) {
  const Container container = make_with(3);
  const Container other = make_with(3);
  const auto keys = [&] {
    return standin::ArrayRef::adopt(container.call<REALarray>("Keys as {K}()"));
  };
  const standin::ArrayRef first = keys();
  container.remove_at(other.first().get());
  const standin::ArrayRef second = keys();
  EXPECT_NE(first.get(), second.get());
  container.remove_range(other.first().get(), container.first().get());
  EXPECT_NE(second.get(), keys().get());
  EXPECT_EQ(container.count(), 3);
}

TEST_P(WrongInstance, iterators_of_another_container_are_not_equal_to_ones_own) {
  const Container container = make_with(3);
  for (const ContainerClass& c : support::all_classes()) {
    SCOPED_TRACE(c.name);
    Container other = Container::make(c);
    other.put_all(0, 3);
    const Iterator own = container.first();
    EXPECT_FALSE(own.is_equal(other.first().get()));
    EXPECT_TRUE(own.is_not_equal(other.first().get()));
    EXPECT_EQ(raised(), "");
  }
}

TEST_P(WrongInstance, an_iterator_without_position_of_another_class_removes_nothing) {
  const Container container = make_with(3);
  for (const ContainerClass& c : support::all_classes()) {
    const Iterator other = Iterator::without_position(c);
    container.remove_at(other.get());
    container.remove_range(container.first().get(), other.get());
    EXPECT_FALSE(container.first().is_equal(other.get()));
    EXPECT_FALSE(container.first().is_not_equal(other.get()));
  }
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(container.count(), 3);
}

TEST_P(WrongInstance, a_container_is_no_position) {
  const Container container = make_with(3);
  const Iterator own = container.first();
  for (const ContainerClass& c : support::all_classes()) {
    SCOPED_TRACE(c.name);
    Container other = Container::make(c);
    other.put_all(0, 3);
    const Container empty = Container::without_storage(c);
    for (const REALobject wrong : {other.get(), container.get(), empty.get()}) {
      container.remove_at(wrong);
      container.remove_range(own.get(), wrong);
      container.remove_range(wrong, own.get());
      EXPECT_FALSE(own.is_equal(wrong));
      EXPECT_FALSE(own.is_not_equal(wrong));
    }
    EXPECT_EQ(other.count(), 3);
  }
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(container.count(), 3);
}

TEST_P(WrongInstance, called_as_an_iterator_has_no_position) {
  const Container container = make_with(3);
  const std::string no_position =
      "NilObjectException: " + container_class().iterator_not_initialized_message();
  for (const ContainerClass& c : support::all_classes()) {
    SCOPED_TRACE(c.name);
    Container other = Container::make(c);
    other.put_all(0, 3);
    const Iterator wrong =
        Iterator::adopt(container_class(), standin::ObjectRef::share(other.get()).release());
    wrong.move_next();
    EXPECT_EQ(raised(), no_position);
    EXPECT_TRUE(support::is_neutral(wrong.key()));
    EXPECT_EQ(raised(), no_position);
    EXPECT_EQ(other.count(), 3);
  }
}

TEST_P(WrongMapInstance, a_copy_of_an_instance_of_another_class_without_storage_is_empty) {
  for (const ContainerClass& c : support::all_classes()) {
    SCOPED_TRACE(c.name);
    const Container map = make_with(3);
    const Container other = Container::without_storage(c);
    map.call<void>("Constructor(other as {Class})", other.get());
    EXPECT_EQ(raised(), "NilObjectException: Map not initialized");
    EXPECT_EQ(map.count(), 0);
    map.put(1);
    EXPECT_EQ(map.count(), 1);
  }
}

class ConstructedTwice : public support::ClassTest {
 protected:
  const support::LeaksExpected former_storage_;
};
class MapConstructedTwice : public ConstructedTwice {};
ZRB_FOR_CLASSES(ConstructedTwice, support::all_classes());
ZRB_FOR_CLASSES(MapConstructedTwice, support::map_classes());

TEST_P(ConstructedTwice, iterators_of_the_former_storage_still_read_it) {
  const Container container = make_with(3);
  const Iterator first = container.first();
  const Iterator last = container.last();
  container.construct();
  int steps = 0;
  for (; !first.is_equal(last); first.move_next(), ++steps) {
    EXPECT_TRUE(support::describe(first.key()) != "nil");
  }
  EXPECT_EQ(steps, 3);
  EXPECT_EQ(container.count(), 0);
}

TEST_P(ConstructedTwice, iterators_of_the_former_storage_remove_nothing) {
  const Container container = make_with(3);
  const Iterator first = container.first();
  const Iterator last = container.last();
  container.construct();
  container.put_all(0, 2);
  container.remove(first);
  container.remove(first, last);
  EXPECT_EQ(container.count(), 2);
  EXPECT_FALSE(container.first().is_equal(first.get()));
}

TEST_P(ConstructedTwice, ten_times_it_is_still_a_new_container) {
  const Container container = make_with(3);
  for (int i = 0; i < 10; ++i) {
    container.construct();
    EXPECT_TRUE(container.empty());
    container.put(i);
    EXPECT_EQ(container.count(), 1);
    EXPECT_EQ(container.described_keys().size(), 1U);
  }
}

TEST_P(MapConstructedTwice, from_nil_it_keeps_what_it_had) {
  const Container map = make_with(3);
  map.call<void>("Constructor(other as {Class})", REALobject{});
  EXPECT_EQ(raised(), "NilObjectException: Other map is nil");
  EXPECT_EQ(map.count(), 3);
}

TEST_P(MapConstructedTwice, from_a_dictionary_the_former_content_is_released) {
  const Element stored_key = key(1);
  const Element stored_value = value(1);
  const Container map = make();
  map.put(stored_key, stored_value);
  map.call<void>("Constructor(dic as dictionary)", REALobject{});
  map.call<void>("Operator_Convert(dic as dictionary)", REALobject{});
  EXPECT_EQ(map.count(), 0);
  EXPECT_EQ(support::locks(stored_key), support::one_lock(stored_key));
  EXPECT_EQ(support::locks(stored_value), support::one_lock(stored_value));
}

class MisusedIterators : public support::ClassTest {};
class MisusedMapIterators : public support::ClassTest {};
class MisusedOrderedIterators : public support::ClassTest {};
ZRB_FOR_CLASSES(MisusedIterators, support::all_classes());
ZRB_FOR_CLASSES(MisusedMapIterators, support::map_classes());
ZRB_FOR_CLASSES(MisusedOrderedIterators, support::ordered_classes());

TEST_P(MisusedIterators, a_hundred_steps_behind_the_end_are_still_the_end) {
  const Container container = make_with(3);
  const Iterator end = container.last();
  for (int i = 0; i < 100; ++i) end.move_next();
  EXPECT_TRUE(end.is_equal(container.last().get()));
  EXPECT_TRUE(support::is_neutral(end.key()));
  EXPECT_EQ(raised(), "");
}

TEST_P(MisusedIterators, removing_at_the_end_removes_nothing) {
  const Container container = make_with(3);
  container.remove(container.last());
  container.remove(container.last(), container.last());
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(container.count(), 3);
  const Container empty = make();
  empty.remove(empty.first());
  EXPECT_EQ(empty.count(), 0);
}

TEST_P(MisusedIterators, a_range_that_ends_before_it_begins_stays_within_the_container) {
  const Container container = make_with(5);
  const Iterator second = container.first();
  second.move_next();
  container.remove(second, container.first());
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(container.count(), static_cast<std::int32_t>(container.keys().size()));
  container.put(50);
  EXPECT_TRUE(container.contains(key(50)));
}

TEST_P(MisusedMapIterators, the_end_takes_no_value_and_locks_none) {
  const Container map = make_with(3);
  const Element new_value = value(9);
  const support::LockWatch watch;
  map.last().set_value(new_value);
  EXPECT_TRUE(support::is_neutral(map.last().value()));
  EXPECT_EQ(watch.changes(), support::LockChanges());
}

TEST_P(MisusedOrderedIterators, steps_back_from_the_first_come_to_the_end_and_go_round) {
  const Container container = make_with(3);
  const Iterator at = container.first();
  at.move_prev();
  EXPECT_TRUE(at.is_equal(container.last().get()));
  EXPECT_TRUE(support::is_neutral(at.key()));
  at.move_prev();
  EXPECT_EQ(support::describe(at.key()), support::describe(key(2)));
}

TEST_P(MisusedOrderedIterators, a_step_from_a_removed_element_leads_to_a_neighbour) {
  constexpr int count = 50;
  for (int removed = 0; removed < count; ++removed) {
    const Container container = make_with(count);
    const Iterator at = container.nth(removed);
    container.remove(container.nth(removed));
    at.move_next();
    EXPECT_TRUE(at.is_equal(container.nth(removed)) || at.is_equal(container.nth(removed - 1)))
        << removed;
  }
}

TEST_P(MisusedOrderedIterators, steps_from_a_removed_range_lead_out_of_it) {
  const Container container = make_with(50);
  const Iterator at = container.nth(10);
  container.remove(container.nth(10), container.nth(30));
  for (int i = 0; i < 50; ++i) at.move_next();
  EXPECT_TRUE(at.is_equal(container.last()));
}

}  // namespace
}  // namespace hostile
