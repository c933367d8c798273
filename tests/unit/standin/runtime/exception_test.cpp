// Exceptions: making, raising, and leaving them pending.
#include "runtime/exceptions.h"

#include <gtest/gtest.h>

#include "runtime/host.h"
#include "runtime/services.h"
#include "runtime/strings.h"

namespace standin {
namespace {

TEST(Exceptions, carry_class_message_and_number) {
  Host host;
  try {
    raise("OutOfBoundsException", "index 5", 3);
    FAIL();
  } catch (const HostException& exception) {
    EXPECT_EQ(exception.class_name(), "OutOfBoundsException");
    EXPECT_EQ(exception.message(), "index 5");
    EXPECT_EQ(exception_error_number(exception.object()), 3);
    EXPECT_STREQ(exception.what(), "OutOfBoundsException: index 5");
  }
}

TEST(Exceptions, of_an_unknown_class_are_RuntimeExceptions) {
  Host host;
  EXPECT_EQ(class_of(make_exception("GhostException", "x").get())->name(), "RuntimeException");
  EXPECT_EQ(class_of(make_exception("Dictionary", "x").get())->name(), "RuntimeException");
}

TEST(Exceptions, the_pending_one_is_locked_and_replaced) {
  Host host;
  const ObjectRef first = make_exception("NilObjectException", "first");
  const ObjectRef second = make_exception("NilObjectException", "second");
  services::raise_exception(first.get());
  EXPECT_TRUE(host.has_pending_exception());
  EXPECT_EQ(lock_count(first.get()), 2U);
  services::raise_exception(second.get());
  EXPECT_EQ(lock_count(first.get()), 1U);
  EXPECT_EQ(host.take_pending_exception(), second);
  EXPECT_FALSE(host.has_pending_exception());
  services::raise_exception(nullptr);
  EXPECT_FALSE(host.has_pending_exception());
}

TEST(Exceptions, a_message_is_set_by_property) {
  Host host;
  const ObjectRef exception = make_exception("NilObjectException", "old");
  const StringRef text = make_string("new");
  using services::HostBoolean;
  EXPECT_EQ(services::set_property_string(exception.get(), "message", text.get()),
            HostBoolean::yes);
  EXPECT_EQ(lock_count(text.get()), 2U);
  EXPECT_EQ(exception_message(exception.get()), text);
  EXPECT_EQ(services::set_property_string(exception.get(), "Message", nullptr), HostBoolean::yes);
  EXPECT_FALSE(exception_message(exception.get()));
  EXPECT_EQ(services::set_property_string(exception.get(), "Ghost", text.get()), HostBoolean::no);
  EXPECT_EQ(services::set_property_string(exception.get(), "ErrorNumber", text.get()),
            HostBoolean::no);
}

TEST(Exceptions, hidden_classes_are_hidden_from_plugins_only) {
  HostOptions options;
  options.without_classes = {"keynotfoundexception"};
  Host host(options);
  EXPECT_EQ(services::new_instance("KeyNotFoundException"), nullptr);
  EXPECT_EQ(services::new_instance("Ghost"), nullptr);
  EXPECT_TRUE(ObjectRef::adopt(services::new_instance("RuntimeException")));
  EXPECT_EQ(class_of(make_exception("KeyNotFoundException", "").get())->name(),
            "KeyNotFoundException");
}

}  // namespace
}  // namespace standin
