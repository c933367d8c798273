// What a class knows of itself; instances are in instances.cpp.
#include "runtime/classes.h"

#include <algorithm>

namespace standin {
namespace {

std::size_t aligned(std::size_t size) {
  return (size + 15) / 16 * 16;
}

// Where a class without a superclass may begin.
std::size_t end_of(const ClassInfo* super) {
  return super == nullptr ? sizeof(REALobjectStruct) : super->instance_size();
}

bool same_parameters(const Declaration& a, const Declaration& b) {
  return std::equal(a.parameters.begin(), a.parameters.end(), b.parameters.begin(),
                    b.parameters.end(), [](const Parameter& x, const Parameter& y) {
                      return x.type == y.type && x.by_ref == y.by_ref && x.assigns == y.assigns;
                    });
}

}  // namespace

ClassInfo::ClassInfo(std::string name, const ClassInfo* super, NativeData data)
    : name_(std::move(name)),
      super_(super),
      native_data_(data),
      data_offset_(end_of(super)),
      data_size_(aligned(data.size)),
      instance_size_(data_offset_ + data_size_) {}

ClassInfo::ClassInfo(const REALclassDefinition& definition, const ClassInfo* super,
                     std::size_t guard)
    : name_(definition.name),
      super_(super),
      definition_(&definition),
      guard_(aligned(guard)),
      data_offset_(end_of(super) + guard_),
      data_size_(aligned(static_cast<std::size_t>(definition.dataSize))),
      instance_size_(data_offset_ + data_size_ + guard_) {}

void* ClassInfo::destructor() const {
  return definition_ == nullptr ? nullptr : definition_->destructor;
}

void ClassInfo::set_members(std::vector<MethodInfo> methods, std::vector<PropertyInfo> properties) {
  methods_ = std::move(methods);
  properties_ = std::move(properties);
  for (std::size_t i = 0; i < methods_.size(); ++i) {
    methods_[i].owner = this;
    methods_[i].index = i;
    overloads_[lower_name(methods_[i].declaration.name)].push_back(&methods_[i]);
    by_declaration_.emplace(normalized(methods_[i].declaration.text), &methods_[i]);
  }
  for (PropertyInfo& property : properties_) property.owner = this;
  if (super_ == nullptr) return;

  for (const auto& [name, inherited] : super_->overloads_) {
    std::vector<const MethodInfo*>& own = overloads_[name];
    if (name == "constructor" && !own.empty()) continue;
    const std::size_t own_count = own.size();
    for (const MethodInfo* method : inherited) {
      const bool hidden =
          std::any_of(own.begin(), own.begin() + static_cast<std::ptrdiff_t>(own_count),
                      [&](const MethodInfo* mine) {
                        return same_parameters(mine->declaration, method->declaration);
                      });
      if (!hidden) own.push_back(method);
    }
  }
}

std::span<const MethodInfo* const> ClassInfo::overloads(std::string_view name) const {
  const auto found = overloads_.find(lower_name(name));
  if (found == overloads_.end()) return {};
  return found->second;
}

const MethodInfo* ClassInfo::find_method(std::string_view declaration) const {
  const std::string wanted = normalized(declaration);
  for (const ClassInfo* c = this; c != nullptr; c = c->super_) {
    const auto found = c->by_declaration_.find(wanted);
    if (found != c->by_declaration_.end()) return found->second;
  }
  return nullptr;
}

const PropertyInfo* ClassInfo::property(std::string_view name) const {
  for (const ClassInfo* c = this; c != nullptr; c = c->super_) {
    for (const PropertyInfo& property : c->properties_) {
      if (same_name(property.name, name)) return &property;
    }
  }
  return nullptr;
}

bool ClassInfo::derives_from(const ClassInfo& other) const {
  for (const ClassInfo* c = this; c != nullptr; c = c->super_) {
    if (c == &other) return true;
  }
  return false;
}

}  // namespace standin
