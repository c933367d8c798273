// Library routines on numbers and Variants.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "language/number_format.h"
#include "script_runner.h"

namespace {

using standin::language::format_number;
using testing::HasSubstr;

TEST(Numbers, text_and_back) {
  EXPECT_EQ(value_of("Str(5) + \" \" + Str(-0.5) + \" \" + Str(1e100) + \" \" + CStr(3.25)"),
            "5 -0.5 1e+100 3.25");
  EXPECT_EQ(value_of("Str(Val(\"12.5abc\")) + \" \" + Str(Val(\"x\")) + \" \" + "
                     "Str(CDbl(\"-3\")) + \" \" + Str(Val(\"&hFF\"))"),
            "12.5 0 -3 255");
  EXPECT_EQ(value_of("Str(0.1 + 0.2) + \" \" + Str(1 / 3)"), "0.3 0.333333333333333");
  EXPECT_EQ(value_of("Str(1234567.891, \"#,##0.00\")"), "1,234,567.89");
}

TEST(Numbers, other_bases_show_the_bits) {
  EXPECT_EQ(
      value_of("Hex(255) + \" \" + Hex(-1) + \" \" + Oct(8) + \" \" + Bin(5) + \" \" + Hex(0)"),
      "FF FFFFFFFF 10 101 0");
}

TEST(Numbers, other_bases_show_all_bits_of_an_int64) {
  EXPECT_EQ(output_of("Dim n As Int64 = 4294967296\nDim m As Int64 = -1\nDim v As Variant = n\n"
                      "Print Hex(n) + \" \" + Oct(n) + \" \" + Bin(n)\n"
                      "Print Hex(m) + \" \" + Hex(v)\nv = -1\nPrint Hex(v)\n"),
            "100000000 40000000000 100000000000000000000000000000000\n"
            "FFFFFFFFFFFFFFFF 100000000\nFFFFFFFF\n");
}

TEST(Numbers, the_least_and_the_greatest_of_several) {
  EXPECT_EQ(value_of("Str(Min(3, 1, 2)) + Str(Max(3, 1, 2)) + Str(Max(1, 2.5, 2)) + "
                     "Str(Min(5, 4, 3, 2, 1, 0, -1))"),
            "132.5-1");
  EXPECT_THAT(error_of("Print Str(Min(1))"), HasSubstr("no form of Min takes (Integer)"));
}

TEST(Numbers, the_least_and_the_greatest_keep_their_type) {
  EXPECT_EQ(output_of("Dim a, b As Currency\na = 12345678.0001\nb = a + 0.0001\n"
                      "Dim v As Variant = Max(a, b, 5)\nPrint Str(v.Type) + \" \" + Str(v)\n"
                      "Dim n As Int64 = 9007199254740993\nv = Max(n, 1)\n"
                      "Print Str(v.Type) + \" \" + Str(v)\n"
                      "v = 2.5\nDim w As Variant = Min(v, 3)\nPrint Str(w) + Str(Max(v, w, 1))\n"),
            "6 12345678.0002\n3 9007199254740993\n2.52.5\n");
}

TEST(Numbers, a_variant_has_an_absolute_value) {
  EXPECT_EQ(output_of("Dim v As Variant = -2.5\nPrint Str(Abs(v))"), "2.5\n");
}

TEST(Numbers, time_counts_from_the_start_of_the_program) {
  EXPECT_EQ(output_of("Dim first As Double = Microseconds\nPrint Str(first > 0)\n"
                      "Do\nLoop Until Microseconds > 40000\n"
                      "Print Str(Ticks >= 2 And Ticks <= Microseconds * 60 / 1000000)\n"),
            "True\nTrue\n");
}

TEST(Numbers, rgb_makes_a_colour) {
  EXPECT_EQ(value_of("Str(RGB(255, 128, 0) = &cFF8000) + Str(RGB(300, -1, 1) = &cFF0001)"),
            "TrueTrue");
}

TEST(Numbers, functions) {
  EXPECT_EQ(value_of("Str(Abs(-5)) + Str(Abs(-0.5)) + Str(Min(2, 3)) + Str(Max(2, 3.5)) + "
                     "Str(Floor(-1.5)) + Str(Ceil(1.2)) + Str(Round(2.5)) + Str(Sqrt(16))"),
            "50.523.5-2234");
  EXPECT_EQ(
      output_of("Dim r As Double = Rnd\nPrint Str(r >= 0 And r < 1) + Str(Rnd <> Rnd)\n"
                "Dim m As Double = Microseconds\nPrint Str(Microseconds >= m And Ticks >= 0)\n"),
      "TrueTrue\nTrue\n");
}

TEST(Numbers, without_a_value_have_one_spelling) {
  for (const char* nan : {"Sqrt(-1)", "0.0 / 0.0", "-Sqrt(-1)"}) {
    const std::string number = nan;
    EXPECT_EQ(value_of("Str(" + number + ")"), "NaN") << number;
    EXPECT_EQ(value_of("Format(" + number + ", \"0.0\")"), "NaN") << number;
  }
  EXPECT_EQ(output_of("Dim s As Single = Sqrt(-1)\nDim v As Variant = Sqrt(-1)\nPrint Str(s) + v"),
            "NaNNaN\n");
  EXPECT_EQ(value_of("Str(1 / 0.0) + Format(1 / 0.0, \"0.0\")"), "infinf");
  EXPECT_EQ(value_of("Str(-1 / 0.0) + Format(-1 / 0.0, \"0.0\")"), "-inf-inf");
}

TEST(Format, digits_places_and_groups) {
  EXPECT_EQ(format_number(1.5, "0.00"), "1.50");
  EXPECT_EQ(format_number(1.5, "#.##"), "1.5");
  EXPECT_EQ(format_number(0.5, "#.##"), ".5");
  EXPECT_EQ(format_number(7, "000"), "007");
  EXPECT_EQ(format_number(1234567, "#,##0"), "1,234,567");
  EXPECT_EQ(format_number(999, "#,##0"), "999");
  EXPECT_EQ(format_number(1e15, "#"), "1000000000000000");
  EXPECT_EQ(format_number(0, "#"), "");
}

TEST(Format, halves_are_rounded_away_from_zero_as_round_does) {
  EXPECT_EQ(format_number(2.5, "0"), "3");
  EXPECT_EQ(format_number(3.5, "0"), "4");
  EXPECT_EQ(format_number(-2.5, "0"), "-3");
  EXPECT_EQ(format_number(0.125, "0.00"), "0.13");
  EXPECT_EQ(format_number(9.5, "0"), "10");
  EXPECT_EQ(format_number(99.96875, "0.0000"), "99.9688");
  EXPECT_EQ(format_number(999.5, "#,##0"), "1,000");
  EXPECT_EQ(format_number(1.25e10, "0.0E+0"), "1.3E+10");
}

// The doubles nearest to 1.005 and 0.285 lie below them.
TEST(Format, what_only_looks_like_a_half_is_none) {
  EXPECT_EQ(format_number(1.005, "0.00"), "1.00");
  EXPECT_EQ(format_number(0.285, "0.00"), "0.28");
  EXPECT_EQ(format_number(0.49999999999999994, "0"), "0");
  EXPECT_EQ(format_number(5e-324, "0.0"), "0.0");
  EXPECT_EQ(format_number(1.7976931348623157e308, "0").size(), 309U);
}

TEST(Format, signs_percent_and_other_characters) {
  EXPECT_EQ(format_number(-1.5, "0.0"), "-1.5");
  EXPECT_EQ(format_number(1.5, "+0.0"), "+1.5");
  EXPECT_EQ(format_number(-1.5, "+0.0"), "-1.5");
  EXPECT_EQ(format_number(1.5, "-0.0"), "1.5");
  EXPECT_EQ(format_number(-0.001, "0.0"), "0.0");
  EXPECT_EQ(format_number(0.25, "0%"), "25%");
  EXPECT_EQ(format_number(5, "$0.00"), "$5.00");
  EXPECT_EQ(format_number(5, "0 \\0"), "5 0");
}

TEST(Format, patterns_for_negative_numbers_and_zero) {
  EXPECT_EQ(format_number(-2, "0;(0);none"), "(2)");
  EXPECT_EQ(format_number(0, "0;(0);none"), "none");
  EXPECT_EQ(format_number(2, "0;(0);none"), "2");
}

TEST(Format, scientific) {
  EXPECT_EQ(format_number(12345, "0.00E+00"), "1.23E+04");
  EXPECT_EQ(format_number(0.00012, "0.0e-0"), "1.2e-4");
  EXPECT_EQ(format_number(9.99, "0.0E+0"), "1.0E+1");
}

TEST(Variants, type_codes) {
  EXPECT_EQ(
      output_of("Dim v As Variant\nDim i64 As Int64\nDim s As Single\nDim c As Currency\n"
                "StdOut.Write Str(v.Type) + \" \"\nv = 1\nStdOut.Write Str(v.Type) + \" \"\n"
                "v = i64\nStdOut.Write Str(v.Type) + \" \"\nv = s\n"
                "StdOut.Write Str(v.Type) + \" \"\nv = 1.5\nStdOut.Write Str(v.Type) + \" \"\n"
                "v = c\nStdOut.Write Str(v.Type) + \" \"\nv = New Date\n"
                "StdOut.Write Str(v.Type) + \" \"\nv = \"a\"\nStdOut.Write Str(v.Type) + \" \"\n"
                "v = New Dictionary\nStdOut.Write Str(VarType(v)) + \" \"\nv = True\n"
                "StdOut.Write Str(VarType(v)) + \" \"\nv = &c000000\n"
                "StdOut.Write Str(VarType(v))\n"),
      "0 2 3 4 5 6 7 8 9 11 16");
}

TEST(Variants, convert_at_assignment) {
  EXPECT_EQ(
      output_of("Dim v As Variant = 25\nDim s As String = v\nv = \"25\"\nDim i As Integer = v\n"
                "Dim d As Double = v\nDim b As Boolean = v\nPrint s + Str(i + 1) + Str(d / 2)\n"
                "v = Nil\ns = v\ni = v\nPrint \"[\" + s + \"]\" + Str(i)\n"
                "Dim o As Dictionary = v\nPrint Str(o = Nil)\n"),
      "252612.5\n[]0\nTrue\n");
}

TEST(Variants, members_give_what_they_hold) {
  EXPECT_EQ(
      output_of("Dim v As Variant = \"12.5\"\n"
                "Print v.StringValue + Str(v.IntegerValue) + Str(v.DoubleValue) + "
                "Str(v.IsNumeric) + Str(v.IsNull) + Str(v.Int64Value) + Str(v.CurrencyValue) + "
                "Str(v.SingleValue) + Str(v.LongValue) + Str(v.Int32Value)\n"
                "v = True\nPrint Str(v.BooleanValue)\nv = &c010203\n"
                "Print Str(v.ColorValue = &c010203)\n"
                "Dim d As New Dictionary\nv = d\nPrint Str(v.ObjectValue = d)\n"
                "v = New Date(2012, 1, 2)\nPrint v.DateValue.SQLDate\n"
                "Dim w As Variant = 5\nv = 5\nPrint Str(v.Hash = w.Hash)\n"
                "Print Str(IsNumeric(\"x\")) + Str(IsNumeric(3)) + Str(IsNull(Nil))\n"),
      "12.51212.5TrueFalse1212.512.51212\nTrue\nTrue\nTrue\n2012-01-02\nTrue\n"
      "FalseTrueTrue\n");
  EXPECT_THAT(exception_of("Dim v As Variant = New Dictionary\nDim d As Date = v.DateValue"),
              HasSubstr("TypeMismatchException"));
  EXPECT_THAT(error_of("Dim v As Variant\nPrint Str(v.Count)"),
              HasSubstr("Variant has no member \"Count\"; a cast"));
}

}  // namespace
