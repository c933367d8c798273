// The parser of expressions and types.
#ifndef ZRB_STANDIN_LANGUAGE_EXPRESSION_PARSER_H
#define ZRB_STANDIN_LANGUAGE_EXPRESSION_PARSER_H

#include <utility>
#include <vector>

#include "language/syntax.h"
#include "language/token_reader.h"

namespace standin::language {

// Precedence, high to low, one function each:
//   postfix `.name` and `(…)`; Is, IsA; ^; unary -; Not; * / \ Mod; + -; = <> < > <= >=; And;
//   Or, Xor.
class ExpressionParser : public TokenReader {
 public:
  using TokenReader::TokenReader;

  ExpressionPointer expression();
  TypeSyntax type(bool array_allowed = true);

 protected:
  // A name with members and arguments: what may stand at the start of a statement. Tells where the
  // last token of arguments begins, or 0 if the chain does not end with arguments.
  ExpressionPointer chain(std::size_t& last_arguments);
  // Up to the end of the list; not enclosed in parentheses.
  std::vector<ExpressionPointer> expressions();
  // After "(", with ")".
  std::vector<ExpressionPointer> enclosed_arguments();

  template <class Form>
  ExpressionPointer make(Position position, Form form, int depth) const {
    check_depth(position, depth);
    auto node = std::make_unique<ExpressionSyntax>();
    node->position = position;
    node->depth = depth;
    node->form = std::move(form);
    return node;
  }
  static int depth_of(const std::vector<ExpressionPointer>& nodes);
  ExpressionPointer call(ExpressionPointer callee, std::vector<ExpressionPointer> arguments) const;

 private:
  static void check_depth(Position position, int depth);
  ExpressionPointer binary(Position position, BinaryOperator operation, ExpressionPointer left,
                           ExpressionPointer right) const;
  ExpressionPointer unary(Position position, UnaryOperator operation,
                          ExpressionPointer operand) const;

  ExpressionPointer conjunction();
  ExpressionPointer comparison();
  ExpressionPointer sum();
  ExpressionPointer product();
  ExpressionPointer negation();
  ExpressionPointer minus();
  ExpressionPointer power();
  ExpressionPointer identity();
  ExpressionPointer postfix(ExpressionPointer operand, std::size_t& last_arguments);
  ExpressionPointer primary();
  ExpressionPointer literal(const Token& token);

  int nesting_ = 0;
  friend class NestingGuard;
};

}  // namespace standin::language

#endif
