// Making such keys, and counting.
#include "adversary.h"

namespace hostile {
namespace {

using support::Container;
using support::Element;
using support::ElementType;

Element text_element(ElementType type, const std::string& text) {
  return type == ElementType::string ? support::string(text) : support::variant_string(text);
}

// Each comparison leaves a lock on either key, and an element has one on its key and one on its
// value. All other locks are given back.
class Counter {
 public:
  explicit Counter(const support::ContainerClass& c)
      : is_string_(c.key == ElementType::string), counts_values_(c.value == c.key) {
    calls().reset();
  }

  // `elements`: how many more there are than before, for each key.
  Cost cost(std::size_t keys, int elements) const {
    const auto count = static_cast<double>(keys);
    const auto locks =
        static_cast<double>(calls().of(is_string_ ? "REALLockString" : "REALLockObject"));
    const auto unlocks =
        static_cast<double>(calls().of(is_string_ ? "REALUnlockString" : "REALUnlockObject"));
    const int kept = elements * (counts_values_ ? 2 : 1);
    return {((locks - unlocks) / count - kept) / 2, static_cast<double>(calls().total()) / count};
  }

 private:
  static standin::CallCounts& calls() { return standin::Host::current().calls(); }

  bool is_string_;
  bool counts_values_;
};

}  // namespace

std::vector<Element> colliding_texts(ElementType type, int count) {
  // 16 * 'A' + 'Q' is 16 * 'B' + 'A', so the hash cannot tell these pairs of letters apart.
  std::vector<Element> keys;
  for (int i = 0; i < count; ++i) {
    std::string text;
    for (int bit = 13; bit >= 0; --bit) text += ((i >> bit) & 1) == 0 ? "AQ" : "BA";
    keys.push_back(text_element(type, text));
  }
  return keys;
}

std::vector<Element> ordinary_texts(ElementType type, int count) {
  std::vector<Element> keys;
  for (int i = 0; i < count; ++i) {
    keys.push_back(text_element(type, "key " + std::to_string(1000000 + i)));
  }
  return keys;
}

std::vector<Element> integer_variants(int count) {
  std::vector<Element> keys;
  for (int i = 0; i < count; ++i) keys.push_back(support::variant_integer(i));
  return keys;
}

Costs costs(const support::ContainerClass& c, const std::vector<Element>& keys) {
  const Container container = Container::make(c);
  const Element value = support::value(c, 1);
  Costs result;
  const Counter insertions(c);
  for (const Element& key : keys) container.put(key, value);
  result.insert = insertions.cost(keys.size(), 1);
  const Counter searches(c);
  for (const Element& key : keys) EXPECT_TRUE(container.contains(key));
  result.find = searches.cost(keys.size(), 0);
  const Counter removals(c);
  for (const Element& key : keys) EXPECT_EQ(container.remove(key), 1);
  result.remove = removals.cost(keys.size(), -1);
  EXPECT_TRUE(container.empty());
  return result;
}

}  // namespace hostile
