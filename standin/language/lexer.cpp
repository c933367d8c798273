// From a program's text to tokens, line by line.
#include "language/lexer.h"

#include <utf8.h>

#include <array>
#include <cctype>
#include <charconv>
#include <limits>
#include <string>

#include "runtime/types.h"

namespace standin::language {
namespace {

bool is_letter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool is_digit(char c) {
  return c >= '0' && c <= '9';
}
bool is_word(char c) {
  return is_letter(c) || is_digit(c) || c == '_';
}
bool is_blank(char c) {
  return c == ' ' || c == '\t';
}

int digit_value(char c) {
  if (is_digit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return 99;
}

std::string hexadecimal(std::uint32_t value, int digits) {
  std::string text;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
    text += "0123456789ABCDEF"[(value >> static_cast<unsigned>(shift)) & 0xFU];
  }
  return text;
}

class LineLexer {
 public:
  LineLexer(std::string_view line, std::uint32_t number, std::vector<Token>& tokens)
      : line_(line), number_(number), tokens_(tokens) {}

  // Returns whether the line goes on in the next one.
  bool run() {
    while (skip_blanks(), at_ < line_.size()) {
      if (at_comment()) return false;
      if (at_continuation()) return true;
      start_ = at_;
      token();
    }
    return false;
  }

 private:
  [[noreturn]] void fail(std::size_t at, const std::string& message) const {
    throw SourceError({number_, static_cast<std::uint32_t>(at + 1)}, message);
  }
  char peek(std::size_t ahead = 0) const {
    return at_ + ahead < line_.size() ? line_[at_ + ahead] : '\0';
  }
  void skip_blanks() {
    while (at_ < line_.size() && is_blank(line_[at_])) ++at_;
  }

  bool at_comment() const {
    if (peek() == '\'' || (peek() == '/' && peek(1) == '/')) return true;
    const bool member = !tokens_.empty() && tokens_.back().is_symbol(".");
    return !member && same_name(line_.substr(at_, 3), "rem") && !is_word(peek(3));
  }
  // An underscore with nothing behind it but a comment.
  bool at_continuation() {
    if (peek() != '_' || is_word(peek(1))) return false;
    const std::size_t underscore = at_++;
    skip_blanks();
    if (at_ < line_.size() && !at_comment()) {
      fail(underscore, "\"_\" continues a line only at its end");
    }
    return true;
  }

  Token& add(TokenKind kind) {
    Token token;
    token.kind = kind;
    token.position = {number_, static_cast<std::uint32_t>(start_ + 1)};
    token.after_blank = start_ == 0 || is_blank(line_[start_ - 1]);
    tokens_.push_back(std::move(token));
    return tokens_.back();
  }

  void token() {
    const char c = peek();
    if (is_letter(c)) return word();
    if (is_digit(c) || (c == '.' && is_digit(peek(1)))) return number();
    if (c == '"') return string();
    if (c == '&') return prefixed();
    symbol();
  }

  void word() {
    while (is_word(peek())) ++at_;
    const std::string text(line_.substr(start_, at_ - start_));
    const std::string lower = lower_name(text);
    const bool member = !tokens_.empty() && tokens_.back().is_symbol(".");
    if (!member && is_keyword(lower)) {
      add(TokenKind::keyword).text = lower;
    } else {
      add(TokenKind::name).text = text;
    }
  }

  void number() {
    bool is_real = false;
    while (is_digit(peek())) ++at_;
    if (peek() == '.' && is_digit(peek(1))) {
      is_real = true;
      ++at_;
      while (is_digit(peek())) ++at_;
    }
    // A letter behind the point would be a member.
    if (peek() == '.' && !is_letter(peek(1))) {
      fail(at_, "a number has digits behind its point, as in 1.0");
    }
    const bool signed_exponent = (peek(1) == '+' || peek(1) == '-') && is_digit(peek(2));
    if ((peek() == 'e' || peek() == 'E') && (is_digit(peek(1)) || signed_exponent)) {
      is_real = true;
      at_ += 2;
      while (is_digit(peek())) ++at_;
    }
    if (is_word(peek())) fail(at_, "a number cannot be followed by a letter");
    const char* first = line_.data() + start_;
    const char* last = line_.data() + at_;
    if (is_real) {
      const auto [end, error] = std::from_chars(first, last, add(TokenKind::real).real);
      if (error != std::errc()) fail(start_, "the number is too large for a Double");
    } else {
      Token& token = add(TokenKind::integer);
      std::uint64_t value = 0;
      const auto [end, error] = std::from_chars(first, last, value);
      constexpr std::uint64_t beyond = std::uint64_t{1} << 63U;
      if (error != std::errc() || value > beyond) {
        fail(start_, too_large_for_int64);
      }
      token.needs_minus = value == beyond;
      token.integer = static_cast<std::int64_t>(value);
      token.is_wide = token.needs_minus || token.integer > std::numeric_limits<std::int32_t>::max();
    }
  }

  void string() {
    std::string text;
    for (++at_; at_ < line_.size(); ++at_) {
      if (peek() == '"') {
        if (peek(1) != '"') {
          ++at_;
          require_utf8(start_, at_);
          add(TokenKind::string).text = std::move(text);
          return;
        }
        ++at_;
      }
      text += peek();
    }
    fail(start_, "the string has no closing quote on its line");
  }

  void require_utf8(std::size_t first, std::size_t last) const {
    const std::string_view part = line_.substr(first, last - first);
    const auto invalid = utf8::find_invalid(part.begin(), part.end());
    if (invalid != part.end()) {
      fail_at_byte(first + static_cast<std::size_t>(invalid - part.begin()));
    }
  }

  // &h, &b, &o, &c, &u; a lone "&" is no operator here.
  void prefixed() {
    const char prefix = static_cast<char>(std::tolower(static_cast<unsigned char>(peek(1))));
    const int base = prefix == 'b' ? 2 : prefix == 'o' ? 8 : 16;
    const bool known = std::string_view("hbocu").find(prefix) != std::string_view::npos;
    if (peek(1) == '\0' || !known) {
      fail(start_,
           "the operator & is not part of the language here: + joins strings, And is bitwise");
    }
    if (digit_value(peek(2)) >= base) {
      fail(start_, std::string("\"&") + prefix + "\" needs a digit behind it, " +
                       (base == 2   ? "0 or 1"
                        : base == 8 ? "0 to 7"
                                    : "0 to 9 or A to F") +
                       "; to join strings, write +");
    }
    at_ += 2;
    const std::size_t digits_start = at_;
    std::uint64_t value = 0;
    for (; is_word(peek()); ++at_) {
      const int digit = digit_value(peek());
      if (digit >= base) fail(at_, "this digit does not belong to the base of the number");
      if (value > (std::numeric_limits<std::uint64_t>::max() >> 4U)) {
        fail(start_, "the number needs more than 64 bits");
      }
      value = value * static_cast<std::uint64_t>(base) + static_cast<std::uint64_t>(digit);
    }
    const std::size_t digits = at_ - digits_start;
    if (prefix == 'c') {
      if (digits != 6) fail(start_, "a colour is written as six digits, &cRRGGBB");
      add(TokenKind::color).integer = static_cast<std::int64_t>(value);
    } else if (prefix == 'u') {
      if (value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) {
        fail(start_, "there is no character with this code point");
      }
      utf8::append(static_cast<std::uint32_t>(value),
                   std::back_inserter(add(TokenKind::string).text));
    } else {
      // 32 bits or less are an Integer, whatever its sign then is.
      Token& token = add(TokenKind::integer);
      token.is_wide = value > std::numeric_limits<std::uint32_t>::max();
      token.integer = token.is_wide ? static_cast<std::int64_t>(value)
                                    : static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
    }
  }

  void symbol() {
    static constexpr auto symbols = std::to_array<std::string_view>(
        {"<>", "<=", ">=", "(", ")", ",", ".", "=", "<", ">", "+", "-", "*", "/", "\\", "^"});
    const std::string_view rest = line_.substr(at_);
    for (const std::string_view refused : {"+=", "-=", "*=", "/=", "\\="}) {
      if (rest.starts_with(refused)) {
        fail(at_, "the operator " + std::string(refused) +
                      " is not part of the language here: write x = x " +
                      std::string(refused.substr(0, 1)) + " y");
      }
    }
    for (const std::string_view symbol : symbols) {
      if (rest.starts_with(symbol)) {
        at_ += symbol.size();
        add(TokenKind::symbol).text = symbol;
        return;
      }
    }
    if (peek() == ':') fail(at_, "\":\" is not part of the language here: one statement a line");
    if (peek() == '_') fail(at_, "a name begins with a letter");
    fail_unknown();
  }

  [[noreturn]] void fail_unknown() const {
    const auto byte = static_cast<unsigned char>(line_[at_]);
    if (byte > 0x20 && byte < 0x7F) {
      fail(at_, std::string("the character \"") + line_[at_] + "\" has no meaning here");
    }
    auto at = line_.begin() + static_cast<std::ptrdiff_t>(at_);
    if (byte >= 0x80 && well_formed_at(at_)) {
      const std::uint32_t code = utf8::peek_next(at, line_.end());
      fail(at_, "the character U+" + hexadecimal(code, code > 0xFFFF ? 6 : 4) +
                    " can stand only in strings and comments");
    }
    fail_at_byte(at_);
  }
  [[noreturn]] void fail_at_byte(std::size_t at) const {
    fail(at, "the byte &h" + hexadecimal(static_cast<unsigned char>(line_[at]), 2) +
                 " cannot be part of a program, which is text in UTF-8: save the file as that");
  }
  bool well_formed_at(std::size_t at) const {
    const auto begin = line_.begin() + static_cast<std::ptrdiff_t>(at);
    return utf8::find_invalid(begin, line_.end()) != begin;
  }

  std::string_view line_;
  std::uint32_t number_;
  std::vector<Token>& tokens_;
  std::size_t at_ = 0;
  std::size_t start_ = 0;
};

bool begins_with_hash(std::string_view line) {
  const std::size_t first = line.find_first_not_of(" \t");
  return first != std::string_view::npos && line[first] == '#';
}

}  // namespace

std::vector<Token> tokenize_line(std::string_view line, std::uint32_t number) {
  std::vector<Token> tokens;
  LineLexer(line, number, tokens).run();
  return tokens;
}

std::vector<Token> tokenize(const SourceFile& source, const Conditions& conditions) {
  std::vector<Token> tokens;
  ConditionalCompilation conditional(conditions);
  bool continued = false;
  for (std::uint32_t number = 1; number <= source.line_count(); ++number) {
    const std::string_view line = source.line(number);
    if (!continued && begins_with_hash(line)) {
      const std::size_t hash = line.find('#');
      // The hash becomes a blank, so that columns stay what they are.
      std::string directive(line);
      directive[hash] = ' ';
      const Position position{number, static_cast<std::uint32_t>(hash + 1)};
      // What follows `#Pragma` is free text, and lines that are left out may hold anything.
      const std::size_t word = directive.find_first_not_of(" \t");
      if (word != std::string::npos && same_name(directive.substr(word, 6), "pragma")) continue;
      conditional.directive(tokenize_line(directive, number), position);
      continue;
    }
    if (!conditional.active()) continue;
    const std::size_t before = tokens.size();
    const bool was_continued = continued;
    continued = LineLexer(line, number, tokens).run();
    const bool has_statement = tokens.size() > before || was_continued;
    if (!continued && has_statement && !tokens.empty() &&
        tokens.back().kind != TokenKind::end_of_line) {
      Token end;
      end.kind = TokenKind::end_of_line;
      end.position = {number, static_cast<std::uint32_t>(line.size() + 1)};
      tokens.push_back(end);
    }
  }
  conditional.finish();
  Token end;
  end.kind = TokenKind::end_of_file;
  end.position = {static_cast<std::uint32_t>(source.line_count()), 0};
  if (!tokens.empty() && tokens.back().kind != TokenKind::end_of_line) {
    Token line_end = end;
    line_end.kind = TokenKind::end_of_line;
    tokens.push_back(line_end);
  }
  tokens.push_back(end);
  return tokens;
}

}  // namespace standin::language
