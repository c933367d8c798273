// How often a plugin called each entry point. For hosts made with `instrument` (or
// `strict_ledger`).
#ifndef ZRB_STANDIN_RUNTIME_CALL_COUNTS_H
#define ZRB_STANDIN_RUNTIME_CALL_COUNTS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace standin {

class CallCounts {
 public:
  CallCounts();

  // Names as for Faults; std::invalid_argument for an unknown one.
  std::uint64_t of(std::string_view entry_point) const;
  std::uint64_t total() const { return total_; }
  // Those that were called at all.
  std::map<std::string, std::uint64_t> called() const;
  // How often the resolver was asked for a name, whether it had it or not.
  std::uint64_t lookups(std::string_view name) const;
  void reset();

  // For the runtime itself.
  void count(std::size_t entry_point) {
    ++counts_[entry_point];
    ++total_;
  }
  void count_lookup(std::string_view name) { ++lookups_[std::string(name)]; }

 private:
  std::vector<std::uint64_t> counts_;
  std::uint64_t total_ = 0;
  std::map<std::string, std::uint64_t, std::less<>> lookups_;
};

}  // namespace standin

#endif
