// Long random programs on every class, beside a model that is too simple to be wrong.
#include <algorithm>
#include <map>
#include <random>

#include "support/bucket_witness.h"
#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;
using support::ElementType;
using support::Iterator;

/// Which keys are there with which values, and in which order.
class Model {
 public:
  explicit Model(const support::ContainerClass& container_class) : class_(container_class) {}

  void put(int key, int value) {
    values_[key] = value;
    witness_.insert(support::expected_hash(support::key(class_, key)), key);
  }
  bool remove(int key) {
    witness_.erase(support::expected_hash(support::key(class_, key)), key);
    return values_.erase(key) == 1;
  }
  void clear() {
    values_.clear();
    witness_.clear();
  }
  bool contains(int key) const { return values_.contains(key); }
  int value(int key) const { return values_.at(key); }
  std::int32_t count() const { return static_cast<std::int32_t>(values_.size()); }
  std::vector<int> order() const {
    if (class_.is_hashed()) return witness_.order();
    std::vector<int> ascending;
    for (const auto& [key, value] : values_) ascending.push_back(key);
    return ascending;
  }

 private:
  const support::ContainerClass& class_;
  std::map<int, int> values_;
  support::BucketWitness witness_;
};

class RandomPrograms : public support::ClassTest {
 protected:
  void run(unsigned seed, int steps, int key_range);

 private:
  void step(const Container& container, Model& model);
  void ask(const Container& container, const Model& model, int index);
  void compare(const Container& container, const Model& model);
  void remove_some_range(const Container& container, Model& model);

  int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

  std::mt19937 random_;
  int key_range_ = 0;
};
ZRB_FOR_CLASSES(RandomPrograms, support::all_classes());

void RandomPrograms::run(unsigned seed, int steps, int key_range) {
  random_.seed(seed);
  key_range_ = key_range;
  const Container container = make();
  Model model(container_class());
  for (int i = 0; i < steps; ++i) {
    SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(i));
    step(container, model);
    if (i % 100 == 99) compare(container, model);
    if (HasFailure()) return;
  }
  compare(container, model);
}

void RandomPrograms::step(const Container& container, Model& model) {
  const int index = below(key_range_) - key_range_ / 3;
  const int choice = below(100);
  if (choice < 50) {
    const int new_value = below(1000);
    container.put(key(index), value(new_value));
    model.put(index, new_value);
  } else if (choice < 65) {
    EXPECT_EQ(container.remove(key(index)), model.remove(index) ? 1 : 0);
  } else if (choice < 72 && model.contains(index)) {
    container.remove(container.find(key(index)));
    model.remove(index);
  } else if (choice < 74) {
    remove_some_range(container, model);
  } else if (choice < 80 && container_class().is_map() && model.contains(index)) {
    const int new_value = below(1000);
    container.find(key(index)).set_value(value(new_value));
    model.put(index, new_value);
  } else if (below(400) == 0) {
    container.clear();
    model.clear();
  } else {
    ask(container, model, index);
  }
  EXPECT_EQ(container.count(), model.count());
  EXPECT_EQ(raised(), "");
}

void RandomPrograms::ask(const Container& container, const Model& model, int index) {
  const bool present = model.contains(index);
  EXPECT_EQ(container.contains(key(index)), present);
  EXPECT_EQ(container.count_key(key(index)), present ? 1 : 0);
  EXPECT_EQ(container.find(key(index)).is_equal(container.last()), !present);
  if (container_class().is_map()) {
    const int expected = present ? model.value(index) : 4321;
    EXPECT_EQ(support::describe(container.lookup(key(index), value(4321))),
              support::describe(value(expected)));
    if (present) {
      EXPECT_EQ(support::describe(container.value(key(index))),
                support::describe(value(model.value(index))));
    } else {
      container.value(key(index));
      EXPECT_EQ(raised(), "KeyNotFoundException: ");
    }
  }
  if (container_class().is_ordered()) {
    const std::vector<int> order = model.order();
    const auto not_less = std::lower_bound(order.begin(), order.end(), index);
    const Iterator bound = container.lower_bound(key(index));
    ASSERT_EQ(bound.is_equal(container.last()), not_less == order.end());
    if (not_less != order.end()) {
      EXPECT_EQ(support::describe(bound.key()), support::describe(key(*not_less)));
    }
  }
}

void RandomPrograms::remove_some_range(const Container& container, Model& model) {
  const std::vector<int> order = model.order();
  if (order.empty()) return;
  const int from = below(static_cast<int>(order.size()));
  const int to = std::min(from + below(6), static_cast<int>(order.size()));
  const Iterator first = container.find(key(order[static_cast<std::size_t>(from)]));
  const Iterator last = to == static_cast<int>(order.size())
                            ? container.last()
                            : container.find(key(order[static_cast<std::size_t>(to)]));
  container.remove(first, last);
  for (int i = from; i < to; ++i) model.remove(order[static_cast<std::size_t>(i)]);
}

void RandomPrograms::compare(const Container& container, const Model& model) {
  std::vector<std::string> keys;
  std::vector<std::string> values;
  for (const int index : model.order()) {
    keys.push_back(support::describe(key(index)));
    values.push_back(support::describe(value(model.value(index))));
  }
  EXPECT_EQ(container.described_keys(), keys);
  if (container_class().is_map()) {
    EXPECT_EQ(container.described_values(), values);
  }
}

TEST_P(RandomPrograms, with_few_keys_behave_like_the_model) {
  for (unsigned seed = 1; seed <= 3; ++seed) run(seed, 700, 40);
}

TEST_P(RandomPrograms, with_many_keys_behave_like_the_model) {
  for (unsigned seed = 11; seed <= 12; ++seed) run(seed, 2000, 3000);
}

}  // namespace
