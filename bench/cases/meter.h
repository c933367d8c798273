// Measures the timed regions of one benchmark: time, calls of the host, and what callgrind counts.
#ifndef ZRB_CASES_METER_H
#define ZRB_CASES_METER_H

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "fasthost/entry_points.h"

/// Each iteration of a benchmark has one timed region, between `start` and `stop`, in which a known
/// number of operations is done. What surrounds it (making maps, checking results) costs nothing.
class Meter {
 public:
  explicit Meter(benchmark::State& state);

  void start();
  void stop(std::size_t operations, std::uint64_t checksum);

  /// For what is found out after a region.
  void add_to_checksum(std::uint64_t checksum) { checksum_ += checksum; }

  /// Writes what was measured into the counters of the benchmark: `ns` per operation (the
  /// median of the regions, since a machine does other things too), `operations` in all,
  /// `checksum`, and under the counting host `calls` per operation, in all and by service. Under
  /// callgrind the instructions of the regions go to a dump of their own.
  void report();

 private:
  using Clock = std::chrono::steady_clock;

  benchmark::State& state_;
  Clock::duration overhead_;  // of an empty region
  Clock::time_point started_;
  std::uint64_t calls_before_ = 0;
  std::vector<fasthost::CallCount> counts_before_;
  std::vector<double> region_ns_;  // per operation
  std::uint64_t calls_ = 0;
  std::vector<fasthost::CallCount> counts_;
  std::size_t operations_ = 0;
  std::uint64_t checksum_ = 0;
};

#endif
