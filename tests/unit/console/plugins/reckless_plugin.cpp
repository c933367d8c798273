// A plugin whose routines throw C++ exceptions, one that says what it is and a bare number, or
// crash.
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>

#include "host/binary_interface.h"

namespace {

void fail(REALobject) {
  throw std::runtime_error("the disk is full");
}
void fail_with_number(REALobject) {
  throw 42;
}
// As when memory is used that is gone; and as when the C library finds it damaged.
void crash(REALobject) {
  std::raise(SIGSEGV);
}
void abort_process(REALobject) {
  std::abort();
}

REALmethodDefinition methods[] = {
    {reinterpret_cast<void*>(fail), nullptr, "Fail", 4},
    {reinterpret_cast<void*>(fail_with_number), nullptr, "FailWithNumber", 4},
    {reinterpret_cast<void*>(crash), nullptr, "Crash", 4},
    {reinterpret_cast<void*>(abort_process), nullptr, "Abort", 4},
};

REALclassDefinition class_record() {
  REALclassDefinition record{};
  record.version = 9;
  record.name = "Reckless";
  record.methods = methods;
  record.methodCount = 4;
  return record;
}

REALclassDefinition reckless_class = class_record();

}  // namespace

extern "C" __attribute__((visibility("default"))) std::int32_t REALPluginMain(
    HostResolver resolver) {
  reinterpret_cast<void (*)(REALclassDefinition*)>(resolver("PluginRegisterClass"))(
      &reckless_class);
  return 0;
}
