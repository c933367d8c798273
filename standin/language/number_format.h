// Numbers as `Format` writes them.
#ifndef ZRB_STANDIN_LANGUAGE_NUMBER_FORMAT_H
#define ZRB_STANDIN_LANGUAGE_NUMBER_FORMAT_H

#include <string>
#include <string_view>

namespace standin::language {

// Up to three patterns between ";": for positive numbers, negative ones, and zero.
//   #        a digit, if there is one       0      a digit, 0 if there is none
//   .        the decimal point              ,      in the whole part: groups of three digits
//   %        times 100, and a percent sign  + -    the sign: always, or when negative
//   E+0 e-0  scientific notation            \c     the character c itself
// Anything else stands for itself. A negative number without a pattern of its own gets a minus.
std::string format_number(double number, std::string_view patterns);

}  // namespace standin::language

#endif
