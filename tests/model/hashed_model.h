// The content of a hashed container: chains in buckets, their number a prime.
#ifndef ZRB_TESTS_MODEL_HASHED_MODEL_H
#define ZRB_TESTS_MODEL_HASHED_MODEL_H

#include <list>
#include <unordered_map>

#include "model/model.h"

namespace model {

class HashedModel : public Model {
 public:
  HashedModel();

  int count() const override { return static_cast<int>(entries_.size()); }
  int bucket_count() const override { return static_cast<int>(buckets_.size()); }
  Entry* find(int key) override;
  void grow() override;
  void insert(const Entry& entry, std::uint32_t hash) override;
  void erase(int key) override;
  void clear() override;
  std::vector<Entry> order() const override;
  std::optional<int> first() const override;
  std::optional<int> next(int key) const override;
  std::optional<int> last() const override;
  std::optional<int> previous(int key) const override;
  std::optional<int> lower_bound(int key) const override;
  std::vector<const Object*> chain(std::uint32_t hash) const override;

 private:
  struct Hashed {
    Entry entry;
    std::uint32_t hash;
  };
  using Chain = std::list<const Hashed*>;  // of the entries, which do not move; newest first

  std::size_t bucket(std::uint32_t hash) const { return hash % buckets_.size(); }
  std::optional<int> first_from(std::size_t bucket) const;

  std::unordered_map<int, Hashed> entries_;
  std::vector<Chain> buckets_;
};

}  // namespace model

#endif
