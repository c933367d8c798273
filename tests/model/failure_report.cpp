// Shrinking, then writing down.
#include "model/failure_report.h"

#include <algorithm>

#include "model/program_printer.h"
#include "model/shrinker.h"

namespace model {

FailureReport report_failure(const Sequence& sequence, const ModelFactory& make_model) {
  // Everything is looked at after each step, so that the step at fault is the one that is named.
  const auto fails = [&](const Sequence& candidate) {
    return run(candidate, {}, make_model).disagreement.has_value();
  };
  // What comes after the first disagreement does not matter.
  Sequence failing = sequence;
  if (const auto first = run(sequence, {}, make_model).disagreement) {
    failing.steps.resize(std::min(failing.steps.size(), first->step));
  }
  FailureReport report{shrink(fails(failing) ? failing : sequence, fails), {}, ""};
  const Outcome outcome =
      run(report.shrunk, {.steps_between_full_checks = 1, .keep_performed = true}, make_model);
  report.disagreement = outcome.disagreement.value_or(
      Disagreement{0, Operation::put, "nothing, when run once more", "", ""});
  if (is_odd(sequence.scheme)) return report;
  report.program =
      program(*sequence.container_class, outcome.performed,
              std::string(sequence.container_class->name) + ", " + report.disagreement.text() +
                  "Run it with --ledger if locks or handles are concerned.");
  return report;
}

std::string FailureReport::text() const {
  return disagreement.text() + "in the steps, with " + name(shrunk.scheme) + " keys (" +
         std::to_string(shrunk.key_count) + "):\n" + model::text(shrunk.steps) +
         (program.empty() ? "" : "and as a program for the console:\n" + program);
}

}  // namespace model
