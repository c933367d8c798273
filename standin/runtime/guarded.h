// Where exceptions of the runtime end: a plugin must not see them unwind.
#ifndef ZRB_STANDIN_RUNTIME_GUARDED_H
#define ZRB_STANDIN_RUNTIME_GUARDED_H

#include <new>
#include <utility>

#include "runtime/exceptions.h"
#include "runtime/host.h"

namespace standin::services {

// Runs the function; a HostException becomes the pending exception, and lack of memory an
// OutOfMemoryException. The answer is then null, 0 or nothing. Other exceptions are no business of
// the language's, and pass.
template <class Function>
auto guarded(Function function) -> decltype(function()) {
  using Result = decltype(function());
  Host* host = Host::current_or_null();
  try {
    return function();
  } catch (const HostException& exception) {
    if (host != nullptr) host->set_pending_exception(ObjectRef::share(exception.object()));
  } catch (const std::bad_alloc&) {
    if (host != nullptr) host->set_pending_exception(make_exception("OutOfMemoryException", ""));
  }
  return Result();
}

}  // namespace standin::services

#endif
