// Locks of maps made from maps: the copy locks what it shares with its source, and the former
// content of a map is given back.
#include "laws/locks/lock_test.h"

namespace {

using support::expect;

class CopyLocks : public locks::LockTest {
 protected:
  static void construct_from(const Container& map, REALobject other) {
    map.call<void>(member::from_map, other);
  }
  Container clone(const Container& map) const {
    return Container::adopt(container_class(), map.call<REALobject>(member::clone));
  }
  static void add_entry(LockChanges& expected, const Single& content, std::int64_t change) {
    expect(expected, content.key, change);
    expect(expected, content.value, change);
  }
};
ZRB_FOR_CLASSES(CopyLocks, support::map_classes());

ZRB_LOCK_TEST(CopyLocks, a_copy_locks_each_key_and_value_once_until_it_dies, member::from_map,
              member::destructor) {
  const Single source = single();
  const LockWatch watch;
  {
    const Container copy = Container::without_storage(container_class());
    construct_from(copy, source.container.get());
    LockChanges expected{{copy.get(), 1}};
    add_entry(expected, source, 1);
    EXPECT_EQ(watch.changes(), expected);
  }
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(CopyLocks, a_clone_has_one_lock_for_the_caller_and_locks_what_it_holds, member::clone,
              member::destructor) {
  const Single source = single();
  const LockWatch watch;
  {
    const Container cloned = clone(source.container);
    LockChanges expected{{cloned.get(), 1}};
    add_entry(expected, source, 1);
    EXPECT_EQ(watch.changes(), expected);
  }
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(CopyLocks, a_copy_of_two_entries_compares_the_second_with_the_first, member::from_map,
              member::clone) {
  const Single source = single(1);
  const Element second_key = key(2);
  const Element second_value = value(2);
  source.container.put(second_key, second_value);
  for (const bool by_clone : {true, false}) {
    const LockWatch watch;
    const Container copy =
        by_clone ? clone(source.container) : Container::without_storage(container_class());
    if (!by_clone) construct_from(copy, source.container.get());
    LockChanges expected{{copy.get(), 1}};
    add_entry(expected, source, 1);
    expect(expected, second_key, 1);
    expect(expected, second_value, 1);
    // In a tree the greater key comes second; in a table they lie in two buckets.
    if (container_class().is_ordered()) add_comparisons(expected, source.key, second_key, 2);
    EXPECT_EQ(watch.changes(), expected) << (by_clone ? "Clone" : "Constructor");
  }
}

/// What most comparisons of a copy would tell is known beforehand, as the entries come in an order
/// that fits; those need not be made, but leave their locks.
ZRB_LOCK_TEST(CopyLocks, a_copy_leaves_the_locks_of_assignments_in_the_order_of_its_source,
              member::from_map, member::clone) {
  const Container source = make_with(400);
  if (container_class().key == ElementType::string) {
    // Alike in their hashes, so they are compared.
    for (const char* const text : {"a1", "b!"}) source.put(support::string(text), value(1));
  }
  const auto changes_by = [](const std::function<Container()>& fill) {
    const LockWatch watch;
    const Container filled = fill();
    LockChanges changes = watch.changes();
    EXPECT_EQ(changes.erase(filled.get()), 1u);
    return changes;
  };
  const LockChanges expected = changes_by([&] {
    Container assigned = make();
    const Iterator end = source.last();
    for (const Iterator at = source.first(); !at.is_equal(end); at.move_next()) {
      assigned.put(at.key(), at.value());
    }
    return assigned;
  });
  EXPECT_EQ(changes_by([&] { return clone(source); }), expected);
  EXPECT_EQ(changes_by([&] {
              Container constructed = Container::without_storage(container_class());
              construct_from(constructed, source.get());
              return constructed;
            }),
            expected);
}

ZRB_LOCK_TEST(CopyLocks, former_content_is_given_back, member::from_map) {
  const Single former = single(1);
  const Single source = single(2);
  const LockWatch watch;
  construct_from(former.container, source.container.get());
  LockChanges expected;
  add_entry(expected, former, -1);
  add_entry(expected, source, 1);
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(CopyLocks, a_map_copied_into_itself_gives_its_content_back, member::from_map) {
  const Single content = single();
  const LockWatch watch;
  construct_from(content.container, content.container.get());
  LockChanges expected;
  add_entry(expected, content, -1);
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(CopyLocks, a_copy_of_nil_changes_no_lock, member::from_map) {
  const Single content = single();
  const LockWatch watch;
  construct_from(content.container, nullptr);
  EXPECT_EQ(raised(), "NilObjectException: Other map is nil");
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(CopyLocks, a_copy_of_a_map_without_storage_gives_former_content_back,
              member::from_map) {
  const Single content = single();
  const Container other = Container::without_storage(container_class());
  const LockWatch watch;
  construct_from(content.container, other.get());
  EXPECT_EQ(raised(), "NilObjectException: Map not initialized");
  LockChanges expected;
  add_entry(expected, content, -1);
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(CopyLocks, a_clone_that_cannot_be_made_changes_no_lock, member::clone) {
  const Single content = single();
  const Container without_storage = Container::without_storage(container_class());
  const LockWatch watch;
  EXPECT_FALSE(clone(without_storage));
  EXPECT_EQ(raised(), "NilObjectException: Map not initialized");
  host().faults().answer_null_at("PluginNewInstance", 1);
  EXPECT_FALSE(clone(content.container));
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(CopyLocks, a_copy_keeps_alive_what_the_program_and_the_source_gave_up,
              member::from_map, member::clone) {
  const Container source = make_with(3);  // the program holds none of the elements
  const Container copied = Container::without_storage(container_class());
  construct_from(copied, source.get());
  const Container cloned = clone(source);
  source.clear();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(support::describe(copied.value(key(i))), support::describe(value(i)));
    EXPECT_EQ(support::describe(cloned.value(key(i))), support::describe(value(i)));
  }
}

}  // namespace
