// Tokens: what a program's text consists of.
#include "language/token.h"

#include <algorithm>
#include <array>

namespace standin::language {
namespace {

constexpr char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr bool comes_before(std::string_view a, std::string_view b) {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                      [](char x, char y) { return lower(x) < lower(y); });
}

// As they are usually written; in order, for the binary search.
constexpr auto keywords = std::to_array<std::string_view>({
    "AddHandler",
    "AddressOf",
    "And",
    "As",
    "Assigns",
    "ByRef",
    "ByVal",
    "Call",
    "Case",
    "Catch",
    "Class",
    "Const",
    "Continue",
    "Declare",
    "Delegate",
    "Dim",
    "Do",
    "DownTo",
    "Each",
    "Else",
    "ElseIf",
    "End",
    "Enum",
    "Event",
    "Exception",
    "Exit",
    "Extends",
    "False",
    "Finally",
    "For",
    "Function",
    "Global",
    "GoTo",
    "If",
    "Implements",
    "In",
    "Inherits",
    "Inline68K",
    "Interface",
    "Is",
    "IsA",
    "Lib",
    "Loop",
    "Me",
    "Mod",
    "Module",
    "Namespace",
    "New",
    "Next",
    "Nil",
    "Not",
    "Optional",
    "Or",
    "ParamArray",
    "Private",
    "Property",
    "Protected",
    "Public",
    "Raise",
    "RaiseEvent",
    "ReDim",
    "RemoveHandler",
    "Return",
    "Select",
    "Self",
    "Shared",
    "Soft",
    "Static",
    "Step",
    "Structure",
    "Sub",
    "Super",
    "Then",
    "To",
    "True",
    "Try",
    "Until",
    "Using",
    "WeakAddressOf",
    "Wend",
    "While",
    "With",
    "Xor",
});
static_assert(std::is_sorted(keywords.begin(), keywords.end(), comes_before));

}  // namespace

bool is_keyword(std::string_view word) {
  return std::binary_search(keywords.begin(), keywords.end(), word, comes_before);
}

std::string spelled(std::string_view keyword) {
  return std::string(*std::lower_bound(keywords.begin(), keywords.end(), keyword, comes_before));
}

std::string describe(const Token& token) {
  switch (token.kind) {
    case TokenKind::name:
      return "the name \"" + token.text + "\"";
    case TokenKind::keyword:
      return "\"" + spelled(token.text) + "\"";
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
