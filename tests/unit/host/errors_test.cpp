// Exceptions of the host's language, as the plugin raises them.
#include <gtest/gtest.h>

#include <optional>
#include <string_view>

#include "host/errors.h"
#include "host/resolver.h"
#include "runtime/encodings.h"
#include "runtime/exceptions.h"
#include "runtime/host.h"
#include "runtime/trace.h"
#include "with_faults.h"

namespace {

class RaisedException : public testing::Test {
 protected:
  RaisedException() { keep_resolver(standin::Host::resolver()); }

  standin::Host host_{with_faults()};
};

/// Whether the exception has its message when it is raised.
class MessageWhenRaised : public standin::TraceObserver {
 public:
  void plugin_call_begins(std::string_view) override {}
  void plugin_call_ends(std::string_view) override {}
  void host_call_begins(std::string_view call) override {
    if (call.starts_with("REALSetPropValueString")) is_set_ = true;
    if (call.starts_with("RuntimeRaiseException")) was_set_when_raised = is_set_;
  }
  void host_call_ends(std::string_view) override {}

  std::optional<bool> was_set_when_raised;

 private:
  bool is_set_ = false;
};

TEST_F(RaisedException, has_its_class_and_its_message) {
  RaiseException("KeyNotFoundException", "there is none", host_encoding::utf8);
  const standin::HostException exception(host_.take_pending_exception());
  EXPECT_EQ(exception.class_name(), "KeyNotFoundException");
  EXPECT_EQ(exception.message(), "there is none");
}

// Raising may run an error handler of the program at once.
TEST_F(RaisedException, has_its_message_before_it_is_raised) {
  MessageWhenRaised trace;
  host_.set_trace(&trace);
  RaiseException("KeyNotFoundException", "there is none", host_encoding::utf8);
  host_.set_trace(nullptr);
  host_.take_pending_exception();
  EXPECT_EQ(trace.was_set_when_raised, true);
}

TEST_F(RaisedException, without_a_message_has_an_empty_one) {
  for (const char* message : {static_cast<const char*>(nullptr), ""}) {
    RaiseException("NilObjectException", message, host_encoding::utf8);
    const standin::HostException exception(host_.take_pending_exception());
    EXPECT_EQ(exception.class_name(), "NilObjectException");
    EXPECT_EQ(exception.message(), "");
  }
}

TEST_F(RaisedException, of_a_class_that_the_host_lacks_is_a_runtime_exception) {
  RaiseException("UnheardOfException", "what happened", host_encoding::utf8);
  const standin::HostException exception(host_.take_pending_exception());
  EXPECT_EQ(exception.class_name(), "RuntimeException");
  EXPECT_EQ(exception.message(), "what happened");
}

}  // namespace
