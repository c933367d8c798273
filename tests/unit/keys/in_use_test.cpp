// Storage that is changed by what its own operations call.
#include "keys/in_use.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <utility>

#include "keys/hashed_storage.h"
#include "keys/ordered_storage.h"
#include "storage_inspectors.h"

namespace {

/// A key that runs code of the test when it is compared, and when a stored one is destroyed.
class CallingKey {
 public:
  explicit CallingKey(std::int32_t number) : number_(number) { ++alive; }
  CallingKey(const CallingKey& other) : number_(other.number_), stored_(true) { ++alive; }
  CallingKey& operator=(const CallingKey&) = delete;
  ~CallingKey() noexcept(false) {
    --alive;
    if (stored_) call(on_destruction);
  }

  std::int32_t number() const { return number_; }

  static void call(std::function<void()>& hook) {
    const std::function<void()> once = std::exchange(hook, nullptr);
    if (once) once();
  }

  static inline int alive = 0;
  static inline std::function<void()> on_comparison;   // run once, then forgotten
  static inline std::function<void()> on_destruction;  // likewise

 private:
  std::int32_t number_;
  bool stored_ = false;
};

struct NumberHash {
  std::uint32_t operator()(const CallingKey& key) const {
    return static_cast<std::uint32_t>(key.number());
  }
};
struct CallingEqual {
  bool operator()(const CallingKey& a, const CallingKey& b) const {
    CallingKey::call(CallingKey::on_comparison);
    return a.number() == b.number();
  }
};
struct CallingLess {
  bool operator()(const CallingKey& a, const CallingKey& b) const {
    CallingKey::call(CallingKey::on_comparison);
    return a.number() < b.number();
  }
};

using HashedSet = HashedStorage<CallingKey, NoValue, NumberHash, CallingEqual>;
using OrderedSet = OrderedStorage<CallingKey, NoValue, CallingLess>;

testing::AssertionResult check(HashedSet& set) {
  return HashedStorageInspector::check(set);
}
testing::AssertionResult check(OrderedSet& set) {
  return OrderedStorageInspector::check(set);
}

template <class Set>
class StorageInUse : public testing::Test {
 protected:
  void TearDown() override {
    CallingKey::on_comparison = nullptr;
    CallingKey::on_destruction = nullptr;
    EXPECT_EQ(CallingKey::alive, 0);
  }

  static void add(Set& set, std::int32_t count) {
    for (std::int32_t number = 0; number < count; ++number) set.insert_unique(CallingKey(number));
  }
};

using Sets = testing::Types<HashedSet, OrderedSet>;
TYPED_TEST_SUITE(StorageInUse, Sets);

TYPED_TEST(StorageInUse, destroys_what_a_search_removed_when_the_search_ends) {
  TypeParam set;
  this->add(set, 10);
  int alive_in_search = 0;
  CallingKey::on_comparison = [&] {
    set.erase(CallingKey(5));
    alive_in_search = CallingKey::alive;
  };
  {
    const CallingKey key(5);
    EXPECT_EQ(set.count(key), 0U);
    EXPECT_EQ(alive_in_search, 11);
    EXPECT_EQ(CallingKey::alive, 10);
  }
  EXPECT_TRUE(check(set));
}

TYPED_TEST(StorageInUse, finds_a_key_that_the_search_itself_added) {
  TypeParam set;
  this->add(set, 10);
  CallingKey::on_comparison = [&] { this->add(set, 300); };
  const auto found = set.find(CallingKey(5));
  ASSERT_FALSE(found.is_end());
  EXPECT_EQ(found.entry().key.number(), 5);
  EXPECT_EQ(set.size(), 300U);
  EXPECT_TRUE(check(set));
}

TYPED_TEST(StorageInUse, adds_no_key_twice_that_its_comparison_added) {
  TypeParam set;
  this->add(set, 11);
  CallingKey::on_comparison = [&] { set.insert_unique(CallingKey(10 + 193)); };
  EXPECT_FALSE(set.insert_unique(CallingKey(10 + 193)).inserted);
  EXPECT_EQ(set.size(), 12U);
  EXPECT_TRUE(check(set));
}

TYPED_TEST(StorageInUse, clears_although_an_element_adds_and_removes_others_as_it_dies) {
  TypeParam set;
  this->add(set, 100);
  CallingKey::on_destruction = [&] {
    this->add(set, 3);
    for (std::int32_t number = 0; number < 3; ++number) set.erase(CallingKey(number));
  };
  set.clear();
  EXPECT_TRUE(set.empty());
  EXPECT_EQ(CallingKey::alive, 0);
  this->add(set, 5);
  EXPECT_EQ(set.size(), 5U);
  EXPECT_TRUE(check(set));
}

TYPED_TEST(StorageInUse, keeps_what_an_element_adds_as_it_dies) {
  TypeParam set;
  this->add(set, 100);
  CallingKey::on_destruction = [&] { this->add(set, 3); };
  set.clear();
  EXPECT_EQ(set.size(), 3U);
  EXPECT_EQ(set.count(CallingKey(2)), 1U);
  EXPECT_TRUE(check(set));
}

TYPED_TEST(StorageInUse, ends_a_search_in_a_storage_that_was_destroyed_meanwhile) {
  auto* set = new TypeParam;
  this->add(*set, 10);
  CallingKey::on_comparison = [&] { destroy_storage(set); };
  EXPECT_EQ(set->count(CallingKey(5)), 0U);
  EXPECT_EQ(CallingKey::alive, 0);
}

TYPED_TEST(StorageInUse, gives_up_a_search_that_is_disturbed_every_time) {
  TypeParam set;
  this->add(set, 10);
  std::int32_t next = 1000;
  int disturbances = 0;
  std::function<void()> disturb = [&] {
    ++disturbances;
    set.insert_unique(CallingKey(next++));
    CallingKey::on_comparison = disturb;
  };
  CallingKey::on_comparison = disturb;
  EXPECT_EQ(set.count(CallingKey(5)), 0U);
  CallingKey::on_comparison = nullptr;
  EXPECT_GE(disturbances, search_attempts);
  EXPECT_EQ(set.count(CallingKey(5)), 1U);
  EXPECT_TRUE(check(set));
}

TYPED_TEST(StorageInUse, stops_a_walk_whose_visitor_removes_elements) {
  TypeParam set;
  this->add(set, 10);
  int visits = 0;
  EXPECT_FALSE(set.for_each([&](const auto& element) {
    ++visits;
    const std::int32_t number = element.key.number();
    set.erase(CallingKey(number));
    EXPECT_EQ(element.key.number(), number);
    return true;
  }));
  EXPECT_EQ(visits, 1);
  EXPECT_EQ(set.size(), 9U);
}

}  // namespace
