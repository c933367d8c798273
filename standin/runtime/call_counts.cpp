// Counters, one per row of the table of entry points.
#include "runtime/call_counts.h"

#include "runtime/entry_points.h"

namespace standin {

CallCounts::CallCounts() : counts_(entry_points().size()) {}

std::uint64_t CallCounts::of(std::string_view entry_point) const {
  return counts_[require_entry_point(entry_point)];
}

std::map<std::string, std::uint64_t> CallCounts::called() const {
  std::map<std::string, std::uint64_t> result;
  for (std::size_t i = 0; i < counts_.size(); ++i) {
    if (counts_[i] != 0) result[entry_points()[i].name] = counts_[i];
  }
  return result;
}

std::uint64_t CallCounts::lookups(std::string_view name) const {
  const auto found = lookups_.find(name);
  return found == lookups_.end() ? 0 : found->second;
}

void CallCounts::reset() {
  counts_.assign(counts_.size(), 0);
  total_ = 0;
  lookups_.clear();
}

}  // namespace standin
