// The table of operations.
#include "model/steps.h"

#include <algorithm>
#include <cstdlib>

namespace model {
namespace {

enum class For { all, sets, maps, ordered, variant_sets };

struct Row {
  Operation operation;
  const char* name;
  For classes;
  int growing;
  int living;
  int shrinking;
};

using enum Operation;
using enum For;

// clang-format off
constexpr Row rows[] = {
    {put,                  "put",                  all,         300, 200,  40},
    {put_many,             "put_many",             all,         200,  20,   5},
    {contains,             "contains",             all,          40,  60,  40},
    {count_key,            "count_key",            all,          20,  40,  20},
    {read_value,           "read_value",           maps,         40,  60,  40},
    {lookup,               "lookup",               maps,         40,  60,  40},
    {remove_key,           "remove_key",           all,          30, 120, 200},
    {remove_many,          "remove_many",          all,           2,  15, 100},
    {point_to_first,       "point_to_first",       all,          15,  30,  30},
    {point_to_last,        "point_to_last",        all,          15,  30,  30},
    {point_to_key,         "point_to_key",         all,          40,  60,  60},
    {point_to_lower_bound, "point_to_lower_bound", ordered,      30,  50,  50},
    {point_to_upper_bound, "point_to_upper_bound", ordered,      30,  50,  50},
    {move_next,            "move_next",            all,          60,  80,  60},
    {move_previous,        "move_previous",        ordered,      60,  80,  60},
    {read_position,        "read_position",        all,          50,  60,  50},
    {assign_position,      "assign_position",      maps,         30,  50,  20},
    {compare_positions,    "compare_positions",    all,          30,  40,  30},
    {compare_with_nil,     "compare_with_nil",     all,           3,   8,   3},
    {use_unpositioned,     "use_unpositioned",     all,           3,   8,   3},
    {use_end,              "use_end",              all,           3,   8,   3},
    {remove_position,      "remove_position",      all,          10,  50,  80},
    {remove_range,         "remove_range",         all,           1,   8,  60},
    {remove_nil,           "remove_nil",           all,           3,   8,   3},
    {keys,                 "keys",                 all,           5,  30,  15},
    {values,               "values",               maps,          5,  30,  15},
    {key_at,               "key_at",               all,          10,  40,  15},
    {value_at,             "value_at",             maps,         10,  40,  15},
    {alter_keys,           "alter_keys",           all,           1,   8,   3},
    {hold_keys,            "hold_keys",            all,           1,   8,   3},
    {read_held_keys,       "read_held_keys",       all,           1,   8,   3},
    {add_keys,             "add_keys",             maps,          1,   6,   3},
    {add_values,           "add_values",           maps,          1,   6,   3},
    {add_to_nil,           "add_to_nil",           maps,          1,   4,   1},
    {max_size,             "max_size",             all,           1,   4,   1},
    {clear,                "clear",                all,           0,   4,   8},
    {recreate,             "recreate",             all,           0,   2,   3},
    {construct_again,      "construct_again",      all,           0,   4,   4},
    {use_uninitialised,    "use_uninitialised",    all,           1,   4,   1},
    {from_keys,            "from_keys",            sets,          0,   6,   3},
    {from_texts,           "from_texts",           variant_sets,  0,   6,   3},
    {from_nil_array,       "from_nil_array",       sets,          1,   4,   1},
    {clone,                "clone",                maps,          1,   5,   3},
    {copy,                 "copy",                 maps,          1,   5,   3},
    {copy_over,            "copy_over",            maps,          0,   4,   3},
    {copy_itself,          "copy_itself",          maps,          0,   2,   2},
    {copy_nil,             "copy_nil",             maps,          1,   4,   1},
    {copy_uninitialised,   "copy_uninitialised",   maps,          0,   4,   4},
    {from_dictionary,      "from_dictionary",      maps,          0,   5,   3},
    {from_nil_dictionary,  "from_nil_dictionary",  maps,          0,   2,   2},
    {to_dictionary,        "to_dictionary",        maps,          0,   6,   5},
};
// clang-format on

const Row& row(Operation operation) {
  const Row* const found =
      std::find_if(std::begin(rows), std::end(rows),
                   [operation](const Row& candidate) { return candidate.operation == operation; });
  if (found == std::end(rows)) std::abort();
  return *found;
}

}  // namespace

const char* name(Operation operation) {
  return row(operation).name;
}

bool applies(Operation operation, const support::ContainerClass& container_class) {
  switch (row(operation).classes) {
    case all:
      return true;
    case sets:
      return container_class.is_set();
    case maps:
      return container_class.is_map();
    case ordered:
      return container_class.is_ordered();
    case variant_sets:
      return container_class.is_set() && container_class.key == support::ElementType::variant;
  }
  std::abort();
}

bool abandons_storage(Operation operation) {
  return operation == construct_again || operation == to_dictionary;
}

const std::vector<Weights>& weights() {
  static const std::vector<Weights> all_weights = [] {
    std::vector<Weights> result;
    for (const Row& row : rows) {
      result.push_back({row.operation, row.growing, row.living, row.shrinking});
    }
    return result;
  }();
  return all_weights;
}

std::string text(const Steps& steps) {
  std::string result;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const Step& step = steps[i];
    result += std::to_string(i + 1) + ": " + name(step.operation) + " {key " +
              std::to_string(step.key) + ", value " + std::to_string(step.value) + ", number " +
              std::to_string(step.number) + ", variation " + std::to_string(step.variation) + "}\n";
  }
  return result;
}

}  // namespace model
