// Variants: boxes, type codes and conversions.
#include "runtime/variants.h"

#include <cmath>
#include <cstring>

#include "runtime/blocks.h"
#include "runtime/currency.h"
#include "runtime/date.h"
#include "runtime/encodings.h"
#include "runtime/exceptions.h"
#include "runtime/ledger.h"
#include "runtime/strings.h"
#include "runtime/variant_box.h"

namespace standin {
namespace {

VariantBox* make_box(VariantType type) {
  auto* box = static_cast<VariantBox*>(blocks::allocate(sizeof(VariantBox)));
  box->header.block = {magic::variant, 1};
  box->header.serial = blocks::next_serial();
  box->type = type;
  if (Ledger* ledger = Ledger::active_one()) ledger->created(box, HandleKind::variant);
  return box;
}

ObjectRef adopt(VariantBox* box) {
  return ObjectRef::adopt(&box->header);
}

// The text of a string variant.
std::string text_of(const VariantBox& box) {
  return utf8(box.string);
}

// A number of whatever kind. Objects but Dates are 0.
double number_of(REALobject variant) {
  if (!is_box(variant)) {
    return variant != nullptr && is_date(variant) ? date_total_seconds(variant) : 0;
  }
  const VariantBox& box = *box_of(variant);
  switch (box.type) {
    case VariantType::integer:
      return box.integer;
    case VariantType::int64:
      return static_cast<double>(box.int64);
    case VariantType::single:
      return static_cast<double>(box.single);
    case VariantType::double_:
      return box.double_;
    case VariantType::currency:
      return static_cast<double>(box.int64) / real_currency_scale;
    case VariantType::boolean:
      return box.boolean ? 1 : 0;
    case VariantType::color:
      return box.color;
    case VariantType::string:
      return parse_number(text_of(box));
    case VariantType::date:
    case VariantType::object:
      return number_of(box.object);
    case VariantType::nil:
      break;
  }
  return 0;
}

std::uint32_t mix(std::uint64_t bits) {
  bits *= 0x9E3779B97F4A7C15U;
  return static_cast<std::uint32_t>(bits >> 32U);
}

std::uint32_t hash_bytes(std::string_view text) {
  std::uint32_t hash = 2166136261U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  return hash;
}

std::uint64_t bits_of(double value) {
  if (value == 0) value = 0;  // both zeros are one value
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

std::uint32_t hash_of_identity(REALobject object) {
  return mix(static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(object)));
}

StringRef ascii(std::string_view text) {
  return make_string(text, host_encoding::utf8);
}

}  // namespace

ObjectRef variant_from_boolean(bool value) {
  VariantBox* box = make_box(VariantType::boolean);
  box->boolean = value;
  return adopt(box);
}

ObjectRef variant_from_integer(std::int32_t value) {
  VariantBox* box = make_box(VariantType::integer);
  box->integer = value;
  return adopt(box);
}

ObjectRef variant_from_int64(std::int64_t value) {
  VariantBox* box = make_box(VariantType::int64);
  box->int64 = value;
  return adopt(box);
}

ObjectRef variant_from_single(float value) {
  VariantBox* box = make_box(VariantType::single);
  box->single = value;
  return adopt(box);
}

ObjectRef variant_from_double(double value) {
  VariantBox* box = make_box(VariantType::double_);
  box->double_ = value;
  return adopt(box);
}

ObjectRef variant_from_currency(std::int64_t scaled) {
  VariantBox* box = make_box(VariantType::currency);
  box->int64 = scaled;
  return adopt(box);
}

ObjectRef variant_from_color(std::uint32_t rgb) {
  VariantBox* box = make_box(VariantType::color);
  box->color = rgb & 0xFFFFFFU;
  return adopt(box);
}

ObjectRef variant_from_string(REALstring string) {
  VariantBox* box = make_box(VariantType::string);
  lock(string);
  box->string = string;
  return adopt(box);
}

ObjectRef box_object(REALobject object) {
  VariantBox* box =
      make_box(object != nullptr && is_date(object) ? VariantType::date : VariantType::object);
  lock(object);
  box->object = object;
  return adopt(box);
}

void release_box(REALobject handle) {
  VariantBox& box = *box_of(handle);
  if (box.type == VariantType::string) {
    unlock(box.string);
  } else if (box.type == VariantType::object || box.type == VariantType::date) {
    unlock(box.object);
  }
}

VariantType variant_type(REALobject variant) {
  if (variant == nullptr) return VariantType::nil;
  if (is_box(variant)) return box_of(variant)->type;
  return is_date(variant) ? VariantType::date : VariantType::object;
}

std::int32_t to_int32(REALobject variant) {
  if (is_box(variant)) {
    const VariantBox& box = *box_of(variant);
    if (box.type == VariantType::integer) return box.integer;
    if (box.type == VariantType::color) return static_cast<std::int32_t>(box.color);
  }
  return saturate_int32(number_of(variant));
}

std::int64_t to_int64(REALobject variant) {
  if (is_box(variant)) {
    const VariantBox& box = *box_of(variant);
    // Beyond 2^53 a double would not be exact.
    if (box.type == VariantType::int64) return box.int64;
    if (box.type == VariantType::currency) return box.int64 / currency_scale;
    if (box.type == VariantType::string) return parse_integer(text_of(box));
  }
  return saturate_int64(number_of(variant));
}

float to_single(REALobject variant) {
  if (is_box(variant) && box_of(variant)->type == VariantType::single) {
    return box_of(variant)->single;
  }
  return static_cast<float>(number_of(variant));
}

double to_double(REALobject variant) {
  return number_of(variant);
}

std::int64_t to_currency(REALobject variant) {
  if (is_box(variant) && box_of(variant)->type == VariantType::currency) {
    return box_of(variant)->int64;
  }
  return saturate_int64(std::round(number_of(variant) * real_currency_scale));
}

bool to_boolean(REALobject variant) {
  if (is_box(variant) && box_of(variant)->type == VariantType::string &&
      same_name(text_of(*box_of(variant)), "True")) {
    return true;
  }
  return number_of(variant) != 0;
}

std::uint32_t to_color(REALobject variant) {
  if (is_box(variant) && box_of(variant)->type == VariantType::string) {
    const std::string text = text_of(*box_of(variant));
    if (text.size() > 2 && same_name(text.substr(0, 2), "&c")) {
      return static_cast<std::uint32_t>(parse_integer("&h" + text.substr(2))) & 0xFFFFFFU;
    }
  }
  return static_cast<std::uint32_t>(to_int64(variant)) & 0xFFFFFFU;
}

StringRef to_string(REALobject variant) {
  if (variant == nullptr) return {};
  if (!is_box(variant)) return is_date(variant) ? ascii(date_sql_text(variant)) : StringRef();
  const VariantBox& box = *box_of(variant);
  switch (box.type) {
    case VariantType::string:
      return StringRef::share(box.string);
    case VariantType::integer:
      return ascii(std::to_string(box.integer));
    case VariantType::int64:
      return ascii(std::to_string(box.int64));
    case VariantType::single:
      return ascii(number_text(box.single));
    case VariantType::double_:
      return ascii(number_text(box.double_));
    case VariantType::currency:
      return ascii(currency_text(box.int64));
    case VariantType::boolean:
      return ascii(box.boolean ? "True" : "False");
    case VariantType::color:
      return ascii(color_text(box.color));
    case VariantType::date:
    case VariantType::object:
      return to_string(box.object);
    case VariantType::nil:
      break;
  }
  return {};
}

REALobject to_object(REALobject variant) {
  if (!is_box(variant)) return variant;
  const VariantType type = box_of(variant)->type;
  const bool holds_object = type == VariantType::object || type == VariantType::date;
  return holds_object ? box_of(variant)->object : variant;
}

std::uint32_t variant_hash(REALobject variant) {
  if (variant == nullptr) return 0;
  if (!is_box(variant)) return hash_of_identity(variant);
  const VariantBox& box = *box_of(variant);
  switch (box.type) {
    case VariantType::integer:
      return static_cast<std::uint32_t>(box.integer);
    case VariantType::int64:
    case VariantType::currency:
      return mix(static_cast<std::uint64_t>(box.int64));
    case VariantType::single:
      return mix(bits_of(static_cast<double>(box.single)));
    case VariantType::double_:
      return mix(bits_of(box.double_));
    case VariantType::boolean:
      return box.boolean ? 1 : 0;
    case VariantType::color:
      return box.color;
    case VariantType::string:
      return hash_bytes(text_of(box));
    case VariantType::date:
    case VariantType::object:
      return hash_of_identity(box.object);
    case VariantType::nil:
      break;
  }
  return 0;
}

bool is_numeric(REALobject variant) {
  switch (variant_type(variant)) {
    case VariantType::integer:
    case VariantType::int64:
    case VariantType::single:
    case VariantType::double_:
    case VariantType::currency:
      return true;
    case VariantType::string:
      return is_number_text(text_of(*box_of(variant)));
    default:
      return false;
  }
}

Value to_value(REALobject variant) {
  if (variant == nullptr) return {};
  if (!is_box(variant)) return Value::of_object(ObjectRef::share(variant));
  const VariantBox& box = *box_of(variant);
  switch (box.type) {
    case VariantType::integer:
      return Value::of_integer(box.integer);
    case VariantType::int64:
      return Value::of_int64(box.int64);
    case VariantType::single:
      return Value::of_single(box.single);
    case VariantType::double_:
      return Value::of_double(box.double_);
    case VariantType::currency:
      return Value::of_currency(box.int64);
    case VariantType::boolean:
      return Value::of_boolean(box.boolean);
    case VariantType::color:
      return Value::of_color(box.color);
    case VariantType::string:
      return Value::of_string(StringRef::share(box.string));
    case VariantType::date:
    case VariantType::object:
      return Value::of_object(ObjectRef::share(box.object));
    case VariantType::nil:
      break;
  }
  return {};
}

ObjectRef from_value(const Value& value) {
  switch (value.kind()) {
    case TypeKind::void_:
      return {};
    case TypeKind::boolean:
      return variant_from_boolean(value.as_boolean());
    case TypeKind::integer:
      return variant_from_integer(value.as_integer());
    case TypeKind::int64:
      return variant_from_int64(value.as_int64());
    case TypeKind::single:
      return variant_from_single(value.as_single());
    case TypeKind::double_:
      return variant_from_double(value.as_double());
    case TypeKind::currency:
      return variant_from_currency(value.as_currency());
    case TypeKind::color:
      return variant_from_color(value.as_color());
    case TypeKind::string:
      return variant_from_string(value.as_string());
    case TypeKind::variant:
    case TypeKind::object:
      return value.share_object();
    case TypeKind::array:
      break;
  }
  raise("TypeMismatchException", "a Variant cannot hold an array");
}

}  // namespace standin
