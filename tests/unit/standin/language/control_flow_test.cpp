// If, loops, Select Case, Exit and Continue.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "script_runner.h"

namespace {

using testing::HasSubstr;

std::string letters(const std::string& condition) {
  return output_of("Dim i As Integer = 2\n" + condition);
}

TEST(If, the_first_branch_that_holds_runs) {
  const std::string program =
      "For i As Integer = 1 To 4\n"
      "  If i = 1 Then\n    StdOut.Write \"one\"\n"
      "  ElseIf i = 2 Then ' comment\n    StdOut.Write \"two\"\n"
      "  ElseIf i <= 2 Then\n    StdOut.Write \"never\"\n"
      "  ElseIf i = 3 Then\n    StdOut.Write \"three\"\n"
      "  Else\n    StdOut.Write \"more\"\n  End If\nNext\n";
  EXPECT_EQ(output_of(program), "onetwothreemore");
}

TEST(If, one_line_with_and_without_else) {
  EXPECT_EQ(letters("If i = 2 Then Print \"yes\"\nIf i = 3 Then Print \"?\" Else Print \"no\"\n"
                    "If i = 2 Then If i = 3 Then Print \"a\" Else Print \"b\"\n"
                    "If i = 2 Then i = 5 Else i = 6\nPrint Str(i)\n"),
            "yes\nno\nb\n5\n");
}

TEST(If, a_condition_is_a_boolean_or_a_variant) {
  EXPECT_EQ(letters("Dim v As Variant = True\nIf v Then Print \"yes\"\n"), "yes\n");
  EXPECT_THAT(error_of("If 1 Then Print \"\""), HasSubstr("must be a Boolean, not Integer"));
}

TEST(If, what_is_missing_is_told) {
  EXPECT_THAT(error_of("If True\nPrint \"\"\nEnd If"), HasSubstr("\"Then\" is expected here"));
  EXPECT_THAT(error_of("If True Then\nPrint \"\""),
              HasSubstr("not closed before the program ends"));
  EXPECT_THAT(error_of("Else"), HasSubstr("without the statement that it belongs to"));
  EXPECT_THAT(error_of("End If"), HasSubstr("without the statement that it belongs to"));
}

TEST(For, counts_up_and_down) {
  EXPECT_EQ(output_of("Dim i As Integer\nFor i = 1 To 3\n  StdOut.Write Str(i)\nNext i\n"
                      "StdOut.Write \"(\" + Str(i) + \")\"\n"
                      "For i = 3 DownTo 1\n  StdOut.Write Str(i)\nNext\n"
                      "For i = 1 To 10 Step 4\n  StdOut.Write Str(i)\nNext\n"
                      "For i = 10 To 1 Step -4\n  StdOut.Write Str(i) + \" \"\nNext\n"
                      "For i = 2 To 1\n  StdOut.Write \"never\"\nNext\n"),
            "123(4)32115910 6 2 ");
}

TEST(For, counts_with_doubles_and_int64) {
  EXPECT_EQ(output_of("For d As Double = 0 To 1 Step 0.25\n  StdOut.Write Str(d) + \" \"\nNext\n"
                      "For n As Int64 = 4000000000 To 4000000001\n  StdOut.Write Str(n)\nNext\n"
                      "For s As Single = 1 DownTo 0 Step 0.5\n  StdOut.Write Str(s)\nNext\n"),
            "0 0.25 0.5 0.75 1 4000000000400000000110.50");
  EXPECT_THAT(error_of("For s As String = 1 To 2\nNext"), HasSubstr("a loop counts with"));
}

TEST(For, counts_with_currency) {
  EXPECT_EQ(output_of("Dim c As Currency\nFor c = 0.9998 To 1 Step 0.0001\n  StdOut.Write Str(c) + "
                      "\" \"\nNext\nFor d As Currency = 3 DownTo 1\n  StdOut.Write Str(d)\nNext\n"
                      "For d As Currency = 1 To 2\n  StdOut.Write Str(d)\nNext\n"),
            "0.9998 0.9999 1 32112");
}

TEST(For, the_end_value_is_evaluated_in_every_pass) {
  EXPECT_EQ(output_of("Dim n As Integer = 5\nFor i As Integer = 1 To n\n  n = 3\n"
                      "  StdOut.Write Str(i)\nNext\n"),
            "123");
}

TEST(For, the_largest_integer_ends_the_loop) {
  EXPECT_EQ(output_of("Dim n As Integer\nFor i As Integer = 2147483646 To 2147483647\n  n = n + 1\n"
                      "Next\nFor i As Integer = -2147483647 DownTo -2147483648\n  n = n + 1\nNext\n"
                      "Print Str(n)\n"),
            "4\n");
}

TEST(For, next_names_the_right_variable) {
  EXPECT_THAT(error_of("For i As Integer = 1 To 2\nFor j As Integer = 1 To 2\nNext i\nNext j"),
              HasSubstr("belongs to the loop over \"j\", not \"i\""));
}

TEST(ForEach, walks_through_an_array) {
  EXPECT_EQ(output_of("Dim a() As String = Array(\"x\", \"y\")\nDim s As String\n"
                      "For Each s In a\n  StdOut.Write s\nNext\n"
                      "For Each t As String In a\n  StdOut.Write t\nNext t\n"
                      "Dim v() As Variant = Array(1, \"2\")\n"
                      "For Each n As Integer In v\n  StdOut.Write Str(n + 1)\nNext\n"
                      "For Each w As Variant In a\n  StdOut.Write w\nNext\n"),
            "xyxy23xy");
  EXPECT_THAT(error_of("For Each s As String In \"abc\"\nNext"), HasSubstr("needs an array"));
}

TEST(ForEach, evaluates_its_array_once_and_follows_its_growth) {
  EXPECT_EQ(output_of("Dim a() As Integer = Array(1)\nFor Each n As Integer In a\n"
                      "  If n < 4 Then a.Append n + 1\n  StdOut.Write Str(n)\nNext\n"),
            "1234");
}

TEST(While, runs_while_the_condition_holds) {
  EXPECT_EQ(output_of("Dim i As Integer\nWhile i < 3\n  i = i + 1\n  StdOut.Write Str(i)\nWend\n"),
            "123");
}

TEST(Do, conditions_stand_at_either_end) {
  EXPECT_EQ(output_of("Dim i As Integer\nDo Until i = 2\n  i = i + 1\nLoop\nStdOut.Write Str(i)\n"
                      "Do While i < 4\n  i = i + 1\nLoop\nStdOut.Write Str(i)\n"
                      "Do\n  i = i + 1\nLoop Until i >= 1\nStdOut.Write Str(i)\n"
                      "Do\n  i = i + 1\nLoop While i < 8\nStdOut.Write Str(i)\n"
                      "Do\n  i = i + 1\n  If i = 10 Then Exit\nLoop\nStdOut.Write Str(i)\n"),
            "245810");
}

TEST(Select, the_first_case_that_matches_runs) {
  const std::string program =
      "For i As Integer = 1 To 12\n  Select Case i\n"
      "  Case 2, 4\n    StdOut.Write \"a\"\n"
      "  Case 3 To 6\n    StdOut.Write \"b\"\n"
      "  Case Is >= 9, 8\n    StdOut.Write \"c\"\n"
      "  Case Else\n    StdOut.Write \"-\"\n  End Select\nNext\n";
  EXPECT_EQ(output_of(program),
            "-abab"
            "b-ccccc");
}

TEST(Select, texts_ignore_case_and_else_may_stand_alone) {
  EXPECT_EQ(output_of("Select Case \"ABC\"\nCase \"x\", \"abc\"\n  Print \"found\"\nElse\n"
                      "  Print \"?\"\nEnd Select\n"
                      "Select Case 5\nCase 1\n  Print \"?\"\nElse\n  Print \"else\"\nEnd Select\n"
                      "Select Case 5\nEnd Select\n"),
            "found\nelse\n");
}

TEST(Select, the_selector_is_evaluated_once) {
  EXPECT_EQ(output_of("Select Case Asked\nCase 1\nCase 2\nCase 3\n  Print \"three\"\nEnd Select\n"
                      "Function Asked() As Integer\n  Print \"asked\"\n  Return 3\nEnd Function\n"),
            "asked\nthree\n");
}

TEST(Select, a_long_list_of_cases_is_no_trouble) {
  std::string cases;
  for (int i = 0; i < 5000; ++i) cases += (i == 0 ? "" : ", ") + std::to_string(i);
  EXPECT_EQ(output_of("Dim n As Integer = 4999\nSelect Case n\nCase " + cases +
                      "\n  Print \"in\"\nEnd Select\n"),
            "in\n");
}

TEST(Select, errors_are_told) {
  EXPECT_THAT(error_of("Select Case 1\nPrint \"\"\nEnd Select"), HasSubstr("\"Case\" or"));
  EXPECT_THAT(error_of("Select Case 1\nElse\nCase 1\nEnd Select"), HasSubstr("End Select"));
  EXPECT_THAT(error_of("Select Case 1\nCase \"a\"\nEnd Select"),
              HasSubstr("not defined for Integer and String"));
}

TEST(Exit, leaves_the_innermost_or_the_named_loop) {
  EXPECT_EQ(output_of("Dim n As Integer\nFor i As Integer = 1 To 9\n  While True\n    n = n + 1\n"
                      "    If n = 2 Then Exit For\n    If n = 1 Then Exit\n  Wend\n"
                      "  StdOut.Write Str(i)\nNext\nStdOut.Write Str(n)\n"
                      "Do\n  For i As Integer = 1 To 9\n    Exit Do\n  Next\nLoop\n"
                      "While True\n  Do\n    Exit While\n  Loop\nWend\n"),
            "12");
}

TEST(Exit, leaves_routines) {
  EXPECT_EQ(output_of("S\nPrint Str(F)\nSub S()\n  For i As Integer = 1 To 2\n    Print \"s\"\n"
                      "    Exit Sub\n  Next\nEnd Sub\n"
                      "Function F() As Integer\n  Exit Function\n  Return 5\nEnd Function\n"),
            "s\n0\n");
}

TEST(Continue, goes_on_with_the_innermost_or_the_named_loop) {
  EXPECT_EQ(output_of("For i As Integer = 1 To 4\n  If i = 2 Then Continue\n"
                      "  For j As Integer = 1 To 2\n    If i = 3 Then Continue For\n"
                      "    StdOut.Write Str(i) + Str(j) + \" \"\n  Next\nNext\n"
                      "Dim n As Integer\nWhile n < 3\n  n = n + 1\n  Do\n    Continue While\n"
                      "  Loop\nWend\nStdOut.Write Str(n)\n"),
            "11 12 41 42 3");
}

TEST(Leaving, outside_of_a_loop_is_an_error) {
  EXPECT_EQ(error_of("Exit"), "Exit outside of a loop; Return ends the program");
  EXPECT_EQ(error_of("Sub S()\nExit\nEnd Sub"), "Exit outside of a loop; Exit Sub leaves the Sub");
  EXPECT_EQ(error_of("Function F() As Integer\nExit\nEnd Function"),
            "Exit outside of a loop; Return leaves the Function");
  EXPECT_EQ(error_of("Continue"), "Continue outside of a loop");
  EXPECT_THAT(error_of("For i As Integer = 1 To 2\nContinue While\nNext"),
              HasSubstr("Continue While outside of a While"));
  EXPECT_THAT(error_of("Exit Sub"), HasSubstr("outside of a Sub"));
}

}  // namespace
