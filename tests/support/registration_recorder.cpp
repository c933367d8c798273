// A host of four entry points that records the plugin's registration.
#include "support/registration_recorder.h"

#include <dlfcn.h>

#include <stdexcept>
#include <string_view>

namespace support {
namespace {

Registration* recording = nullptr;

void register_plugin_version(std::int32_t version) {
  recording->events.push_back("version " + std::to_string(version));
}

double host_version() {
  recording->events.emplace_back("host version");
  return 2012.1;
}

void register_class(const REALclassDefinition* record) {
  recording->events.push_back(std::string("class ") + record->name);
  recording->records.push_back(record);
}

void* resolve(const char* name) {
  const std::string_view wanted = name;
  if (wanted == "RegisterPluginVersion") return reinterpret_cast<void*>(&register_plugin_version);
  if (wanted == "REALGetRBVersion") return reinterpret_cast<void*>(&host_version);
  if (wanted == "PluginRegisterClass") return reinterpret_cast<void*>(&register_class);
  return nullptr;
}

template <class Function>
Function exported(void* library, const char* name) {
  void* address = dlsym(library, name);
  if (address == nullptr) throw std::runtime_error(std::string("the plugin lacks ") + name);
  return reinterpret_cast<Function>(address);
}

}  // namespace

LoadedPlugin::LoadedPlugin(const std::string& path)
    : handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (handle_ == nullptr) throw std::runtime_error(dlerror());
}

Registration LoadedPlugin::run_main() const {
  Registration registration;
  recording = &registration;
  registration.result = exported<PluginMainFunction>(handle_, "REALPluginMain")(&resolve);
  recording = nullptr;
  return registration;
}

Registration LoadedPlugin::run_entry() const {
  Registration registration;
  recording = &registration;
  registration.result = exported<std::int32_t (*)()>(handle_, "PluginEntry")();
  recording = nullptr;
  return registration;
}

const LoadedPlugin& LoadedPlugin::started() {
  static const LoadedPlugin plugin(ZRB_PLUGIN_PATH);
  static_cast<void>(first_registration());
  return plugin;
}

const Registration& LoadedPlugin::first_registration() {
  static const Registration registration = LoadedPlugin(ZRB_PLUGIN_PATH).run_main();
  return registration;
}

}  // namespace support
