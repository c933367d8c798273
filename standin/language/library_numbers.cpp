// Library routines on numbers.
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <ratio>
#include <string>

#include "language/library.h"
#include "language/machine.h"
#include "language/number_format.h"
#include "language/variant_operators.h"
#include "runtime/strings.h"
#include "runtime/variants.h"

namespace standin::language {
namespace {

Value text(const std::string& bytes) {
  return Value::of_string(make_string(bytes));
}

Value val(const RoutineCall& call) {
  return Value::of_double(parse_number(utf8(call.string(0))));
}

Value str_integer(const RoutineCall& call) {
  return text(std::to_string(call.integer(0)));
}
Value str_int64(const RoutineCall& call) {
  return text(std::to_string(call.arguments[0].as_int64()));
}
Value str_single(const RoutineCall& call) {
  return text(number_text(call.arguments[0].as_single()));
}
Value str_double(const RoutineCall& call) {
  return text(number_text(call.real(0)));
}
Value str_currency(const RoutineCall& call) {
  return text(currency_text(call.arguments[0].as_currency()));
}
// A Variant that must be a number or a text.
REALobject primitive(const RoutineCall& call) {
  require_primitive(call.object(0));
  return call.object(0);
}

Value str_variant(const RoutineCall& call) {
  return Value::of_string(to_string(primitive(call)));
}
Value str_string(const RoutineCall& call) {
  return Value::of_string(StringRef::share(call.string(0)));
}
Value str_format(const RoutineCall& call) {
  return text(format_number(call.real(0), utf8(call.string(1))));
}

// The bits of a number, without leading zeros.
template <unsigned bits_a_digit>
Value digits(std::uint64_t value) {
  std::string digits;
  do {
    digits += "0123456789ABCDEF"[value & ((1U << bits_a_digit) - 1U)];
    value >>= bits_a_digit;
  } while (value != 0);
  std::reverse(digits.begin(), digits.end());
  return text(digits);
}

template <unsigned bits_a_digit>
Value in_base(const RoutineCall& call) {
  return digits<bits_a_digit>(static_cast<std::uint32_t>(call.integer(0)));
}
template <unsigned bits_a_digit>
Value int64_in_base(const RoutineCall& call) {
  return digits<bits_a_digit>(static_cast<std::uint64_t>(call.arguments[0].as_int64()));
}
// 64 bits only of what needs them.
template <unsigned bits_a_digit>
Value variant_in_base(const RoutineCall& call) {
  const std::int64_t value = to_int64(primitive(call));
  const auto narrow = static_cast<std::int32_t>(value);
  return digits<bits_a_digit>(narrow == value ? static_cast<std::uint32_t>(narrow)
                                              : static_cast<std::uint64_t>(value));
}

Value abs_integer(const RoutineCall& call) {
  const auto bits = static_cast<std::uint32_t>(call.integer(0));
  return Value::of_integer(static_cast<std::int32_t>(call.integer(0) < 0 ? 0U - bits : bits));
}
Value abs_int64(const RoutineCall& call) {
  const std::int64_t value = call.arguments[0].as_int64();
  const auto bits = static_cast<std::uint64_t>(value);
  return Value::of_int64(static_cast<std::int64_t>(value < 0 ? std::uint64_t{0} - bits : bits));
}
Value abs_double(const RoutineCall& call) {
  return Value::of_double(std::fabs(call.real(0)));
}

Value abs_variant(const RoutineCall& call) {
  return Value::of_double(std::fabs(to_double(primitive(call))));
}

// Which of two arguments `Min` or `Max` goes on with; NaN only if there is nothing else.
template <bool largest>
bool is_better(const Value& candidate, const Value& best) {
  const auto better = [](auto x, auto y) { return largest ? x > y : x < y; };
  switch (best.kind()) {
    case TypeKind::integer:
      return better(candidate.as_integer(), best.as_integer());
    case TypeKind::int64:
      return better(candidate.as_int64(), best.as_int64());
    case TypeKind::currency:
      return better(candidate.as_currency(), best.as_currency());
    case TypeKind::variant:
      return variant_comparison(largest ? BinaryOperator::greater : BinaryOperator::less,
                                candidate.as_variant(), best.as_variant());
    default:
      return std::isnan(best.as_double()) || better(candidate.as_double(), best.as_double());
  }
}

template <bool largest>
Value extreme(const RoutineCall& call) {
  const Value* best = &call.arguments[0];
  for (const Value& candidate : call.arguments.subspan(1)) {
    if (is_better<largest>(candidate, *best)) best = &candidate;
  }
  return *best;
}
constexpr RoutineFunction min_of = extreme<false>;
constexpr RoutineFunction max_of = extreme<true>;

Value floor_of(const RoutineCall& call) {
  return Value::of_double(std::floor(call.real(0)));
}
Value ceil_of(const RoutineCall& call) {
  return Value::of_double(std::ceil(call.real(0)));
}
Value round_of(const RoutineCall& call) {
  return Value::of_double(std::round(call.real(0)));
}
Value sqrt_of(const RoutineCall& call) {
  return Value::of_double(std::sqrt(call.real(0)));
}

// 0 to below 1.
Value rnd(const RoutineCall& call) {
  return Value::of_double(std::uniform_real_distribution<double>()(call.machine.random()));
}

Value microseconds(const RoutineCall& call) {
  const std::chrono::duration<double, std::micro> time = call.machine.running_time();
  return Value::of_double(time.count());
}
// Sixtieths of a second.
Value ticks(const RoutineCall& call) {
  using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 60>>;
  const auto time = std::chrono::duration_cast<Ticks>(call.machine.running_time());
  return Value::of_integer(static_cast<std::int32_t>(time.count()));
}

// Red, green and blue, each 0 to 255; what is beyond counts as the nearest.
Value rgb(const RoutineCall& call) {
  std::uint32_t color = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    color = color << 8U | static_cast<std::uint32_t>(std::clamp(call.integer(i), 0, 255));
  }
  return Value::of_color(color);
}

}  // namespace

std::span<const RoutineRow> number_routines() {
  using enum RoutineForm;
  // clang-format off
  static constexpr auto rows = std::to_array<RoutineRow>({
      {"Val",          both,     "String",           "Double",  val},
      {"CDbl",         both,     "String",           "Double",  val},
      {"Str",          function, "Integer",          "String",  str_integer},
      {"Str",          function, "Int64",            "String",  str_int64},
      {"Str",          function, "Single",           "String",  str_single},
      {"Str",          function, "Double",           "String",  str_double},
      {"Str",          function, "Currency",         "String",  str_currency},
      {"Str",          function, "Variant",          "String",  str_variant},
      {"Str",          function, "Double, String",   "String",  str_format},
      {"CStr",         function, "Integer",          "String",  str_integer},
      {"CStr",         function, "Int64",            "String",  str_int64},
      {"CStr",         function, "Single",           "String",  str_single},
      {"CStr",         function, "Double",           "String",  str_double},
      {"CStr",         function, "Currency",         "String",  str_currency},
      {"CStr",         function, "Variant",          "String",  str_variant},
      {"CStr",         function, "String",           "String",  str_string},
      {"Format",       function, "Double, String",   "String",  str_format},
      {"Hex",          function, "Integer",         "String",  in_base<4>},
      {"Hex",          function, "Int64",           "String",  int64_in_base<4>},
      {"Hex",          function, "Variant",         "String",  variant_in_base<4>},
      {"Oct",          function, "Integer",         "String",  in_base<3>},
      {"Oct",          function, "Int64",           "String",  int64_in_base<3>},
      {"Oct",          function, "Variant",         "String",  variant_in_base<3>},
      {"Bin",          function, "Integer",         "String",  in_base<1>},
      {"Bin",          function, "Int64",           "String",  int64_in_base<1>},
      {"Bin",          function, "Variant",         "String",  variant_in_base<1>},
      {"Abs",          function, "Integer",          "Integer", abs_integer},
      {"Abs",          function, "Int64",            "Int64",   abs_int64},
      {"Abs",          function, "Double",           "Double",  abs_double},
      {"Abs",          function, "Variant",          "Double",  abs_variant},
      {"Min",          function, "Integer, Integer, Integer...", "Integer", min_of},
      {"Min",          function, "Int64, Int64, Int64...", "Int64", min_of},
      {"Min",          function, "Double, Double, Double...", "Double", min_of},
      {"Min",          function, "Currency, Currency, Currency...", "Currency", min_of},
      {"Min",          function, "Variant, Variant, Variant...", "Variant", min_of},
      {"Max",          function, "Integer, Integer, Integer...", "Integer", max_of},
      {"Max",          function, "Int64, Int64, Int64...", "Int64", max_of},
      {"Max",          function, "Double, Double, Double...", "Double", max_of},
      {"Max",          function, "Currency, Currency, Currency...", "Currency", max_of},
      {"Max",          function, "Variant, Variant, Variant...", "Variant", max_of},
      {"Floor",        function, "Double",           "Double",  floor_of},
      {"Ceil",         function, "Double",           "Double",  ceil_of},
      {"Round",        function, "Double",           "Double",  round_of},
      {"Sqrt",         function, "Double",           "Double",  sqrt_of},
      {"Rnd",          function, "",                 "Double",  rnd},
      {"Microseconds", function, "",                 "Double",  microseconds},
      {"Ticks",        function, "",                 "Integer", ticks},
      {"RGB",          function, "Integer, Integer, Integer", "Color", rgb},
  });
  // clang-format on
  return rows;
}

}  // namespace standin::language
