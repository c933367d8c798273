// What a plugin has registered, as text.
#ifndef ZRB_CONSOLE_CLASS_LISTING_H
#define ZRB_CONSOLE_CLASS_LISTING_H

#include <span>
#include <string>

#include "runtime/classes.h"

namespace console {

// For each class its name and how much it has, then its properties and its declarations, in the
// order of its tables.
std::string class_listing(std::span<const standin::ClassInfo* const> classes);

}  // namespace console

#endif
