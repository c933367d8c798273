// Names of types, and array types, which are made once each.
#include "runtime/types.h"

#include <algorithm>
#include <deque>

#include "runtime/classes.h"

namespace standin {
namespace {

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

struct BuiltinType {
  std::string_view name;
  TypeKind kind;
};

// The first name of a kind is the one that messages use.
constexpr BuiltinType builtin_types[] = {
    {"Boolean", TypeKind::boolean},   {"Integer", TypeKind::integer}, {"Int32", TypeKind::integer},
    {"Int64", TypeKind::int64},       {"Single", TypeKind::single},   {"Double", TypeKind::double_},
    {"Currency", TypeKind::currency}, {"Color", TypeKind::color},     {"String", TypeKind::string},
    {"Variant", TypeKind::variant},   {"Object", TypeKind::object},
};

}  // namespace

Type Type::array_of(const Type& element) {
  // A deque keeps its elements in place.
  static std::deque<Type> elements;
  auto found = std::find(elements.begin(), elements.end(), element);
  if (found == elements.end()) found = elements.insert(elements.end(), element);
  return {TypeKind::array, nullptr, &*found};
}

std::string name(const Type& type) {
  if (type.kind == TypeKind::array) return name(*type.element) + "()";
  if (type.class_info != nullptr) return type.class_info->name();
  for (const BuiltinType& builtin : builtin_types) {
    if (builtin.kind == type.kind) return std::string(builtin.name);
  }
  return "";
}

std::optional<Type> builtin_type(std::string_view name) {
  for (const BuiltinType& builtin : builtin_types) {
    if (same_name(builtin.name, name)) return Type::of(builtin.kind);
  }
  return std::nullopt;
}

bool same_name(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lower(x) == lower(y); });
}

std::string lower_name(std::string_view name) {
  std::string result(name);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

}  // namespace standin
