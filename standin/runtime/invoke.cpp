// Calls of members, native or registered.
#include "runtime/invoke.h"

#include <stdexcept>

#include "runtime/exceptions.h"
#include "runtime/host.h"
#include "runtime/plugin_calls.h"
#include "runtime/trace_scope.h"

namespace standin {
namespace {

bool fits(const Value& value, const Type& type) {
  const bool both_objects =
      (value.kind() == TypeKind::object || value.kind() == TypeKind::variant) &&
      (type.kind == TypeKind::object || type.kind == TypeKind::variant);
  return value.kind() == type.kind || both_objects;
}

[[noreturn]] void refuse(const MethodInfo& method, const std::string& problem) {
  throw std::logic_error(method.owner->name() + "." + method.declaration.text + ": " + problem);
}

// Optional parameters may be left out at the end.
void check_arguments(const MethodInfo& method, std::span<const Value> arguments) {
  const std::vector<Parameter>& parameters = method.declaration.parameters;
  if (arguments.size() > parameters.size()) refuse(method, "too many arguments");
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    if (i >= arguments.size()) {
      if (!parameters[i].optional) refuse(method, "too few arguments");
    } else if (!fits(arguments[i], parameters[i].type)) {
      refuse(method, "argument " + std::to_string(i + 1) + " is not " + name(parameters[i].type));
    }
  }
}

// A routine raises without unwinding: what it left behind becomes a C++ exception here, once the
// routine's neutral result has been let go.
void throw_pending(PluginCallTrace& trace) {
  Host* host = Host::current_or_null();
  if (host == nullptr || !host->has_pending_exception()) return;
  HostException exception(host->take_pending_exception());
  if (trace.is_on()) trace.ends(std::string("raises ") + exception.what());
  throw HostException(std::move(exception));
}

Value call_traced(void* routine, const MethodInfo& method, REALobject instance,
                  std::span<const Value> arguments, const Type& result_type,
                  std::string_view suffix) {
  PluginCallTrace trace(instance, method.declaration.name + std::string(suffix), arguments);
  Value result = call_routine(routine, instance, arguments, result_type);
  throw_pending(trace);
  if (trace.is_on()) trace.ends(describe(result));
  return result;
}

}  // namespace

Value invoke(const MethodInfo& method, REALobject instance, std::span<const Value> arguments) {
  check_arguments(method, arguments);
  if (instance == nullptr) raise("NilObjectException");
  if (method.native != nullptr) return method.native(instance, arguments);
  return call_traced(method.function, method, instance, arguments, method.declaration.result, "");
}

Value invoke_setter(const MethodInfo& method, REALobject instance,
                    std::span<const Value> arguments_and_value) {
  if (method.declaration.has_assigns()) return invoke(method, instance, arguments_and_value);
  if (!method.is_assignable()) refuse(method, "is not assignable");
  if (arguments_and_value.empty()) refuse(method, "no value to assign");
  check_arguments(method, arguments_and_value.first(arguments_and_value.size() - 1));
  if (!fits(arguments_and_value.back(), method.declaration.result)) {
    refuse(method, "the assigned value is not " + name(method.declaration.result));
  }
  if (instance == nullptr) raise("NilObjectException");
  if (method.native_setter != nullptr) return method.native_setter(instance, arguments_and_value);
  return call_traced(method.setter, method, instance, arguments_and_value, Type(), " =");
}

Value read_property(const PropertyInfo& property, REALobject instance) {
  if (instance == nullptr) raise("NilObjectException");
  if (property.native_getter != nullptr) return property.native_getter(instance);
  PluginCallTrace trace(instance, property.name, {});
  Value result = call_getter(property, instance);
  throw_pending(trace);
  if (trace.is_on()) trace.ends(describe(result));
  return result;
}

void write_property(const PropertyInfo& property, REALobject instance, const Value& value) {
  if (!property.is_writable() || !fits(value, property.type)) {
    throw std::logic_error(property.owner->name() + "." + property.name +
                           (property.is_writable() ? ": the value is not " + name(property.type)
                                                   : std::string(": is read-only")));
  }
  if (instance == nullptr) raise("NilObjectException");
  if (property.native_setter != nullptr) return property.native_setter(instance, value);
  PluginCallTrace trace(instance, property.name + " =", std::span(&value, 1));
  call_setter(property, instance, value);
  throw_pending(trace);
  trace.ends("");
}

}  // namespace standin
