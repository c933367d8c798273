// Cases that take all keys out of a map, by host array and by iterator. The plugin's alone.
#ifndef ZRB_CASES_EXPORT_CASES_H
#define ZRB_CASES_EXPORT_CASES_H

#include "cases/bed.h"
#include "cases/meter.h"

namespace export_cases {

template <class K>
struct ArrayOf;
template <>
struct ArrayOf<std::int32_t> {
  static constexpr auto type = ArrayElementType::integer;
  static std::int32_t* elements(REALarray array) { return array->integers(); }
};
template <>
struct ArrayOf<REALstring> {
  static constexpr auto type = ArrayElementType::string;
  static REALstring* elements(REALarray array) { return array->strings(); }
};

inline std::uint64_t number_of(std::int32_t value) {
  return static_cast<std::uint32_t>(value);
}
inline std::uint64_t number_of(REALstring string) {
  return string->tag + std::uint64_t{1};
}

template <class K>
std::uint64_t sum_of(REALarray array) {
  std::uint64_t sum = 0;
  for (std::int32_t i = 0; i <= array->upper_bound; ++i) {
    sum += number_of(ArrayOf<K>::elements(array)[i]);
  }
  return sum;
}

// A change to the content, after which the map is as before but keeps no array of its keys.
template <class K>
void drop_arrays(Bed<K>& bed) {
  const K key = bed.workload().keys[0];
  const K value = bed.subject().lookup(bed.filled(), key, K{});
  bed.subject().remove(bed.filled(), key);
  bed.subject().assign(bed.filled(), key, value);
  consume(value);
}

/// `Keys` of a map that has no array yet.
template <class K>
void keys(benchmark::State& state, Bed<K>& bed) {
  const auto count = bed.workload().keys.size();
  REALobject map = bed.filled();
  Meter meter(state);
  for (auto _ : state) {
    drop_arrays(bed);
    meter.start();
    REALarray array = bed.subject().keys(map);
    meter.stop(count, sum_of<K>(array));
    fasthost::unlock(array);
  }
  meter.report();
}

/// `Key(i)` for each i, once the array is there.
template <class K>
void key_at(benchmark::State& state, Bed<K>& bed) {
  const auto count = static_cast<std::int32_t>(bed.workload().keys.size());
  REALobject map = bed.filled();
  fasthost::unlock(bed.subject().keys(map));
  const auto key_at_index = bed.subject().key_at;
  Meter meter(state);
  for (auto _ : state) {
    std::uint64_t sum = 0;
    meter.start();
    for (std::int32_t i = 0; i < count; ++i) sum += consume(key_at_index(map, i));
    meter.stop(static_cast<std::size_t>(count), sum);
  }
  meter.report();
}

/// The same array, made by a program that walks with an iterator.
template <class K>
void export_by_iterator(benchmark::State& state, Bed<K>& bed) {
  const auto count = static_cast<std::int32_t>(bed.workload().keys.size());
  REALobject map = bed.filled();
  auto& subject = bed.subject();
  Meter meter(state);
  for (auto _ : state) {
    meter.start();
    REALarray array = fasthost::make_array(ArrayOf<K>::type, count - 1);
    K* next = ArrayOf<K>::elements(array);
    REALobject position = subject.first(map);
    REALobject end = subject.last(map);
    while (static_cast<bool>(subject.is_not_equal(position, end))) {
      *next++ = subject.iterator_key(position);
      subject.move_next(position);
    }
    subject.release_iterator(position);
    subject.release_iterator(end);
    meter.stop(static_cast<std::size_t>(count), sum_of<K>(array));
    fasthost::unlock(array);
  }
  meter.report();
}

}  // namespace export_cases

#endif
