// A plugin whose declarations cannot be read: a parenthesis is missing, and a type does not exist.
#include <cstdint>

#include "host/binary_interface.h"

namespace {

std::int32_t answer(REALobject) {
  return 42;
}

REALmethodDefinition methods_without_end[] = {
    {reinterpret_cast<void*>(answer), nullptr, "Answer as integer", 4},
    {reinterpret_cast<void*>(answer), nullptr, "Ask(question as string", 4},
};
REALmethodDefinition methods_of_unknown_type[] = {
    {reinterpret_cast<void*>(answer), nullptr, "Count as number", 4},
};

REALclassDefinition class_record(const char* name, REALmethodDefinition* methods,
                                 std::int32_t count) {
  REALclassDefinition record{};
  record.version = 9;
  record.name = name;
  record.methods = methods;
  record.methodCount = count;
  return record;
}

REALclassDefinition open_class = class_record("Open", methods_without_end, 2);
REALclassDefinition odd_class = class_record("Odd", methods_of_unknown_type, 1);

}  // namespace

extern "C" __attribute__((visibility("default"))) std::int32_t REALPluginMain(
    HostResolver resolver) {
  auto* register_class =
      reinterpret_cast<void (*)(REALclassDefinition*)>(resolver("PluginRegisterClass"));
  register_class(&open_class);
  register_class(&odd_class);
  return 0;
}
