// Which handles gained or lost locks during a piece of a test, exactly.
#ifndef ZRB_TESTS_SUPPORT_LOCK_CHANGES_H
#define ZRB_TESTS_SUPPORT_LOCK_CHANGES_H

#include <cstdint>
#include <map>
#include <string>

#include "runtime/host.h"
#include "support/elements.h"

namespace support {

/// Changes by handle; handles without a change are left out.
using LockChanges = std::map<const void*, std::int64_t>;

/// Begins where it is made.
class LockWatch {
 public:
  LockWatch() : before_(standin::Host::current().ledger().snapshot()) {}

  /// Everything that the host counts locks of, what came into being included.
  LockChanges changes() const {
    LockChanges result;
    for (const auto& report : standin::Host::current().ledger().changes_since(before_)) {
      if (report.change != 0) result[report.handle] = report.change;
    }
    return result;
  }

  std::int64_t change(const Element& element) const {
    const LockChanges all = changes();
    const auto found = all.find(handle(element));
    return found == all.end() ? 0 : found->second;
  }

 private:
  standin::Ledger::Snapshot before_;
};

/// Adds an expected change; integers and nil have none.
inline void expect(LockChanges& expected, const Element& element, std::int64_t change) {
  if (handle(element) == nullptr || change == 0) return;
  std::int64_t& sum = expected[handle(element)];
  sum += change;
  if (sum == 0) expected.erase(handle(element));
}

}  // namespace support

#endif
