// Hosts whose entry points answer otherwise than they should.
#ifndef ZRB_TESTS_HOSTILE_LIES_H
#define ZRB_TESTS_HOSTILE_LIES_H

#include <map>
#include <string>

#include "runtime/host.h"

namespace hostile {

/// What the plugin gets in place of the stand-in host's own functions: by looked-up name, or by the
/// declaration of a framework function as the plugin writes it. Null hides the name.
using Lies = std::map<std::string, void*>;

template <class Result, class... Arguments>
void* lie(Result (*function)(Arguments...)) {
  return reinterpret_cast<void*>(function);
}

/// Loads the plugin under test into a host that tells these lies from the first lookup on. One
/// lying host at a time.
void load_with_lies(standin::Host& host, const Lies& lies);

/// Starts the plugin with a resolver of the test's own, and no host behind it.
std::int32_t start_with_resolver(HostResolver resolver);

}  // namespace hostile

#endif
