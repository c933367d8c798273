// From the syntax tree to a program that is ready to run.
#ifndef ZRB_STANDIN_LANGUAGE_CHECKER_H
#define ZRB_STANDIN_LANGUAGE_CHECKER_H

#include <exception>
#include <memory>
#include <utility>
#include <vector>

#include "language/program.h"
#include "language/source.h"
#include "language/syntax.h"
#include "runtime/host.h"

namespace standin::language {

// Everything that is wrong with a program, up to a limit, in the order of its lines.
class CheckErrors : public std::exception {
 public:
  explicit CheckErrors(std::vector<Diagnostic> diagnostics)
      : diagnostics_(std::move(diagnostics)) {}
  const char* what() const noexcept override { return "the program is in error"; }
  const std::vector<Diagnostic>& diagnostics() const { return diagnostics_; }

 private:
  std::vector<Diagnostic> diagnostics_;
};

// Resolves every name and type. Throws CheckErrors. The program must not outlive the host, whose
// classes it refers to.
std::unique_ptr<Program> check(const ProgramSyntax& syntax, Host& host);

}  // namespace standin::language

#endif
