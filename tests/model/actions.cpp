// Which action belongs to which operation.
#include "model/actions.h"

#include <cstdlib>

namespace model::actions {

Action of(Operation operation) {
#define ZRB_ACTION(name) \
  case Operation::name:  \
    return &actions::name
  switch (operation) {
    ZRB_ACTION(put);
    ZRB_ACTION(put_many);
    ZRB_ACTION(contains);
    ZRB_ACTION(count_key);
    ZRB_ACTION(read_value);
    ZRB_ACTION(lookup);
    ZRB_ACTION(remove_key);
    ZRB_ACTION(remove_many);
    ZRB_ACTION(point_to_first);
    ZRB_ACTION(point_to_last);
    ZRB_ACTION(point_to_key);
    ZRB_ACTION(point_to_lower_bound);
    ZRB_ACTION(point_to_upper_bound);
    ZRB_ACTION(move_next);
    ZRB_ACTION(move_previous);
    ZRB_ACTION(read_position);
    ZRB_ACTION(assign_position);
    ZRB_ACTION(compare_positions);
    ZRB_ACTION(compare_with_nil);
    ZRB_ACTION(use_unpositioned);
    ZRB_ACTION(use_end);
    ZRB_ACTION(remove_position);
    ZRB_ACTION(remove_range);
    ZRB_ACTION(remove_nil);
    ZRB_ACTION(keys);
    ZRB_ACTION(values);
    ZRB_ACTION(key_at);
    ZRB_ACTION(value_at);
    ZRB_ACTION(alter_keys);
    ZRB_ACTION(hold_keys);
    ZRB_ACTION(read_held_keys);
    ZRB_ACTION(add_keys);
    ZRB_ACTION(add_values);
    ZRB_ACTION(add_to_nil);
    ZRB_ACTION(max_size);
    ZRB_ACTION(clear);
    ZRB_ACTION(recreate);
    ZRB_ACTION(construct_again);
    ZRB_ACTION(use_uninitialised);
    ZRB_ACTION(from_keys);
    ZRB_ACTION(from_texts);
    ZRB_ACTION(from_nil_array);
    ZRB_ACTION(clone);
    ZRB_ACTION(copy);
    ZRB_ACTION(copy_over);
    ZRB_ACTION(copy_itself);
    ZRB_ACTION(copy_nil);
    ZRB_ACTION(copy_uninitialised);
    ZRB_ACTION(from_dictionary);
    ZRB_ACTION(from_nil_dictionary);
    ZRB_ACTION(to_dictionary);
  }
#undef ZRB_ACTION
  std::abort();
}

}  // namespace model::actions
