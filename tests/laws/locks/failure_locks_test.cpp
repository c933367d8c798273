// Locks when a routine refuses to work: the exception is the host's, and no argument has changed.
#include "laws/locks/lock_test.h"

namespace {

using standin::ArrayRef;

class FailureLocks : public locks::LockTest {
 protected:
  /// Calls, takes the exception that must have been raised, and expects every lock as it was.
  template <class Call>
  void expect_refused(const char* name, const std::string& exception, Call call) {
    const LockWatch watch;
    call();
    EXPECT_EQ(raised(), exception) << name;
    EXPECT_EQ(watch.changes(), LockChanges()) << name;
  }
};
class OrderedFailureLocks : public FailureLocks {};
class MapFailureLocks : public FailureLocks {};
class SetFailureLocks : public FailureLocks {};
ZRB_FOR_CLASSES(FailureLocks, support::all_classes());
ZRB_FOR_CLASSES(OrderedFailureLocks, support::ordered_classes());
ZRB_FOR_CLASSES(MapFailureLocks, support::map_classes());
ZRB_FOR_CLASSES(SetFailureLocks, support::set_classes());

std::string not_initialized(const support::ContainerClass& container_class) {
  return "NilObjectException: " + container_class.not_initialized_message();
}

ZRB_LOCK_TEST(FailureLocks, without_storage_no_lock_is_taken, member::insert, member::set_value,
              member::set_lookup, member::has_key, member::count_key, member::find,
              member::remove_key, member::remove_at, member::remove_range, member::first,
              member::last, member::clear, member::count, member::empty, member::max_size) {
  const Container container = Container::without_storage(container_class());
  const Element a_key = key(1);
  const Element a_value = value(1);
  const Container other = make_with(1);
  const Iterator at = other.first();
  const std::string message = not_initialized(container_class());
  expect_refused("put", message, [&] { container.put(a_key, a_value); });
  expect_refused("membership", message, [&] { container.contains(a_key); });
  expect_refused("CountKey", message, [&] { container.count_key(a_key); });
  expect_refused("find", message, [&] { container.find(a_key); });
  expect_refused("Remove(key)", message, [&] { container.remove(a_key); });
  expect_refused("Remove(pos)", message, [&] { container.remove(at); });
  expect_refused("Remove(first, last)", message, [&] { container.remove(at, at); });
  expect_refused("first", message, [&] { container.first(); });
  expect_refused("last", message, [&] { container.last(); });
  expect_refused("Clear", message, [&] { container.clear(); });
  expect_refused("Count", message, [&] { container.count(); });
  expect_refused("Empty", message, [&] { container.empty(); });
  expect_refused("MaxSize", message, [&] { container.max_size(); });
}

ZRB_LOCK_TEST(OrderedFailureLocks, without_storage_no_bound_takes_a_lock, member::lower_bound,
              member::upper_bound) {
  const Container container = Container::without_storage(container_class());
  const Element a_key = key(1);
  const std::string message = not_initialized(container_class());
  expect_refused("LowerBound", message, [&] { container.lower_bound(a_key); });
  expect_refused("UpperBound", message, [&] { container.upper_bound(a_key); });
}

ZRB_LOCK_TEST(MapFailureLocks, without_storage_no_value_is_locked, member::value,
              member::map_lookup, member::add_keys, member::add_values, member::key_at,
              member::value_at) {
  const Container map = Container::without_storage(container_class());
  const Element a_key = key(1);
  const Element a_value = value(1);
  const ArrayRef keys = support::host_array(container_class().key, {a_key});
  const ArrayRef values = support::host_array(*container_class().value, {a_value});
  const std::string message = not_initialized(container_class());
  expect_refused("value", message, [&] { map.value(a_key); });
  expect_refused("lookup", message, [&] { map.lookup(a_key, a_value); });
  expect_refused("AddKeys", message, [&] { map.call<void>(member::add_keys, keys.get()); });
  expect_refused("AddValues", message, [&] { map.call<void>(member::add_values, values.get()); });
  expect_refused("Key(index)", message,
                 [&] { map.call_for(container_class().key, member::key_at, 0); });
  expect_refused("ValueAtIndex", message,
                 [&] { map.call_for(*container_class().value, member::value_at, 0); });
  const std::string array_is_nil = "NilObjectException: array is nil";
  expect_refused("AddKeys(nil)", array_is_nil,
                 [&] { map.call<void>(member::add_keys, REALarray{nullptr}); });
  expect_refused("AddValues(nil)", array_is_nil,
                 [&] { map.call<void>(member::add_values, REALarray{nullptr}); });
}

ZRB_LOCK_TEST(SetFailureLocks, without_storage_a_key_by_index_changes_no_lock, member::key_at,
              member::keys) {
  const Container set = Container::without_storage(container_class());
  const LockWatch watch;
  set.call_for(container_class().key, member::key_at, 0);
  EXPECT_EQ(set.call<REALarray>(member::keys), nullptr);
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(FailureLocks, an_iterator_without_position_locks_nothing, member::move_next,
              member::iterator_key, member::is_equal, member::is_not_equal) {
  const Iterator unplaced = Iterator::without_position(container_class());
  const Container container = make_with(1);
  const Iterator at = container.first();
  const std::string message =
      "NilObjectException: " + container_class().iterator_not_initialized_message();
  const std::string other_is_nil = "NilObjectException: other iterator is nil";
  expect_refused("MoveNext", message, [&] { unplaced.move_next(); });
  expect_refused("Key", message, [&] { unplaced.key(); });
  expect_refused("isEqual", other_is_nil, [&] { at.is_equal(nullptr); });
  expect_refused("isNotEqual", other_is_nil, [&] { at.is_not_equal(nullptr); });
}

ZRB_LOCK_TEST(OrderedFailureLocks, stepping_back_without_position_locks_nothing,
              member::move_prev) {
  const Iterator unplaced = Iterator::without_position(container_class());
  expect_refused("MovePrev",
                 "NilObjectException: " + container_class().iterator_not_initialized_message(),
                 [&] { unplaced.move_prev(); });
}

ZRB_LOCK_TEST(MapFailureLocks, an_iterator_without_position_locks_no_value, member::iterator_value,
              member::iterator_set_value) {
  const Iterator unplaced = Iterator::without_position(container_class());
  const Element a_value = value(1);
  const std::string message = "NilObjectException: Iterator not initialized";
  expect_refused("Value", message, [&] { unplaced.value(); });
  expect_refused("Value =", message, [&] { unplaced.set_value(a_value); });
}

}  // namespace
