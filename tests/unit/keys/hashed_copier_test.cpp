// Copies of tables whose keys ask: the same as insertion one by one, with fewer questions.
#include "keys/hashed_copier.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <utility>
#include <vector>

#include "storage_in_use.h"

namespace {

// Hashes of numbers, or others where a test gives a number another one. Nobody can tell which key
// equals a negative number.
struct GivenHash {
  std::uint32_t operator()(const CallingKey& key) const {
    CallingKey::call(CallingKey::on_hash);
    ++hashed;
    const auto found = given.find(key.number());
    return found != given.end() ? found->second : static_cast<std::uint32_t>(key.number());
  }
  std::optional<std::uint32_t> shared_with_equals(const CallingKey& key) const {
    const std::uint32_t hash = (*this)(key);
    if (key.number() < 0) return std::nullopt;
    return hash;
  }

  static inline std::map<std::int32_t, std::uint32_t> given;
  static inline int hashed = 0;
};

// Numbers are equal when they are the same modulo `equal_from`.
struct CountedEqual {
  bool operator()(const CallingKey& a, const CallingKey& b) const {
    leave_locks(a, b);
    ++read;
    return a.number() % equal_from == b.number() % equal_from;
  }
  static void leave_locks(const CallingKey& a, const CallingKey& b) {
    CallingKey::call(CallingKey::on_comparison);
    ++locks[a.number()];
    ++locks[b.number()];
  }

  static inline std::int32_t equal_from = 1 << 30;
  static inline int read = 0;
  static inline std::map<std::int32_t, int> locks;  // that comparisons left, by number
};

using CopiedSet = Used<HashedStorage<CallingKey, NoValue, GivenHash, CountedEqual>>;

std::vector<std::int32_t> numbers_in(CopiedSet& set) {
  std::vector<std::int32_t> numbers;
  set.for_each([&](const auto& element) {
    numbers.push_back(element.key.number());
    return true;
  });
  return numbers;
}

struct Insertions {
  std::vector<std::int32_t> taken;     // values that went into the copy, by their keys
  std::vector<std::int32_t> inserted;  // what was left to the caller
};

// What copies a map.
Insertions copy(CopiedSet& source, CopiedSet& target) {
  Insertions insertions;
  const InUse use(target.storage());
  CopiedSet::Storage::Copier(target.storage(), source.storage())
      .run([&](auto&, const auto& element) { insertions.taken.push_back(element.key.number()); },
           [&](const auto& element) {
             insertions.inserted.push_back(element.key.number());
             target.insert_unique(element.key);
           });
  return insertions;
}

class HashedCopier : public testing::Test {
 protected:
  void TearDown() override {
    for (auto* hook : {&CallingKey::on_hash, &CallingKey::on_comparison, &CallingKey::on_copy}) {
      *hook = nullptr;
    }
    GivenHash::given.clear();
    CountedEqual::equal_from = 1 << 30;
    EXPECT_EQ(CallingKey::alive, 0);
  }

  static void add(CopiedSet& set, std::int32_t count, std::uint32_t seed = 1) {
    std::mt19937 random(seed);
    while (set.size() < static_cast<std::uint32_t>(count)) {
      set.insert_unique(CallingKey(static_cast<std::int32_t>(random() % (1 << 29))));
    }
  }

  static void forget_calls() {
    GivenHash::hashed = CountedEqual::read = 0;
    CountedEqual::locks.clear();
  }

  // Checks that a copy becomes what insertions one by one make, and leaves the same locks.
  static Insertions expect_like_insertions(CopiedSet& source) {
    CopiedSet expected;
    forget_calls();
    source.for_each([&](const auto& element) {
      expected.insert_unique(element.key);
      return true;
    });
    const auto locks = std::exchange(CountedEqual::locks, {});
    CopiedSet target;
    forget_calls();
    Insertions insertions = copy(source, target);
    EXPECT_EQ(CountedEqual::locks, locks);
    EXPECT_EQ(numbers_in(target), numbers_in(expected));
    EXPECT_EQ(target.bucket_count(), expected.bucket_count());
    EXPECT_EQ(target.size(), expected.size());
    return insertions;
  }

  // Runs `code` at the n-th call of a hook, counted from the next one.
  void at_call(std::function<void()>& hook, int n, const std::function<void()>& code) {
    hook = n == 1 ? code : [this, &hook, n, code] { at_call(hook, n - 1, code); };
  }
};

TEST_F(HashedCopier, gives_what_insertions_one_by_one_give) {
  for (const std::int32_t count : {0, 1, 2, 64, 193, 194, 389, 390, 770, 5000}) {
    SCOPED_TRACE(count);
    CopiedSet source;
    add(source, count);
    const Insertions insertions = expect_like_insertions(source);
    EXPECT_EQ(insertions.taken, numbers_in(source));
    EXPECT_EQ(insertions.inserted.size(), 0U);
  }
}

TEST_F(HashedCopier, hashes_each_key_once_and_reads_none_again) {
  CopiedSet source;
  add(source, 5000);
  CopiedSet target;
  forget_calls();
  copy(source, target);
  EXPECT_EQ(GivenHash::hashed, 5000);
  EXPECT_EQ(CountedEqual::read, 0);
  EXPECT_NE(CountedEqual::locks.size(), 0U);
}

TEST_F(HashedCopier, compares_keys_with_one_hash) {
  CopiedSet source;
  for (std::int32_t number = 0; number < 2000; ++number) {
    GivenHash::given[number] = static_cast<std::uint32_t>(number / 4) * 7;
    source.insert_unique(CallingKey(number));
  }
  EXPECT_EQ(expect_like_insertions(source).taken.size(), 2000U);
  EXPECT_EQ(CountedEqual::read, 2000 / 4 * (1 + 2 + 3)) << "within each four";
}

// As when the host reads a text otherwise than it did when the key was inserted.
TEST_F(HashedCopier, finds_keys_that_have_become_equal_beside_each_other) {
  CopiedSet source;
  for (const std::int32_t number : {5, 5 + 193, 7, 7 + 193})
    source.insert_unique(CallingKey(number));
  GivenHash::given = {{5 + 193, 5}, {7 + 193, 7}};
  CountedEqual::equal_from = 193;
  const Insertions insertions = expect_like_insertions(source);
  EXPECT_EQ(insertions.inserted.size(), 0U);
  CopiedSet target;
  copy(source, target);
  EXPECT_EQ(numbers_in(target), (std::vector<std::int32_t>{5 + 193, 7 + 193}));
}

TEST_F(HashedCopier, finds_them_behind_another_key_of_their_bucket) {
  CopiedSet source;
  for (const std::int32_t number : {5, 5 + 386, 5 + 193}) source.insert_unique(CallingKey(number));
  GivenHash::given[5] = 5 + 386;
  CountedEqual::equal_from = 386;
  EXPECT_EQ(expect_like_insertions(source).taken, (std::vector<std::int32_t>{5 + 193, 5 + 386, 5}));
  EXPECT_EQ(CountedEqual::read, 1);
}

TEST_F(HashedCopier, leaves_to_insertion_what_has_come_to_lie_in_another_bucket) {
  for (const std::uint32_t hash : {3U, 100U, 192U}) {
    SCOPED_TRACE(hash);
    GivenHash::given.clear();
    CopiedSet source;
    for (std::int32_t number = 0; number < 300; ++number) source.insert_unique(CallingKey(number));
    GivenHash::given[50] = hash;  // and equal to the number that has it
    GivenHash::given[1000 + static_cast<std::int32_t>(hash)] = hash;
    CountedEqual::equal_from = 50 < hash ? static_cast<std::int32_t>(hash) - 50 : 47;
    const Insertions insertions = expect_like_insertions(source);
    EXPECT_NE(insertions.inserted.size(), 0U);
    EXPECT_EQ(insertions.inserted.size() + insertions.taken.size(), 300U);
    CountedEqual::equal_from = 1 << 30;
  }
}

TEST_F(HashedCopier, leaves_to_insertion_what_follows_a_key_that_may_equal_others) {
  CopiedSet source;
  for (std::int32_t number = 0; number < 300; ++number) source.insert_unique(CallingKey(number));
  GivenHash::given[-1] = 100;
  source.insert_unique(CallingKey(-1));
  const Insertions insertions = expect_like_insertions(source);
  EXPECT_EQ(insertions.taken.size(), 100U);
  EXPECT_EQ(insertions.inserted.size(), 201U);
  EXPECT_EQ(GivenHash::hashed, 100 + 1 + 201 + 193) << "the last for growth";
}

TEST_F(HashedCopier, goes_on_behind_a_key_that_equals_a_former_one) {
  CopiedSet source;
  for (std::int32_t number = 0; number < 50; ++number) source.insert_unique(CallingKey(number));
  for (const std::int32_t number : {150, 189}) source.insert_unique(CallingKey(number));
  GivenHash::given[150] = 20;  // it comes too late now
  CountedEqual::equal_from = 130;
  const Insertions insertions = expect_like_insertions(source);
  EXPECT_EQ(insertions.inserted, std::vector<std::int32_t>{150});
}

TEST_F(HashedCopier, keeps_a_key_whose_equal_goes_as_they_are_compared) {
  CopiedSet source;
  source.insert_unique(CallingKey(5));
  source.insert_unique(CallingKey(5 + 193));
  GivenHash::given[5 + 193] = 5;
  CountedEqual::equal_from = 193;
  CopiedSet target;
  CallingKey::on_comparison = [&] { target.erase(target.begin()); };
  copy(source, target);
  EXPECT_EQ(numbers_in(target), std::vector<std::int32_t>{5});
}

TEST_F(HashedCopier, leaves_everything_to_insertion_where_something_is_already) {
  CopiedSet source;
  add(source, 10);
  CopiedSet target;
  target.insert_unique(CallingKey(1));
  EXPECT_EQ(copy(source, target).inserted.size(), 10U);
  EXPECT_EQ(target.size(), 11U);
}

TEST_F(HashedCopier, copies_into_a_table_that_has_grown_before) {
  CopiedSet source;
  add(source, 1000);
  CopiedSet target;
  CopiedSet expected;
  for (CopiedSet* set : {&target, &expected}) {
    add(*set, 200, 2);
    set->erase(set->begin(), set->end());
  }
  EXPECT_EQ(copy(source, target).taken.size(), 1000U);
  source.for_each([&](const auto& element) {
    expected.insert_unique(element.key);
    return true;
  });
  EXPECT_EQ(numbers_in(target), numbers_in(expected));
  EXPECT_EQ(target.bucket_count(), expected.bucket_count());
}

// The first keys are those that were hashed, compared and copied before.
TEST_F(HashedCopier, has_copied_what_came_before_an_exception) {
  for (auto* hook : {&CallingKey::on_hash, &CallingKey::on_comparison, &CallingKey::on_copy}) {
    CopiedSet source;
    add(source, 500);
    const std::vector<std::int32_t> order = numbers_in(source);
    for (int n = 1; n < 500; n += n < 200 ? 1 : 50) {
      CopiedSet target;
      at_call(*hook, n, [] { throw 1; });
      int calls_left = 0;
      try {
        copy(source, target);
        ++calls_left;
      } catch (int) {
      }
      *hook = nullptr;
      if (hook != &CallingKey::on_comparison) {
        EXPECT_EQ(target.size(), static_cast<std::uint32_t>(n - 1));
        EXPECT_EQ(calls_left, 0);
      }
      for (std::uint32_t i = 0; i < order.size(); ++i) {
        ASSERT_EQ(target.count(CallingKey(order[i])), i < target.size() ? 1U : 0U) << n;
      }
    }
  }
}

TEST_F(HashedCopier, copies_everything_into_a_table_that_gets_another_key_meanwhile) {
  for (auto* hook : {&CallingKey::on_hash, &CallingKey::on_comparison, &CallingKey::on_copy}) {
    for (const int n : {1, 2, 60, 64, 65, 150}) {
      CopiedSet source;
      add(source, 500);
      CopiedSet target;
      at_call(*hook, n, [&] { target.insert_unique(CallingKey(1)); });
      const Insertions insertions = copy(source, target);
      EXPECT_EQ(insertions.taken.size() + insertions.inserted.size(), 500U);
      EXPECT_NE(insertions.inserted.size(), 0U);
      EXPECT_EQ(target.size(), 501U);
      for (const std::int32_t number : numbers_in(source)) {
        ASSERT_EQ(target.count(CallingKey(number)), 1U);
      }
    }
  }
}

TEST_F(HashedCopier, ends_when_its_source_changes) {
  for (const bool is_cleared : {true, false}) {
    CopiedSet source;
    add(source, 500);
    CopiedSet target;
    at_call(CallingKey::on_copy, 100,
            [&] { is_cleared ? source.clear() : source.erase(source.begin()); });
    const Insertions insertions = copy(source, target);
    EXPECT_EQ(source.size(), is_cleared ? 0U : 499U);
    EXPECT_EQ(target.size(), 100U);
    EXPECT_EQ(insertions.taken.size() + insertions.inserted.size(), 100U);
  }
}

TEST_F(HashedCopier, inserts_one_more_key_when_its_source_changes_as_it_is_hashed) {
  CopiedSet source;
  add(source, 500);
  CopiedSet target;
  at_call(CallingKey::on_hash, 100, [&] { source.clear(); });
  const Insertions insertions = copy(source, target);
  EXPECT_EQ(insertions.inserted.size(), 1U);
  EXPECT_LT(insertions.taken.size(), 99U) << "those that were hashed at once before";
  EXPECT_EQ(target.size(), insertions.taken.size() + 1);
}

TEST_F(HashedCopier, grows_a_copy_through_which_a_program_steps) {
  CopiedSet source;
  add(source, 300);
  CopiedSet target;
  CopiedSet::Position position;
  const auto step_as_it_grows = [&] {
    const std::vector<std::int32_t> order = numbers_in(target);
    const auto at = std::ranges::find(order, position.entry().key.number());
    ASSERT_GT(order.end() - at, 1);
    CopiedSet::Storage::advance(position);
    EXPECT_EQ(position.entry().key.number(), at[1]);
  };
  const InUse use(target.storage());
  CopiedSet::Storage::Copier(target.storage(), source.storage())
      .run(
          [&](auto&, const auto&) {
            if (target.size() != 193) return;
            position = target.begin();
            CopiedSet::Storage::advance(position);
            CallingKey::on_copy = step_as_it_grows;
          },
          [](const auto&) {});
  EXPECT_NE(position.node, nullptr);
  EXPECT_FALSE(CallingKey::on_copy);
}

TEST_F(HashedCopier, copies_nothing_more_into_a_table_that_is_destroyed_meanwhile) {
  CopiedSet source;
  add(source, 500);
  CopiedSet target;
  at_call(CallingKey::on_copy, 100, [&] { target.destroy(); });
  {
    CopiedSet::Storage& storage = target.storage();
    const InUse use(storage);
    CopiedSet::Storage::Copier(storage, source.storage())
        .run([](auto&, const auto&) {}, [](const auto&) {});
    EXPECT_EQ(storage.size(), 0U);
  }
  EXPECT_EQ(CallingKey::alive, 500);
}

}  // namespace
