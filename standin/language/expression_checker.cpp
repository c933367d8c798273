// From the syntax of expressions, calls and assignments to code.
#include "language/expression_checker.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "language/array_literal.h"
#include "language/calls.h"
#include "language/constants.h"
#include "language/control.h"
#include "language/conversions.h"
#include "language/library.h"
#include "language/located.h"
#include "language/method_candidates.h"
#include "language/number_types.h"
#include "language/operators.h"
#include "language/overloads.h"
#include "language/refused.h"
#include "language/variables.h"

namespace standin::language {
namespace {

const std::vector<ExpressionPointer> no_arguments;

// What is in the way of using an expression's value.
void require_value(const Expression& code, Position position) {
  if (code.is(TypeKind::void_)) {
    throw SourceError(position, "this call has no result that could be used");
  }
}

}  // namespace

Code ExpressionChecker::expression(const ExpressionSyntax& syntax, const Type& type) {
  return convert(expression(syntax), type, syntax.position);
}

Code ExpressionChecker::condition(const ExpressionSyntax& syntax) {
  Code code = expression(syntax);
  if (!code->is(TypeKind::boolean) && !code->is(TypeKind::variant)) {
    throw SourceError(syntax.position,
                      "a condition must be a Boolean, not " + described_type(*code));
  }
  return convert(std::move(code), Type::of(TypeKind::boolean), syntax.position);
}

Code ExpressionChecker::expression(const ExpressionSyntax& syntax) {
  const Position position = syntax.position;
  Code code;
  if (const auto* literal_form = std::get_if<LiteralSyntax>(&syntax.form)) {
    code = literal_code(*literal_form);
  } else if (const auto* call = std::get_if<CallSyntax>(&syntax.form)) {
    code = use({*call->callee, &call->arguments, position});
  } else if (const auto* unary_form = std::get_if<UnarySyntax>(&syntax.form)) {
    code = make_unary(unary_form->operation, expression(*unary_form->operand), position);
  } else if (const auto* binary = std::get_if<BinarySyntax>(&syntax.form)) {
    Code left = expression(*binary->left);
    Code right = expression(*binary->right);
    code = make_binary(binary->operation, std::move(left), std::move(right), position);
  } else if (const auto* is_a = std::get_if<IsASyntax>(&syntax.form)) {
    Code operand = expression(*is_a->operand);
    const Type type = declarations_.type(is_a->type);
    if (type.kind != TypeKind::object) {
      throw SourceError(is_a->type.position, name(type) + " is no class");
    }
    code = make_is_a(std::move(operand), type.class_info, position);
  } else if (const auto* make = std::get_if<NewSyntax>(&syntax.form)) {
    code = new_object(make->type, make->arguments, position);
  } else {
    code = use({syntax, nullptr, position});
  }
  require_value(*code, position);
  return located(std::move(code), position);
}

Code ExpressionChecker::located(Code code, Position position) const {
  const bool may_fail = !code->is_literal() && !code->is_nil() && !code->is_variable();
  // An Array(…) is still to be seen as such; its elements have their places.
  const bool is_array_literal = dynamic_cast<const ArrayLiteral*>(code.get()) != nullptr;
  if (position.line == line_ || !may_fail || is_array_literal) return code;
  return make_located(std::move(code), position);
}

Argument ExpressionChecker::argument(const ExpressionSyntax& syntax) {
  return {expression(syntax), syntax.position};
}

std::vector<Argument> ExpressionChecker::arguments_of(const Callee& callee) {
  std::vector<Argument> arguments;
  const SyntaxList& list = callee.arguments == nullptr ? no_arguments : *callee.arguments;
  if (list.size() > most_arguments) {
    throw SourceError(callee.position,
                      "a call has at most " + std::to_string(most_arguments) + " arguments");
  }
  for (const ExpressionPointer& written : list) arguments.push_back(argument(*written));
  return arguments;
}

Code ExpressionChecker::use(const Callee& callee) {
  if (const auto* name = std::get_if<NameSyntax>(&callee.syntax.form)) {
    return use_name(name->name, callee);
  }
  return use_member(std::get<MemberSyntax>(callee.syntax.form), callee);
}

Code ExpressionChecker::use_name(const std::string& name, const Callee& callee) {
  if (const Symbol* symbol = scope_.find(name)) return element_or_fail(*symbol, callee);

  if (same_name(name, "Array")) {
    std::vector<Code> elements;
    for (const ExpressionPointer& written :
         callee.arguments == nullptr ? no_arguments : *callee.arguments) {
      elements.push_back(expression(*written));
    }
    return array_literal(std::move(elements), callee.position);
  }
  const bool in_program = !declarations_.find_routines(name).empty();
  if (!in_program && language::find_routines(name) == nullptr &&
      !declarations_.is_type_name(name)) {
    fail_unknown(name, callee.position);
  }
  std::vector<Argument> arguments = arguments_of(callee);
  if (in_program) {
    return call_program_routine(name, std::move(arguments), false, callee.position);
  }
  const std::size_t given = arguments.size();
  if (callee.arguments != nullptr && given == 1 && declarations_.is_type_name(name)) {
    return cast_to(name, std::move(arguments.front().code), callee.position);
  }
  if (Code call = call_library(name, arguments, false, callee.position)) return call;
  fail_unknown(name, callee.position);
}

void ExpressionChecker::fail_unknown(const std::string& name, Position position) const {
  if (declarations_.is_type_name(name)) {
    throw SourceError(position, "\"" + name + "\" is a type; a value is expected here");
  }
  if (is_module(name)) {
    throw SourceError(position, "\"" + name + "\" needs one of its members, as in " + name + ".…");
  }
  if (find_routines(name) != nullptr) {
    throw SourceError(position,
                      "\"" + name + "\" can only be written as a method, as in x." + name);
  }
  const std::string reason = routine_refusal(name);
  throw SourceError(position, !reason.empty()
                                  ? reason
                                  : "there is no variable, constant or routine \"" + name + "\"");
}

Code ExpressionChecker::element_or_fail(const Symbol& symbol, const Callee& callee) {
  if (symbol.kind == Symbol::Kind::broken) throw AlreadyReported();
  Code code = code_of(symbol);
  if (callee.arguments == nullptr) return code;
  if (!code->is(TypeKind::array)) {
    throw SourceError(callee.position, "\"" + symbol.name + "\" is " +
                                           (symbol.kind == Symbol::Kind::constant
                                                ? "a constant"
                                                : "a variable of type " + described_type(*code)) +
                                           ", no array or routine");
  }
  if (callee.arguments->size() != 1) {
    throw SourceError(callee.position, "an element of \"" + symbol.name + "\" needs one index");
  }
  const ExpressionSyntax& written = *callee.arguments->front();
  Code index = expression(written);
  if (!index->is(TypeKind::integer)) index = convert_index(std::move(index), written.position);
  return make_array_element(std::move(code), std::move(index));
}

Code ExpressionChecker::variable(const std::string& name, Position position) {
  const Symbol* symbol = scope_.find(name);
  if (symbol == nullptr) fail_unknown(name, position);
  if (symbol->kind == Symbol::Kind::broken) throw AlreadyReported();
  if (symbol->kind == Symbol::Kind::constant) {
    throw SourceError(position, "\"" + symbol->name + "\" is a constant and cannot be changed");
  }
  return code_of(*symbol);
}

Code ExpressionChecker::array_literal(std::vector<Code> elements, Position position) {
  if (elements.empty()) throw SourceError(position, "Array needs at least one element");
  Type type = elements.front()->type();
  for (const Code& element : elements) {
    if (element->is(TypeKind::array)) {
      throw SourceError(position, "an array cannot be an element of an array");
    }
    const Type& other = element->type();
    if (element->type() == type) continue;
    if (type.is_number() && other.is_number()) {
      type = Type::of(common_number_type(type.kind, other.kind));
    } else if (type.kind == TypeKind::object && other.kind == TypeKind::object) {
      type = Type::of_class(nullptr);
    } else {
      type = Type::of(TypeKind::variant);
    }
  }
  for (Code& element : elements) element = convert(std::move(element), type, position);
  return std::make_unique<ArrayLiteral>(type, std::move(elements));
}

Code ExpressionChecker::cast_to(const std::string& name, Code argument, Position position) {
  const Type type = declarations_.type({position, name, false});
  if (type.kind != TypeKind::object) {
    throw SourceError(position, "only classes can be cast to: assign to a variable of type " +
                                    standin::name(type) + " instead");
  }
  return cast(std::move(argument), type, position);
}

Code ExpressionChecker::call_program_routine(const std::string& name,
                                             std::vector<Argument> arguments, bool assigns,
                                             Position position) {
  std::vector<const ProgramRoutine*> routines;
  std::vector<Candidate> candidates;
  for (const ProgramRoutine* routine : declarations_.find_routines(name)) {
    if (routine->broken) throw AlreadyReported();
    if (routine->candidate.assigns != assigns) continue;
    routines.push_back(routine);
    candidates.push_back(routine->candidate);
  }
  if (routines.empty()) {
    throw SourceError(position, assigns ? "\"" + name + "\" has no parameter marked Assigns"
                                        : "\"" + name + "\" can only be assigned to");
  }
  const std::size_t chosen = choose_overload(name, candidates, arguments, position);
  const ProgramRoutine& routine = *routines[chosen];
  const std::vector<Formal>& formals = routine.candidate.formals;
  std::vector<Code> codes = convert_arguments(routine.candidate, std::move(arguments));
  for (std::size_t i = codes.size(); i < formals.size(); ++i) {
    codes.push_back(std::make_unique<Literal>(formals[i].type, routine.defaults[i]));
  }
  std::vector<bool> by_ref;
  by_ref.reserve(formals.size());
  for (const Formal& formal : formals) by_ref.push_back(formal.by_ref);
  return make_function_call(*routine.function, std::move(codes), std::move(by_ref));
}

Code ExpressionChecker::call_library(const std::string& name, std::vector<Argument>& arguments,
                                     bool as_method, Position position) {
  const std::vector<Routine>* all = language::find_routines(name);
  if (all == nullptr) return nullptr;
  std::vector<const Routine*> routines;
  std::vector<Candidate> candidates;
  Type element;
  for (const auto& [code, place] : arguments) {
    if (code->is(TypeKind::array) && element.kind == TypeKind::void_) {
      element = *code->type().element;
    }
  }
  for (const Routine& routine : *all) {
    if (routine.form == (as_method ? RoutineForm::function : RoutineForm::method)) continue;
    Candidate candidate;
    candidate.description = routine.description();
    for (const RoutineParameter& parameter : routine.parameters) {
      if (parameter.repeated) break;
      Formal formal{parameter.type, false, parameter.optional};
      if (parameter.kind == RoutineParameter::Kind::element) formal.type = element;
      if (parameter.kind == RoutineParameter::Kind::any_array) {
        formal.type = Type::array_of(element);
      }
      candidate.formals.push_back(formal);
    }
    if (!routine.parameters.empty() && routine.parameters.back().repeated) {
      const Formal more{routine.parameters.back().type, false, true};
      candidate.formals.resize(std::max(candidate.formals.size(), arguments.size()), more);
    }
    // A method's receiver is what it is; it does not become a text or a number first.
    if (as_method &&
        conversion_cost(*arguments.front().code, candidate.formals.front().type) != 0) {
      continue;
    }
    routines.push_back(&routine);
    candidates.push_back(std::move(candidate));
  }
  if (routines.empty()) return nullptr;
  const std::size_t chosen = choose_overload(name, candidates, arguments, position);
  const Routine& routine = *routines[chosen];
  Type result = routine.result_is_element ? element : routine.result;
  if (routine.result_is_date) result = Type::of_class(declarations_.find_class("Date"));
  return make_routine_call(routine, result, element,
                           convert_arguments(candidates[chosen], std::move(arguments)));
}

Code ExpressionChecker::use_member(const MemberSyntax& member, const Callee& callee) {
  if (const auto* module = std::get_if<NameSyntax>(&member.object->form)) {
    if (is_module(module->name) && scope_.find(module->name) == nullptr) {
      std::vector<Argument> arguments = arguments_of(callee);
      const std::string full_name = module->name + "." + member.name;
      if (Code call = call_library(full_name, arguments, false, callee.position)) return call;
      throw SourceError(callee.position, module->name + " has no member \"" + member.name + "\"");
    }
  }
  Code object = expression(*member.object);
  std::vector<Argument> arguments = arguments_of(callee);
  return call_method(std::move(object), member.name, std::move(arguments),
                     callee.arguments != nullptr, callee.position);
}

Code ExpressionChecker::call_method(Code object, const std::string& name,
                                    std::vector<Argument> arguments, bool has_parentheses,
                                    Position position) {
  const std::string type_name = described_type(*object);
  const ClassInfo* class_info = object->is(TypeKind::object) ? object->type().class_info : nullptr;
  if (class_info == nullptr) {
    arguments.insert(arguments.begin(), Argument{std::move(object), position});
    if (Code call = call_library(name, arguments, true, position)) return call;
    const bool cast_helps = type_name == "Variant" || type_name == "Object";
    throw SourceError(position,
                      type_name + " has no member \"" + name + "\"" +
                          (cast_helps ? "; a cast such as Dictionary(…) tells its class" : ""));
  }
  if (const PropertyInfo* property = class_info->property(name)) {
    if (has_parentheses && !arguments.empty()) {
      throw SourceError(position, "the property " + property->name + " takes no arguments");
    }
    return make_property_read(std::move(object), *property);
  }
  const MethodCandidates methods = callable_methods(*class_info, name);
  if (methods.methods.empty()) {
    throw SourceError(position, class_info->name() + " has no member \"" + name + "\"");
  }
  const std::string what = class_info->name() + "." + name;
  const std::size_t chosen = choose_overload(what, methods.candidates, arguments, position);
  const MethodInfo& method = *methods.methods[chosen];
  std::vector<Code> codes = convert_arguments(methods.candidates[chosen], std::move(arguments));
  append_defaults(method, codes, position);
  return make_method_call(std::move(object), method, std::move(codes));
}

Code ExpressionChecker::new_object(const TypeSyntax& type, const SyntaxList& arguments,
                                   Position position) {
  const ClassInfo* class_info = declarations_.find_class(type.name);
  if (type.is_array || class_info == nullptr) {
    const Type other = declarations_.type(type);  // an unknown name is reported as such
    throw SourceError(type.position, "New needs a class; " + name(other) + " is none");
  }
  if (declarations_.host().find_class(type.name) == nullptr) {
    throw SourceError(type.position, class_info->name() + " has no constructor");
  }
  std::vector<Argument> given;
  for (const ExpressionPointer& written : arguments) given.push_back(argument(*written));
  const MethodCandidates constructors = callable_methods(*class_info, "Constructor");
  if (constructors.methods.empty()) {
    if (!given.empty()) {
      throw SourceError(position, class_info->name() + " has no constructor with arguments");
    }
    return make_new_object(*class_info, nullptr, {});
  }
  const std::size_t chosen =
      choose_overload("New " + class_info->name(), constructors.candidates, given, position);
  std::vector<Code> codes = convert_arguments(constructors.candidates[chosen], std::move(given));
  append_defaults(*constructors.methods[chosen], codes, position);
  return make_new_object(*class_info, constructors.methods[chosen], std::move(codes));
}

Code ExpressionChecker::call_statement(const ExpressionSyntax& syntax, bool drops_result) {
  const auto* call = std::get_if<CallSyntax>(&syntax.form);
  Code code = call != nullptr ? use({*call->callee, &call->arguments, syntax.position})
                              : use({syntax, nullptr, syntax.position});
  if (code->is_variable() || code->is_literal()) {
    throw SourceError(syntax.position, "a value alone is no statement");
  }
  if (!drops_result && !code->is(TypeKind::void_)) {
    throw SourceError(syntax.position, "the result is not used: write Call before it to drop it");
  }
  return located(std::move(code), syntax.position);
}

std::unique_ptr<Statement> ExpressionChecker::assignment(const AssignSyntax& syntax,
                                                         Position position) {
  const ExpressionSyntax& target = *syntax.target;
  const auto* call = std::get_if<CallSyntax>(&target.form);
  const Callee callee = call != nullptr ? Callee{*call->callee, &call->arguments, target.position}
                                        : Callee{target, nullptr, target.position};
  Argument value = argument(*syntax.value);
  if (const auto* name = std::get_if<NameSyntax>(&callee.syntax.form)) {
    return assign_to_name(name->name, callee, std::move(value));
  }
  const auto& member = std::get<MemberSyntax>(callee.syntax.form);
  Code object = expression(*member.object);
  std::vector<Argument> arguments = arguments_of(callee);
  return make_call_statement(set_member(std::move(object), member.name, std::move(arguments),
                                        std::move(value), callee.position),
                             position);
}

std::unique_ptr<Statement> ExpressionChecker::assign_to_name(const std::string& name,
                                                             const Callee& callee, Argument value) {
  const Position position = callee.position;
  if (scope_.find(name) != nullptr) {
    Code target = variable(name, position);
    if (callee.arguments != nullptr) target = element_or_fail(*scope_.find(name), callee);
    const Type type = target->type();
    return make_assignment(std::move(target), convert(std::move(value.code), type, value.position),
                           position);
  }
  if (!declarations_.find_routines(name).empty()) {
    std::vector<Argument> arguments = arguments_of(callee);
    arguments.push_back(std::move(value));
    return make_call_statement(call_program_routine(name, std::move(arguments), true, position),
                               position);
  }
  if (language::find_routines(name) != nullptr || declarations_.is_type_name(name)) {
    throw SourceError(position, "\"" + name + "\" cannot be assigned to");
  }
  fail_unknown(name, position);
}

Code ExpressionChecker::set_member(Code object, const std::string& name,
                                   std::vector<Argument> arguments, Argument value,
                                   Position position) {
  const ClassInfo* class_info = object->is(TypeKind::object) ? object->type().class_info : nullptr;
  if (class_info == nullptr) {
    throw SourceError(position,
                      described_type(*object) + " has no member \"" + name + "\" to assign to");
  }
  const PropertyInfo* property = class_info->property(name);
  if (property != nullptr && arguments.empty()) {
    if (!property->is_writable()) {
      throw SourceError(position, "the property " + property->name + " of " + class_info->name() +
                                      " can only be read");
    }
    return make_property_write(std::move(object), *property,
                               convert(std::move(value.code), property->type, value.position));
  }
  const MethodCandidates methods = assignable_methods(*class_info, name);
  if (methods.methods.empty()) {
    const bool readable = property != nullptr || !class_info->overloads(name).empty();
    throw SourceError(position, class_info->name() + " has no member \"" + name + "\"" +
                                    (readable ? " that can be assigned to" : ""));
  }
  arguments.push_back(std::move(value));
  const std::string what = class_info->name() + "." + name;
  const std::size_t chosen = choose_overload(what, methods.candidates, arguments, position);
  return make_setter_call(std::move(object), *methods.methods[chosen],
                          convert_arguments(methods.candidates[chosen], std::move(arguments)));
}

}  // namespace standin::language
