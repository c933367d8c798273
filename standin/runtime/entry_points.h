// The entry points that the host offers, in one table.
#ifndef ZRB_STANDIN_RUNTIME_ENTRY_POINTS_H
#define ZRB_STANDIN_RUNTIME_ENTRY_POINTS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace standin {

enum class EntryPointGroup : std::uint8_t {
  service,            // looked up by name, through the resolver
  framework,          // a language function, through "REALLoadGlobalMethod"
  dictionary_method,  // through "REALLoadObjectMethod" of a Dictionary
  array_procedure,    // through "RuntimeArrayDirectGet…Proc" of an array
};

using AnyFunction = void (*)();

struct EntryPoint {
  EntryPointGroup group;
  const char* name;  // or declaration
  AnyFunction plain;
  AnyFunction instrumented;  // the same, counted, traced, checked, failing on demand
};

std::span<const EntryPoint> entry_points();

// Its place in the table, by name or by declaration in any case and spacing.
std::optional<std::size_t> entry_point_index(std::string_view name);
// The same; std::invalid_argument if there is none.
std::size_t require_entry_point(std::string_view name);

}  // namespace standin

#endif
