// Keeping the table, and reporting it when the tests are over.
#include "fault_table.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <set>

#include "scene.h"

namespace faults {
namespace {

class Report : public ::testing::Environment {
 public:
  void TearDown() override { FaultTable::instance().report(); }
};

const ::testing::Environment* const report = ::testing::AddGlobalTestEnvironment(new Report);

}  // namespace

FaultTable& FaultTable::instance() {
  static FaultTable table;
  return table;
}

void FaultTable::add(const std::string& routine, int elements, const std::string& mode,
                     std::uint64_t points, std::uint64_t runs) {
  Counts& counts = rows_[{routine, elements, mode}];
  counts.points += points;
  counts.runs += runs;
}

bool FaultTable::has(const std::string& routine, int elements, const std::string& mode) const {
  return rows_.contains({routine, elements, mode});
}

void FaultTable::report() const {
  std::map<std::string, std::pair<std::set<std::string>, Counts>> by_mode;
  for (const auto& [row, counts] : rows_) {
    auto& [routines, total] = by_mode[std::get<2>(row)];
    routines.insert(std::get<0>(row));
    total.points += counts.points;
    total.runs += counts.runs;
  }
  for (const auto& [mode, totals] : by_mode) {
    const auto& [routines, total] = totals;
    std::printf("faults: %-42s %4zu routines, %9llu points, %9llu runs\n", mode.c_str(),
                routines.size(), static_cast<unsigned long long>(total.points),
                static_cast<unsigned long long>(total.runs));
  }
  const char* const path = std::getenv("ZRB_FAULT_TABLE");
  if (path == nullptr) return;
  std::ofstream file(path);
  file << "routine\tstate\tfault\tpoints\truns\n";
  for (const auto& [row, counts] : rows_) {
    file << std::get<0>(row) << '\t' << state_name(std::get<1>(row)) << '\t' << std::get<2>(row)
         << '\t' << counts.points << '\t' << counts.runs << '\n';
  }
}

}  // namespace faults
