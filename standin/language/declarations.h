// What a program's names mean outside of its routines: types, and the routines themselves.
#ifndef ZRB_STANDIN_LANGUAGE_DECLARATIONS_H
#define ZRB_STANDIN_LANGUAGE_DECLARATIONS_H

#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "language/overloads.h"
#include "language/program.h"
#include "language/syntax.h"
#include "runtime/host.h"

namespace standin::language {

// Thrown to give up on a statement whose trouble has been reported where it began.
struct AlreadyReported {};

// A Sub or Function of the program.
struct ProgramRoutine {
  const FunctionSyntax* syntax = nullptr;
  Function* function = nullptr;
  Candidate candidate;
  std::vector<Value> defaults;  // beside the parameters; void where there is none
  bool broken = false;          // its head is in error, which has been reported
};

class Declarations {
 public:
  explicit Declarations(Host& host) : host_(host) {}

  Host& host() const { return host_; }
  // Throws SourceError for an unknown type.
  Type type(const TypeSyntax& syntax) const;
  // The class of a name, for New, casts and IsA; null if there is no class of that name.
  const ClassInfo* find_class(std::string_view name) const;
  bool is_type_name(std::string_view name) const;

  // Several for overloads; none if the program defines no such routine.
  std::vector<const ProgramRoutine*> find_routines(std::string_view name) const;

  // Takes up the heads of all routines; what is wrong goes to the list.
  void add_routines(const ProgramSyntax& syntax, Program& program,
                    std::vector<Diagnostic>& diagnostics);
  const std::deque<ProgramRoutine>& routines() const { return routines_; }

 private:
  void read_head(const FunctionSyntax& syntax, ProgramRoutine& routine);
  void require_difference(const ProgramRoutine& routine) const;

  Host& host_;
  std::deque<ProgramRoutine> routines_;
  std::multimap<std::string, const ProgramRoutine*> by_name_;  // lower names
};

}  // namespace standin::language

#endif
