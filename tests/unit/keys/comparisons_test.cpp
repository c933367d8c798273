// Searches in trees whose order answers both questions about a key at once.
#include "keys/comparisons.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <random>

#include "keys/ordered_storage.h"
#include "storage_inspectors.h"

namespace {

constexpr std::size_t key_count = 400;

/// What the comparisons of one tree did.
struct Tally {
  std::array<int, key_count> locks{};  // left on each key
  int comparisons = 0;                 // made
};

/// A key that is counted by the tally of its kind. Not plain, as its order may throw.
template <class Kind>
class CountedKey {
 public:
  explicit CountedKey(std::int32_t number) : number_(number) {}
  std::int32_t number() const { return number_; }

 private:
  std::int32_t number_;
};

struct Asked {
  static inline Tally tally;
};
struct Known {
  static inline Tally tally;
};

using AskedKey = CountedKey<Asked>;
using KnownKey = CountedKey<Known>;

template <class Kind>
bool less_leaving_locks(const CountedKey<Kind>& a, const CountedKey<Kind>& b) {
  ++Kind::tally.comparisons;
  for (const auto& key : {a, b}) ++Kind::tally.locks.at(static_cast<std::size_t>(key.number()));
  return a.number() < b.number();
}

/// Is asked each question.
struct AskedLess {
  bool operator()(const AskedKey& a, const AskedKey& b) const { return less_leaving_locks(a, b); }
};

/// Answers both questions at once.
struct KnownLess {
  bool operator()(const KnownKey& a, const KnownKey& b) const { return less_leaving_locks(a, b); }
  static std::int32_t compare(const KnownKey& stored, const KnownKey& key) {
    less_leaving_locks(stored, key);
    return stored.number() - key.number();
  }
  static bool is_larger(const KnownKey& key, const KnownKey& stored) {
    ++Known::tally.comparisons;
    return key.number() > stored.number();
  }
  static void leave_locks(const KnownKey& stored, const KnownKey& key) {
    less_leaving_locks(stored, key);
    --Known::tally.comparisons;
  }
};

using AskedSet = OrderedStorage<AskedKey, NoValue, AskedLess>;
using KnownSet = OrderedStorage<KnownKey, NoValue, KnownLess>;

/// Two trees of the same keys, of which only one asks each question.
class TwinTrees : public testing::Test {
 protected:
  TwinTrees() { Asked::tally = Known::tally = Tally(); }

  void insert(std::int32_t number) {
    EXPECT_EQ(asked_.insert_unique(AskedKey(number)).inserted,
              known_.insert_unique(KnownKey(number)).inserted);
  }
  void insert_all(std::int32_t first, std::int32_t step) {
    constexpr auto count = static_cast<std::int32_t>(key_count);
    for (std::int32_t number = first; number >= 0 && number < count; number += step) insert(number);
  }
  void insert_random(int count) {
    while (count-- > 0) insert(any_number());
  }
  std::int32_t any_number() { return static_cast<std::int32_t>(random_() % key_count); }

  static std::int32_t number_at(auto position) {
    return position.is_end() ? -1 : position.entry().key.number();
  }

  void expect_same_locks() {
    EXPECT_EQ(Known::tally.locks, Asked::tally.locks);
    EXPECT_TRUE(OrderedStorageInspector::check(asked_));
    EXPECT_TRUE(OrderedStorageInspector::check(known_));
  }
  // The same locks, but fewer comparisons.
  void expect_savings() {
    expect_same_locks();
    EXPECT_LT(Known::tally.comparisons, Asked::tally.comparisons);
  }

  std::mt19937 random_{5};
  const std::unique_ptr<AskedSet> asked_owner_ = std::make_unique<AskedSet>();
  const std::unique_ptr<KnownSet> known_owner_ = std::make_unique<KnownSet>();
  AskedSet& asked_ = *asked_owner_;
  KnownSet& known_ = *known_owner_;
};

TEST_F(TwinTrees, leave_the_same_locks_when_keys_are_inserted) {
  insert_random(600);
  expect_savings();
}

TEST_F(TwinTrees, leave_the_same_locks_when_ascending_keys_are_inserted) {
  insert_all(0, 1);
  EXPECT_LT(Known::tally.comparisons, static_cast<int>(key_count)) << "with the largest key alone";
  insert_all(0, 7);
  expect_savings();
}

TEST_F(TwinTrees, leave_the_same_locks_when_a_run_of_ascending_keys_ends) {
  insert_all(100, 3);
  insert_all(50, 5);
  insert_all(399, -2);
  expect_savings();
}

TEST_F(TwinTrees, leave_the_same_locks_in_searches) {
  insert_random(200);
  for (std::int32_t number = 0; number < static_cast<std::int32_t>(key_count); ++number) {
    EXPECT_EQ(number_at(asked_.find(AskedKey(number))), number_at(known_.find(KnownKey(number))));
    EXPECT_EQ(asked_.count(AskedKey(number)), known_.count(KnownKey(number)));
    EXPECT_EQ(number_at(asked_.lower_bound(AskedKey(number))),
              number_at(known_.lower_bound(KnownKey(number))));
    EXPECT_EQ(number_at(asked_.upper_bound(AskedKey(number))),
              number_at(known_.upper_bound(KnownKey(number))));
  }
  expect_savings();
}

TEST_F(TwinTrees, compare_nothing_more_when_the_key_is_found) {
  for (const std::int32_t number : {20, 10, 30, 5, 15}) insert(number);
  const auto comparisons_by = [](const auto& operation) {
    const int before = Known::tally.comparisons;
    operation();
    return Known::tally.comparisons - before;
  };
  EXPECT_EQ(comparisons_by([&] { known_.find(KnownKey(20)); }), 1);
  EXPECT_EQ(comparisons_by([&] { known_.find(KnownKey(10)); }), 2);
  EXPECT_EQ(comparisons_by([&] { known_.find(KnownKey(17)); }), 3);
  EXPECT_EQ(comparisons_by([&] { known_.insert_unique(KnownKey(20)); }), 1);
  EXPECT_EQ(comparisons_by([&] { known_.erase(KnownKey(10)); }), 2);
}

TEST_F(TwinTrees, leave_the_same_locks_when_keys_are_removed) {
  for (int round = 0; round < 20; ++round) {
    insert_random(100);
    for (int i = 0; i < 60; ++i) {
      const std::int32_t number = any_number();
      EXPECT_EQ(asked_.erase(AskedKey(number)), known_.erase(KnownKey(number)));
    }
    expect_savings();
  }
}

TEST_F(TwinTrees, leave_the_same_locks_when_keys_are_appended) {
  KnownSet::Appender appender(known_);
  for (std::int32_t number = 0; number < 300; ++number) {
    asked_.insert_unique(AskedKey(number));
    const KnownKey key(number);
    ASSERT_NE(appender.append(key), nullptr);
  }
  expect_same_locks();
  EXPECT_EQ(Known::tally.comparisons, 0);
}

TEST_F(TwinTrees, append_nothing_to_a_tree_that_others_change) {
  const KnownKey key(5);
  KnownSet::Appender appender(known_);
  EXPECT_NE(appender.append(key), nullptr);
  known_.insert_unique(KnownKey(7));
  const KnownKey next(9);
  EXPECT_EQ(appender.append(next), nullptr);
  EXPECT_EQ(KnownSet::Appender(known_).append(next), nullptr) << "not empty at the beginning";
  EXPECT_EQ(known_.size(), 2U);
}

}  // namespace
