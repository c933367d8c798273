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

// Loads the file, or a copy of it when it is loaded already: the plugin's variables are as new.
// Throws PluginLoadError.
PluginLibrary open_plugin(const std::string& path);

// Under AddressSanitizer the library stays loaded until the next one is opened.
void close_plugin(void* handle);

}  // namespace standin

#endif
