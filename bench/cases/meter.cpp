#include "cases/meter.h"

#include <valgrind/callgrind.h>

#include <algorithm>

namespace {

using Clock = std::chrono::steady_clock;

Clock::duration empty_region() {
  std::vector<Clock::duration> samples(101);
  for (auto& sample : samples) {
    const auto start = Clock::now();
    sample = Clock::now() - start;
  }
  std::nth_element(samples.begin(), samples.begin() + 50, samples.end());
  return samples[50];
}

}  // namespace

Meter::Meter(benchmark::State& state) : state_(state), overhead_(empty_region()) {
  for (const auto& count : fasthost::call_counts()) counts_.push_back({count.name, 0});
}

void Meter::start() {
  calls_before_ = fasthost::total_calls();
  if (fasthost::is_counting()) counts_before_ = fasthost::call_counts();
  if (RUNNING_ON_VALGRIND) CALLGRIND_START_INSTRUMENTATION;
  started_ = Clock::now();
}

void Meter::stop(std::size_t operations, std::uint64_t checksum) {
  const auto elapsed = Clock::now() - started_;
  if (RUNNING_ON_VALGRIND) CALLGRIND_STOP_INSTRUMENTATION;
  const auto net = std::max(elapsed - overhead_, Clock::duration(1));
  const double seconds = std::chrono::duration<double>(net).count();
  state_.SetIterationTime(seconds);
  region_ns_.push_back(seconds * 1e9 / static_cast<double>(operations));
  operations_ += operations;
  checksum_ += checksum;

  calls_ += fasthost::total_calls() - calls_before_;
  if (!counts_before_.empty()) {
    const auto now = fasthost::call_counts();
    for (std::size_t i = 0; i < counts_.size(); ++i) {
      counts_[i].calls += now[i].calls - counts_before_[i].calls;
    }
  }
}

void Meter::report() {
  if (RUNNING_ON_VALGRIND) CALLGRIND_DUMP_STATS;
  const auto operations = static_cast<double>(operations_);
  state_.counters["operations"] = operations;
  const auto middle = region_ns_.begin() + static_cast<std::ptrdiff_t>(region_ns_.size() / 2);
  std::nth_element(region_ns_.begin(), middle, region_ns_.end());
  state_.counters["ns"] = *middle;
  // A counter is a double: as many bits as it holds exactly.
  state_.counters["checksum"] = static_cast<double>(checksum_ & ((std::uint64_t{1} << 52) - 1));
  if (!fasthost::is_counting()) return;
  state_.counters["calls"] = static_cast<double>(calls_) / operations;
  for (const auto& count : counts_) {
    if (count.calls == 0) continue;
    state_.counters["calls of " + count.name] = static_cast<double>(count.calls) / operations;
  }
}
