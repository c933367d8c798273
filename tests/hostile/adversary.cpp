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

// Each comparison leaves a lock on either key; apart from those, a call locks its key once, and an
// insertion once more to keep it, and the value as well.
struct Counter {
  explicit Counter(const support::ContainerClass& c)
      : lock_service(c.key == ElementType::string ? "REALLockString" : "REALLockObject") {
    standin::Host::current().calls().reset();
  }

  Cost cost(std::size_t keys, std::uint64_t locks_besides) const {
    const standin::CallCounts& calls = standin::Host::current().calls();
    const auto count = static_cast<double>(keys);
    const auto locks = static_cast<double>(calls.of(lock_service));
    return {(locks / count - static_cast<double>(locks_besides)) / 2,
            static_cast<double>(calls.total()) / count};
  }

  const char* lock_service;
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
  const bool locks_values_alike = c.value == c.key;
  result.insert = insertions.cost(keys.size(), locks_values_alike ? 3 : 2);
  const Counter searches(c);
  for (const Element& key : keys) EXPECT_TRUE(container.contains(key));
  result.find = searches.cost(keys.size(), 1);
  const Counter removals(c);
  for (const Element& key : keys) EXPECT_EQ(container.remove(key), 1);
  result.remove = removals.cost(keys.size(), 1);
  EXPECT_TRUE(container.empty());
  return result;
}

}  // namespace hostile
