// Printing traces, and feeding them from the runtime.
#include "runtime/trace.h"

#include <ostream>

#include "runtime/classes.h"
#include "runtime/host.h"
#include "runtime/trace_scope.h"

namespace standin {

void TracePrinter::begin(std::string_view call) {
  if (line_open_) out_ << '\n';
  out_ << std::string(2 * depth_, ' ') << call;
  ++depth_;
  line_open_ = true;
}

void TracePrinter::end(std::string_view result) {
  --depth_;
  if (line_open_) {
    if (!result.empty()) out_ << " -> " << result;
    out_ << '\n';
  } else if (!result.empty()) {
    out_ << std::string(2 * depth_, ' ') << "-> " << result << '\n';
  }
  line_open_ = false;
}

PluginCallTrace::PluginCallTrace(REALobject instance, std::string_view member,
                                 std::span<const Value> arguments)
    : observer_(nullptr) {
  Host* host = Host::current_or_null();
  if (host == nullptr || host->trace() == nullptr) return;
  std::string call = describe(instance) + "." + std::string(member);
  if (!arguments.empty()) {
    call += "(";
    for (const Value& argument : arguments) {
      if (&argument != arguments.data()) call += ", ";
      call += describe(argument);
    }
    call += ")";
  }
  host->trace()->plugin_call_begins(call);
  observer_ = host->trace();
}

PluginCallTrace::~PluginCallTrace() {
  if (observer_ != nullptr) observer_->plugin_call_ends("left by a C++ exception");
}

void PluginCallTrace::ends(std::string_view result) {
  if (observer_ != nullptr) observer_->plugin_call_ends(result);
  observer_ = nullptr;
}

}  // namespace standin
