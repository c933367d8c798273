// Making the elements and knowing them again.
#include "stock.h"

#include "runtime/variants.h"

namespace faults {
namespace {

using support::Element;
using support::ElementType;

Element make_key(const support::ContainerClass& container_class, int index) {
  if (container_class.key == ElementType::variant && container_class.is_set()) {
    const Element text = support::element(ElementType::string, index);
    return standin::variant_from_string(std::get<standin::StringRef>(text).get());
  }
  return support::key(container_class, index);
}

std::int64_t locks_of(const Element& element) {
  if (const auto* string = std::get_if<standin::StringRef>(&element)) {
    return standin::lock_count(string->get());
  }
  const auto* variant = std::get_if<standin::ObjectRef>(&element);
  return variant == nullptr ? 0 : standin::lock_count(variant->get());
}

// By the handle where it is known: describing takes its time.
int index_of(const Element& element, const std::unordered_map<const void*, int>& by_handle,
             const std::unordered_map<std::string, int>& by_text) {
  if (const auto* integer = std::get_if<std::int32_t>(&element)) return *integer;
  const auto* string = std::get_if<standin::StringRef>(&element);
  const void* const handle = string != nullptr ? static_cast<const void*>(string->get())
                                               : std::get<standin::ObjectRef>(element).get();
  const auto known = by_handle.find(handle);
  if (known != by_handle.end()) return known->second;
  const auto alike = by_text.find(support::describe(element));
  return alike == by_text.end() ? EntryIndices::unknown : alike->second;
}

}  // namespace

std::string describe(const Contents& contents) {
  std::string text;
  for (const EntryIndices& entry : contents) {
    text += (text.empty() ? "" : " ") + std::to_string(entry.key);
    if (entry.value != EntryIndices::nil_value) text += ":" + std::to_string(entry.value);
  }
  return "[" + text + "]";
}

Stock::Stock(const support::ContainerClass& container_class) {
  for (int i = 0; i < size; ++i) {
    keys_.push_back(make_key(container_class, i));
    equal_keys_.push_back(make_key(container_class, i));
    values_.push_back(support::value(container_class, i + 1));  // 0 stands for nothing
    key_of_handle_[support::handle(keys_.back())] = i;
    key_of_handle_[support::handle(equal_keys_.back())] = i;
    key_of_text_[support::describe(keys_.back())] = i;
    value_of_handle_[support::handle(values_.back())] = i;
    value_of_text_[support::describe(values_.back())] = i;
  }
}

int Stock::index_of_key(const Element& key) const {
  return index_of(key, key_of_handle_, key_of_text_);
}

int Stock::index_of_value(const Element& value) const {
  if (std::holds_alternative<std::int32_t>(value)) return std::get<std::int32_t>(value) - 1;
  if (support::handle(value) == nullptr) return EntryIndices::nil_value;
  return index_of(value, value_of_handle_, value_of_text_);
}

Stock::Locks Stock::locks(int used) const {
  Locks result;
  const std::size_t count = place(used) + 3;
  for (auto* counts : {&result.keys, &result.equal_keys, &result.values}) counts->reserve(count);
  const auto add = [&](int index) {
    result.keys.push_back(locks_of(key(index)));
    result.equal_keys.push_back(locks_of(equal_key(index)));
    result.values.push_back(locks_of(value(index)));
  };
  for (int index = 0; index < used; ++index) add(index);
  add(new_value);
  add(spare);
  add(added);
  return result;
}

}  // namespace faults
