// The cases: what is done with a map, each as one Google Benchmark function.
#ifndef ZRB_CASES_CASES_H
#define ZRB_CASES_CASES_H

#include <benchmark/benchmark.h>

#include <string_view>
#include <vector>

#include "cases/bed.h"

template <class K>
struct Case {
  std::string_view name;
  void (*run)(benchmark::State& state, Bed<K>& bed);
  bool plugin_alone = false;  // peers have nothing like it
  bool once = false;          // one iteration, however few elements there are
};

/// In the order in which they are run if one process runs several: reading cases after the
/// insertion whose map they read, destruction last.
template <class K>
const std::vector<Case<K>>& cases();

#endif
