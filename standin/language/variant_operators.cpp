// Operators on two Variants, whose types are met when the program runs.
#include "language/variant_operators.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "language/number_operators.h"
#include "language/text.h"
#include "runtime/classes.h"
#include "runtime/strings.h"
#include "runtime/variants.h"

namespace standin::language {
namespace {

bool is_object(REALobject variant) {
  return variant_type(variant) == VariantType::object;
}
bool is_string(REALobject variant) {
  return variant_type(variant) == VariantType::string;
}

// The number type that a Variant is calculated with.
VariantType number_type(REALobject variant) {
  require_primitive(variant);
  switch (variant_type(variant)) {
    case VariantType::nil:
    case VariantType::boolean:
    case VariantType::integer:
      return VariantType::integer;
    case VariantType::color:
    case VariantType::int64:
      return VariantType::int64;
    case VariantType::currency:
      return VariantType::currency;
    case VariantType::single:
      return VariantType::single;
    default:
      return VariantType::double_;
  }
}

// The codes rise with the width, but for Currency.
VariantType common_type(VariantType a, VariantType b) {
  const auto rank = [](VariantType type) {
    switch (type) {
      case VariantType::integer:
        return 0;
      case VariantType::int64:
        return 1;
      case VariantType::currency:
        return 2;
      case VariantType::single:
        return 3;
      default:
        return 4;
    }
  };
  const VariantType wider = rank(a) > rank(b) ? a : b;
  const VariantType narrower = rank(a) > rank(b) ? b : a;
  const bool fits = narrower == wider || narrower == VariantType::integer;
  return wider == VariantType::single && !fits ? VariantType::double_ : wider;
}

template <class Number>
Number integer_arithmetic(BinaryOperator operation, Number a, Number b) {
  switch (operation) {
    case BinaryOperator::add:
      return Add::apply(a, b);
    case BinaryOperator::subtract:
      return Subtract::apply(a, b);
    case BinaryOperator::multiply:
      return Multiply::apply(a, b);
    case BinaryOperator::integer_divide:
      return IntegerDivide::apply(a, b);
    default:
      return Modulo::apply(a, b);
  }
}

double real_arithmetic(BinaryOperator operation, double a, double b) {
  switch (operation) {
    case BinaryOperator::add:
      return a + b;
    case BinaryOperator::subtract:
      return a - b;
    default:
      return a * b;
  }
}

int sorting_group(REALobject variant) {
  switch (variant_type(variant)) {
    case VariantType::nil:
      return 0;
    case VariantType::string:
      return 2;
    case VariantType::date:
      return 3;
    case VariantType::object:
      return 4;
    default:
      return 1;
  }
}

// Wide enough for every Int64, so that the order of unlike numbers is one.
long double exact_number(REALobject variant) {
  static_assert(std::numeric_limits<long double>::digits >= 64);
  switch (number_type(variant)) {
    case VariantType::integer:
    case VariantType::int64:
      return static_cast<long double>(to_int64(variant));
    case VariantType::currency:
      return static_cast<long double>(to_currency(variant)) / 10000;
    default:
      return to_double(variant);
  }
}

bool in_int32(VariantType type) {
  return type == VariantType::integer;
}

}  // namespace

std::int64_t multiply_currency(std::int64_t a, std::int64_t b) {
  // Whole units and the rest apart, so that the product of ordinary amounts is exact.
  const std::int64_t whole = b / 10000;
  const std::int64_t rest = b % 10000;
  const double estimate = static_cast<double>(a) * (static_cast<double>(b) / 10000.0);
  if (std::fabs(estimate) > 9.0e18) return saturate_int64(estimate);
  const double fraction = static_cast<double>(a) * static_cast<double>(rest) / 10000.0;
  return Add::apply(Multiply::apply(a, whole), saturate_int64(std::round(fraction)));
}

void require_primitive(REALobject variant) {
  if (!is_object(variant)) return;
  const ClassInfo* class_info = class_of(to_object(variant));
  raise("TypeMismatchException", (class_info == nullptr ? "an object" : "a " + class_info->name()) +
                                     " is neither a number nor a text");
}

ObjectRef variant_arithmetic(BinaryOperator operation, REALobject a, REALobject b) {
  if (operation == BinaryOperator::add && is_string(a) && is_string(b)) {
    return variant_from_string(join(to_string(a).get(), to_string(b).get()).get());
  }
  const VariantType type = common_type(number_type(a), number_type(b));
  if (operation == BinaryOperator::divide) {
    return variant_from_double(Divide::apply(to_double(a), to_double(b)));
  }
  if (operation == BinaryOperator::power) {
    return variant_from_double(Power::apply(to_double(a), to_double(b)));
  }
  const bool whole =
      operation == BinaryOperator::integer_divide || operation == BinaryOperator::modulo;
  if (in_int32(type)) {
    return variant_from_integer(integer_arithmetic(operation, to_int32(a), to_int32(b)));
  }
  if (type == VariantType::int64 || whole) {
    return variant_from_int64(integer_arithmetic(operation, to_int64(a), to_int64(b)));
  }
  if (type == VariantType::currency) {
    const std::int64_t x = to_currency(a);
    const std::int64_t y = to_currency(b);
    return variant_from_currency(operation == BinaryOperator::multiply
                                     ? multiply_currency(x, y)
                                     : integer_arithmetic(operation, x, y));
  }
  const double result = real_arithmetic(operation, to_double(a), to_double(b));
  return type == VariantType::single ? variant_from_single(static_cast<float>(result))
                                     : variant_from_double(result);
}

bool variant_comparison(BinaryOperator operation, REALobject a, REALobject b) {
  const bool equality = operation == BinaryOperator::equal || operation == BinaryOperator::unequal;
  if (equality && (a == nullptr || b == nullptr)) return holds(operation, a == b ? 0 : 1);
  if (is_object(a) || is_object(b)) {
    if (!equality) raise("TypeMismatchException", "objects have no order");
    const bool same = is_object(a) && is_object(b) && to_object(a) == to_object(b);
    return holds(operation, same ? 0 : 1);
  }
  if (is_string(a) && is_string(b)) {
    return holds(operation, compare(to_string(a).get(), to_string(b).get()));
  }
  const VariantType type = common_type(number_type(a), number_type(b));
  if (in_int32(type) || type == VariantType::int64) {
    const std::int64_t x = to_int64(a);
    const std::int64_t y = to_int64(b);
    return holds(operation, x == y ? 0 : x < y ? -1 : 1);
  }
  const double x = to_double(a);
  const double y = to_double(b);
  // NaN is unequal to everything and has no order.
  if (std::isnan(x) || std::isnan(y)) return operation == BinaryOperator::unequal;
  return holds(operation, x == y ? 0 : x < y ? -1 : 1);
}

bool variant_precedes(REALobject a, REALobject b) {
  const int group = sorting_group(a);
  if (group != sorting_group(b)) return group < sorting_group(b);
  if (is_string(a)) return compare(to_string(a).get(), to_string(b).get()) < 0;
  if (a == nullptr || is_object(a)) return false;
  const long double x = exact_number(a);
  const long double y = exact_number(b);
  return !std::isnan(x) && (std::isnan(y) || x < y);
}

ObjectRef variant_logic(BinaryOperator operation, REALobject a, REALobject b) {
  const bool logical =
      variant_type(a) == VariantType::boolean && variant_type(b) == VariantType::boolean;
  const auto apply = [operation](auto x, auto y) {
    return operation == BinaryOperator::and_  ? BitAnd::apply(x, y)
           : operation == BinaryOperator::or_ ? BitOr::apply(x, y)
                                              : BitXor::apply(x, y);
  };
  if (logical) {
    return variant_from_boolean(apply(to_int32(a), to_int32(b)) != 0);
  }
  if (in_int32(common_type(number_type(a), number_type(b)))) {
    return variant_from_integer(apply(to_int32(a), to_int32(b)));
  }
  return variant_from_int64(apply(to_int64(a), to_int64(b)));
}

ObjectRef variant_not(REALobject a) {
  if (variant_type(a) == VariantType::boolean) return variant_from_boolean(!to_boolean(a));
  if (in_int32(number_type(a))) return variant_from_integer(~to_int32(a));
  return variant_from_int64(~to_int64(a));
}

ObjectRef variant_minus(REALobject a) {
  const ObjectRef zero = variant_from_integer(0);
  if (number_type(a) == VariantType::double_) return variant_from_double(-to_double(a));
  return variant_arithmetic(BinaryOperator::subtract, zero.get(), a);
}

}  // namespace standin::language
