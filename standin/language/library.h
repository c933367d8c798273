// The library: routines that every program has.
#ifndef ZRB_STANDIN_LANGUAGE_LIBRARY_H
#define ZRB_STANDIN_LANGUAGE_LIBRARY_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/value.h"

namespace standin::language {

class Machine;

// What a routine is given: as many arguments as the call has, of the declared types.
struct RoutineCall {
  Machine& machine;
  std::span<const Value> arguments;
  const Type& element;  // of the array concerned

  bool has(std::size_t index) const { return index < arguments.size(); }
  std::int32_t integer(std::size_t index) const { return arguments[index].as_integer(); }
  double real(std::size_t index) const { return arguments[index].as_double(); }
  REALstring string(std::size_t index) const { return arguments[index].as_string(); }
  REALarray array(std::size_t index) const { return arguments[index].as_array(); }
  REALobject object(std::size_t index) const { return arguments[index].as_object(); }
};

using RoutineFunction = Value (*)(const RoutineCall& call);

// How a routine may be written.
enum class RoutineForm : std::uint8_t {
  function,  // Chr(65)
  method,    // v.Type
  both,      // Len(s) and s.Len
};

struct RoutineParameter {
  enum class Kind : std::uint8_t {
    typed,
    any_array,
    element,  // of the array among the arguments
  };
  Kind kind = Kind::typed;
  Type type;
  bool optional = false;
  bool repeated = false;  // the last one: any number of them
};

struct Routine {
  std::string name;  // with its module: "StdIn.ReadLine"
  RoutineForm form = RoutineForm::function;
  std::vector<RoutineParameter> parameters;
  Type result;  // kind `void_` if none
  bool result_is_element = false;
  bool result_is_date = false;  // the class is the host's
  RoutineFunction function = nullptr;

  // "Mid(String, Integer, [Integer])"
  std::string description() const;
};

// A row of the tables below: parameters as "Array, Element, Integer, [Integer], Double...", the
// result as a type's name, "Date", "Element", or "".
struct RoutineRow {
  const char* name;
  RoutineForm form;
  const char* parameters;
  const char* result;
  RoutineFunction function;
};

std::span<const RoutineRow> string_routines();
std::span<const RoutineRow> byte_routines();
std::span<const RoutineRow> array_routines();
std::span<const RoutineRow> number_routines();
std::span<const RoutineRow> variant_routines();
std::span<const RoutineRow> console_routines();

// All routines of a name, in any case.
const std::vector<Routine>* find_routines(std::string_view name);
// Whether a name stands before the dot of some routine.
bool is_module(std::string_view name);

}  // namespace standin::language

#endif
