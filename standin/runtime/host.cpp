// The host: its classes, its plugins, and what it hands out to them.
#include "runtime/host.h"

#include <algorithm>
#include <map>
#include <utility>

#include "runtime/declarations.h"
#include "runtime/entry_points.h"
#include "runtime/native_classes.h"
#include "runtime/plugin_library.h"
#include "runtime/registration.h"

namespace standin {

struct Host::Classes {
  std::vector<std::unique_ptr<ClassInfo>> all;
  std::map<std::string, ClassInfo*> by_name;  // in lower case
  std::vector<ClassInfo*> unbound;            // registered, members still to come

  void add(std::unique_ptr<ClassInfo> class_info) {
    by_name[lower_name(class_info->name())] = class_info.get();
    all.push_back(std::move(class_info));
  }
  void remove(const ClassInfo* class_info) {
    by_name.erase(lower_name(class_info->name()));
    std::erase_if(all, [&](const auto& owned) { return owned.get() == class_info; });
  }
  bool has_instances() const {
    return std::any_of(all.begin(), all.end(),
                       [](const auto& class_info) { return class_info->live_instances() != 0; });
  }
};

namespace {

Host* current_host = nullptr;

// Guards differ from class to class, so that the offset of one class's data is of no use for
// another.
std::size_t guard_of(bool strict, std::size_t class_number) {
  return strict ? 16 * (1 + class_number % 3) : 0;
}

}  // namespace

Host::Host(HostOptions options)
    : options_(std::move(options)),
      ledger_(options_.instrument || options_.strict_ledger, options_.strict_ledger),
      classes_(std::make_unique<Classes>()) {
  if (current_host != nullptr) throw std::logic_error("there is a host already");
  for (const std::string& name : options_.without) {
    require_entry_point(name);
    hidden_.insert(normalized(name));
  }
  if (!options_.version) hidden_.insert(normalized("REALGetRBVersion"));
  for (const std::string& name : options_.without_classes) hidden_classes_.insert(lower_name(name));

  for (const NativeClassRow& row : native_class_rows()) {
    const ClassInfo* super = row.super == nullptr ? nullptr : find_class(row.super);
    classes_->add(std::make_unique<ClassInfo>(row.name, super, row.data));
    native_class_list_.push_back(classes_->all.back().get());
  }
  for (const NativeClassRow& row : native_class_rows()) {
    bind_native_members(*classes_->by_name.at(lower_name(row.name)), row, type_resolver());
  }
  current_host = this;
}

Host::~Host() {
  pending_exception_.reset();
  current_host = nullptr;
  if (classes_->has_instances()) {
    // Somebody still holds objects: their classes, and the code of those, must outlive them.
    static std::vector<std::unique_ptr<Classes>> kept;
    kept.push_back(std::move(classes_));
    return;
  }
  for (void* library : libraries_) close_plugin(library);
}

Host& Host::current() {
  if (current_host == nullptr) throw std::logic_error("there is no host");
  return *current_host;
}

Host* Host::current_or_null() noexcept {
  return current_host;
}

HostResolver Host::resolver() {
  return [](const char* name) -> void* {
    return current_host == nullptr || name == nullptr ? nullptr : current_host->resolve(name);
  };
}

void* Host::resolve(const char* name) {
  if (is_instrumented()) calls_.count_lookup(name);
  const std::optional<std::size_t> index = entry_point_index(name);
  if (!index) return nullptr;
  const EntryPoint& entry = entry_points()[*index];
  // Services are found by their very names only.
  if (entry.group != EntryPointGroup::service || std::string_view(entry.name) != name)
    return nullptr;
  return hand_out(*index);
}

void* Host::hand_out(std::size_t index) const {
  const EntryPoint& entry = entry_points()[index];
  if (!hidden_.empty() && hides(entry.name)) return nullptr;
  return reinterpret_cast<void*>(is_instrumented() ? entry.instrumented : entry.plain);
}

bool Host::hides(std::string_view name) const {
  return hidden_.contains(normalized(name));
}

bool Host::hides_class(std::string_view name) const {
  return !hidden_classes_.empty() && hidden_classes_.contains(lower_name(name));
}

const ClassInfo* Host::find_class(std::string_view name) const {
  const auto found = classes_->by_name.find(lower_name(name));
  return found == classes_->by_name.end() ? nullptr : found->second;
}

TypeResolver Host::type_resolver() const {
  return [this](std::string_view name) -> std::optional<Type> {
    if (const std::optional<Type> builtin = builtin_type(name)) return builtin;
    const ClassInfo* class_info = find_class(name);
    return class_info == nullptr ? std::nullopt : std::optional(Type::of_class(class_info));
  };
}

ObjectRef Host::new_instance(const ClassInfo& class_info) {
  return make_instance(class_info);
}

ObjectRef Host::new_instance(std::string_view class_name) {
  const ClassInfo* class_info = find_class(class_name);
  if (class_info == nullptr) {
    throw std::invalid_argument("no class is called " + std::string(class_name));
  }
  return make_instance(*class_info);
}

void Host::load_plugin(const std::string& path) {
  const PluginLibrary library = open_plugin(path);
  libraries_.push_back(library.handle);
  start(library.plugin_main, path);
}

void Host::start_plugin(const PluginLibrary& library, PluginMainFunction plugin_main) {
  libraries_.push_back(library.handle);
  start(plugin_main, "in this program");
}

void Host::start(PluginMainFunction plugin_main, const std::string& plugin) {
  const std::size_t classes_before = plugin_class_list_.size();
  registration_errors_.clear();
  try {
    plugin_main_result_ = plugin_main(resolver());
    if (plugin_class_list_.size() == classes_before && registration_errors_.empty()) {
      throw PluginLoadError("the plugin " + plugin +
                            " registered no class; its REALPluginMain must call "
                            "\"PluginRegisterClass\" for each of its classes");
    }
    bind_registered_classes();
    report_registration_errors("the plugin " + plugin);
  } catch (...) {
    forget_classes_from(classes_before);
    throw;
  }
}

void Host::register_class(REALclassDefinition* definition) noexcept {
  try {
    if (definition == nullptr) throw RegistrationError("a null class record was registered");
    const std::string class_name = definition->name == nullptr ? "" : definition->name;
    if (!class_name.empty() && (find_class(class_name) != nullptr || builtin_type(class_name))) {
      throw RegistrationError("class " + class_name +
                              ": there is a class or type of that name already");
    }
    const ClassInfo* super = nullptr;
    if (definition->superName != nullptr) {
      super = find_class(definition->superName);
      if (super == nullptr) {
        throw RegistrationError("class " + class_name + ": the superclass " +
                                definition->superName + " is not registered; register it first");
      }
    }
    classes_->add(make_class(*definition, super,
                             guard_of(options_.strict_ledger, plugin_class_list_.size())));
    plugin_class_list_.push_back(classes_->all.back().get());
    classes_->unbound.push_back(classes_->all.back().get());
  } catch (const std::exception& error) {
    registration_errors_.push_back(error.what());
  }
}

// Not before all are known, since declarations may name classes that are registered later.
void Host::bind_registered_classes() {
  for (ClassInfo* class_info : std::exchange(classes_->unbound, {})) {
    try {
      bind_members(*class_info, type_resolver());
    } catch (const RegistrationError& error) {
      registration_errors_.push_back(error.what());
    }
  }
}

void Host::finish_registration() {
  const std::size_t classes_before = plugin_class_list_.size() - classes_->unbound.size();
  try {
    bind_registered_classes();
    report_registration_errors("the program");
  } catch (...) {
    forget_classes_from(classes_before);
    throw;
  }
}

void Host::report_registration_errors(const std::string& plugin) {
  if (registration_errors_.empty()) return;
  std::string text =
      plugin + " registers what this host cannot read; correct the record and build again:";
  for (const std::string& error : registration_errors_) text += "\n  " + error;
  registration_errors_.clear();
  throw PluginLoadError(text);
}

void Host::forget_classes_from(std::size_t position) {
  classes_->unbound.clear();
  for (std::size_t i = plugin_class_list_.size(); i > position; --i) {
    const ClassInfo* class_info = plugin_class_list_[i - 1];
    if (class_info->live_instances() == 0) classes_->remove(class_info);
  }
  plugin_class_list_.resize(position);
}

}  // namespace standin
