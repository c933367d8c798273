// Hashed storage alone, without any host.
#include "keys/hashed_storage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <ext/hash_set>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include "keys/integer_key.h"
#include "storage_inspectors.h"
#include "troubled_key.h"

namespace {

using IntegerSet = HashedStorage<std::int32_t, NoValue, IntegerHash, IntegerEqual>;
using IntegerMap = HashedStorage<std::int32_t, std::int32_t, IntegerHash, IntegerEqual>;
using TroubledSet = HashedStorage<TroubledKey, NoValue, TroubledHash, TroubledEqual>;

template <class Storage>
std::vector<std::int32_t> keys_in_order(Storage& storage) {
  std::vector<std::int32_t> keys;
  storage.for_each([&](const auto& entry) {
    keys.push_back(number_of(entry.key));
    return true;
  });
  return keys;
}

template <class Storage>
std::vector<std::int32_t> keys_by_stepping(Storage& storage) {
  std::vector<std::int32_t> keys;
  for (auto position = storage.begin(); !position.is_end(); Storage::advance(position)) {
    keys.push_back(number_of(position.entry().key));
  }
  return keys;
}

TEST(HashedStorage, a_hint_of_100_gives_193_buckets) {
  EXPECT_EQ(IntegerSet().bucket_count(), 193U);
  EXPECT_EQ(IntegerSet(1).bucket_count(), 53U);
  EXPECT_EQ(IntegerSet(53).bucket_count(), 53U);
  EXPECT_EQ(IntegerSet(54).bucket_count(), 97U);
}

TEST(HashedStorage, bucket_sizes_are_the_28_ascending_primes) {
  EXPECT_EQ(bucket_sizes.size(), 28U);
  EXPECT_TRUE(std::ranges::is_sorted(bucket_sizes));
  for (const std::uint64_t size : bucket_sizes) {
    for (std::uint64_t divisor = 2; divisor * divisor <= size; ++divisor) {
      ASSERT_NE(size % divisor, 0U) << size;
    }
  }
  EXPECT_EQ(bucket_size_for(4294967291U), 4294967291U);
  EXPECT_EQ(bucket_size_for(4294967292U), 4294967291U);
}

TEST(HashedStorage, grows_at_the_194th_and_the_390th_element_and_never_shrinks) {
  IntegerSet set;
  for (std::int32_t key = 0; key < 193; ++key) set.insert_unique(key);
  EXPECT_EQ(set.bucket_count(), 193U);
  set.insert_unique(193);
  EXPECT_EQ(set.bucket_count(), 389U);
  for (std::int32_t key = 194; key < 389; ++key) set.insert_unique(key);
  EXPECT_EQ(set.bucket_count(), 389U);
  set.insert_unique(389);
  EXPECT_EQ(set.bucket_count(), 769U);
  for (std::int32_t key = 0; key <= 389; ++key) EXPECT_EQ(set.erase(key), 1U);
  EXPECT_EQ(set.bucket_count(), 769U);
  EXPECT_TRUE(set.empty());
  EXPECT_TRUE(HashedStorageInspector::check(set));
}

TEST(HashedStorage, grows_before_it_finds_that_the_key_is_there) {
  IntegerSet set;
  for (std::int32_t key = 0; key < 193; ++key) set.insert_unique(key);
  EXPECT_FALSE(set.insert_unique(7).inserted);
  EXPECT_EQ(set.size(), 193U);
  EXPECT_EQ(set.bucket_count(), 389U);
}

TEST(HashedStorage, visits_the_newest_key_of_a_bucket_first) {
  IntegerSet set;
  for (const std::int32_t key : {5, 5 + 193, 5 + 2 * 193}) set.insert_unique(key);
  EXPECT_EQ(keys_in_order(set), (std::vector<std::int32_t>{5 + 2 * 193, 5 + 193, 5}));
}

TEST(HashedStorage, buckets_negative_keys_as_unsigned) {
  IntegerSet set;
  set.insert_unique(-1);
  set.insert_unique(static_cast<std::int32_t>(4294967295U % 193U));
  EXPECT_EQ(keys_in_order(set), (std::vector<std::int32_t>{4294967295U % 193U, -1}));
}

TEST(HashedStorage, keeps_the_order_of_the_witness_through_growth_and_removal) {
  struct Identity {
    std::size_t operator()(std::uint32_t key) const { return key; }
  };
  IntegerSet set;
  __gnu_cxx::hash_set<std::uint32_t, Identity> witness(100);
  std::mt19937 random(42);
  for (int step = 0; step < 20000; ++step) {
    const auto key = static_cast<std::int32_t>(random() % 4000) - 2000;
    const auto hash = static_cast<std::uint32_t>(key);
    if (random() % 3 != 0) {
      EXPECT_EQ(set.insert_unique(key).inserted, witness.insert(hash).second);
    } else {
      EXPECT_EQ(set.erase(key), witness.erase(hash));
    }
    if (step % 500 != 0) continue;
    ASSERT_EQ(set.bucket_count(), witness.bucket_count());
    ASSERT_EQ(keys_in_order(set), std::vector<std::int32_t>(witness.begin(), witness.end()));
    ASSERT_EQ(keys_by_stepping(set), keys_in_order(set));
    ASSERT_TRUE(HashedStorageInspector::check(set));
  }
}

TEST(HashedStorage, steps_through_tables_larger_than_the_cache_in_order) {
  IntegerSet set;
  std::mt19937 random(3);
  while (set.size() < 70000) set.insert_unique(static_cast<std::int32_t>(random()));
  EXPECT_EQ(keys_by_stepping(set), keys_in_order(set));
  while (set.size() > 65535) set.erase(set.begin());
  EXPECT_EQ(keys_by_stepping(set), keys_in_order(set));
}

TEST(HashedStorage, steps_on_from_every_element_that_a_search_finds) {
  IntegerSet set;
  std::mt19937 random(4);
  while (set.size() < 1000) set.insert_unique(static_cast<std::int32_t>(random() % 5000));
  const std::vector<std::int32_t> keys = keys_in_order(set);
  for (std::size_t i = 0; i < keys.size(); ++i) {
    auto position = set.find(keys[i]);
    IntegerSet::advance(position);
    if (i + 1 == keys.size()) {
      ASSERT_TRUE(position.is_end());
    } else {
      ASSERT_FALSE(position.is_end());
      ASSERT_EQ(position.entry().key, keys[i + 1]);
    }
  }
}

TEST(HashedStorage, steps_of_several_positions_at_once_come_to_every_element) {
  IntegerSet set;
  std::mt19937 random(6);
  while (set.size() < 300) set.insert_unique(static_cast<std::int32_t>(random() % 5000));
  const std::vector<std::int32_t> keys = keys_in_order(set);
  std::vector<IntegerSet::Position> positions(3, set.begin());
  std::vector<std::size_t> steps(3, 0);
  for (int step = 0; step < 3000; ++step) {
    const std::size_t who = random() % positions.size();
    if (positions[who].is_end()) continue;
    ASSERT_EQ(positions[who].entry().key, keys[steps[who]]);
    IntegerSet::advance(positions[who]);
    ++steps[who];
  }
  for (std::size_t who = 0; who < positions.size(); ++who) {
    EXPECT_TRUE(positions[who].is_end());
    EXPECT_EQ(steps[who], keys.size());
  }
}

TEST(HashedStorage, steps_see_what_was_added_and_removed_behind_them) {
  IntegerSet set;
  for (std::int32_t key = 0; key < 100; key += 2) set.insert_unique(key);
  std::vector<std::int32_t> visited;
  for (auto at = set.begin(); !at.is_end(); IntegerSet::advance(at)) {
    const std::int32_t key = at.entry().key;
    visited.push_back(key);
    if (key % 4 == 0) set.erase(key + 2);
    if (key % 10 == 0) set.insert_unique(key + 1);
  }
  std::vector<std::int32_t> expected;
  for (std::int32_t key = 0; key < 100; ++key) {
    const bool was_added = key % 10 == 1 && (key - 1) % 4 == 0;
    if (key % 4 == 0 || was_added) expected.push_back(key);
  }
  EXPECT_EQ(visited, expected);
}

// Growth takes the elements to other buckets than the one that a position has come to.
TEST(HashedStorage, steps_on_in_the_new_order_after_growth) {
  IntegerSet set;
  std::mt19937 random(5);
  while (set.size() < 190) set.insert_unique(static_cast<std::int32_t>(random()));
  for (int steps = 0; steps < 190; steps += 7) {
    auto position = set.begin();
    for (int step = 0; step < steps; ++step) IntegerSet::advance(position);
    const std::int32_t key = position.entry().key;
    const std::uint32_t buckets = set.bucket_count();
    while (set.bucket_count() == buckets) set.insert_unique(static_cast<std::int32_t>(random()));
    const std::vector<std::int32_t> keys = keys_in_order(set);
    IntegerSet::advance(position);
    for (auto next = std::ranges::find(keys, key) + 1; next != keys.end(); ++next) {
      ASSERT_FALSE(position.is_end());
      ASSERT_EQ(position.entry().key, *next);
      IntegerSet::advance(position);
    }
    ASSERT_TRUE(position.is_end());
    if (set.size() > 20000) break;
  }
}

// Chains of larger tables are searched in another way.
TEST(HashedStorage, finds_keys_at_every_place_of_a_chain_and_no_others) {
  for (const std::uint32_t others : {0U, 140000U}) {
    IntegerMap map;
    std::int32_t other = std::numeric_limits<std::int32_t>::min();
    while (map.size() < others) map.insert_unique(other++);
    const auto buckets = static_cast<std::int32_t>(map.bucket_count());
    for (const std::int32_t first : {0, 3, -2 * buckets}) {
      for (std::int32_t length = 0; length < 6; ++length) {
        for (std::int32_t i = 0; i < 6; ++i) {
          const std::int32_t key = first + i * buckets;
          ASSERT_EQ(map.count(key), i < length ? 1U : 0U) << others << ' ' << key;
          ASSERT_EQ(map.value_or(key, -1), i < length ? i : -1) << others << ' ' << key;
        }
        map.insert_unique(first + length * buckets).entry.value = length;
      }
      for (std::int32_t i = 0; i < 6; ++i) map.erase(first + i * buckets);
    }
  }
}

// The content in order, with the values, of a copy and of a table filled one by one.
using Contents = std::vector<std::pair<std::int32_t, std::int32_t>>;

Contents contents_of(IntegerMap& map) {
  Contents contents;
  map.for_each([&](const auto& entry) {
    contents.emplace_back(entry.key, entry.value);
    return true;
  });
  return contents;
}

void expect_copied_as_if_inserted(IntegerMap& source, std::uint32_t size_hint) {
  IntegerMap inserted(size_hint);
  source.for_each([&](const auto& entry) {
    inserted.insert_unique(entry.key).entry.value = entry.value;
    return true;
  });
  IntegerMap copied(size_hint);
  copied.copy_from(source);
  EXPECT_EQ(copied.size(), source.size());
  EXPECT_EQ(copied.bucket_count(), inserted.bucket_count());
  EXPECT_EQ(contents_of(copied), contents_of(inserted)) << source.size() << " elements";
  EXPECT_TRUE(HashedStorageInspector::check(copied));
}

TEST(HashedStorage, copies_in_the_order_that_inserting_one_by_one_gives) {
  std::mt19937 random(6);
  for (const std::uint32_t more : {0U, 100000U}) {
    IntegerMap source(more);  // with more buckets, another order to begin with
    for (const std::uint32_t size : {0U, 1U, 53U, 54U, 193U, 194U, 389U, 390U, 391U, 769U, 770U,
                                     1000U, 6151U, 6152U, 20000U}) {
      while (source.size() < size) {
        const auto key = static_cast<std::int32_t>(random());
        source.insert_unique(key).entry.value = key / 3;
      }
      expect_copied_as_if_inserted(source, 100);
      expect_copied_as_if_inserted(source, 1);
    }
  }
}

// Keys at distances of products of bucket counts stay in one bucket through several growth steps.
TEST(HashedStorage, copies_keys_that_stay_together_through_growth_in_the_order_of_insertion) {
  for (const std::int32_t distance :
       {193, 193 * 389, 389 * 769, 193 * 389 * 769, 389 * 769 * 1543}) {
    IntegerMap source(2000);
    std::mt19937 random(7);
    const std::int32_t most = std::min(2'000'000'000 / distance, 1500);
    for (std::int32_t i = 0; i < most; ++i) source.insert_unique(i * distance);
    for (const std::uint32_t size : {190U, 200U, 400U, 800U, 1600U}) {
      while (source.size() < size) source.insert_unique(static_cast<std::int32_t>(random()));
      expect_copied_as_if_inserted(source, 100);
    }
  }
}

TEST(HashedStorage, agrees_with_a_map_over_random_operations) {
  IntegerMap map;
  std::map<std::int32_t, std::int32_t> model;
  std::mt19937 random(7);
  for (std::int32_t step = 0; step < 100000; ++step) {
    const auto key = static_cast<std::int32_t>(random() % 3000);
    switch (random() % 4) {
      case 0:
        ASSERT_EQ(map.erase(key), model.erase(key));
        break;
      case 1:
        ASSERT_EQ(map.count(key), model.count(key));
        ASSERT_EQ(map.value_or(key, -1), model.contains(key) ? model[key] : -1);
        break;
      default:
        map.insert_unique(key).entry.value = step;
        model[key] = step;
    }
    ASSERT_EQ(map.size(), model.size());
  }
  for (const auto& [key, value] : model) EXPECT_EQ(map.find(key).entry().value, value);
  EXPECT_TRUE(HashedStorageInspector::check(map));
}

TEST(HashedStorage, takes_no_absent_key_for_one_with_the_value_0) {
  IntegerMap map;
  EXPECT_EQ(map.value_or(0, 5), 5);
  map.insert_unique(193).entry.value = 1;
  EXPECT_EQ(map.value_or(0, 5), 5);
  map.insert_unique(0).entry.value = 2;
  EXPECT_EQ(map.value_or(0, 5), 2);
  map.insert_unique(-1).entry.value = -2;
  EXPECT_EQ(map.value_or(-1, 5), -2);
}

TEST(HashedStorage, removes_ranges_within_and_across_buckets) {
  for (std::size_t first = 0; first <= 12; ++first) {
    for (std::size_t last = first; last <= 12; ++last) {
      IntegerSet set;
      for (const std::int32_t key : {1, 194, 387, 2, 195, 7, 90, 283, 192, 385, 578, 771}) {
        set.insert_unique(key);
      }
      std::vector<std::int32_t> expected = keys_in_order(set);
      std::vector<IntegerSet::Position> positions;
      for (auto at = set.begin(); !at.is_end(); IntegerSet::advance(at)) positions.push_back(at);
      positions.push_back(set.end());
      set.erase(positions[first], positions[last]);
      expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(first),
                     expected.begin() + static_cast<std::ptrdiff_t>(last));
      ASSERT_EQ(keys_in_order(set), expected) << first << " to " << last;
      ASSERT_TRUE(HashedStorageInspector::check(set));
    }
  }
}

TEST(HashedStorage, removes_by_position_and_ignores_the_end) {
  IntegerSet set;
  for (std::int32_t key = 0; key < 400; ++key) set.insert_unique(key * 193);
  set.erase(set.find(5 * 193));
  EXPECT_EQ(set.count(5 * 193), 0U);
  set.erase(set.end());
  EXPECT_EQ(set.size(), 399U);
  EXPECT_TRUE(HashedStorageInspector::check(set));
}

TEST(HashedStorage, clear_keeps_the_buckets) {
  IntegerSet set;
  for (std::int32_t key = 0; key < 300; ++key) set.insert_unique(key);
  set.clear();
  EXPECT_TRUE(set.empty());
  EXPECT_TRUE(set.begin() == set.end());
  EXPECT_EQ(set.bucket_count(), 389U);
  set.insert_unique(1);
  EXPECT_EQ(keys_in_order(set), std::vector<std::int32_t>{1});
}

TEST(HashedStorage, stays_at_the_end) {
  IntegerSet set;
  auto position = set.end();
  IntegerSet::advance(position);
  EXPECT_TRUE(position.is_end());
}

TEST(HashedStorage, reports_the_largest_unsigned_number_as_its_limit) {
  EXPECT_EQ(IntegerSet::max_size(), 4294967295U);
}

TEST(HashedStorage, keeps_nothing_alive_after_its_death) {
  {
    TroubledSet set;
    for (std::int32_t key = 0; key < 1000; ++key) set.insert_unique(TroubledKey(key));
    EXPECT_EQ(TroubledKey::alive, 1000);
  }
  EXPECT_EQ(TroubledKey::alive, 0);
}

TEST(HashedStorage, loses_the_moved_elements_when_a_hash_throws_during_growth) {
  for (int nth = 1; nth <= 193; ++nth) {
    TroubledSet set;
    for (std::int32_t key = 0; key < 193; ++key) set.insert_unique(TroubledKey(key));
    TroubledKey::arm(TroubledKey::Hashing, nth);
    EXPECT_THROW(set.insert_unique(TroubledKey(1000)), Trouble);
    TroubledKey::arm(TroubledKey::All, 0);
    const auto left = static_cast<std::uint32_t>(193 - (nth - 1));
    ASSERT_EQ(set.size(), left);
    ASSERT_EQ(set.bucket_count(), 193U);
    ASSERT_EQ(TroubledKey::alive, static_cast<int>(left));
    ASSERT_TRUE(HashedStorageInspector::check(set));
  }
}

TEST(HashedStorage, an_insertion_that_fails_without_growth_changes_nothing) {
  for (int nth = 1; nth <= 5; ++nth) {
    TroubledSet set;
    for (const std::int32_t key : {1, 194, 387}) set.insert_unique(TroubledKey(key));
    TroubledKey::arm(TroubledKey::Hashing | TroubledKey::Comparison | TroubledKey::Copying, nth);
    EXPECT_THROW(set.insert_unique(TroubledKey(580)), Trouble) << nth;
    TroubledKey::arm(TroubledKey::All, 0);
    ASSERT_EQ(keys_in_order(set), (std::vector<std::int32_t>{387, 194, 1}));
    ASSERT_EQ(TroubledKey::alive, 3);
    EXPECT_TRUE(set.insert_unique(TroubledKey(580)).inserted);
  }
}

TEST(HashedStorage, clear_finishes_although_elements_throw) {
  for (int nth = 1; nth <= 300; nth += 13) {
    TroubledSet set;
    for (std::int32_t key = 0; key < 300; ++key) set.insert_unique(TroubledKey(key));
    TroubledKey::arm(TroubledKey::Destruction, nth);
    EXPECT_THROW(set.clear(), Trouble);
    TroubledKey::arm(TroubledKey::All, 0);
    EXPECT_TRUE(set.empty());
    ASSERT_EQ(TroubledKey::alive, 0);
    ASSERT_TRUE(HashedStorageInspector::check(set));
  }
}

TEST(HashedStorage, a_removal_that_throws_has_removed) {
  TroubledSet set;
  for (std::int32_t key = 0; key < 10; ++key) set.insert_unique(TroubledKey(key));
  TroubledKey::arm(TroubledKey::Destruction, 1);
  EXPECT_THROW(set.erase(TroubledKey(3)), Trouble);
  TroubledKey::arm(TroubledKey::All, 0);
  EXPECT_EQ(set.count(TroubledKey(3)), 0U);
  EXPECT_EQ(set.size(), 9U);
  EXPECT_EQ(TroubledKey::alive, 9);
  EXPECT_TRUE(HashedStorageInspector::check(set));
}

struct Equal1And390 {
  bool operator()(std::int32_t a, std::int32_t b) const {
    return (a == 390 ? 1 : a) == (b == 390 ? 1 : b);
  }
};

// As texts that are alike up to a zero byte are equal and hash differently.
TEST(HashedStorage, removes_all_equal_keys_that_growth_brought_into_one_bucket) {
  HashedStorage<std::int32_t, NoValue, IntegerHash, Equal1And390> set;
  EXPECT_TRUE(set.insert_unique(1).inserted);
  EXPECT_TRUE(set.insert_unique(390).inserted);
  EXPECT_EQ(set.erase(390), 1U);
  EXPECT_TRUE(set.insert_unique(390).inserted);
  for (std::int32_t key = 1000; set.bucket_count() == 193; ++key) set.insert_unique(key);
  EXPECT_EQ(set.bucket_count(), 389U);
  EXPECT_EQ(set.erase(1), 2U);
  EXPECT_TRUE(HashedStorageInspector::check(set));
}

TEST(HashedStorage, refuses_more_buckets_than_the_host_could_address) {
  EXPECT_THROW(IntegerSet(1610612741U), std::bad_alloc);
}

TEST(HashedStorage, finds_all_keys_of_one_bucket) {
  IntegerSet set(50000);
  const auto buckets = static_cast<std::int32_t>(set.bucket_count());
  for (std::int32_t i = 0; i < 500; ++i) set.insert_unique(i * buckets);
  for (std::int32_t i = 0; i < 500; ++i) EXPECT_EQ(set.count(i * buckets), 1U);
  EXPECT_EQ(set.count(3), 0U);
}

}  // namespace
