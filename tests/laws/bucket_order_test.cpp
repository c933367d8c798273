// The order in which hashed containers show their elements, against libstdc++'s own hash table.
#include "support/bucket_witness.h"

#include <random>

#include "support/plugin_test.h"

namespace {

using support::BucketWitness;
using support::Container;
using support::Element;
using support::ElementType;

class BucketOrder : public support::ClassTest {
 protected:
  void put(int index) {
    container_.put(index);
    witness_.insert(support::expected_hash(key(index)), index);
  }
  void remove(int index) {
    container_.remove(key(index));
    witness_.erase(support::expected_hash(key(index)), index);
  }
  void expect_same_order() {
    std::vector<std::string> expected;
    for (const int index : witness_.order()) expected.push_back(support::describe(key(index)));
    ASSERT_EQ(container_.described_keys(), expected) << "with " << witness_.count() << " elements";
    ASSERT_EQ(container_.bin_count(), witness_.bucket_count());
    ASSERT_EQ(container_.count(), witness_.count());
  }
  void TearDown() override {
    container_.release();
    ClassTest::TearDown();
  }

  Container container_ = make();
  BucketWitness witness_;
};
class IntegerBucketOrder : public BucketOrder {};
ZRB_FOR_CLASSES(BucketOrder, support::hashed_classes());
ZRB_FOR_CLASSES(IntegerBucketOrder, support::classes_where([](const support::ContainerClass& c) {
                  return c.is_hashed() && c.key == ElementType::integer;
                }));

TEST_P(BucketOrder, follows_the_witness_through_three_growth_steps) {
  for (int i = 0; i < 900; ++i) {
    put(i);
    // Around each growth step, and now and then in between.
    if (i % 150 == 0 || (i > 190 && i < 196) || (i > 386 && i < 392) || (i > 766 && i < 772)) {
      ASSERT_NO_FATAL_FAILURE(expect_same_order());
    }
  }
  EXPECT_EQ(container_.bin_count(), 1543);
  expect_same_order();
}

TEST_P(BucketOrder, follows_the_witness_from_negative_to_positive_indices) {
  for (int i = -400; i < 400; i += 3) put(i);
  expect_same_order();
  for (int i = -400; i < 400; i += 9) remove(i);
  expect_same_order();
}

TEST_P(BucketOrder, follows_the_witness_through_random_insertions_and_removals) {
  std::mt19937 random(20120517);
  for (int step = 0; step < 1500; ++step) {
    const int index = static_cast<int>(random() % 3000) - 1500;
    if (random() % 4 == 0) {
      remove(index);
    } else {
      put(index);
    }
    if (step % 250 == 0) {
      ASSERT_NO_FATAL_FAILURE(expect_same_order()) << "step " << step;
    }
  }
  expect_same_order();
}

TEST_P(BucketOrder, a_cleared_table_keeps_its_buckets_and_their_order) {
  for (int i = 0; i < 200; ++i) put(i);
  container_.clear();
  witness_.clear();
  expect_same_order();
  for (int i = 50; i < 350; ++i) put(i);
  expect_same_order();
}

TEST_P(IntegerBucketOrder, keys_of_one_bucket_come_newest_first) {
  const auto order = [this](std::initializer_list<std::int32_t> keys) {
    const Container container = make();
    for (const std::int32_t key : keys) container.put(key, value(1));
    return container.described_keys();
  };
  using Keys = std::vector<std::string>;
  EXPECT_EQ(order({5, 198}), Keys({"198", "5"}));
  EXPECT_EQ(order({198, 5}), Keys({"5", "198"}));
  EXPECT_EQ(order({5, 198, 391, 4, 6}), Keys({"4", "391", "198", "5", "6"}));
}

TEST_P(IntegerBucketOrder, growth_reverses_the_keys_that_stay_together) {
  const std::int32_t apart = 193 * 389;  // one bucket before the growth step and after it
  container_.put(7, value(1));
  container_.put(7 + apart, value(1));
  container_.put(7 + 2 * apart, value(1));
  const auto of_that_bucket = [&] {
    std::vector<std::string> result;
    for (const Element& key : container_.keys()) {
      if (std::get<std::int32_t>(key) % apart == 7) result.push_back(support::describe(key));
    }
    return result;
  };
  using Keys = std::vector<std::string>;
  EXPECT_EQ(of_that_bucket(), Keys({"150161", "75084", "7"}));
  for (int i = 0; i < 191; ++i) container_.put(10 + i, value(1));
  EXPECT_EQ(container_.bin_count(), 389);
  EXPECT_EQ(of_that_bucket(), Keys({"7", "75084", "150161"}));
}

TEST_P(IntegerBucketOrder, negative_keys_go_to_the_bucket_of_their_unsigned_value) {
  // 4294967295 mod 193 is 107, so -1 lies between 106 and 108, before 107 if it is newer.
  EXPECT_EQ(4294967295u % 193u, 107u);
  for (const int key : {106, 107, 108, -1}) container_.put(key, value(1));
  EXPECT_EQ(container_.described_keys(), std::vector<std::string>({"106", "-1", "107", "108"}));
}

TEST_P(IntegerBucketOrder, random_keys_of_all_32_bits_follow_the_witness) {
  std::mt19937 random(4711);
  for (int i = 0; i < 800; ++i) {
    const auto index = static_cast<std::int32_t>(random());
    container_.put(index, value(1));
    witness_.insert(static_cast<std::uint32_t>(index), index);
  }
  expect_same_order();
}

TEST_P(IntegerBucketOrder, a_range_within_one_chain_is_removed_from_that_chain) {
  for (int i = 0; i < 6; ++i) container_.put(3 + 193 * i, value(1));
  container_.put(2, value(1));
  container_.put(4, value(1));
  // Now: 2, 968, 775, 582, 389, 196, 3, 4.
  container_.remove(container_.find(775), container_.find(196));
  using Keys = std::vector<std::string>;
  EXPECT_EQ(container_.described_keys(), Keys({"2", "968", "196", "3", "4"}));
  container_.remove(container_.find(968), container_.find(3));
  EXPECT_EQ(container_.described_keys(), Keys({"2", "3", "4"}));
}

TEST_P(IntegerBucketOrder, a_range_may_begin_and_end_in_the_middle_of_chains) {
  for (int i = 0; i < 4; ++i) {
    for (const int bucket : {3, 50, 180}) container_.put(bucket + 193 * i, value(1));
  }
  // Chains: 582 389 196 3, 629 436 243 50, 759 566 373 180.
  container_.remove(container_.find(196), container_.find(373));
  using Keys = std::vector<std::string>;
  EXPECT_EQ(container_.described_keys(), Keys({"582", "389", "373", "180"}));
  container_.remove(container_.find(389), container_.last());
  EXPECT_EQ(container_.described_keys(), Keys({"582"}));
}

}  // namespace
