// Operators on two Variants, whose types are met when the program runs.
#include "language/variant_operators.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "language/number_operators.h"
#include "language/number_types.h"
#include "language/text.h"
#include "runtime/classes.h"
#include "runtime/currency.h"
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
TypeKind number_type(REALobject variant) {
  require_primitive(variant);
  switch (variant_type(variant)) {
    case VariantType::nil:
    case VariantType::boolean:
    case VariantType::integer:
      return TypeKind::integer;
    case VariantType::color:
    case VariantType::int64:
      return TypeKind::int64;
    case VariantType::currency:
      return TypeKind::currency;
    case VariantType::single:
      return TypeKind::single;
    default:
      return TypeKind::double_;
  }
}

TypeKind common_type(REALobject a, REALobject b) {
  return common_number_type(number_type(a), number_type(b));
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
    case TypeKind::integer:
    case TypeKind::int64:
      return static_cast<long double>(to_int64(variant));
    case TypeKind::currency:
      return static_cast<long double>(to_currency(variant)) / real_currency_scale;
    default:
      return to_double(variant);
  }
}

}  // namespace

std::int64_t multiply_currency(std::int64_t a, std::int64_t b) {
  // Whole units and the rest apart, so that the product of ordinary amounts is exact.
  const std::int64_t whole = b / currency_scale;
  const std::int64_t rest = b % currency_scale;
  const double estimate = static_cast<double>(a) * (static_cast<double>(b) / real_currency_scale);
  if (std::fabs(estimate) > 9.0e18) return saturate_int64(estimate);
  const double fraction = static_cast<double>(a) * static_cast<double>(rest) / real_currency_scale;
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
  const TypeKind type = common_type(a, b);
  if (operation == BinaryOperator::divide) {
    return variant_from_double(Divide::apply(to_double(a), to_double(b)));
  }
  if (operation == BinaryOperator::power) {
    return variant_from_double(Power::apply(to_double(a), to_double(b)));
  }
  const bool whole =
      operation == BinaryOperator::integer_divide || operation == BinaryOperator::modulo;
  if (type == TypeKind::integer) {
    return variant_from_integer(integer_arithmetic(operation, to_int32(a), to_int32(b)));
  }
  if (type == TypeKind::int64 || whole) {
    return variant_from_int64(integer_arithmetic(operation, to_int64(a), to_int64(b)));
  }
  if (type == TypeKind::currency) {
    const std::int64_t x = to_currency(a);
    const std::int64_t y = to_currency(b);
    return variant_from_currency(operation == BinaryOperator::multiply
                                     ? multiply_currency(x, y)
                                     : integer_arithmetic(operation, x, y));
  }
  const double result = real_arithmetic(operation, to_double(a), to_double(b));
  return type == TypeKind::single ? variant_from_single(static_cast<float>(result))
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
  const TypeKind type = common_type(a, b);
  if (type == TypeKind::integer || type == TypeKind::int64) {
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
  if (common_type(a, b) == TypeKind::integer) {
    return variant_from_integer(apply(to_int32(a), to_int32(b)));
  }
  return variant_from_int64(apply(to_int64(a), to_int64(b)));
}

ObjectRef variant_not(REALobject a) {
  if (variant_type(a) == VariantType::boolean) return variant_from_boolean(!to_boolean(a));
  if (number_type(a) == TypeKind::integer) return variant_from_integer(~to_int32(a));
  return variant_from_int64(~to_int64(a));
}

ObjectRef variant_minus(REALobject a) {
  const ObjectRef zero = variant_from_integer(0);
  if (number_type(a) == TypeKind::double_) return variant_from_double(-to_double(a));
  return variant_arithmetic(BinaryOperator::subtract, zero.get(), a);
}

}  // namespace standin::language
