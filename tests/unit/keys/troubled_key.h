// A key that counts its copies and fails on demand, for tests of the storage engines.
#ifndef ZRB_TESTS_UNIT_KEYS_TROUBLED_KEY_H
#define ZRB_TESTS_UNIT_KEYS_TROUBLED_KEY_H

#include <cstdint>
#include <stdexcept>

/// Thrown where a test asked for it.
struct Trouble : std::runtime_error {
  Trouble() : std::runtime_error("trouble") {}
};

/// Counts down at every hash, comparison, copy and destruction of a stored key; throws at zero.
class TroubledKey {
 public:
  explicit TroubledKey(std::int32_t number) : number_(number) { ++alive; }
  TroubledKey(const TroubledKey& other) : number_(other.number_), stored_(true) {
    may_throw(Copying);
    ++alive;
  }
  TroubledKey& operator=(const TroubledKey&) = delete;
  ~TroubledKey() noexcept(false) {
    --alive;
    if (stored_) may_throw(Destruction);
  }

  std::int32_t number() const { return number_; }

  enum Operation : unsigned { Hashing = 1, Comparison = 2, Copying = 4, Destruction = 8, All = 15 };

  static void may_throw(Operation operation) {
    if ((armed & operation) == 0 || --calls_until_trouble != 0) return;
    throw Trouble();
  }

  /// The n-th call of one of the operations throws; 0 for none.
  static void arm(unsigned operations, int n) {
    armed = n == 0 ? 0 : operations;
    calls_until_trouble = n;
  }

  static inline int alive = 0;

 private:
  static inline unsigned armed = 0;
  static inline int calls_until_trouble = 0;

  std::int32_t number_;
  bool stored_ = false;  // a copy, as the engines keep it; the tests' own keys never fail
};

struct TroubledHash {
  std::uint32_t operator()(const TroubledKey& key) const {
    TroubledKey::may_throw(TroubledKey::Hashing);
    return static_cast<std::uint32_t>(key.number());
  }
};

struct TroubledEqual {
  bool operator()(const TroubledKey& a, const TroubledKey& b) const {
    TroubledKey::may_throw(TroubledKey::Comparison);
    return a.number() == b.number();
  }
};

struct TroubledLess {
  bool operator()(const TroubledKey& a, const TroubledKey& b) const {
    TroubledKey::may_throw(TroubledKey::Comparison);
    return a.number() < b.number();
  }
};

#endif
