// The methods of a class as candidates for a call.
#ifndef ZRB_STANDIN_LANGUAGE_METHOD_CANDIDATES_H
#define ZRB_STANDIN_LANGUAGE_METHOD_CANDIDATES_H

#include <string_view>
#include <vector>

#include "language/overloads.h"
#include "runtime/classes.h"

namespace standin::language {

// A method beside each candidate.
struct MethodCandidates {
  std::vector<const MethodInfo*> methods;
  std::vector<Candidate> candidates;
};

// Those that can be called; a method whose last parameter is marked Assigns cannot.
MethodCandidates callable_methods(const ClassInfo& class_info, std::string_view name);
// Those that can be assigned to; the assigned value is the last parameter.
MethodCandidates assignable_methods(const ClassInfo& class_info, std::string_view name);

// The default values of the optional parameters that a call leaves out. Throws SourceError.
void append_defaults(const MethodInfo& method, std::vector<Code>& arguments, Position position);

}  // namespace standin::language

#endif
