// Traces: watching a plugin's calls as they happen. For hosts made with `instrument`.
#ifndef ZRB_STANDIN_RUNTIME_TRACE_H
#define ZRB_STANDIN_RUNTIME_TRACE_H

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

namespace standin {

// Calls nest: host calls happen inside a plugin call, and unlocking the last lock of an object may
// call the plugin again (its destructor) inside a host call.
class TraceObserver {
 public:
  virtual ~TraceObserver() = default;
  // A routine of the plugin: `IntegerHashSetZRB #4.insert(5)`.
  virtual void plugin_call_begins(std::string_view call) = 0;
  // Its result, "" if it has none; or how it ended: `raises NilObjectException: message`.
  virtual void plugin_call_ends(std::string_view result) = 0;
  // An entry point: `REALLockString(string #3 "a" (UTF-8))`.
  virtual void host_call_begins(std::string_view call) = 0;
  virtual void host_call_ends(std::string_view result) = 0;
};

// Prints one line a call, indented by its depth, the result behind an arrow.
class TracePrinter : public TraceObserver {
 public:
  explicit TracePrinter(std::ostream& out) : out_(out) {}
  void plugin_call_begins(std::string_view call) override { begin(call); }
  void plugin_call_ends(std::string_view result) override { end(result); }
  void host_call_begins(std::string_view call) override { begin(call); }
  void host_call_ends(std::string_view result) override { end(result); }

 private:
  void begin(std::string_view call);
  void end(std::string_view result);

  std::ostream& out_;
  std::size_t depth_ = 0;
  bool line_open_ = false;  // the last line still lacks its result
};

}  // namespace standin

#endif
