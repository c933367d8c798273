// Checking class records and binding their rows.
#include "runtime/registration.h"

#include <algorithm>
#include <vector>

#include "runtime/plugin_calls.h"

namespace standin {
namespace {

constexpr std::int32_t known_version = 9;

[[noreturn]] void refuse(const std::string& class_name, const std::string& problem) {
  throw RegistrationError("class " + class_name + ": " + problem);
}

bool is_name(std::string_view text) {
  if (text.empty() || (text.front() >= '0' && text.front() <= '9')) return false;
  return std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
  });
}

void check_table(const std::string& class_name, const char* field, const void* table,
                 std::int32_t count) {
  if (count < 0) refuse(class_name, std::string(field) + "Count is negative");
  if (count > 0 && table == nullptr) {
    refuse(class_name, std::string(field) + " is null, but its count is " + std::to_string(count));
  }
}

void check_unused(const std::string& class_name, const char* field, const void* table,
                  std::int32_t count) {
  if (table != nullptr || count != 0) {
    refuse(class_name,
           std::string(field) + " must be null and empty: this host has no use for them");
  }
}

Type parse_property_type(const std::string& class_name, const REALproperty& row,
                         const TypeResolver& resolver) {
  const std::optional<Type> type = resolver(row.type);
  if (!type || !can_be_passed(*type)) {
    refuse(class_name, std::string("property ") + row.name + " has the type \"" + row.type +
                           "\", which is unknown or cannot be read through a routine");
  }
  return *type;
}

PropertyInfo bind_property(const std::string& class_name, const REALproperty& row,
                           const TypeResolver& resolver) {
  if (row.name == nullptr || !is_name(row.name)) refuse(class_name, "a property has no name");
  if (row.type == nullptr) refuse(class_name, std::string("property ") + row.name + " has no type");
  if (row.getter == nullptr) {
    refuse(class_name, std::string("property ") + row.name + " has no getter");
  }
  PropertyInfo property;
  property.name = row.name;
  property.type = parse_property_type(class_name, row, resolver);
  property.getter = row.getter;
  property.setter = row.setter;
  property.param = row.param;
  return property;
}

void check_callable(const std::string& class_name, const Declaration& declaration,
                    bool has_setter) {
  const std::string start = "declaration \"" + declaration.text + "\": ";
  const std::size_t assigned = has_setter ? 1 : 0;
  if (declaration.parameters.size() + assigned > max_routine_arguments) {
    refuse(class_name, start + "more than " + std::to_string(max_routine_arguments) + " arguments");
  }
  for (const Parameter& parameter : declaration.parameters) {
    if (parameter.by_ref) refuse(class_name, start + "a routine cannot take an argument ByRef");
    if (parameter.optional) refuse(class_name, start + "a routine has no optional parameters");
    if (!can_be_passed(parameter.type)) {
      refuse(class_name, start + "a routine cannot take a " + name(parameter.type));
    }
  }
  if (declaration.has_result() && !can_be_passed(declaration.result)) {
    refuse(class_name, start + "a routine cannot return a " + name(declaration.result));
  }
  if (has_setter && !declaration.has_result()) {
    refuse(class_name, start + "an assignable method needs a result type");
  }
}

MethodInfo bind_method(const std::string& class_name, const REALmethodDefinition& row,
                       std::int32_t index, const TypeResolver& resolver) {
  const std::string where = "method row " + std::to_string(index);
  if (row.declaration == nullptr) refuse(class_name, where + " has no declaration");
  MethodInfo method;
  try {
    method.declaration = parse_declaration(row.declaration, resolver);
  } catch (const DeclarationError& error) {
    refuse(class_name, where + ", " + error.what());
  }
  if (row.function == nullptr) {
    refuse(class_name, where + ", declaration \"" + row.declaration + "\", has no routine");
  }
  check_callable(class_name, method.declaration, row.setterFunction != nullptr);
  method.function = row.function;
  method.setter = row.setterFunction;
  return method;
}

// Which of two such methods a call means could not be told.
bool is_same_call(const Declaration& a, const Declaration& b) {
  return same_name(a.name, b.name) &&
         std::equal(a.parameters.begin(), a.parameters.end(), b.parameters.begin(),
                    b.parameters.end(), [](const Parameter& x, const Parameter& y) {
                      return x.type == y.type && x.assigns == y.assigns;
                    });
}

// Conversions differ by their result alone.
bool is_conversion(const Declaration& declaration) {
  return same_name(declaration.name, "Operator_Convert") && declaration.has_result();
}

void check_distinct(const std::string& class_name, const std::vector<MethodInfo>& methods) {
  for (std::size_t i = 0; i < methods.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      const Declaration& a = methods[j].declaration;
      const Declaration& b = methods[i].declaration;
      if (!is_same_call(a, b)) continue;
      if (is_conversion(a) && is_conversion(b) && !(a.result == b.result)) continue;
      refuse(class_name, "declarations \"" + a.text + "\" and \"" + b.text +
                             "\" cannot be told apart in a call");
    }
  }
}

}  // namespace

std::unique_ptr<ClassInfo> make_class(REALclassDefinition& definition, const ClassInfo* super,
                                      std::size_t guard) {
  const std::string class_name = definition.name == nullptr ? "(no name)" : definition.name;
  if (definition.version != known_version) {
    refuse(class_name, "version is " + std::to_string(definition.version) +
                           "; this host reads records of version " + std::to_string(known_version));
  }
  if (!is_name(definition.name == nullptr ? "" : definition.name)) {
    refuse(class_name, "the name is no name of the language");
  }
  if (definition.dataSize < 0 || definition.dataSize % 16 != 0) {
    refuse(class_name,
           "dataSize is " + std::to_string(definition.dataSize) + "; it must be a multiple of 16");
  }
  check_table(class_name, "properties", definition.properties, definition.propertyCount);
  check_table(class_name, "methods", definition.methods, definition.methodCount);
  check_unused(class_name, "constructor", definition.constructor, 0);
  check_unused(class_name, "events", definition.events, definition.eventCount);
  check_unused(class_name, "eventInstances", definition.eventInstances,
               definition.eventInstanceCount);
  check_unused(class_name, "interfaces", definition.interfaces, 0);
  check_unused(class_name, "attributes", definition.attributes, definition.attributeCount);
  check_unused(class_name, "constants", definition.constants, definition.constantCount);
  check_unused(class_name, "sharedProperties", definition.sharedProperties,
               definition.sharedPropertyCount);
  check_unused(class_name, "sharedMethods", definition.sharedMethods, definition.sharedMethodCount);

  auto result = std::make_unique<ClassInfo>(definition, super, guard);
  definition.forSystemUse = static_cast<std::int32_t>(result->data_offset());
  return result;
}

void bind_members(ClassInfo& class_info, const TypeResolver& resolver) {
  const REALclassDefinition& definition = *class_info.definition();
  std::vector<PropertyInfo> properties;
  properties.reserve(static_cast<std::size_t>(definition.propertyCount));
  for (std::int32_t i = 0; i < definition.propertyCount; ++i) {
    properties.push_back(bind_property(class_info.name(), definition.properties[i], resolver));
  }
  std::vector<MethodInfo> methods;
  methods.reserve(static_cast<std::size_t>(definition.methodCount));
  for (std::int32_t i = 0; i < definition.methodCount; ++i) {
    methods.push_back(bind_method(class_info.name(), definition.methods[i], i, resolver));
  }
  check_distinct(class_info.name(), methods);
  class_info.set_members(std::move(methods), std::move(properties));
}

}  // namespace standin
