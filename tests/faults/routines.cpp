// The rows, and the matching of registered routines with them.
#include "routines.h"

#include <algorithm>

#include "runtime/plugin_calls.h"

namespace faults {
namespace {

// clang-format off
const std::vector<Driver>& rows() {
  using enum Argument;
  using enum Effect;
  static const std::vector<Driver> table = {
      // making and ending
      {containers, Part::method, "Constructor",                              {},             abandons},
      {set,        Part::method, "Constructor(Keys() as string)",            {array},        fills},
      {set,        Part::method, "Constructor(Keys() as {K})",               {array},        fills},
      {map,        Part::method, "Constructor(dic as dictionary)",           {dictionary},   replaces},
      {map,        Part::method, "Operator_Convert(dic as dictionary)",      {dictionary},   replaces},
      {map,        Part::method, "Constructor(other as {Class})",            {other_map},    replaces},
      {map,        Part::method, "Clone as {Class}",                         {},             reads},
      {map,        Part::method, "CloneDictionary as Dictionary",            {},             abandons},
      {map,        Part::method, "Operator_Convert as Dictionary",           {},             abandons},
      {containers, Part::method, "Clear",                                    {},             empties},
      {containers, Part::destructor, "",                                     {},             destroys},
      // sizes
      {containers, Part::getter, "MaxSize",                                  {},             reads},
      {containers, Part::getter, "Count",                                    {},             reads},
      {containers, Part::getter, "BinCount",                                 {},             reads},
      {containers, Part::getter, "Empty",                                    {},             reads},
      // positions and arrays
      {containers, Part::method, "Key(index as integer) as {K}",             {index},        reads},
      {map,        Part::method, "ValueAtIndex(index as integer) as {V}",    {index},        reads},
      {containers, Part::method, "Keys as {K}()",                            {},             reads},
      {map,        Part::method, "Values as {V}()",                          {},             reads},
      {map,        Part::method, "AddKeys(targetArray() as {K})",            {target_array}, reads},
      {map,        Part::method, "AddValues(targetArray() as {V})",          {target_array}, reads},
      // iterators from the container
      {containers, Part::method, "first as {Iterator}",                      {},             reads},
      {containers, Part::method, "last as {Iterator}",                       {},             reads},
      {containers, Part::method, "find(key as {K}) as {Iterator}",           {key},          reads},
      {containers, Part::method, "LowerBound(key as {K}) as {Iterator}",     {key},          reads},
      {containers, Part::method, "UpperBound(key as {K}) as {Iterator}",     {key},          reads},
      // keys
      {containers, Part::method, "CountKey(key as {K}) as integer",          {key},          reads},
      {set,        Part::method, "lookup(key as {K}) as boolean",            {key},          reads},
      {map,        Part::method, "hasKey(key as {K}) as boolean",            {key},          reads},
      {map,        Part::method, "lookup(key as {K}, defaultvalue as {V}) as {V}", {key, value}, reads},
      {map,        Part::method, "value(key as {K}) as {V}",                 {key},          reads},
      {map,        Part::setter, "value(key as {K}) as {V}",                 {key, value},   inserts},
      {set,        Part::method, "insert(key as {K})",                       {key},          inserts},
      {containers, Part::method, "Remove(key as {K}) as integer",            {key},          removes},
      {containers, Part::method, "Remove(pos as {Iterator})",                {position},     removes},
      {containers, Part::method, "Remove(first as {Iterator}, last as {Iterator})", {rest_first, rest_last}, removes},
      // iterators
      {iterators,    Part::method, "MoveNext",                               {},             steps},
      {iterators,    Part::method, "MovePrev",                               {},             steps},
      {iterators,    Part::method, "Key as {K}",                             {},             reads},
      {map_iterator, Part::method, "Value as {V}",                           {},             reads},
      {map_iterator, Part::setter, "Value as {V}",                           {value},        inserts},
      {iterators,    Part::method, "isEqual(other as {Iterator}) as boolean",    {other_iterator}, reads},
      {iterators,    Part::method, "isNotEqual(other as {Iterator}) as boolean", {other_iterator}, reads},
  };
  return table;
}
// clang-format on

const Driver* driver_for(const Routine& routine, std::string_view declaration) {
  const support::ContainerClass& c = *routine.container_class;
  const Group group = c.is_map() ? (routine.of_iterator ? map_iterator : map)
                                 : (routine.of_iterator ? set_iterator : set);
  const auto found = std::find_if(rows().begin(), rows().end(), [&](const Driver& row) {
    return (row.groups & group) != 0 && row.part == routine.part &&
           support::fill(row.declaration, c) == declaration;
  });
  return found == rows().end() ? nullptr : &*found;
}

void add_class(std::vector<Routine>& routines, const support::ContainerClass& c, bool of_iterator) {
  const char* const name = of_iterator ? c.iterator_name : c.name;
  const standin::ClassInfo& info = *standin::Host::current().find_class(name);
  const auto add = [&](Part part, const standin::MethodInfo* method,
                       const standin::PropertyInfo* property, const std::string& declaration) {
    const char* const suffix = part == Part::setter ? " =" : "";
    const std::string shown = part == Part::destructor ? "destructor" : declaration;
    Routine routine{&c,    of_iterator, part,     name + ("." + shown) + suffix,
                    &info, method,      property, nullptr};
    routine.driver = driver_for(routine, declaration);
    routines.push_back(routine);
  };
  for (const standin::MethodInfo& method : info.methods()) {
    add(Part::method, &method, nullptr, method.declaration.text);
    if (method.setter != nullptr) add(Part::setter, &method, nullptr, method.declaration.text);
  }
  for (const standin::PropertyInfo& property : info.properties()) {
    add(Part::getter, nullptr, &property, property.name);
  }
  if (info.destructor() != nullptr) add(Part::destructor, nullptr, nullptr, "");
}

}  // namespace

std::span<const Driver> drivers() {
  return rows();
}

bool Routine::takes(Argument argument) const {
  return std::find(driver->arguments.begin(), driver->arguments.end(), argument) !=
         driver->arguments.end();
}

bool Routine::takes_objects() const {
  return std::any_of(driver->arguments.begin(), driver->arguments.end(),
                     [](Argument argument) { return argument >= Argument::position; });
}

std::vector<Routine> registered_routines(const support::ContainerClass& container_class) {
  std::vector<Routine> routines;
  add_class(routines, container_class, false);
  add_class(routines, container_class, true);
  return routines;
}

standin::Value call(const Routine& routine, REALobject instance,
                    std::span<const standin::Value> arguments) {
  switch (routine.part) {
    case Part::method:
      return standin::invoke(*routine.method, instance, arguments);
    case Part::setter:
      return standin::invoke_setter(*routine.method, instance, arguments);
    case Part::getter:
      return standin::read_property(*routine.property, instance);
    case Part::destructor:
      standin::call_destructor(*routine.info, instance);
      break;
  }
  return {};
}

}  // namespace faults
