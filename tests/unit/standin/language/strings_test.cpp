// Library routines on strings and bytes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "script_runner.h"

namespace {

using testing::HasSubstr;

TEST(Strings, lengths_and_parts_count_characters) {
  EXPECT_EQ(value_of("Str(Len(\"aäb€\")) + Str(LenB(\"aäb€\")) + Str(\"\".Len)"), "470");
  EXPECT_EQ(value_of("Left(\"äbc\", 2) + \"|\" + Right(\"abä\", 2) + \"|\" + \"abc\".Left(9)"),
            "äb|bä|abc");
  EXPECT_EQ(value_of("Mid(\"aäbc\", 2, 2) + \"|\" + \"aäbc\".Mid(3) + \"|\" + \"abc\".Mid(9)"),
            "äb|bc|");
  EXPECT_EQ(value_of("\"abc\".Mid(0, 2) + \"|\" + \"abc\".Mid(2, -1) + \"|\" + \"abc\".Left(-1)"),
            "a||");
  EXPECT_EQ(value_of("\"abc\".Mid(2, 2147483647)"), "bc");
}

TEST(Strings, function_and_method_are_one_routine) {
  EXPECT_EQ(value_of("Str(Len(\"abc\")) + Str(\"abc\".Len) + Str(\"abc\".Len())"), "333");
  EXPECT_EQ(output_of("Dim s As String = \" x \"\nPrint Trim(s) + s.Trim.Uppercase\n"), "xX\n");
}

TEST(Strings, instr_counts_from_one_and_ignores_case) {
  EXPECT_EQ(value_of("Str(InStr(\"äbCd\", \"c\")) + Str(InStr(\"abc\", \"x\"))"), "30");
  EXPECT_EQ(value_of("Str(InStr(3, \"abab\", \"AB\")) + Str(\"abab\".InStr(\"b\")) + "
                     "Str(\"abab\".InStr(3, \"b\"))"),
            "324");
  EXPECT_EQ(value_of("Str(InStrB(\"abC\", \"c\")) + Str(InStrB(\"äc\", \"c\")) + "
                     "Str(\"abab\".InStrB(2, \"a\")) + Str(InStrB(3, \"abab\", \"a\"))"),
            "0333");
}

TEST(Strings, parts_and_replacements_keep_the_encoding_of_the_text) {
  EXPECT_EQ(
      output_of("Dim w As String = ConvertEncoding(\"ä,b,c\", Encodings.UTF16)\n"
                "Dim parts() As String = Split(w, \",\")\n"
                "Print Str(parts(0).Encoding = Encodings.UTF16) + Str(LenB(parts(0))) + parts(0)\n"
                "Dim n As String = NthField(w, \",\", 2)\n"
                "Print Str(n.Encoding = Encodings.UTF16) + Str(LenB(n)) + n\n"
                "Dim r As String = ReplaceAll(w, \",\", \"€\")\n"
                "Print Str(r.Encoding = Encodings.UTF16) + Str(LenB(r)) + r\n"
                "r = Replace(w, \"x\", \"y\")\nPrint Str(r.Encoding = Encodings.UTF16) + r\n"
                "r = Replace(w, w, \"\")\nPrint Str(r.Encoding = Encodings.UTF16) + Str(LenB(r))\n"
                "Dim t As String = ConvertEncoding(\"a-b\", Encodings.UTF32)\n"
                "r = Replace(t, \"-\", \"+\")\nPrint Str(r.Encoding = Encodings.UTF32) + r\n"),
      "True2ä\nTrue2b\nTrue10ä€b€c\nTrueä,b,c\nTrue0\nTruea+b\n");
}

TEST(Strings, what_an_encoding_lacks_makes_the_result_utf8) {
  EXPECT_EQ(output_of("Dim a As String = ConvertEncoding(\"a-b\", Encodings.ASCII)\n"
                      "Dim r As String = Replace(a, \"-\", \"ä\")\n"
                      "Print Str(r.Encoding = Encodings.UTF8) + r\n"
                      "r = Replace(a, ConvertEncoding(\"-\", Encodings.UTF16), \"+\")\n"
                      "Print Str(r.Encoding = Encodings.ASCII) + r\n"),
            "Trueaäb\nTruea+b\n");
}

TEST(Strings, titles_have_capitals) {
  EXPECT_EQ(
      value_of("Titlecase(\"hello wORLD, don't STOP\") + \" \" + \"straße “ärger”\".Titlecase"),
      "Hello World, Don't Stop Straße “Ärger”");
  EXPECT_EQ(
      output_of(
          "Dim w As String = Titlecase(ConvertEncoding(\"ab cd\", Encodings.UTF16))\n"
          "Print w + Str(LenB(w)) + Titlecase(\"\") + Titlecase(DefineEncoding(\"xy z\", Nil))\n"),
      "Ab Cd10Xy Z\n");
}

TEST(Strings, parts_of_bytes_are_functions_and_methods) {
  EXPECT_EQ(
      value_of("LeftB(\"abc\", 2) + \"abc\".RightB(1) + MidB(\"abcd\", 2, 2) + \"abc\".MidB(3)"),
      "abcbcc");
}

TEST(Strings, replacing) {
  EXPECT_EQ(
      value_of("Replace(\"aXbx\", \"x\", \"--\") + \" \" + ReplaceAll(\"aXbx\", \"x\", \"--\")"),
      "a--bx a--b--");
  EXPECT_EQ(value_of("\"abc\".Replace(\"\", \"x\") + \"aaa\".ReplaceAll(\"a\", \"aa\")"),
            "abcaaaaaa");
}

TEST(Strings, trimming_takes_blanks_and_line_ends) {
  EXPECT_EQ(
      output_of(
          "Dim s As String = \"  a b \" + EndOfLine\n"
          "Print \"[\" + s.Trim + \"][\" + LTrim(\"  a \") + \"][\" + RTrim(\" a  \") + \"]\""),
      "[a b][a ][ a]\n");
}

TEST(Strings, case_changes_letters_of_several_scripts) {
  EXPECT_EQ(value_of("Uppercase(\"aäéσжž1\") + Lowercase(\"AÄÉΣЖŽ\")"), "AÄÉΣЖŽ1aäéσжž");
  EXPECT_EQ(value_of("Uppercase(\"÷×ß\")"), "÷×ß");
}

TEST(Strings, characters_and_codes) {
  EXPECT_EQ(value_of("Str(Asc(\"€\")) + Chr(8364) + Str(Asc(\"\")) + Str(AscB(\"€\"))"),
            "8364€0226");
  EXPECT_EQ(value_of("&u20AC + Chr(65)"), "€A");
  EXPECT_EQ(value_of("ChrB(65) + Str(LenB(ChrB(200)))"), "A1");
  EXPECT_THAT(exception_of("Print Chr(-1)"), HasSubstr("OutOfBoundsException"));
  EXPECT_THAT(exception_of("Print ChrB(256)"), HasSubstr("OutOfBoundsException"));
}

TEST(Strings, bytes_are_cut_anywhere) {
  EXPECT_EQ(
      output_of("Dim s As String = \"aä\"\n"
                "Print Str(AscB(MidB(s, 2, 1))) + Str(AscB(s.MidB(3))) + Str(LenB(s.MidB(4)))\n"
                "Print LeftB(\"abc\", 2) + RightB(\"abc\", 2) + \"abc\".MidB(0, 2)\n"),
      "1951640\nabbca\n");
}

TEST(Strings, fields) {
  EXPECT_EQ(
      value_of("NthField(\"a,b,,d\", \",\", 2) + \"|\" + \"a,b\".NthField(\",\", 3) + \"|\" + "
               "Str(CountFields(\"a,b,,d\", \",\")) + Str(CountFields(\"a\", \",\")) + "
               "Str(CountFields(\"\", \",\"))"),
      "b||410");
}

TEST(Strings, splitting_and_joining) {
  EXPECT_EQ(
      output_of("Dim a() As String = Split(\"a b c\")\nPrint Str(UBound(a)) + Join(a, \"-\")\n"
                "a = \"xANDyandz\".Split(\"and\")\nPrint Join(a)\n"
                "a = Split(\"äb\", \"\")\nPrint Join(a, \".\")\n"
                "a = Split(\"\", \",\")\nPrint Str(UBound(a)) + \"[\" + Join(a, \",\") + \"]\"\n"
                "a = Split(\",\", \",\")\nPrint Str(UBound(a))\n"),
      "2a-b-c\nx y z\nä.b\n-1[]\n1\n");
}

TEST(Strings, strcomp_has_two_modes) {
  EXPECT_EQ(value_of("Str(StrComp(\"a\", \"A\", 0)) + Str(StrComp(\"a\", \"A\", 1)) + "
                     "Str(StrComp(\"a\", \"B\", 0)) + Str(StrComp(\"a\", \"B\", 1)) + "
                     "Str(StrComp(\"a\", \"a\", 1))"),
            "111-10");
  EXPECT_EQ(value_of("Str(StrComp(\"B\", \"a\", 0)) + Str(StrComp(\"B\", \"a\", 1))"), "-11");
}

TEST(Encodings, are_told_defined_and_converted) {
  EXPECT_EQ(output_of("Dim s As String = \"ä\"\n"
                      "Print Str(s.Encoding = Encodings.UTF8) + s.Encoding.InternetName\n"
                      "Dim w As String = ConvertEncoding(s, Encodings.UTF16)\n"
                      "Print Str(LenB(w)) + Str(Len(w)) + Str(w = s) + w\n"
                      "Dim b As String = DefineEncoding(s, Nil)\n"
                      "Print Str(b.Encoding = Nil) + Str(Len(b))\n"
                      "Print Str(LenB(s.ConvertEncoding(Encodings.UTF32)))\n"
                      "Print ConvertEncoding(\"aä\", Encodings.ASCII)\n"
                      "Print Uppercase(w) + Str(Asc(w)) + w.Trim + Mid(w + w, 2, 1)\n"),
            "TrueUTF-8\n21Trueä\nTrue2\n4\na?\nÄ228ää\n");
}

TEST(Encodings, joining_takes_the_common_one) {
  EXPECT_EQ(output_of("Dim w As String = ConvertEncoding(\"b\", Encodings.UTF16)\n"
                      "Dim s As String = \"ä\" + w\n"
                      "Print s + Str(s.Encoding = Encodings.UTF8) + Str(InStr(\"ab\", w)) + "
                      "Str(InStr(w + \"c\", \"C\"))\n"
                      "Dim a() As String = Array(\"x\", w)\nPrint Join(a, \"-\")\n"
                      "Print ReplaceAll(\"abab\", w, \"!\")\n"),
            "äbTrue22\nx-b\na!a!\n");
}

TEST(Strings, are_found_in_either_case_of_every_letter_that_has_two) {
  EXPECT_EQ(value_of("Str(InStr(\"GRÜSSE\", \"grüsse\")) + Str(InStr(\"grüsse\", \"Ü\"))"), "13");
  EXPECT_EQ(value_of("Str(InStr(\"ДА\", \"а\")) + Str(InStr(3, \"ÄÄä\", \"Ä\"))"), "23");
  // The bytes of а and А mixed are neither, but another letter.
  EXPECT_EQ(value_of("Str(InStr(&u0421, &u0461)) + Str(InStr(&u0460, &u0440))"), "00");
  EXPECT_EQ(value_of("Str(InStr(\"ß\", \"SS\")) + Str(InStr(\"×\", \"÷\"))"), "00");
  EXPECT_EQ(value_of("Replace(\"Über\", \"ü\", \"u\") + ReplaceAll(\"äÄ\", \"Ä\", \"a\")"),
            "uberaa");
  EXPECT_EQ(value_of("NthField(\"1Ä2ä3\", \"ä\", 3) + Str(CountFields(\"1Ä2\", \"ä\"))"), "32");
  EXPECT_EQ(output_of("Dim latin As String = ConvertEncoding(\"aÜ\", Encodings.ISOLatin1)\n"
                      "Print Str(InStr(latin, ConvertEncoding(\"ü\", Encodings.ISOLatin1))) + "
                      "Str(InStr(latin, \"ü\"))\n"
                      "Dim stored As String = DefineEncoding(\"Ü\", Nil)\n"
                      "Print Str(InStr(stored, DefineEncoding(\"ü\", Nil)))\n"),
            "22\n0\n");
}

TEST(Encodings, wide_characters_are_compared_and_found_as_characters) {
  EXPECT_EQ(output_of("Dim a As String = ConvertEncoding(&u0100, Encodings.UTF16)\n"
                      "Dim b As String = ConvertEncoding(&u00FF, Encodings.UTF16)\n"
                      "Print Str(a > b) + Str(a = a) + Str(LenB(a + b))\n"
                      "Dim text As String = ConvertEncoding(&u6142 + &u4363, Encodings.UTF16)\n"
                      "Print Str(InStr(text, ConvertEncoding(&u6361, Encodings.UTF16)))\n"
                      "Print Str(InStr(text, ConvertEncoding(&u4363, Encodings.UTF16)))\n"),
            "TrueTrue4\n0\n2\n");
}

TEST(Strings, walking_through_a_long_text_is_not_quadratic) {
  std::string text;
  for (int i = 0; i < 100000; ++i) text += i % 10 == 0 ? "ä" : "x";
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(
      output_of("Dim s As String = StdIn.ReadAll\nDim n As Integer\n"
                "For i As Integer = 1 To Len(s)\n  If s.Mid(i, 1) = \"ä\" Then n = n + 1\nNext\n"
                "For i As Integer = Len(s) DownTo 1\n  If Mid(s, i, 1) = \"ä\" Then n = n + 1\n"
                "Next\nPrint Str(n)\n",
                text),
      "20000\n");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST(Console, reads_lines_and_the_rest) {
  EXPECT_EQ(output_of("Print StdIn.ReadLine + \"|\" + Input + \"|\" + Str(StdIn.EOF)\n"
                      "StdOut.Write StdIn.ReadAll\nStdOut.WriteLine Str(StdIn.EOF)\n",
                      "a\r\nb\nc\nd"),
            "a|b|False\nc\ndTrue\n");
  EXPECT_EQ(output_of("Dim n As Integer\nWhile Not StdIn.EOF\n  Call StdIn.ReadLine\n  n = n + 1\n"
                      "Wend\nPrint Str(n) + \"[\" + StdIn.ReadLine + \"]\"\n",
                      "a\n\nc\n"),
            "3[]\n");
}

TEST(Console, bytes_pass_unchanged) {
  EXPECT_EQ(output_of("StdOut.Write StdIn.ReadAll", "a\xFF\x80z"), "a\xFF\x80z");
}

TEST(Console, errors_have_a_stream_of_their_own) {
  const Outcome outcome = run_script("StdErr.WriteLine \"bad\"\nPrint \"good\"");
  EXPECT_EQ(outcome.err, "bad\n");
  EXPECT_EQ(outcome.out, "good\n");
}

TEST(Console, print_takes_a_string) {
  EXPECT_THAT(error_of("Print 5"), HasSubstr("Integer cannot be converted to String"));
  EXPECT_THAT(error_of("StdIn.Foo"), HasSubstr("StdIn has no member \"Foo\""));
  EXPECT_THAT(error_of("Dim s As String = StdIn"), HasSubstr("needs one of its members"));
}

}  // namespace
