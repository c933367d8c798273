// The library: its tables, read once.
#include "language/library.h"

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>

#include "language/text_encoding.h"
#include "runtime/types.h"

namespace standin::language {
namespace {

std::string_view trimmed(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

Type type_named(std::string_view name) {
  if (name.ends_with("()")) return Type::array_of(type_named(name.substr(0, name.size() - 2)));
  if (const auto type = builtin_type(name)) return *type;
  if (name == "TextEncoding") return Type::of_class(&text_encoding_class());
  throw std::logic_error("a library routine names the unknown type " + std::string(name));
}

RoutineParameter parameter(std::string_view text) {
  RoutineParameter parameter;
  if (text.starts_with('[')) {
    parameter.optional = true;
    text = text.substr(1, text.size() - 2);
  }
  if (text.ends_with("...")) {
    parameter.repeated = true;
    text.remove_suffix(3);
  }
  if (text == "Array") {
    parameter.kind = RoutineParameter::Kind::any_array;
  } else if (text == "Element") {
    parameter.kind = RoutineParameter::Kind::element;
  } else {
    parameter.type = type_named(text);
  }
  return parameter;
}

Routine routine(const RoutineRow& row) {
  Routine made;
  made.name = row.name;
  made.form = row.form;
  made.function = row.function;
  std::string_view rest = row.parameters;
  while (!rest.empty()) {
    const std::size_t comma = std::min(rest.find(','), rest.size());
    made.parameters.push_back(parameter(trimmed(rest.substr(0, comma))));
    rest.remove_prefix(std::min(comma + 1, rest.size()));
  }
  const std::string_view result = row.result;
  made.result_is_element = result == "Element";
  made.result_is_date = result == "Date";
  if (!result.empty() && !made.result_is_element && !made.result_is_date) {
    made.result = type_named(result);
  }
  return made;
}

struct Registry {
  std::map<std::string, std::vector<Routine>, std::less<>> by_name;
  std::set<std::string, std::less<>> modules;
};

const Registry& registry() {
  static const Registry made = [] {
    Registry registry;
    for (const auto& table : {string_routines(), byte_routines(), array_routines(),
                              number_routines(), variant_routines(), console_routines()}) {
      for (const RoutineRow& row : table) {
        const std::string name = lower_name(row.name);
        registry.by_name[name].push_back(routine(row));
        const std::size_t dot = name.find('.');
        if (dot != std::string::npos) registry.modules.insert(name.substr(0, dot));
      }
    }
    return registry;
  }();
  return made;
}

}  // namespace

std::string Routine::description() const {
  std::string text;
  for (const RoutineParameter& parameter : parameters) {
    std::string part = parameter.kind == RoutineParameter::Kind::any_array ? "Array"
                       : parameter.kind == RoutineParameter::Kind::element
                           ? "Element"
                           : standin::name(parameter.type);
    if (parameter.repeated) part += "...";
    if (parameter.optional) {
      part.insert(0, "[");
      part += ']';
    }
    text += (text.empty() ? "" : ", ") + part;
  }
  return name + "(" + text + ")";
}

const std::vector<Routine>* find_routines(std::string_view name) {
  const auto found = registry().by_name.find(lower_name(name));
  return found == registry().by_name.end() ? nullptr : &found->second;
}

bool is_module(std::string_view name) {
  return registry().modules.contains(lower_name(name));
}

}  // namespace standin::language
