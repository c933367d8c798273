// From the syntax of statements to code, for one routine at a time.
#ifndef ZRB_STANDIN_LANGUAGE_STATEMENT_CHECKER_H
#define ZRB_STANDIN_LANGUAGE_STATEMENT_CHECKER_H

#include <cstddef>
#include <string>
#include <vector>

#include "language/control.h"
#include "language/declarations.h"
#include "language/expression_checker.h"
#include "language/program.h"
#include "language/scope.h"
#include "language/syntax.h"

namespace standin::language {

class StatementChecker {
 public:
  StatementChecker(const Declarations& declarations, Program& program,
                   std::vector<Diagnostic>& diagnostics)
      : declarations_(declarations),
        program_(program),
        diagnostics_(diagnostics),
        expressions_(declarations, scope_) {}

  // The program's body, and a routine; each checker does one of them, once.
  void check_program(const BlockSyntax& body);
  void check_routine(const ProgramRoutine& routine);

 private:
  enum class RoutineKind : std::uint8_t { program, sub, function };
  struct LoopEntry {
    LeaveTarget kind;
    int number;
  };

  // A block in a scope of its own; an error in one statement does not hide those of the others.
  Block block(const BlockSyntax& syntax);
  void add_statements(const BlockSyntax& syntax, Block& block);
  // Whether it is in order; what is wrong is reported.
  bool add_statement(const StatementSyntax& syntax, Block& block);
  void report(const SourceError& error);
  Block loop_body(const BlockSyntax& syntax, LeaveTarget kind, int& loop);

  void statement(const StatementSyntax& syntax, Block& block);
  void dim(const DimSyntax& syntax, Position position, Block& block);
  void declare(const DimSyntax::Group& syntax, const DimSyntax::Variable& variable, bool is_static,
               Position position, Block& block);
  Code initial_value(const DimSyntax::Group& syntax, const DimSyntax::Variable& variable,
                     const Type& type, Position position);
  Code upper_bound(const DimSyntax::Variable& variable);
  void constant(const ConstSyntax& syntax, Position position);
  void redim(const ReDimSyntax& syntax, Position position, Block& block);
  // One that is in error is reported, so that the statements that depend on it are checked too.
  Code condition(const ExpressionSyntax& syntax);
  StatementCode if_(const IfSyntax& syntax, Position position);
  StatementCode for_(const ForSyntax& syntax, Position position);
  StatementCode for_each(const ForEachSyntax& syntax, Position position);
  StatementCode do_(const DoSyntax& syntax, Position position);
  StatementCode select(const SelectSyntax& syntax, Position position);
  Code case_test(const SelectSyntax::Test& test, const Type& type, int slot);
  StatementCode try_(const TrySyntax& syntax, Position position);
  static const char* way_to_leave(RoutineKind kind);
  StatementCode leave(Flow flow, LeaveTarget target, Position position);
  StatementCode raise(const RaiseSyntax& syntax, Position position);
  StatementCode return_(const ReturnSyntax& syntax, Position position);

  const ClassInfo& exception_class() const;
  Type exception_type(const TypeSyntax& syntax) const;

  const Declarations& declarations_;
  Program& program_;
  std::vector<Diagnostic>& diagnostics_;
  Scope scope_;
  ExpressionChecker expressions_;
  RoutineKind kind_ = RoutineKind::program;
  Type result_;
  std::vector<LoopEntry> loops_;
  int loop_count_ = 0;
};

}  // namespace standin::language

#endif
