// What every operation does on an instance that no constructor gave storage: it raises
// NilObjectException with the message of its kind and returns the neutral value.
#include "support/host_arrays.h"
#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;
using support::Iterator;

class Uninitialised : public support::ClassTest {
 protected:
  Uninitialised() : container_(Container::without_storage(container_class())) {}
  // The instance must die before the host.
  void TearDown() override {
    container_.release();
    ClassTest::TearDown();
  }

  std::string not_initialized() const {
    return "NilObjectException: " + container_class().not_initialized_message();
  }

  Container container_;
};

class UninitialisedMap : public Uninitialised {};
class UninitialisedSet : public Uninitialised {};
class UninitialisedOrdered : public Uninitialised {};
class UninitialisedHashed : public Uninitialised {};

ZRB_FOR_CLASSES(Uninitialised, support::all_classes());
ZRB_FOR_CLASSES(UninitialisedMap, support::map_classes());
ZRB_FOR_CLASSES(UninitialisedSet, support::set_classes());
ZRB_FOR_CLASSES(UninitialisedOrdered, support::ordered_classes());
ZRB_FOR_CLASSES(UninitialisedHashed, support::hashed_classes());

TEST_P(Uninitialised, max_size_reads_0) {
  EXPECT_EQ(container_.max_size(), 0);
  EXPECT_EQ(raised(), not_initialized());
}

TEST_P(Uninitialised, count_reads_0) {
  EXPECT_EQ(container_.count(), 0);
  EXPECT_EQ(raised(), not_initialized());
}

TEST_P(UninitialisedHashed, bin_count_reads_0) {
  EXPECT_EQ(container_.bin_count(), 0);
  EXPECT_EQ(raised(), not_initialized());
}

TEST_P(Uninitialised, empty_reads_false) {
  EXPECT_FALSE(container_.empty());
  EXPECT_EQ(raised(), not_initialized());
}

TEST_P(Uninitialised, clear_raises_and_makes_no_storage) {
  container_.clear();
  EXPECT_EQ(raised(), not_initialized());
  EXPECT_EQ(container_.first_word(), nullptr);
}

TEST_P(Uninitialised, first_and_last_return_nil) {
  EXPECT_FALSE(container_.first());
  EXPECT_EQ(raised(), not_initialized());
  EXPECT_FALSE(container_.last());
  EXPECT_EQ(raised(), not_initialized());
}

TEST_P(Uninitialised, find_returns_nil) {
  EXPECT_FALSE(container_.find(key(1)));
  EXPECT_EQ(raised(), not_initialized());
}

TEST_P(UninitialisedOrdered, bounds_return_nil) {
  EXPECT_FALSE(container_.lower_bound(key(1)));
  EXPECT_EQ(raised(), not_initialized());
  EXPECT_FALSE(container_.upper_bound(key(1)));
  EXPECT_EQ(raised(), not_initialized());
}

TEST_P(Uninitialised, membership_is_false_and_counts_are_0) {
  EXPECT_FALSE(container_.contains(key(1)));
  EXPECT_EQ(raised(), not_initialized());
  EXPECT_EQ(container_.count_key(key(1)), 0);
  EXPECT_EQ(raised(), not_initialized());
}

TEST_P(Uninitialised, removing_a_key_returns_0) {
  EXPECT_EQ(container_.remove(key(1)), 0);
  EXPECT_EQ(raised(), not_initialized());
}

TEST_P(Uninitialised, removing_by_iterator_raises_before_it_looks_at_the_iterators) {
  container_.remove_at(nullptr);
  EXPECT_EQ(raised(), not_initialized());
  container_.remove_range(nullptr, nullptr);
  EXPECT_EQ(raised(), not_initialized());

  const Container other = make_with(3);
  const Iterator first = other.first();
  const Iterator last = other.last();
  container_.remove(first);
  EXPECT_EQ(raised(), not_initialized());
  container_.remove(first, last);
  EXPECT_EQ(raised(), not_initialized());
  EXPECT_EQ(other.count(), 3);
}

TEST_P(UninitialisedSet, insert_raises) {
  container_.insert(key(1));
  EXPECT_EQ(raised(), not_initialized());
  EXPECT_EQ(container_.first_word(), nullptr);
}

TEST_P(UninitialisedMap, reading_a_value_returns_the_neutral_value) {
  EXPECT_TRUE(support::is_neutral(container_.value(key(1))));
  EXPECT_EQ(raised(), not_initialized());
}

TEST_P(UninitialisedMap, assigning_a_value_raises) {
  container_.assign_value(key(1), value(1));
  EXPECT_EQ(raised(), not_initialized());
  EXPECT_EQ(container_.first_word(), nullptr);
}

TEST_P(UninitialisedMap, lookup_returns_the_neutral_value_not_the_default) {
  const Element default_value = value(7);
  EXPECT_TRUE(support::is_neutral(container_.lookup(key(1), default_value)));
  EXPECT_EQ(raised(), not_initialized());
}

// Such an instance has no arrays of its own accord; here it is given some.
TEST_P(UninitialisedMap, assigning_and_removing_raise_before_arrays_are_dropped) {
  const standin::ArrayRef array = support::host_array(support::ElementType::integer, {});
  container_.plant_array(0, array);
  container_.plant_array(1, array);
  container_.assign_value(key(1), value(1));
  EXPECT_EQ(raised(), not_initialized());
  EXPECT_EQ(container_.remove(key(1)), 0);
  EXPECT_EQ(raised(), not_initialized());
  EXPECT_EQ(standin::lock_count(array.get()), 3U);
}

TEST_P(UninitialisedSet, removing_a_key_drops_the_array_before_it_raises) {
  const standin::ArrayRef array = support::host_array(support::ElementType::integer, {});
  container_.plant_array(0, array);
  EXPECT_EQ(container_.remove(key(1)), 0);
  EXPECT_EQ(raised(), not_initialized());
  EXPECT_EQ(standin::lock_count(array.get()), 1U);
}

TEST_P(Uninitialised, no_lock_of_an_argument_stays_behind) {
  const Element argument = key(1);
  const Element other_argument = value(1);
  const auto locks = support::locks(argument);
  const auto other_locks = support::locks(other_argument);
  const auto before = host().ledger().snapshot();
  container_.put(argument, other_argument);
  EXPECT_EQ(raised(), not_initialized());
  container_.contains(argument);
  EXPECT_EQ(raised(), not_initialized());
  container_.remove(argument);
  EXPECT_EQ(raised(), not_initialized());
  container_.find(argument);
  EXPECT_EQ(raised(), not_initialized());
  EXPECT_EQ(support::locks(argument), locks);
  EXPECT_EQ(support::locks(other_argument), other_locks);
  EXPECT_TRUE(host().ledger().held_since(before).empty());
}

TEST_P(Uninitialised, a_constructor_makes_the_instance_usable) {
  EXPECT_EQ(container_.count(), 0);
  EXPECT_EQ(raised(), not_initialized());
  container_.construct();
  container_.put(1);
  EXPECT_EQ(container_.count(), 1);
}

}  // namespace
