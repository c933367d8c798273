#include "fasthost/plugin.h"

#include <dlfcn.h>

#include <span>
#include <stdexcept>

#include "fasthost/entry_points.h"

namespace fasthost {
namespace {

[[noreturn]] void fail(const std::string& problem) {
  throw std::runtime_error("fast host: " + problem);
}

template <class Record>
std::span<const Record> records(const Record* first, std::int32_t count) {
  return {first, static_cast<std::size_t>(count)};
}

}  // namespace

void load_plugin(const std::string& path, HostResolver resolver) {
  void* library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) fail(::dlerror());
  void* main = ::dlsym(library, "REALPluginMain");
  if (main == nullptr) fail(::dlerror());
  reinterpret_cast<PluginMainFunction>(main)(resolver);
}

const REALclassDefinition& require_class(const std::string& name) {
  const REALclassDefinition* definition = find_class(name.c_str());
  if (definition == nullptr) fail("the plugin registered no class " + name);
  return *definition;
}

void* require_routine(const REALclassDefinition& definition, const std::string& declaration,
                      bool setter) {
  for (const auto& method : records(definition.methods, definition.methodCount)) {
    if (declaration != method.declaration) continue;
    void* routine = setter ? method.setterFunction : method.function;
    if (routine != nullptr) return routine;
  }
  fail(std::string(definition.name) + " has no " + (setter ? "setter " : "method ") + declaration);
}

void* require_getter(const REALclassDefinition& definition, const std::string& property) {
  for (const auto& record : records(definition.properties, definition.propertyCount)) {
    if (property == record.name && record.getter != nullptr) return record.getter;
  }
  fail(std::string(definition.name) + " has no property " + property);
}

}  // namespace fasthost
