// A plugin that starts and registers nothing.
#include <cstdint>

#include "host/binary_interface.h"

extern "C" __attribute__((visibility("default"))) std::int32_t REALPluginMain(HostResolver) {
  return 0;
}
