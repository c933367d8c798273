// Operators on two Variants, whose types are met when the program runs.
#ifndef ZRB_STANDIN_LANGUAGE_VARIANT_OPERATORS_H
#define ZRB_STANDIN_LANGUAGE_VARIANT_OPERATORS_H

#include "language/syntax.h"
#include "runtime/handles.h"

namespace standin::language {

// Raises TypeMismatchException for an object that is no Date: it has neither a number nor a text.
void require_primitive(REALobject variant);

// `+ - * / \ Mod ^`: two strings join under `+`; otherwise both are taken as numbers, of the wider
// of their types, strings and Dates as Double, Nil as 0. An object has no number:
// TypeMismatchException.
ObjectRef variant_arithmetic(BinaryOperator operation, REALobject a, REALobject b);

// `= <> < > <= >=`: numbers by value, strings without regard to case; a string and a number as
// numbers; objects can only be equal or not; Nil equals only Nil.
bool variant_comparison(BinaryOperator operation, REALobject a, REALobject b);

// An order of all Variants, for sorting: Nil, numbers by value with NaN behind the others, strings
// without regard to case, Dates by time, and then other objects, among which there is no order.
bool variant_precedes(REALobject a, REALobject b);

// `And Or Xor Not`: logical on two Booleans, bitwise on anything else.
ObjectRef variant_logic(BinaryOperator operation, REALobject a, REALobject b);
ObjectRef variant_not(REALobject a);
ObjectRef variant_minus(REALobject a);

// From the result of a three-way comparison.
template <class Order>
bool holds(BinaryOperator comparison, Order order) {
  switch (comparison) {
    case BinaryOperator::equal:
      return order == 0;
    case BinaryOperator::unequal:
      return order != 0;
    case BinaryOperator::less:
      return order < 0;
    case BinaryOperator::greater:
      return order > 0;
    case BinaryOperator::less_equal:
      return order <= 0;
    default:
      return order >= 0;
  }
}

}  // namespace standin::language

#endif
