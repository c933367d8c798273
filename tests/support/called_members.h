// Which registered members tests called, for those that claim to call all of them.
#ifndef ZRB_TESTS_SUPPORT_CALLED_MEMBERS_H
#define ZRB_TESTS_SUPPORT_CALLED_MEMBERS_H

#include <set>
#include <string>
#include <string_view>

#include "host/binary_interface.h"
#include "runtime/trace.h"

namespace support {

/// Collects the calls that Instance makes while this one lives (one at a time), and, as the host's
/// trace observer, the destructors that the host calls.
class CalledMembers : public standin::TraceObserver {
 public:
  CalledMembers() { collector_ = this; }
  ~CalledMembers() override { collector_ = nullptr; }
  CalledMembers(const CalledMembers&) = delete;
  CalledMembers& operator=(const CalledMembers&) = delete;

  /// The routines behind a record's rows, the class's name in front of each: declarations of
  /// methods, those of assignable ones also with `assigned` behind them, names of properties
  /// likewise, and the destructor.
  static std::set<std::string> members(const REALclassDefinition& record);
  /// What was called, named like that.
  const std::set<std::string>& called() const { return called_; }

  static constexpr const char* assigned = " (assigned)";
  static void note(const REALclassDefinition& record, const char* member, const char* how = "");

  void plugin_call_begins(std::string_view call) override;
  void plugin_call_ends(std::string_view) override {}
  void host_call_begins(std::string_view) override {}
  void host_call_ends(std::string_view) override {}

 private:
  std::set<std::string> called_;
  static inline CalledMembers* collector_ = nullptr;
};

}  // namespace support

#endif
