// Keys that an adversary chose: all in one bucket. The containers stay correct; hashed ones go
// through half of all keys in each search, ordered ones need as many comparisons as ever.
#include <cmath>

#include "adversary.h"
#include "small_stack.h"
#include "support/bucket_witness.h"
#include "support/plugin_test.h"

namespace hostile {
namespace {

using support::Container;
using support::ContainerClass;
using support::Element;
using support::ElementType;

class AdversarialKeys : public support::ClassTest {
 protected:
  AdversarialKeys() { restart_without_ledger({}); }

  void restart_without_ledger(std::initializer_list<const char*> without) {
    standin::HostOptions options = default_options();
    options.strict_ledger = false;
    options.without.insert(without.begin(), without.end());
    restart(options);
  }

  /// What holds of n keys in one bucket, or of n keys in order.
  void expect_costs_of_one_bucket(const std::vector<Element>& keys) {
    const Costs cost = costs(container_class(), keys);
    const auto n = static_cast<double>(keys.size());
    if (container_class().is_hashed()) {
      // Each is found after all that are newer, or older; a removal looks through the whole chain.
      EXPECT_DOUBLE_EQ(cost.insert.comparisons, (n - 1) / 2);
      EXPECT_DOUBLE_EQ(cost.find.comparisons, (n + 1) / 2);
      EXPECT_DOUBLE_EQ(cost.remove.comparisons, (n + 1) / 2);
    } else {
      expect_costs_of_a_tree(cost, n);
    }
  }

  static void expect_costs_of_a_tree(const Costs& cost, double n) {
    // The height of a red-black tree is at most 2 log2(n + 1), and a removal compares both ways.
    const double height = 2 * std::log2(n + 1);
    EXPECT_LE(cost.insert.comparisons, height + 1);
    EXPECT_LE(cost.find.comparisons, height + 1);
    EXPECT_LE(cost.remove.comparisons, 2 * height + 2);
    EXPECT_GE(cost.find.comparisons, std::log2(n) / 2);
  }
};
class AdversarialTexts : public AdversarialKeys {};
class AdversarialVariants : public AdversarialKeys {};
class AdversarialIntegers : public AdversarialKeys {};
ZRB_FOR_CLASSES(AdversarialTexts, support::classes_where([](const ContainerClass& c) {
                  return c.key != ElementType::integer;
                }));
ZRB_FOR_CLASSES(AdversarialVariants, support::classes_with_key(ElementType::variant));
ZRB_FOR_CLASSES(AdversarialIntegers, support::classes_where([](const ContainerClass& c) {
                  return c.key == ElementType::integer;
                }));

TEST_P(AdversarialTexts, of_one_hash_share_a_bucket) {
  const std::vector<Element> keys = colliding_texts(container_class().key, 700);
  for (const Element& key : keys) {
    ASSERT_EQ(support::expected_hash(key), support::expected_hash(keys[0]));
  }
  expect_costs_of_one_bucket(keys);
}

TEST_P(AdversarialTexts, of_many_hashes_cost_about_one_comparison) {
  const Costs cost = costs(container_class(), ordinary_texts(container_class().key, 700));
  if (container_class().is_hashed()) {
    EXPECT_LE(cost.find.comparisons, 4);
  } else {
    expect_costs_of_a_tree(cost, 700);
  }
}

TEST_P(AdversarialTexts, of_one_hash_come_newest_first) {
  const Container container = make();
  const std::vector<Element> keys = colliding_texts(container_class().key, 150);
  for (const Element& key : keys) container.put(key, value(1));
  const std::vector<std::string> order = container.described_keys();
  ASSERT_EQ(order.size(), keys.size());
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const std::size_t place = container_class().is_hashed() ? keys.size() - 1 - i : i;
    EXPECT_EQ(order[place], support::describe(keys[i]));
  }
}

TEST_P(AdversarialVariants, in_a_host_without_a_hash_share_a_bucket) {
  restart_without_ledger({"VariantHash"});
  expect_costs_of_one_bucket(integer_variants(700));
}

TEST_P(AdversarialIntegers, of_one_bucket_at_every_size_of_the_table_are_all_there) {
  constexpr std::int32_t bucket_counts[] = {193, 389, 769, 1543, 3079, 6151};
  for (const std::int32_t buckets : bucket_counts) {
    SCOPED_TRACE(buckets);
    const Container container = make();
    const std::int32_t count = std::min(buckets, 2000);
    for (std::int32_t i = 0; i < count; ++i) container.put(i * buckets, value(1));
    EXPECT_EQ(container.count(), count);
    for (std::int32_t i = 0; i < count; ++i) {
      ASSERT_TRUE(container.contains(i * buckets));
      ASSERT_FALSE(container.contains(i * buckets + 1));
    }
    EXPECT_EQ(container.keys().size(), static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; i += 2) ASSERT_EQ(container.remove(i * buckets), 1);
    EXPECT_EQ(container.count(), count / 2);
    EXPECT_FALSE(container.contains(0));
  }
}

TEST_P(AdversarialIntegers, in_one_chain_of_twenty_thousand_are_cleared_on_a_small_stack) {
  constexpr std::int32_t buckets = 24593;
  constexpr std::int32_t count = 20000;
  const Container container = make();
  const Element one_value = value(1);
  for (std::int32_t i = 0; i < count; ++i) {
    container.put(static_cast<std::int32_t>(static_cast<std::uint32_t>(i) * buckets), one_value);
  }
  EXPECT_EQ(container.count(), count);
  run_on_small_stack([&] { container.clear(); });
  EXPECT_TRUE(container.empty());
  container.put(1);
  EXPECT_EQ(container.count(), 1);
}

/// How a cost grows from n keys to 8 n.
TEST_P(AdversarialTexts, cost_eight_times_as_much_for_eight_times_as_many_only_where_hashed) {
  const auto find_cost = [&](int n) {
    return costs(container_class(), colliding_texts(container_class().key, n)).find.host_calls;
  };
  const double growth = find_cost(800) / find_cost(100);
  if (container_class().is_hashed()) {
    EXPECT_GT(growth, 6);
    EXPECT_LT(growth, 8.5);
  } else {
    EXPECT_LT(growth, 2);
  }
}

}  // namespace
}  // namespace hostile
