// Tokens: what a program's text consists of.
#include "language/token.h"

#include <algorithm>
#include <array>

namespace standin::language {
namespace {

// In order, for the binary search.
constexpr auto keywords = std::to_array<std::string_view>({
    "addhandler",
    "addressof",
    "and",
    "as",
    "assigns",
    "byref",
    "byval",
    "call",
    "case",
    "catch",
    "class",
    "const",
    "continue",
    "declare",
    "delegate",
    "dim",
    "do",
    "downto",
    "each",
    "else",
    "elseif",
    "end",
    "enum",
    "event",
    "exception",
    "exit",
    "extends",
    "false",
    "finally",
    "for",
    "function",
    "global",
    "goto",
    "if",
    "implements",
    "in",
    "inherits",
    "inline68k",
    "interface",
    "is",
    "isa",
    "lib",
    "loop",
    "me",
    "mod",
    "module",
    "namespace",
    "new",
    "next",
    "nil",
    "not",
    "optional",
    "or",
    "paramarray",
    "private",
    "property",
    "protected",
    "public",
    "raise",
    "raiseevent",
    "redim",
    "removehandler",
    "return",
    "select",
    "self",
    "shared",
    "soft",
    "static",
    "step",
    "structure",
    "sub",
    "super",
    "then",
    "to",
    "true",
    "try",
    "until",
    "using",
    "weakaddressof",
    "wend",
    "while",
    "with",
    "xor",
});
static_assert(std::is_sorted(keywords.begin(), keywords.end()));

}  // namespace

bool is_keyword(std::string_view lower_case_word) {
  return std::binary_search(keywords.begin(), keywords.end(), lower_case_word);
}

std::string describe(const Token& token) {
  switch (token.kind) {
    case TokenKind::name:
      return "the name \"" + token.text + "\"";
    case TokenKind::keyword:
      return "\"" + token.text + "\"";
    case TokenKind::integer:
    case TokenKind::real:
      return "a number";
    case TokenKind::string:
      return "a string";
    case TokenKind::color:
      return "a colour";
    case TokenKind::symbol:
      return "\"" + token.text + "\"";
    case TokenKind::end_of_line:
      return "the end of the line";
    case TokenKind::end_of_file:
      return "the end of the program";
  }
  return {};
}

}  // namespace standin::language
