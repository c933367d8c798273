// Operators: precedence, types, and what they compute.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "script_runner.h"

namespace {

using testing::HasSubstr;

TEST(Precedence, power_binds_tighter_than_minus_and_goes_to_the_right) {
  EXPECT_EQ(value_of("Str(-2 ^ 2)"), "-4");
  EXPECT_EQ(value_of("Str(2 ^ 3 ^ 2)"), "512");
  EXPECT_EQ(value_of("Str(2 ^ -1)"), "0.5");
}

TEST(Precedence, products_come_before_sums_and_both_go_to_the_left) {
  EXPECT_EQ(value_of("Str(2 + 3 * 4)"), "14");
  EXPECT_EQ(value_of("Str(10 - 4 - 3)"), "3");
  EXPECT_EQ(value_of("Str(100 \\ 7 \\ 2)"), "7");
  EXPECT_EQ(value_of("Str(20 Mod 7 * 2)"), "12");
  EXPECT_EQ(value_of("Str((2 + 3) * 4)"), "20");
}

TEST(Precedence, not_binds_tighter_than_products_and_comparisons) {
  EXPECT_EQ(value_of("Str(Not 0 * 2)"), "-2");
  EXPECT_EQ(value_of("Str(Not True = False)"), "True");
  EXPECT_EQ(value_of("Str(- Not 4)"), "5");
}

TEST(Precedence, and_comes_before_or_and_xor) {
  EXPECT_EQ(value_of("Str(True Or False And False)"), "True");
  EXPECT_EQ(value_of("Str(True Xor True And False)"), "True");
  EXPECT_EQ(value_of("Str(1 + 1 = 2 And 3 > 2)"), "True");
}

TEST(Precedence, is_and_isa_come_before_not) {
  EXPECT_EQ(output_of("Dim d As Dictionary\n"
                      "Print Str(Not d Is Nil)\n"
                      "d = New Dictionary\n"
                      "Print Str(Not d IsA Date)\n"),
            "False\nTrue\n");
}

TEST(Integers, arithmetic_wraps_at_32_bits) {
  EXPECT_EQ(output_of("Dim i As Integer = 2147483647\n"
                      "i = i + 1\n"
                      "Print Str(i)\n"
                      "i = i - 1\n"
                      "Print Str(i)\n"
                      "i = 65536\n"
                      "Print Str(i * i)\n"
                      "i = -2147483648\n"
                      "Print Str(-i) + Str(i \\ -1) + Str(i Mod -1) + Str(Abs(i))\n"),
            "-2147483648\n2147483647\n0\n-2147483648-21474836480-2147483648\n");
}

TEST(Integers, int64_has_64_bits) {
  EXPECT_EQ(output_of("Dim i As Int64 = 5000000000\n"
                      "Print Str(i * 2)\n"
                      "i = 9223372036854775807\n"
                      "Print Str(i + 1)\n"
                      "Dim n As Integer = i\n"
                      "Print Str(n)\n"),
            "10000000000\n-9223372036854775808\n-1\n");
}

TEST(Integers, division_cuts_towards_zero) {
  EXPECT_EQ(value_of("Str(-7 \\ 2) + \" \" + Str(-7 Mod 2) + \" \" + Str(7 Mod -2)"), "-3 -1 1");
  EXPECT_EQ(value_of("Str(7.9 \\ 2)"), "3");
}

TEST(Integers, division_by_zero_raises) {
  EXPECT_THAT(exception_of("Dim z As Integer\nPrint Str(1 \\ z)"),
              HasSubstr("ZeroDivisionException"));
  EXPECT_THAT(exception_of("Print Str(1 Mod 0)"), HasSubstr("ZeroDivisionException"));
}

TEST(Integers, logical_operators_work_on_bits) {
  EXPECT_EQ(value_of("Str(12 And 10) + \" \" + Str(12 Or 10) + \" \" + Str(12 Xor 10) + \" \" + "
                     "Str(Not 12)"),
            "8 14 6 -13");
}

TEST(Doubles, division_gives_a_double) {
  EXPECT_EQ(value_of("Str(1 / 4)"), "0.25");
  EXPECT_EQ(value_of("Str(6 / 3)"), "2");
  EXPECT_THAT(error_of("Dim s As String = 1 / 2"), HasSubstr("Double cannot be converted"));
}

TEST(Doubles, division_by_zero_is_infinite) {
  EXPECT_EQ(output_of("Dim z As Double\n"
                      "If 1 / z > 1e300 And -1 / z < -1e300 Then Print \"infinite\"\n"
                      "If z / z = z / z Then Print \"equal\" Else Print \"no number\"\n"),
            "infinite\nno number\n");
}

TEST(Doubles, a_fraction_is_cut_when_an_integer_takes_it) {
  EXPECT_EQ(output_of("Dim i As Integer = 3.99\nPrint Str(i)\ni = -3.99\nPrint Str(i)\n"
                      "i = 1e20\nPrint Str(i)\n"),
            "3\n-3\n2147483647\n");
}

TEST(Numbers, a_single_keeps_seven_digits) {
  EXPECT_EQ(output_of("Dim s As Single = 0.1\nPrint Str(s)\nPrint Str(s + s)\n"
                      "Dim d As Double = 0.1\nPrint Str(d * 3)\n"),
            "0.1\n0.2\n0.3\n");
}

TEST(Numbers, currency_is_exact_to_four_decimals) {
  EXPECT_EQ(output_of("Dim a As Currency = 0.1\n"
                      "Dim b As Currency = 0.2\n"
                      "Dim c As Currency = a + b\n"
                      "If c = 0.3 Then Print \"exact\"\n"
                      "Print Str(c * 3) + \" \" + Str(c - 1) + \" \" + Str(c / 2)\n"),
            "exact\n0.9 -0.7 0.15\n");
}

TEST(Booleans, the_second_operand_is_asked_only_when_needed) {
  EXPECT_EQ(output_of("If False And Told() Then Print \"?\"\n"
                      "If True Or Told() Then Print \"yes\"\n"
                      "If True And Told() Then Print \"both\"\n"
                      "Function Told() As Boolean\n"
                      "  Print \"asked\"\n"
                      "  Return True\n"
                      "End Function\n"),
            "yes\nasked\nboth\n");
}

TEST(Booleans, xor_and_equality) {
  EXPECT_EQ(value_of("Str(True Xor False) + Str(True = True) + Str(True <> True)"),
            "TrueTrueFalse");
}

TEST(Strings, comparisons_ignore_the_case_of_ascii_letters_only) {
  EXPECT_EQ(value_of("Str(\"abc\" = \"ABC\")"), "True");
  EXPECT_EQ(value_of("Str(\"ä\" = \"Ä\")"), "False");
  EXPECT_EQ(value_of("Str(\"a\" < \"B\") + Str(\"b\" > \"A\") + Str(\"a\" >= \"A\")"),
            "TrueTrueTrue");
  EXPECT_EQ(value_of("Str(\"ab\" < \"abc\") + Str(\"\" < \"a\")"), "TrueTrue");
}

TEST(Strings, plus_joins) {
  EXPECT_EQ(value_of("\"a\" + \"\" + \"b\""), "ab");
  EXPECT_THAT(error_of("Print \"a\" + 1"),
              HasSubstr("the operator + is not defined for String and Integer; Str makes"));
}

TEST(Objects, equality_is_identity) {
  EXPECT_EQ(output_of("Dim a As New Dictionary\n"
                      "Dim b As New Dictionary\n"
                      "Dim c As Object = a\n"
                      "Print Str(a = b) + Str(a = c) + Str(a Is c) + Str(a <> b) + Str(a = Nil)\n"),
            "FalseTrueTrueTrueFalse\n");
  EXPECT_THAT(error_of("Dim a As New Dictionary\nIf a < a Then Print \"?\""),
              HasSubstr("the operator < is not defined for Dictionary and Dictionary"));
}

TEST(Objects, isa_is_false_for_nil_and_true_for_derived_classes) {
  EXPECT_EQ(output_of("Dim e As RuntimeException\n"
                      "Print Str(e IsA RuntimeException)\n"
                      "e = New KeyNotFoundException\n"
                      "Print Str(e IsA RuntimeException) + Str(e IsA NilObjectException)\n"
                      "Dim v As Variant = e\n"
                      "Print Str(v IsA KeyNotFoundException)\n"
                      "v = 5\n"
                      "Print Str(v IsA Object)\n"),
            "False\nTrueFalse\nTrue\nFalse\n");
}

TEST(Colours, only_equality) {
  EXPECT_EQ(output_of("Dim c As Color = &cFF0000\nPrint Str(c = &cFF0000) + Str(c <> &c00FF00)"),
            "TrueTrue\n");
}

TEST(Operators, operands_of_different_kinds_are_refused) {
  EXPECT_THAT(error_of("Dim b As Boolean = 1 = \"a\""), HasSubstr("not defined for Integer and"));
  EXPECT_THAT(error_of("Dim b As Boolean = True + 1"), HasSubstr("not defined for Boolean and"));
  EXPECT_THAT(error_of("Dim b As Boolean = 1.5 And 2"), HasSubstr("not defined for Double and"));
  EXPECT_THAT(error_of("Dim s As String = -\"a\""), HasSubstr("- is not defined for String"));
  EXPECT_THAT(error_of("Dim s As String = Not \"a\""), HasSubstr("Not is not defined for String"));
}

TEST(Variants, an_operand_takes_the_type_of_the_other) {
  EXPECT_EQ(output_of("Dim v As Variant = \"25\"\n"
                      "Print Str(v + 1)\n"
                      "Print v + \"1\"\n"
                      "Print Str(v + 0.5)\n"
                      "If v = 25 Then Print \"equal\"\n"),
            "26\n251\n25.5\nequal\n");
}

TEST(Variants, two_of_them_are_added_or_joined_by_what_they_hold) {
  EXPECT_EQ(output_of("Dim a As Variant = 2\n"
                      "Dim b As Variant = 3\n"
                      "Dim c As Variant = a + b\n"
                      "Print Str(c) + \" \" + Str(c.Type)\n"
                      "b = 0.5\n"
                      "c = a * b\n"
                      "Print Str(c) + \" \" + Str(c.Type)\n"
                      "a = \"x\"\n"
                      "b = \"y\"\n"
                      "Dim d As Variant = a + b\n"
                      "Print d\n"
                      "Print Str(a < b) + Str(a = b) + Str(c = Nil)\n"),
            "5 2\n1 5\nxy\nTrueFalseFalse\n");
}

TEST(Variants, arithmetic_follows_the_types_met) {
  const std::string start = "Dim a As Variant = 7\nDim b As Variant = 2\n";
  EXPECT_EQ(output_of(start + "Print Str(a - b) + Str(a / b) + Str(a \\ b) + Str(a Mod b) + "
                              "Str(a ^ b)"),
            "53.53149\n");
  EXPECT_EQ(output_of(start + "Print Str(a And b) + Str(a Or b) + Str(a Xor b) + Str(Not a) + "
                              "Str(-a)"),
            "275-8-7\n");
  EXPECT_EQ(output_of("Dim a As Variant = True\nDim b As Variant = False\n"
                      "Dim c As Variant = a And b\nPrint Str(c) + Str(Not a)"),
            "FalseFalse\n");
  EXPECT_THAT(exception_of("Dim a As Variant = 1\nDim b As Variant = 0\nDim c As Variant = a \\ b"),
              HasSubstr("ZeroDivisionException"));
  EXPECT_THAT(exception_of("Dim a As Variant = New Dictionary\nDim b As Variant = a + a"),
              HasSubstr("TypeMismatchException"));
}

TEST(Variants, nil_equals_only_nil) {
  EXPECT_EQ(output_of("Dim v, w As Variant\n"
                      "Print Str(v = Nil) + Str(v Is Nil) + Str(v = w)\n"
                      "w = 0\n"
                      "Print Str(w = Nil) + Str(v = w) + Str(v <> w)\n"),
            "TrueTrueTrue\nFalseFalseTrue\n");
}

TEST(Variants, that_hold_an_object_are_neither_numbers_nor_texts) {
  const std::string object = "Dim v As Variant = New Dictionary\nDim w As Variant = 1\n";
  const std::string refusal = "TypeMismatchException: a Dictionary is neither a number nor a text";
  for (const char* use :
       {"w = v + w", "w = v + 1", "w = 1.5 * v", "w = v < 2", "w = v + \"a\"",
        "Dim i As Integer = v", "Dim s As String = v", "If v Then Print \"\"", "Print Str(v)",
        "Print CStr(New Dictionary)", "Print Hex(v)", "w = Abs(v)"}) {
    EXPECT_EQ(exception_of(object + use), refusal) << use;
  }
  EXPECT_EQ(output_of("Dim v As Variant = New Date\nDim d As Double = v\nPrint Str(d > 0) + "
                      "Str(Len(v)) + Str(Str(v) = v)"),
            "True19True\n");
}

}  // namespace
