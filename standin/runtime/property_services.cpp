// The entry points that read and write properties by name. An object's own properties come first,
// then those that every variant has.
#include <optional>

#include "runtime/guarded.h"
#include "runtime/services.h"
#include "runtime/strings.h"
#include "runtime/variants.h"

namespace standin::services {
namespace {

struct VariantProperty {
  std::string_view name;
  Value (*read)(REALobject variant);
};

constexpr VariantProperty variant_properties[] = {
    {"Type",
     [](REALobject v) { return Value::of_integer(static_cast<std::int32_t>(variant_type(v))); }},
    {"BooleanValue", [](REALobject v) { return Value::of_boolean(to_boolean(v)); }},
    {"ColorValue", [](REALobject v) { return Value::of_color(to_color(v)); }},
    {"CurrencyValue", [](REALobject v) { return Value::of_currency(to_currency(v)); }},
    {"DoubleValue", [](REALobject v) { return Value::of_double(to_double(v)); }},
    {"Hash",
     [](REALobject v) { return Value::of_integer(static_cast<std::int32_t>(variant_hash(v))); }},
    {"Int32Value", [](REALobject v) { return Value::of_integer(to_int32(v)); }},
    {"Int64Value", [](REALobject v) { return Value::of_int64(to_int64(v)); }},
    {"IntegerValue", [](REALobject v) { return Value::of_integer(to_int32(v)); }},
    {"LongValue", [](REALobject v) { return Value::of_int64(to_int64(v)); }},
    {"ObjectValue", [](REALobject v) { return Value::of_object(ObjectRef::share(to_object(v))); }},
    {"SingleValue", [](REALobject v) { return Value::of_single(to_single(v)); }},
    {"StringValue", [](REALobject v) { return Value::of_string(to_string(v)); }},
};

// Nothing if there is no such property, or reading it raised.
std::optional<Value> read(REALobject object, const char* name) {
  if (object == nullptr || name == nullptr) return std::nullopt;
  return guarded([&]() -> std::optional<Value> {
    const ClassInfo* class_info = class_of(object);
    const PropertyInfo* property = class_info == nullptr ? nullptr : class_info->property(name);
    if (property != nullptr) return read_property(*property, object);
    for (const VariantProperty& variant_property : variant_properties) {
      if (same_name(variant_property.name, name)) return variant_property.read(object);
    }
    return std::nullopt;
  });
}

// Each getter reads properties of its own type and of narrower ones.

std::optional<std::int32_t> int32_of(const Value& value) {
  switch (value.kind()) {
    case TypeKind::integer:
      return value.as_integer();
    case TypeKind::boolean:
      return value.as_boolean() ? 1 : 0;
    case TypeKind::color:
      return static_cast<std::int32_t>(value.as_color());
    default:
      return std::nullopt;
  }
}

std::optional<std::int64_t> int64_of(const Value& value) {
  if (value.kind() == TypeKind::int64) return value.as_int64();
  if (value.kind() == TypeKind::currency) return value.as_currency();
  return int32_of(value);
}

std::optional<float> single_of(const Value& value) {
  if (value.kind() == TypeKind::single) return value.as_single();
  return std::nullopt;
}

std::optional<double> double_of(const Value& value) {
  if (value.kind() == TypeKind::double_) return value.as_double();
  return single_of(value);
}

template <class Result, class Convert>
HostBoolean read_as(REALobject object, const char* name, Result* result, Convert convert) {
  const std::optional<Value> value = read(object, name);
  if (!value || result == nullptr) return HostBoolean::no;
  const auto converted = convert(*value);
  if (converted) *result = *converted;
  return boolean(converted.has_value());
}

}  // namespace

HostBoolean get_property_int32(REALobject object, const char* name, std::int32_t* value) {
  return read_as(object, name, value, int32_of);
}
HostBoolean get_property_int64(REALobject object, const char* name, std::int64_t* value) {
  return read_as(object, name, value, int64_of);
}
HostBoolean get_property_single(REALobject object, const char* name, float* value) {
  return read_as(object, name, value, single_of);
}
HostBoolean get_property_double(REALobject object, const char* name, double* value) {
  return read_as(object, name, value, double_of);
}

HostBoolean get_property_string(REALobject object, const char* name, REALstring* result) {
  const std::optional<Value> value = read(object, name);
  if (!value || result == nullptr || value->kind() != TypeKind::string) return HostBoolean::no;
  *result = value->share_string().release();
  return HostBoolean::yes;
}

HostBoolean get_property_object(REALobject object, const char* name, REALobject* result) {
  const std::optional<Value> value = read(object, name);
  if (!value || result == nullptr) return HostBoolean::no;
  if (value->kind() != TypeKind::object && value->kind() != TypeKind::variant) {
    return HostBoolean::no;
  }
  *result = value->as_object();
  return HostBoolean::yes;
}

HostBoolean set_property_string(REALobject object, const char* name, REALstring value) {
  const ClassInfo* class_info = class_of(object);
  if (class_info == nullptr || name == nullptr) return HostBoolean::no;
  const PropertyInfo* property = class_info->property(name);
  if (property == nullptr || !property->is_writable() || property->type.kind != TypeKind::string) {
    return HostBoolean::no;
  }
  const bool written = guarded([&] {
    write_property(*property, object, Value::of_string(StringRef::share(value)));
    return true;
  });
  return boolean(written);
}

}  // namespace standin::services
