// A hash that throws while a table grows: nodes already moved are gone, the rest stays as it was.
#include <algorithm>

#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;
using support::ElementType;

class FailingRehash : public support::ClassTest {
 protected:
  /// The service that a key's hash calls exactly once.
  const char* hash_service() const {
    return container_class().key == ElementType::string ? "PluginGetStringData" : "VariantHash";
  }

  struct Full {
    Container container;
    std::vector<std::pair<Element, Element>> entries;
    std::vector<std::string> order;
  };
  /// A table with as many elements as buckets: the next insertion makes it grow.
  Full full() const {
    Full result{make(), {}, {}};
    for (int i = 0; i < 193; ++i) {
      result.entries.emplace_back(key(i), value(i));
      result.container.put(result.entries.back().first, result.entries.back().second);
    }
    result.order = result.container.described_keys();
    return result;
  }
  static bool holds(const std::vector<std::string>& order, const Element& key) {
    return std::find(order.begin(), order.end(), support::describe(key)) != order.end();
  }
};
ZRB_FOR_CLASSES(FailingRehash, support::classes_where([](const support::ContainerClass& c) {
                  return c.is_hashed() && c.key != ElementType::integer;
                }));

TEST_P(FailingRehash, loses_the_nodes_already_moved_and_keeps_the_rest_in_order) {
  for (const std::uint64_t nth : {1u, 2u, 3u, 50u, 192u, 193u}) {
    SCOPED_TRACE("hash " + std::to_string(nth));
    Full table = full();
    std::vector<std::int64_t> locks;
    for (const auto& [stored_key, stored_value] : table.entries) {
      locks.push_back(support::locks(stored_key));
    }
    host().faults().throw_at(hash_service(), nth);
    EXPECT_THROW(table.container.put(193), standin::InjectedFault);
    host().faults().clear();

    const std::vector<std::string> rest(table.order.begin() + static_cast<std::ptrdiff_t>(nth) - 1,
                                        table.order.end());
    EXPECT_EQ(table.container.described_keys(), rest);
    EXPECT_EQ(table.container.count(), static_cast<std::int32_t>(rest.size()));
    EXPECT_EQ(table.container.bin_count(), 193);
    for (std::size_t i = 0; i < table.entries.size(); ++i) {
      const auto& [stored_key, stored_value] = table.entries[i];
      const bool kept = holds(rest, stored_key);
      EXPECT_EQ(support::locks(stored_key), locks[i] - (kept ? 0 : 1)) << i;
      EXPECT_EQ(support::locks(stored_value),
                support::one_lock(stored_value) * (kept && container_class().is_map() ? 2 : 1))
          << i;
    }
  }
}

TEST_P(FailingRehash, leaves_a_table_that_works) {
  Full table = full();
  host().faults().throw_at(hash_service(), 100);
  EXPECT_THROW(table.container.put(193), standin::InjectedFault);
  host().faults().clear();
  EXPECT_EQ(table.container.count(), 94);
  for (const auto& [stored_key, stored_value] : table.entries) {
    table.container.put(stored_key, stored_value);
  }
  EXPECT_EQ(table.container.count(), 193);
  table.container.put(193);
  EXPECT_EQ(table.container.count(), 194);
  EXPECT_EQ(table.container.bin_count(), 389);
  for (int i = 0; i < 194; ++i) EXPECT_TRUE(table.container.contains(key(i))) << i;
}

TEST_P(FailingRehash, a_hash_that_throws_after_growth_leaves_a_grown_table) {
  Full table = full();
  host().faults().throw_at(hash_service(), 194);
  EXPECT_THROW(table.container.put(193), standin::InjectedFault);
  host().faults().clear();
  EXPECT_EQ(table.container.count(), 193);
  EXPECT_EQ(table.container.bin_count(), 389);
  EXPECT_FALSE(table.container.contains(key(193)));
  for (const auto& [stored_key, stored_value] : table.entries) {
    EXPECT_TRUE(table.container.contains(stored_key));
  }
}

}  // namespace
