// Ordered storage alone, without any host.
#include "keys/ordered_storage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <map>
#include <numeric>
#include <random>
#include <vector>

#include "keys/integer_key.h"
#include "storage_inspectors.h"
#include "troubled_key.h"

namespace {

using IntegerSet = OrderedStorage<std::int32_t, NoValue, IntegerLess>;
using IntegerMap = OrderedStorage<std::int32_t, std::int32_t, IntegerLess>;
using TroubledSet = OrderedStorage<TroubledKey, NoValue, TroubledLess>;

template <class Storage>
auto keys_in_order(Storage& storage) {
  std::vector<std::remove_cvref_t<decltype(storage.begin().entry().key)>> keys;
  storage.for_each([&](const auto& entry) {
    keys.push_back(entry.key);
    return true;
  });
  return keys;
}

IntegerSet::Position at(IntegerSet& set, std::ptrdiff_t index) {
  auto position = set.begin();
  while (index-- > 0) IntegerSet::advance(position);
  return position;
}

TEST(OrderedStorage, visits_keys_in_ascending_order) {
  IntegerSet set;
  const auto smallest = std::numeric_limits<std::int32_t>::min();
  const auto largest = std::numeric_limits<std::int32_t>::max();
  for (const std::int32_t key : {5, -1, largest, 0, smallest}) set.insert_unique(key);
  EXPECT_EQ(keys_in_order(set), (std::vector<std::int32_t>{smallest, -1, 0, 5, largest}));
}

TEST(OrderedStorage, stays_balanced_for_ascending_descending_and_random_keys) {
  std::vector<std::int32_t> keys(3000);
  std::iota(keys.begin(), keys.end(), 0);
  std::mt19937 random(3);
  for (int round = 0; round < 3; ++round) {
    if (round == 1) std::ranges::reverse(keys);
    if (round == 2) std::ranges::shuffle(keys, random);
    IntegerSet set;
    for (const std::int32_t key : keys) {
      EXPECT_TRUE(set.insert_unique(key).inserted);
      if (key % 97 != 0) continue;
      ASSERT_TRUE(OrderedStorageInspector::check(set));
    }
    std::ranges::shuffle(keys, random);
    for (const std::int32_t key : keys) {
      EXPECT_EQ(set.erase(key), 1U);
      if (key % 97 != 0) continue;
      ASSERT_TRUE(OrderedStorageInspector::check(set));
    }
    EXPECT_TRUE(set.empty());
  }
}

TEST(OrderedStorage, is_sound_after_every_step_of_a_small_random_sequence) {
  for (std::uint32_t seed = 0; seed < 50; ++seed) {
    IntegerSet set;
    std::mt19937 random(seed);
    for (int step = 0; step < 400; ++step) {
      const auto key = static_cast<std::int32_t>(random() % 40);
      random() % 2 == 0 ? set.erase(key) : set.insert_unique(key).inserted;
      ASSERT_TRUE(OrderedStorageInspector::check(set)) << "seed " << seed << ", step " << step;
    }
  }
}

TEST(OrderedStorage, agrees_with_a_map_over_random_operations) {
  IntegerMap map;
  std::map<std::int32_t, std::int32_t> model;
  std::mt19937 random(11);
  for (std::int32_t step = 0; step < 100000; ++step) {
    const auto key = static_cast<std::int32_t>(random() % 3000) - 1500;
    switch (random() % 5) {
      case 0:
        ASSERT_EQ(map.erase(key), model.erase(key));
        break;
      case 1: {
        const auto lower = map.lower_bound(key);
        const auto expected = model.lower_bound(key);
        ASSERT_EQ(lower.is_end(), expected == model.end());
        if (lower.is_end()) break;
        ASSERT_EQ(lower.entry().key, expected->first);
        break;
      }
      case 2: {
        const auto upper = map.upper_bound(key);
        const auto expected = model.upper_bound(key);
        ASSERT_EQ(upper.is_end(), expected == model.end());
        if (upper.is_end()) break;
        ASSERT_EQ(upper.entry().key, expected->first);
        break;
      }
      default:
        map.insert_unique(key).entry.value = step;
        model[key] = step;
    }
    ASSERT_EQ(map.size(), model.size());
  }
  auto expected = model.begin();
  map.for_each([&](const auto& entry) {
    EXPECT_EQ(entry.key, expected->first);
    EXPECT_EQ(entry.value, expected->second);
    ++expected;
    return true;
  });
  EXPECT_EQ(expected, model.end());
}

TEST(OrderedStorage, keeps_the_first_of_equal_keys) {
  IntegerMap map;
  map.insert_unique(1).entry.value = 10;
  const auto [entry, inserted] = map.insert_unique(1);
  EXPECT_FALSE(inserted);
  EXPECT_EQ(entry.value, 10);
}

TEST(OrderedStorage, steps_back_from_the_end_to_the_largest_key) {
  IntegerSet set;
  for (const std::int32_t key : {3, 1, 2}) set.insert_unique(key);
  auto position = set.end();
  for (const std::int32_t expected : {3, 2, 1}) {
    IntegerSet::retreat(position);
    EXPECT_EQ(position.entry().key, expected);
  }
}

TEST(OrderedStorage, steps_through_trees_larger_than_the_cache_both_ways) {
  std::vector<std::int32_t> keys(200000);
  std::iota(keys.begin(), keys.end(), 0);
  std::vector<std::int32_t> inserted = keys;
  for (const bool shuffled : {false, true}) {
    if (shuffled) std::ranges::shuffle(inserted, std::mt19937(11));
    IntegerSet set;
    for (const std::int32_t key : inserted) set.insert_unique(key);
    EXPECT_EQ(keys_in_order(set), keys);
    std::vector<std::int32_t> backwards;
    auto position = set.end();
    for (IntegerSet::retreat(position); !position.is_end(); IntegerSet::retreat(position)) {
      backwards.push_back(position.entry().key);
    }
    EXPECT_TRUE(std::ranges::equal(backwards.rbegin(), backwards.rend(), keys.begin(), keys.end()));
  }
}

TEST(OrderedStorage, copies_trees_of_any_shape) {
  std::mt19937 random(11);
  for (const std::uint32_t size : {0U, 1U, 2U, 3U, 5U, 6U, 7U, 100U, 5000U, 70000U}) {
    IntegerMap source;
    while (source.size() < size) {
      const auto key = static_cast<std::int32_t>(random() % (2 * size));
      source.insert_unique(key).entry.value = key / 3;
      if (random() % 4 == 0) source.erase(static_cast<std::int32_t>(random() % (2 * size)));
    }
    IntegerMap copy;
    copy.insert_unique(1);
    copy.insert_unique(2);
    copy.erase(1);
    copy.erase(2);
    copy.copy_from(source);
    ASSERT_TRUE(OrderedStorageInspector::check(copy)) << size;
    ASSERT_TRUE(OrderedStorageInspector::check(source)) << size;
    ASSERT_EQ(copy.size(), source.size());
    auto position = copy.begin();
    source.for_each([&](const auto& entry) {
      EXPECT_EQ(position.entry().key, entry.key);
      EXPECT_EQ(position.entry().value, entry.value);
      IntegerMap::advance(position);
      return true;
    });
    EXPECT_TRUE(position.is_end());
    for (const std::int32_t key : keys_in_order(source)) source.erase(key);
    EXPECT_EQ(copy.size(), size);
    for (const std::int32_t key : keys_in_order(copy)) EXPECT_EQ(copy.erase(key), 1U);
  }
}

TEST(OrderedStorage, stays_at_the_end) {
  IntegerSet set;
  auto position = set.end();
  IntegerSet::advance(position);
  EXPECT_TRUE(position.is_end());
  IntegerSet::retreat(position);
  EXPECT_TRUE(position.is_end());
}

TEST(OrderedStorage, removes_any_range) {
  for (std::ptrdiff_t first = 0; first <= 20; ++first) {
    for (std::ptrdiff_t last = first; last <= 20; ++last) {
      IntegerSet set;
      for (std::int32_t key = 0; key < 20; ++key) set.insert_unique(key * 7 % 20);
      auto expected = keys_in_order(set);
      EXPECT_EQ(set.erase(at(set, first), at(set, last)), last - first);
      expected.erase(expected.begin() + first, expected.begin() + last);
      ASSERT_EQ(keys_in_order(set), expected) << first << " to " << last;
      ASSERT_TRUE(OrderedStorageInspector::check(set));
    }
  }
}

TEST(OrderedStorage, limits_tell_sets_from_maps) {
  EXPECT_EQ(IntegerSet::max_size(), 1073741823U);
  EXPECT_EQ(IntegerMap::max_size(), 536870911U);
}

struct FloatLess {
  // As the plugin compares floats: an operand that is not a number is never less.
  bool operator()(double a, double b) const { return a < b; }
};

TEST(OrderedStorage, takes_a_nan_for_whichever_key_the_search_meets) {
  OrderedStorage<double, NoValue, FloatLess> set;
  for (const double key : {1.0, 2.0, 3.0}) set.insert_unique(key);
  EXPECT_FALSE(set.insert_unique(std::nan("")).inserted);
  EXPECT_EQ(set.count(std::nan("")), 1U);
  EXPECT_TRUE(set.lower_bound(std::nan("")) == set.begin());
  EXPECT_TRUE(set.upper_bound(std::nan("")) == set.end());
}

struct CyclicLess {
  // No order at all: 0 before 1 before 2 before 0.
  bool operator()(std::int32_t a, std::int32_t b) const { return (b - a + 30000) % 3 == 1; }
};

TEST(OrderedStorage, survives_an_order_that_is_none) {
  OrderedStorage<std::int32_t, NoValue, CyclicLess> set;
  std::mt19937 random(5);
  std::uint32_t inserted = 0;
  for (int step = 0; step < 5000; ++step) {
    const auto key = static_cast<std::int32_t>(random() % 300);
    if (random() % 3 == 0) {
      inserted -= set.erase(key);
    } else {
      inserted += set.insert_unique(key).inserted ? 1U : 0U;
    }
    ASSERT_EQ(set.size(), inserted);
  }
  EXPECT_EQ(keys_in_order(set).size(), inserted);
}

TEST(OrderedStorage, a_failed_insertion_changes_nothing) {
  int nth = 1;
  for (bool failed = true; failed; ++nth) {
    TroubledSet set;
    for (std::int32_t key = 0; key < 50; ++key) set.insert_unique(TroubledKey(key * 2));
    TroubledKey::arm(TroubledKey::All, nth);
    failed = false;
    try {
      set.insert_unique(TroubledKey(51));
    } catch (const Trouble&) {
      failed = true;
    }
    TroubledKey::arm(TroubledKey::All, 0);
    ASSERT_EQ(set.size(), failed ? 50U : 51U);
    ASSERT_EQ(TroubledKey::alive, static_cast<int>(set.size()));
    ASSERT_TRUE(OrderedStorageInspector::check(set));
  }
  EXPECT_GT(nth, 6);
}

TEST(OrderedStorage, clear_finishes_although_elements_throw) {
  for (int nth = 1; nth <= 300; nth += 13) {
    TroubledSet set;
    for (std::int32_t key = 0; key < 300; ++key) set.insert_unique(TroubledKey(key));
    TroubledKey::arm(TroubledKey::Destruction, nth);
    EXPECT_THROW(set.clear(), Trouble);
    TroubledKey::arm(TroubledKey::All, 0);
    EXPECT_TRUE(set.empty());
    ASSERT_EQ(TroubledKey::alive, 0);
  }
}

TEST(OrderedStorage, keeps_nothing_alive_after_its_death) {
  {
    TroubledSet set;
    for (std::int32_t key = 0; key < 1000; ++key) set.insert_unique(TroubledKey(key));
    EXPECT_EQ(TroubledKey::alive, 1000);
  }
  EXPECT_EQ(TroubledKey::alive, 0);
}

}  // namespace
