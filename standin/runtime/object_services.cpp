// The entry points for objects, exceptions, a plugin's start, and functions by declaration.
#include "runtime/dictionary.h"
#include "runtime/entry_points.h"
#include "runtime/guarded.h"
#include "runtime/services.h"

namespace standin::services {
namespace {

void* find_by_declaration(EntryPointGroup group, const char* declaration) {
  if (declaration == nullptr) return nullptr;
  const std::optional<std::size_t> index = entry_point_index(declaration);
  if (!index || entry_points()[*index].group != group) return nullptr;
  return Host::current().hand_out(*index);
}

}  // namespace

void lock_object(REALobject object) {
  lock(object);
}
void unlock_object(REALobject object) {
  unlock(object);
}

REALobject new_instance(const char* class_name) {
  if (class_name == nullptr) return nullptr;
  return guarded([&]() -> REALobject {
    Host& host = Host::current();
    const ClassInfo* class_info = host.find_class(class_name);
    if (class_info == nullptr || host.hides_class(class_name)) return nullptr;
    return make_instance(*class_info).release();
  });
}

void raise_exception(REALobject exception) {
  if (exception != nullptr) Host::current().set_pending_exception(ObjectRef::share(exception));
}

void register_plugin_version(std::int32_t version) {
  Host::current().add_plugin_version(version);
}
double get_version() {
  return Host::current().options().version.value_or(0);
}
void register_class(REALclassDefinition* definition) {
  Host::current().register_class(definition);
}

void* load_global_method(std::int32_t, const char* declaration) {
  return find_by_declaration(EntryPointGroup::framework, declaration);
}

void* load_object_method(REALobject object, const char* declaration) {
  const ClassInfo* class_info = class_of(object);
  if (class_info == nullptr || declaration == nullptr) return nullptr;
  if (is_dictionary(object)) {
    return find_by_declaration(EntryPointGroup::dictionary_method, declaration);
  }
  const MethodInfo* method = class_info->find_method(declaration);
  return method == nullptr ? nullptr : method->function;
}

void dictionary_set_value(REALobject dictionary, REALobject key, REALobject value) {
  guarded([&] { dictionary_set(dictionary, key, value); });
}

REALobject dictionary_get_value(REALobject dictionary, REALobject key) {
  return guarded([&] { return dictionary_value(dictionary, key).release(); });
}

REALobject dictionary_get_key(REALobject dictionary, std::int32_t index) {
  return guarded([&] { return dictionary_key(dictionary, index).release(); });
}

}  // namespace standin::services
