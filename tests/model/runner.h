// Running a sequence on a container and on the model.
#ifndef ZRB_TESTS_MODEL_RUNNER_H
#define ZRB_TESTS_MODEL_RUNNER_H

#include <map>
#include <optional>
#include <set>
#include <vector>

#include "model/model.h"
#include "model/performed.h"
#include "model/steps.h"
#include "runtime/host.h"
#include "runtime/trace.h"

namespace model {

/// How far sequences went.
struct Reach {
  std::map<Operation, int> performed;
  std::set<int> bucket_counts;
  int largest_count = 0;

  void add(const Reach& other);
};

struct Outcome {
  std::optional<Disagreement> disagreement;
  /// The steps that were not passed over, up to and with the one that disagreed; kept if asked for.
  std::vector<Performed> performed;
  Reach reach;
};

struct RunOptions {
  /// How many steps between looks at everything: the whole order and all locks.
  std::size_t steps_between_full_checks = 1;
  bool keep_performed = false;
  /// Watches the host's calls; null for none.
  standin::TraceObserver* trace = nullptr;
  /// A host with the plugin loaded and a strict ledger; null for a fresh one with a fresh copy of
  /// the plugin. After a disagreement it is of no use any more.
  standin::Host* host = nullptr;
};

/// Runs it up to the first disagreement.
Outcome run(const Sequence& sequence, const RunOptions& options,
            const ModelFactory& make_model = model::make_model);

}  // namespace model

#endif
