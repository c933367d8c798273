// Locks of hashed keys that share a bucket: a search compares the keys of the chain from its head
// until one is equal, a removal compares them all, and growth compares none.
#include "laws/locks/lock_test.h"
#include "support/bucket_witness.h"

namespace {

using support::expect;

class ChainLocks : public locks::LockTest {
 protected:
  static constexpr std::size_t length = 3;

  /// Keys 0, 1 and 2 of one bucket; the newest, 2, is the head of the chain.
  struct Chain {
    Container container;
    std::vector<Element> keys, values;
  };
  Chain chain() const {
    Chain result{make(), {}, {}};
    for (int i = 0; i < static_cast<int>(length); ++i) {
      result.keys.push_back(key_of_bucket(i));
      result.values.push_back(value(i));
      result.container.put(result.keys.back(), result.values.back());
    }
    return result;
  }
  /// What is left when `sought` was compared with the chain from its head down to key `last`.
  static LockChanges compared_down_to(std::size_t last, const Chain& chain, const Element& sought) {
    LockChanges expected;
    for (std::size_t i = last; i < length; ++i) add_comparisons(expected, sought, chain.keys[i]);
    return expected;
  }
};
ZRB_FOR_CLASSES(ChainLocks, support::hashed_classes());

ZRB_LOCK_TEST(ChainLocks, a_search_compares_from_the_head_to_the_equal_key, member::set_lookup,
              member::has_key, member::count_key, member::find, member::value, member::map_lookup) {
  for (const Search& search : searches()) {
    for (std::size_t index = 0; index < length; ++index) {
      const Chain chained = chain();
      const Element sought = key_of_bucket(static_cast<int>(index));
      const LockWatch watch;
      search.run(chained.container, sought);
      EXPECT_EQ(watch.changes(), compared_down_to(index, chained, sought))
          << search.name << " " << index;
    }
  }
}

ZRB_LOCK_TEST(ChainLocks, a_search_for_an_absent_key_compares_the_whole_chain, member::set_lookup,
              member::has_key, member::count_key, member::find, member::value, member::map_lookup) {
  for (const Search& search : searches()) {
    const Chain chained = chain();
    const Element sought = key_of_bucket(length);
    const LockWatch watch;
    search.run(chained.container, sought);
    EXPECT_EQ(watch.changes(), compared_down_to(0, chained, sought)) << search.name;
  }
}

ZRB_LOCK_TEST(ChainLocks, a_key_of_another_bucket_is_compared_with_none, member::set_lookup,
              member::has_key, member::count_key, member::find, member::value, member::map_lookup,
              member::remove_key) {
  const Chain chained = chain();
  int elsewhere = 0;
  while (support::expected_hash(key(elsewhere)) % 193 == 42) ++elsewhere;
  const Element sought = key(elsewhere);
  const LockWatch watch;
  for (const Search& search : searches()) search.run(chained.container, sought);
  EXPECT_EQ(chained.container.remove(sought), 0);
  EXPECT_EQ(watch.changes(), LockChanges());
}

ZRB_LOCK_TEST(ChainLocks, a_new_key_is_compared_with_the_whole_chain, member::insert,
              member::set_value) {
  const Chain chained = chain();
  const Element new_key = key_of_bucket(length);
  const Element new_value = value(7);
  const LockWatch watch;
  chained.container.put(new_key, new_value);
  LockChanges expected = compared_down_to(0, chained, new_key);
  expect(expected, new_key, 1);
  if (container_class().is_map()) expect(expected, new_value, 1);
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(ChainLocks, an_equal_key_is_compared_down_to_its_twin, member::insert,
              member::set_value) {
  for (std::size_t index = 0; index < length; ++index) {
    const Chain chained = chain();
    const Element equal_key = key_of_bucket(static_cast<int>(index));
    const Element new_value = value(7);
    const LockWatch watch;
    chained.container.put(equal_key, new_value);
    LockChanges expected = compared_down_to(index, chained, equal_key);
    if (container_class().is_map()) {
      expect(expected, chained.values[index], -1);
      expect(expected, new_value, 1);
    }
    EXPECT_EQ(watch.changes(), expected) << index;
  }
}

ZRB_LOCK_TEST(ChainLocks, removing_a_key_compares_the_whole_chain, member::remove_key) {
  for (std::size_t index = 0; index <= length; ++index) {
    const bool present = index < length;
    const Chain chained = chain();
    const Element sought = key_of_bucket(static_cast<int>(index));
    const LockWatch watch;
    EXPECT_EQ(chained.container.remove(sought), present ? 1 : 0);
    LockChanges expected = compared_down_to(0, chained, sought);
    if (present) {
      expect(expected, chained.keys[index], -1);
      if (container_class().is_map()) expect(expected, chained.values[index], -1);
    }
    EXPECT_EQ(watch.changes(), expected) << index;
  }
}

ZRB_LOCK_TEST(ChainLocks, removing_by_iterators_compares_nothing, member::remove_at,
              member::remove_range) {
  const Chain chained = chain();
  const Iterator second = chained.container.first();
  second.move_next();
  const LockWatch watch;
  chained.container.remove(second);
  LockChanges expected;
  expect(expected, chained.keys[1], -1);
  if (container_class().is_map()) expect(expected, chained.values[1], -1);
  EXPECT_EQ(watch.changes(), expected);

  chained.container.remove(chained.container.first(), chained.container.last());
  for (const std::size_t index : {0U, 2U}) {
    expect(expected, chained.keys[index], -1);
    if (container_class().is_map()) expect(expected, chained.values[index], -1);
  }
  EXPECT_EQ(watch.changes(), expected);
}

ZRB_LOCK_TEST(ChainLocks, growth_compares_nothing, member::insert, member::set_value) {
  const Container container = make();
  std::vector<std::pair<Element, Element>> entries;
  std::set<std::uint32_t> taken;  // of the buckets after growth
  for (int i = 0; i < 193; ++i) {
    entries.emplace_back(key(i), value(i));
    container.put(entries.back().first, entries.back().second);
    taken.insert(support::expected_hash(entries.back().first) % 389);
  }
  int index = 193;
  while (taken.contains(support::expected_hash(key(index)) % 389)) ++index;
  const Element new_key = key(index);
  const Element new_value = value(index);
  const LockWatch watch;
  container.put(new_key, new_value);
  ASSERT_EQ(container.bin_count(), 389);
  LockChanges expected;
  expect(expected, new_key, 1);
  if (container_class().is_map()) expect(expected, new_value, 1);
  EXPECT_EQ(watch.changes(), expected);
}

}  // namespace
