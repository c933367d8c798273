// The table of the eighteen container classes and its views.
#include "support/container_classes.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <ostream>
#include <utility>

namespace support {

const char* declared_name(ElementType type) {
  switch (type) {
    case ElementType::integer:
      return "integer";
    case ElementType::string:
      return "string";
    case ElementType::variant:
      return "variant";
  }
  std::abort();
}

std::string ContainerClass::not_initialized_message() const {
  return is_map() ? "Map not initialized" : "Set not initialized";
}

std::string ContainerClass::iterator_not_initialized_message() const {
  return is_map() ? "Iterator not initialized" : "Iterator is nil";
}

int ContainerClass::method_count() const {
  if (is_map()) return is_hashed() ? 24 : 26;
  const int of_hashed_set = key == ElementType::variant ? 15 : 14;
  return is_hashed() ? of_hashed_set : of_hashed_set + 2;
}

int ContainerClass::iterator_method_count() const {
  return 4 + (is_map() ? 1 : 0) + (is_ordered() ? 1 : 0);
}

std::ostream& operator<<(std::ostream& out, const ContainerClass& container_class) {
  return out << container_class.name;
}

const std::vector<ContainerClass>& all_classes() {
  using enum ElementType;
  using enum Storage;
  static const std::vector<ContainerClass> classes = {
      {"IntegerHashSetZRB", "IntegerHashSetIteratorZRB", hashed, integer, {}},
      {"IntegerOrderedSetZRB", "IntegerOrderedSetIteratorZRB", ordered, integer, {}},
      {"IntegerToIntegerHashMapZRB", "IntegerToIntegerHashMapIteratorZRB", hashed, integer,
       integer},
      {"IntegerToIntegerOrderedMapZRB", "IntegerToIntegerOrderedMapIteratorZRB", ordered, integer,
       integer},
      {"IntegerToStringHashMapZRB", "IntegerToStringHashMapIteratorZRB", hashed, integer, string},
      {"IntegerToStringOrderedMapZRB", "IntegerToStringOrderedMapIteratorZRB", ordered, integer,
       string},
      {"IntegerToVariantHashMapZRB", "IntegerToVariantHashMapIteratorZRB", hashed, integer,
       variant},
      {"IntegerToVariantOrderedMapZRB", "IntegerToVariantOrderedMapIteratorZRB", ordered, integer,
       variant},
      {"StringHashSetZRB", "StringHashSetIteratorZRB", hashed, string, {}},
      {"StringOrderedSetZRB", "StringOrderedSetIteratorZRB", ordered, string, {}},
      {"StringToStringHashMapZRB", "StringToStringHashMapIteratorZRB", hashed, string, string},
      {"StringToStringOrderedMapZRB", "StringToStringOrderedMapIteratorZRB", ordered, string,
       string},
      {"StringToVariantHashMapZRB", "StringToVariantHashMapIteratorZRB", hashed, string, variant},
      {"StringToVariantOrderedMapZRB", "StringToVariantOrderedMapIteratorZRB", ordered, string,
       variant},
      {"VariantHashSetZRB", "VariantHashSetIteratorZRB", hashed, variant, {}},
      {"VariantOrderedSetZRB", "VariantOrderedSetIteratorZRB", ordered, variant, {}},
      {"VariantToVariantHashMapZRB", "VariantToVariantHashMapIteratorZRB", hashed, variant,
       variant},
      // The one iterator whose name lacks the word "Ordered".
      {"VariantToVariantOrderedMapZRB", "VariantToVariantMapIteratorZRB", ordered, variant,
       variant},
  };
  return classes;
}

std::vector<ContainerClass> classes_where(const std::function<bool(const ContainerClass&)>& holds) {
  std::vector<ContainerClass> chosen;
  std::copy_if(all_classes().begin(), all_classes().end(), std::back_inserter(chosen), holds);
  return chosen;
}

std::vector<ContainerClass> set_classes() {
  return classes_where([](const ContainerClass& c) { return c.is_set(); });
}

std::vector<ContainerClass> map_classes() {
  return classes_where([](const ContainerClass& c) { return c.is_map(); });
}

std::vector<ContainerClass> hashed_classes() {
  return classes_where([](const ContainerClass& c) { return c.is_hashed(); });
}

std::vector<ContainerClass> ordered_classes() {
  return classes_where([](const ContainerClass& c) { return c.is_ordered(); });
}

std::vector<ContainerClass> classes_with_key(ElementType key) {
  return classes_where([key](const ContainerClass& c) { return c.key == key; });
}

const ContainerClass& class_named(std::string_view name) {
  for (const ContainerClass& candidate : all_classes()) {
    if (candidate.name == name) return candidate;
  }
  std::abort();
}

std::string fill(std::string_view declaration_template, const ContainerClass& container_class) {
  std::string text(declaration_template);
  const auto replace = [&text](std::string_view placeholder, std::string_view word) {
    for (std::size_t at = text.find(placeholder); at != std::string::npos;
         at = text.find(placeholder, at + word.size())) {
      text.replace(at, placeholder.size(), word);
    }
  };
  replace("{K}", declared_name(container_class.key));
  if (container_class.value) replace("{V}", declared_name(*container_class.value));
  replace("{Class}", container_class.name);
  replace("{Iterator}", container_class.iterator_name);
  return text;
}

}  // namespace support
