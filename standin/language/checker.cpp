// From the syntax tree to a program that is ready to run.
#include "language/checker.h"

#include <algorithm>

#include "language/declarations.h"
#include "language/statement_checker.h"

namespace standin::language {

std::unique_ptr<Program> check(const ProgramSyntax& syntax, Host& host) {
  auto program = std::make_unique<Program>();
  std::vector<Diagnostic> diagnostics;
  Declarations declarations(host);
  declarations.add_routines(syntax, *program, diagnostics);
  if (diagnostics.size() < most_diagnostics) {
    StatementChecker(declarations, *program, diagnostics).check_program(syntax.body);
  }
  for (const ProgramRoutine& routine : declarations.routines()) {
    if (diagnostics.size() >= most_diagnostics) break;
    if (!routine.broken) {
      StatementChecker(declarations, *program, diagnostics).check_routine(routine);
    }
  }
  if (diagnostics.empty()) return program;
  std::stable_sort(
      diagnostics.begin(), diagnostics.end(),
      [](const Diagnostic& a, const Diagnostic& b) { return a.position.line < b.position.line; });
  throw CheckErrors(std::move(diagnostics));
}

}  // namespace standin::language
