// Reading programs.
#include <optional>
#include <variant>

#include "language/lexer.h"
#include "language/parser.h"
#include "targets.h"

namespace fuzz {
namespace {

using standin::language::Diagnostic;
using standin::language::SourceError;
using standin::language::SourceFile;
using standin::language::Token;

const standin::language::Conditions conditions{};

// The tokens, or what is wrong.
using Tokens = std::variant<std::vector<Token>, Diagnostic>;

Tokens tokens_of(const SourceFile& source) {
  try {
    return tokenize(source, conditions);
  } catch (const SourceError& error) {
    return error.diagnostic();
  }
}

std::optional<Diagnostic> parse(const std::vector<Token>& tokens) {
  try {
    parse_program(tokens);
    return std::nullopt;
  } catch (const SourceError& error) {
    return error.diagnostic();
  }
}

// Its message must be fit to be shown, and speak of a place that there is.
std::string check(const SourceFile& source, const Diagnostic& diagnostic) {
  if (diagnostic.message.empty()) return "an error without a message";
  if (diagnostic.position.line > source.line_count()) {
    return "an error in line " + std::to_string(diagnostic.position.line) + ", which is not there";
  }
  const std::string shown = format(source, diagnostic);
  for (const char c : shown) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte < 0x20 && c != '\n' && c != '\t') || byte == 0x7F) {
      return "the byte " + std::to_string(byte) + " in the message " + shown;
    }
  }
  return "";
}

bool same(const Diagnostic& a, const Diagnostic& b) {
  return a.message == b.message && a.position.line == b.position.line &&
         a.position.column == b.position.column;
}

bool same(const Token& a, const Token& b) {
  // A number may be a NaN.
  const bool same_real = a.real == b.real || (a.real != a.real && b.real != b.real);
  return a.kind == b.kind && a.text == b.text && a.integer == b.integer && same_real &&
         a.is_wide == b.is_wide && a.needs_minus == b.needs_minus &&
         a.after_blank == b.after_blank && a.position.line == b.position.line &&
         a.position.column == b.position.column;
}

bool same(const Tokens& a, const Tokens& b) {
  if (a.index() != b.index()) return false;
  if (const auto* error = std::get_if<Diagnostic>(&a)) {
    return same(*error, std::get<Diagnostic>(b));
  }
  const auto& tokens = std::get<std::vector<Token>>(a);
  const auto& others = std::get<std::vector<Token>>(b);
  if (tokens.size() != others.size()) return false;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (!same(tokens[i], others[i])) return false;
  }
  return true;
}

}  // namespace

std::string lexer_parser(Bytes bytes) {
  const std::string text(bytes.begin(), bytes.end());
  const SourceFile source("program.rbs", text);
  const Tokens tokens = tokens_of(source);

  std::string elsewhere = "\xEF\xBB\xBF";  // if the text has one, only the first is no part of it
  for (std::size_t number = 1; number <= source.line_count(); ++number) {
    elsewhere += source.line(number);
    elsewhere += "\r\n";
  }
  if (!same(tokens, tokens_of(SourceFile("program.rbs", elsewhere)))) {
    return "with other line ends it reads differently";
  }

  if (const auto* error = std::get_if<Diagnostic>(&tokens)) return check(source, *error);
  const auto error = parse(std::get<std::vector<Token>>(tokens));
  return error ? check(source, *error) : "";
}

}  // namespace fuzz
