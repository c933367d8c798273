// From the syntax of expressions, calls and assignments to code: names find what they mean, and
// every operation its types.
#ifndef ZRB_STANDIN_LANGUAGE_EXPRESSION_CHECKER_H
#define ZRB_STANDIN_LANGUAGE_EXPRESSION_CHECKER_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "language/code.h"
#include "language/declarations.h"
#include "language/overloads.h"
#include "language/scope.h"
#include "language/syntax.h"
#include "runtime/classes.h"

namespace standin::language {

// Everything throws SourceError, or AlreadyReported.
class ExpressionChecker {
 public:
  ExpressionChecker(const Declarations& declarations, Scope& scope)
      : declarations_(declarations), scope_(scope) {}

  // What is on another line than the code around it will tell its own place when it fails.
  void set_line(Position position) { line_ = position.line; }

  Code expression(const ExpressionSyntax& syntax);
  // The same, converted to a type.
  Code expression(const ExpressionSyntax& syntax, const Type& type);
  Code condition(const ExpressionSyntax& syntax);

  // A call as a statement: it has no result, unless that is dropped on purpose.
  Code call_statement(const ExpressionSyntax& syntax, bool drops_result);
  // `target = value`: to variables, array elements, properties and assignable methods.
  std::unique_ptr<Statement> assignment(const AssignSyntax& syntax, Position position);

  // `New C(arguments)`
  Code new_object(const TypeSyntax& type, const std::vector<ExpressionPointer>& arguments,
                  Position position);
  // The variable of a name; a SourceError if it is something else.
  Code variable(const std::string& name, Position position);

 private:
  using SyntaxList = std::vector<ExpressionPointer>;
  // What is called, with the arguments that were written.
  struct Callee {
    const ExpressionSyntax& syntax;  // a name or a member
    const SyntaxList* arguments;     // null: no parentheses
    Position position;
  };

  Code located(Code code, Position position) const;
  Code use(const Callee& callee);
  Code use_name(const std::string& name, const Callee& callee);
  Code use_member(const MemberSyntax& member, const Callee& callee);
  Code element_or_fail(const Symbol& symbol, const Callee& callee);
  Code array_literal(std::vector<Code> elements, Position position);
  Code cast_to(const std::string& name, Code argument, Position position);
  [[noreturn]] void fail_unknown(const std::string& name, Position position) const;

  Argument argument(const ExpressionSyntax& syntax);
  std::vector<Argument> arguments_of(const Callee& callee);
  Code call_program_routine(const std::string& name, std::vector<Argument> arguments, bool assigns,
                            Position position);
  // Null if the library has no such routine in one of these forms.
  Code call_library(const std::string& name, std::vector<Argument>& arguments, bool as_method,
                    Position position);
  Code call_method(Code object, const std::string& name, std::vector<Argument> arguments,
                   bool has_parentheses, Position position);
  Code set_member(Code object, const std::string& name, std::vector<Argument> arguments,
                  Argument value, Position position);
  std::unique_ptr<Statement> assign_to_name(const std::string& name, const Callee& callee,
                                            Argument value);

  const Declarations& declarations_;
  Scope& scope_;
  std::uint32_t line_ = 0;
};

}  // namespace standin::language

#endif
