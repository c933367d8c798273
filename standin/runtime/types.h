// The host language's types, as declarations name them.
#ifndef ZRB_STANDIN_RUNTIME_TYPES_H
#define ZRB_STANDIN_RUNTIME_TYPES_H

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace standin {

class ClassInfo;

// Those from `string` on are handles.
enum class TypeKind : std::uint8_t {
  void_,
  boolean,
  integer,  // Integer and Int32 are one type
  int64,
  single,
  double_,
  currency,
  color,
  string,
  variant,
  object,
  array,
};

// A small value; equal types compare equal.
struct Type {
  TypeKind kind = TypeKind::void_;
  const ClassInfo* class_info = nullptr;  // of an `object`; null is plain Object
  const Type* element = nullptr;          // of an `array`; lives for ever

  static Type of(TypeKind kind) { return {kind, nullptr, nullptr}; }
  static Type of_class(const ClassInfo* class_info) {
    return {TypeKind::object, class_info, nullptr};
  }
  static Type array_of(const Type& element);

  bool is_handle() const { return kind >= TypeKind::string; }
  // Integers, Int64, Single, Double, Currency.
  bool is_number() const { return kind >= TypeKind::integer && kind <= TypeKind::currency; }
  friend bool operator==(const Type& a, const Type& b) = default;
};

// The language's name: "Integer", "String()", "Dictionary"; "" for `void_`.
std::string name(const Type& type);

// The type that a name means, without "()"; nothing for an unknown name.
using TypeResolver = std::function<std::optional<Type>(std::string_view name)>;

// The types that are no classes ("Integer", "Int32", "Variant", "Object", …), in any case.
std::optional<Type> builtin_type(std::string_view name);

// Comparison and lower case of names: ASCII only, as the language does it.
bool same_name(std::string_view a, std::string_view b);
std::string lower_name(std::string_view name);

}  // namespace standin

#endif
