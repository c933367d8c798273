// What stays locked when a sequence is over: the comparisons of strings and variants leave locks
// for good. The book of locks has looked at them; a leak sanitizer should not.
#ifndef ZRB_TESTS_MODEL_LEFTOVERS_H
#define ZRB_TESTS_MODEL_LEFTOVERS_H

#include "runtime/host.h"

namespace model {

/// At its end, frees what came into being since its start and still lives in the host: in a host
/// that others use afterwards, and where a sanitizer looks for leaks. Nothing of it may be used
/// any more.
class Leftovers {
 public:
  explicit Leftovers(standin::Host& host, bool in_shared_host = false);
  ~Leftovers();
  Leftovers(const Leftovers&) = delete;
  Leftovers& operator=(const Leftovers&) = delete;

 private:
  template <class Handle>
  void release_all(standin::HandleKind kind);

  standin::Host& host_;
  bool are_freed_;
  standin::Ledger::Snapshot before_;
};

}  // namespace model

#endif
