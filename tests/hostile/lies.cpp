// The resolver between the plugin and the stand-in host.
#include "lies.h"

#include <cstdlib>

#include "runtime/plugin_library.h"

namespace hostile {
namespace {

Lies told;
PluginMainFunction plugin_main = nullptr;
HostResolver truth = nullptr;

using GlobalMethodLoader = void* (*)(std::int32_t, const char*);

void* load_global_method(std::int32_t zero, const char* declaration) {
  if (const auto lie = told.find(declaration); lie != told.end()) return lie->second;
  void* const loader = truth("REALLoadGlobalMethod");
  return loader == nullptr ? nullptr
                           : reinterpret_cast<GlobalMethodLoader>(loader)(zero, declaration);
}

void* resolve(const char* name) {
  if (const auto found = told.find(name); found != told.end()) return found->second;
  if (std::string_view(name) == "REALLoadGlobalMethod") return lie(&load_global_method);
  return truth(name);
}

std::int32_t start(HostResolver resolver) {
  truth = resolver;
  return plugin_main(&resolve);
}

}  // namespace

void load_with_lies(standin::Host& host, const Lies& lies) {
  told = lies;
  const standin::PluginLibrary library = standin::open_plugin(ZRB_PLUGIN_PATH);
  plugin_main = library.plugin_main;
  host.start_plugin(library, &start);
}

std::int32_t start_with_resolver(HostResolver resolver) {
  const standin::PluginLibrary library = standin::open_plugin(ZRB_PLUGIN_PATH);
  const std::int32_t result = library.plugin_main(resolver);
  standin::close_plugin(library.handle);
  return result;
}

}  // namespace hostile
