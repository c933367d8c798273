// Calls of a plugin's routines by the platform's calling convention: the only casts to routine
// types.
#ifndef ZRB_STANDIN_RUNTIME_PLUGIN_CALLS_H
#define ZRB_STANDIN_RUNTIME_PLUGIN_CALLS_H

#include <cstddef>
#include <span>
#include <string>

#include "runtime/classes.h"

namespace standin {

// Beyond the instance.
inline constexpr std::size_t max_routine_arguments = 4;

// Whether values of that type can be arguments and results of routines: handles, and what fits into
// 32 bits of an integer register.
bool can_be_passed(const Type& type);

// A routine's result carries one lock for the host, which the value takes over. What the routine
// throws passes through; a pending exception is left where it is.
Value call_routine(void* routine, REALobject instance, std::span<const Value> arguments,
                   const Type& result);

Value call_getter(const PropertyInfo& property, REALobject instance);
void call_setter(const PropertyInfo& property, REALobject instance, const Value& value);

void call_destructor(const ClassInfo& class_info, REALobject instance);

}  // namespace standin

#endif
