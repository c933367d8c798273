// Try, Catch, Finally, Raise, and what ends a program.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "script_runner.h"

namespace {

using testing::HasSubstr;

TEST(Try, the_first_catch_that_fits_runs) {
  EXPECT_EQ(output_of("Try\n  Raise New KeyNotFoundException\nCatch n As NilObjectException\n"
                      "  Print \"nil\"\nCatch k As KeyNotFoundException\n  Print \"key\"\n"
                      "Catch e As RuntimeException\n  Print \"any\"\nEnd Try\n"
                      "Try\n  Raise New OutOfBoundsException\nCatch k As KeyNotFoundException\n"
                      "  Print \"key\"\nCatch\n  Print \"any\"\nEnd Try\nPrint \"on\"\n"),
            "key\nany\non\n");
}

TEST(Try, an_exception_carries_message_and_number) {
  EXPECT_EQ(output_of("Try\n  Dim e As New RuntimeException\n  e.Message = \"why\"\n"
                      "  e.ErrorNumber = 7\n  Raise e\nCatch x As RuntimeException\n"
                      "  Print x.Message + Str(x.ErrorNumber)\nEnd Try\n"),
            "why7\n");
}

TEST(Try, finally_runs_in_every_case) {
  EXPECT_EQ(output_of("Try\n  Print \"a\"\nFinally\n  Print \"f\"\nEnd Try\n"
                      "Try\n  Raise New RuntimeException\nCatch e As RuntimeException\n"
                      "  Print \"c\"\nFinally\n  Print \"f\"\nEnd Try\n"
                      "Print Str(F)\n"
                      "For i As Integer = 1 To 2\n  Try\n    Continue\n  Finally\n"
                      "    Print \"f\" + Str(i)\n  End Try\nNext\n"
                      "Try\n  G\nCatch e As RuntimeException\n  Print \"outer\"\nEnd Try\n"
                      "Function F() As Integer\n  Try\n    Return 5\n  Finally\n    Print \"ff\"\n"
                      "  End Try\nEnd Function\n"
                      "Sub G()\n  Try\n    Raise New RuntimeException\n  Finally\n"
                      "    Print \"inner\"\n  End Try\nEnd Sub\n"),
            "a\nf\nc\nf\nff\n5\nf1\nf2\ninner\nouter\n");
}

TEST(Try, an_exception_in_a_catch_goes_outwards) {
  EXPECT_EQ(output_of("Try\n  Try\n    Raise New KeyNotFoundException\n"
                      "  Catch k As KeyNotFoundException\n    Raise New NilObjectException\n"
                      "  Finally\n    Print \"f\"\n  End Try\n"
                      "Catch n As NilObjectException\n  Print \"nil\"\nEnd Try\n"),
            "f\nnil\n");
}

TEST(Try, errors_in_its_form_are_told) {
  EXPECT_THAT(error_of("Try\nEnd Try"), HasSubstr("needs a \"Catch\" or a \"Finally\""));
  EXPECT_THAT(error_of("Try\nFinally\nCatch\nEnd Try"), HasSubstr("cannot follow \"Finally\""));
  EXPECT_THAT(error_of("Try\nCatch e As Dictionary\nEnd Try"), HasSubstr("is no exception class"));
  EXPECT_THAT(error_of("Raise New Dictionary"),
              HasSubstr("cannot be converted to RuntimeException"));
}

TEST(Raised, members_of_nil) {
  EXPECT_THAT(exception_of("Dim d As Dictionary\nPrint Str(d.Count)"),
              HasSubstr("NilObjectException"));
  EXPECT_THAT(exception_of("Dim d As Dictionary\nd.Clear"), HasSubstr("NilObjectException"));
  EXPECT_THAT(exception_of("Dim d As Dictionary\nd.Value(1) = 1"), HasSubstr("NilObjectException"));
  EXPECT_THAT(exception_of("Dim e As RuntimeException\ne.Message = \"x\""),
              HasSubstr("NilObjectException"));
  EXPECT_THAT(exception_of("Dim e As RuntimeException\nRaise e"), HasSubstr("NilObjectException"));
}

TEST(Raised, casts) {
  EXPECT_EQ(output_of("Dim o As Object = New Dictionary\nDim d As Dictionary = Dictionary(o)\n"
                      "d.Value(1) = 2\nDim v As Variant = d\nPrint Str(Dictionary(v).Count)\n"
                      "Print Str(Date(Nil) = Nil)\n"),
            "1\nTrue\n");
  EXPECT_THAT(exception_of("Dim o As Object = New Dictionary\nDim d As Date = Date(o)"),
              HasSubstr("IllegalCastException"));
  EXPECT_THAT(exception_of("Dim v As Variant = New Dictionary\nDim d As Date = Date(v)"),
              HasSubstr("IllegalCastException"));
  EXPECT_THAT(exception_of("Dim v As Variant = New Dictionary\nDim d As Date = v"),
              HasSubstr("TypeMismatchException"));
  EXPECT_THAT(exception_of("Dim v As Variant = 5\nDim d As Dictionary = v"),
              HasSubstr("TypeMismatchException"));
  EXPECT_THAT(error_of("Dim d As New Dictionary\nDim e As Date = Date(d)"),
              HasSubstr("can never be a Date"));
  EXPECT_THAT(error_of("Dim i As Integer = Integer(5)"), HasSubstr("only classes can be cast to"));
}

TEST(Report, an_unhandled_exception_names_its_place) {
  const Outcome outcome = run_script(
      "Print \"a\"\nDim d As New Dictionary\n"
      "  Print d.Value(\"x\")\n");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "a\n");
  EXPECT_THAT(outcome.err, testing::StartsWith("test.rbs:3: unhandled KeyNotFoundException: "));
  EXPECT_THAT(outcome.err, HasSubstr("\n      Print d.Value(\"x\")\n"));
}

TEST(Report, the_place_is_where_it_was_raised_not_where_it_passed) {
  EXPECT_THAT(run_script("A\nSub A()\n  Print \"in a\"\n  B\nEnd Sub\n"
                         "Sub B()\n  Raise New RuntimeException\nEnd Sub\n")
                  .err,
              HasSubstr("test.rbs:7: "));
  EXPECT_THAT(run_script("Dim i As Integer = F + 1 \\ 0\nFunction F() As Integer\n  Return 1\n"
                         "End Function\n")
                  .err,
              HasSubstr("test.rbs:1: "));
  EXPECT_THAT(run_script("Try\n  A\nFinally\n  Print \"\"\n  Try\n    A\n  Catch\n  End Try\n"
                         "End Try\nSub A()\n  Raise New RuntimeException\nEnd Sub\n")
                  .err,
              HasSubstr("test.rbs:11: "));
  EXPECT_THAT(run_script("Try\n  A\nCatch e As RuntimeException\n  Raise e\nEnd Try\n"
                         "Sub A()\n  Raise New RuntimeException\nEnd Sub\n")
                  .err,
              HasSubstr("test.rbs:4: "));
  EXPECT_THAT(run_script("If False Then\nElseIf 1 \\ 0 = 1 Then\nEnd If").err,
              HasSubstr("test.rbs:2: "));
  EXPECT_THAT(
      run_script("Dim i As Integer = 2\nDo\n  i = i - 1\n  Print \"\"\nLoop Until 1 \\ i = 5").err,
      HasSubstr("test.rbs:5: "));
}

TEST(Recursion, without_end_raises_and_can_be_caught) {
  EXPECT_THAT(exception_of("Down 1\nSub Down(n As Integer)\n  Down n + 1\nEnd Sub"),
              HasSubstr("StackOverflowException"));
  EXPECT_EQ(output_of("For i As Integer = 1 To 3\n  Try\n    Print Str(Down(1))\n"
                      "  Catch e As StackOverflowException\n    Print \"caught\"\n  End Try\nNext\n"
                      "Function Down(n As Integer) As Integer\n  Dim s As String = \"x\"\n"
                      "  Try\n    If n > 0 Then Return Down(n + 1) + s.Len\n"
                      "  Catch k As KeyNotFoundException\n  Finally\n    s = \"\"\n  End Try\n"
                      "End Function\n"),
            "caught\ncaught\ncaught\n");
}

// The line and the marked column.
std::string place_of_exception(const std::string& text) {
  const std::string report = run_script(text).err;
  const std::string mark = report.substr(report.rfind("\n", report.size() - 2) + 1);
  return report.substr(0, report.find(": ")) + " " + std::to_string(mark.find('^') - 3);
}

TEST(Exceptions, in_a_statement_over_several_lines_are_told_where_they_are_raised) {
  const std::string array = "Dim a(1) As Integer\n";
  EXPECT_EQ(place_of_exception(array + "Print Str(a(0)) + _\n  Str(1) + _\n  Str(a(5))"),
            "test.rbs:4 7");
  EXPECT_EQ(place_of_exception(array + "Dim n As Integer = 1 + _\n  7 \\ a(0)"), "test.rbs:3 5");
  EXPECT_EQ(place_of_exception(array + "a(0) = _\n  Asc(Chr(-1))"), "test.rbs:3 7");
  EXPECT_EQ(place_of_exception("Dim d As New Dictionary\nd. _\n  Remove _\n  1"), "test.rbs:3 3");
  EXPECT_EQ(place_of_exception("Dim d As Dictionary\nDim i As Integer = _\n  d.Count"),
            "test.rbs:3 5");
  EXPECT_EQ(place_of_exception("If False Or _\n  Chr(-1) = \"\" Then\nEnd If"), "test.rbs:2 3");
  EXPECT_EQ(place_of_exception("If False Then\nElseIf Chr(-1) = \"\" Then\nEnd If"),
            "test.rbs:2 16");
  EXPECT_EQ(place_of_exception("Select Case 1\nCase 2, _\n  Asc(Chr(-1))\nEnd Select"),
            "test.rbs:3 7");
  EXPECT_EQ(place_of_exception("Do\nLoop Until Chr(-1) = \"\""), "test.rbs:2 12");
}

// What was evaluated on another line does not take the place with it.
TEST(Exceptions, behind_an_expression_on_another_line_are_told_at_their_own) {
  EXPECT_EQ(place_of_exception("Print Chr( _\n  Len(\"\") - _\n  Len(\"a\"))"), "test.rbs:1 1");
  EXPECT_EQ(place_of_exception("Dim b(0) As Boolean\nb(1) = Not _\n  IsNull(Nil)"), "test.rbs:2 1");
}

}  // namespace
