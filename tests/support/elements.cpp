// Making and reading elements with the stand-in host's own means.
#include "support/elements.h"

#include <cstdio>
#include <cstdlib>

#include "runtime/strings.h"
#include "runtime/variants.h"

namespace support {
namespace {

// Ascending indices give ascending texts, negative ones included.
std::string text_of(int index) {
  char text[32];
  std::snprintf(text, sizeof text, "k%06d", 100000 + index);
  return text;
}

std::string quoted(REALstring string) {
  char encoding[16];
  std::snprintf(encoding, sizeof encoding, "%X", standin::encoding(string));
  return "\"" + std::string(standin::bytes(string)) + "\" in " + encoding;
}

std::string address(const void* handle) {
  char text[32];
  std::snprintf(text, sizeof text, "%p", handle);
  return text;
}

std::string describe_variant(REALobject variant) {
  switch (standin::variant_type(variant)) {
    case VariantType::nil:
      return "nil";
    case VariantType::integer:
      return "Integer " + std::to_string(standin::to_int32(variant));
    case VariantType::int64:
      return "Int64 " + std::to_string(standin::to_int64(variant));
    case VariantType::single:
      return "Single " + std::to_string(standin::to_single(variant));
    case VariantType::double_:
      return "Double " + std::to_string(standin::to_double(variant));
    case VariantType::currency:
      return "Currency " + std::to_string(standin::to_currency(variant));
    case VariantType::boolean:
      return standin::to_boolean(variant) ? "True" : "False";
    case VariantType::color:
      return "Color " + std::to_string(standin::to_color(variant));
    case VariantType::string:
      return "String " + quoted(standin::to_string(variant).get());
    case VariantType::date:
    case VariantType::object:
      break;
  }
  return "object at " + address(variant);
}

}  // namespace

Element element(ElementType type, int index) {
  switch (type) {
    case ElementType::integer:
      return index;
    case ElementType::string:
      return string(text_of(index));
    case ElementType::variant:
      return variant_integer(index);
  }
  std::abort();
}

Element key(const ContainerClass& container_class, int index) {
  return element(container_class.key, index);
}

Element value(const ContainerClass& container_class, int index) {
  // Sets have no values; an integer is in no one's way.
  return element(container_class.value.value_or(ElementType::integer), index);
}

Element neutral(ElementType type) {
  switch (type) {
    case ElementType::integer:
      return 0;
    case ElementType::string:
      return standin::StringRef();
    case ElementType::variant:
      return standin::ObjectRef();
  }
  std::abort();
}

Element string(std::string_view bytes, std::uint32_t encoding) {
  return standin::make_string(bytes, encoding);
}

Element variant_integer(std::int32_t value) {
  return standin::variant_from_integer(value);
}

Element variant_string(std::string_view bytes, std::uint32_t encoding) {
  return standin::variant_from_string(standin::make_string(bytes, encoding).get());
}

std::string describe(const Element& element) {
  if (const auto* integer = std::get_if<std::int32_t>(&element)) return std::to_string(*integer);
  if (handle(element) == nullptr) return "nil";
  if (const auto* string = std::get_if<standin::StringRef>(&element)) return quoted(string->get());
  return describe_variant(std::get<standin::ObjectRef>(element).get());
}

const void* handle(const Element& element) {
  return with_raw(element, [](auto raw) -> const void* {
    if constexpr (std::is_same_v<decltype(raw), std::int32_t>) {
      return nullptr;
    } else {
      return raw;
    }
  });
}

std::int64_t locks(const Element& element) {
  return with_raw(element, [](auto raw) -> std::int64_t {
    if constexpr (std::is_same_v<decltype(raw), std::int32_t>) {
      return 0;
    } else {
      return standin::lock_count(raw);
    }
  });
}

std::int64_t one_lock(const Element& element) {
  return handle(element) == nullptr ? 0 : 1;
}

bool is_neutral(const Element& element) {
  const auto* integer = std::get_if<std::int32_t>(&element);
  return integer != nullptr ? *integer == 0 : handle(element) == nullptr;
}

}  // namespace support
