// What is told of a sequence that failed.
#ifndef ZRB_TESTS_MODEL_FAILURE_REPORT_H
#define ZRB_TESTS_MODEL_FAILURE_REPORT_H

#include <string>

#include "model/runner.h"

namespace model {

struct FailureReport {
  Sequence shrunk;
  Disagreement disagreement;  // of the shrunk sequence
  std::string program;        // does in the console what the shrunk sequence does; "" for odd keys

  std::string text() const;
};

/// Shrinks a failing sequence and runs what remains once more. If it fails no longer, which would
/// be a fault of its own, the report says so.
FailureReport report_failure(const Sequence& sequence,
                             const ModelFactory& make_model = model::make_model);

}  // namespace model

#endif
