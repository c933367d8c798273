// The fast host's entry points: what its resolver hands out by name.
//
// Each exists twice, generated from one line of a table: plain, for measuring time, and counting,
// for telling exactly how many calls an operation makes. The plain ones know nothing of counts.
//
// Strings hold UTF-8. `PluginGetStringData` in UTF-8 costs neither a copy nor a block: the record
// points to the string's own bytes and holds one lock on it until it is disposed of. A host cannot
// do it for less, so calls that the plugin saves are worth as little here as they can be.
#ifndef ZRB_FASTHOST_ENTRY_POINTS_H
#define ZRB_FASTHOST_ENTRY_POINTS_H

#include <cstdint>
#include <string>
#include <vector>

#include "host/binary_interface.h"

namespace fasthost {

/// The plain entry point of that name, or null.
void* resolve(const char* name);

/// Its counting twin, or null.
void* resolve_counting(const char* name);

/// Whether this process was given counting entry points.
bool is_counting();

/// Number of calls of all counting entry points so far.
std::uint64_t total_calls();

struct CallCount {
  std::string name;
  std::uint64_t calls;
};
std::vector<CallCount> call_counts();

/// The registered class of that name, or null.
const REALclassDefinition* find_class(const char* name);

/// Number of classes registered so far.
std::size_t class_count();

}  // namespace fasthost

#endif
