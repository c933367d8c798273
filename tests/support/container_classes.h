// The eighteen container classes as data: every suite that holds for several classes takes its
// parameters from this table.
#ifndef ZRB_TESTS_SUPPORT_CONTAINER_CLASSES_H
#define ZRB_TESTS_SUPPORT_CONTAINER_CLASSES_H

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace support {

enum class ElementType { integer, string, variant };
enum class Storage { hashed, ordered };

/// The word by which declarations name the type: "integer", "string", "variant".
const char* declared_name(ElementType type);

struct ContainerClass {
  const char* name;
  const char* iterator_name;
  Storage storage;
  ElementType key;
  std::optional<ElementType> value;  // maps only

  bool is_map() const { return value.has_value(); }
  bool is_set() const { return !is_map(); }
  bool is_hashed() const { return storage == Storage::hashed; }
  bool is_ordered() const { return storage == Storage::ordered; }
  std::string not_initialized_message() const;           // what a call without storage raises
  std::string iterator_not_initialized_message() const;  // what a call without position raises
  int method_count() const;
  int iterator_method_count() const;
  int property_count() const { return is_hashed() ? 4 : 3; }
};

/// GoogleTest prints parameters with this, so that a failure names the class.
std::ostream& operator<<(std::ostream& out, const ContainerClass& container_class);

/// All eighteen, in the order of their registration.
const std::vector<ContainerClass>& all_classes();

/// Those of the eighteen for which `holds` is true, in the same order.
std::vector<ContainerClass> classes_where(const std::function<bool(const ContainerClass&)>& holds);
std::vector<ContainerClass> set_classes();
std::vector<ContainerClass> map_classes();
std::vector<ContainerClass> hashed_classes();
std::vector<ContainerClass> ordered_classes();
std::vector<ContainerClass> classes_with_key(ElementType key);

/// The class of that name; aborts when there is none, since names in tests are constants.
const ContainerClass& class_named(std::string_view name);

/// Fills {K}, {V}, {Class} and {Iterator} of a declaration's template.
std::string fill(std::string_view declaration_template, const ContainerClass& container_class);

/// Names the instances of a suite after their classes.
struct ClassName {
  std::string operator()(const ::testing::TestParamInfo<ContainerClass>& info) const {
    return info.param.name;
  }
};

}  // namespace support

#endif
