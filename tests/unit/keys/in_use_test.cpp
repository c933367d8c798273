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

/// A key that runs code of the test when it is hashed or compared, and when a stored one is made or
/// destroyed.
class CallingKey {
 public:
  explicit CallingKey(std::int32_t number) : number_(number) { ++alive; }
  CallingKey(const CallingKey& other) : number_(other.number_), stored_(true) {
    call(on_copy);
    ++alive;
  }
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
  static inline std::function<void()> on_hash;  // run once, then forgotten; so are the others
  static inline std::function<void()> on_comparison;
  static inline std::function<void()> on_copy;
  static inline std::function<void()> on_destruction;

 private:
  std::int32_t number_;
  bool stored_ = false;
};

struct NumberHash {
  std::uint32_t operator()(const CallingKey& key) const {
    CallingKey::call(CallingKey::on_hash);
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
  static void leave_locks(const CallingKey&, const CallingKey&) {
    CallingKey::call(CallingKey::on_comparison);
  }
};

/// A storage whose operations are called as a container calls them: with the storage in use.
template <class Engine>
class Used {
 public:
  using Storage = Engine;
  using Position = typename Storage::Position;

  Used() = default;
  Used(const Used&) = delete;
  Used& operator=(const Used&) = delete;
  ~Used() { destroy(); }

  void destroy() {
    if (storage_ != nullptr) destroy_storage(std::exchange(storage_, nullptr));
  }

  Storage& storage() { return *storage_; }
  std::uint32_t size() const { return storage_->size(); }
  bool empty() const { return storage_->empty(); }
  std::uint32_t bucket_count() const { return storage_->bucket_count(); }
  Position begin() { return storage_->begin(); }
  Position end() { return storage_->end(); }
  void clear() { storage_->clear(); }
  template <class Visit>
  bool for_each(Visit visit) {
    return storage_->for_each(visit);
  }

  Position find(const CallingKey& key) {
    const InUse use(*storage_);
    return storage_->find(key);
  }
  std::uint32_t count(const CallingKey& key) {
    const InUse use(*storage_);
    return storage_->count(key);
  }
  auto insert_unique(const CallingKey& key) {
    const InUse use(*storage_);
    return storage_->insert_unique(key);
  }
  std::uint32_t erase(const CallingKey& key) {
    const InUse use(*storage_);
    return storage_->erase(key);
  }
  void erase(Position position) {
    const InUse use(*storage_);
    storage_->erase(position);
  }
  void erase(Position first, Position last) {
    const InUse use(*storage_);
    storage_->erase(first, last);
  }

 private:
  Storage* storage_ = new Storage;  // null when it was destroyed
};

using HashedSet = Used<HashedStorage<CallingKey, NoValue, NumberHash, CallingEqual>>;
using OrderedSet = Used<OrderedStorage<CallingKey, NoValue, CallingLess>>;

testing::AssertionResult check(HashedSet& set) {
  return HashedStorageInspector::check(set.storage());
}
testing::AssertionResult check(OrderedSet& set) {
  return OrderedStorageInspector::check(set.storage());
}

template <class Set>
class StorageInUse : public testing::Test {
 protected:
  void TearDown() override {
    for (auto* hook : {&CallingKey::on_hash, &CallingKey::on_comparison, &CallingKey::on_copy,
                       &CallingKey::on_destruction}) {
      *hook = nullptr;
    }
    EXPECT_EQ(CallingKey::alive, 0);
  }

  // Runs the code at every call of the hook that the code itself does not make.
  void at_every_call(std::function<void()>& hook, std::function<void()> code) {
    repeat_ = [this, &hook, code = std::move(code)] {
      ++repetitions_;
      code();
      hook = repeat_;
    };
    hook = repeat_;
  }
  // Runs the code at the n-th call of the hook.
  void at_call(std::function<void()>& hook, int n, std::function<void()> code) {
    if (n == 1) {
      hook = std::move(code);
    } else {
      hook = [this, &hook, n, code = std::move(code)] { at_call(hook, n - 1, code); };
    }
  }

  int repetitions_ = 0;

  static void add(Set& set, std::int32_t count) {
    for (std::int32_t number = 0; number < count; ++number) set.insert_unique(CallingKey(number));
  }
  // A key that goes in the middle of a search for it: `is_missing(set, key)`.
  template <class Search>
  static void expect_removed_key_alive_during(Search is_missing) {
    Set set;
    add(set, 10);
    int alive_in_search = 0;
    CallingKey::on_comparison = [&] {
      set.erase(CallingKey(5));
      alive_in_search = CallingKey::alive;
    };
    const CallingKey key(5);
    EXPECT_TRUE(is_missing(set, key));
    EXPECT_EQ(alive_in_search, 11);
    EXPECT_EQ(CallingKey::alive, 10);
    EXPECT_TRUE(check(set));
  }
  // A removal whose element clears the set as it dies, and fills it again.
  template <class Removal>
  static void expect_replaced_by(Removal remove) {
    Set set;
    add(set, 10);
    CallingKey::on_destruction = [&] {
      set.clear();
      add(set, 300);
    };
    remove(set);
    expect_first(set, 300);
    add(set, 600);
    expect_first(set, 600);
  }
  // Others than `add` adds.
  static void add_more(Set& set, std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) set.insert_unique(CallingKey(2000 + i));
  }
  // Those that `add` adds, and no others.
  static void expect_first(Set& set, std::int32_t count) {
    EXPECT_EQ(set.size(), static_cast<std::uint32_t>(count));
    EXPECT_TRUE(check(set));
    for (std::int32_t number = 0; number < count; ++number) {
      EXPECT_EQ(set.count(CallingKey(number)), 1U) << number;
    }
  }

 private:
  std::function<void()> repeat_;
};

/// Storage that tells when it is destroyed, and may throw then or when it is emptied.
class Witness : public Usable {
 public:
  enum class Fails { never, emptied, destroyed };

  Witness(bool& alive, Fails fails) : alive_(alive), fails_(fails) { alive_ = true; }
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;
  ~Witness() noexcept(false) {
    alive_ = false;
    if (fails_ == Fails::destroyed) throw 1;
  }

  void clear() const {
    if (fails_ == Fails::emptied) throw 1;
  }
  void finish_work() {}

 private:
  bool& alive_;
  Fails fails_;
};

TEST(StorageThatIsDestroyedInUse, lives_until_the_use_ends) {
  bool alive = false;
  auto* const storage = new Witness(alive, Witness::Fails::never);
  {
    const InUse use(*storage);
    {
      const InUse inner(*storage);
      destroy_storage(storage);
    }
    EXPECT_TRUE(alive);
  }
  EXPECT_FALSE(alive);
}

TEST(StorageThatIsDestroyedInUse, is_destroyed_although_it_could_not_be_emptied) {
  bool alive = false;
  auto* const storage = new Witness(alive, Witness::Fails::emptied);
  {
    const InUse use(*storage);
    EXPECT_THROW(destroy_storage(storage), int);
    EXPECT_TRUE(alive);
  }
  EXPECT_FALSE(alive);
}

TEST(StorageThatIsDestroyedInUse, passes_on_what_its_destruction_throws) {
  bool alive = false;
  auto* const storage = new Witness(alive, Witness::Fails::destroyed);
  const auto destroy_in_use = [&] {
    const InUse use(*storage);
    destroy_storage(storage);
  };
  EXPECT_THROW(destroy_in_use(), int);
  EXPECT_FALSE(alive);
}

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

// What a copy of a tree does.
class AppenderInUse : public StorageInUse<OrderedSet> {
 protected:
  // Appends three keys, and a fourth one while `hook` adds another; what came of the fourth.
  bool append_while(std::function<void()>& hook, int call) {
    OrderedSet set;
    const InUse use(set.storage());
    OrderedSet::Storage::Appender appender(set.storage());
    for (std::int32_t number = 0; number < 3; ++number) {
      EXPECT_NE(appender.append(CallingKey(number)), nullptr);
    }
    at_call(hook, call, [&] { set.insert_unique(CallingKey(1000)); });
    const bool appended = appender.append(CallingKey(3)) != nullptr;
    hook = nullptr;
    EXPECT_EQ(set.size(), appended ? 5U : 4U);
    EXPECT_EQ(CallingKey::alive, static_cast<int>(set.size()));
    EXPECT_EQ(appender.append(CallingKey(4)), nullptr) << "for good";
    EXPECT_TRUE(check(set));
    return appended;
  }
};

TEST_F(AppenderInUse, appends_nothing_when_another_key_comes_as_locks_are_left) {
  for (int call = 1; call <= 3; ++call) {
    EXPECT_FALSE(append_while(CallingKey::on_comparison, call)) << call;
  }
}

TEST_F(AppenderInUse, appends_nothing_when_another_key_comes_as_the_new_one_is_made) {
  EXPECT_FALSE(append_while(CallingKey::on_copy, 1));
}

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
