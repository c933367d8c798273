// Plugin binaries as files.
#ifndef ZRB_STANDIN_RUNTIME_PLUGIN_LIBRARY_H
#define ZRB_STANDIN_RUNTIME_PLUGIN_LIBRARY_H

#include <string>

#include "host/binary_interface.h"

namespace standin {

struct PluginLibrary {
  void* handle;
  PluginMainFunction plugin_main;
};

// Loads a copy of the file, so that loading it again gives a plugin whose variables are as new.
// Throws PluginLoadError.
PluginLibrary open_plugin(const std::string& path);

// Under AddressSanitizer libraries stay loaded, or its reports could not name what is in them.
void close_plugin(void* handle);

}  // namespace standin

#endif
