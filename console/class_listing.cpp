// What a plugin has registered, as text.
#include "class_listing.h"

namespace console {
namespace {

std::string counted(std::size_t count, const std::string& thing, const std::string& things) {
  return std::to_string(count) + " " + (count == 1 ? thing : things);
}

}  // namespace

std::string class_listing(std::span<const standin::ClassInfo* const> classes) {
  std::string text;
  for (const standin::ClassInfo* info : classes) {
    if (!text.empty()) text += "\n";
    text += info->name() + ": " + counted(info->methods().size(), "method", "methods") + ", " +
            counted(info->properties().size(), "property", "properties") + "\n";
    for (const standin::PropertyInfo& property : info->properties()) {
      text += "  property " + property.name + " As " + standin::name(property.type) +
              (property.is_writable() ? "" : " (read-only)") + "\n";
    }
    for (const standin::MethodInfo& method : info->methods()) {
      const bool assignable = method.is_assignable() && !method.declaration.has_assigns();
      text += "  " + method.declaration.text + (assignable ? " (assignable)" : "") + "\n";
    }
  }
  return text;
}

}  // namespace console
