// Calling registered routines: arguments and results of every kind, exceptions, properties.
#include "fake_host_test.h"
#include "runtime/arrays.h"
#include "runtime/variants.h"

namespace standin {
namespace {

class InvokeTest : public FakePluginTest {
 protected:
  InvokeTest() { start(); }
};

TEST_F(InvokeTest, integers_keep_all_their_bits) {
  EXPECT_EQ(call("Add", {Value::of_integer(-7), Value::of_integer(5)}).as_integer(), -2);
  EXPECT_EQ(call("add", {Value::of_integer(INT32_MIN), Value::of_integer(0)}).as_integer(),
            INT32_MIN);
}

TEST_F(InvokeTest, a_string_result_brings_one_lock) {
  const Value text = text_value("abc");
  const Value result = call("Echo", {text});
  EXPECT_EQ(result.as_string(), text.as_string());
  EXPECT_EQ(lock_count(text.as_string()), 2U);
  EXPECT_EQ(call("Echo", {Value::of_string(nullptr)}).as_string(), nullptr);
}

TEST_F(InvokeTest, only_the_low_byte_of_a_boolean_counts) {
  EXPECT_TRUE(call("IsBig", {Value::of_integer(101)}).as_boolean());
  EXPECT_FALSE(call("IsBig", {Value::of_integer(100)}).as_boolean());
}

TEST_F(InvokeTest, four_arguments_of_mixed_kinds_arrive_in_order) {
  const Value variant = Value::of_variant(variant_from_integer(1));
  const Value nil = Value::of_variant(nullptr);
  const auto four = [&](int a, const Value& b, bool c, const Value& d) {
    return call("Four", {Value::of_integer(a), b, Value::of_boolean(c), d}).as_integer();
  };
  EXPECT_EQ(four(1, text_value("x"), true, variant), 1111);
  EXPECT_EQ(four(2, Value::of_string(nullptr), true, nil), 102);
  EXPECT_EQ(four(3, text_value(""), false, variant), 1013);
}

TEST_F(InvokeTest, array_and_object_results_are_owned) {
  const Value keys = call("Keys");
  ASSERT_EQ(upper_bound(keys.as_array()), 2);
  EXPECT_EQ(get(keys.as_array(), 2).as_integer(), 33);
  EXPECT_EQ(lock_count(keys.as_array()), 1U);
  const Value partner = call("Partner");
  EXPECT_EQ(class_of(partner.as_object()), host_->find_class("fakepartner"));
  EXPECT_EQ(lock_count(partner.as_object()), 1U);
}

TEST_F(InvokeTest, an_assignable_method_is_set_and_read) {
  const MethodInfo& value = method(fake_.get(), "value");
  EXPECT_TRUE(value.is_assignable());
  const Value stored = Value::of_variant(variant_from_integer(42));
  const std::vector<Value> arguments = {text_value("k"), stored};
  invoke_setter(value, fake_.get(), arguments);
  EXPECT_EQ(lock_count(stored.as_object()), 3U);  // here, in the arguments, in the instance
  EXPECT_EQ(to_int32(call("value", {text_value("k")}).as_object()), 42);
  EXPECT_THROW(invoke_setter(method(fake_.get(), "Echo"), fake_.get(), arguments),
               std::logic_error);
}

TEST_F(InvokeTest, a_destructor_runs_when_the_last_lock_goes) {
  const Value stored = Value::of_variant(variant_from_integer(42));
  {
    const std::vector<Value> arguments = {text_value("k"), stored};
    invoke_setter(method(fake_.get(), "value"), fake_.get(), arguments);
  }
  EXPECT_EQ(lock_count(stored.as_object()), 2U);
  fake_.reset();
  EXPECT_EQ(lock_count(stored.as_object()), 1U);
}

TEST_F(InvokeTest, properties_are_read_through_their_getters) {
  EXPECT_EQ(property("callsOfMain").as_integer(), 1);
  EXPECT_EQ(property("CallsPlusTen").as_integer(), 11);
  EXPECT_TRUE(property("Empty").as_boolean());
  const PropertyInfo& label = *class_of(fake_.get())->property("Label");
  write_property(label, fake_.get(), text_value("red"));
  EXPECT_EQ(utf8(property("Label").as_string()), "red");
  EXPECT_THROW(write_property(*class_of(fake_.get())->property("Empty"), fake_.get(),
                              Value::of_boolean(true)),
               std::logic_error);
}

TEST_F(InvokeTest, a_raised_exception_is_thrown_after_the_call) {
  try {
    call("Fail", {text_value("no storage")});
    FAIL() << "nothing was thrown";
  } catch (const HostException& exception) {
    EXPECT_EQ(exception.class_name(), "NilObjectException");
    EXPECT_EQ(exception.message(), "no storage");
    EXPECT_STREQ(exception.what(), "NilObjectException: no storage");
    EXPECT_EQ(lock_count(exception.object()), 1U);
  }
  EXPECT_FALSE(host_->has_pending_exception());
}

TEST_F(InvokeTest, a_second_exception_replaces_the_first) {
  try {
    call("FailTwice", {text_value("second")});
    FAIL() << "nothing was thrown";
  } catch (const HostException& exception) {
    EXPECT_EQ(exception.class_name(), "RuntimeException");
    EXPECT_EQ(exception.message(), "second");
  }
}

TEST_F(InvokeTest, a_missing_value_raises_without_a_message) {
  try {
    call("value", {text_value("k")});
    FAIL() << "nothing was thrown";
  } catch (const HostException& exception) {
    EXPECT_EQ(exception.class_name(), "KeyNotFoundException");
    EXPECT_FALSE(exception_message(exception.object()));
  }
}

TEST_F(InvokeTest, a_cpp_exception_of_the_plugin_passes_through) {
  EXPECT_THROW(call("ThrowException"), std::runtime_error);
}

TEST_F(InvokeTest, a_nil_instance_raises) {
  EXPECT_THROW(invoke(method(fake_.get(), "Keys"), nullptr), HostException);
}

TEST_F(InvokeTest, arguments_must_be_as_declared) {
  EXPECT_THROW(call("Add", {Value::of_integer(1)}), std::logic_error);
  EXPECT_THROW(call("Add", {Value::of_integer(1), text_value("2")}), std::logic_error);
  EXPECT_THROW(call("Keys", {Value::of_integer(1)}), std::logic_error);
}

TEST_F(InvokeTest, methods_are_found_by_their_declarations) {
  const ClassInfo& fake = *host_->find_class("Fake");
  EXPECT_EQ(fake.find_method("ADD( a As Integer , b As Integer ) As Integer"), &fake.methods()[0]);
  EXPECT_EQ(fake.find_method("Add(a as integer) as integer"), nullptr);
}

}  // namespace
}  // namespace standin
