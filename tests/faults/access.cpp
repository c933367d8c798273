// Routines found by their declarations, and walks from first to last.
#include "access.h"

#include <stdexcept>

namespace faults {
namespace {

using support::Element;

const standin::MethodInfo& method(const char* class_name, std::string_view declaration_template,
                                  const support::ContainerClass& c) {
  const standin::MethodInfo* found = standin::Host::current()
                                         .find_class(class_name)
                                         ->find_method(support::fill(declaration_template, c));
  if (found == nullptr) throw std::runtime_error(std::string(declaration_template));
  return *found;
}

Element adopt_raw(support::ElementType type, void* routine, REALobject iterator) {
  switch (type) {
    case support::ElementType::integer:
      return support::adopt(reinterpret_cast<std::int32_t (*)(REALobject)>(routine)(iterator));
    case support::ElementType::string:
      return support::adopt(reinterpret_cast<REALstring (*)(REALobject)>(routine)(iterator));
    case support::ElementType::variant:
      break;
  }
  return support::adopt(reinterpret_cast<REALobject (*)(REALobject)>(routine)(iterator));
}

}  // namespace

Access::Access(const support::ContainerClass& c, const Stock& stock) : class_(c), stock_(stock) {
  const standin::ClassInfo& info = *standin::Host::current().find_class(c.name);
  const auto routine = [&](std::string_view text) { return method(c.name, text, c).function; };
  const auto of_iterator = [&](std::string_view text) {
    return method(c.iterator_name, text, c).function;
  };
  construct_ = routine("Constructor");
  put_ = c.is_map() ? method(c.name, "value(key as {K}) as {V}", c).setter
                    : routine("insert(key as {K})");
  remove_ = routine("Remove(key as {K}) as integer");
  contains_ =
      routine(c.is_map() ? "hasKey(key as {K}) as boolean" : "lookup(key as {K}) as boolean");
  count_ = info.property("Count")->getter;
  bin_count_ = c.is_hashed() ? info.property("BinCount")->getter : nullptr;
  clear_ = routine("Clear");
  keys_ = routine("Keys as {K}()");
  first_ = routine("first as {Iterator}");
  last_ = routine("last as {Iterator}");
  find_ = routine("find(key as {K}) as {Iterator}");
  move_next_ = of_iterator("MoveNext");
  is_equal_ = of_iterator("isEqual(other as {Iterator}) as boolean");
  key_ = of_iterator("Key as {K}");
  value_ = c.is_map() ? of_iterator("Value as {V}") : nullptr;
}

void Access::put(REALobject container, const Element& key, const Element& value) const {
  support::with_raw(key, [&](auto raw_key) {
    if (class_.is_set()) return call<void>(put_, container, raw_key);
    support::with_raw(value,
                      [&](auto raw_value) { call<void>(put_, container, raw_key, raw_value); });
  });
}

std::int32_t Access::remove(REALobject container, const Element& key) const {
  return support::with_raw(key,
                           [&](auto raw) { return call<std::int32_t>(remove_, container, raw); });
}

bool Access::contains(REALobject container, const Element& key) const {
  return support::with_raw(key, [&](auto raw) { return call<bool>(contains_, container, raw); });
}

std::int32_t Access::bin_count(REALobject container) const {
  return bin_count_ == nullptr ? 0 : call<std::int32_t>(bin_count_, container, 0);
}

standin::ArrayRef Access::keys(REALobject container) const {
  return standin::ArrayRef::adopt(call<REALarray>(keys_, container));
}

standin::ObjectRef Access::first(REALobject container) const {
  return standin::ObjectRef::adopt(call<REALobject>(first_, container));
}

standin::ObjectRef Access::last(REALobject container) const {
  return standin::ObjectRef::adopt(call<REALobject>(last_, container));
}

standin::ObjectRef Access::find(REALobject container, const Element& key) const {
  return support::with_raw(key, [&](auto raw) {
    return standin::ObjectRef::adopt(call<REALobject>(find_, container, raw));
  });
}

std::optional<Contents> Access::walk(REALobject container) const {
  Contents contents;
  const standin::ObjectRef end = last(container);
  const standin::ObjectRef at = first(container);
  while (!is_equal(at.get(), end.get())) {
    if (contents.size() > 2 * Stock::size) return std::nullopt;
    EntryIndices entry{key_at(at.get())};
    if (class_.is_map()) {
      entry.value = stock_.index_of_value(adopt_raw(*class_.value, value_, at.get()));
    }
    contents.push_back(entry);
    move_next(at.get());
  }
  return contents;
}

int Access::key_at(REALobject iterator) const {
  return stock_.index_of_key(adopt_raw(class_.key, key_, iterator));
}

void* Access::word(REALobject instance, std::size_t place) const {
  const standin::ClassInfo& info = *standin::class_of(instance);
  return static_cast<void**>(standin::instance_data(instance, info))[place];
}

}  // namespace faults
