// Library routines on numbers.
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <string>

#include "language/library.h"
#include "language/machine.h"
#include "language/number_format.h"
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
Value str_variant(const RoutineCall& call) {
  return Value::of_string(to_string(call.object(0)));
}
Value str_string(const RoutineCall& call) {
  return Value::of_string(StringRef::share(call.string(0)));
}
Value str_format(const RoutineCall& call) {
  return text(format_number(call.real(0), utf8(call.string(1))));
}

// The bits of a number, without leading zeros.
template <unsigned bits_a_digit>
Value in_base(const RoutineCall& call) {
  auto value = static_cast<std::uint32_t>(call.integer(0));
  std::string digits;
  do {
    digits += "0123456789ABCDEF"[value & ((1U << bits_a_digit) - 1U)];
    value >>= bits_a_digit;
  } while (value != 0);
  std::reverse(digits.begin(), digits.end());
  return text(digits);
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

Value min_integer(const RoutineCall& call) {
  return Value::of_integer(std::min(call.integer(0), call.integer(1)));
}
Value max_integer(const RoutineCall& call) {
  return Value::of_integer(std::max(call.integer(0), call.integer(1)));
}
Value min_int64(const RoutineCall& call) {
  return Value::of_int64(std::min(call.arguments[0].as_int64(), call.arguments[1].as_int64()));
}
Value max_int64(const RoutineCall& call) {
  return Value::of_int64(std::max(call.arguments[0].as_int64(), call.arguments[1].as_int64()));
}
Value min_double(const RoutineCall& call) {
  return Value::of_double(std::min(call.real(0), call.real(1)));
}
Value max_double(const RoutineCall& call) {
  return Value::of_double(std::max(call.real(0), call.real(1)));
}

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

std::chrono::microseconds since_start() {
  static const auto start = std::chrono::steady_clock::now();
  return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() -
                                                               start);
}

Value microseconds(const RoutineCall&) {
  return Value::of_double(static_cast<double>(since_start().count()));
}
// Sixtieths of a second.
Value ticks(const RoutineCall&) {
  return Value::of_integer(static_cast<std::int32_t>(since_start().count() * 60 / 1000000));
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
      {"Hex",          function, "Integer",          "String",  in_base<4>},
      {"Oct",          function, "Integer",          "String",  in_base<3>},
      {"Bin",          function, "Integer",          "String",  in_base<1>},
      {"Abs",          function, "Integer",          "Integer", abs_integer},
      {"Abs",          function, "Int64",            "Int64",   abs_int64},
      {"Abs",          function, "Double",           "Double",  abs_double},
      {"Min",          function, "Integer, Integer", "Integer", min_integer},
      {"Min",          function, "Int64, Int64",     "Int64",   min_int64},
      {"Min",          function, "Double, Double",   "Double",  min_double},
      {"Max",          function, "Integer, Integer", "Integer", max_integer},
      {"Max",          function, "Int64, Int64",     "Int64",   max_int64},
      {"Max",          function, "Double, Double",   "Double",  max_double},
      {"Floor",        function, "Double",           "Double",  floor_of},
      {"Ceil",         function, "Double",           "Double",  ceil_of},
      {"Round",        function, "Double",           "Double",  round_of},
      {"Sqrt",         function, "Double",           "Double",  sqrt_of},
      {"Rnd",          function, "",                 "Double",  rnd},
      {"Microseconds", function, "",                 "Double",  microseconds},
      {"Ticks",        function, "",                 "Integer", ticks},
  });
  // clang-format on
  return rows;
}

}  // namespace standin::language
