// The ledger: balances, and every kind of misuse.
#include "runtime/ledger.h"

#include <gmock/gmock.h>

#include "fake_host_test.h"
#include "runtime/arrays.h"
#include "runtime/variants.h"

namespace standin {
namespace {

using testing::HasSubstr;
using Kind = Violation::Kind;

class LedgerTest : public FakePluginTest {
 protected:
  LedgerTest() {
    HostOptions options;
    options.strict_ledger = true;
    start(options);
  }
  Ledger& ledger() { return host_->ledger(); }
  // The only violation so far.
  Violation violation() {
    if (ledger().violations().size() != 1) {
      ADD_FAILURE() << ledger().violations().size() << " violations";
      return {};
    }
    return ledger().violations()[0];
  }
  template <class Function>
  Function* entry(const char* name) {
    return reinterpret_cast<Function*>(host_->resolve(name));
  }
};

TEST_F(LedgerTest, a_clean_program_leaves_nothing) {
  const Ledger::Snapshot before = ledger().snapshot();
  {
    call("Echo", {text_value("abc")});
    call("Keys");
    EXPECT_THROW(call("Fail", {text_value("x")}), HostException);
    const Value held = text_value("held");
    const auto reports = ledger().held_since(before);
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_EQ(reports[0].kind, HandleKind::string);
    EXPECT_EQ(reports[0].locks, 1U);
    EXPECT_EQ(reports[0].change, 1);
    EXPECT_THAT(text(reports), HasSubstr("\"held\" (UTF-8): 1 lock\n"));
  }
  EXPECT_TRUE(ledger().held_since(before).empty());
  EXPECT_TRUE(ledger().violations().empty());
}

TEST_F(LedgerTest, further_locks_on_an_old_handle_are_seen) {
  const Value text = text_value("abc");
  const Ledger::Snapshot before = ledger().snapshot();
  call("Leak", {text});
  const auto reports = ledger().held_since(before);
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_EQ(reports[0].handle, text.as_string());
  EXPECT_EQ(reports[0].locks, 2U);
  EXPECT_EQ(reports[0].change, 1);
  unlock(text.as_string());
  EXPECT_TRUE(ledger().changes_since(before).empty());
}

TEST_F(LedgerTest, lost_locks_are_seen) {
  const Value text = text_value("abc");
  lock(text.as_string());
  const Ledger::Snapshot before = ledger().snapshot();
  unlock(text.as_string());
  EXPECT_TRUE(ledger().held_since(before).empty());
  ASSERT_EQ(ledger().changes_since(before).size(), 1U);
  EXPECT_EQ(ledger().changes_since(before)[0].change, -1);
}

TEST_F(LedgerTest, a_double_release_is_caught) {
  REALstring text = make_string("twice").release();
  const auto unlock_string = entry<void(REALstring)>("REALUnlockString");
  unlock_string(text);
  EXPECT_TRUE(ledger().violations().empty());
  unlock_string(text);
  EXPECT_EQ(violation().kind, Kind::double_release);
  EXPECT_EQ(violation().entry_point, "REALUnlockString");
  EXPECT_THAT(violation().text(), HasSubstr("\"twice\""));
}

TEST_F(LedgerTest, a_release_of_somebody_elses_lock_is_caught_when_that_one_releases) {
  {
    // One lock, and it is the caller's: the plugin's first unlock is one too many already.
    const Value arguments[] = {text_value("abc")};
    invoke(method(fake_.get(), "ReleaseTwice"), fake_.get(), arguments);
  }
  ASSERT_EQ(ledger().violations().size(), 2U);
  EXPECT_EQ(ledger().violations()[0].entry_point, "REALUnlockString");
  EXPECT_EQ(ledger().violations()[1].entry_point, "the host");
  EXPECT_EQ(ledger().violations()[1].kind, Kind::double_release);
}

TEST_F(LedgerTest, a_use_after_release_is_caught) {
  call("LockAfterRelease");
  EXPECT_EQ(violation().kind, Kind::use_after_release);
  EXPECT_EQ(violation().entry_point, "REALLockString");
  EXPECT_THAT(violation().handle, HasSubstr("gone"));
}

TEST_F(LedgerTest, released_handles_stay_out_of_use_and_unreadable) {
  REALstring text = make_string("secret").release();
  const char* data = bytes(text).data();
  unlock(text);
  EXPECT_NE(std::string(data, 6), "secret");
  EXPECT_THAT(describe(text), HasSubstr("released string #"));
  for (int i = 0; i < 100; ++i) EXPECT_NE(make_string("secret").get(), text);
}

TEST_F(LedgerTest, null_is_refused_where_a_handle_is_demanded) {
  call("LockNull");
  EXPECT_EQ(violation().kind, Kind::null_handle);
  EXPECT_EQ(violation().entry_point, "REALLockObject");
  ledger().clear_violations();
  const char* demanding[] = {"REALLockString", "REALUnlockString", "REALUnlockObject",
                             "VariantToObject", "VariantToString"};
  for (const char* name : demanding) {
    entry<void*(void*)>(name)(nullptr);
    EXPECT_EQ(violation().entry_point, name);
    EXPECT_EQ(violation().kind, Kind::null_handle);
    ledger().clear_violations();
  }
  entry<std::int32_t(REALobject)>("VariantToInt32")(nullptr);
  entry<std::uint32_t(REALobject)>("VariantHash")(nullptr);
  EXPECT_TRUE(ledger().violations().empty());
}

TEST_F(LedgerTest, handles_must_be_of_the_right_kind) {
  const Value text = text_value("abc");
  call("LockStringAsObject", {text});
  EXPECT_EQ(violation().kind, Kind::wrong_kind);
  EXPECT_EQ(lock_count(text.as_string()), 1U);
  ledger().clear_violations();
  const ArrayRef array = make_array(Type::of(TypeKind::integer), 0);
  entry<void(REALobject)>("REALLockObject")(reinterpret_cast<REALobject>(array.get()));
  EXPECT_TRUE(ledger().violations().empty());
  EXPECT_EQ(lock_count(array.get()), 2U);
  unlock(array.get());
  entry<std::int32_t(REALobject)>("VariantToInt32")(reinterpret_cast<REALobject>(array.get()));
  EXPECT_EQ(violation().kind, Kind::wrong_kind);
}

TEST_F(LedgerTest, what_never_was_a_handle_is_not_touched) {
  std::intptr_t words[8] = {};
  entry<void(REALobject)>("REALLockObject")(reinterpret_cast<REALobject>(words));
  EXPECT_EQ(violation().kind, Kind::unknown_handle);
  for (const std::intptr_t word : words) EXPECT_EQ(word, 0);
}

TEST_F(LedgerTest, writing_outside_the_instance_data_is_caught) {
  call("WriteTooFar");
  EXPECT_TRUE(ledger().violations().empty());
  fake_.reset();
  EXPECT_EQ(violation().kind, Kind::damaged_instance);
  EXPECT_THAT(violation().handle, HasSubstr("Fake #"));
}

TEST_F(LedgerTest, a_hook_hears_of_each_violation) {
  std::vector<std::string> heard;
  ledger().on_violation([&](const Violation& v) { heard.push_back(v.text()); });
  call("LockNull");
  ASSERT_EQ(heard.size(), 1U);
  EXPECT_EQ(heard[0], "REALLockObject: nil was given null instead of a handle");
}

TEST(PlainLedger, does_nothing_unless_asked) {
  Host host;
  const StringRef text = make_string("abc");
  EXPECT_FALSE(host.ledger().active());
  EXPECT_EQ(host.ledger().live_count(), 0U);
}

TEST(PlainLedger, an_instrumented_host_lists_handles_without_being_strict) {
  HostOptions options;
  options.instrument = true;
  Host host(options);
  const StringRef text = make_string("abc");
  EXPECT_EQ(host.ledger().live_count(), 1U);
  reinterpret_cast<void (*)(REALobject)>(host.resolve("REALLockObject"))(nullptr);
  EXPECT_TRUE(host.ledger().violations().empty());
}

}  // namespace
}  // namespace standin
