// The exported entry: everything begins here.
#include "host/export.h"
#include "host/resolver.h"
#include "host/services.h"
#include "host/start.h"

bool host_gives_no_string_data = false;

namespace {

constexpr std::int32_t plugin_interface_version = 9;
constexpr double first_version_with_string_data = 2012;

}  // namespace

std::int32_t REALPluginMain(HostResolver resolver) {
  keep_resolver(resolver);
  RegisterPluginVersion(plugin_interface_version);
  const double version = REALGetRBVersion();
  host_gives_no_string_data = version != 0 && version < first_version_with_string_data;
  return PluginEntry();
}
