// Sub, Function, their parameters, and the program's own result.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "language/script.h"
#include "script_runner.h"

namespace {

using testing::HasSubstr;

TEST(Program, args_holds_its_name_and_the_arguments) {
  const Outcome outcome = run_script("Print Join(args, \"|\")", "", {"a", "-b", "ä"});
  EXPECT_EQ(outcome.out, "test.rbs|a|-b|ä\n");
}

TEST(Program, return_and_quit_set_the_status) {
  EXPECT_EQ(run_script("Return 3\nPrint \"never\"").status, 3);
  EXPECT_EQ(run_script("Quit 4\nPrint \"never\"").status, 4);
  EXPECT_EQ(run_script("Quit").status, 0);
  EXPECT_EQ(
      run_script("S\nReturn 1\nSub S()\n  Dim d As New Dictionary\n  Quit(5)\nEnd Sub").status, 5);
  EXPECT_EQ(run_script("Return").status, 0);
  EXPECT_EQ(run_script("").status, 0);
}

TEST(Program, its_variables_are_not_those_of_its_routines) {
  EXPECT_THAT(error_of("Dim x As Integer\nSub S()\n  x = 1\nEnd Sub"),
              HasSubstr("there is no variable, constant or routine \"x\""));
}

TEST(Routines, stand_in_any_order_and_call_each_other) {
  EXPECT_EQ(output_of("Function Even(n As Integer) As Boolean\n  If n = 0 Then Return True\n"
                      "  Return Odd(n - 1)\nEnd Function\nPrint Str(Even(10)) + Str(odd(10))\n"
                      "Function Odd(n As Integer) As Boolean\n  If n = 0 Then Return False\n"
                      "  Return Even(n - 1)\nEnd Function\n"),
            "TrueFalse\n");
}

TEST(Routines, recursion_has_variables_of_its_own) {
  EXPECT_EQ(output_of("Print Reversed(\"abc\")\n"
                      "Function Reversed(s As String) As String\n"
                      "  Dim first As String = s.Left(1)\n"
                      "  If s = \"\" Then Return \"\"\n"
                      "  Return Reversed(s.Mid(2)) + first\nEnd Function\n"),
            "cba\n");
}

TEST(Routines, a_function_without_return_gives_what_a_variable_starts_as) {
  EXPECT_EQ(
      output_of("Print \"[\" + S + \"]\" + Str(I) + Str(D = Nil)\n"
                "Function S() As String\nEnd Function\nFunction I() As Integer\nEnd Function\n"
                "Function D() As Dictionary\nEnd Function\n"),
      "[]0True\n");
}

TEST(Routines, byref_changes_the_callers_variable) {
  EXPECT_EQ(output_of("Dim a As Integer = 1\nDim s As String = \"x\"\nDim d As Dictionary\n"
                      "Change a, s, d\nPrint Str(a) + s + Str(d.Count)\n"
                      "Sub Change(ByRef n As Integer, ByRef t As String, ByRef o As Dictionary)\n"
                      "  n = n + 1\n  t = t + \"y\"\n  o = New Dictionary\n  o.Value(1) = 1\n"
                      "  Deeper n\nEnd Sub\n"
                      "Sub Deeper(ByRef n As Integer)\n  n = n * 10\nEnd Sub\n"),
            "20xy1\n");
}

TEST(Routines, byref_needs_a_variable_of_that_very_type) {
  const std::string sub = "Sub S(ByRef n As Integer)\nEnd Sub\n";
  EXPECT_THAT(error_of("S 5\n" + sub), HasSubstr("a ByRef parameter needs a variable"));
  EXPECT_THAT(error_of("Dim d As Double\nS d\n" + sub),
              HasSubstr("cannot take a variable of type"));
}

TEST(Routines, byval_keeps_the_callers_variable) {
  EXPECT_EQ(output_of("Dim a As Integer = 1\nS a\nPrint Str(a)\n"
                      "Sub S(ByVal n As Integer)\n  n = 5\nEnd Sub\n"),
            "1\n");
}

TEST(Routines, optional_parameters_have_defaults) {
  EXPECT_EQ(
      output_of("S 1\nS 1, 2\nS 1, 2, \"c\"\n"
                "Sub S(a As Integer, Optional b As Integer = -5, Optional c As String = \"z\")\n"
                "  Print Str(a) + Str(b) + c\nEnd Sub\n"),
      "1-5z\n12z\n12c\n");
  EXPECT_THAT(error_of("Sub S(Optional a As Integer = 1, b As Integer)\nEnd Sub"),
              HasSubstr("must be Optional too"));
  EXPECT_THAT(error_of("Sub S(Optional a As Integer)\nEnd Sub"), HasSubstr("needs a default"));
}

TEST(Routines, assigns_takes_the_value_of_an_assignment) {
  EXPECT_EQ(output_of("Item(3) = \"x\"\nPrint Item(3)\nAll = 7\n"
                      "Sub Item(n As Integer, Assigns v As String)\n  Print Str(n) + v\nEnd Sub\n"
                      "Function Item(n As Integer) As String\n  Return \"read\"\nEnd Function\n"
                      "Sub All(Assigns n As Integer)\n  Print Str(n)\nEnd Sub\n"),
            "3x\nread\n7\n");
  EXPECT_THAT(error_of("S 1\nSub S(Assigns n As Integer)\nEnd Sub"),
              HasSubstr("can only be assigned to"));
  EXPECT_THAT(error_of("S(1) = 2\nSub S(n As Integer)\nEnd Sub"), HasSubstr("marked Assigns"));
}

TEST(Routines, overloads_are_chosen_by_type_an_exact_one_first) {
  EXPECT_EQ(output_of("T 1\nT 1.5\nT \"a\"\nDim n As Int64\nT n\nDim v As Variant\nT v\nT True\n"
                      "T New Dictionary\nT 1, 2\n"
                      "Sub T(n As Integer)\n  Print \"integer\"\nEnd Sub\n"
                      "Sub T(d As Double)\n  Print \"double\"\nEnd Sub\n"
                      "Sub T(s As String)\n  Print \"string\"\nEnd Sub\n"
                      "Sub T(v As Variant)\n  Print \"variant\"\nEnd Sub\n"
                      "Sub T(a As Integer, b As Integer)\n  Print \"two\"\nEnd Sub\n"),
            "integer\ndouble\nstring\ndouble\nvariant\nvariant\nvariant\ntwo\n");
}

TEST(Routines, an_overload_without_a_default_goes_before_one_with_it) {
  EXPECT_EQ(output_of("T 1\nT 1, 2\nT 1, 2, 3\n"
                      "Sub T(a As Integer, Optional b As Integer = 0, Optional c As Integer = 0)\n"
                      "  Print \"three\"\nEnd Sub\n"
                      "Sub T(a As Integer)\n  Print \"one\"\nEnd Sub\n"
                      "Sub T(a As Integer, Optional b As Integer = 0)\n  Print \"two\"\nEnd Sub\n"),
            "one\ntwo\nthree\n");
  // Types count more than defaults.
  EXPECT_EQ(
      output_of("T 1.5\nSub T(a As Integer)\n  Print \"integer\"\nEnd Sub\n"
                "Sub T(a As Double, Optional b As Integer = 0)\n  Print \"double\"\nEnd Sub\n"),
      "double\n");
  EXPECT_THAT(error_of("T 1\nSub T(a As Integer, Optional b As Integer = 0)\nEnd Sub\n"
                       "Sub T(a As Integer, Optional b As String = \"\")\nEnd Sub\n"),
              HasSubstr("could be two things"));
}

TEST(Routines, a_call_that_fits_two_overloads_is_an_error) {
  EXPECT_THAT(error_of("T Nil\nSub T(d As Dictionary)\nEnd Sub\nSub T(d As Date)\nEnd Sub\n"),
              HasSubstr("could be two things"));
  EXPECT_THAT(error_of("Sub T(a As Integer)\nEnd Sub\nSub t(b As Integer)\nEnd Sub"),
              HasSubstr("with the same parameters, in line 1"));
}

TEST(Routines, wrong_arguments_are_explained) {
  const std::string sub = "Sub S(n As Integer, t As String)\nEnd Sub\n";
  EXPECT_THAT(error_of("S 1\n" + sub), HasSubstr("S takes 2 arguments, not 1"));
  EXPECT_THAT(error_of("S 1, 2\n" + sub),
              HasSubstr("argument 2 of S: Integer cannot be converted to String"));
  const std::string setter = "\nSub V(k As Integer, Assigns v As Integer)\nEnd Sub";
  EXPECT_THAT(error_of("V(1) = \"x\"" + setter),
              HasSubstr("the value assigned to V: String cannot be converted to Integer"));
  EXPECT_THAT(error_of("V(1, 2) = 3" + setter),
              HasSubstr("the assignment to V takes 1 argument, not 2"));
  EXPECT_THAT(
      error_of("V(1) = True" + setter + "\nSub V(k As Integer, Assigns v As String)\nEnd Sub"),
      HasSubstr("no form of V takes (Integer) = Boolean:"));
}

TEST(Routines, results_are_used_or_dropped_with_call) {
  const std::string function = "Function F() As Integer\n  Print \"f\"\nEnd Function\n";
  EXPECT_EQ(output_of("Call F\nCall F()\n" + function), "f\nf\n");
  EXPECT_THAT(error_of("F\n" + function), HasSubstr("write Call before it"));
  EXPECT_THAT(error_of("Dim i As Integer = S\nSub S()\nEnd Sub"), HasSubstr("has no result"));
}

TEST(Routines, return_must_fit_the_routine) {
  EXPECT_THAT(error_of("Sub S()\n  Return 1\nEnd Sub"), HasSubstr("Return stands alone"));
  EXPECT_THAT(error_of("Function F() As Integer\n  Return\nEnd Function"),
              HasSubstr("needs a value"));
  EXPECT_THAT(error_of("Function F() As Integer\n  Return \"a\"\nEnd Function"),
              HasSubstr("String cannot be converted to Integer"));
}

TEST(Routines, arrays_are_passed_and_returned) {
  EXPECT_EQ(output_of("Dim a() As Integer = Squares(4)\nPrint Str(Sum(a))\n"
                      "Function Squares(n As Integer) As Integer()\n  Dim r() As Integer\n"
                      "  For i As Integer = 1 To n\n    r.Append i * i\n  Next\n  Return r\n"
                      "End Function\n"
                      "Function Sum(a() As Integer) As Integer\n  Dim s As Integer\n"
                      "  For Each n As Integer In a\n    s = s + n\n  Next\n  Return s\n"
                      "End Function\n"),
            "30\n");
}

TEST(Calls, parentheses_may_be_left_out) {
  EXPECT_EQ(output_of("Dim d As New Dictionary\nd.Value(1) = 2\nd.Clear\nPrint Str(d.Count)\n"
                      "Print (\"a\") + \"b\"\nTwo -1, (2)\nTwo (1 + 1), 3\n"
                      "Sub Two(a As Integer, b As Integer)\n  Print Str(a) + Str(b)\nEnd Sub\n"),
            "0\nab\n-12\n23\n");
}

// Counts how often what was written is handed on.
class CountingBuffer : public std::stringbuf {
 public:
  int flushes = 0;

 private:
  int sync() override {
    ++flushes;
    return 0;
  }
};

TEST(Input, asking_for_it_first_shows_what_was_written) {
  for (const char* question : {"Call StdIn.ReadLine", "Call StdIn.ReadAll", "Call StdIn.EOF"}) {
    CountingBuffer buffer;
    std::ostream out(&buffer);
    std::istringstream in;
    standin::Host host;
    const std::string text = "StdOut.Write \"Name? \"\n" + std::string(question) + "\nQuit\n";
    standin::language::run_script("test.rbs", text, {}, host, {in, out, out});
    // Once for the question, once at the end.
    EXPECT_EQ(buffer.flushes, 2) << question;
  }
}

}  // namespace
