// How many runs each routine had, by state and kind of fault: printed at the end, in full on
// demand.
//
// The totals go to the standard output. The table itself, one line a routine, state and kind, goes
// to the file that the environment variable ZRB_FAULT_TABLE names.
#ifndef ZRB_TESTS_FAULTS_FAULT_TABLE_H
#define ZRB_TESTS_FAULTS_FAULT_TABLE_H

#include <cstdint>
#include <map>
#include <string>
#include <tuple>

namespace faults {

class FaultTable {
 public:
  static FaultTable& instance();

  /// `points`: how many host calls, or allocations, the routine makes; `runs`: at how many of them
  /// a fault was set.
  void add(const std::string& routine, int elements, const std::string& mode, std::uint64_t points,
           std::uint64_t runs);
  bool has(const std::string& routine, int elements, const std::string& mode) const;
  /// Prints the totals, and writes the table if a file was asked for.
  void report() const;

 private:
  struct Counts {
    std::uint64_t points = 0;
    std::uint64_t runs = 0;
  };
  std::map<std::tuple<std::string, int, std::string>, Counts> rows_;
};

}  // namespace faults

#endif
