// Numbers as `Format` writes them.
#include "language/number_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <vector>

#include "runtime/variants.h"

namespace standin::language {
namespace {

std::vector<std::string_view> sections(std::string_view patterns) {
  std::vector<std::string_view> found;
  std::size_t start = 0;
  for (std::size_t at = 0; at <= patterns.size(); ++at) {
    if (at < patterns.size() && patterns[at] == '\\') {
      ++at;
    } else if (at >= patterns.size() || patterns[at] == ';') {
      found.push_back(patterns.substr(start, at - start));
      start = at + 1;
    }
  }
  if (start < patterns.size()) found.push_back(patterns.substr(start));
  return found;
}

bool is_digit_place(char c) {
  return c == '#' || c == '0';
}

// A pattern in its parts: what stands before the digits, the digits, and what stands after.
struct Pattern {
  std::string prefix, suffix;
  int least_whole = 0;  // digits before the point, at least
  int least_decimals = 0;
  int most_decimals = 0;
  bool grouped = false;
  bool percent = false;
  bool has_sign = false;
  bool plus = false;  // the sign is shown for positive numbers too
  int exponent_digits = 0;
  char exponent_letter = 'E';
  bool exponent_plus = false;
  bool has_digits = false;
};

Pattern parse(std::string_view text) {
  Pattern pattern;
  bool after_point = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    const char following = at + 1 < text.size() ? text[at + 1] : '\0';
    std::string& around = pattern.has_digits ? pattern.suffix : pattern.prefix;
    if (is_digit_place(c)) {
      pattern.has_digits = true;
      if (after_point) {
        ++pattern.most_decimals;
        if (c == '0') pattern.least_decimals = pattern.most_decimals;
      } else if (c == '0' || pattern.least_whole > 0) {
        ++pattern.least_whole;
      }
    } else if (c == '.') {
      after_point = true;
      pattern.has_digits = true;
    } else if (c == ',' && pattern.has_digits && !after_point) {
      pattern.grouped = true;
    } else if ((c == 'E' || c == 'e') && pattern.has_digits &&
               (following == '+' || following == '-')) {
      pattern.exponent_letter = c;
      pattern.exponent_plus = following == '+';
      ++at;
      while (at + 1 < text.size() && is_digit_place(text[at + 1])) {
        ++pattern.exponent_digits;
        ++at;
      }
      pattern.exponent_digits = std::max(pattern.exponent_digits, 1);
    } else if ((c == '+' || c == '-') && !pattern.has_sign) {
      pattern.has_sign = true;
      pattern.plus = c == '+';
      around += '\x01';  // where the sign goes
    } else if (c == '%') {
      pattern.percent = true;
      around += c;
    } else if (c == '\\' && following != '\0') {
      around += following;
      ++at;
    } else {
      around += c;
    }
  }
  return pattern;
}

// One more in the last place of a number written in digits.
void round_up(std::string& text) {
  for (std::size_t at = text.size(); at-- > 0;) {
    if (text[at] == '.') continue;
    if (text[at] != '9') {
      ++text[at];
      return;
    }
    text[at] = '0';
  }
  text.insert(0, "1");
}

// Not negative, with so many decimals; halves are rounded up, as Round does. No double has more
// decimals than are written out here, so that a half is told from what only looks like one.
std::string fixed(double number, int decimals) {
  constexpr int all_decimals = 1074;
  std::array<char, 400 + all_decimals> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                          std::chars_format::fixed, all_decimals);
  const std::string_view exact(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const std::size_t point = exact.find('.');
  const auto places = static_cast<std::size_t>(std::min(decimals, 100));
  std::string text(exact.substr(0, places == 0 ? point : point + 1 + places));
  if (exact[point + 1 + places] >= '5') round_up(text);
  return text;
}

std::string digits(double number, const Pattern& pattern) {
  std::string text = fixed(number, pattern.most_decimals);
  const std::size_t point = std::min(text.find('.'), text.size());
  std::string whole = text.substr(0, point);
  std::string decimals = point < text.size() ? text.substr(point + 1) : "";
  while (static_cast<int>(decimals.size()) > pattern.least_decimals && decimals.ends_with('0')) {
    decimals.pop_back();
  }
  if (whole == "0" && pattern.least_whole == 0) whole.clear();
  while (static_cast<int>(whole.size()) < pattern.least_whole) whole.insert(0, "0");
  if (pattern.grouped) {
    for (std::size_t at = whole.size(); at > 3; at -= 3) whole.insert(at - 3, ",");
  }
  if (!decimals.empty()) whole += "." + decimals;
  return whole;
}

std::string scientific(double number, const Pattern& pattern) {
  const int places = std::max(pattern.least_whole, 1);
  int exponent = number == 0 ? 0 : static_cast<int>(std::floor(std::log10(number))) - (places - 1);
  double mantissa = number / std::pow(10.0, exponent);
  // Rounding may carry into one more digit.
  if (std::stod(fixed(mantissa, pattern.most_decimals)) >= std::pow(10.0, places)) {
    ++exponent;
    mantissa /= 10;
  }
  std::string power = std::to_string(std::abs(exponent));
  while (static_cast<int>(power.size()) < pattern.exponent_digits) power.insert(0, "0");
  const char* sign = exponent < 0 ? "-" : pattern.exponent_plus ? "+" : "";
  return digits(mantissa, pattern) + pattern.exponent_letter + sign + power;
}

}  // namespace

std::string format_number(double number, std::string_view patterns) {
  if (std::isnan(number)) return number_text(number);
  const std::vector<std::string_view> all = sections(patterns);
  if (all.empty()) return "";
  const bool negative = number < 0;
  std::size_t chosen = 0;
  if (negative && all.size() > 1 && !all[1].empty()) chosen = 1;
  if (number == 0 && all.size() > 2) chosen = 2;
  const Pattern pattern = parse(all[chosen]);

  double size = std::fabs(number);
  if (pattern.percent) size *= 100;
  std::string body;
  if (std::isinf(size)) {
    body = number_text(size);
  } else if (pattern.exponent_digits > 0) {
    body = scientific(size, pattern);
  } else if (pattern.has_digits) {
    body = digits(size, pattern);
  }
  std::string text = pattern.prefix + body + pattern.suffix;
  const std::string sign = negative && chosen != 1 ? "-" : pattern.plus && !negative ? "+" : "";
  const std::size_t place = text.find('\x01');
  if (place != std::string::npos) return text.replace(place, 1, chosen == 1 ? "-" : sign);
  // What rounds to zero has no sign.
  const bool shows_digit = body.find_first_of("123456789i") != std::string::npos;
  return negative && chosen != 1 && shows_digit ? "-" + text : text;
}

}  // namespace standin::language
