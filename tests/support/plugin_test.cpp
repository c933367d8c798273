// Starting and ending a host for a test.
#include "support/plugin_test.h"

#include <utility>

#include "runtime/exceptions.h"

namespace support {
namespace {

void load_plugin(standin::Host& host) {
  host.load_plugin(ZRB_PLUGIN_PATH);
}

std::unique_ptr<standin::Host> started(const standin::HostOptions& options,
                                       const std::function<void(standin::Host&)>& load) {
  auto host = std::make_unique<standin::Host>(options);
  // Told at once, where the trace of the test says what it was about.
  host->ledger().on_violation(
      [](const standin::Violation& violation) { ADD_FAILURE() << violation.text(); });
  load(*host);
  return host;
}

void release(const standin::HandleReport& report) {
  void* const handle = const_cast<void*>(report.handle);
  for (std::uint32_t i = 0; i < report.locks; ++i) {
    if (report.kind == standin::HandleKind::string) {
      standin::unlock(static_cast<REALstring>(handle));
    } else if (report.kind == standin::HandleKind::array) {
      standin::unlock(static_cast<REALarray>(handle));
    } else {
      standin::unlock(static_cast<REALobject>(handle));
    }
  }
}

/// Frees what comparisons left locked, so that a leak sanitizer speaks of real leaks alone. Holders
/// go before what they may hold.
void release_leftovers(standin::Ledger& ledger) {
  using standin::HandleKind;
  for (std::size_t before = 0; ledger.live_count() > 0 && ledger.live_count() != before;) {
    before = ledger.live_count();
    for (const HandleKind kind :
         {HandleKind::array, HandleKind::variant, HandleKind::object, HandleKind::string}) {
      for (const standin::HandleReport& report : ledger.live()) {
        if (report.kind == kind) release(report);
      }
    }
  }
}

}  // namespace

PluginTest::PluginTest() : host_(started(default_options(), load_plugin)) {}

PluginTest::~PluginTest() {
  release_leftovers(host_->ledger());
}

standin::HostOptions PluginTest::default_options() {
  standin::HostOptions options;
  options.instrument = true;
  options.strict_ledger = true;
  return options;
}

void PluginTest::restart(standin::HostOptions options) {
  restart(std::move(options), load_plugin);
}

void PluginTest::restart(standin::HostOptions options, const Load& load) {
  expect_clean();
  release_leftovers(host_->ledger());
  host_.reset();
  host_ = started(options, load);
}

void PluginTest::restart_without(std::initializer_list<const char*> entry_points) {
  standin::HostOptions options = default_options();
  options.without.insert(entry_points.begin(), entry_points.end());
  restart(options);
}

std::string PluginTest::raised() {
  if (!host_->has_pending_exception()) return "";
  const standin::HostException exception(host_->take_pending_exception());
  return exception.class_name() + ": " + exception.message();
}

void PluginTest::expect_clean() {
  EXPECT_EQ(raised(), "") << "an exception was left pending";
  for (const std::string& error : host_->destructor_errors()) {
    ADD_FAILURE() << "a destructor let out: " << error;
  }
}

void PluginTest::TearDown() {
  expect_clean();
}

Container ClassTest::make_with(int count) const {
  Container container = make();
  container.put_all(0, count);
  return container;
}

}  // namespace support
