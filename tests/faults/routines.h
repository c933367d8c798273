// Every routine that a host can call, taken from the registration, and how to call each.
//
// `drivers` describes the calls: one row a declaration of a kind of class. What the plugin
// registers is matched with the rows, so a routine without a row, and a row without a routine,
// show.
#ifndef ZRB_TESTS_FAULTS_ROUTINES_H
#define ZRB_TESTS_FAULTS_ROUTINES_H

#include <span>
#include <string>
#include <vector>

#include "runtime/host.h"
#include "support/container_classes.h"

namespace faults {

enum Group : unsigned { set = 1, map = 2, set_iterator = 4, map_iterator = 8 };
inline constexpr unsigned containers = set | map;
inline constexpr unsigned iterators = set_iterator | map_iterator;

enum class Part { method, setter, getter, destructor };

enum class Argument {
  key,             // one case with a key that the container holds, one with another
  index,           // one case with an index inside, one behind the last
  value,           // a new value
  position,        // an iterator at an element; these and the rest have a case with nil, too
  rest_first,      // iterators at the second element ...
  rest_last,       // ... and at the end
  other_iterator,  // an iterator at the same place
  array,           // keys, of the type that the declaration tells
  target_array,    // one element of that type
  dictionary,
  other_map,
};

/// What a call does to the container, and so what may have become of it after a failure.
enum class Effect {
  reads,     // leaves the content alone
  steps,     // moves the iterator
  inserts,   // adds a key, or replaces a value
  removes,   // one or several elements
  empties,   // all of them
  fills,     // fresh storage, filled from an argument; former storage is left behind
  replaces,  // the same, but former storage is destroyed
  abandons,  // fresh storage, empty; former storage is left behind
  destroys,
};

struct Driver {
  unsigned groups;
  Part part;
  const char* declaration;  // a template; of a property its name
  std::vector<Argument> arguments;
  Effect effect;
};

std::span<const Driver> drivers();

struct Routine {
  const support::ContainerClass* container_class;
  bool of_iterator;
  Part part;
  std::string name;  // class and declaration
  const standin::ClassInfo* info;
  const standin::MethodInfo* method;      // of methods and setters
  const standin::PropertyInfo* property;  // of getters
  const Driver* driver;                   // null when no row describes it

  bool takes(Argument argument) const;
  /// Whether there is a case with nil for an argument.
  bool takes_objects() const;
};

/// All routines of a container class and its iterator class, in the order of their tables.
std::vector<Routine> registered_routines(const support::ContainerClass& container_class);

/// Calls the routine; the result is owned by the caller. What it raises or throws passes through.
standin::Value call(const Routine& routine, REALobject instance,
                    std::span<const standin::Value> arguments);

}  // namespace faults

#endif
