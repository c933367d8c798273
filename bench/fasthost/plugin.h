// Loads the plugin's binary into the fast host, and finds its routines by declaration.
#ifndef ZRB_FASTHOST_PLUGIN_H
#define ZRB_FASTHOST_PLUGIN_H

#include <string>

#include "host/binary_interface.h"

namespace fasthost {

/// Opens the binary and has it register its classes. Call it once in a process; throws
/// std::runtime_error when the file cannot be loaded.
void load_plugin(const std::string& path, HostResolver resolver);

/// Throws std::runtime_error when no such class was registered.
const REALclassDefinition& require_class(const std::string& name);

/// The routine that the class registered under exactly this declaration; `setter` asks for the one
/// that assigns. Throws std::runtime_error when there is none.
void* require_routine(const REALclassDefinition& definition, const std::string& declaration,
                      bool setter = false);

/// The getter of a property.
void* require_getter(const REALclassDefinition& definition, const std::string& property);

}  // namespace fasthost

#endif
