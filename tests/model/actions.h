// What each operation does to a session: on the container, on the model, and the comparison of the
// results. An action returns false if there was nothing to do.
#ifndef ZRB_TESTS_MODEL_ACTIONS_H
#define ZRB_TESTS_MODEL_ACTIONS_H

#include "model/session.h"
#include "model/steps.h"

namespace model::actions {

using Action = bool (*)(Session& session, const Step& step);

/// The action of an operation.
Action of(Operation operation);

// By key.
bool put(Session& session, const Step& step);
bool put_many(Session& session, const Step& step);
bool contains(Session& session, const Step& step);
bool count_key(Session& session, const Step& step);
bool read_value(Session& session, const Step& step);
bool lookup(Session& session, const Step& step);
bool remove_key(Session& session, const Step& step);
bool remove_many(Session& session, const Step& step);

// Iterators.
bool point_to_first(Session& session, const Step& step);
bool point_to_last(Session& session, const Step& step);
bool point_to_key(Session& session, const Step& step);
bool point_to_lower_bound(Session& session, const Step& step);
bool point_to_upper_bound(Session& session, const Step& step);
bool move_next(Session& session, const Step& step);
bool move_previous(Session& session, const Step& step);
bool read_position(Session& session, const Step& step);
bool assign_position(Session& session, const Step& step);
bool compare_positions(Session& session, const Step& step);
bool compare_with_nil(Session& session, const Step& step);
bool use_unpositioned(Session& session, const Step& step);
bool remove_position(Session& session, const Step& step);
bool remove_range(Session& session, const Step& step);
bool remove_nil(Session& session, const Step& step);

// Arrays.
bool keys(Session& session, const Step& step);
bool values(Session& session, const Step& step);
bool key_at(Session& session, const Step& step);
bool value_at(Session& session, const Step& step);
bool alter_keys(Session& session, const Step& step);
bool hold_keys(Session& session, const Step& step);
bool read_held_keys(Session& session, const Step& step);
bool add_keys(Session& session, const Step& step);
bool add_values(Session& session, const Step& step);
bool add_to_nil(Session& session, const Step& step);

// The container as a whole.
bool max_size(Session& session, const Step& step);
bool clear(Session& session, const Step& step);
bool recreate(Session& session, const Step& step);
bool construct_again(Session& session, const Step& step);
bool use_uninitialised(Session& session, const Step& step);
bool from_keys(Session& session, const Step& step);
bool from_texts(Session& session, const Step& step);
bool from_nil_array(Session& session, const Step& step);
bool clone(Session& session, const Step& step);
bool copy(Session& session, const Step& step);
bool copy_over(Session& session, const Step& step);
bool copy_itself(Session& session, const Step& step);
bool copy_nil(Session& session, const Step& step);
bool copy_uninitialised(Session& session, const Step& step);
bool from_dictionary(Session& session, const Step& step);
bool from_nil_dictionary(Session& session, const Step& step);
bool to_dictionary(Session& session, const Step& step);

}  // namespace model::actions

#endif
