// Which model goes with which storage.
#include "model/model.h"

#include "model/hashed_model.h"
#include "model/ordered_model.h"

namespace model {

std::unique_ptr<Model> make_model(support::Storage storage) {
  if (storage == support::Storage::hashed) return std::make_unique<HashedModel>();
  return std::make_unique<OrderedModel>();
}

}  // namespace model
