// The method tables of the registered classes: flags, setters, and which declarations share a
// routine. The declarations themselves are compared with the golden file.
#include <gtest/gtest.h>

#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "support/container_classes.h"
#include "support/registration_recorder.h"

namespace {

using support::ContainerClass;
using support::LoadedPlugin;

std::span<const REALmethodDefinition> methods_of(std::string_view name) {
  for (const REALclassDefinition* record : LoadedPlugin::first_registration().records) {
    if (name == record->name) {
      return {record->methods, static_cast<std::size_t>(record->methodCount)};
    }
  }
  throw std::runtime_error("not registered: " + std::string(name));
}

const REALmethodDefinition& method(std::string_view class_name, std::string_view declaration) {
  for (const REALmethodDefinition& candidate : methods_of(class_name)) {
    if (declaration == candidate.declaration) return candidate;
  }
  throw std::runtime_error(std::string(class_name) + " does not declare " +
                           std::string(declaration));
}

class MethodRecords : public ::testing::TestWithParam<ContainerClass> {};

INSTANTIATE_TEST_SUITE_P(AllClasses, MethodRecords, ::testing::ValuesIn(support::all_classes()),
                         support::ClassName{});

TEST_P(MethodRecords, every_method_has_a_routine_and_flags_4) {
  for (const char* name : {GetParam().name, GetParam().iterator_name}) {
    for (const REALmethodDefinition& method : methods_of(name)) {
      EXPECT_NE(method.function, nullptr) << name << ": " << method.declaration;
      EXPECT_EQ(method.mFlags, 4) << name << ": " << method.declaration;
    }
  }
}

TEST_P(MethodRecords, only_value_of_maps_and_of_their_iterators_is_assignable) {
  for (const char* name : {GetParam().name, GetParam().iterator_name}) {
    for (const REALmethodDefinition& method : methods_of(name)) {
      const std::string_view declaration = method.declaration;
      const bool assignable =
          declaration.starts_with("value(") || declaration.starts_with("Value ");
      EXPECT_EQ(method.setterFunction != nullptr, assignable) << name << ": " << declaration;
      EXPECT_NE(method.setterFunction, method.function) << name << ": " << declaration;
    }
  }
}

TEST_P(MethodRecords, two_pairs_of_map_declarations_share_a_routine_and_no_others) {
  std::map<void*, std::string> first_declaration;
  std::map<std::string, std::string> shared;
  for (const REALmethodDefinition& method : methods_of(GetParam().name)) {
    const auto [seen, fresh] = first_declaration.emplace(method.function, method.declaration);
    if (!fresh) shared.emplace(seen->second, method.declaration);
  }
  std::map<std::string, std::string> expected;
  if (GetParam().is_map()) {
    expected = {{"Operator_Convert(dic as dictionary)", "Constructor(dic as dictionary)"},
                {"CloneDictionary as Dictionary", "Operator_Convert as Dictionary"}};
  }
  EXPECT_EQ(shared, expected);
}

TEST(WorkedExample, the_integer_to_string_ordered_map_declares_these) {
  for (const char* declaration :
       {"Constructor(other as IntegerToStringOrderedMapZRB)",
        "Clone as IntegerToStringOrderedMapZRB", "Keys as integer()", "Values as string()",
        "value(key as integer) as string",
        "lookup(key as integer, defaultvalue as string) as string",
        "LowerBound(key as integer) as IntegerToStringOrderedMapIteratorZRB"}) {
    EXPECT_NO_THROW(method("IntegerToStringOrderedMapZRB", declaration));
  }
  for (const char* declaration :
       {"Key as integer", "Value as string",
        "isEqual(other as IntegerToStringOrderedMapIteratorZRB) as boolean"}) {
    EXPECT_NO_THROW(method("IntegerToStringOrderedMapIteratorZRB", declaration));
  }
}

TEST(WorkedExample, the_variant_to_variant_ordered_map_names_its_irregular_iterator) {
  for (const char* declaration :
       {"first as VariantToVariantMapIteratorZRB", "last as VariantToVariantMapIteratorZRB",
        "Remove(pos as VariantToVariantMapIteratorZRB)",
        "Remove(first as VariantToVariantMapIteratorZRB, last as VariantToVariantMapIteratorZRB)",
        "find(key as variant) as VariantToVariantMapIteratorZRB",
        "LowerBound(key as variant) as VariantToVariantMapIteratorZRB",
        "UpperBound(key as variant) as VariantToVariantMapIteratorZRB"}) {
    EXPECT_NO_THROW(method("VariantToVariantOrderedMapZRB", declaration));
  }
}

TEST(WorkedExample, variant_sets_construct_from_strings_by_a_routine_of_its_own) {
  for (const char* name : {"VariantHashSetZRB", "VariantOrderedSetZRB"}) {
    EXPECT_STREQ(methods_of(name)[0].declaration, "Constructor(Keys() as string)");
    EXPECT_STREQ(methods_of(name)[1].declaration, "Constructor(Keys() as variant)");
    EXPECT_NE(methods_of(name)[0].function, methods_of(name)[1].function);
  }
}

}  // namespace
