// Conversions: which there are, how good they are, and the code that performs them.
#ifndef ZRB_STANDIN_LANGUAGE_CONVERSIONS_H
#define ZRB_STANDIN_LANGUAGE_CONVERSIONS_H

#include <cstdint>
#include <string>

#include "language/code.h"
#include "language/source.h"

namespace standin::language {

// What it costs to give an expression to a parameter of a type; less is better, and one step of a
// worse kind costs more than any number of better ones:
//   exact; Nil to an object; widening a number, or a class to one that it derives from; narrowing
//   a number; to Variant; from Variant to a primitive type; from Variant to an object;
//   Operator_Convert.
// `impossible` if there is none.
inline constexpr std::uint64_t impossible = ~std::uint64_t{0};
std::uint64_t conversion_cost(const Expression& from, const Type& to);

// The expression as that type. Throws SourceError: "a String cannot be converted to Integer".
Code convert(Code expression, const Type& to, Position position);

// An index or a bound of an array as an Int64, so that a number which no Integer holds does not
// wrap before it is checked.
Code convert_index(Code expression, Position position);

// `C(x)`: to a class, checked when the program runs; also through Operator_Convert.
Code cast(Code expression, const Type& to, Position position);

// An expression whose operands are literals, computed; otherwise the expression itself.
Code folded(Code expression, bool operands_are_literals);

// "Nil" or the name of the type, for messages.
std::string described_type(const Expression& expression);

}  // namespace standin::language

#endif
