// Freeing, where a sanitizer looks for leaks.
#include "model/leftovers.h"

#include "support/leak_sanitizer.h"

namespace model {
namespace {

using standin::HandleKind;
using standin::HandleReport;

#ifdef ZRB_HAS_ADDRESS_SANITIZER
constexpr bool leaks_are_sought = true;
#else
constexpr bool leaks_are_sought = false;
#endif

}  // namespace

Leftovers::Leftovers(standin::Host& host, bool in_shared_host)
    : host_(host), are_freed_(leaks_are_sought || in_shared_host) {
  if (are_freed_) before_ = host.ledger().snapshot();
}

template <class Handle>
void Leftovers::release_all(HandleKind kind) {
  for (const HandleReport& report : host_.ledger().live()) {
    if (report.kind != kind || before_.contains(report.serial)) continue;
    for (std::uint32_t i = 0; i < report.locks; ++i) {
      standin::unlock(static_cast<Handle>(const_cast<void*>(report.handle)));
    }
  }
}

Leftovers::~Leftovers() {
  if (!are_freed_) return;
  // Strings last, since the others hold some.
  release_all<REALobject>(HandleKind::object);
  release_all<REALobject>(HandleKind::variant);
  release_all<REALstring>(HandleKind::string);
}

}  // namespace model
