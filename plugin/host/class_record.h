// Where a class's record lies, for whoever needs the offset that the host wrote into it.
#ifndef ZRB_PLUGIN_HOST_CLASS_RECORD_H
#define ZRB_PLUGIN_HOST_CLASS_RECORD_H

#include "host/binary_interface.h"

/// The static record of a container class, and of its iterator class. `class_tables.h` fills them;
/// from registration on `forSystemUse` is the host's.
template <class Container>
struct ClassRecord {
  static REALclassDefinition container;
  static REALclassDefinition iterator;
};

/// The plugin's data in an instance of the class that `record` describes.
template <class Data>
Data& instance_data(REALobject instance, const REALclassDefinition& record) {
  auto* bytes = reinterpret_cast<unsigned char*>(instance);
  return *reinterpret_cast<Data*>(bytes + record.forSystemUse);
}

#endif
