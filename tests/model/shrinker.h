// Making a failing sequence short.
#ifndef ZRB_TESTS_MODEL_SHRINKER_H
#define ZRB_TESTS_MODEL_SHRINKER_H

#include <functional>

#include "model/steps.h"

namespace model {

using Fails = std::function<bool(const Sequence&)>;

/// A part of the sequence, with smaller numbers, that still fails: chunks of steps are dropped,
/// then single steps, then numbers are made smaller, until nothing more can go or `most_runs` runs
/// were made. The sequence given must fail.
Sequence shrink(Sequence sequence, const Fails& fails, int most_runs = 3000);

}  // namespace model

#endif
