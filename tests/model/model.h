// The model of a container's content: entries by key number, their order, and which keys a search
// meets. It knows neither plugin nor host.
#ifndef ZRB_TESTS_MODEL_MODEL_H
#define ZRB_TESTS_MODEL_MODEL_H

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "model/objects.h"
#include "support/container_classes.h"

namespace model {

struct Entry {
  const Object* key = nullptr;
  const Object* value = nullptr;  // null in sets
};

class Model {
 public:
  virtual ~Model() = default;

  virtual int count() const = 0;
  /// Hashed containers only; 0 otherwise.
  virtual int bucket_count() const = 0;
  /// Null when absent. Valid until the next change.
  virtual Entry* find(int key) = 0;
  /// Makes room for one more entry, as every insertion of a new key does first.
  virtual void grow() = 0;
  /// The key must be absent.
  virtual void insert(const Entry& entry, std::uint32_t hash) = 0;
  virtual void erase(int key) = 0;
  virtual void clear() = 0;

  /// Entries in the order of iteration.
  virtual std::vector<Entry> order() const = 0;
  /// Neighbours in that order; nothing behind the last or before the first.
  virtual std::optional<int> first() const = 0;
  virtual std::optional<int> next(int key) const = 0;
  virtual std::optional<int> last() const = 0;             // ordered containers only
  virtual std::optional<int> previous(int key) const = 0;  // ordered containers only
  /// The first key that is not less; ordered containers only.
  virtual std::optional<int> lower_bound(int key) const = 0;

  /// The stored keys that share a bucket with this hash, in the order of their chain; hashed
  /// containers only.
  virtual std::vector<const Object*> chain(std::uint32_t hash) const = 0;
};

/// Makes an empty model for a kind of storage; tests of the machinery give faulty ones.
using ModelFactory = std::function<std::unique_ptr<Model>(support::Storage)>;
std::unique_ptr<Model> make_model(support::Storage storage);

}  // namespace model

#endif
