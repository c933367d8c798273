// Dim, Static, Const, ReDim: variables, their first values, and where they are visible.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "script_runner.h"

namespace {

using testing::HasSubstr;

TEST(Dim, variables_start_as_nothing) {
  EXPECT_EQ(output_of("Dim i, j As Integer\nDim s As String\nDim b As Boolean\nDim d As Double\n"
                      "Dim o As Dictionary\nDim v As Variant\nDim c As Color\n"
                      "Print Str(i) + Str(j) + \"[\" + s + \"]\" + Str(b) + Str(d) + "
                      "Str(o = Nil) + Str(v = Nil) + Str(c = &c000000)\n"),
            "00[]False0TrueTrueTrue\n");
}

TEST(Dim, several_names_share_a_first_value) {
  EXPECT_EQ(output_of("Dim a, b As Integer = 3\na = 4\nPrint Str(a) + Str(b)"), "43\n");
}

TEST(Dim, several_types_stand_in_one_statement) {
  EXPECT_EQ(
      output_of("Dim a, b As Integer = 3, s As String = \"x\", d As New Dictionary, "
                "e(2) As Double, f() As String\n"
                "d.Value(1) = 2\n"
                "Print Str(a) + Str(b) + s + Str(d.Count) + Str(UBound(e)) + Str(UBound(f))\n"),
      "33x12-1\n");
  EXPECT_EQ(output_of("S\nS\nSub S()\n  Static n As Integer = 1, t As String\n"
                      "  n = n + 1\n  t = t + \"a\"\n  Print Str(n) + t\nEnd Sub\n"),
            "2a\n3aa\n");
}

TEST(Dim, every_group_of_names_needs_a_type) {
  EXPECT_THAT(error_of("Dim a As Integer, b"), HasSubstr("\"As\" is expected here"));
  EXPECT_THAT(error_of("Dim a As Integer, As String"), HasSubstr("the word \"As\" is reserved"));
  EXPECT_THAT(error_of("Dim a As Integer, a As String"), HasSubstr("is declared already"));
  EXPECT_THAT(error_of("Dim a As Foo, b As Integer = \"x\""), HasSubstr("no type \"Foo\""));
}

TEST(Dim, new_makes_an_object_for_each_name) {
  EXPECT_EQ(output_of("Dim a, b As New Dictionary\na.Value(1) = 2\n"
                      "Print Str(a.Count) + Str(b.Count)\n"
                      "Dim d As New Date(2012, 5, 17)\nPrint d.SQLDate\n"),
            "10\n2012-05-17\n");
}

TEST(Dim, names_ignore_case) {
  EXPECT_EQ(output_of("dIm Foo aS iNtEgEr = 1\nfoo = FOO + 1\nPRINT Str(foO)"), "2\n");
}

TEST(Dim, a_variable_lives_in_its_block) {
  EXPECT_EQ(output_of("If True Then\n  Dim x As Integer = 1\n  Print Str(x)\nEnd If\n"
                      "If True Then\n  Dim x As String = \"a\"\n  Print x\nEnd If\n"),
            "1\na\n");
  EXPECT_THAT(error_of("If True Then\n  Dim x As Integer\nEnd If\nx = 1"),
              HasSubstr("there is no variable, constant or routine \"x\""));
}

TEST(Dim, a_variable_starts_anew_in_every_pass_of_a_loop) {
  EXPECT_EQ(output_of("For i As Integer = 1 To 3\n  Dim n As Integer\n  Dim a() As Integer\n"
                      "  n = n + i\n  a.Append n\n  Print Str(n) + Str(UBound(a))\nNext"),
            "10\n20\n30\n");
}

TEST(Dim, a_name_cannot_be_declared_twice) {
  EXPECT_THAT(error_of("Dim a As Integer\nDim A As String"), HasSubstr("is declared already"));
  EXPECT_THAT(error_of("Dim a As Integer\nIf True Then\n  Dim a As Integer\nEnd If"),
              HasSubstr("is declared already"));
  EXPECT_THAT(error_of("Dim args As Integer"), HasSubstr("is declared already"));
}

TEST(Dim, a_first_value_cannot_use_the_variable) {
  EXPECT_THAT(error_of("Dim a As Integer = a + 1"), HasSubstr("no variable, constant or routine"));
}

TEST(Dim, types_must_fit) {
  EXPECT_THAT(error_of("Dim i As Integer = \"a\""),
              HasSubstr("String cannot be converted to Integer; Val reads"));
  EXPECT_THAT(error_of("Dim s As String = 5"),
              HasSubstr("Integer cannot be converted to String; Str makes"));
  EXPECT_THAT(error_of("Dim b As Boolean = 1"), HasSubstr("cannot be converted to Boolean"));
  EXPECT_THAT(error_of("Dim i As Integer = Nil"), HasSubstr("Nil cannot be converted to Integer"));
  EXPECT_THAT(error_of("Dim d As Dictionary = New Date"),
              HasSubstr("Date cannot be converted to Dictionary"));
  EXPECT_THAT(error_of("Dim o As Object = New Date\nDim d As Date = o"),
              HasSubstr("without a cast: Date(…)"));
}

TEST(Dim, unknown_and_left_out_types_are_named) {
  EXPECT_THAT(error_of("Dim x As Foo"), HasSubstr("there is no type \"Foo\""));
  EXPECT_THAT(error_of("Dim x As UInt8"), HasSubstr("the type UInt8 is not part of the language"));
  EXPECT_THAT(error_of("Dim x As New Integer"), HasSubstr("New needs a class; Integer is none"));
}

TEST(Dim, reserved_words_are_no_names) {
  EXPECT_THAT(error_of("Dim next As Integer"), HasSubstr("\"Next\" is reserved"));
}

TEST(Const, constants_are_computed_and_cannot_change) {
  EXPECT_EQ(output_of("Const k = 3\nConst n = k * 2 + 1\nConst s = \"a\" + \"b\"\n"
                      "Dim x(n) As Integer\nPrint Str(n) + s + Str(UBound(x))\n"),
            "7ab7\n");
  EXPECT_THAT(error_of("Const k = 1\nk = 2"), HasSubstr("\"k\" is a constant"));
  EXPECT_THAT(error_of("Dim x As Integer\nConst k = x"), HasSubstr("Const needs a constant"));
  EXPECT_THAT(error_of("Const k = Len(\"a\")"), HasSubstr("Const needs a constant"));
}

TEST(Static, a_static_variable_keeps_its_value_between_calls) {
  EXPECT_EQ(output_of("Count\nCount\nPrint Str(Counted)\n"
                      "Sub Count()\n  Call Counted\nEnd Sub\n"
                      "Function Counted() As Integer\n"
                      "  Static n As Integer = 10\n  Static names() As String\n"
                      "  n = n + 1\n  names.Append \"x\"\n"
                      "  Return n * 100 + UBound(names)\nEnd Function\n"),
            "1302\n");
}

TEST(Literals, the_smallest_int64_is_one) {
  EXPECT_EQ(output_of("Const least = -9223372036854775808\nDim n As Int64 = least\n"
                      "Print Str(n) + \" \" + Str(n - 1)\nDim v As Variant = least\n"
                      "Print Str(v.Type) + Str(-2147483648 = -2147483648)\n"),
            "-9223372036854775808 9223372036854775807\n3True\n");
  EXPECT_THAT(error_of("Dim n As Int64 = 9223372036854775808"),
              HasSubstr("too large for an Int64"));
  EXPECT_THAT(error_of("Dim n As Int64 = -9223372036854775809"), HasSubstr("too large for an Int"));
  EXPECT_EQ(value_of("Str(-2147483648 ^ 1)"), "-2147483648");
}

TEST(Literals, the_smallest_integer_is_an_integer_as_a_constant_too) {
  EXPECT_EQ(output_of("Const least = -2147483648\nDim v As Variant = least\nPrint Str(v.Type)\n"
                      "S\nSub S(Optional n As Integer = -2147483648)\n  Print Str(n)\nEnd Sub\n"),
            "2\n-2147483648\n");
}

TEST(Literals, the_smallest_integer_integer_is_one) {
  EXPECT_EQ(output_of("Dim v As Variant = -2147483648\nPrint Str(v.Type)\n"
                      "v = 2147483648\nPrint Str(v.Type)\n"
                      "v = 1.5\nPrint Str(v.Type)\nv = &cFFFFFF\nPrint Str(v.Type)\n"),
            "2\n3\n5\n16\n");
}

}  // namespace
