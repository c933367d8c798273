// The methods of a class as candidates for a call.
#include "language/method_candidates.h"

#include <utility>

#include "language/constants.h"
#include "language/conversions.h"
#include "language/parser.h"
#include "runtime/types.h"

namespace standin::language {
namespace {

Candidate candidate_of(const MethodInfo& method) {
  Candidate candidate;
  candidate.description = method.declaration.text;
  for (const Parameter& parameter : method.declaration.parameters) {
    candidate.formals.push_back({parameter.type, parameter.by_ref, parameter.optional});
  }
  return candidate;
}

// "value(key as string) = variant" for "value(key as string) as variant".
std::string with_assigned_result(const std::string& declaration) {
  const std::size_t as = lower_name(declaration).rfind(" as ");
  return declaration.substr(0, as) + " = " + declaration.substr(as + 4);
}

}  // namespace

MethodCandidates callable_methods(const ClassInfo& class_info, std::string_view name) {
  MethodCandidates found;
  for (const MethodInfo* method : class_info.overloads(name)) {
    if (method->declaration.has_assigns()) continue;
    found.methods.push_back(method);
    found.candidates.push_back(candidate_of(*method));
  }
  return found;
}

MethodCandidates assignable_methods(const ClassInfo& class_info, std::string_view name) {
  MethodCandidates found;
  for (const MethodInfo* method : class_info.overloads(name)) {
    if (!method->is_assignable()) continue;
    Candidate candidate = candidate_of(*method);
    candidate.assigns = true;
    if (!method->declaration.has_assigns()) {
      candidate.formals.push_back({method->declaration.result});
      candidate.description = with_assigned_result(method->declaration.text);
    }
    found.methods.push_back(method);
    found.candidates.push_back(std::move(candidate));
  }
  return found;
}

void append_defaults(const MethodInfo& method, std::vector<Code>& arguments, Position position) {
  const std::vector<Parameter>& parameters = method.declaration.parameters;
  for (std::size_t i = arguments.size(); i < parameters.size(); ++i) {
    const ExpressionPointer syntax = parse_expression(parameters[i].default_text);
    Code value = check_constant(*syntax, nullptr, "an Optional parameter");
    arguments.push_back(convert(std::move(value), parameters[i].type, position));
  }
}

}  // namespace standin::language
