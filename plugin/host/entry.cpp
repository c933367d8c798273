// The exported entry: everything begins here.
#include "host/export.h"
#include "host/resolver.h"
#include "host/services.h"
#include "host/start.h"

namespace {

constexpr std::int32_t plugin_interface_version = 9;

double version_of_host = 0;

}  // namespace

double host_version() {
  return version_of_host;
}

std::int32_t REALPluginMain(HostResolver resolver) {
  keep_resolver(resolver);
  RegisterPluginVersion(plugin_interface_version);
  version_of_host = REALGetRBVersion();
  return PluginEntry();
}
