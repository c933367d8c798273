// A plugin whose start fails with a C++ exception.
#include <cstdint>
#include <stdexcept>

#include "host/binary_interface.h"

extern "C" __attribute__((visibility("default"))) std::int32_t REALPluginMain(HostResolver) {
  throw std::runtime_error("the licence has expired");
}
