// Keys and values as a host program holds them, in one type for all three element types.
#ifndef ZRB_TESTS_SUPPORT_ELEMENTS_H
#define ZRB_TESTS_SUPPORT_ELEMENTS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "host/binary_interface.h"
#include "runtime/handles.h"
#include "support/container_classes.h"

namespace support {

/// An integer, or a string or variant handle with one lock that the element owns.
using Element = std::variant<std::int32_t, standin::StringRef, standin::ObjectRef>;

/// The index-th element of a type, for indices from -99999 up. A larger index sorts later. Each
/// call makes a new host object of that content.
Element element(ElementType type, int index);
Element key(const ContainerClass& container_class, int index);
Element value(const ContainerClass& container_class, int index);

/// Nil for strings and variants, 0 for integers: what a routine returns when it has nothing.
Element neutral(ElementType type);

Element string(std::string_view bytes, std::uint32_t encoding = host_encoding::utf8);
Element variant_integer(std::int32_t value);
Element variant_string(std::string_view bytes, std::uint32_t encoding = host_encoding::utf8);

/// What the element holds, as text: two elements describe alike exactly when they are of one type
/// and one content. Floats are told by their value, dates and other objects by their identity.
std::string describe(const Element& element);

/// The host's handle, as an address; null for nil. Integers have none.
const void* handle(const Element& element);

/// How often the host has the element's object locked; 0 for nil and integers.
std::int64_t locks(const Element& element);

/// 1 for what the host counts locks of, 0 for nil and integers: the change that one lock makes.
std::int64_t one_lock(const Element& element);

/// Whether it is what `neutral` gives.
bool is_neutral(const Element& element);

/// Calls `function` with what crosses the binary interface: the integer or the borrowed handle.
template <class Function>
decltype(auto) with_raw(const Element& element, Function function) {
  return std::visit(
      [&](const auto& held) {
        if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::int32_t>) {
          return function(held);
        } else {
          return function(held.get());
        }
      },
      element);
}

/// Takes over what a routine returned, with the lock that belongs to the caller.
inline Element adopt(std::int32_t result) {
  return result;
}
inline Element adopt(REALstring result) {
  return standin::StringRef::adopt(result);
}
inline Element adopt(REALobject result) {
  return standin::ObjectRef::adopt(result);
}

/// Adds a lock of its own to a borrowed handle.
inline Element share(std::int32_t value) {
  return value;
}
inline Element share(REALstring handle) {
  return standin::StringRef::share(handle);
}
inline Element share(REALobject handle) {
  return standin::ObjectRef::share(handle);
}

}  // namespace support

#endif
