// Handles that were released and are used again, by the host for something else or by a program
// that should not.
//
// A host that frees memory gives the same address to its next object. Whatever the plugin kept by
// address (the methods of the last Dictionary, keys that compare by identity, positions) meets such
// a successor here. The hosts of these tests really free what is released.
#include <optional>

#include "runtime/dictionary.h"
#include "runtime/variants.h"
#include "support/leak_sanitizer.h"
#include "support/plugin_test.h"

namespace hostile {
namespace {

using standin::ObjectRef;
using support::Container;
using support::ContainerClass;
using support::Element;
using support::ElementType;
using support::Iterator;

class ReusedHandles : public support::ClassTest {
 protected:
  ReusedHandles() {
    standin::HostOptions options = default_options();
    options.strict_ledger = false;
    restart(options);
  }

  /// Makes objects until one has that address; none when the allocator never gives it again.
  template <class Make>
  static std::optional<ObjectRef> made_at(const void* address, Make make) {
    std::vector<ObjectRef> others;
    for (int i = 0; i < 5000; ++i) {
      ObjectRef object = make();
      if (object.get() == address) return object;
      others.push_back(std::move(object));
    }
    return std::nullopt;
  }
};
class ReusedDictionaries : public ReusedHandles {};
class ReusedIdentities : public ReusedHandles {};
ZRB_FOR_CLASSES(ReusedHandles, support::all_classes());
ZRB_FOR_CLASSES(ReusedDictionaries, support::map_classes());
ZRB_FOR_CLASSES(ReusedIdentities, support::classes_with_key(ElementType::variant));

TEST_P(ReusedDictionaries, of_a_dictionary_serve_the_next_one_at_its_address) {
  const Container map = make();
  ObjectRef first = standin::make_dictionary();
  const void* const address = first.get();
  standin::dictionary_set(first.get(), standin::variant_from_integer(1).get(), nullptr);
  map.call<void>("Constructor(dic as dictionary)", first.get());
  EXPECT_EQ(map.count(), 1);
  first.reset();

  std::optional<ObjectRef> second = made_at(address, [] { return standin::make_dictionary(); });
  if (!second) second = standin::make_dictionary();  // then it is one like any other
  for (int i = 10; i < 13; ++i) {
    standin::dictionary_set(second->get(), standin::variant_from_integer(i).get(), nullptr);
  }
  map.call<void>("Constructor(dic as dictionary)", second->get());
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(map.count(), 3);
}

TEST_P(ReusedIdentities, of_cleared_keys_are_not_found_again) {
  const Container container = make();
  ObjectRef object = host().new_instance("RuntimeException");
  const void* const address = object.get();
  container.put(object, value(1));
  container.clear();
  EXPECT_EQ(standin::lock_count(object.get()), 1U) << "so that its memory can be used again";
  object.reset();
  std::optional<ObjectRef> next =
      made_at(address, [this] { return host().new_instance("RuntimeException"); });
  if (!next) next = host().new_instance("RuntimeException");
  EXPECT_FALSE(container.contains(*next));
  container.put(*next, value(2));
  EXPECT_EQ(container.count(), 1);
}

TEST_P(ReusedIdentities, of_keys_in_a_container_cannot_be_given_away) {
  const Container container = make();
  ObjectRef object = host().new_instance("RuntimeException");
  const void* const address = object.get();
  container.put(object, value(1));
  object.reset();  // the container holds it
  EXPECT_FALSE(made_at(address, [this] { return host().new_instance("RuntimeException"); }));
  EXPECT_EQ(support::handle(container.first().key()), address);
}

TEST_P(ReusedHandles, of_instances_begin_without_storage) {
  Container container = make_with(5);
  const void* const address = container.get();
  container.release();
  const std::optional<ObjectRef> next =
      made_at(address, [this] { return host().new_instance(container_class().name); });
  const Container again = Container::adopt(
      container_class(),
      next ? ObjectRef(*next).release() : host().new_instance(container_class().name).release());
  EXPECT_EQ(again.first_word(), nullptr);
  EXPECT_EQ(again.count(), 0);
  EXPECT_EQ(raised(), "NilObjectException: " + container_class().not_initialized_message());
  again.construct();
  again.put(1);
  EXPECT_EQ(again.count(), 1);
}

TEST_P(ReusedHandles, of_iterators_begin_without_position) {
  const Container container = make_with(5);
  Iterator iterator = container.first();
  const void* const address = iterator.get();
  iterator.release();
  const auto next =
      made_at(address, [this] { return host().new_instance(container_class().iterator_name); });
  const Iterator again = Iterator::adopt(
      container_class(), next ? ObjectRef(*next).release()
                              : host().new_instance(container_class().iterator_name).release());
  EXPECT_TRUE(support::is_neutral(again.key()));
  EXPECT_EQ(raised(),
            "NilObjectException: " + container_class().iterator_not_initialized_message());
  container.remove(again);
  EXPECT_EQ(container.count(), 5);
}

TEST_P(ReusedHandles, of_removed_elements_serve_new_ones) {
  const Container container = make();
  for (int round = 0; round < 20; ++round) {
    container.put_all(round * 10, 10);
    const Iterator kept = container.find(key(round * 10));
    for (int i = 1; i < 10; ++i) EXPECT_EQ(container.remove(key(round * 10 + i)), 1);
    EXPECT_EQ(support::describe(kept.key()), support::describe(key(round * 10)));
  }
  EXPECT_EQ(container.count(), 20);
}

}  // namespace
}  // namespace hostile
