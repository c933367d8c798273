// Walks through tokens; what the parsers of expressions and statements have in common.
#include "language/token_reader.h"

#include <algorithm>

#include "language/refused.h"

namespace standin::language {

const Token& TokenReader::peek(std::size_t ahead) const {
  return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
}

const Token& TokenReader::take() {
  const Token& token = peek();
  if (at_ + 1 < tokens_.size()) ++at_;
  return token;
}

bool TokenReader::take_keyword(std::string_view word) {
  if (!at_keyword(word)) return false;
  take();
  return true;
}

bool TokenReader::take_symbol(std::string_view symbol) {
  if (!at_symbol(symbol)) return false;
  take();
  return true;
}

void TokenReader::require_keyword(std::string_view word, std::string_view spelled) {
  if (!take_keyword(word)) fail_expecting("\"" + std::string(spelled) + "\"");
}

void TokenReader::require_symbol(std::string_view symbol) {
  if (!take_symbol(symbol)) fail_expecting("\"" + std::string(symbol) + "\"");
}

std::string TokenReader::require_name(std::string_view what) {
  if (peek().kind == TokenKind::name) return take().text;
  if (peek().kind == TokenKind::keyword) {
    const std::string reason = refusal(peek());
    fail(peek().position, !reason.empty() ? reason
                                          : "the word \"" + spelled(peek().text) +
                                                "\" is reserved and cannot be the name of " +
                                                std::string(what));
  }
  fail_expecting("the name of " + std::string(what));
}

void TokenReader::fail_expecting(const std::string& expected) const {
  const std::string reason = refusal(peek());
  fail(peek().position,
       !reason.empty() ? reason : expected + " is expected here, not " + describe(peek()));
}

}  // namespace standin::language
