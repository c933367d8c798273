// The code of calls: of the program's routines, of methods, of library routines.
#ifndef ZRB_STANDIN_LANGUAGE_CALLS_H
#define ZRB_STANDIN_LANGUAGE_CALLS_H

#include <cstddef>
#include <vector>

#include "language/code.h"
#include "language/library.h"
#include "runtime/classes.h"

namespace standin::language {

// More arguments than this are refused by the checker.
inline constexpr std::size_t most_arguments = 16;

// Arguments are of the parameters' types; those for ByRef parameters are variables. A function may
// be called before its body is there.
Code make_function_call(const Function& function, std::vector<Code> arguments,
                        std::vector<bool> by_ref);

// Calling a method of Nil raises NilObjectException.
Code make_method_call(Code object, const MethodInfo& method, std::vector<Code> arguments);
// The assigned value is the last argument; no result.
Code make_setter_call(Code object, const MethodInfo& method, std::vector<Code> arguments);
Code make_property_read(Code object, const PropertyInfo& property);
Code make_property_write(Code object, const PropertyInfo& property, Code value);

// The element type is that of the array concerned, for routines on arrays.
Code make_routine_call(const Routine& routine, const Type& result, const Type& element,
                       std::vector<Code> arguments);

// A new instance, and the constructor called on it; null for a class that has none.
Code make_new_object(const ClassInfo& class_info, const MethodInfo* constructor,
                     std::vector<Code> arguments);

}  // namespace standin::language

#endif
