// Copies of trees that are changed by what they call.
#include "keys/ordered_storage.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>

#include "storage_in_use.h"

namespace {

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

}  // namespace
