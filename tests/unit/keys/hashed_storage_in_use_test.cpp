// Tables that are changed by what their steps, growth and removals call.
#include "keys/hashed_storage.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>

#include "storage_in_use.h"

namespace {

TEST(HashedStorageInUse, ends_a_step_in_a_table_that_the_hash_destroys) {
  HashedSet set;
  for (std::int32_t number = 0; number < 193; ++number) set.insert_unique(CallingKey(number + 100));
  auto position = set.find(CallingKey(250));
  set.insert_unique(CallingKey(1000));  // takes 250 to another bucket
  CallingKey::on_hash = [&] { set.destroy(); };
  HashedSet::Storage::advance(position);
  EXPECT_TRUE(position.is_end());
  EXPECT_EQ(CallingKey::alive, 0);
}

TEST(HashedStorageInUse, ends_a_step_in_a_table_that_is_being_destroyed) {
  HashedSet set;
  for (std::int32_t number = 0; number < 193; ++number) set.insert_unique(CallingKey(number));
  auto position = set.find(CallingKey(191));
  HashedSet::Storage::advance(position);
  EXPECT_EQ(position.entry().key.number(), 192);
  CallingKey::on_destruction = [&] { HashedSet::Storage::advance(position); };
  set.destroy();
  EXPECT_TRUE(position.is_end());
}

TEST(HashedStorageInUse, steps_on_from_where_growth_has_taken_the_element) {
  HashedSet set;
  for (std::int32_t number = 0; number < 193; ++number) set.insert_unique(CallingKey(number + 100));
  auto position = set.find(CallingKey(250));
  set.insert_unique(CallingKey(1000));
  HashedSet::Storage::advance(position);
  ASSERT_FALSE(position.is_end());
  EXPECT_EQ(position.entry().key.number(), 251);
}

TEST(HashedStorageInUse, finds_a_key_although_the_table_grows_without_a_new_element_meanwhile) {
  HashedSet set;
  for (std::int32_t number = 0; number < 192; ++number) set.insert_unique(CallingKey(number));
  set.insert_unique(CallingKey(5 + 193));  // before 5 in its bucket, and in another one afterwards
  CallingKey::on_comparison = [&] { set.insert_unique(CallingKey(0)); };
  EXPECT_EQ(set.count(CallingKey(5)), 1U);
  EXPECT_EQ(set.bucket_count(), 389U);
}

TEST(HashedStorageInUse, hashes_no_further_key_for_a_growth_that_is_no_longer_needed) {
  HashedSet set;
  for (std::int32_t number = 0; number < 193; ++number) set.insert_unique(CallingKey(number));
  int hashes = 0;
  std::function<void()> remove_at_first = [&] {
    if (++hashes == 1) set.erase(CallingKey(0));
    CallingKey::on_hash = remove_at_first;
  };
  CallingKey::on_hash = remove_at_first;
  set.insert_unique(CallingKey(1000));
  CallingKey::on_hash = nullptr;
  EXPECT_EQ(hashes, 2) << "of the first stored key and of the new one";
  EXPECT_EQ(set.bucket_count(), 193U);
  EXPECT_TRUE(check(set));
}

TEST(HashedStorageInUse, keeps_its_buckets_when_every_growth_is_disturbed) {
  HashedSet set;
  for (std::int32_t number = 0; number < 193; ++number) set.insert_unique(CallingKey(number));
  int disturbances = 0;
  std::function<void()> disturb = [&] {
    ++disturbances;
    set.erase(CallingKey(0));
    set.insert_unique(CallingKey(0));
    CallingKey::on_hash = disturb;
  };
  // The key's own hash is the last call.
  CallingKey::on_hash = disturb;
  set.insert_unique(CallingKey(1000));
  CallingKey::on_hash = nullptr;
  EXPECT_GE(disturbances, search_attempts);
  EXPECT_EQ(set.bucket_count(), 193U);
  EXPECT_EQ(set.size(), 194U);
  set.insert_unique(CallingKey(1001));
  EXPECT_EQ(set.bucket_count(), 389U);
  EXPECT_TRUE(check(set));
}

TEST(HashedStorageInUse,
     loses_nothing_more_when_a_hash_removes_a_key_and_throws_as_the_table_grows) {
  HashedSet set;
  for (std::int32_t number = 0; number < 193; ++number) set.insert_unique(CallingKey(number));
  int calls = 0;
  std::function<void()> fail_at_tenth = [&] {
    if (++calls < 10) {
      CallingKey::on_hash = fail_at_tenth;
      return;
    }
    set.erase(CallingKey(100));
    throw 1;
  };
  CallingKey::on_hash = fail_at_tenth;
  EXPECT_THROW(set.insert_unique(CallingKey(1000)), int);
  CallingKey::on_hash = nullptr;
  EXPECT_EQ(set.size(), 192U);
  EXPECT_EQ(set.bucket_count(), 193U);
  EXPECT_TRUE(check(set));
}

TEST(HashedStorageInUse, removes_no_range_that_ends_before_it_begins) {
  HashedSet set;
  for (std::int32_t number = 0; number < 10; ++number) set.insert_unique(CallingKey(number));
  set.erase(set.find(CallingKey(7)), set.find(CallingKey(3)));
  EXPECT_EQ(set.size(), 10U);
}

TEST(HashedStorageInUse, removes_nothing_from_the_end_on) {
  HashedSet set;
  set.insert_unique(CallingKey(1));
  set.erase(set.end(), set.begin());
  set.erase(set.begin(), set.begin());
  EXPECT_EQ(set.size(), 1U);
}

}  // namespace
