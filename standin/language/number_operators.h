// Arithmetic as the language defines it.
#ifndef ZRB_STANDIN_LANGUAGE_NUMBER_OPERATORS_H
#define ZRB_STANDIN_LANGUAGE_NUMBER_OPERATORS_H

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "runtime/exceptions.h"

namespace standin::language {

// On integers of both sizes, everything wraps; on doubles, it is the machine's arithmetic.
struct Add {
  template <class Number>
  static Number apply(Number a, Number b) {
    if constexpr (std::is_integral_v<Number>) {
      using Bits = std::make_unsigned_t<Number>;
      return static_cast<Number>(static_cast<Bits>(a) + static_cast<Bits>(b));
    } else {
      return a + b;
    }
  }
};

struct Subtract {
  template <class Number>
  static Number apply(Number a, Number b) {
    if constexpr (std::is_integral_v<Number>) {
      using Bits = std::make_unsigned_t<Number>;
      return static_cast<Number>(static_cast<Bits>(a) - static_cast<Bits>(b));
    } else {
      return a - b;
    }
  }
};

struct Multiply {
  template <class Number>
  static Number apply(Number a, Number b) {
    if constexpr (std::is_integral_v<Number>) {
      using Bits = std::make_unsigned_t<Number>;
      return static_cast<Number>(static_cast<Bits>(a) * static_cast<Bits>(b));
    } else {
      return a * b;
    }
  }
};

// A division by zero gives an infinity or NaN.
struct Divide {
  static double apply(double a, double b) {
    if (b != 0) return a / b;
    if (a == 0 || std::isnan(a)) return std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    return std::signbit(a) == std::signbit(b) ? infinity : -infinity;
  }
};

struct Power {
  static double apply(double a, double b) { return std::pow(a, b); }
};

// The smallest number divided by -1 wraps to itself.
struct IntegerDivide {
  template <class Number>
  static Number apply(Number a, Number b) {
    if (b == 0) raise("ZeroDivisionException", "division by zero");
    return b == -1 ? Subtract::apply(Number{0}, a) : static_cast<Number>(a / b);
  }
};

// The sign is that of the first operand.
struct Modulo {
  template <class Number>
  static Number apply(Number a, Number b) {
    if (b == 0) raise("ZeroDivisionException", "division by zero");
    return b == -1 ? Number{0} : static_cast<Number>(a % b);
  }
};

struct BitAnd {
  template <class Number>
  static Number apply(Number a, Number b) {
    return static_cast<Number>(a & b);
  }
};
struct BitOr {
  template <class Number>
  static Number apply(Number a, Number b) {
    return static_cast<Number>(a | b);
  }
};
struct BitXor {
  template <class Number>
  static Number apply(Number a, Number b) {
    return static_cast<Number>(a ^ b);
  }
};

// Currency, scaled by 10,000. A product is rounded to the scale, and saturates.
std::int64_t multiply_currency(std::int64_t a, std::int64_t b);

}  // namespace standin::language

#endif
