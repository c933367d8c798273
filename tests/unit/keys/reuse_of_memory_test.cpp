// What becomes of the memory of elements that go: the next elements get it.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "keys/hashed_storage.h"
#include "keys/integer_key.h"
#include "keys/ordered_storage.h"
#include "troubled_key.h"

namespace {

using PlainHashedSet = HashedStorage<std::int32_t, NoValue, IntegerHash, IntegerEqual>;
using PlainOrderedSet = OrderedStorage<std::int32_t, NoValue, IntegerLess>;
using HashedSet = HashedStorage<TroubledKey, NoValue, TroubledHash, TroubledEqual>;
using OrderedSet = OrderedStorage<TroubledKey, NoValue, TroubledLess>;

/// Memory of 32-bit processes comes from the heap, which gives it to whomever it likes.
constexpr bool nodes_have_a_region = sizeof(void*) > sizeof(NodeLink);

template <class Set>
class ReuseOfMemory : public testing::Test {
 protected:
  using Key = decltype(Set::Element::key);

  static Key key(std::int32_t number) { return Key(number); }
  static const void* add(Set& set, std::int32_t number) {
    return &set.insert_unique(key(number)).entry;
  }
  /// Where the elements are.
  static std::vector<const void*> add_many(Set& set) {
    std::vector<const void*> places;
    for (std::int32_t number = 0; number < 1000; ++number) places.push_back(add(set, number));
    std::sort(places.begin(), places.end());
    return places;
  }
};

using Sets = testing::Types<PlainHashedSet, PlainOrderedSet, HashedSet, OrderedSet>;
TYPED_TEST_SUITE(ReuseOfMemory, Sets);

TYPED_TEST(ReuseOfMemory, the_next_element_is_where_one_was_removed) {
  TypeParam set;
  for (std::int32_t number = 0; number < 10; ++number) this->add(set, number);
  const void* const place = &set.find(this->key(5)).entry();
  set.erase(this->key(5));
  EXPECT_EQ(this->add(set, 1000), place);
  set.erase(set.find(this->key(1000)));
  EXPECT_EQ(this->add(set, 1001), place);
  auto last = set.find(this->key(1001));
  TypeParam::advance(last);
  set.erase(set.find(this->key(1001)), last);
  EXPECT_EQ(this->add(set, 1002), place);
}

TYPED_TEST(ReuseOfMemory, the_next_elements_are_where_a_range_was_removed) {
  TypeParam set;
  for (std::int32_t number = 0; number < 10; ++number) this->add(set, number);
  const auto first = set.find(this->key(5));
  auto last = first;
  std::vector<const void*> places;
  for (int i = 0; i < 3; ++i) {
    places.push_back(&last.entry());
    TypeParam::advance(last);
  }
  set.erase(first, last);
  for (std::int32_t number = 1000; number < 1003; ++number) {
    EXPECT_EQ(std::erase(places, this->add(set, number)), 1U) << number;
  }
}

TYPED_TEST(ReuseOfMemory, other_containers_get_what_was_cleared) {
  if (!nodes_have_a_region) GTEST_SKIP();
  TypeParam set;
  const auto places = this->add_many(set);
  set.clear();
  TypeParam another;
  const auto its_places = this->add_many(another);
  std::vector<const void*> common;
  std::ranges::set_intersection(places, its_places, std::back_inserter(common));
  EXPECT_FALSE(common.empty());
}

TYPED_TEST(ReuseOfMemory, the_next_container_is_where_one_died) {
  if (!nodes_have_a_region) GTEST_SKIP();
  std::vector<const void*> places;
  const void* end = nullptr;
  {
    TypeParam set;
    places = this->add_many(set);
    end = set.end().node;
  }
  TypeParam another;
  EXPECT_EQ(this->add_many(another), places);
  EXPECT_EQ(another.end().node, end);
}

template <class Set>
class ReuseAfterFailure : public ReuseOfMemory<Set> {};
using TroubledSets = testing::Types<HashedSet, OrderedSet>;
TYPED_TEST_SUITE(ReuseAfterFailure, TroubledSets);

TYPED_TEST(ReuseAfterFailure, the_next_element_is_where_one_could_not_be_copied) {
  TypeParam set;
  const void* const place = this->add(set, 1);
  set.erase(TroubledKey(1));
  TroubledKey::arm(TroubledKey::Copying, 1);
  EXPECT_THROW(this->add(set, 2), Trouble);
  TroubledKey::arm(TroubledKey::Copying, 0);
  EXPECT_EQ(this->add(set, 3), place);
}

}  // namespace
