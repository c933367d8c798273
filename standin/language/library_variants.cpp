// Library routines on Variants.
#include <array>

#include "language/library.h"
#include "runtime/classes.h"
#include "runtime/date.h"
#include "runtime/exceptions.h"
#include "runtime/variants.h"

namespace standin::language {
namespace {

Value var_type(const RoutineCall& call) {
  return Value::of_integer(static_cast<std::int32_t>(variant_type(call.object(0))));
}
Value is_numeric_variant(const RoutineCall& call) {
  return Value::of_boolean(is_numeric(call.object(0)));
}
Value is_null(const RoutineCall& call) {
  return Value::of_boolean(call.object(0) == nullptr);
}
Value hash(const RoutineCall& call) {
  return Value::of_integer(static_cast<std::int32_t>(variant_hash(call.object(0))));
}

Value boolean_value(const RoutineCall& call) {
  return Value::of_boolean(to_boolean(call.object(0)));
}
Value color_value(const RoutineCall& call) {
  return Value::of_color(to_color(call.object(0)));
}
Value currency_value(const RoutineCall& call) {
  return Value::of_currency(to_currency(call.object(0)));
}
Value double_value(const RoutineCall& call) {
  return Value::of_double(to_double(call.object(0)));
}
Value int32_value(const RoutineCall& call) {
  return Value::of_integer(to_int32(call.object(0)));
}
Value int64_value(const RoutineCall& call) {
  return Value::of_int64(to_int64(call.object(0)));
}
Value single_value(const RoutineCall& call) {
  return Value::of_single(to_single(call.object(0)));
}
Value string_value(const RoutineCall& call) {
  return Value::of_string(to_string(call.object(0)));
}

// Nil, or the object; a primitive is none.
Value object_value(const RoutineCall& call) {
  const VariantType type = variant_type(call.object(0));
  if (type == VariantType::nil) return Value::of_object(nullptr);
  if (type != VariantType::object && type != VariantType::date) {
    raise("TypeMismatchException", "the Variant holds no object");
  }
  return Value::of_object(ObjectRef::share(to_object(call.object(0))));
}

Value date_value(const RoutineCall& call) {
  Value object = object_value(call);
  if (object.as_object() != nullptr && !is_date(object.as_object())) {
    raise("TypeMismatchException", "the Variant holds no Date");
  }
  return object;
}

}  // namespace

std::span<const RoutineRow> variant_routines() {
  using enum RoutineForm;
  // clang-format off
  static constexpr auto rows = std::to_array<RoutineRow>({
      {"VarType",       function, "Variant", "Integer",  var_type},
      {"IsNumeric",     both,     "Variant", "Boolean",  is_numeric_variant},
      {"IsNull",        both,     "Variant", "Boolean",  is_null},
      {"Type",          method,   "Variant", "Integer",  var_type},
      {"Hash",          method,   "Variant", "Integer",  hash},
      {"BooleanValue",  method,   "Variant", "Boolean",  boolean_value},
      {"ColorValue",    method,   "Variant", "Color",    color_value},
      {"CurrencyValue", method,   "Variant", "Currency", currency_value},
      {"DateValue",     method,   "Variant", "Date",     date_value},
      {"DoubleValue",   method,   "Variant", "Double",   double_value},
      {"Int32Value",    method,   "Variant", "Integer",  int32_value},
      {"Int64Value",    method,   "Variant", "Int64",    int64_value},
      {"IntegerValue",  method,   "Variant", "Integer",  int32_value},
      {"LongValue",     method,   "Variant", "Int64",    int64_value},
      {"ObjectValue",   method,   "Variant", "Object",   object_value},
      {"SingleValue",   method,   "Variant", "Single",   single_value},
      {"StringValue",   method,   "Variant", "String",   string_value},
  });
  // clang-format on
  return rows;
}

}  // namespace standin::language
