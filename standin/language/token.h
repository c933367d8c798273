// Tokens: what a program's text consists of.
#ifndef ZRB_STANDIN_LANGUAGE_TOKEN_H
#define ZRB_STANDIN_LANGUAGE_TOKEN_H

#include <cstdint>
#include <string>
#include <string_view>

#include "language/source.h"

namespace standin::language {

enum class TokenKind : std::uint8_t {
  name,         // a word that is no keyword
  keyword,      // in lower case in `text`
  integer,      // in `integer`
  real,         // in `real`
  string,       // without its quotes, in `text`
  color,        // in `integer`
  symbol,       // in `text`
  end_of_line,  // of a statement: continued lines have one for all
  end_of_file,
};

struct Token {
  TokenKind kind = TokenKind::end_of_file;
  Position position;
  std::string text;  // of a word: as written, but for keywords
  std::int64_t integer = 0;
  double real = 0;
  bool is_wide = false;      // an integer literal that needs 64 bits
  bool needs_minus = false;  // 2^63, in `integer` as -2^63: an Int64 only behind a minus
  bool after_blank = false;  // a blank or the line's start stands before it

  bool is_keyword(std::string_view word) const {
    return kind == TokenKind::keyword && text == word;
  }
  bool is_symbol(std::string_view symbol) const {
    return kind == TokenKind::symbol && text == symbol;
  }
  bool ends_statement() const {
    return kind == TokenKind::end_of_line || kind == TokenKind::end_of_file;
  }
};

// For an integer literal that neither is one nor becomes one behind a minus.
inline constexpr const char* too_large_for_int64 =
    "the number is too large for an Int64; with .0 behind it, it is a Double";

// For messages: "the name x", "the end of the line".
std::string describe(const Token& token);

// Words that cannot be names of variables and routines. The language reserves more than the
// statements known here, so that a program stays one that the real host accepts.
bool is_keyword(std::string_view word);  // in any case
// A keyword as it is usually written, for messages: "ElseIf".
std::string spelled(std::string_view keyword);

}  // namespace standin::language

#endif
