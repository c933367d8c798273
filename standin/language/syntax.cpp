// The syntax tree: what a program says, before anything in it has a meaning.
#include "language/syntax.h"

namespace standin::language {

const char* symbol(BinaryOperator operation) {
  switch (operation) {
    case BinaryOperator::add:
      return "+";
    case BinaryOperator::subtract:
      return "-";
    case BinaryOperator::multiply:
      return "*";
    case BinaryOperator::divide:
      return "/";
    case BinaryOperator::integer_divide:
      return "\\";
    case BinaryOperator::modulo:
      return "Mod";
    case BinaryOperator::power:
      return "^";
    case BinaryOperator::equal:
      return "=";
    case BinaryOperator::unequal:
      return "<>";
    case BinaryOperator::less:
      return "<";
    case BinaryOperator::greater:
      return ">";
    case BinaryOperator::less_equal:
      return "<=";
    case BinaryOperator::greater_equal:
      return ">=";
    case BinaryOperator::and_:
      return "And";
    case BinaryOperator::or_:
      return "Or";
    case BinaryOperator::xor_:
      return "Xor";
    case BinaryOperator::is:
      return "Is";
  }
  return "";
}

const char* symbol(UnaryOperator operation) {
  return operation == UnaryOperator::minus ? "-" : "Not";
}

}  // namespace standin::language
