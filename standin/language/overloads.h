// Choosing among the forms of a routine by the types of the arguments.
#ifndef ZRB_STANDIN_LANGUAGE_OVERLOADS_H
#define ZRB_STANDIN_LANGUAGE_OVERLOADS_H

#include <cstddef>
#include <string>
#include <vector>

#include "language/code.h"

namespace standin::language {

struct Argument {
  Code code;
  Position position;
};

struct Formal {
  Type type;
  bool by_ref = false;
  bool optional = false;
};

// One form of a routine. An impossible one is listed in messages, but never chosen.
struct Candidate {
  std::vector<Formal> formals;
  std::string description;  // as declared
  bool assigns = false;     // the last argument is the value in `name(…) = value`
};

// The candidate whose parameters fit best by their types; of several, the one that leaves the
// fewest to their defaults. Throws SourceError when none fits, or when two fit equally well. `what`
// names the routine in messages.
std::size_t choose_overload(const std::string& what, const std::vector<Candidate>& candidates,
                            const std::vector<Argument>& arguments, Position position);

// Converts the arguments to what the parameters ask for; optional ones may be missing.
std::vector<Code> convert_arguments(const Candidate& candidate, std::vector<Argument> arguments);

}  // namespace standin::language

#endif
