// Writing literals.
#include "model/literals.h"

#include <cstdlib>
#include <limits>

namespace model {
namespace {

using support::ElementType;

std::string integer_literal(ElementType type, std::int64_t number) {
  const std::string digits = std::to_string(number);
  // The digits of the smallest one, before the minus, are no Integer.
  const bool is_smallest = number == std::numeric_limits<std::int32_t>::min();
  return is_smallest && type == ElementType::variant ? "AsInteger(" + digits + ")" : digits;
}

std::string text_literal(const Given& given) {
  if (!given.other_form || given.content.text.empty()) return string_literal(given.content.text);
  return "ConvertEncoding(" + string_literal(given.content.text) + ", Encodings.UTF16)";
}

}  // namespace

std::string type_name(ElementType type) {
  switch (type) {
    case ElementType::integer:
      return "Integer";
    case ElementType::string:
      return "String";
    case ElementType::variant:
      return "Variant";
  }
  std::abort();
}

std::string boolean_literal(bool value) {
  return value ? "True" : "False";
}

std::string string_literal(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) result += c == '"' ? "\"\"" : std::string(1, c);
  return result + "\"";
}

std::string literal(ElementType type, const Given& given) {
  switch (given.content.kind) {
    case ContentKind::nil:
      return "AsNil";  // Nil alone could be an iterator, too
    case ContentKind::integer:
      return integer_literal(type, given.content.number);
    case ContentKind::int64:
      return "AsInt64(" + std::to_string(given.content.number) + ")";
    case ContentKind::half:
    case ContentKind::boolean:
      // As it is shown, behind the type code.
      return shown(ElementType::string, given.content);
    case ContentKind::text:
      return text_literal(given);
  }
  std::abort();
}

std::string comment(std::string_view text) {
  std::string result = "' ";
  for (const char c : text) result += c == '\n' ? "\n' " : std::string(1, c);
  return result + "\n";
}

void replace_all(std::string& text, const std::string& placeholder, const std::string& word) {
  for (std::size_t at = text.find(placeholder); at != std::string::npos;
       at = text.find(placeholder, at + word.size())) {
    text.replace(at, placeholder.size(), word);
  }
}

}  // namespace model
