// How the number types stand to each other.
#ifndef ZRB_STANDIN_LANGUAGE_NUMBER_TYPES_H
#define ZRB_STANDIN_LANGUAGE_NUMBER_TYPES_H

#include "runtime/types.h"

namespace standin::language {

// From narrow to wide: 0 for Integer, 4 for Double.
constexpr int width(TypeKind number) {
  switch (number) {
    case TypeKind::integer:
      return 0;
    case TypeKind::int64:
      return 1;
    case TypeKind::currency:
      return 2;
    case TypeKind::single:
      return 3;
    default:
      return 4;
  }
}

// The narrowest number type that both convert to without losing size.
constexpr TypeKind common_number_type(TypeKind a, TypeKind b) {
  const TypeKind wider = width(a) > width(b) ? a : b;
  const TypeKind narrower = width(a) > width(b) ? b : a;
  // A Single cannot hold every Int64 or Currency.
  const bool fits = narrower == wider || narrower == TypeKind::integer;
  return wider == TypeKind::single && !fits ? TypeKind::double_ : wider;
}

}  // namespace standin::language

#endif
