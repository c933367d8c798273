// Library routines on the bytes of strings, whatever they mean.
#include <algorithm>
#include <array>
#include <string_view>

#include "language/library.h"
#include "language/text.h"
#include "runtime/exceptions.h"
#include "runtime/strings.h"

namespace standin::language {
namespace {

std::size_t not_negative(std::int32_t value) {
  return static_cast<std::size_t>(std::max(value, 0));
}

// A part keeps the mark of the whole.
Value part(REALstring source, std::size_t first, std::size_t count) {
  const std::string_view all = bytes(source);
  return Value::of_string(
      make_string(all.substr(std::min(first, all.size()), count), encoding(source)));
}

Value lenb(const RoutineCall& call) {
  return Value::of_integer(static_cast<std::int32_t>(bytes(call.string(0)).size()));
}

Value leftb(const RoutineCall& call) {
  return part(call.string(0), 0, not_negative(call.integer(1)));
}

Value rightb(const RoutineCall& call) {
  const std::size_t size = bytes(call.string(0)).size();
  const std::size_t wanted = std::min(not_negative(call.integer(1)), size);
  return part(call.string(0), size - wanted, wanted);
}

Value midb(const RoutineCall& call) {
  const std::int64_t start = std::int64_t{call.integer(1)} - 1;
  std::int64_t length = call.has(2) ? call.integer(2) : std::int64_t{0x7FFFFFFF};
  if (start < 0) length += start;
  return part(call.string(0), static_cast<std::size_t>(std::max<std::int64_t>(start, 0)),
              static_cast<std::size_t>(std::max<std::int64_t>(length, 0)));
}

// By bytes: case matters.
Value found_at(REALstring source, REALstring wanted, std::int32_t start) {
  const std::size_t offset =
      bytes(source).find(bytes(wanted), static_cast<std::size_t>(std::max(start, 1) - 1));
  return Value::of_integer(
      offset == std::string_view::npos ? 0 : static_cast<std::int32_t>(offset) + 1);
}

Value instrb(const RoutineCall& call) {
  return found_at(call.string(0), call.string(1), 1);
}
Value instrb_from(const RoutineCall& call) {
  return found_at(call.string(1), call.string(2), call.integer(0));
}
Value instrb_method_from(const RoutineCall& call) {
  return found_at(call.string(0), call.string(2), call.integer(1));
}

Value ascb(const RoutineCall& call) {
  const std::string_view all = bytes(call.string(0));
  return Value::of_integer(all.empty() ? 0 : static_cast<unsigned char>(all.front()));
}

// A byte has no encoding.
Value chrb(const RoutineCall& call) {
  const std::int32_t value = call.integer(0);
  if (value < 0 || value > 255) raise("OutOfBoundsException", "a byte is 0 to 255");
  const char byte = static_cast<char>(static_cast<unsigned char>(value));
  return Value::of_string(make_string({&byte, 1}, host_encoding::as_stored));
}

}  // namespace

std::span<const RoutineRow> byte_routines() {
  using enum RoutineForm;
  // clang-format off
  static constexpr auto rows = std::to_array<RoutineRow>({
      {"LenB",   both,     "String",                     "Integer", lenb},
      {"LeftB",  both,     "String, Integer",            "String",  leftb},
      {"RightB", both,     "String, Integer",            "String",  rightb},
      {"MidB",   both,     "String, Integer, [Integer]", "String",  midb},
      {"InStrB", both,     "String, String",             "Integer", instrb},
      {"InStrB", function, "Integer, String, String",    "Integer", instrb_from},
      {"InStrB", method,   "String, Integer, String",    "Integer", instrb_method_from},
      {"AscB",   both,     "String",                     "Integer", ascb},
      {"ChrB",   function, "Integer",                    "String",  chrb},
  });
  // clang-format on
  return rows;
}

}  // namespace standin::language
