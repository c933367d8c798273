// A plugin that crashes at its start.
#include <csignal>
#include <cstdint>

#include "host/binary_interface.h"

extern "C" __attribute__((visibility("default"))) std::int32_t REALPluginMain(HostResolver) {
  std::raise(SIGSEGV);
  return 0;
}
