// The smallest host that a plugin can be loaded into: it notes what the plugin announces and which
// class records it hands over, and writes nothing into them. So a test sees the records exactly as
// the plugin left them.
#ifndef ZRB_TESTS_SUPPORT_REGISTRATION_RECORDER_H
#define ZRB_TESTS_SUPPORT_REGISTRATION_RECORDER_H

#include <cstdint>
#include <string>
#include <vector>

#include "host/binary_interface.h"

namespace support {

/// What one run of an exported entry of the plugin asked of the host.
struct Registration {
  std::int32_t result = -1;         // what the entry returned
  std::vector<std::string> events;  // "version 9", "host version", "class NAME", in order
  std::vector<const REALclassDefinition*> records;  // in the order of registration
};

/// Loads the plugin's binary and keeps it loaded for the life of the process.
class LoadedPlugin {
 public:
  explicit LoadedPlugin(const std::string& path);

  /// Calls `REALPluginMain` with the recording host's resolver.
  Registration run_main() const;
  /// Calls `PluginEntry` alone; `run_main` must have been called before.
  Registration run_entry() const;

  /// The plugin under test, already started once; shared by all tests of an executable.
  static const LoadedPlugin& started();
  /// What the first start registered.
  static const Registration& first_registration();

 private:
  void* handle_;
};

}  // namespace support

#endif
