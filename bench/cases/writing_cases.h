// Cases that make, change, copy or destroy maps.
#ifndef ZRB_CASES_WRITING_CASES_H
#define ZRB_CASES_WRITING_CASES_H

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

#include "cases/bed.h"
#include "cases/memory.h"
#include "cases/meter.h"

namespace writing_cases {

// Whether the map holds what it should: its size, and a sample of its values.
template <class K>
std::uint64_t verify(Bed<K>& bed, REALobject map) {
  constexpr std::size_t sample = 100'000;
  const std::span<const K> hits = bed.workload().hits;
  const auto keys = hits.first(std::min(hits.size(), sample));
  return bed.search(map, keys) + static_cast<std::uint64_t>(bed.subject().count(map));
}

/// Each time in another order: a short one would be learned by heart by the processor, branch by
/// branch.
template <class K>
void insert_random(benchmark::State& state, Bed<K>& bed) {
  auto keys = bed.workload().keys;
  auto values = bed.workload().values;
  auto& subject = bed.subject();
  const auto assign = subject.assign;
  Meter meter(state);
  std::uint32_t seed = 20;
  for (auto _ : state) {
    if (REALobject old = bed.release()) {
      subject.destroy(old);
      shuffle(keys, ++seed);
      shuffle(values, seed);  // in the same way
    }
    REALobject map = subject.create();
    meter.start();
    for (std::size_t i = 0; i < keys.size(); ++i) assign(map, keys[i], values[i]);
    meter.stop(keys.size(), 0);
    bed.adopt(map);
  }
  meter.add_to_checksum(verify(bed, bed.filled()));
  meter.report();
}

/// What an element takes of the heap, and resident. Measured over as many maps as make up for
/// memory being resident in whole pages.
template <class K>
void memory(benchmark::State& state, Bed<K>& bed) {
  constexpr std::size_t fewest_elements = 200'000;
  const std::size_t count = bed.workload().keys.size();
  auto& subject = bed.subject();
  Meter meter(state);
  for (auto _ : state) {
    std::vector<REALobject> maps((fewest_elements + count - 1) / count);
    const auto elements = static_cast<double>(maps.size() * count);
    const double heap = heap_bytes();
    const double resident = resident_bytes();
    meter.start();
    for (REALobject& map : maps) {
      map = subject.create();
      bed.fill(map);
    }
    meter.stop(maps.size() * count, 0);
    state.counters["heap"] = (heap_bytes() - heap) / elements;
    state.counters["resident"] = (resident_bytes() - resident) / elements;
    meter.add_to_checksum(verify(bed, maps.back()));
    for (REALobject map : maps) subject.destroy(map);
  }
  meter.report();
}

inline bool in_ascending_order(std::int32_t a, std::int32_t b) {
  return a < b;
}
inline bool in_ascending_order(REALstring a, REALstring b) {
  return a->text() < b->text();
}

template <class K>
void insert_ascending(benchmark::State& state, Bed<K>& bed) {
  auto keys = bed.workload().keys;
  std::ranges::sort(keys, [](K a, K b) { return in_ascending_order(a, b); });
  const auto& values = bed.workload().values;
  auto& subject = bed.subject();
  const auto assign = subject.assign;
  Meter meter(state);
  bool first = true;
  for (auto _ : state) {
    REALobject map = subject.create();
    meter.start();
    for (std::size_t i = 0; i < keys.size(); ++i) assign(map, keys[i], values[i]);
    meter.stop(keys.size(), static_cast<std::uint64_t>(subject.count(map)));
    if (std::exchange(first, false)) meter.add_to_checksum(verify(bed, map));
    subject.destroy(map);
  }
  meter.report();
}

/// Keys go and as many others come: each removal and each insertion is an operation.
template <class K>
void churn(benchmark::State& state, Bed<K>& bed) {
  REALobject map = bed.filled();
  const auto& values = bed.workload().values;
  const auto remove = bed.subject().remove;
  const auto assign = bed.subject().assign;
  auto present = bed.workload().keys;
  auto absent = bed.workload().misses;
  const std::size_t steps = std::max<std::size_t>(bed.workload().batch / 2, 1);
  Meter meter(state);
  std::uint32_t seed = 10;
  for (auto _ : state) {
    shuffle(present, ++seed);
    shuffle(absent, ++seed);
    std::uint64_t removed = 0;
    meter.start();
    for (std::size_t i = 0; i < steps; ++i) {
      removed += static_cast<std::uint64_t>(remove(map, present[i]));
      assign(map, absent[i], values[i]);
    }
    meter.stop(2 * steps, removed);
    std::swap_ranges(present.begin(), present.begin() + static_cast<std::ptrdiff_t>(steps),
                     absent.begin());
  }
  meter.add_to_checksum(verify(bed, map));
  meter.report();
  bed.subject().destroy(bed.release());
}

template <class K>
void copy(benchmark::State& state, Bed<K>& bed) {
  REALobject map = bed.filled();
  const auto count = bed.workload().keys.size();
  Meter meter(state);
  bool first = true;
  for (auto _ : state) {
    meter.start();
    REALobject duplicate = bed.subject().copy(map);
    meter.stop(count, static_cast<std::uint64_t>(bed.subject().count(duplicate)));
    if (std::exchange(first, false)) meter.add_to_checksum(verify(bed, duplicate));
    bed.subject().destroy(duplicate);
  }
  meter.report();
}

template <class K>
void destroy(benchmark::State& state, Bed<K>& bed) {
  const auto count = bed.workload().keys.size();
  Meter meter(state);
  for (auto _ : state) {
    bed.filled();
    const auto held = static_cast<std::uint64_t>(bed.subject().count(bed.filled()));
    REALobject map = bed.release();
    meter.start();
    bed.subject().destroy(map);
    meter.stop(count, held);
  }
  meter.report();
}

}  // namespace writing_cases

#endif
