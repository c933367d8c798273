// Clearing and destroying a million elements within 64 KiB of stack: neither takes a stack frame
// for an element, however the elements hang together.
#include <pthread.h>

#include "runtime/strings.h"
#include "runtime/variants.h"
#include "small_stack.h"
#include "support/container.h"

namespace hostile {
namespace {

using support::Container;
using support::ContainerClass;
using support::Element;
using support::ElementType;
using support::Iterator;

// Strings and variants as values: one object serves for all of a million elements. As keys each is
// an object of its own, which takes its time; there a hundred thousand must do, still far more than
// the stack has room for. Under the sanitizers, where all takes ten times as long, each is a tenth.
#ifdef ZRB_HAS_ADDRESS_SANITIZER
constexpr std::int32_t million = 100000;
constexpr std::int32_t keys_in_the_host = 10000;
#else
constexpr std::int32_t million = 1000000;
constexpr std::int32_t keys_in_the_host = 100000;
#endif

class Depth : public ::testing::TestWithParam<ContainerClass> {
 protected:
  Depth() { host_.load_plugin(ZRB_PLUGIN_PATH); }

  static std::int32_t count() {
    return GetParam().key == ElementType::integer ? million : keys_in_the_host;
  }

  Container filled() const {
    const ContainerClass& c = GetParam();
    const Container container = Container::make(c);
    const Element value = support::value(c, 1);
    for (std::int32_t i = 0; i < count(); ++i) container.put(key(i), value);
    EXPECT_EQ(container.count(), count());
    return container;
  }

  // Ascending texts; `support::key` has no room for a million of them.
  Element key(std::int32_t index) const {
    const ContainerClass& c = GetParam();
    if (c.key == ElementType::integer) return index;
    char text[16];
    std::snprintf(text, sizeof text, "%07d", static_cast<int>(index));
    return c.key == ElementType::string ? support::string(text) : support::variant_string(text);
  }

  standin::Host host_;
};
INSTANTIATE_TEST_SUITE_P(Classes, Depth,
                         ::testing::ValuesIn(support::classes_where([](const ContainerClass& c) {
                           // Each way of holding elements once.
                           return c.key == ElementType::integer || c.is_set();
                         })),
                         support::ClassName{});

TEST_P(Depth, the_stack_is_as_small_as_it_is_said_to_be) {
  std::size_t size = 0;
  run_on_small_stack([&] {
    pthread_attr_t attributes;
    ASSERT_EQ(::pthread_getattr_np(::pthread_self(), &attributes), 0);
    void* lowest = nullptr;
    EXPECT_EQ(::pthread_attr_getstack(&attributes, &lowest, &size), 0);
    ::pthread_attr_destroy(&attributes);
  });
  EXPECT_EQ(size, small_stack);
}

TEST_P(Depth, a_million_elements_are_cleared_and_destroyed_within_it) {
  Container container = filled();
  run_on_small_stack([&] { container.clear(); });
  EXPECT_EQ(container.count(), 0);
  EXPECT_TRUE(container.first().is_equal(container.last().get()));

  Container another = filled();
  const std::size_t live = standin::class_of(another.get())->live_instances();
  run_on_small_stack([&] { another.release(); });
  EXPECT_EQ(host_.find_class(GetParam().name)->live_instances(), live - 1);
  EXPECT_TRUE(host_.destructor_errors().empty());
}

TEST_P(Depth, a_million_elements_are_removed_as_a_range_within_it) {
  const Container container = filled();
  const Iterator first = container.first();
  const Iterator last = container.last();
  first.move_next();  // so that it is not all of them
  run_on_small_stack([&] { container.remove(first, last); });
  EXPECT_EQ(container.count(), 1);
}

}  // namespace
}  // namespace hostile
