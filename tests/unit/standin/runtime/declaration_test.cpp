// Declaration texts and their errors.
#include "runtime/declarations.h"

#include <gtest/gtest.h>

#include "runtime/host.h"

namespace standin {
namespace {

class DeclarationTest : public testing::Test {
 protected:
  Declaration parse(const char* text) { return parse_declaration(text, host_.type_resolver()); }
  std::string error(const char* text) {
    try {
      parse(text);
    } catch (const DeclarationError& error) {
      return error.what();
    }
    return "parsed";
  }
  Host host_;
};

TEST_F(DeclarationTest, a_name_alone) {
  const Declaration declaration = parse("Clear");
  EXPECT_EQ(declaration.name, "Clear");
  EXPECT_TRUE(declaration.parameters.empty());
  EXPECT_FALSE(declaration.has_result());
}

TEST_F(DeclarationTest, parameters_and_result) {
  const Declaration declaration =
      parse("lookup(key as String, defaultvalue as VARIANT) as variant");
  ASSERT_EQ(declaration.parameters.size(), 2U);
  EXPECT_EQ(declaration.parameters[0].name, "key");
  EXPECT_EQ(declaration.parameters[0].type, Type::of(TypeKind::string));
  EXPECT_EQ(declaration.parameters[1].type, Type::of(TypeKind::variant));
  EXPECT_EQ(declaration.result, Type::of(TypeKind::variant));
}

TEST_F(DeclarationTest, arrays_in_both_places) {
  EXPECT_EQ(name(parse("Constructor(Keys() as string)").parameters[0].type), "String()");
  EXPECT_EQ(name(parse("Keys as integer()").result), "Integer()");
  EXPECT_EQ(parse("Keys as integer()").result, Type::array_of(Type::of(TypeKind::integer)));
}

TEST_F(DeclarationTest, classes_by_name) {
  EXPECT_EQ(parse("Operator_Convert as dictionary").result,
            Type::of_class(host_.find_class("Dictionary")));
  EXPECT_EQ(parse("f(x as Object)").parameters[0].type, Type::of(TypeKind::object));
}

TEST_F(DeclarationTest, markers) {
  const Declaration declaration =
      parse("Value(ByRef key As Variant, Optional n As Integer = -5, Assigns _value As Variant)");
  EXPECT_TRUE(declaration.parameters[0].by_ref);
  EXPECT_TRUE(declaration.parameters[1].optional);
  EXPECT_EQ(declaration.parameters[1].default_text, "-5");
  EXPECT_TRUE(declaration.has_assigns());
  EXPECT_EQ(declaration.parameters[2].name, "_value");
}

TEST_F(DeclarationTest, a_marker_may_be_a_name) {
  EXPECT_EQ(parse("f(optional as integer)").parameters[0].name, "optional");
}

TEST_F(DeclarationTest, blanks_and_case_do_not_matter) {
  const Declaration declaration = parse("  LenB( s as string )AS integer ");
  EXPECT_EQ(declaration.result, Type::of(TypeKind::integer));
  EXPECT_EQ(normalized("LenB( s as string ) as integer"),
            normalized("lenb(S As STRING)As  Integer"));
  EXPECT_NE(normalized("ab c"), normalized("a bc"));
}

TEST_F(DeclarationTest, errors_tell_column_and_expectation) {
  EXPECT_EQ(error("f(a as integer"),
            "declaration \"f(a as integer\", column 15: expected \",\" or \")\", found the end");
  EXPECT_EQ(error(""), "declaration \"\", column 1: expected a method's name, found the end");
  EXPECT_EQ(error("f as"), "declaration \"f as\", column 5: expected a type, found the end");
  EXPECT_EQ(error("f as Ghost"),
            "declaration \"f as Ghost\", column 6: no type or class is called \"Ghost\"");
  EXPECT_EQ(error("f x"),
            "declaration \"f x\", column 3: expected the end of the declaration, found \"x\"");
  EXPECT_NE(error("f(a() as integer())").find("one pair"), std::string::npos);
  EXPECT_NE(error("f(assigns a as integer, b as integer)").find("Assigns"), std::string::npos);
  EXPECT_NE(error("f(a as integer =)").find("a default value"), std::string::npos);
}

}  // namespace
}  // namespace standin
