// Choosing among the forms of a routine by the types of the arguments.
#include "language/overloads.h"

#include <algorithm>
#include <utility>

#include "language/conversions.h"

namespace standin::language {
namespace {

std::size_t required_arguments(const Candidate& candidate) {
  return static_cast<std::size_t>(std::count_if(candidate.formals.begin(), candidate.formals.end(),
                                                [](const Formal& f) { return !f.optional; }));
}

bool takes_count(const Candidate& candidate, std::size_t count) {
  return count >= required_arguments(candidate) && count <= candidate.formals.size();
}

// "What cannot be given" of one argument; "" if it can.
std::string mismatch(const Formal& formal, const Expression& argument) {
  if (formal.by_ref) {
    if (!argument.is_variable()) return "a ByRef parameter needs a variable";
    if (argument.type() == formal.type) return {};
    return "a ByRef parameter of type " + name(formal.type) + " cannot take a variable of type " +
           described_type(argument);
  }
  if (conversion_cost(argument, formal.type) != impossible) return {};
  return described_type(argument) + " cannot be converted to " + name(formal.type);
}

// Saturates; `impossible` if the candidate does not fit.
std::uint64_t cost_of(const Candidate& candidate, const std::vector<Argument>& arguments) {
  if (!takes_count(candidate, arguments.size())) return impossible;
  std::uint64_t cost = 0;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const Expression& argument = *arguments[i].code;
    if (!mismatch(candidate.formals[i], argument).empty()) return impossible;
    if (candidate.formals[i].by_ref) continue;
    const std::uint64_t step = conversion_cost(argument, candidate.formals[i].type);
    cost = std::min(cost + step, impossible - 1);
  }
  return cost;
}

std::string counted(std::size_t count) {
  return count == 0   ? "no arguments"
         : count == 1 ? "1 argument"
                      : std::to_string(count) + " arguments";
}

[[noreturn]] void fail_count(const std::string& what, const Candidate& candidate, std::size_t given,
                             Position position) {
  // The assigned value is no argument to who writes the program.
  const std::size_t hidden = candidate.assigns ? 1 : 0;
  const std::size_t least = required_arguments(candidate) - hidden;
  const std::size_t most = candidate.formals.size() - hidden;
  const std::string takes =
      least == most ? counted(most) : std::to_string(least) + " to " + counted(most);
  throw SourceError(position, (candidate.assigns ? "the assignment to " : "") + what + " takes " +
                                  takes + ", not " + std::to_string(given - hidden) + ": " +
                                  candidate.description);
}

[[noreturn]] void fail_single(const std::string& what, const Candidate& candidate,
                              const std::vector<Argument>& arguments, Position position) {
  if (!takes_count(candidate, arguments.size())) {
    fail_count(what, candidate, arguments.size(), position);
  }
  std::size_t at = 0;
  while (mismatch(candidate.formals[at], *arguments[at].code).empty()) ++at;
  const std::string part = candidate.assigns && at + 1 == arguments.size()
                               ? "the value assigned to "
                               : "argument " + std::to_string(at + 1) + " of ";
  throw SourceError(arguments[at].position,
                    part + what + ": " + mismatch(candidate.formals[at], *arguments[at].code) +
                        ", in " + candidate.description);
}

// "(String, Integer)", and "(String) = Integer" for an assignment.
std::string types_of(const std::vector<Argument>& arguments, bool assigns) {
  std::string types;
  const std::size_t count = arguments.size() - (assigns ? 1 : 0);
  for (std::size_t i = 0; i < count; ++i) {
    types += (i == 0 ? "" : ", ") + described_type(*arguments[i].code);
  }
  types = "(" + types + ")";
  return assigns ? types + " = " + described_type(*arguments.back().code) : types;
}

}  // namespace

std::size_t choose_overload(const std::string& what, const std::vector<Candidate>& candidates,
                            const std::vector<Argument>& arguments, Position position) {
  std::size_t best = 0;
  std::size_t rival = 0;
  std::uint64_t best_cost = impossible;
  std::uint64_t rival_cost = impossible;
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    const std::uint64_t cost = cost_of(candidates[i], arguments);
    // Of two that fit alike, the one that leaves fewer parameters to their defaults.
    const bool same_cost = cost == best_cost && cost != impossible;
    const std::size_t length = candidates[i].formals.size();
    const std::size_t best_length = candidates[best].formals.size();
    if (cost < best_cost || (same_cost && length < best_length)) {
      best = i;
      best_cost = cost;
      rival_cost = impossible;
    } else if (same_cost && length == best_length) {
      rival = i;
      rival_cost = cost;
    }
  }
  const std::string types = types_of(arguments, candidates.front().assigns);
  if (best_cost == impossible) {
    if (candidates.size() == 1) fail_single(what, candidates.front(), arguments, position);
    std::string forms;
    for (const Candidate& candidate : candidates) forms += "\n        " + candidate.description;
    throw SourceError(position, "no form of " + what + " takes " + types + ":" + forms);
  }
  if (rival_cost != impossible) {
    throw SourceError(position, what + types + " could be two things:\n        " +
                                    candidates[best].description + "\n        " +
                                    candidates[rival].description);
  }
  return best;
}

std::vector<Code> convert_arguments(const Candidate& candidate, std::vector<Argument> arguments) {
  std::vector<Code> codes;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    auto& [code, position] = arguments[i];
    const Formal& formal = candidate.formals[i];
    codes.push_back(formal.by_ref ? std::move(code)
                                  : convert(std::move(code), formal.type, position));
  }
  return codes;
}

}  // namespace standin::language
