// Freeing, where a sanitizer looks for leaks.
#include "model/leftovers.h"

#include "support/leak_sanitizer.h"

namespace model {
namespace {

using standin::HandleKind;
using standin::HandleReport;

#ifdef ZRB_LEAK_SANITIZER
constexpr bool leaks_are_sought = true;
#else
constexpr bool leaks_are_sought = false;
#endif

template <class Handle>
void release(const HandleReport& report) {
  for (std::uint32_t i = 0; i < report.locks; ++i) {
    standin::unlock(static_cast<Handle>(const_cast<void*>(report.handle)));
  }
}

}  // namespace

Leftovers::~Leftovers() {
  if (!leaks_are_sought) return;
  // Variants first, since they hold strings.
  for (const HandleReport& report : host_.ledger().live()) {
    if (report.kind == HandleKind::variant) release<REALobject>(report);
  }
  for (const HandleReport& report : host_.ledger().live()) {
    if (report.kind == HandleKind::string) release<REALstring>(report);
  }
}

}  // namespace model
