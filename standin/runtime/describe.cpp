// Handles and values in words, for traces, ledgers and messages.
#include <cinttypes>
#include <cstdio>
#include <string>

#include "runtime/arrays.h"
#include "runtime/classes.h"
#include "runtime/date.h"
#include "runtime/encodings.h"
#include "runtime/strings.h"
#include "runtime/value.h"
#include "runtime/variant_box.h"
#include "runtime/variants.h"

namespace standin {
namespace {

std::string numbered(std::string_view what, std::uintptr_t serial) {
  return std::string(what) + " #" + std::to_string(serial);
}

// At most this many bytes of a text are shown.
constexpr std::size_t shown_text = 40;

std::string quoted(REALstring string) {
  std::string text = encodings::to_utf8_lossy(bytes(string), encoding(string));
  std::string result = "\"";
  std::size_t shown = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool starts_character = (byte & 0xC0U) != 0x80U;
    if (shown >= shown_text && starts_character) return result + "\"...";
    ++shown;
    if (byte < 0x20 || byte == 0x7F) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02X", byte);
      result += escape;
    } else {
      result += c;
    }
  }
  return result + "\"";
}

const char* type_name(VariantType type) {
  switch (type) {
    case VariantType::nil:
      return "Nil";
    case VariantType::integer:
      return "Integer";
    case VariantType::int64:
      return "Int64";
    case VariantType::single:
      return "Single";
    case VariantType::double_:
      return "Double";
    case VariantType::currency:
      return "Currency";
    case VariantType::date:
      return "Date";
    case VariantType::string:
      return "String";
    case VariantType::object:
      return "Object";
    case VariantType::boolean:
      return "Boolean";
    case VariantType::color:
      return "Color";
  }
  return "unknown";
}

const char* plural(ElementStorage storage) {
  switch (storage) {
    case ElementStorage::integer:
      return "integers";
    case ElementStorage::string:
      return "strings";
    case ElementStorage::object:
      return "objects";
    case ElementStorage::int64:
      return "64-bit integers";
    case ElementStorage::single:
      return "singles";
    case ElementStorage::double_:
      return "doubles";
    case ElementStorage::currency:
      return "currencies";
    case ElementStorage::boolean:
      return "booleans";
    case ElementStorage::color:
      return "colors";
  }
  return "elements";
}

}  // namespace

std::string describe(REALstring handle) {
  if (handle == nullptr) return "nil";
  if (handle->magic == magic::dead) return numbered("released string", handle->serial);
  return numbered("string", handle->serial) + " " + quoted(handle) + " (" +
         encodings::name(handle->encoding) + ")";
}

std::string describe(REALobject handle) {
  if (handle == nullptr) return "nil";
  if (handle->block.magic == magic::dead) return numbered("released object", handle->serial);
  if (handle->block.magic == magic::array) return describe(reinterpret_cast<REALarray>(handle));
  if (!is_box(handle)) return numbered(handle->class_info->name(), handle->serial);
  std::string result = numbered("variant", handle->serial) + " ";
  const VariantBox& box = *box_of(handle);
  result += type_name(box.type);
  result += " ";
  if (box.type == VariantType::string) return result + quoted(box.string);
  if (box.type == VariantType::object || box.type == VariantType::date) {
    return result + describe(box.object);
  }
  return result + utf8(to_string(handle).get());
}

std::string describe(REALarray handle) {
  if (handle == nullptr) return "nil";
  if (handle->block.magic == magic::dead) return numbered("released array", handle->serial);
  return numbered("array", handle->serial) + " of " + std::to_string(handle->count) + " " +
         plural(handle->storage);
}

std::string describe(const Value& value) {
  switch (value.kind()) {
    case TypeKind::void_:
      return "";
    case TypeKind::boolean:
      return value.as_boolean() ? "True" : "False";
    case TypeKind::integer:
      return std::to_string(value.as_integer());
    case TypeKind::int64:
      return std::to_string(value.as_int64());
    case TypeKind::single:
      return number_text(value.as_single());
    case TypeKind::double_:
      return number_text(value.as_double());
    case TypeKind::currency:
      return currency_text(value.as_currency());
    case TypeKind::color:
      return color_text(value.as_color());
    case TypeKind::string:
      return describe(value.as_string());
    case TypeKind::variant:
    case TypeKind::object:
      return describe(value.as_object());
    case TypeKind::array:
      return describe(value.as_array());
  }
  return "";
}

}  // namespace standin
