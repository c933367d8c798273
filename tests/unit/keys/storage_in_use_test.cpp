// Storage of either kind that is changed by what its own operations call.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>

#include "storage_in_use.h"

namespace {

using Sets = testing::Types<HashedSet, OrderedSet>;
TYPED_TEST_SUITE(StorageInUse, Sets);

TYPED_TEST(StorageInUse, destroys_what_a_search_removed_when_the_search_ends) {
  this->expect_removed_key_alive_during(
      [](TypeParam& set, const CallingKey& key) { return set.count(key) == 0; });
}

TYPED_TEST(StorageInUse, destroys_what_was_removed_when_the_search_for_a_position_ends) {
  this->expect_removed_key_alive_during(
      [](TypeParam& set, const CallingKey& key) { return set.find(key).is_end(); });
}

TYPED_TEST(StorageInUse, destroys_what_a_search_removed_although_it_went_on_to_remove_nothing) {
  TypeParam set;
  this->add(set, 10);
  CallingKey::on_comparison = [&] {
    set.erase(CallingKey(5));
    EXPECT_EQ(set.erase(CallingKey(1000)), 0U);
    set.erase(set.end(), set.end());
  };
  EXPECT_EQ(set.count(CallingKey(5)), 0U);
  EXPECT_EQ(CallingKey::alive, 9);
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

// Elements that wait for the end of the outer call are still in the memory that it would give back.
TYPED_TEST(StorageInUse, shares_no_memory_although_an_element_clears_it_again_as_it_dies) {
  TypeParam set;
  this->add(set, 1);
  CallingKey::on_destruction = [&] {
    this->add(set, 3);
    set.clear();
  };
  set.clear();
  EXPECT_EQ(CallingKey::alive, 0);
  TypeParam another;
  this->add(another, 10);
  this->add(set, 10);
  this->expect_first(another, 10);
  this->expect_first(set, 10);
}

TYPED_TEST(StorageInUse, keeps_what_an_element_adds_as_it_dies) {
  TypeParam set;
  this->add(set, 100);
  CallingKey::on_destruction = [&] { this->add(set, 3); };
  set.clear();
  this->expect_first(set, 3);
  this->add(set, 600);
  this->expect_first(set, 600);
}

TYPED_TEST(StorageInUse, ends_a_search_in_a_storage_that_was_destroyed_meanwhile) {
  TypeParam set;
  this->add(set, 10);
  CallingKey::on_comparison = [&] { set.destroy(); };
  EXPECT_EQ(set.count(CallingKey(5)), 0U);
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

TYPED_TEST(StorageInUse, takes_a_walk_that_its_visitor_ends_for_complete) {
  TypeParam set;
  this->add(set, 10);
  int visits = 0;
  EXPECT_TRUE(set.for_each([&](const auto&) { return ++visits < 4; }));
  EXPECT_EQ(visits, 4);
}

// The memory of what dies must not be given back or used again before it is dead.
TYPED_TEST(StorageInUse, removes_at_a_position_what_replaces_all_others_as_it_dies) {
  this->expect_replaced_by([](TypeParam& set) { set.erase(set.find(CallingKey(5))); });
}

TYPED_TEST(StorageInUse, removes_a_range_that_replaces_all_others_as_it_dies) {
  this->expect_replaced_by(
      [](TypeParam& set) { set.erase(set.find(CallingKey(3)), set.find(CallingKey(7))); });
}

TYPED_TEST(StorageInUse, adds_a_key_although_every_search_for_its_place_is_disturbed) {
  TypeParam set;
  this->add(set, 10);
  std::int32_t next = 193 * 10;  // all in the bucket of the key
  this->at_every_call(CallingKey::on_comparison,
                      [&] { set.insert_unique(CallingKey(next += 193)); });
  EXPECT_TRUE(set.insert_unique(CallingKey(193)).inserted);
  CallingKey::on_comparison = nullptr;
  EXPECT_GE(this->repetitions_, search_attempts);
  EXPECT_EQ(set.size(), 11U + static_cast<std::uint32_t>(this->repetitions_));
  EXPECT_EQ(CallingKey::alive, static_cast<int>(set.size()));
}

TYPED_TEST(StorageInUse, adds_a_key_although_another_one_comes_whenever_it_is_made) {
  TypeParam set;
  this->add(set, 10);
  std::int32_t next = 1000;
  this->at_every_call(CallingKey::on_copy, [&] { set.insert_unique(CallingKey(next++)); });
  EXPECT_TRUE(set.insert_unique(CallingKey(500)).inserted);
  CallingKey::on_copy = nullptr;
  EXPECT_EQ(this->repetitions_, search_attempts);
  EXPECT_EQ(set.size(), 11U + static_cast<std::uint32_t>(this->repetitions_));
  EXPECT_EQ(CallingKey::alive, static_cast<int>(set.size())) << "those that were not kept are gone";
}

TYPED_TEST(StorageInUse, gives_up_a_removal_that_is_disturbed_every_time) {
  TypeParam set;
  this->add(set, 10);
  std::int32_t next = 1000;
  this->at_every_call(CallingKey::on_comparison, [&] { set.insert_unique(CallingKey(next++)); });
  EXPECT_EQ(set.erase(CallingKey(5)), 0U);
  CallingKey::on_comparison = nullptr;
  EXPECT_GE(this->repetitions_, search_attempts);
  EXPECT_EQ(set.count(CallingKey(5)), 1U);
  EXPECT_TRUE(check(set));
}

TYPED_TEST(StorageInUse, removes_a_key_whichever_comparison_disturbs_the_removal) {
  for (int n = 1; n < 8; ++n) {
    TypeParam set;
    this->add(set, 10);
    for (std::int32_t other = 1; other < 4; ++other) set.insert_unique(CallingKey(5 + 193 * other));
    this->at_call(CallingKey::on_comparison, n, [&] { set.insert_unique(CallingKey(1000)); });
    EXPECT_EQ(set.erase(CallingKey(5)), 1U) << n;
    CallingKey::on_comparison = nullptr;
    EXPECT_EQ(set.count(CallingKey(5)), 0U);
    EXPECT_TRUE(check(set));
  }
}

TYPED_TEST(StorageInUse, removes_a_key_whichever_comparison_makes_the_container_grow) {
  for (int n = 1; n < 8; ++n) {
    TypeParam set;
    this->add(set, 10);
    for (std::int32_t other = 1; other < 4; ++other) set.insert_unique(CallingKey(5 + 193 * other));
    this->at_call(CallingKey::on_comparison, n, [&] { this->add_more(set, 300); });
    EXPECT_EQ(set.erase(CallingKey(5)), 1U) << n;
    this->add_more(set, 300);  // in case that there were not so many comparisons
    CallingKey::on_comparison = nullptr;
    EXPECT_EQ(set.count(CallingKey(5)), 0U);
    EXPECT_EQ(set.size(), 312U);
    EXPECT_TRUE(check(set));
  }
}

TYPED_TEST(StorageInUse, finds_a_key_whichever_comparison_disturbs_the_search) {
  for (int n = 1; n < 8; ++n) {
    TypeParam set;
    this->add(set, 10);
    for (std::int32_t other = 1; other < 4; ++other) set.insert_unique(CallingKey(5 + 193 * other));
    this->at_call(CallingKey::on_comparison, n, [&] { set.erase(CallingKey(5 + 193 * 2)); });
    EXPECT_EQ(set.count(CallingKey(5)), 1U) << n;
    CallingKey::on_comparison = nullptr;
    EXPECT_TRUE(check(set));
  }
}

TYPED_TEST(StorageInUse, removes_everything_although_all_elements_fail_to_die) {
  TypeParam set;
  this->add(set, 10);
  int failures = 0;
  std::function<void()> fail = [&] {
    CallingKey::on_destruction = fail;
    throw ++failures;
  };
  CallingKey::on_destruction = fail;
  try {
    set.clear();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const int failure) {
    EXPECT_EQ(failure, 1) << "the first is the cause";
  }
  CallingKey::on_destruction = nullptr;
  EXPECT_EQ(failures, 10);
  EXPECT_TRUE(set.empty());
  EXPECT_TRUE(check(set));
}

}  // namespace
