// The host's own classes as the language sees them.
#include "runtime/classes.h"

#include <gtest/gtest.h>

#include "runtime/host.h"
#include "runtime/services.h"
#include "runtime/strings.h"

namespace standin {
namespace {

TEST(NativeClasses, exceptions_derive_from_RuntimeException) {
  Host host;
  const ClassInfo& base = *host.find_class("RuntimeException");
  for (const char* name :
       {"NilObjectException", "KeyNotFoundException", "OutOfBoundsException",
        "IllegalCastException", "TypeMismatchException", "ZeroDivisionException",
        "StackOverflowException", "OutOfMemoryException", "UnsupportedFormatException"}) {
    const ClassInfo* exception = host.find_class(name);
    ASSERT_NE(exception, nullptr) << name;
    EXPECT_TRUE(exception->derives_from(base)) << name;
    EXPECT_TRUE(exception->is_native());
    EXPECT_EQ(exception->overloads("Constructor").size(), 3U) << name;
  }
  EXPECT_FALSE(host.find_class("Dictionary")->derives_from(base));
}

TEST(NativeClasses, an_exceptions_message_and_number_are_properties) {
  Host host;
  const ObjectRef exception = host.new_instance("KeyNotFoundException");
  const ClassInfo& exception_class = *class_of(exception.get());
  const Value arguments[] = {Value::of_string(make_string("gone")), Value::of_integer(7)};
  invoke(*exception_class.find_method("Constructor(message As String, errorNumber As Integer)"),
         exception.get(), arguments);
  EXPECT_EQ(utf8(read_property(*exception_class.property("MESSAGE"), exception.get()).as_string()),
            "gone");
  EXPECT_EQ(read_property(*exception_class.property("ErrorNumber"), exception.get()).as_integer(),
            7);
}

TEST(NativeClasses, live_instances_are_counted) {
  Host host;
  const ClassInfo& object = *host.find_class("Object");
  EXPECT_EQ(object.live_instances(), 0U);
  {
    const ObjectRef a = host.new_instance(object);
    const ObjectRef b = host.new_instance(object);
    EXPECT_EQ(object.live_instances(), 2U);
  }
  EXPECT_EQ(object.live_instances(), 0U);
}

TEST(NativeClasses, objects_may_outlive_their_host) {
  ObjectRef dictionary;
  {
    Host host;
    dictionary = host.new_instance("Dictionary");
  }
  EXPECT_EQ(class_of(dictionary.get())->name(), "Dictionary");
}

TEST(Types, have_the_languages_names) {
  Host host;
  EXPECT_EQ(name(Type::of(TypeKind::integer)), "Integer");
  EXPECT_EQ(name(Type::of(TypeKind::object)), "Object");
  EXPECT_EQ(name(Type::of_class(host.find_class("date"))), "Date");
  EXPECT_EQ(name(Type::array_of(Type::of(TypeKind::double_))), "Double()");
  EXPECT_EQ(builtin_type("int32"), Type::of(TypeKind::integer));
  EXPECT_EQ(builtin_type("Date"), std::nullopt);
}

}  // namespace
}  // namespace standin
