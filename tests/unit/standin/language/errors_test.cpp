// What keeps a program from running: how it is reported, and what the language leaves out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "script_runner.h"

namespace {

using testing::HasSubstr;

std::string repeated(const std::string& part, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += part;
  return text;
}

TEST(Report, a_syntax_error_shows_place_and_line) {
  const Outcome outcome = run_script("Dim a As Integer\n\ta = (1 + 2\n");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err,
            "test.rbs:2: \")\" is expected here, not the end of the line\n"
            "    \ta = (1 + 2\n"
            "    \t          ^\n");
}

TEST(Report, a_wrong_argument_is_marked_itself) {
  EXPECT_EQ(run_script("Print _\n  Left(\"abc\", _\n    \"x\")\n").err,
            "test.rbs:3: argument 2 of Left: String cannot be converted to Integer, in "
            "Left(String, Integer)\n"
            "        \"x\")\n"
            "        ^\n");
}

TEST(Report, all_type_errors_are_told_before_anything_runs) {
  const Outcome outcome = run_script(
      "Print \"ran\"\nDim i As Integer = \"a\"\ni = i + 1\nFoo 1\nIf i = 1 Then\n  Bar\nEnd If\n"
      "Sub S()\n  Baz\nEnd Sub\n");
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, HasSubstr("test.rbs:2: String cannot be converted to Integer"));
  EXPECT_THAT(outcome.err,
              HasSubstr("test.rbs:4: there is no variable, constant or routine \"Foo\""));
  EXPECT_THAT(outcome.err, HasSubstr("test.rbs:6: "));
  EXPECT_THAT(outcome.err, HasSubstr("test.rbs:9: "));
  EXPECT_THAT(outcome.err, testing::Not(HasSubstr("test.rbs:3: ")));
}

TEST(Report, errors_are_limited_in_number) {
  const Outcome outcome = run_script(repeated("Foo\n", 1000));
  EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '^'), 20);
}

TEST(Report, long_lines_are_cut_around_the_place) {
  const Outcome outcome = run_script("Print \"" + repeated("ä", 5000) + "\" + Foo");
  EXPECT_LT(outcome.err.size(), 1000U);
  EXPECT_THAT(outcome.err, HasSubstr("+ Foo"));
}

TEST(Refused, statements_are_named) {
  const auto expect_refused = [](const std::string& program, const std::string& name) {
    EXPECT_THAT(error_of(program), HasSubstr("\"" + name + "\" is not part of the language here"));
  };
  expect_refused("Class Foo\nEnd Class", "Class");
  expect_refused("Module Foo\nEnd Module", "Module");
  expect_refused("Interface Foo", "Interface");
  expect_refused("GoTo x", "GoTo");
  expect_refused("Declare Sub foo Lib \"x\" ()", "Declare");
  expect_refused("Soft Declare Sub foo Lib \"x\" ()", "Soft");
  expect_refused("Private Sub S()\nEnd Sub", "Private");
  expect_refused("Enum E", "Enum");
  expect_refused("Structure S", "Structure");
  expect_refused("Dim x As Integer = Self.y", "Self");
  expect_refused("Me.Foo", "Me");
  expect_refused("Dim v As Variant = AddressOf S", "AddressOf");
  expect_refused("Sub S(Extends x As String)\nEnd Sub", "Extends");
  expect_refused("Sub S(ParamArray x As String)\nEnd Sub", "ParamArray");
  expect_refused("AddHandler x", "AddHandler");
  expect_refused("RaiseEvent x", "RaiseEvent");
  expect_refused("Exception e As RuntimeException", "Exception");
}

TEST(Refused, what_statements_and_routines_of_other_dialects_begin_with_is_named) {
  const auto expect_refused = [](const std::string& program, const std::string& name,
                                 const std::string& instead) {
    EXPECT_THAT(error_of(program),
                testing::AllOf(HasSubstr("\"" + name + "\" is not part of the language here"),
                               HasSubstr(instead)));
  };
  expect_refused("On Error GoTo oops", "On Error", "Try and Catch");
  expect_refused("If True Then\nEndIf", "EndIf", "\"End If\"");
  expect_refused("Select Case 1\nCase 1\nendselect", "EndSelect", "\"End Select\"");
  expect_refused("Sub S()\nEndSub", "EndSub", "\"End Sub\"");
  expect_refused("End", "End", "Quit ends the program");
  expect_refused("If True Then\n  End\nEnd If", "End", "Quit ends the program");
  expect_refused("If True Then\nElse If False Then\nEnd If", "Else If", "\"ElseIf\"");
  expect_refused("Beep", "Beep", "no sound");
  expect_refused("Print IIf(True, \"a\", \"b\")", "IIf", "use If");
  expect_refused("MsgBox \"a\"", "MsgBox", "Print");
}

TEST(Refused, a_name_like_those_is_a_name_elsewhere) {
  EXPECT_EQ(output_of("On 1\nBeep\nDim EndIf As Integer\nEndIf = 2\nPrint Str(endIf)\n"
                      "Sub On(n As Integer)\n  Print Str(n)\nEnd Sub\n"
                      "Sub Beep()\n  Print \"beep\"\nEnd Sub\n"),
            "1\nbeep\n2\n");
}

TEST(Report, keywords_are_spelled_as_usual_whatever_the_program_writes) {
  EXPECT_THAT(error_of("end if"), HasSubstr("\"End If\" without the statement"));
  EXPECT_THAT(error_of("IF True THEN\nEND WHILE"), HasSubstr("\"If\" has no \"End If\""));
  EXPECT_THAT(error_of("elseif True Then"), HasSubstr("\"ElseIf\" without the statement"));
  EXPECT_THAT(error_of("for i As Integer = 1 downto"), HasSubstr("a value is expected here"));
  EXPECT_THAT(error_of("For i As Integer = 1 elseif"), HasSubstr("not \"ElseIf\""));
  EXPECT_THAT(error_of("Dim byref As Integer"), HasSubstr("the word \"ByRef\" is reserved"));
}

TEST(Report, an_open_block_tells_what_would_close_it) {
  EXPECT_THAT(error_of("if True Then"), HasSubstr("\"If\" is not closed before the program ends: "
                                                  "\"End If\" is missing"));
  EXPECT_THAT(error_of("For i As Integer = 1 To 2"), HasSubstr("\"Next\" is missing"));
  EXPECT_THAT(error_of("While True"), HasSubstr("\"Wend\" is missing"));
  EXPECT_THAT(error_of("Do"), HasSubstr("\"Loop\" is missing"));
  EXPECT_THAT(error_of("Try"), HasSubstr("\"End Try\" is missing"));
  EXPECT_THAT(error_of("Function F() As Integer"), HasSubstr("\"End Function\" is missing"));
}

TEST(Report, a_wrong_end_names_the_block_that_is_open) {
  EXPECT_THAT(error_of("Print \"\"\nWhile True\nNext"),
              HasSubstr("\"Next\" without the statement that it belongs to; open is \"While\" of "
                        "line 2, which \"Wend\" closes"));
  EXPECT_EQ(error_of("Sub S()\nWhile True\nEnd Sub"),
            "\"While\" of line 2 needs \"Wend\" before this \"End Sub\"");
  EXPECT_EQ(error_of("For i As Integer = 1 To 2\nDo\nNext"),
            "\"Do\" of line 2 needs \"Loop\" before this \"Next\"");
  EXPECT_EQ(error_of("While True\nEnd While"),
            "\"While\" of line 1 needs \"Wend\" before this \"End While\"");
  EXPECT_EQ(error_of("If True Then\nElse\nElse\nEnd If"),
            "\"If\" of line 1 needs \"End If\" before this \"Else\"");
  EXPECT_EQ(error_of("Try\nWhile True\nCatch\nEnd Try"),
            "\"While\" of line 2 needs \"Wend\" before this \"Catch\"");
  // A block that is closed is open no more, and an If of one line opens none.
  EXPECT_EQ(error_of("While True\nWend\nNext"),
            "\"Next\" without the statement that it belongs to");
  EXPECT_EQ(error_of("While True\nIf True Then Wend"),
            "\"Wend\" without the statement that it belongs to");
}

TEST(Refused, misplaced_constructs_are_named) {
  EXPECT_THAT(error_of("If True Then\nSub S()\nEnd Sub\nEnd If"),
              HasSubstr("only outside of blocks"));
  EXPECT_THAT(error_of("Sub S()\nFunction F() As Integer\nEnd Function\nEnd Sub"),
              HasSubstr("only outside of blocks"));
  EXPECT_THAT(error_of("Sub S() As Integer\nEnd Sub"), HasSubstr("a Sub has no result"));
  EXPECT_THAT(error_of("If True Then Dim x As Integer"), HasSubstr("cannot stand in an If of one"));
  EXPECT_THAT(error_of("(1 + 2)"), HasSubstr("a statement is expected here"));
  EXPECT_THAT(error_of("Dim x As Integer\nx"), HasSubstr("a value alone is no statement"));
  EXPECT_THAT(error_of("Dim x As Integer x"), HasSubstr("the end of the line is expected here"));
  EXPECT_THAT(error_of("Print CType(1, Double)"), HasSubstr("not part of the language here"));
  EXPECT_THAT(error_of("Print Dictionary"), HasSubstr("is a type; a value is expected"));
  EXPECT_THAT(error_of("Print Array"), HasSubstr("at least one element"));
  EXPECT_THAT(error_of("Print 1 + "), HasSubstr("a value is expected here"));
}

TEST(Limits, ten_thousand_parentheses_are_refused) {
  EXPECT_THAT(error_of("Print " + repeated("(", 10000) + "1" + repeated(")", 10000)),
              HasSubstr("nested too deeply"));
  EXPECT_THAT(error_of("Print Str(" + repeated("-", 10000) + "1)"), HasSubstr("nested too deeply"));
  EXPECT_THAT(error_of("Print Str(" + repeated("Not ", 10000) + "1)"),
              HasSubstr("nested too deeply"));
  EXPECT_THAT(error_of("Print Str(2" + repeated(" ^ 2", 10000) + ")"),
              HasSubstr("nested too deeply"));
  EXPECT_THAT(error_of("Print Str(" + repeated("Abs(", 10000) + "1"),
              HasSubstr("nested too deeply"));
  EXPECT_THAT(error_of("#If " + repeated("(", 10000)), HasSubstr("nested too deeply"));
}

TEST(Limits, very_long_expressions_are_refused) {
  EXPECT_THAT(error_of("Print Str(1" + repeated(" + 1", 10000) + ")"), HasSubstr("too long"));
  EXPECT_THAT(error_of("Print s" + repeated(".Trim", 10000)), HasSubstr("too long"));
  EXPECT_EQ(output_of("Print Str(1" + repeated(" + 1", 400) + ")"), "401\n");
}

TEST(Limits, deeply_nested_blocks_are_refused) {
  EXPECT_THAT(error_of(repeated("If True Then\n", 10000)), HasSubstr("nested too deeply"));
  EXPECT_THAT(error_of(repeated("If True Then ", 10000) + "Return"),
              HasSubstr("nested too deeply"));
  EXPECT_EQ(
      output_of(repeated("While True\n", 90) + "Print \"in\"\nQuit\n" + repeated("Wend\n", 90)),
      "in\n");
}

TEST(Limits, many_arguments_are_refused) {
  EXPECT_THAT(error_of("S 1" + repeated(", 1", 50) + "\nSub S(n As Integer)\nEnd Sub"),
              HasSubstr("at most 16 arguments"));
}

// Whatever the bytes, the program is run or refused; most of all nothing breaks.
TEST(Limits, garbage_is_refused) {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> byte(0, 255);
  for (int round = 0; round < 200; ++round) {
    std::string text;
    for (int i = 0; i < 300; ++i) text += static_cast<char>(byte(random));
    const Outcome outcome = run_script(text);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, testing::StartsWith("test.rbs:"));
  }
}

TEST(Limits, words_in_any_order_are_run_or_refused) {
  const std::vector<std::string> words = {
      "Dim", "x",          "As",     "Integer", "=",     "1",     "\n",     "If",    "Then", "Else",
      "End", "For",        "To",     "Next",    "While", "Wend",  "(",      ")",     ",",    "+",
      "-",   "Not",        "Sub",    "S",       "Try",   "Catch", "String", "\"a\"", ".",    "Len",
      "New", "Dictionary", "Return", "Select",  "Case",  "Do",    "Loop",   "Exit",  "\n",   "\n"};
  std::mt19937 random(2);
  std::uniform_int_distribution<std::size_t> word(0, words.size() - 1);
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    for (int i = 0; i < 25; ++i) text += words[word(random)] + " ";
    // A loop without end would be a program in order, so none is run.
    const Outcome outcome = run_script("Return\n" + text);
    EXPECT_EQ(outcome.status != 0, !outcome.err.empty()) << text << outcome.err;
  }
}

}  // namespace
