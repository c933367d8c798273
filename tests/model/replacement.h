// When another container takes the place of the one that a sequence is about.
#ifndef ZRB_TESTS_MODEL_REPLACEMENT_H
#define ZRB_TESTS_MODEL_REPLACEMENT_H

#include <memory>
#include <string>
#include <vector>

#include "model/playthrough.h"

namespace model {

/// The playthrough's container dies, and its former entries with it.
void replace(Playthrough& playthrough, support::Container container,
             const std::vector<Entry>& former);
/// Keeps account of entries that were released.
void released(Playthrough& playthrough, const std::vector<Entry>& entries);

/// What filling an empty container with these entries, one after the other, comes to.
std::unique_ptr<Model> filled(Playthrough& playthrough, const std::vector<Entry>& entries);

/// Count and number of buckets, as a program prints them.
std::string counts(const support::Container& container);
std::string counts(const Model& model);

}  // namespace model

#endif
