// Registers every class with the host.
#include "host/catalogue.h"
#include "host/class_tables.h"
#include "host/export.h"
#include "host/services.h"

namespace {

// The host reserves instance data in units of 16 bytes. The rounded size goes into the record, so
// that a second registration finds it as it is.
void MyREALRegisterClass(REALclassDefinition& definition) {
  while (definition.dataSize % 16 != 0) ++definition.dataSize;
  REALRegisterClass(&definition);
}

template <class... Classes>
void register_all(ClassList<Classes...>) {
  ((MyREALRegisterClass(ClassRecord<Classes>::container),
    MyREALRegisterClass(ClassRecord<Classes>::iterator)),
   ...);
}

}  // namespace

std::int32_t PluginEntry() {
  register_all(ContainerClasses{});
  return 0;
}
