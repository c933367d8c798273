// Faults at the n-th call.
#include "runtime/faults.h"

#include "fake_host_test.h"
#include "runtime/variants.h"

namespace standin {
namespace {

class FaultTest : public FakePluginTest {
 protected:
  FaultTest() {
    HostOptions options;
    options.instrument = true;
    options.strict_ledger = true;
    start(options);
  }
  Faults& faults() { return host_->faults(); }
  Value echo() { return call("Echo", {text_value("abc")}); }
};

TEST_F(FaultTest, the_nth_call_throws_once) {
  faults().throw_at("REALLockString", 2);
  EXPECT_NO_THROW(echo());
  EXPECT_THROW(echo(), InjectedFault);
  EXPECT_NO_THROW(echo());
  EXPECT_EQ(faults().fired(), 1U);
}

TEST_F(FaultTest, from_there_on) {
  faults().throw_at("REALLockString", 2, Faults::Repeat::from_there_on);
  EXPECT_NO_THROW(echo());
  EXPECT_THROW(echo(), InjectedFault);
  EXPECT_THROW(echo(), InjectedFault);
  faults().clear();
  EXPECT_NO_THROW(echo());
}

TEST_F(FaultTest, of_any_entry_point) {
  faults().throw_at(Faults::any_entry_point, 1);
  EXPECT_THROW(call("Partner"), InjectedFault);
  EXPECT_NO_THROW(call("Partner"));
}

TEST_F(FaultTest, null_instead_of_an_answer) {
  faults().answer_null_at("PluginNewInstance", 1);
  EXPECT_EQ(call("Partner").as_object(), nullptr);
  EXPECT_NE(call("Partner").as_object(), nullptr);
}

TEST_F(FaultTest, a_call_answered_with_null_is_not_carried_out) {
  faults().answer_null_at("REALLockString", 1);
  const Value text = text_value("abc");
  const Value same = call("Echo", {text});
  // The plugin's lock was never taken: it handed out one that it does not have.
  EXPECT_EQ(lock_count(text.as_string()), 1U);
  lock(text.as_string());
}

TEST_F(FaultTest, a_callback_runs_before_the_call) {
  const StringRef text = make_string("abc");
  const Value arguments[] = {Value::of_string(text)};
  std::uint32_t locks_seen = 0;
  faults().call_at("REALLockString", 1, [&] { locks_seen = lock_count(text.get()); });
  const Value same = invoke(method(fake_.get(), "Echo"), fake_.get(), arguments);
  EXPECT_EQ(locks_seen, 2U);
  EXPECT_EQ(lock_count(text.get()), 3U);
}

TEST_F(FaultTest, a_callback_may_set_further_faults) {
  faults().call_at("REALLockString", 1, [&] { faults().throw_at("REALLockString", 1); });
  EXPECT_NO_THROW(echo());
  EXPECT_THROW(echo(), InjectedFault);
}

TEST_F(FaultTest, element_procedures_and_declarations_have_names) {
  faults().throw_at("array set integer", 3);
  EXPECT_THROW(call("Keys"), InjectedFault);
  EXPECT_EQ(host_->calls().of("array set integer"), 3U);
  EXPECT_THROW(faults().throw_at("array set integers", 1), std::invalid_argument);
  EXPECT_THROW(faults().throw_at("REALLockString", 0), std::invalid_argument);
  EXPECT_NO_THROW(faults().throw_at("vartype(value as variant) as int32", 1));
}

TEST_F(FaultTest, an_exception_from_a_destructor_is_recorded_and_goes_no_further) {
  {
    const std::vector<Value> arguments = {text_value("k"),
                                          Value::of_variant(variant_from_integer(1))};
    invoke_setter(method(fake_.get(), "value"), fake_.get(), arguments);
  }
  faults().throw_at("REALUnlockObject", 1);
  fake_.reset();
  ASSERT_EQ(host_->destructor_errors().size(), 1U);
  EXPECT_EQ(host_->destructor_errors()[0], "Fake: injected fault in REALUnlockObject");
  // Its two locks were left behind.
  EXPECT_EQ(host_->ledger().live_count(), 2U);
  for (const HandleReport& report : host_->ledger().live()) {
    if (report.kind == HandleKind::string) {
      unlock(static_cast<REALstring>(const_cast<void*>(report.handle)));
    } else {
      unlock(static_cast<REALobject>(const_cast<void*>(report.handle)));
    }
  }
  EXPECT_EQ(host_->ledger().live_count(), 0U);
}

}  // namespace
}  // namespace standin
