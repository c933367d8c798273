// Traces, as they are printed.
#include "runtime/trace.h"

#include <sstream>

#include "fake_host_test.h"
#include "runtime/variants.h"

namespace standin {
namespace {

class TraceTest : public FakePluginTest {
 protected:
  TraceTest() : printer_(out_) {
    HostOptions options;
    options.instrument = true;
    start(options);
    host_->set_trace(&printer_);
  }
  ~TraceTest() override { host_->set_trace(nullptr); }

  // What was printed since, without the digits of serial numbers.
  std::string printed() {
    std::string result;
    bool in_serial = false;
    for (const char c : out_.str()) {
      in_serial = c == '#' || (in_serial && c >= '0' && c <= '9');
      if (!in_serial || c == '#') result += c;
    }
    out_.str("");
    return result;
  }

  std::ostringstream out_;
  TracePrinter printer_;
};

TEST_F(TraceTest, a_call_without_host_calls_is_one_line) {
  call("Add", {Value::of_integer(2), Value::of_integer(3)});
  EXPECT_EQ(printed(), "Fake #.Add(2, 3) -> 5\n");
}

TEST_F(TraceTest, host_calls_are_indented) {
  call("Echo", {text_value("abc")});
  EXPECT_EQ(printed(),
            "Fake #.Echo(string # \"abc\" (UTF-8))\n"
            "  REALLockString(string # \"abc\" (UTF-8))\n"
            "-> string # \"abc\" (UTF-8)\n");
}

TEST_F(TraceTest, exceptions_are_told) {
  EXPECT_THROW(call("Fail", {Value::of_string(nullptr)}), HostException);
  EXPECT_EQ(printed(),
            "Fake #.Fail(nil)\n"
            "  PluginNewInstance(\"NilObjectException\") -> NilObjectException #\n"
            "  REALSetPropValueString(NilObjectException #, \"Message\", nil) -> True\n"
            "  RuntimeRaiseException(NilObjectException #)\n"
            "  REALUnlockObject(NilObjectException #)\n"
            "-> raises NilObjectException\n");
}

TEST_F(TraceTest, destructors_and_cpp_exceptions_are_told) {
  EXPECT_THROW(call("ThrowException"), std::runtime_error);
  EXPECT_EQ(printed(), "Fake #.ThrowException -> left by a C++ exception\n");
  fake_.reset();
  EXPECT_EQ(printed(), "Fake #.destructor\n");
}

TEST_F(TraceTest, faults_are_told) {
  host_->faults().throw_at("REALLockString", 1);
  EXPECT_THROW(call("Echo", {text_value("abc")}), InjectedFault);
  EXPECT_EQ(printed(),
            "Fake #.Echo(string # \"abc\" (UTF-8))\n"
            "  REALLockString(string # \"abc\" (UTF-8)) -> throws\n"
            "-> left by a C++ exception\n");
}

}  // namespace
}  // namespace standin
