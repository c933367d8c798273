// The stand-in host: loads a plugin, hands it entry points, and knows every class.
#ifndef ZRB_STANDIN_RUNTIME_HOST_H
#define ZRB_STANDIN_RUNTIME_HOST_H

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/binary_interface.h"
#include "runtime/call_counts.h"
#include "runtime/classes.h"
#include "runtime/exceptions.h"
#include "runtime/faults.h"
#include "runtime/handles.h"
#include "runtime/ledger.h"
#include "runtime/trace.h"

namespace standin {

struct HostOptions {
  // What "REALGetRBVersion" tells; nothing: the host lacks that entry point.
  std::optional<double> version = 2012.1;
  // Entry points that the host lacks: names as looked up, declarations of framework functions and
  // of Dictionary methods (any case and spacing). An unknown name is refused.
  std::set<std::string> without;
  // Classes that the host cannot instantiate for a plugin, such as "KeyNotFoundException".
  std::set<std::string> without_classes;
  // Hands out entry points that count, trace and fail on demand.
  bool instrument = false;
  // Checks every handle that comes in and keeps released ones, so that misuse is noticed for
  // certain.
  bool strict_ledger = false;
};

// Why a plugin could not be loaded, and what to do.
class PluginLoadError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct PluginLibrary;

// Entry points are plain functions, so there is one host at a time (std::logic_error otherwise).
// Handles should be gone before their host is.
class Host {
 public:
  // std::invalid_argument for a name in `without` that is no entry point.
  explicit Host(HostOptions options = {});
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  static Host& current();  // std::logic_error if there is none
  static Host* current_or_null() noexcept;

  const HostOptions& options() const { return options_; }

  // Loads the plugin, whose variables are as new, and runs its `REALPluginMain`. Throws
  // PluginLoadError. A C++ exception of the plugin's start passes through.
  void load_plugin(const std::string& path);
  // The same for a library that is loaded, and is closed with the host; `plugin_main` may be a
  // function of the caller's that calls the plugin's.
  void start_plugin(const PluginLibrary& library, PluginMainFunction plugin_main);

  // For tests that register classes through `resolve("PluginRegisterClass")` themselves: binds what
  // was registered since. Throws PluginLoadError.
  void finish_registration();

  // What the plugin's resolver calls: an entry point, or null.
  void* resolve(const char* name);
  // The resolver to hand to a plugin.
  static HostResolver resolver();

  // By name in any case; native classes too; null if there is none.
  const ClassInfo* find_class(std::string_view name) const;
  // Registered classes, in their order.
  std::span<const ClassInfo* const> plugin_classes() const { return plugin_class_list_; }
  std::span<const ClassInfo* const> native_classes() const { return native_class_list_; }
  // Resolves built-in type names and classes.
  TypeResolver type_resolver() const;

  // Zeroed data, no constructor run.
  ObjectRef new_instance(const ClassInfo& class_info);
  // The same by name; std::invalid_argument for an unknown class.
  ObjectRef new_instance(std::string_view class_name);

  // Raised without unwinding, by a plugin or on its behalf. A second one replaces the first.
  bool has_pending_exception() const { return static_cast<bool>(pending_exception_); }
  REALobject pending_exception() const { return pending_exception_.get(); }
  ObjectRef take_pending_exception() { return std::move(pending_exception_); }
  void set_pending_exception(ObjectRef exception) { pending_exception_ = std::move(exception); }

  Ledger& ledger() { return ledger_; }
  Faults& faults() { return faults_; }
  CallCounts& calls() { return calls_; }
  // Not owned; null for none.
  void set_trace(TraceObserver* observer) { trace_ = observer; }
  TraceObserver* trace() const { return trace_; }

  // What plugins told "RegisterPluginVersion", in order.
  const std::vector<std::int32_t>& plugin_versions() const { return plugin_versions_; }
  // The result of the last `REALPluginMain`.
  std::int32_t plugin_main_result() const { return plugin_main_result_; }
  // Exceptions that destructors of instances let out.
  const std::vector<std::string>& destructor_errors() const { return destructor_errors_; }

  // For the runtime itself.
  void register_class(REALclassDefinition* definition) noexcept;
  void add_plugin_version(std::int32_t version) { plugin_versions_.push_back(version); }
  void add_destructor_error(std::string text) { destructor_errors_.push_back(std::move(text)); }
  bool is_instrumented() const { return options_.instrument || options_.strict_ledger; }
  // The function of a row of the table of entry points; null if it is hidden.
  void* hand_out(std::size_t entry_point) const;
  bool hides(std::string_view entry_point_or_declaration) const;
  bool hides_class(std::string_view name) const;

 private:
  struct Classes;  // outlives the host while instances live

  void start(PluginMainFunction plugin_main, const std::string& plugin);
  void bind_registered_classes();
  void report_registration_errors(const std::string& plugin);
  void forget_classes_from(std::size_t position);

  HostOptions options_;
  Ledger ledger_;
  Faults faults_;
  CallCounts calls_;
  TraceObserver* trace_ = nullptr;
  std::set<std::string> hidden_;          // normalised
  std::set<std::string> hidden_classes_;  // in lower case
  std::unique_ptr<Classes> classes_;
  std::vector<const ClassInfo*> plugin_class_list_;
  std::vector<const ClassInfo*> native_class_list_;
  std::vector<void*> libraries_;
  std::vector<std::string> registration_errors_;
  ObjectRef pending_exception_;
  std::vector<std::int32_t> plugin_versions_;
  std::int32_t plugin_main_result_ = 0;
  std::vector<std::string> destructor_errors_;
};

}  // namespace standin

#include "runtime/invoke.h"

#endif
