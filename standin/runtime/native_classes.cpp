// The list of the host's own classes.
#include "runtime/native_classes.h"

#include <vector>

namespace standin {

std::span<const NativeClassRow> native_class_rows() {
  static const std::vector<NativeClassRow> rows = [] {
    std::vector<NativeClassRow> all = {
        {"Object", nullptr, {}}, dictionary_class_row(), date_class_row()};
    const std::span<const NativeClassRow> exceptions = exception_class_rows();
    all.insert(all.end(), exceptions.begin(), exceptions.end());
    return all;
  }();
  return rows;
}

void bind_native_members(ClassInfo& class_info, const NativeClassRow& row,
                         const TypeResolver& resolver) {
  std::vector<MethodInfo> methods;
  for (const NativeMethodRow& method_row : row.methods) {
    MethodInfo method;
    method.declaration = parse_declaration(method_row.declaration, resolver);
    method.native = method_row.method;
    method.native_setter = method_row.setter;
    methods.push_back(std::move(method));
  }
  std::vector<PropertyInfo> properties;
  for (const NativePropertyRow& property_row : row.properties) {
    PropertyInfo property;
    property.name = property_row.name;
    property.type = resolver(property_row.type).value();
    property.native_getter = property_row.getter;
    property.native_setter = property_row.setter;
    properties.push_back(std::move(property));
  }
  class_info.set_members(std::move(methods), std::move(properties));
}

}  // namespace standin
