// Keys that are meant to make containers slow, and what they cost, counted in comparisons and calls
// of the host, never in time.
#ifndef ZRB_TESTS_HOSTILE_ADVERSARY_H
#define ZRB_TESTS_HOSTILE_ADVERSARY_H

#include <cstdint>
#include <vector>

#include "support/container.h"

namespace hostile {

/// Texts of one hash under the plugin's own string hash, all distinct, in ascending order.
std::vector<support::Element> colliding_texts(support::ElementType type, int count);
/// Texts that the hash tells apart.
std::vector<support::Element> ordinary_texts(support::ElementType type, int count);
/// Variants of integers: one bucket in a host without a hash service.
std::vector<support::Element> integer_variants(int count);

/// On average for each key, in the order given.
struct Cost {
  double comparisons = 0;
  double host_calls = 0;
};
struct Costs {
  Cost insert, find, remove;
};

/// Inserts all keys into a new container, finds all, removes all. The current host must be
/// instrumented.
Costs costs(const support::ContainerClass& container_class,
            const std::vector<support::Element>& keys);

}  // namespace hostile

#endif
