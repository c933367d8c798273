// Programs that are in error: the console says what is wrong and where, and ends with status 1.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "console_runner.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

std::string repeated(const std::string& part, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += part;
  return text;
}

class BadProgram : public Console {
 protected:
  // Nothing runs; the first error is in that line.
  void expect_refused(const std::string& text, int line, const std::string& message) {
    write("bad.rbs", text);
    expect_error(run("bad.rbs"), "", line, message, text);
  }
  // The program runs up to that line.
  void expect_stopped(const std::string& text, int line, const std::string& message) {
    write("bad.rbs", "Print \"begun\"\n" + text);
    expect_error(run("bad.rbs"), "begun\n", line + 1, "unhandled " + message, text);
  }

 private:
  static void expect_error(const Result& result, const std::string& out, int line,
                           const std::string& message, const std::string& text) {
    const std::string shown = text.substr(0, 200);
    EXPECT_EQ(result.status, 1) << shown;
    EXPECT_EQ(result.out, out) << shown;
    const std::string first_line = result.err.substr(0, result.err.find('\n'));
    EXPECT_THAT(first_line,
                AllOf(StartsWith("bad.rbs:" + std::to_string(line) + ": "), HasSubstr(message)))
        << shown;
    EXPECT_THAT(result.err, HasSubstr("^\n")) << shown;
    // Long lines and long lists are cut.
    EXPECT_LT(result.err.size(), 10000U) << shown;
  }
};

TEST_F(BadProgram, an_unterminated_string) {
  expect_refused("Dim s As String\ns = \"abc\nPrint s\n", 2, "the string has no closing quote");
  expect_refused("Print \"abc\"\"", 1, "the string has no closing quote");
  expect_refused(repeated("\"", 100001), 1, "the string has no closing quote");
}

TEST_F(BadProgram, a_block_without_its_end) {
  expect_refused("Print \"a\"\nIf True Then\n  Print \"b\"\n", 2, "\"End If\" is missing");
  expect_refused("While True\n  If True Then\n  Wend\n", 3,
                 "\"If\" of line 2 needs \"End If\" before this \"Wend\"");
  expect_refused("Sub S()\n  For i As Integer = 1 To 2\nEnd Sub\n", 3,
                 "\"For\" of line 2 needs \"Next\" before this \"End Sub\"");
  expect_refused("Next\n", 1, "\"Next\" without the statement");
}

TEST_F(BadProgram, unknown_names) {
  expect_refused("Print nobody\n", 1, "there is no variable, constant or routine \"nobody\"");
  expect_refused("Nobody 1, 2\n", 1, "there is no variable, constant or routine \"Nobody\"");
  expect_refused("Dim x As Nobody\n", 1, "there is no type \"Nobody\"");
  expect_refused("Dim s As New StringHashSetZRB\ns.Nobody\n", 2,
                 "StringHashSetZRB has no member \"Nobody\"");
  expect_refused("Print StdIn.Nobody\n", 1, "StdIn has no member \"Nobody\"");
}

TEST_F(BadProgram, wrong_argument_types) {
  expect_refused("Print 5\n", 1, "argument 1 of Print: Integer cannot be converted to String");
  expect_refused("Dim s As New StringHashSetZRB\ns.insert New Date\n", 2,
                 "argument 1 of StringHashSetZRB.insert: Date cannot be converted to String");
  expect_refused("Dim m As New StringToStringHashMapZRB\nm.value(\"a\") = 5\n", 2,
                 "Integer cannot be converted to String");
  expect_refused("Print Len(\"a\", 1)\n", 1, "Len takes 1 argument, not 2");
  expect_refused("Dim m As New StringToStringHashMapZRB(1, 2)\n", 1,
                 "no form of New StringToStringHashMapZRB takes (Integer, Integer)");
}

TEST_F(BadProgram, recursion_without_end) {
  expect_stopped("S 1\nSub S(n As Integer)\n  S n + 1\nEnd Sub\n", 3, "StackOverflowException");
  expect_stopped(
      "Print F(\"a\")\nFunction F(s As String) As String\n  Return F(s) + F(s)\n"
      "End Function\n",
      3, "StackOverflowException");
  expect_stopped(
      "A\nSub A()\n  Try\n    A\n  Finally\n    Dim d As New Dictionary\n  End Try\n"
      "End Sub\n",
      4, "StackOverflowException");
}

TEST_F(BadProgram, indices_out_of_bounds) {
  expect_stopped("Dim a(2) As Integer\na(3) = 1\n", 2,
                 "OutOfBoundsException: index 3 of an array from 0 to 2");
  expect_stopped("Dim a() As String\nPrint a(-2147483648)\n", 2, "OutOfBoundsException");
  expect_stopped("Dim s As New StringHashSetZRB\nPrint s.Key(0)\n", 2, "OutOfBoundsException");
  expect_stopped("Dim a() As Integer\nReDim a(2147483647)\n", 2, "OutOfBoundsException");
  expect_stopped("Dim a() As Integer\na.Remove 0\n", 2, "OutOfBoundsException");
}

TEST_F(BadProgram, division_by_zero) {
  expect_stopped("Dim zero As Integer\nPrint Str(1 \\ zero)\n", 2, "ZeroDivisionException");
  expect_stopped("Dim zero As Int64\nPrint Str(1 Mod zero)\n", 2, "ZeroDivisionException");
  expect_stopped("Print Str(1 \\ 0)\n", 1, "ZeroDivisionException");
  expect_stopped("Dim v, w As Variant\nv = 1\nPrint Str(v \\ w)\n", 3, "ZeroDivisionException");
}

TEST_F(BadProgram, members_of_nil_and_wrong_casts) {
  expect_stopped("Dim s As StringHashSetZRB\ns.insert \"a\"\n", 2, "NilObjectException");
  expect_stopped("Dim o As Object = New Date\nDim d As Dictionary = Dictionary(o)\n", 2,
                 "IllegalCastException");
}

TEST_F(BadProgram, text_that_grows_without_end) {
  expect_stopped(
      "Dim s As String = \"xxxxxxxx\"\nFor i As Integer = 1 To 21\n  s = s + s\nNext\n"
      "Dim parts() As String\nFor i As Integer = 1 To 130\n  parts.Append s\nNext\n"
      "Print Str(Len(Join(parts, \"\")))\n",
      9, "OutOfMemoryException: a string has at most 2147483647 bytes");
}

TEST_F(BadProgram, ten_thousand_nested_parentheses) {
  expect_refused("Print " + repeated("(", 10000) + "1" + repeated(")", 10000) + "\n", 1,
                 "nested too deeply");
  expect_refused("Dim x As Integer = " + repeated("Abs(", 10000) + "\n", 1, "nested too deeply");
  expect_refused("#If " + repeated("(", 10000) + "\n", 1, "nested too deeply");
  expect_refused(repeated("If True Then\n", 10000), 101, "nested too deeply");
  expect_refused("Dim x As Integer = 1" + repeated(" + 1", 10000) + "\n", 1, "too long");
}

TEST_F(BadProgram, binary_garbage) {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> byte(0, 255);
  std::string garbage;
  for (int i = 0; i < 100000; ++i) garbage += static_cast<char>(byte(random));
  expect_refused(garbage, 1, "");
  expect_refused(std::string(100000, '\0'), 1, "the byte &h00 cannot be part of a program");
  const std::string utf16("\xFF\xFEP\0r\0i\0n\0t\0", 12);
  expect_refused(utf16, 1, "the byte &hFF cannot be part of a program, which is text in UTF-8");
}

// Control characters, of eight bits too, and ill-formed text are not handed to the terminal.
TEST_F(BadProgram, what_a_terminal_would_obey_is_not_shown) {
  expect_refused(
      "Print nobody ' \x1B[2J \x9B"
      "2J \xC2\x9B \xE4 \xF0\x9F\x98 ä€\n",
      1, "nobody");
  const Result result = run("bad.rbs");
  EXPECT_THAT(result.err, HasSubstr("Print nobody ' ?[2J ?2J ? ? ??? ä€\n"));
}

TEST_F(BadProgram, errors_of_many_routines_are_limited_in_number) {
  std::string text;
  for (int i = 0; i < 3000; ++i) {
    text += "Sub S" + std::to_string(i) + "()\n  Nobody\nEnd Sub\n";
  }
  expect_refused(text, 2, "\"Nobody\"");
  expect_refused(repeated("Sub S()\nEnd Sub\n", 30000), 3, "another \"S\"");
}

TEST_F(BadProgram, an_executable_is_no_program) {
  const Result result = run("'" ZRB_CONSOLE_FILE "'");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, HasSubstr(":1: the byte &h7F cannot be part of a program"));
}

}  // namespace
