// What the host refuses to register, and how it says so.
#include "runtime/registration.h"

#include <gmock/gmock.h>

#include <iterator>

#include "runtime/host.h"

namespace standin {
namespace {

using testing::AllOf;
using testing::HasSubstr;

void routine() {}

// A record that is in order but for what a test does to it.
class RegistrationTest : public testing::Test {
 protected:
  RegistrationTest() {
    record_.version = 9;
    record_.name = "Thing";
    record_.dataSize = 32;
    record_.methods = methods_;
    record_.methodCount = 2;
    record_.properties = properties_;
    record_.propertyCount = 1;
  }

  // The complaint, or "registered".
  std::string register_record() {
    auto* register_class =
        reinterpret_cast<void (*)(REALclassDefinition*)>(host_.resolve("PluginRegisterClass"));
    register_class(&record_);
    try {
      host_.finish_registration();
    } catch (const PluginLoadError& error) {
      EXPECT_EQ(host_.find_class("Thing"), nullptr);
      EXPECT_TRUE(host_.plugin_classes().empty());
      return error.what();
    }
    return "registered";
  }

  std::string register_method(const char* declaration) {
    methods_[1].declaration = declaration;
    return register_record();
  }

  void* const routine_ = reinterpret_cast<void*>(&routine);
  REALmethodDefinition methods_[2] = {{routine_, nullptr, "First(a as integer) as Thing", 4},
                                      {routine_, nullptr, "Second", 4}};
  REALproperty properties_[1] = {
      {nullptr, "Count", "Integer", 6, routine_, nullptr, 0, nullptr, 0, nullptr}};
  REALclassDefinition record_{};
  Host host_;
};

TEST_F(RegistrationTest, a_record_in_order_is_taken) {
  EXPECT_EQ(register_record(), "registered");
  const ClassInfo* thing = host_.find_class("thing");
  ASSERT_NE(thing, nullptr);
  EXPECT_EQ(thing->methods().size(), 2U);
  EXPECT_EQ(thing->methods()[0].declaration.result, Type::of_class(thing));
  EXPECT_EQ(thing->methods()[1].index, 1U);
  EXPECT_EQ(thing->data_size(), 32U);
  EXPECT_GT(record_.forSystemUse, 0);
}

TEST_F(RegistrationTest, only_version_9_is_read) {
  record_.version = 10;
  EXPECT_THAT(register_record(), AllOf(HasSubstr("class Thing"), HasSubstr("version is 10")));
}

TEST_F(RegistrationTest, data_comes_in_steps_of_16_bytes) {
  record_.dataSize = 12;
  EXPECT_THAT(register_record(), HasSubstr("multiple of 16"));
}

TEST_F(RegistrationTest, a_class_needs_a_name) {
  record_.name = nullptr;
  EXPECT_THAT(register_record(), HasSubstr("name"));
  record_.name = "no name";
  EXPECT_THAT(register_record(), HasSubstr("no name"));
}

TEST_F(RegistrationTest, a_name_is_given_once) {
  record_.name = "dictionary";
  EXPECT_THAT(register_record(), HasSubstr("already"));
  record_.name = "integer";
  EXPECT_THAT(register_record(), HasSubstr("already"));
}

TEST_F(RegistrationTest, a_superclass_must_be_known) {
  record_.superName = "Ghost";
  EXPECT_THAT(register_record(), HasSubstr("Ghost"));
}

TEST_F(RegistrationTest, counts_and_tables_must_agree) {
  record_.methods = nullptr;
  EXPECT_THAT(register_record(), HasSubstr("methods is null"));
  record_.methods = methods_;
  record_.propertyCount = -1;
  EXPECT_THAT(register_record(), HasSubstr("propertiesCount is negative"));
}

TEST_F(RegistrationTest, what_the_host_has_no_use_for_is_refused) {
  record_.eventCount = 1;
  EXPECT_THAT(register_record(), HasSubstr("events"));
}

TEST_F(RegistrationTest, an_unreadable_declaration_is_shown_with_the_column) {
  EXPECT_THAT(register_method("Second(a integer)"),
              AllOf(HasSubstr("class Thing"), HasSubstr("method row 1"),
                    HasSubstr("\"Second(a integer)\""), HasSubstr("column 10"), HasSubstr("As")));
}

TEST_F(RegistrationTest, an_unknown_type_is_named) {
  EXPECT_THAT(register_method("Second(a as Ghost)"),
              AllOf(HasSubstr("\"Ghost\""), HasSubstr("column 13")));
}

TEST_F(RegistrationTest, what_cannot_be_passed_is_refused) {
  EXPECT_THAT(register_method("Second(a as double)"), HasSubstr("cannot take a Double"));
  EXPECT_THAT(register_method("Second as int64"), HasSubstr("cannot return a Int64"));
  EXPECT_THAT(register_method("Second(byref a as integer)"), HasSubstr("ByRef"));
  EXPECT_THAT(register_method("Second(a as integer, b as integer, c as integer, d as integer, "
                              "e as integer)"),
              HasSubstr("more than 4"));
}

TEST_F(RegistrationTest, a_row_needs_a_routine_and_a_declaration) {
  methods_[1].function = nullptr;
  EXPECT_THAT(register_record(), HasSubstr("has no routine"));
  methods_[1].function = routine_;
  EXPECT_THAT(register_method(nullptr), HasSubstr("has no declaration"));
}

TEST_F(RegistrationTest, a_setter_needs_a_result) {
  methods_[1].setterFunction = routine_;
  EXPECT_THAT(register_record(), HasSubstr("assignable"));
}

TEST_F(RegistrationTest, overloads_must_differ_in_their_parameters) {
  EXPECT_THAT(register_method("FIRST(b as integer) as string"), HasSubstr("told apart"));
  EXPECT_EQ(register_method("First(b as string)"), "registered");
}

TEST_F(RegistrationTest, conversions_may_differ_in_their_result) {
  methods_[0].declaration = "Operator_Convert as Dictionary";
  EXPECT_EQ(register_method("Operator_Convert as string"), "registered");
}

TEST_F(RegistrationTest, a_property_needs_a_getter_and_a_known_type) {
  properties_[0].getter = nullptr;
  EXPECT_THAT(register_record(), HasSubstr("no getter"));
  properties_[0].getter = routine_;
  properties_[0].type = "Wonder";
  EXPECT_THAT(register_record(), HasSubstr("\"Wonder\""));
}

TEST_F(RegistrationTest, all_errors_are_told_at_once) {
  methods_[0].declaration = "(";
  auto* register_class =
      reinterpret_cast<void (*)(REALclassDefinition*)>(host_.resolve("PluginRegisterClass"));
  register_class(nullptr);
  EXPECT_THAT(register_record(),
              AllOf(HasSubstr("null class record"), HasSubstr("a method's name")));
}

TEST_F(RegistrationTest, a_subclass_inherits_members_and_room) {
  EXPECT_EQ(register_record(), "registered");
  const ClassInfo* thing = host_.find_class("Thing");
  REALmethodDefinition methods[] = {{routine_, nullptr, "First(x as integer) as string", 4}};
  REALclassDefinition sub{};
  sub.version = 9;
  sub.name = "SubThing";
  sub.superName = "Thing";
  sub.dataSize = 16;
  sub.methods = methods;
  sub.methodCount = 1;
  reinterpret_cast<void (*)(REALclassDefinition*)>(host_.resolve("PluginRegisterClass"))(&sub);
  host_.finish_registration();
  const ClassInfo* sub_thing = host_.find_class("SubThing");
  ASSERT_NE(sub_thing, nullptr);
  EXPECT_TRUE(sub_thing->derives_from(*thing));
  EXPECT_FALSE(thing->derives_from(*sub_thing));
  EXPECT_GE(sub_thing->data_offset(), thing->data_offset() + 32);
  ASSERT_EQ(sub_thing->overloads("first").size(), 1U);
  EXPECT_EQ(sub_thing->overloads("first")[0]->owner, sub_thing);
  EXPECT_EQ(sub_thing->overloads("second").size(), 1U);
  EXPECT_NE(sub_thing->property("count"), nullptr);
}

}  // namespace
}  // namespace standin
