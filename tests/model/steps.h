// Sequences as data: what is done to a container, step by step.
//
// A step means something in every state: its numbers are taken modulo what there is, and a step for
// which there is nothing (moving an iterator that was never set) is passed over. So any part of a
// sequence is a sequence too.
#ifndef ZRB_TESTS_MODEL_STEPS_H
#define ZRB_TESTS_MODEL_STEPS_H

#include <string>
#include <vector>

#include "model/contents.h"
#include "support/container_classes.h"

namespace model {

enum class Operation {
  // by key
  put,
  put_many,
  contains,
  count_key,
  read_value,
  lookup,
  remove_key,
  remove_many,
  // iterators
  point_to_first,
  point_to_last,
  point_to_key,
  point_to_lower_bound,
  point_to_upper_bound,
  move_next,
  move_previous,
  read_position,
  assign_position,
  compare_positions,
  compare_with_nil,
  use_unpositioned,
  use_end,
  remove_position,
  remove_range,
  remove_nil,
  // arrays
  keys,
  values,
  key_at,
  value_at,
  alter_keys,
  hold_keys,
  read_held_keys,
  add_keys,
  add_values,
  add_to_nil,
  // the container as a whole
  max_size,
  clear,
  recreate,
  construct_again,
  use_uninitialised,
  from_keys,
  from_texts,
  from_nil_array,
  clone,
  copy,
  copy_over,
  copy_itself,
  copy_nil,
  copy_uninitialised,
  from_dictionary,
  from_nil_dictionary,
  to_dictionary
};

struct Step {
  Operation operation = Operation::put;
  int key = 0;
  int value = 0;
  int number = 0;     // how many, which index, which iterators
  int variation = 0;  // which of the ways to do it, which of equal objects
};
using Steps = std::vector<Step>;

/// A class, its keys, and what is done.
struct Sequence {
  const support::ContainerClass* container_class;
  Scheme scheme;
  int key_count;
  int value_count;
  Steps steps;
};

const char* name(Operation operation);
bool applies(Operation operation, const support::ContainerClass& container_class);
/// Whether storage is given up without being freed, as the class is meant to do there.
bool abandons_storage(Operation operation);

/// How often an operation is drawn while a container grows, lives, and shrinks.
struct Weights {
  Operation operation;
  int growing;
  int living;
  int shrinking;
};
const std::vector<Weights>& weights();

/// One line a step, for a failure's report.
std::string text(const Steps& steps);

}  // namespace model

#endif
