// Sets of keys that run code of a test in the middle of an operation.
#ifndef ZRB_TESTS_UNIT_KEYS_STORAGE_IN_USE_H
#define ZRB_TESTS_UNIT_KEYS_STORAGE_IN_USE_H

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <utility>

#include "keys/hashed_storage.h"
#include "keys/in_use.h"
#include "keys/ordered_storage.h"
#include "storage_inspectors.h"

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

inline testing::AssertionResult check(HashedSet& set) {
  return HashedStorageInspector::check(set.storage());
}
inline testing::AssertionResult check(OrderedSet& set) {
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

#endif
