// The code of operators, by the types of their operands.
#ifndef ZRB_STANDIN_LANGUAGE_OPERATORS_H
#define ZRB_STANDIN_LANGUAGE_OPERATORS_H

#include "language/code.h"
#include "language/syntax.h"

namespace standin::language {

// Throws SourceError when the operator is not defined for the operands. A Variant takes the type
// of the other operand; two Variants are decided upon when the program runs.
Code make_binary(BinaryOperator operation, Code left, Code right, Position position);
Code make_unary(UnaryOperator operation, Code operand, Position position);
// `x IsA C`; the class null for plain Object.
Code make_is_a(Code operand, const ClassInfo* class_info, Position position);

}  // namespace standin::language

#endif
