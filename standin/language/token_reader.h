// Walks through tokens; what the parsers of expressions and statements have in common.
#ifndef ZRB_STANDIN_LANGUAGE_TOKEN_READER_H
#define ZRB_STANDIN_LANGUAGE_TOKEN_READER_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "language/token.h"

namespace standin::language {

// The tokens must end with one of kind `end_of_file`, which is never walked past.
class TokenReader {
 public:
  explicit TokenReader(const std::vector<Token>& tokens) : tokens_(tokens) {}

  const Token& peek(std::size_t ahead = 0) const;
  const Token& take();
  std::size_t place() const { return at_; }
  void go_back_to(std::size_t place) { at_ = place; }

  bool at_keyword(std::string_view word) const { return peek().is_keyword(word); }
  bool at_symbol(std::string_view symbol) const { return peek().is_symbol(symbol); }
  bool take_keyword(std::string_view word);
  bool take_symbol(std::string_view symbol);
  void require_keyword(std::string_view word, std::string_view spelled);
  void require_symbol(std::string_view symbol);
  // A word that may name something; `what` it would name, for the message.
  std::string require_name(std::string_view what);

  // "`expected` is expected here, not `token`", or why the word found here is refused.
  [[noreturn]] void fail_expecting(const std::string& expected) const;
  [[noreturn]] static void fail(Position position, const std::string& message) {
    throw SourceError(position, message);
  }

 private:
  const std::vector<Token>& tokens_;
  std::size_t at_ = 0;
};

}  // namespace standin::language

#endif
