// Storage that is destroyed while it is in use.
#include "keys/in_use.h"

#include <gtest/gtest.h>

namespace {

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

}  // namespace
