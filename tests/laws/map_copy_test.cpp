// Maps copied: by the constructor from another map, and by `Clone`.
#include <cstdint>
#include <initializer_list>
#include <string>
#include <variant>
#include <vector>

#include "runtime/encodings.h"
#include "runtime/services.h"
#include "support/bucket_witness.h"
#include "support/lock_changes.h"
#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;
using support::LockWatch;

class MapCopy : public support::ClassTest {
 protected:
  static void construct_from(const Container& map, REALobject other) {
    map.call<void>("Constructor(other as {Class})", other);
  }
  Container clone(const Container& map) const {
    return Container::adopt(container_class(), map.call<REALobject>("Clone as {Class}"));
  }
  Container copy(const Container& map) const {
    const Container result = Container::without_storage(container_class());
    construct_from(result, map.get());
    return result;
  }
  /// What a map shows that received a map's entries one after the other.
  std::vector<std::string> refilled_order(const Container& map) const {
    const Container fresh = make();
    for (const Element& key : map.keys()) fresh.assign_value(key, map.value(key));
    return fresh.described_keys();
  }
};
class OrderedMapCopy : public MapCopy {};
class OrderedTextMapCopy : public MapCopy {};
class HashedMapCopy : public MapCopy {};
class HashedTextMapCopy : public MapCopy {
 protected:
  Container make_with_texts(std::initializer_list<Element> keys) const {
    const Container map = make();
    for (const Element& key : keys) map.put(key, value(1));
    return map;
  }
  void expect_copies_like_refilled(const Container& source, std::int32_t count) const {
    for (const Container& copied : {copy(source), clone(source)}) {
      EXPECT_EQ(copied.count(), count);
      EXPECT_EQ(copied.described_keys(), refilled_order(source));
    }
  }
};
ZRB_FOR_CLASSES(MapCopy, support::map_classes());
ZRB_FOR_CLASSES(OrderedMapCopy, support::classes_where([](const support::ContainerClass& c) {
                  return c.is_map() && c.is_ordered();
                }));
ZRB_FOR_CLASSES(OrderedTextMapCopy, support::classes_where([](const support::ContainerClass& c) {
                  return c.is_map() && c.is_ordered() && c.key == support::ElementType::string;
                }));
ZRB_FOR_CLASSES(HashedTextMapCopy, support::classes_where([](const support::ContainerClass& c) {
                  return c.is_map() && c.is_hashed() && c.key == support::ElementType::string;
                }));
ZRB_FOR_CLASSES(HashedMapCopy, support::classes_where([](const support::ContainerClass& c) {
                  return c.is_map() && c.is_hashed();
                }));

TEST_P(MapCopy, a_copy_has_every_entry) {
  const Container source = make_with(250);
  for (const Container& copied : {copy(source), clone(source)}) {
    EXPECT_EQ(copied.count(), 250);
    for (int i = 0; i < 250; ++i) {
      ASSERT_EQ(support::describe(copied.value(key(i))), support::describe(value(i)));
    }
    EXPECT_EQ(copied.described_keys(), refilled_order(source));
  }
  EXPECT_EQ(source.count(), 250);
}

TEST_P(OrderedMapCopy, a_copy_keeps_the_order) {
  const Container source = make_with(100);
  EXPECT_EQ(clone(source).described_keys(), source.described_keys());
  EXPECT_EQ(copy(source).described_keys(), source.described_keys());
}

TEST_P(OrderedTextMapCopy, a_copy_reads_no_text) {
  const Container source = make_with(100);
  host().calls().reset();
  const Container copies[] = {copy(source), clone(source)};
  EXPECT_EQ(host().calls().of("PluginGetStringData"), 0U);
  for (const Container& copied : copies) EXPECT_EQ(copied.count(), 100);
}

TEST_P(HashedTextMapCopy, a_copy_reads_each_text_once) {
  const Container source = make_with(1000);
  host().calls().reset();
  const Container copied = clone(source);
  EXPECT_EQ(host().calls().of("PluginGetStringData"), 1000U);
  EXPECT_EQ(copied.count(), 1000);
}

TEST_P(HashedTextMapCopy, texts_that_hash_alike_stay_apart) {
  ASSERT_EQ(support::elf_hash("a1"), support::elf_hash("b!"));
  expect_copies_like_refilled(
      make_with_texts({support::string("a1"), support::string("c"), support::string("b!")}), 3);
}

// They hash differently, so they are found only where they share a bucket, which they do here in
// 193 buckets, not in 389.
TEST_P(HashedTextMapCopy, texts_that_are_equal_up_to_a_zero_byte_become_one_where_they_meet) {
  const Container source = make_with(200);
  const std::string shorter = "key";
  std::string longer;
  const auto meet_in = [&](std::uint32_t buckets) {
    return support::elf_hash(shorter) % buckets == support::elf_hash(longer) % buckets;
  };
  for (int i = 0; longer.empty() || !meet_in(193) || meet_in(389); ++i) {
    longer = shorter + '\0' + std::to_string(i);
  }
  source.put(support::string(longer), value(1));
  source.put(support::string(shorter), value(2));
  for (int i = 0; i < 200; i += 2) EXPECT_EQ(source.remove(key(i)), 1);
  EXPECT_EQ(source.count(), 102);
  expect_copies_like_refilled(source, 101);
}

// Nothing tells the table that a text has changed since: it lies where its former hash put it.
TEST_P(HashedTextMapCopy, texts_that_the_host_came_to_read_as_one_become_one_where_they_meet) {
  for (char letter = 'a'; letter <= 'z'; ++letter) {
    const std::string text(2, letter);
    const Element changing = support::string(text, host_encoding::utf16);
    const Container source = make_with_texts({support::string("x"), changing, support::string("y"),
                                              support::string(text), support::string("z")});
    standin::services::set_string_encoding(std::get<standin::StringRef>(changing).get(),
                                           host_encoding::utf8);
    EXPECT_EQ(source.count(), 5);
    expect_copies_like_refilled(source, 4);
  }
}

TEST_P(HashedMapCopy, a_copied_table_starts_from_193_buckets_again) {
  const Container source = make_with(400);
  source.remove(source.find(key(7)), source.last());
  while (source.count() > 100) source.remove(source.first());
  EXPECT_EQ(source.bin_count(), 769);
  EXPECT_EQ(clone(source).bin_count(), 193);
  EXPECT_EQ(copy(source).bin_count(), 193);
}

TEST_P(MapCopy, an_empty_map_has_an_empty_clone) {
  const Container cloned = clone(make());
  EXPECT_EQ(cloned.count(), 0);
  EXPECT_TRUE(cloned.empty());
  cloned.put(1);
  EXPECT_EQ(cloned.count(), 1);
}

TEST_P(MapCopy, the_clone_is_an_instance_of_the_class_and_belongs_to_the_caller) {
  const Container map = make_with(1);
  const Container cloned = clone(map);
  EXPECT_NE(cloned.get(), map.get());
  EXPECT_EQ(standin::class_of(cloned.get()), standin::class_of(map.get()));
  EXPECT_EQ(standin::lock_count(cloned.get()), 1u);
}

TEST_P(MapCopy, changes_of_the_copy_do_not_reach_the_source) {
  const Container source = make_with(10);
  const Container copied = clone(source);
  copied.assign_value(key(3), value(99));
  copied.remove(key(4));
  EXPECT_EQ(support::describe(source.value(key(3))), support::describe(value(3)));
  EXPECT_TRUE(source.contains(key(4)));
  source.clear();
  EXPECT_EQ(copied.count(), 9);
  EXPECT_EQ(support::describe(copied.value(key(3))), support::describe(value(99)));
}

TEST_P(MapCopy, copies_share_the_objects_with_a_lock_each) {
  const Element stored_key = key(1);
  const Element stored_value = value(1);
  const Container source = make();
  source.assign_value(stored_key, stored_value);
  const LockWatch watch;
  {
    const Container cloned = clone(source);
    const Container copied = copy(source);
    EXPECT_EQ(watch.change(stored_key), 2 * support::one_lock(stored_key));
    EXPECT_EQ(watch.change(stored_value), 2 * support::one_lock(stored_value));
    EXPECT_EQ(support::handle(cloned.first().key()), support::handle(stored_key));
  }
  EXPECT_EQ(watch.changes(), support::LockChanges());
}

TEST_P(MapCopy, the_content_that_a_copy_had_before_is_released) {
  const Element former_key = key(1);
  const Element former_value = value(1);
  const Container map = make();
  map.assign_value(former_key, former_value);
  construct_from(map, make_with(0).get());
  EXPECT_EQ(map.count(), 0);
  EXPECT_EQ(support::locks(former_key), support::one_lock(former_key));
  EXPECT_EQ(support::locks(former_value), support::one_lock(former_value));
}

TEST_P(MapCopy, a_map_copied_into_itself_is_empty) {
  const Container map = make_with(5);
  construct_from(map, map.get());
  EXPECT_EQ(map.count(), 0);
  map.put(1);
  EXPECT_EQ(map.count(), 1);
}

TEST_P(MapCopy, of_nil_raises_and_changes_nothing) {
  const Container map = make_with(3);
  construct_from(map, nullptr);
  EXPECT_EQ(raised(), "NilObjectException: Other map is nil");
  EXPECT_EQ(map.count(), 3);
  const Container fresh = Container::without_storage(container_class());
  construct_from(fresh, nullptr);
  EXPECT_EQ(raised(), "NilObjectException: Other map is nil");
  EXPECT_EQ(fresh.first_word(), nullptr);
}

TEST_P(MapCopy, of_a_map_without_storage_raises_and_leaves_an_empty_map) {
  const Container map = make_with(3);
  construct_from(map, Container::without_storage(container_class()).get());
  EXPECT_EQ(raised(), "NilObjectException: Map not initialized");
  EXPECT_EQ(map.count(), 0);
  EXPECT_EQ(raised(), "");
  const Container fresh = Container::without_storage(container_class());
  construct_from(fresh, Container::without_storage(container_class()).get());
  EXPECT_EQ(raised(), "NilObjectException: Map not initialized");
  fresh.put(1);
  EXPECT_EQ(fresh.count(), 1);
}

TEST_P(MapCopy, a_clone_of_a_map_without_storage_is_nil) {
  const auto live = host().ledger().live_count();
  {
    const Container map = Container::without_storage(container_class());
    EXPECT_FALSE(clone(map));
    EXPECT_EQ(raised(), "NilObjectException: Map not initialized");
  }
  EXPECT_EQ(host().ledger().live_count(), live);
}

TEST_P(MapCopy, a_host_that_makes_no_clone_gets_nil_and_an_unchanged_map) {
  const Container map = make_with(3);
  const LockWatch watch;
  host().faults().answer_null_at("PluginNewInstance", 1);
  EXPECT_FALSE(clone(map));
  host().faults().clear();
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(watch.changes(), support::LockChanges());
  EXPECT_EQ(map.count(), 3);
}

TEST_P(MapCopy, arrays_made_before_are_dropped) {
  const Container map = make_with(3);
  const auto keys = standin::ArrayRef::adopt(map.call<REALarray>("Keys as {K}()"));
  construct_from(map, make_with(1).get());
  EXPECT_EQ(standin::lock_count(keys.get()), 1u);
}

}  // namespace
