// Step after step.
#include "model/runner.h"

#include <algorithm>

#include "model/actions.h"
#include "model/playthrough.h"
#include "support/leak_sanitizer.h"

namespace model {
namespace {

void note(Reach& reach, const Performed& performed) {
  ++reach.performed[performed.operation];
  reach.bucket_counts.insert(performed.bucket_count);
  reach.largest_count = std::max(reach.largest_count, performed.count);
}

void run_steps(Playthrough& playthrough, const Sequence& sequence, const RunOptions& options,
               Outcome& outcome) {
  for (std::size_t i = 0; i < sequence.steps.size(); ++i) {
    const Step& step = sequence.steps[i];
    playthrough.begin(i + 1, step);
    if (!applies(step.operation, playthrough.container_class())) continue;
    if (!actions::of(step.operation)(playthrough, step)) continue;
    playthrough.check_state();
    note(outcome.reach, playthrough.performed);
    const bool is_last = i + 1 == sequence.steps.size();
    if (is_last || (i + 1) % options.steps_between_full_checks == 0) {
      playthrough.check_everything();
    } else {
      playthrough.check_ends(10);
    }
    if (!options.keep_performed) continue;
    playthrough.note_order();
    outcome.performed.push_back(playthrough.performed);
  }
  playthrough.end();
}

bool abandons_storage(const Sequence& sequence) {
  return std::any_of(sequence.steps.begin(), sequence.steps.end(),
                     [](const Step& step) { return model::abandons_storage(step.operation); });
}

}  // namespace

void Reach::add(const Reach& other) {
  for (const auto& [operation, times] : other.performed) performed[operation] += times;
  bucket_counts.insert(other.bucket_counts.begin(), other.bucket_counts.end());
  largest_count = std::max(largest_count, other.largest_count);
}

Outcome run(const Sequence& sequence, const RunOptions& options, const ModelFactory& make_model) {
  std::optional<support::LeaksExpected> leaks_expected;
  if (abandons_storage(sequence)) leaks_expected.emplace();
  Outcome outcome;
  Playthrough playthrough(sequence, make_model, options.host);
  playthrough.host().set_trace(options.trace);
  try {
    run_steps(playthrough, sequence, options, outcome);
  } catch (const Disagreed& disagreed) {
    outcome.disagreement = disagreed.disagreement;
    if (options.keep_performed) {
      playthrough.note_order();
      outcome.performed.push_back(playthrough.performed);
    }
  }
  return outcome;
}

}  // namespace model
