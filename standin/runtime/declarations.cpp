// A recursive-descent parser over words and punctuation.
#include "runtime/declarations.h"

namespace standin {
namespace {

bool is_name_start(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool is_name_part(char c) {
  return is_name_start(c) || (c >= '0' && c <= '9');
}
bool is_blank(char c) {
  return c == ' ' || c == '\t';
}

// A name, a number, a quoted string, or one punctuation mark; empty at the end of the text.
struct Token {
  std::string_view text;
  std::size_t column;  // from 1

  bool is(std::string_view word) const { return same_name(text, word); }
  bool is_name() const { return !text.empty() && is_name_start(text.front()); }
};

class Tokens {
 public:
  explicit Tokens(std::string_view text) : text_(text) { advance(); }

  const Token& current() const { return current_; }
  Token take() {
    const Token token = current_;
    advance();
    return token;
  }
  bool skip(std::string_view word) {
    if (!current_.is(word)) return false;
    advance();
    return true;
  }

 private:
  void advance() {
    while (at_ < text_.size() && is_blank(text_[at_])) ++at_;
    const std::size_t start = at_;
    if (at_ < text_.size()) {
      if (is_name_part(text_[at_])) {
        while (at_ < text_.size() && is_name_part(text_[at_])) ++at_;
      } else if (text_[at_] == '"') {
        const std::size_t end = text_.find('"', at_ + 1);
        at_ = end == text_.npos ? text_.size() : end + 1;
      } else {
        ++at_;
      }
    }
    current_ = {text_.substr(start, at_ - start), start + 1};
  }

  std::string_view text_;
  std::size_t at_ = 0;
  Token current_{};
};

class Parser {
 public:
  Parser(std::string_view text, const TypeResolver& resolver)
      : text_(text), tokens_(text), resolver_(resolver) {}

  Declaration parse() {
    Declaration declaration;
    declaration.text = std::string(text_);
    declaration.name = expect_name("a method's name");
    if (tokens_.skip("(")) declaration.parameters = parse_parameters();
    if (tokens_.skip("as")) declaration.result = parse_type();
    if (!tokens_.current().text.empty()) fail("the end of the declaration");
    return declaration;
  }

 private:
  std::vector<Parameter> parse_parameters() {
    std::vector<Parameter> parameters;
    if (tokens_.skip(")")) return parameters;
    do {
      if (!parameters.empty() && parameters.back().assigns) {
        fail("no parameter after the one marked Assigns");
      }
      parameters.push_back(parse_parameter());
    } while (tokens_.skip(","));
    if (!tokens_.skip(")")) fail("\",\" or \")\"");
    return parameters;
  }

  Parameter parse_parameter() {
    Parameter parameter;
    std::string word = expect_name("a parameter's name");
    // A marker is one only before a name: a parameter may be called "optional".
    while (tokens_.current().is_name() && !tokens_.current().is("as") && mark(parameter, word)) {
      word = expect_name("a parameter's name");
    }
    parameter.name = word;
    const bool is_array = parse_array_mark();
    if (!tokens_.skip("as")) fail("\"As\" and the type of \"" + parameter.name + "\"");
    parameter.type = parse_type();
    if (is_array) {
      if (parameter.type.kind == TypeKind::array) fail("one pair of array parentheses, not two");
      parameter.type = Type::array_of(parameter.type);
    }
    if (tokens_.skip("=")) parse_default(parameter);
    return parameter;
  }

  static bool mark(Parameter& parameter, std::string_view word) {
    if (same_name(word, "byref")) {
      parameter.by_ref = true;
    } else if (same_name(word, "optional")) {
      parameter.optional = true;
    } else if (same_name(word, "assigns")) {
      parameter.assigns = true;
    } else {
      return same_name(word, "byval");
    }
    return true;
  }

  void parse_default(Parameter& parameter) {
    const bool negative = tokens_.skip("-");
    const Token token = tokens_.current();
    if (token.text.empty() || token.is(",") || token.is(")")) fail("a default value");
    parameter.default_text = (negative ? "-" : "") + std::string(tokens_.take().text);
    if (tokens_.skip(".")) parameter.default_text += "." + std::string(tokens_.take().text);
    parameter.optional = true;
  }

  bool parse_array_mark() {
    if (!tokens_.skip("(")) return false;
    if (!tokens_.skip(")")) fail("\")\" of an array");
    return true;
  }

  Type parse_type() {
    const Token token = tokens_.current();
    const std::string name = expect_name("a type");
    const std::optional<Type> type = resolver_(name);
    if (!type) {
      throw DeclarationError(text_, token.column, "no type or class is called \"" + name + "\"");
    }
    return parse_array_mark() ? Type::array_of(*type) : *type;
  }

  std::string expect_name(const std::string& what) {
    if (!tokens_.current().is_name()) fail(what);
    return std::string(tokens_.take().text);
  }

  [[noreturn]] void fail(const std::string& expected) const {
    const Token& found = tokens_.current();
    throw DeclarationError(
        text_, found.column,
        "expected " + expected + ", found " +
            (found.text.empty() ? std::string("the end") : "\"" + std::string(found.text) + "\""));
  }

  std::string_view text_;
  Tokens tokens_;
  const TypeResolver& resolver_;
};

}  // namespace

DeclarationError::DeclarationError(std::string_view text, std::size_t column,
                                   const std::string& problem)
    : std::runtime_error("declaration \"" + std::string(text) + "\", column " +
                         std::to_string(column) + ": " + problem) {}

Declaration parse_declaration(std::string_view text, const TypeResolver& resolver) {
  return Parser(text, resolver).parse();
}

std::string normalized(std::string_view declaration) {
  std::string result;
  bool after_word = false;
  for (Tokens tokens(declaration); !tokens.current().text.empty();) {
    const std::string_view token = tokens.take().text;
    const bool is_word = is_name_part(token.front());
    if (is_word && after_word) result += ' ';
    result += lower_name(token);
    after_word = is_word;
  }
  return result;
}

}  // namespace standin
