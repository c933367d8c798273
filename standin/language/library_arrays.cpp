// Library routines on arrays.
#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "language/library.h"
#include "language/machine.h"
#include "language/text.h"
#include "language/variant_operators.h"
#include "runtime/arrays.h"
#include "runtime/exceptions.h"

namespace standin::language {
namespace {

Value last_index(const RoutineCall& call) {
  return Value::of_integer(upper_bound(call.array(0)));
}

Value append_element(const RoutineCall& call) {
  append(call.array(0), call.arguments[1]);
  return {};
}

Value insert_element(const RoutineCall& call) {
  insert(call.array(0), call.integer(1), call.arguments[2]);
  return {};
}

Value remove_element(const RoutineCall& call) {
  remove(call.array(0), call.integer(1));
  return {};
}

Value pop(const RoutineCall& call) {
  const std::int32_t last = upper_bound(call.array(0));
  if (last < 0) raise("OutOfBoundsException", "the array is empty");
  Value element = get(call.array(0), last, call.element);
  remove(call.array(0), last);
  return element;
}

// As `=` compares.
bool same(const Value& a, const Value& b) {
  switch (a.kind()) {
    case TypeKind::boolean:
      return a.as_boolean() == b.as_boolean();
    case TypeKind::integer:
      return a.as_integer() == b.as_integer();
    case TypeKind::int64:
      return a.as_int64() == b.as_int64();
    case TypeKind::single:
      return a.as_single() == b.as_single();
    case TypeKind::double_:
      return a.as_double() == b.as_double();
    case TypeKind::currency:
      return a.as_currency() == b.as_currency();
    case TypeKind::color:
      return a.as_color() == b.as_color();
    case TypeKind::string:
      return equal(a.as_string(), b.as_string());
    case TypeKind::variant:
      return variant_comparison(BinaryOperator::equal, a.as_variant(), b.as_variant());
    default:
      return a.as_object() == b.as_object();
  }
}

Value index_of(const RoutineCall& call) {
  const std::int32_t last = upper_bound(call.array(0));
  const std::int32_t first = call.has(2) ? std::max(call.integer(2), 0) : 0;
  for (std::int32_t i = first; i <= last; ++i) {
    if (same(get(call.array(0), i, call.element), call.arguments[1])) return Value::of_integer(i);
  }
  return Value::of_integer(-1);
}

// Sorts the elements as values of their own, then puts them back.
template <class Less>
void sort_by(const RoutineCall& call, Less less) {
  std::vector<Value> elements;
  const std::int32_t last = upper_bound(call.array(0));
  elements.reserve(static_cast<std::size_t>(std::int64_t{last} + 1));
  for (std::int32_t i = 0; i <= last; ++i) elements.push_back(get(call.array(0), i, call.element));
  std::stable_sort(elements.begin(), elements.end(), less);
  for (std::int32_t i = 0; i <= last; ++i) {
    set(call.array(0), i, elements[static_cast<std::size_t>(i)]);
  }
}

Value sort_integers(const RoutineCall& call) {
  const std::int32_t count = upper_bound(call.array(0)) + 1;
  if (count > 0) std::sort(&integer_at(call.array(0), 0), &integer_at(call.array(0), 0) + count);
  return {};
}

Value sort_strings(const RoutineCall& call) {
  sort_by(call,
          [](const Value& a, const Value& b) { return compare(a.as_string(), b.as_string()) < 0; });
  return {};
}

// NaN goes last, so that the order is one.
template <class Number>
bool precedes(Number a, Number b) {
  if (std::isnan(a)) return false;
  return std::isnan(b) || a < b;
}

Value sort_doubles(const RoutineCall& call) {
  sort_by(call,
          [](const Value& a, const Value& b) { return precedes(a.as_double(), b.as_double()); });
  return {};
}

Value sort_singles(const RoutineCall& call) {
  sort_by(call,
          [](const Value& a, const Value& b) { return precedes(a.as_single(), b.as_single()); });
  return {};
}

Value sort_int64s(const RoutineCall& call) {
  sort_by(call, [](const Value& a, const Value& b) { return a.as_int64() < b.as_int64(); });
  return {};
}

Value sort_currencies(const RoutineCall& call) {
  sort_by(call, [](const Value& a, const Value& b) { return a.as_currency() < b.as_currency(); });
  return {};
}

// False before True.
Value sort_booleans(const RoutineCall& call) {
  sort_by(call, [](const Value& a, const Value& b) { return !a.as_boolean() && b.as_boolean(); });
  return {};
}

Value sort_variants(const RoutineCall& call) {
  sort_by(call, [](const Value& a, const Value& b) {
    return variant_precedes(a.as_variant(), b.as_variant());
  });
  return {};
}

Value shuffle(const RoutineCall& call) {
  for (std::int32_t i = upper_bound(call.array(0)); i > 0; --i) {
    std::uniform_int_distribution<std::int32_t> any(0, i);
    swap(call.array(0), i, any(call.machine.random()));
  }
  return {};
}

}  // namespace

std::span<const RoutineRow> array_routines() {
  using enum RoutineForm;
  // clang-format off
  static constexpr auto rows = std::to_array<RoutineRow>({
      {"UBound",  both,   "Array",                     "Integer", last_index},
      {"Append",  method, "Array, Element",            "",        append_element},
      {"Insert",  method, "Array, Integer, Element",   "",        insert_element},
      {"Remove",  method, "Array, Integer",            "",        remove_element},
      {"Pop",     method, "Array",                     "Element", pop},
      {"IndexOf", method, "Array, Element, [Integer]", "Integer", index_of},
      {"Sort",    method, "Integer()",                 "",        sort_integers},
      {"Sort",    method, "Int64()",                   "",        sort_int64s},
      {"Sort",    method, "Single()",                  "",        sort_singles},
      {"Sort",    method, "Double()",                  "",        sort_doubles},
      {"Sort",    method, "Currency()",                "",        sort_currencies},
      {"Sort",    method, "Boolean()",                 "",        sort_booleans},
      {"Sort",    method, "String()",                  "",        sort_strings},
      {"Sort",    method, "Variant()",                 "",        sort_variants},
      {"Shuffle", method, "Array",                     "",        shuffle},
  });
  // clang-format on
  return rows;
}

}  // namespace standin::language
