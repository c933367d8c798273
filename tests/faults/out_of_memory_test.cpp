// Memory that runs out: std::bad_alloc passes on, and what was there before stays as it was.
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>

#include "support/plugin_test.h"

namespace {

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();
std::size_t allocations_left = unlimited;

}  // namespace

// These stand in for those of the C++ runtime, in the plugin too.
void* operator new(std::size_t size) {
  if (allocations_left != unlimited) {
    if (allocations_left == 0) throw std::bad_alloc();
    --allocations_left;
  }
  void* const block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}

namespace {

using support::Container;
using support::Element;

class OutOfMemory : public support::ClassTest {
 protected:
  /// Runs `operation` with memory for `allocations` blocks; whether that was enough.
  template <class Operation>
  static bool enough(std::size_t allocations, Operation operation) {
    allocations_left = allocations;
    bool result = true;
    try {
      operation();
    } catch (const std::bad_alloc&) {
      result = false;
    }
    allocations_left = unlimited;
    return result;
  }
};
ZRB_FOR_CLASSES(OutOfMemory, support::all_classes());

TEST_P(OutOfMemory, a_constructor_passes_it_on_and_leaves_no_storage) {
  make();  // so that the host's services are found already
  std::size_t allocations = 0;
  for (;; ++allocations) {
    const Container container = Container::without_storage(container_class());
    const bool constructed = enough(allocations, [&] { container.construct(); });
    if (constructed) break;
    EXPECT_EQ(container.first_word(), nullptr) << allocations;
    EXPECT_EQ(container.count(), 0);
    EXPECT_EQ(raised(), "NilObjectException: " + container_class().not_initialized_message());
    container.construct();
    container.put(1);
    EXPECT_EQ(container.count(), 1);
  }
  EXPECT_GT(allocations, 0U) << "storage needs memory";
}

TEST_P(OutOfMemory, a_second_construction_without_memory_changes_nothing) {
  const Container container = make_with(3);
  EXPECT_FALSE(enough(0, [&] { container.construct(); }));
  EXPECT_EQ(container.count(), 3);
}

#if UINTPTR_MAX == UINT32_MAX  // else they do not come from the heap: exhausted_nodes_test.cpp
class MemoryForNodes : public OutOfMemory {};
ZRB_FOR_CLASSES(MemoryForNodes, support::all_classes());

TEST_P(MemoryForNodes, an_insertion_that_gets_none_changes_nothing) {
  std::size_t failures = 0;
  for (int size = 0; size < 200; ++size) {
    const Container container = make_with(size);
    const std::vector<std::string> keys = container.described_keys();
    const Element new_key = key(size);
    const Element new_value = value(size);
    if (enough(0, [&] { container.put(new_key, new_value); })) continue;
    ++failures;
    EXPECT_EQ(container.described_keys(), keys);
    EXPECT_EQ(support::locks(new_value), support::one_lock(new_value));
    container.put(new_key, new_value);
    EXPECT_EQ(container.count(), size + 1);
    if (size > 10) size += 20;
  }
  EXPECT_GT(failures, 0U);
}
#endif

}  // namespace
