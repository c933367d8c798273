// Tells the host's trace observer, if there is one, of a call for as long as it lasts.
#ifndef ZRB_STANDIN_RUNTIME_TRACE_SCOPE_H
#define ZRB_STANDIN_RUNTIME_TRACE_SCOPE_H

#include <span>
#include <string>
#include <string_view>

#include "runtime/value.h"

namespace standin {

class TraceObserver;

class PluginCallTrace {
 public:
  PluginCallTrace(REALobject instance, std::string_view member, std::span<const Value> arguments);
  // A call that did not come to `ends` was left by a C++ exception.
  ~PluginCallTrace();
  PluginCallTrace(const PluginCallTrace&) = delete;
  PluginCallTrace& operator=(const PluginCallTrace&) = delete;

  bool is_on() const { return observer_ != nullptr; }
  void ends(std::string_view result);

 private:
  TraceObserver* observer_;
};

}  // namespace standin

#endif
