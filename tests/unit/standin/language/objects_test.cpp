// Objects of native classes: members, and when they are released.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "language/script.h"
#include "script_runner.h"

namespace {

using testing::HasSubstr;

TEST(Dictionaries, hold_variants_by_variant) {
  EXPECT_EQ(output_of("Dim d As New Dictionary\nd.Value(\"a\") = 1\nd.Value(2) = \"b\"\n"
                      "d.Value(\"A\") = 5\nPrint Str(d.Count) + Str(d.Value(\"a\")) + d.Value(2)\n"
                      "Print Str(d.HasKey(\"a\")) + Str(d.HasKey(\"z\")) + "
                      "Str(d.Lookup(\"z\", 9))\n"
                      "For Each k As Variant In d.Keys\n  StdOut.Write k + \",\"\nNext\n"
                      "For Each v As Variant In d.Values\n  StdOut.Write v + \",\"\nNext\n"
                      "d.Remove(2)\nPrint Str(d.Count)\n"),
            "25b\nTrueFalse9\na,2,5,b,1\n");
}

TEST(Dictionaries, raise_for_what_they_lack) {
  EXPECT_THAT(exception_of("Dim d As New Dictionary\nPrint d.Value(\"x\")"),
              HasSubstr("KeyNotFoundException"));
  EXPECT_THAT(exception_of("Dim d As New Dictionary\nPrint d.Key(0)"),
              HasSubstr("OutOfBoundsException"));
}

TEST(Members, wrong_ones_are_refused) {
  EXPECT_THAT(error_of("Dim d As New Dictionary\nd.Foo"), HasSubstr("has no member \"Foo\""));
  EXPECT_THAT(error_of("Dim d As New Dictionary\nd.Foo = 1"), HasSubstr("has no member \"Foo\""));
  EXPECT_THAT(error_of("Dim d As New Dictionary\nd.Count = 1"), HasSubstr("can only be read"));
  EXPECT_THAT(error_of("Dim d As New Dictionary\nd.HasKey(1) = True"),
              HasSubstr("that can be assigned to"));
  EXPECT_THAT(error_of("Dim d As New Dictionary\nPrint Str(d.Count(1))"),
              HasSubstr("takes no arguments"));
  EXPECT_THAT(error_of("Dim d As New Dictionary\nPrint d.Value(1, 2)"), HasSubstr("not 2"));
  EXPECT_THAT(error_of("Dim d As New Dictionary(5, 6)"), HasSubstr("takes no arguments, not 2"));
  EXPECT_THAT(error_of("Dim i As Integer\ni.Foo = 1"), HasSubstr("Integer has no member"));
}

// A stream that notes how many Dictionaries live whenever a line is printed.
class CountingBuffer : public std::stringbuf {
 public:
  explicit CountingBuffer(const standin::ClassInfo& watched) : watched_(watched) {}
  std::string counts;

 protected:
  int_type overflow(int_type c) override {
    if (c == '\n') counts += std::to_string(watched_.live_instances()) + " ";
    return c;
  }
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    for (std::streamsize i = 0; i < size; ++i) overflow(text[i]);
    return size;
  }

 private:
  const standin::ClassInfo& watched_;
};

std::string live_at_each_print(const std::string& program) {
  standin::Host host;
  CountingBuffer buffer(*host.find_class("Dictionary"));
  std::istringstream in;
  std::ostream out(&buffer);
  std::ostringstream err;
  standin::language::run_script("test.rbs", program, {}, host, {in, out, err});
  EXPECT_EQ(err.str(), "");
  EXPECT_EQ(host.find_class("Dictionary")->live_instances(), 0U);
  return buffer.counts;
}

TEST(Released, at_the_end_of_the_block) {
  EXPECT_EQ(live_at_each_print("Print \"\"\nIf True Then\n  Dim d As New Dictionary\n  Print \"\"\n"
                               "End If\nPrint \"\"\n"),
            "0 1 0 ");
}

TEST(Released, when_the_last_reference_goes) {
  EXPECT_EQ(live_at_each_print("Dim a As New Dictionary\nDim b As Dictionary = a\nPrint \"\"\n"
                               "a = Nil\nPrint \"\"\nb = New Dictionary\nPrint \"\"\nb = Nil\n"
                               "Print \"\"\n"),
            "1 1 1 0 ");
}

TEST(Released, temporaries_with_their_statement) {
  EXPECT_EQ(
      live_at_each_print("S New Dictionary\nPrint \"\"\nCall F\nPrint \"\"\n"
                         "Print Str(F.Count)\nPrint \"\"\n"
                         "Sub S(d As Dictionary)\n  Print \"\"\nEnd Sub\n"
                         "Function F() As Dictionary\n  Return New Dictionary\nEnd Function\n"),
      "1 0 0 0 0 ");
}

TEST(Released, in_every_pass_of_a_loop) {
  EXPECT_EQ(
      live_at_each_print("For i As Integer = 1 To 2\n  Dim d As New Dictionary\n  Print \"\"\n"
                         "Next\nPrint \"\"\n"
                         "Dim a() As Dictionary = Array(New Dictionary, New Dictionary)\n"
                         "For Each d As Dictionary In a\n  ReDim a(-1)\n  Print \"\"\nNext\n"
                         "Print \"\"\n"),
      "1 1 0 1 0 ");
}

TEST(Released, with_the_array_or_dictionary_that_holds_them) {
  EXPECT_EQ(live_at_each_print("Dim a(1) As Dictionary\na(0) = New Dictionary\na(1) = a(0)\n"
                               "Print \"\"\nReDim a(0)\nPrint \"\"\na.Remove 0\nPrint \"\"\n"
                               "Dim o As New Dictionary\no.Value(1) = New Dictionary\nPrint \"\"\n"
                               "o.Clear\nPrint \"\"\n"),
            "1 1 0 2 1 ");
}

TEST(Released, when_an_exception_passes) {
  EXPECT_EQ(live_at_each_print("Try\n  S\nCatch e As RuntimeException\n  Print \"\"\nEnd Try\n"
                               "Print \"\"\nSub S()\n  Dim d As New Dictionary\n  Print \"\"\n"
                               "  T New Dictionary, 1 \\ 0\nEnd Sub\n"
                               "Sub T(d As Dictionary, n As Integer)\nEnd Sub\n"),
            "1 0 0 ");
}

TEST(Released, the_exception_itself_after_its_catch) {
  standin::Host host;
  const Outcome outcome =
      run_script_on(host,
                    "Try\n  Raise New KeyNotFoundException\nCatch e As KeyNotFoundException\n"
                    "End Try\nRaise New NilObjectException\n");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(host.find_class("KeyNotFoundException")->live_instances(), 0U);
  EXPECT_EQ(host.find_class("NilObjectException")->live_instances(), 0U);
}

TEST(Released, by_quit_and_by_static_variables_at_the_end) {
  EXPECT_EQ(live_at_each_print("S\nS\nPrint \"\"\nDim d As New Dictionary\nS\nQuit\n"
                               "Sub S()\n  Static d As New Dictionary\n  Print \"\"\nEnd Sub\n"),
            "1 1 1 2 ");
}

TEST(Released, a_long_chain_of_objects) {
  EXPECT_EQ(live_at_each_print("Dim last As Dictionary\nFor i As Integer = 1 To 1000\n"
                               "  Dim d As New Dictionary\n  d.Value(1) = last\n  last = d\nNext\n"
                               "Print \"\"\nlast = Nil\nPrint \"\"\n"),
            "1000 0 ");
}

}  // namespace
