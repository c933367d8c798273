// What a program's names mean outside of its routines: types, and the routines themselves.
#include "language/declarations.h"

#include <algorithm>
#include <array>
#include <utility>

#include "language/calls.h"
#include "language/constants.h"
#include "language/conversions.h"
#include "language/text_encoding.h"

namespace standin::language {
namespace {

// Types of the real host that are left out.
constexpr auto refused_types =
    std::to_array<std::string_view>({"int8",         "int16",           "uint8",
                                     "uint16",       "uint32",          "uint64",
                                     "byte",         "short",           "ptr",
                                     "cstring",      "pstring",         "wstring",
                                     "cfstringref",  "ostype",          "windowptr",
                                     "memoryblock",  "folderitem",      "picture",
                                     "binarystream", "textinputstream", "textoutputstream",
                                     "pair",         "regex",           "thread",
                                     "timer"});

std::string parameter_text(const ParameterSyntax& parameter) {
  std::string text = parameter.by_ref ? "ByRef " : parameter.assigns ? "Assigns " : "";
  if (parameter.default_value) text += "Optional ";
  text += parameter.name + (parameter.type.is_array ? "()" : "") + " As " + parameter.type.name;
  return text;
}

std::string head_text(const FunctionSyntax& syntax) {
  std::string parameters;
  for (const ParameterSyntax& parameter : syntax.parameters) {
    parameters += (parameters.empty() ? "" : ", ") + parameter_text(parameter);
  }
  std::string text = (syntax.result ? "Function " : "Sub ") + syntax.name + "(" + parameters + ")";
  if (syntax.result) text += " As " + syntax.result->name + (syntax.result->is_array ? "()" : "");
  return text;
}

}  // namespace

Type Declarations::type(const TypeSyntax& syntax) const {
  Type found;
  if (const auto builtin = builtin_type(syntax.name)) {
    found = *builtin;
  } else if (const ClassInfo* class_info = find_class(syntax.name)) {
    found = Type::of_class(class_info);
  } else {
    const bool refused = std::find(refused_types.begin(), refused_types.end(),
                                   lower_name(syntax.name)) != refused_types.end();
    throw SourceError(syntax.position,
                      refused ? "the type " + syntax.name + " is not part of the language here"
                              : "there is no type \"" + syntax.name + "\"");
  }
  return syntax.is_array ? Type::array_of(found) : found;
}

const ClassInfo* Declarations::find_class(std::string_view name) const {
  if (same_name(name, text_encoding_class().name())) return &text_encoding_class();
  return host_.find_class(name);
}

bool Declarations::is_type_name(std::string_view name) const {
  return builtin_type(name).has_value() || find_class(name) != nullptr;
}

std::vector<const ProgramRoutine*> Declarations::find_routines(std::string_view name) const {
  std::vector<const ProgramRoutine*> found;
  const auto [first, end] = by_name_.equal_range(lower_name(name));
  for (auto entry = first; entry != end; ++entry) found.push_back(entry->second);
  return found;
}

void Declarations::read_head(const FunctionSyntax& syntax, ProgramRoutine& routine) {
  if (syntax.parameters.size() > most_arguments) {
    throw SourceError(syntax.position,
                      "a routine has at most " + std::to_string(most_arguments) + " parameters");
  }
  for (const ParameterSyntax& parameter : syntax.parameters) {
    const Type parameter_type = type(parameter.type);
    Value default_value;
    if (parameter.default_value) {
      Code value = check_constant(*parameter.default_value, nullptr, "an Optional parameter");
      const bool nil = value->is_nil();
      value = convert(std::move(value), parameter_type, parameter.default_value->position);
      if (!nil && !value->is_literal() && !value->is(TypeKind::variant)) {
        throw SourceError(parameter.position, "an Optional parameter needs a constant");
      }
      default_value = literal_value(*value);
    }
    routine.defaults.push_back(std::move(default_value));
    routine.candidate.formals.push_back(
        {parameter_type, parameter.by_ref, parameter.default_value != nullptr});
    routine.candidate.assigns = routine.candidate.assigns || parameter.assigns;
  }
  if (syntax.result) routine.function->result = type(*syntax.result);
  if (routine.candidate.assigns && syntax.result) {
    throw SourceError(syntax.position, "a routine with an Assigns parameter is a Sub");
  }
  require_difference(routine);
}

void Declarations::require_difference(const ProgramRoutine& routine) const {
  const auto [first, end] = by_name_.equal_range(lower_name(routine.syntax->name));
  for (auto entry = first; entry != end; ++entry) {
    const ProgramRoutine* other = entry->second;
    const std::vector<Formal>& a = routine.candidate.formals;
    const std::vector<Formal>& b = other->candidate.formals;
    const bool same = std::equal(a.begin(), a.end(), b.begin(), b.end(),
                                 [](const Formal& x, const Formal& y) { return x.type == y.type; });
    if (same && routine.candidate.assigns == other->candidate.assigns) {
      throw SourceError(routine.syntax->position, "there is another \"" + routine.syntax->name +
                                                      "\" with the same parameters, in line " +
                                                      std::to_string(other->syntax->position.line));
    }
  }
}

void Declarations::add_routines(const ProgramSyntax& syntax, Program& program,
                                std::vector<Diagnostic>& diagnostics) {
  for (const FunctionSyntax& function : syntax.functions) {
    if (diagnostics.size() >= most_diagnostics) return;
    program.functions.emplace_back().name = function.name;
    ProgramRoutine& routine = routines_.emplace_back();
    routine.syntax = &function;
    routine.function = &program.functions.back();
    routine.candidate.description = head_text(function);
    try {
      read_head(function, routine);
    } catch (const SourceError& error) {
      diagnostics.push_back(error.diagnostic());
      routine.broken = true;
    }
    by_name_.emplace(lower_name(function.name), &routine);
  }
}

}  // namespace standin::language
