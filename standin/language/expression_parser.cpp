// The parser of expressions and types: recursive descent, with a limit to the descent, since both
// this parser and whoever walks the tree later recurse as deeply as the tree is.
#include "language/expression_parser.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "language/refused.h"

namespace standin::language {
namespace {

constexpr int deepest_nesting = 200;  // of parentheses and prefix operators
constexpr int deepest_tree = 500;     // of operations

std::optional<BinaryOperator> comparison_operator(const Token& token) {
  if (token.kind != TokenKind::symbol) return std::nullopt;
  if (token.text == "=") return BinaryOperator::equal;
  if (token.text == "<>") return BinaryOperator::unequal;
  if (token.text == "<") return BinaryOperator::less;
  if (token.text == ">") return BinaryOperator::greater;
  if (token.text == "<=") return BinaryOperator::less_equal;
  if (token.text == ">=") return BinaryOperator::greater_equal;
  return std::nullopt;
}

std::optional<BinaryOperator> product_operator(const Token& token) {
  if (token.is_symbol("*")) return BinaryOperator::multiply;
  if (token.is_symbol("/")) return BinaryOperator::divide;
  if (token.is_symbol("\\")) return BinaryOperator::integer_divide;
  if (token.is_keyword("mod")) return BinaryOperator::modulo;
  return std::nullopt;
}

// The smallest Integer and the smallest Int64 are written as negated numbers that are too large for
// the type themselves.
std::optional<decltype(LiteralSyntax::value)> smallest_integer(const Token& token) {
  if (token.kind != TokenKind::integer) return std::nullopt;
  if (token.needs_minus) return token.integer;
  if (token.integer == 2147483648) return std::numeric_limits<std::int32_t>::min();
  return std::nullopt;
}

}  // namespace

class NestingGuard {
 public:
  NestingGuard(ExpressionParser& parser, Position position) : parser_(parser) {
    if (++parser_.nesting_ > deepest_nesting) {
      TokenReader::fail(position, "the expression is nested too deeply (more than " +
                                      std::to_string(deepest_nesting) + " levels)");
    }
  }
  ~NestingGuard() { --parser_.nesting_; }
  NestingGuard(const NestingGuard&) = delete;
  NestingGuard& operator=(const NestingGuard&) = delete;

 private:
  ExpressionParser& parser_;
};

void ExpressionParser::check_depth(Position position, int depth) {
  if (depth > deepest_tree) {
    fail(position, "the expression is too long: at most " + std::to_string(deepest_tree) +
                       " operations can follow each other; use a variable for a part of it");
  }
}

int ExpressionParser::depth_of(const std::vector<ExpressionPointer>& nodes) {
  int depth = 0;
  for (const ExpressionPointer& node : nodes) depth = std::max(depth, node->depth);
  return depth;
}

ExpressionPointer ExpressionParser::binary(Position position, BinaryOperator operation,
                                           ExpressionPointer left, ExpressionPointer right) const {
  const int depth = 1 + std::max(left->depth, right->depth);
  return make(position, BinarySyntax{operation, std::move(left), std::move(right)}, depth);
}

ExpressionPointer ExpressionParser::unary(Position position, UnaryOperator operation,
                                          ExpressionPointer operand) const {
  const int depth = 1 + operand->depth;
  return make(position, UnarySyntax{operation, std::move(operand)}, depth);
}

ExpressionPointer ExpressionParser::call(ExpressionPointer callee,
                                         std::vector<ExpressionPointer> arguments) const {
  const Position position = callee->position;
  const int depth = 1 + std::max(callee->depth, depth_of(arguments));
  return make(position, CallSyntax{std::move(callee), std::move(arguments)}, depth);
}

TypeSyntax ExpressionParser::type(bool array_allowed) {
  TypeSyntax type;
  type.position = peek().position;
  type.name = require_name("a type");
  if (at_symbol("(") && peek(1).is_symbol(")")) {
    if (!array_allowed) fail(peek().position, "an array cannot be used here");
    take();
    take();
    type.is_array = true;
  }
  return type;
}

ExpressionPointer ExpressionParser::expression() {
  const NestingGuard guard(*this, peek().position);
  ExpressionPointer left = conjunction();
  while (at_keyword("or") || at_keyword("xor")) {
    const Token& token = take();
    const BinaryOperator operation =
        token.text == "or" ? BinaryOperator::or_ : BinaryOperator::xor_;
    ExpressionPointer right = conjunction();
    left = binary(token.position, operation, std::move(left), std::move(right));
  }
  return left;
}

ExpressionPointer ExpressionParser::conjunction() {
  ExpressionPointer left = comparison();
  while (at_keyword("and")) {
    const Position position = take().position;
    ExpressionPointer right = comparison();
    left = binary(position, BinaryOperator::and_, std::move(left), std::move(right));
  }
  return left;
}

ExpressionPointer ExpressionParser::comparison() {
  ExpressionPointer left = sum();
  while (const auto operation = comparison_operator(peek())) {
    const Position position = take().position;
    ExpressionPointer right = sum();
    left = binary(position, *operation, std::move(left), std::move(right));
  }
  return left;
}

ExpressionPointer ExpressionParser::sum() {
  ExpressionPointer left = product();
  while (at_symbol("+") || at_symbol("-")) {
    const Token& token = take();
    const BinaryOperator operation =
        token.text == "+" ? BinaryOperator::add : BinaryOperator::subtract;
    ExpressionPointer right = product();
    left = binary(token.position, operation, std::move(left), std::move(right));
  }
  return left;
}

ExpressionPointer ExpressionParser::product() {
  ExpressionPointer left = negation();
  while (const auto operation = product_operator(peek())) {
    const Position position = take().position;
    ExpressionPointer right = negation();
    left = binary(position, *operation, std::move(left), std::move(right));
  }
  return left;
}

ExpressionPointer ExpressionParser::negation() {
  if (!at_keyword("not")) return minus();
  const Position position = take().position;
  const NestingGuard guard(*this, position);
  return unary(position, UnaryOperator::not_, negation());
}

ExpressionPointer ExpressionParser::minus() {
  if (!at_symbol("-") && !at_symbol("+")) return power();
  const Token& token = take();
  const NestingGuard guard(*this, token.position);
  if (token.text == "-" && !peek(1).is_symbol("^")) {
    if (const auto smallest = smallest_integer(peek())) {
      take();
      return make(token.position, LiteralSyntax{*smallest}, 1);
    }
  }
  ExpressionPointer operand = at_keyword("not") ? negation() : minus();
  if (token.text == "+") return operand;
  return unary(token.position, UnaryOperator::minus, std::move(operand));
}

ExpressionPointer ExpressionParser::power() {
  ExpressionPointer base = identity();
  if (!at_symbol("^")) return base;
  const Position position = take().position;
  const NestingGuard guard(*this, position);
  ExpressionPointer exponent = minus();
  return binary(position, BinaryOperator::power, std::move(base), std::move(exponent));
}

ExpressionPointer ExpressionParser::identity() {
  std::size_t last_arguments = 0;
  ExpressionPointer left = postfix(primary(), last_arguments);
  while (at_keyword("is") || at_keyword("isa")) {
    const Token& token = take();
    if (token.text == "isa") {
      const int depth = 1 + left->depth;
      left = make(token.position, IsASyntax{std::move(left), type(false)}, depth);
    } else {
      ExpressionPointer right = postfix(primary(), last_arguments);
      left = binary(token.position, BinaryOperator::is, std::move(left), std::move(right));
    }
  }
  return left;
}

std::vector<ExpressionPointer> ExpressionParser::expressions() {
  std::vector<ExpressionPointer> list;
  do {
    list.push_back(expression());
  } while (take_symbol(","));
  return list;
}

std::vector<ExpressionPointer> ExpressionParser::enclosed_arguments() {
  std::vector<ExpressionPointer> arguments;
  if (take_symbol(")")) return arguments;
  arguments = expressions();
  if (!take_symbol(")")) fail_expecting("\")\" or \",\"");
  return arguments;
}

ExpressionPointer ExpressionParser::chain(std::size_t& last_arguments) {
  const Position position = peek().position;
  return postfix(make(position, NameSyntax{require_name("something")}, 1), last_arguments);
}

ExpressionPointer ExpressionParser::postfix(ExpressionPointer operand,
                                            std::size_t& last_arguments) {
  last_arguments = 0;
  while (true) {
    if (take_symbol(".")) {
      const Position position = peek().position;
      const int depth = 1 + operand->depth;
      operand = make(position, MemberSyntax{std::move(operand), require_name("a member")}, depth);
      last_arguments = 0;
    } else if (at_symbol("(")) {
      const bool callable = std::holds_alternative<NameSyntax>(operand->form) ||
                            std::holds_alternative<MemberSyntax>(operand->form);
      if (!callable) {
        fail(peek().position,
             "a result cannot be called or indexed at once: assign it to a variable first");
      }
      last_arguments = place();
      take();
      operand = call(std::move(operand), enclosed_arguments());
    } else {
      return operand;
    }
  }
}

ExpressionPointer ExpressionParser::primary() {
  const Token& token = peek();
  switch (token.kind) {
    case TokenKind::name: {
      take();
      return make(token.position, NameSyntax{token.text}, 1);
    }
    case TokenKind::keyword:
      break;
    case TokenKind::symbol:
      if (token.text == "(") {
        take();
        ExpressionPointer inner = expression();
        require_symbol(")");
        return inner;
      }
      fail_expecting("a value");
    case TokenKind::end_of_line:
    case TokenKind::end_of_file:
      fail_expecting("a value");
    default:
      return literal(take());
  }
  if (token.text == "true" || token.text == "false") {
    take();
    return make(token.position, LiteralSyntax{token.text == "true"}, 1);
  }
  if (token.text == "nil") {
    take();
    return make(token.position, LiteralSyntax{NilSyntax{}}, 1);
  }
  if (token.text == "new") {
    take();
    NewSyntax form;
    form.type.position = peek().position;
    form.type.name = require_name("a class");
    if (take_symbol("(")) form.arguments = enclosed_arguments();
    const int depth = 1 + depth_of(form.arguments);
    return make(token.position, std::move(form), depth);
  }
  fail_expecting("a value");
}

ExpressionPointer ExpressionParser::literal(const Token& token) {
  LiteralSyntax form;
  if (token.kind == TokenKind::integer) {
    if (token.needs_minus) fail(token.position, too_large_for_int64);
    if (token.is_wide) {
      form.value = token.integer;
    } else {
      form.value = static_cast<std::int32_t>(token.integer);
    }
  } else if (token.kind == TokenKind::real) {
    form.value = token.real;
  } else if (token.kind == TokenKind::string) {
    form.value = token.text;
  } else {
    form.value = ColorSyntax{static_cast<std::uint32_t>(token.integer)};
  }
  return make(token.position, std::move(form), 1);
}

}  // namespace standin::language
