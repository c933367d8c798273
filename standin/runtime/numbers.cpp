// Numbers and their texts, as variants convert them.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

#include "runtime/currency.h"
#include "runtime/variants.h"

namespace standin {
namespace {

bool is_blank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

std::string_view without_leading_blanks(std::string_view text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  return text;
}

// "&hFF", "&b101", "&o17": its base, or 0.
int prefix_base(std::string_view text) {
  if (text.size() < 3 || text[0] != '&') return 0;
  switch (text[1]) {
    case 'h':
    case 'H':
      return 16;
    case 'b':
    case 'B':
      return 2;
    case 'o':
    case 'O':
      return 8;
    default:
      return 0;
  }
}

// What follows the prefix, as far as it goes; more than 64 bits saturate.
std::int64_t parse_prefixed(std::string_view text, int base) {
  std::uint64_t value = 0;
  const auto result = std::from_chars(text.data() + 2, text.data() + text.size(), value, base);
  if (result.ec == std::errc::result_out_of_range) return std::numeric_limits<std::int64_t>::max();
  return static_cast<std::int64_t>(value);
}

// from_chars also reads "inf" and "nan", and no plus sign.
bool starts_a_number(std::string_view text) {
  std::size_t at = 0;
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
  if (at < text.size() && text[at] == '.') ++at;
  return at < text.size() && is_digit(text[at]);
}

// What is no number has no sign either, and one spelling.
std::string formatted(const char* format, double value) {
  if (std::isnan(value)) return "NaN";
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

}  // namespace

std::string number_text(double value) {
  return formatted("%.15g", value);
}
std::string number_text(float value) {
  return formatted("%.7g", static_cast<double>(value));
}

std::string currency_text(std::int64_t scaled) {
  constexpr auto scale = static_cast<std::uint64_t>(currency_scale);
  const bool negative = scaled < 0;
  // The smallest number has no positive counterpart.
  const std::uint64_t magnitude =
      negative ? 0 - static_cast<std::uint64_t>(scaled) : static_cast<std::uint64_t>(scaled);
  std::string result = (negative ? "-" : "") + std::to_string(magnitude / scale);
  char decimals[16];
  std::snprintf(decimals, sizeof decimals, "%04u", static_cast<unsigned>(magnitude % scale));
  std::string fraction = decimals;
  while (!fraction.empty() && fraction.back() == '0') fraction.pop_back();
  return fraction.empty() ? result : result + "." + fraction;
}

std::string color_text(std::uint32_t rgb) {
  char text[16];
  std::snprintf(text, sizeof text, "&c%06X", static_cast<unsigned>(rgb & 0xFFFFFFU));
  return text;
}

bool is_number_text(std::string_view text) {
  text = without_leading_blanks(text);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  if (const int base = prefix_base(text)) {
    std::uint64_t value;
    const char* end = text.data() + text.size();
    return std::from_chars(text.data() + 2, end, value, base).ptr == end;
  }
  if (!starts_a_number(text)) return false;
  if (text.front() == '+') text.remove_prefix(1);
  double value;
  const char* end = text.data() + text.size();
  return std::from_chars(text.data(), end, value).ptr == end;
}

double parse_number(std::string_view text) {
  text = without_leading_blanks(text);
  if (const int base = prefix_base(text)) return static_cast<double>(parse_prefixed(text, base));
  if (!starts_a_number(text)) return 0;
  if (text.front() == '+') text.remove_prefix(1);
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  // from_chars does not say whether the number was too large or too small; strtod does.
  if (result.ec == std::errc::result_out_of_range) {
    value = std::strtod(std::string(text.data(), result.ptr).c_str(), nullptr);
  }
  return value;
}

std::int64_t parse_integer(std::string_view text) {
  text = without_leading_blanks(text);
  if (const int base = prefix_base(text)) return parse_prefixed(text, base);
  if (!starts_a_number(text)) return 0;
  std::string_view digits = text.front() == '+' ? text.substr(1) : text;
  std::int64_t value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  const bool whole = result.ec == std::errc() &&
                     (result.ptr == digits.data() + digits.size() ||
                      (*result.ptr != '.' && *result.ptr != 'e' && *result.ptr != 'E'));
  return whole ? value : saturate_int64(parse_number(text));
}

std::int32_t saturate_int32(double value) {
  if (std::isnan(value)) return 0;
  if (value >= 2147483647.0) return std::numeric_limits<std::int32_t>::max();
  if (value <= -2147483648.0) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(value);
}

std::int64_t saturate_int64(double value) {
  if (std::isnan(value)) return 0;
  // 2^63 is the first double that does not fit.
  if (value >= 9223372036854775808.0) return std::numeric_limits<std::int64_t>::max();
  if (value <= -9223372036854775808.0) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(value);
}

}  // namespace standin
