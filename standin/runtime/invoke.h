// Calling methods and properties, of registered and of native classes alike.
#ifndef ZRB_STANDIN_RUNTIME_INVOKE_H
#define ZRB_STANDIN_RUNTIME_INVOKE_H

#include <span>

#include "runtime/classes.h"

namespace standin {

// Calls a method on an instance. Arguments are lent for the call; they must be as many and of the
// kinds that the declaration says (otherwise std::logic_error: callers convert first). The result
// is owned by the caller; kind `void_` if there is none.
//
// If the call left a pending exception, it is taken and thrown as HostException. A C++ exception
// that passes through the routine passes through here too, and leaves a pending exception as it is.
Value invoke(const MethodInfo& method, REALobject instance, std::span<const Value> arguments = {});

// Calls the setter of an assignable declaration: the arguments, then the assigned value. For a
// method whose last parameter is marked Assigns, the same as `invoke`.
Value invoke_setter(const MethodInfo& method, REALobject instance,
                    std::span<const Value> arguments_and_value);

Value read_property(const PropertyInfo& property, REALobject instance);
// std::logic_error for a read-only property.
void write_property(const PropertyInfo& property, REALobject instance, const Value& value);

}  // namespace standin

#endif
