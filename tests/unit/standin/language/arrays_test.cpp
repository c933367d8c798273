// Arrays and the routines on them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "script_runner.h"

namespace {

using testing::HasSubstr;

TEST(Arrays, bounds_count_from_zero) {
  EXPECT_EQ(output_of("Dim a() As Integer\nDim b(4) As String\nDim c(-1) As Double\n"
                      "Print Str(UBound(a)) + Str(b.UBound) + Str(UBound(c))\n"
                      "b(0) = \"x\"\nb(4) = \"y\"\nPrint b(0) + b(4) + \"[\" + b(2) + \"]\"\n"),
            "-14-1\nxy[]\n");
}

TEST(Arrays, bounds_are_constants_of_minus_one_or_more) {
  EXPECT_THAT(error_of("Dim n As Integer\nDim a(n) As Integer"), HasSubstr("needs a constant"));
  EXPECT_THAT(error_of("Dim a(-2) As Integer"), HasSubstr("between -1 and 2147483646; -2 does"));
  EXPECT_THAT(error_of("Dim a(1, 2) As Integer"), HasSubstr("more than one dimension"));
  EXPECT_THAT(error_of("Dim a As Integer()"), HasSubstr("a() As Integer"));
}

TEST(Arrays, a_bound_that_no_integer_holds_is_refused_by_its_value) {
  EXPECT_THAT(error_of("Dim a(99999999999) As Integer"), HasSubstr("99999999999 does not"));
  EXPECT_THAT(error_of("Const n = 4294967301\nDim a(n) As Integer"), HasSubstr("4294967301 does"));
  EXPECT_THAT(error_of("Dim a(2147483647) As Integer"), HasSubstr("2147483647 does not"));
  EXPECT_THAT(error_of("Dim a(1e30) As Integer"), HasSubstr("1e+30 does not"));
  EXPECT_THAT(error_of("Dim a(\"x\") As Integer"), HasSubstr("cannot be converted to Integer"));
  EXPECT_EQ(exception_of("Dim a() As Integer\nDim n As Int64 = 4294967300\nReDim a(n)"),
            "OutOfBoundsException: an array with the upper bound 4294967300");
  EXPECT_THAT(exception_of("Dim a() As Integer\nReDim a(-4294967297)"),
              HasSubstr("the upper bound -4294967297"));
  EXPECT_THAT(exception_of("Dim a() As Integer\nDim v As Variant = 4294967300\nReDim a(v)"),
              HasSubstr("the upper bound 4294967300"));
}

TEST(Arrays, an_index_that_no_integer_holds_is_out_of_range) {
  EXPECT_EQ(exception_of("Dim a(9) As Integer\nDim n As Int64 = 4294967300\na(n) = 1"),
            "OutOfBoundsException: index 4294967300 of an array from 0 to 9");
  EXPECT_THAT(exception_of("Dim a(9) As String\nPrint a(-4294967295)"),
              HasSubstr("index -4294967295 of an array"));
  EXPECT_EQ(output_of("Dim a(9) As Integer\nDim n As Int64 = 4\nDim v As Variant = 4\n"
                      "a(n) = 5\na(v) = a(4.5) + 1\nPrint Str(a(n))\n"),
            "6\n");
}

TEST(Arrays, elements_of_every_type_keep_what_they_are_given) {
  EXPECT_EQ(output_of("Dim a(0) As Integer\na(0) = 1.9\n"
                      "Dim b(0) As Int64\nb(0) = 5000000000\n"
                      "Dim c(0) As Double\nc(0) = 1\n"
                      "Dim d(0) As Boolean\nd(0) = True\n"
                      "Dim e(0) As Variant\ne(0) = \"v\"\n"
                      "Dim f(0) As Dictionary\nf(0) = New Dictionary\nf(0).Value(1) = 2\n"
                      "Dim g(0) As Currency\ng(0) = 0.5\n"
                      "Dim h(0) As Single\nh(0) = 0.1\n"
                      "Dim i(0) As Color\ni(0) = &c010203\n"
                      "Print Str(a(0)) + \" \" + Str(b(0)) + \" \" + Str(c(0)) + \" \" + "
                      "Str(d(0)) + \" \" + e(0) + \" \" + Str(f(0).Count) + \" \" + Str(g(0)) + "
                      "\" \" + Str(h(0)) + \" \" + Str(i(0) = &c010203)\n"),
            "1 5000000000 1 True v 1 0.5 0.1 True\n");
}

TEST(Arrays, an_index_out_of_range_raises) {
  EXPECT_THAT(exception_of("Dim a(2) As Integer\na(3) = 1"), HasSubstr("OutOfBoundsException"));
  EXPECT_THAT(exception_of("Dim a(2) As String\nPrint a(-1)"), HasSubstr("OutOfBoundsException"));
  EXPECT_EQ(exception_of("Dim a() As Integer\nPrint Str(a(0))"),
            "OutOfBoundsException: index 0 of an empty array");
}

TEST(Arrays, an_array_variable_is_a_reference) {
  EXPECT_EQ(output_of("Dim a(1) As Integer\nDim b() As Integer = a\nb(0) = 5\nFill a\n"
                      "Print Str(a(0)) + Str(b(1)) + Str(a Is b)\n"
                      "Sub Fill(x() As Integer)\n  x(1) = 7\nEnd Sub\n"),
            "57True\n");
}

TEST(Arrays, redim_keeps_the_content) {
  EXPECT_EQ(output_of("Dim a(1) As Integer\na(1) = 5\nDim n As Integer = 3\nReDim a(n)\n"
                      "Print Str(UBound(a)) + Str(a(1)) + Str(a(3))\nReDim a(-1)\n"
                      "Print Str(UBound(a))\n"),
            "350\n-1\n");
  EXPECT_THAT(exception_of("Dim a() As Integer\nReDim a(-2)"), HasSubstr("OutOfBoundsException"));
  EXPECT_THAT(error_of("Dim a As Integer\nReDim a(1)"), HasSubstr("is no array"));
}

TEST(Arrays, elements_are_appended_inserted_and_removed) {
  EXPECT_EQ(output_of("Dim a() As String\na.Append \"b\"\na.Append(\"d\")\na.Insert 0, \"a\"\n"
                      "a.Insert 2, \"c\"\nPrint Join(a, \",\")\na.Remove 1\n"
                      "Print Join(a) + \" \" + a.Pop + Str(UBound(a))\n"),
            "a,b,c,d\na c d d1\n");
  EXPECT_THAT(exception_of("Dim a() As Integer\na.Remove 0"), HasSubstr("OutOfBoundsException"));
  EXPECT_THAT(exception_of("Dim a() As Integer\na.Insert 1, 5"), HasSubstr("OutOfBounds"));
  EXPECT_THAT(exception_of("Dim a() As Integer\nCall a.Pop"), HasSubstr("OutOfBoundsException"));
  EXPECT_THAT(error_of("Dim a() As Integer\na.Append \"x\""), HasSubstr("String cannot be"));
}

TEST(Arrays, index_of_compares_as_the_language_does) {
  EXPECT_EQ(output_of("Dim a() As String = Array(\"x\", \"Y\", \"y\")\n"
                      "Print Str(a.IndexOf(\"y\")) + Str(a.IndexOf(\"y\", 2)) + "
                      "Str(a.IndexOf(\"z\"))\n"
                      "Dim v() As Variant = Array(1, \"b\", Nil)\n"
                      "Print Str(v.IndexOf(\"B\")) + Str(v.IndexOf(Nil))\n"
                      "Dim d As New Dictionary\nDim o() As Object = Array(New Dictionary, d)\n"
                      "Print Str(o.IndexOf(d))\n"),
            "12-1\n12\n1\n");
}

TEST(Arrays, array_takes_the_type_of_its_elements_or_that_of_its_target) {
  EXPECT_EQ(output_of("Dim a() As Integer = Array(1, 2, 3)\nDim b() As Double = Array(1, 2.5)\n"
                      "Dim c() As Variant = Array(1, 2)\nDim d() As Variant = Array(1, \"a\")\n"
                      "Print Str(a(2)) + Str(b(1)) + Str(c(1)) + d(1)\n"),
            "32.52a\n");
  EXPECT_THAT(error_of("Dim a() As Integer = Array(\"a\")"), HasSubstr("cannot be converted to"));
  EXPECT_THAT(error_of("Dim a() As Integer = Array()"), HasSubstr("at least one element"));
}

TEST(Arrays, sorting_orders_numbers_and_texts_without_case) {
  EXPECT_EQ(output_of("Dim a() As Integer = Array(3, -1, 2)\na.Sort\n"
                      "Print Str(a(0)) + Str(a(1)) + Str(a(2))\n"
                      "Dim s() As String = Array(\"b\", \"C\", \"a\", \"B\")\ns.Sort\n"
                      "Print Join(s, \"\")\n"
                      "Dim d() As Double = Array(2.5, -1.0)\nd.Sort\nPrint Str(d(0))\n"),
            "-123\nabBC\n-1\n");
  EXPECT_THAT(error_of("Dim o() As Object\no.Sort"), HasSubstr("has no member \"Sort\""));
}

TEST(Arrays, sorting_orders_every_type_that_has_an_order) {
  EXPECT_EQ(output_of("Dim s() As Single = Array(2.5, -1.0, 0.5)\ns.Sort\n"
                      "Print Str(s(0)) + Str(s(1)) + Str(s(2))\n"
                      "Dim c() As Currency = Array(0.0002, -5.5, 0.0001)\nc.Sort\n"
                      "Print Str(c(0)) + \" \" + Str(c(1)) + \" \" + Str(c(2))\n"
                      "Dim b() As Boolean = Array(True, False, True, False)\nb.Sort\n"
                      "Print Str(b(0)) + Str(b(1)) + Str(b(2)) + Str(b(3))\n"
                      "Dim e() As Single\ne.Sort\nPrint Str(UBound(e))\n"),
            "-10.52.5\n-5.5 0.0001 0.0002\nFalseFalseTrueTrue\n-1\n");
}

TEST(Arrays, sorting_variants_orders_by_kind_and_then_by_value) {
  EXPECT_EQ(
      output_of("Dim big As Int64 = 9007199254740993\nDim d As New Dictionary\n"
                "Dim later As New Date(2012, 1, 2)\nDim sooner As New Date(2012, 1, 1)\n"
                "Dim v() As Variant = Array(\"b\", big, 9007199254740992.0, later, d, 2, Nil, "
                "\"A\", sooner, 1.5)\nv.Sort\n"
                "For i As Integer = 0 To 8\n  StdOut.Write v(i).StringValue + \"|\"\nNext\n"
                "Print Str(v(9) = d)\n"),
      "|1.5|2|9.00719925474099e+15|9007199254740993|A|b|2012-01-01 00:00:00|"
      "2012-01-02 00:00:00|True\n");
}

TEST(Arrays, sorting_puts_what_is_no_number_behind_the_numbers) {
  EXPECT_EQ(
      output_of("Dim none As Double = Val(\"0\") / 0\n"
                "Dim v() As Variant = Array(none, 3, none, 1)\nv.Sort\n"
                "Dim s() As Single = Array(none, 3, none, 1)\ns.Sort\n"
                "Print Str(v(0).IntegerValue) + Str(v(1).IntegerValue) + Str(s(0)) + Str(s(1))\n"),
      "1313\n");
}

TEST(Arrays, shuffling_keeps_the_elements) {
  EXPECT_EQ(output_of("Dim a() As Integer\nFor i As Integer = 0 To 99\n  a.Append i\nNext\n"
                      "a.Shuffle\na.Sort\nDim ok As Boolean = True\n"
                      "For i As Integer = 0 To 99\n  If a(i) <> i Then ok = False\nNext\n"
                      "Print Str(ok)\n"),
            "True\n");
}

TEST(Arrays, arrays_of_one_type_cannot_stand_for_another) {
  EXPECT_THAT(error_of("Dim a() As Integer\nDim b() As Variant = a"),
              HasSubstr("Integer() cannot be converted to Variant()"));
  EXPECT_THAT(error_of("Dim a() As Integer\nDim v As Variant = a"),
              HasSubstr("Integer() cannot be converted to Variant"));
}

TEST(Arrays, a_function_without_return_gives_no_array) {
  EXPECT_THAT(exception_of("Dim a() As Integer = F\nPrint Str(UBound(a))\n"
                           "Function F() As Integer()\nEnd Function\n"),
              HasSubstr("NilObjectException"));
}

TEST(Arrays, elements_of_results_need_a_variable_first) {
  EXPECT_THAT(error_of("Dim d As New Dictionary\nPrint d.Keys(0)"),
              HasSubstr("takes no arguments"));
  EXPECT_THAT(error_of("Dim d As New Dictionary\nPrint Array(1)(0)"),
              HasSubstr("assign it to a variable first"));
}

}  // namespace
