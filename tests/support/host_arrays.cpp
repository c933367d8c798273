// Between host arrays and elements.
#include "support/host_arrays.h"

#include <cstdlib>

#include "runtime/arrays.h"

namespace support {
namespace {

standin::ElementStorage storage(ElementType type) {
  switch (type) {
    case ElementType::integer:
      return standin::ElementStorage::integer;
    case ElementType::string:
      return standin::ElementStorage::string;
    case ElementType::variant:
      return standin::ElementStorage::object;
  }
  std::abort();
}

standin::Value to_value(const Element& element) {
  if (const auto* integer = std::get_if<std::int32_t>(&element)) {
    return standin::Value::of_integer(*integer);
  }
  if (const auto* string = std::get_if<standin::StringRef>(&element)) {
    return standin::Value::of_string(*string);
  }
  return standin::Value::of_variant(std::get<standin::ObjectRef>(element));
}

}  // namespace

standin::ArrayRef host_array(ElementType type, const std::vector<Element>& elements) {
  standin::ArrayRef array =
      standin::make_array(storage(type), static_cast<std::int32_t>(elements.size()) - 1);
  for (std::size_t i = 0; i < elements.size(); ++i) {
    set_element(array.get(), static_cast<int>(i), elements[i]);
  }
  return array;
}

std::vector<Element> elements_of(ElementType type, REALarray array) {
  std::vector<Element> result;
  for (std::int32_t i = 0; i <= standin::upper_bound(array); ++i) {
    switch (type) {
      case ElementType::integer:
        result.push_back(share(standin::integer_at(array, i)));
        break;
      case ElementType::string:
        result.push_back(share(standin::string_at(array, i)));
        break;
      case ElementType::variant:
        result.push_back(share(standin::object_at(array, i)));
        break;
    }
  }
  return result;
}

std::vector<std::string> described(ElementType type, REALarray array) {
  std::vector<std::string> result;
  for (const Element& element : elements_of(type, array)) result.push_back(describe(element));
  return result;
}

void set_element(REALarray array, int index, const Element& element) {
  standin::set(array, index, to_value(element));
}

}  // namespace support
