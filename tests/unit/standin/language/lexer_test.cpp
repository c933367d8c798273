#include "language/lexer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace standin::language {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::vector<Token> tokens_of(const std::string& text) {
  return tokenize(SourceFile("test.rbs", text), {});
}

std::vector<std::string> texts_of(const std::string& text) {
  std::vector<std::string> texts;
  for (const Token& token : tokens_of(text)) {
    if (token.kind == TokenKind::end_of_line) {
      texts.emplace_back("|");
    } else if (token.kind != TokenKind::end_of_file) {
      texts.push_back(token.text);
    }
  }
  return texts;
}

std::string error_of_text(const std::string& text) {
  try {
    tokens_of(text);
  } catch (const SourceError& error) {
    return std::to_string(error.position().line) + ":" + std::to_string(error.position().column) +
           " " + error.what();
  }
  return "no error";
}

TEST(Lexer, keywords_are_lower_case_and_names_stay_as_written) {
  EXPECT_THAT(texts_of("DIM Abc_1 aS x"), ElementsAre("dim", "Abc_1", "as", "x", "|"));
}

TEST(Lexer, a_keyword_after_a_dot_is_a_name) {
  const std::vector<Token> tokens = tokens_of("v.Next");
  EXPECT_EQ(tokens[2].kind, TokenKind::name);
  EXPECT_EQ(tokens[2].text, "Next");
}

TEST(Lexer, comments_of_all_three_kinds_end_with_the_line) {
  EXPECT_THAT(texts_of("a ' b\nc // d\nREM e\nf rem g\nremark"),
              ElementsAre("a", "|", "c", "|", "f", "|", "remark", "|"));
}

TEST(Lexer, an_underscore_continues_the_line_also_before_a_comment) {
  EXPECT_THAT(texts_of("a _\nb _ ' more\nc\nd"), ElementsAre("a", "b", "c", "|", "d", "|"));
}

TEST(Lexer, an_underscore_elsewhere_is_an_error) {
  EXPECT_THAT(error_of_text("a _ b"), HasSubstr("continues a line only at its end"));
  EXPECT_THAT(error_of_text("_a = 1"), HasSubstr("a name begins with a letter"));
}

TEST(Lexer, line_ends_of_all_platforms_count_lines_alike) {
  const std::vector<Token> tokens = tokens_of("a\r\nb\rc\nd");
  EXPECT_EQ(tokens[6].text, "d");
  EXPECT_EQ(tokens[6].position.line, 4U);
}

TEST(Lexer, strings_double_their_quotes) {
  EXPECT_EQ(tokens_of("\"a\"\"b\"").front().text, "a\"b");
  EXPECT_EQ(tokens_of("\"\"").front().text, "");
}

TEST(Lexer, an_open_string_is_an_error_at_its_start) {
  EXPECT_EQ(error_of_text("x = \"abc\ny"), "1:5 the string has no closing quote on its line");
}

TEST(Lexer, a_string_must_be_utf8) {
  EXPECT_EQ(error_of_text("x = 1\nx = \"\"\"gr\xFC\xDF\""),
            "2:10 the byte &hFC cannot be part of a program, which is text in UTF-8: save the file "
            "as that");
}

TEST(Lexer, numbers_are_integers_wide_integers_and_reals) {
  EXPECT_EQ(tokens_of("2147483647").front().integer, 2147483647);
  EXPECT_FALSE(tokens_of("2147483647").front().is_wide);
  EXPECT_TRUE(tokens_of("2147483648").front().is_wide);
  EXPECT_EQ(tokens_of("1.5e-3").front().real, 1.5e-3);
  EXPECT_EQ(tokens_of(".5").front().real, 0.5);
  EXPECT_THAT(error_of_text("99999999999999999999"),
              HasSubstr("too large for an Int64; with .0 behind it"));
  EXPECT_THAT(error_of_text("1e999"), HasSubstr("too large for a Double"));
  EXPECT_THAT(error_of_text("12ab"), HasSubstr("cannot be followed by a letter"));
}

TEST(Lexer, a_point_without_digits_behind_it_is_explained) {
  EXPECT_EQ(error_of_text("x = 1."), "1:6 a number has digits behind its point, as in 1.0");
  EXPECT_THAT(error_of_text("Str(1.)"), HasSubstr("as in 1.0"));
}

TEST(Lexer, prefixed_numbers_of_32_bits_are_integers_with_their_sign) {
  EXPECT_EQ(tokens_of("&hFF").front().integer, 255);
  EXPECT_EQ(tokens_of("&HFFFFFFFF").front().integer, -1);
  EXPECT_EQ(tokens_of("&b101").front().integer, 5);
  EXPECT_EQ(tokens_of("&o17").front().integer, 15);
  EXPECT_EQ(tokens_of("&h1FFFFFFFF").front().integer, 0x1FFFFFFFFLL);
  EXPECT_THAT(error_of_text("&hFFFFFFFFFFFFFFFFF"), HasSubstr("more than 64 bits"));
  EXPECT_THAT(error_of_text("&b102"), HasSubstr("does not belong to the base"));
}

TEST(Lexer, a_prefix_without_its_digits_is_explained) {
  EXPECT_THAT(error_of_text("&hG"), HasSubstr("\"&h\" needs a digit behind it, 0 to 9 or A to F"));
  EXPECT_THAT(error_of_text("&b2"), HasSubstr("\"&b\" needs a digit behind it, 0 or 1"));
  EXPECT_THAT(error_of_text("&o"), HasSubstr("\"&o\" needs a digit behind it, 0 to 7"));
  EXPECT_THAT(error_of_text("\"a\" &c"), HasSubstr("to join strings, write +"));
}

TEST(Lexer, colours_and_code_points) {
  EXPECT_EQ(tokens_of("&cFF8000").front().integer, 0xFF8000);
  EXPECT_EQ(tokens_of("&cFF8000").front().kind, TokenKind::color);
  EXPECT_EQ(tokens_of("&u20AC").front().text, "€");
  EXPECT_THAT(error_of_text("&cFF"), HasSubstr("&cRRGGBB"));
  EXPECT_THAT(error_of_text("&uD800"), HasSubstr("no character"));
}

TEST(Lexer, operators_of_other_languages_are_refused_by_name) {
  EXPECT_THAT(error_of_text("a & b"), HasSubstr("the operator & is not part of the language"));
  EXPECT_THAT(error_of_text("a += 1"), HasSubstr("the operator += is not part"));
  EXPECT_THAT(error_of_text("a : b"), HasSubstr("one statement a line"));
}

TEST(Lexer, stray_characters_are_named) {
  EXPECT_THAT(error_of_text("a ? b"), HasSubstr("the character \"?\" has no meaning here"));
  EXPECT_THAT(error_of_text("a = “b”"), HasSubstr("U+201C can stand only in strings"));
  EXPECT_THAT(error_of_text(std::string("a\0b", 3)), HasSubstr("the byte &h00"));
  EXPECT_THAT(error_of_text("a\xFF"), HasSubstr("the byte &hFF"));
}

TEST(Lexer, a_byte_order_mark_is_no_part_of_the_program) {
  EXPECT_THAT(texts_of("\xEF\xBB\xBF"
                       "a"),
              ElementsAre("a", "|"));
}

TEST(Conditional, the_branch_that_holds_is_kept) {
  EXPECT_THAT(texts_of("#If False\na\n#ElseIf TargetLinux\nb\n#Else\nc\n#EndIf\nd"),
              ElementsAre("b", "|", "d", "|"));
  EXPECT_THAT(texts_of("#if not DebugBuild and RBVersion >= 2011 then\na\n#endif"),
              ElementsAre("a", "|"));
  EXPECT_THAT(texts_of("#If TargetWin32 Or (1 = 2)\na\n#Else\nb\n#End If"), ElementsAre("b", "|"));
}

TEST(Conditional, conditions_nest) {
  EXPECT_THAT(texts_of("#If False\n#If True\na\n#Else\nb\n#EndIf\nc\n#Else\nd\n#EndIf"),
              ElementsAre("d", "|"));
}

TEST(Conditional, what_is_left_out_may_be_anything) {
  EXPECT_THAT(texts_of("#If False\n\"open \xFF ?\n#EndIf\na"), ElementsAre("a", "|"));
}

TEST(Conditional, the_host_version_decides) {
  Conditions older;
  older.host_version = 2011.4;
  const SourceFile source("test.rbs", "#If RBVersion >= 2012\na\n#Else\nb\n#EndIf");
  EXPECT_EQ(tokenize(source, older).front().text, "b");
  EXPECT_EQ(tokenize(source, {}).front().text, "a");
}

TEST(Conditional, pragmas_are_skipped) {
  EXPECT_THAT(texts_of("#Pragma DisableBackgroundTasks \"x\na"), ElementsAre("a", "|"));
}

TEST(Conditional, no_literal_is_a_directive) {
  for (const char* text : {"#", "# &u1", "# \"if\" True", "# 1", "# +"}) {
    EXPECT_EQ(error_of_text(text), "1:1 \"#\" needs a directive, such as #If") << text;
  }
}

TEST(Conditional, errors_are_told) {
  EXPECT_EQ(error_of_text("a\n#If True\nb"), "2:1 #If without #EndIf");
  EXPECT_EQ(error_of_text("#Else"), "1:1 #Else without #If");
  EXPECT_EQ(error_of_text("#EndIf"), "1:1 #EndIf without #If");
  EXPECT_THAT(error_of_text("#If True\n#Else\n#Else\n#EndIf"), HasSubstr("a second #Else"));
  EXPECT_THAT(error_of_text("#If Foo\n#EndIf"), HasSubstr("no constant that #If knows"));
  EXPECT_THAT(error_of_text("#If (True\n#EndIf"), HasSubstr("\")\" is missing"));
  EXPECT_THAT(error_of_text("#Bar"), HasSubstr("#Bar is not part of the language"));
}

}  // namespace
}  // namespace standin::language
