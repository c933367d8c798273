// Cases that leave the map as it was.
#ifndef ZRB_CASES_READING_CASES_H
#define ZRB_CASES_READING_CASES_H

#include <algorithm>

#include "cases/bed.h"
#include "cases/memory.h"
#include "cases/meter.h"

namespace reading_cases {

inline constexpr std::size_t warm_up_limit =
    100'000;  // elements; more fill the caches by themselves

// Times `pass`, which takes the number of the iteration, does `operations` and returns a checksum;
// not `prepare`, which comes before it.
template <class K, class Prepare, class Pass>
void measure(benchmark::State& state, Bed<K>& bed, std::size_t operations, Prepare prepare,
             Pass pass) {
  bed.filled();
  if (bed.workload().keys.size() <= warm_up_limit) {
    prepare(std::size_t{0});
    pass(std::size_t{0});
  }
  Meter meter(state);
  for (std::size_t turn = 0; state.KeepRunning(); ++turn) {
    prepare(turn);
    meter.start();
    const std::uint64_t checksum = pass(turn);
    meter.stop(operations, checksum);
  }
  meter.report();
}
template <class K, class Pass>
void measure(benchmark::State& state, Bed<K>& bed, std::size_t operations, Pass pass) {
  measure(
      state, bed, operations, [](std::size_t) {}, pass);
}

template <class K>
void find_hit(benchmark::State& state, Bed<K>& bed) {
  const auto& workload = bed.workload();
  measure(state, bed, workload.batch, [&](std::size_t turn) {
    return bed.search(bed.filled(), workload.batch_of(workload.hits, turn));
  });
}

template <class K>
void find_miss(benchmark::State& state, Bed<K>& bed) {
  const auto& workload = bed.workload();
  measure(state, bed, workload.batch, [&](std::size_t turn) {
    return bed.search(bed.filled(), workload.batch_of(workload.misses, turn));
  });
}

// What was found is the next key. The workload keeps strings alive without the lock given back.
inline std::int32_t next_key(std::int32_t value) {
  return value;
}
inline REALstring next_key(REALstring value) {
  fasthost::unlock(value);
  return value;
}

/// In a small map on another way each time, which the processor would learn by heart.
template <class K>
void find_dependent(benchmark::State& state, Bed<K>& bed) {
  const auto& workload = bed.workload();
  const auto lookup = bed.subject().lookup;
  const auto find_another_way = [&](std::size_t turn) {
    if (workload.keys.size() > warm_up_limit) return;
    const auto way = workload.batch_of(workload.hits, turn);
    for (std::size_t i = 0; i < way.size(); ++i) {
      bed.subject().assign(bed.filled(), way[i], way[(i + 1) % way.size()]);
    }
  };
  measure(state, bed, workload.batch, find_another_way, [&](std::size_t) {
    REALobject map = bed.filled();
    K key = workload.keys[0];
    for (std::size_t i = 0; i < workload.batch; ++i) key = next_key(lookup(map, key, K{}));
    return consume(lookup(map, key, K{}));
  });
}

// Whether `find` leads to the keys that it was asked for: the sum of what its iterators read.
template <class K>
std::uint64_t verify_iterators(Bed<K>& bed) {
  const auto& hits = bed.workload().hits;
  auto& subject = bed.subject();
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < std::min<std::size_t>(hits.size(), 1000); ++i) {
    REALobject position = subject.find(bed.filled(), hits[i]);
    sum += consume(subject.iterator_key(position));
    subject.release_iterator(position);
  }
  return sum;
}

/// An iterator object for each hit, released again; its key is not read.
template <class K>
void find_iterator(benchmark::State& state, Bed<K>& bed) {
  const auto& workload = bed.workload();
  const auto find = bed.subject().find;
  const auto release = bed.subject().release_iterator;
  REALobject map = bed.filled();
  const std::uint64_t checksum = verify_iterators(bed);
  measure(state, bed, workload.batch, [&](std::size_t turn) {
    for (const K key : workload.batch_of(workload.hits, turn)) release(find(map, key));
    return checksum;
  });
}

// Ten million; fewer where each takes a microsecond.
template <class K>
inline constexpr std::size_t iterator_objects = 10'000'000;
template <>
inline constexpr std::size_t iterator_objects<REALstring> = 1'000'000;

/// Iterator objects, one after the other; `growth` is by how many bytes the process grew.
template <class K>
void find_iterator_growth(benchmark::State& state, Bed<K>& bed) {
  constexpr std::size_t objects = iterator_objects<K>;
  const auto& hits = bed.workload().hits;
  const auto find = bed.subject().find;
  const auto release = bed.subject().release_iterator;
  REALobject map = bed.filled();
  const std::uint64_t checksum = verify_iterators(bed);
  Meter meter(state);
  for (auto _ : state) {
    const double resident = resident_bytes();
    meter.start();
    for (std::size_t i = 0, at = 0; i < objects; ++i) {
      release(find(map, hits[at]));
      if (++at == hits.size()) at = 0;
    }
    meter.stop(objects, checksum);
    state.counters["growth"] = resident_bytes() - resident;
  }
  meter.report();
}

/// From `first` to `last`: a comparison, a key and a step for each element.
template <class K>
void iterate(benchmark::State& state, Bed<K>& bed) {
  auto& subject = bed.subject();
  measure(state, bed, bed.workload().keys.size(), [&](std::size_t) {
    REALobject map = bed.filled();
    std::uint64_t sum = 0;
    REALobject position = subject.first(map);
    REALobject end = subject.last(map);
    while (static_cast<bool>(subject.is_not_equal(position, end))) {
      sum += consume(subject.iterator_key(position));
      subject.move_next(position);
    }
    subject.release_iterator(position);
    subject.release_iterator(end);
    return sum;
  });
}

}  // namespace reading_cases

#endif
