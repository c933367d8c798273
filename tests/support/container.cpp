// Calls through the registered records: a declaration is found in the class's method table by its
// exact text.
#include "support/container.h"

#include <cstring>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <unordered_map>

#include "support/called_members.h"

namespace support {
namespace {

const REALclassDefinition* registered(const char* name) {
  const standin::ClassInfo* info = standin::Host::current().find_class(name);
  if (info == nullptr || info->definition() == nullptr) {
    throw std::runtime_error(std::string("the plugin does not register ") + name);
  }
  return info->definition();
}

/// A template filled for a class, and the row where it was found last.
struct Declaration {
  std::string text;
  std::int32_t row = 0;
};

/// Kept from call to call, since sequences of a million calls are made through a few templates.
Declaration& declaration(const ContainerClass& container_class,
                         std::string_view declaration_template) {
  using Filled = std::map<std::string, Declaration, std::less<>>;
  static std::unordered_map<const ContainerClass*, Filled> all;
  Filled& filled = all[&container_class];
  const auto found = filled.find(declaration_template);
  if (found != filled.end()) return found->second;
  return filled[std::string(declaration_template)] = {fill(declaration_template, container_class)};
}

standin::ObjectRef new_instance(const char* name) {
  standin::Host& host = standin::Host::current();
  return host.new_instance(*host.find_class(name));
}

}  // namespace

Instance::Instance(const ContainerClass& container_class, const char* registered_name,
                   standin::ObjectRef object)
    : class_(&class_named(container_class.name)),
      record_(registered(registered_name)),
      object_(std::move(object)) {}

void* Instance::function(std::string_view declaration_template) const {
  tell_call(declaration_template);
  const REALmethodDefinition& row = method(declaration_template);
  CalledMembers::note(*record_, row.declaration);
  return row.function;
}

void* Instance::setter(std::string_view declaration_template) const {
  tell_call(declaration_template, " =");
  const REALmethodDefinition& row = method(declaration_template);
  CalledMembers::note(*record_, row.declaration, CalledMembers::assigned);
  return row.setterFunction;
}

const REALmethodDefinition& Instance::method(std::string_view declaration_template) const {
  Declaration& declared = declaration(container_class(), declaration_template);
  const auto is_at = [&](std::int32_t row) {
    return row < record_->methodCount && declared.text == record_->methods[row].declaration;
  };
  if (is_at(declared.row)) return record_->methods[declared.row];
  for (std::int32_t row = 0; row < record_->methodCount; ++row) {
    if (!is_at(row)) continue;
    declared.row = row;
    return record_->methods[row];
  }
  throw std::runtime_error(std::string(record_->name) + " does not declare " + declared.text);
}

void Instance::tell_call(std::string_view member, const char* suffix) {
  if (on_call) on_call(std::string(member) + suffix);
}

void* Instance::first_word() const {
  void* word = nullptr;
  std::memcpy(&word, reinterpret_cast<const char*>(get()) + record_->forSystemUse, sizeof word);
  return word;
}

void Instance::plant_array(std::size_t slot, const standin::ArrayRef& array) const {
  REALarray held = standin::ArrayRef(array).release();
  std::memcpy(reinterpret_cast<char*>(get()) + record_->forSystemUse + (slot + 1) * sizeof(void*),
              &held, sizeof held);
}

Iterator Iterator::adopt(const ContainerClass& container_class, REALobject iterator) {
  return {container_class, container_class.iterator_name, standin::ObjectRef::adopt(iterator)};
}

Iterator Iterator::without_position(const ContainerClass& container_class) {
  return {container_class, container_class.iterator_name,
          new_instance(container_class.iterator_name)};
}

void Iterator::set_value(const Element& new_value) const {
  with_raw(new_value, [&](auto raw) { assign("Value as {V}", raw); });
}

bool Iterator::is_equal(REALobject other) const {
  return call<bool>("isEqual(other as {Iterator}) as boolean", other);
}

bool Iterator::is_not_equal(REALobject other) const {
  return call<bool>("isNotEqual(other as {Iterator}) as boolean", other);
}

Container Container::make(const ContainerClass& container_class) {
  Container container = without_storage(container_class);
  container.construct();
  return container;
}

Container Container::without_storage(const ContainerClass& container_class) {
  return {container_class, container_class.name, new_instance(container_class.name)};
}

Container Container::adopt(const ContainerClass& container_class, REALobject container) {
  return {container_class, container_class.name, standin::ObjectRef::adopt(container)};
}

void Container::remove_at(REALobject position) const {
  call<void>("Remove(pos as {Iterator})", position);
}

void Container::remove_range(REALobject first, REALobject last) const {
  call<void>("Remove(first as {Iterator}, last as {Iterator})", first, last);
}

std::int32_t Container::remove(const Element& key) const {
  return with_raw(
      key, [&](auto raw) { return call<std::int32_t>("Remove(key as {K}) as integer", raw); });
}

std::int32_t Container::count_key(const Element& key) const {
  return with_raw(
      key, [&](auto raw) { return call<std::int32_t>("CountKey(key as {K}) as integer", raw); });
}

void Container::insert(const Element& key) const {
  with_raw(key, [&](auto raw) { call<void>("insert(key as {K})", raw); });
}

bool Container::contains(const Element& key) const {
  const char* const declaration = container_class().is_map() ? "hasKey(key as {K}) as boolean"
                                                             : "lookup(key as {K}) as boolean";
  return with_raw(key, [&](auto raw) { return call<bool>(declaration, raw); });
}

void Container::assign_value(const Element& key, const Element& value) const {
  with_raw(key, [&](auto raw_key) {
    with_raw(value,
             [&](auto raw_value) { assign("value(key as {K}) as {V}", raw_key, raw_value); });
  });
}

Element Container::value(const Element& key) const {
  return with_raw(key, [&](auto raw) {
    return call_for(*container_class().value, "value(key as {K}) as {V}", raw);
  });
}

Element Container::lookup(const Element& key, const Element& default_value) const {
  return with_raw(key, [&](auto raw_key) {
    return with_raw(default_value, [&](auto raw_default) {
      return call_for(*container_class().value, "lookup(key as {K}, defaultvalue as {V}) as {V}",
                      raw_key, raw_default);
    });
  });
}

void Container::put(const Element& key, const Element& value) const {
  if (container_class().is_map()) {
    assign_value(key, value);
  } else {
    insert(key);
  }
}

void Container::put(int index) const {
  if (container_class().is_map()) {
    assign_value(support::key(container_class(), index), support::value(container_class(), index));
  } else {
    insert(support::key(container_class(), index));
  }
}

void Container::put_all(int first_index, int count) const {
  for (int index = first_index; index < first_index + count; ++index) put(index);
}

std::vector<Element> Container::keys() const {
  std::vector<Element> result;
  const Iterator end = last();
  for (const Iterator at = first(); !at.is_equal(end); at.move_next()) result.push_back(at.key());
  return result;
}

std::vector<std::string> Container::described_keys() const {
  std::vector<std::string> result;
  for (const Element& key : keys()) result.push_back(describe(key));
  return result;
}

std::vector<std::string> Container::described_values() const {
  std::vector<std::string> result;
  const Iterator end = last();
  for (const Iterator at = first(); !at.is_equal(end); at.move_next()) {
    result.push_back(describe(at.value()));
  }
  return result;
}

void* Container::getter(std::string_view name) const {
  tell_call(name);
  for (std::int32_t i = 0; i < record_->propertyCount; ++i) {
    if (name != record_->properties[i].name) continue;
    CalledMembers::note(*record_, record_->properties[i].name);
    return record_->properties[i].getter;
  }
  throw std::runtime_error(std::string(record_->name) + " has no property " + std::string(name));
}

Iterator Container::nth(int steps) const {
  Iterator at = first();
  for (int i = 0; i < steps; ++i) at.move_next();
  return at;
}

Iterator Container::iterator(std::string_view declaration_template) const {
  return Iterator::adopt(container_class(), call<REALobject>(declaration_template));
}

Iterator Container::iterator_at(std::string_view declaration_template, const Element& key) const {
  return with_raw(key, [&](auto raw) {
    return Iterator::adopt(container_class(), call<REALobject>(declaration_template, raw));
  });
}

}  // namespace support
