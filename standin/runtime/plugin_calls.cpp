// Every routine takes the instance and up to four arguments, each a pointer or a 32-bit integer.
// The type of the routine is put together argument by argument, so that each call is made through
// exactly the type that the declaration implies.
#include "runtime/plugin_calls.h"

#include <stdexcept>
#include <type_traits>

#include "runtime/trace_scope.h"

namespace standin {
namespace {

bool is_word(const Value& value) {
  return value.kind() < TypeKind::string;
}

std::int32_t word_of(const Value& value) {
  switch (value.kind()) {
    case TypeKind::boolean:
      return value.as_boolean() ? 1 : 0;
    case TypeKind::color:
      return static_cast<std::int32_t>(value.as_color());
    case TypeKind::integer:
      return value.as_integer();
    default:
      throw std::logic_error("a value of this type cannot be passed to a plugin's routine");
  }
}

void* handle_of(const Value& value) {
  switch (value.kind()) {
    case TypeKind::string:
      return value.as_string();
    case TypeKind::array:
      return value.as_array();
    default:
      return value.as_object();
  }
}

template <class Result, class... Arguments>
Result call(void* routine, REALobject instance, std::span<const Value> rest,
            Arguments... arguments) {
  if (rest.empty()) {
    return reinterpret_cast<Result (*)(REALobject, Arguments...)>(routine)(instance, arguments...);
  }
  if constexpr (sizeof...(Arguments) < max_routine_arguments) {
    const Value& next = rest.front();
    rest = rest.subspan(1);
    if (is_word(next)) return call<Result>(routine, instance, rest, arguments..., word_of(next));
    return call<Result>(routine, instance, rest, arguments..., handle_of(next));
  } else {
    throw std::logic_error("too many arguments for a plugin's routine");
  }
}

// A Boolean result is the low byte only; what is above it means nothing.
bool low_byte_is_set(std::uint32_t word) {
  return (word & 0xFFU) != 0;
}

}  // namespace

bool can_be_passed(const Type& type) {
  return type.is_handle() || type.kind == TypeKind::integer || type.kind == TypeKind::boolean ||
         type.kind == TypeKind::color;
}

Value call_routine(void* routine, REALobject instance, std::span<const Value> arguments,
                   const Type& result) {
  switch (result.kind) {
    case TypeKind::void_:
      call<void>(routine, instance, arguments);
      return {};
    case TypeKind::boolean:
      return Value::of_boolean(low_byte_is_set(call<std::uint32_t>(routine, instance, arguments)));
    case TypeKind::integer:
      return Value::of_integer(call<std::int32_t>(routine, instance, arguments));
    case TypeKind::color:
      return Value::of_color(call<std::uint32_t>(routine, instance, arguments) & 0xFFFFFFU);
    case TypeKind::string:
      return Value::of_string(StringRef::adopt(call<REALstring>(routine, instance, arguments)));
    case TypeKind::variant:
      return Value::of_variant(ObjectRef::adopt(call<REALobject>(routine, instance, arguments)));
    case TypeKind::object:
      return Value::of_object(ObjectRef::adopt(call<REALobject>(routine, instance, arguments)));
    case TypeKind::array:
      return Value::of_array(ArrayRef::adopt(call<REALarray>(routine, instance, arguments)));
    default:
      throw std::logic_error("a plugin's routine cannot return this type");
  }
}

Value call_getter(const PropertyInfo& property, REALobject instance) {
  const Value param[] = {Value::of_integer(property.param)};
  return call_routine(property.getter, instance, param, property.type);
}

void call_setter(const PropertyInfo& property, REALobject instance, const Value& value) {
  const Value arguments[] = {Value::of_integer(property.param), value};
  call_routine(property.setter, instance, arguments, Type());
}

void call_destructor(const ClassInfo& class_info, REALobject instance) {
  PluginCallTrace trace(instance, "destructor", {});
  call_routine(class_info.destructor(), instance, {}, Type());
  trace.ends("");
}

}  // namespace standin
