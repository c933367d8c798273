// The content of an ordered container: key numbers ascend as the keys do.
#ifndef ZRB_TESTS_MODEL_ORDERED_MODEL_H
#define ZRB_TESTS_MODEL_ORDERED_MODEL_H

#include <map>

#include "model/model.h"

namespace model {

class OrderedModel : public Model {
 public:
  int count() const override { return static_cast<int>(entries_.size()); }
  int bucket_count() const override { return 0; }
  Entry* find(int key) override;
  void grow() override {}
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
  using Entries = std::map<int, Entry>;

  std::optional<int> at(Entries::const_iterator position) const;

  Entries entries_;
};

}  // namespace model

#endif
