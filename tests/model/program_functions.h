// The functions that printed programs call.
#ifndef ZRB_TESTS_MODEL_PROGRAM_FUNCTIONS_H
#define ZRB_TESTS_MODEL_PROGRAM_FUNCTIONS_H

#include <string>

#include "support/container_classes.h"

namespace model {

/// Their definitions in the host's language: Check, Counts, Order, Position, Raised, Shown,
/// SameArray, AsInteger, AsInt64 and AsNil.
std::string program_functions(const support::ContainerClass& container_class);

}  // namespace model

#endif
