// Keeping the host.
#include "loaded_host.h"

#include <memory>

namespace fuzz {
namespace {

std::unique_ptr<standin::Host>& the_host() {
  static std::unique_ptr<standin::Host> host;
  return host;
}

}  // namespace

standin::Host& loaded_host(const standin::HostOptions& options) {
  std::unique_ptr<standin::Host>& host = the_host();
  if (host == nullptr) {
    auto started = std::make_unique<standin::Host>(options);
    started->load_plugin(ZRB_PLUGIN_PATH);
    host = std::move(started);
  }
  return *host;
}

void end_loaded_host() {
  the_host().reset();
}

}  // namespace fuzz
