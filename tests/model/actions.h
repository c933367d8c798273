// What each operation does to a playthrough: on the container, on the model, and the comparison of
// the results. An action returns false if there was nothing to do.
#ifndef ZRB_TESTS_MODEL_ACTIONS_H
#define ZRB_TESTS_MODEL_ACTIONS_H

#include "model/playthrough.h"
#include "model/steps.h"

namespace model::actions {

using Action = bool (*)(Playthrough& playthrough, const Step& step);

/// The action of an operation.
Action of(Operation operation);

// By key.
bool put(Playthrough& playthrough, const Step& step);
bool put_many(Playthrough& playthrough, const Step& step);
bool contains(Playthrough& playthrough, const Step& step);
bool count_key(Playthrough& playthrough, const Step& step);
bool read_value(Playthrough& playthrough, const Step& step);
bool lookup(Playthrough& playthrough, const Step& step);
bool remove_key(Playthrough& playthrough, const Step& step);
bool remove_many(Playthrough& playthrough, const Step& step);

// Iterators.
bool point_to_first(Playthrough& playthrough, const Step& step);
bool point_to_last(Playthrough& playthrough, const Step& step);
bool point_to_key(Playthrough& playthrough, const Step& step);
bool point_to_lower_bound(Playthrough& playthrough, const Step& step);
bool point_to_upper_bound(Playthrough& playthrough, const Step& step);
bool move_next(Playthrough& playthrough, const Step& step);
bool move_previous(Playthrough& playthrough, const Step& step);
bool read_position(Playthrough& playthrough, const Step& step);
bool assign_position(Playthrough& playthrough, const Step& step);
bool compare_positions(Playthrough& playthrough, const Step& step);
bool compare_with_nil(Playthrough& playthrough, const Step& step);
bool use_unpositioned(Playthrough& playthrough, const Step& step);
bool use_end(Playthrough& playthrough, const Step& step);
bool remove_position(Playthrough& playthrough, const Step& step);
bool remove_range(Playthrough& playthrough, const Step& step);
bool remove_nil(Playthrough& playthrough, const Step& step);

// Arrays.
bool keys(Playthrough& playthrough, const Step& step);
bool values(Playthrough& playthrough, const Step& step);
bool key_at(Playthrough& playthrough, const Step& step);
bool value_at(Playthrough& playthrough, const Step& step);
bool alter_keys(Playthrough& playthrough, const Step& step);
bool hold_keys(Playthrough& playthrough, const Step& step);
bool read_held_keys(Playthrough& playthrough, const Step& step);
bool add_keys(Playthrough& playthrough, const Step& step);
bool add_values(Playthrough& playthrough, const Step& step);
bool add_to_nil(Playthrough& playthrough, const Step& step);

// The container as a whole.
bool max_size(Playthrough& playthrough, const Step& step);
bool clear(Playthrough& playthrough, const Step& step);
bool recreate(Playthrough& playthrough, const Step& step);
bool construct_again(Playthrough& playthrough, const Step& step);
bool use_uninitialised(Playthrough& playthrough, const Step& step);
bool from_keys(Playthrough& playthrough, const Step& step);
bool from_texts(Playthrough& playthrough, const Step& step);
bool from_nil_array(Playthrough& playthrough, const Step& step);
bool clone(Playthrough& playthrough, const Step& step);
bool copy(Playthrough& playthrough, const Step& step);
bool copy_over(Playthrough& playthrough, const Step& step);
bool copy_itself(Playthrough& playthrough, const Step& step);
bool copy_nil(Playthrough& playthrough, const Step& step);
bool copy_uninitialised(Playthrough& playthrough, const Step& step);
bool from_dictionary(Playthrough& playthrough, const Step& step);
bool from_nil_dictionary(Playthrough& playthrough, const Step& step);
bool to_dictionary(Playthrough& playthrough, const Step& step);

}  // namespace model::actions

#endif
