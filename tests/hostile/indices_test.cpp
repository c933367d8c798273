// Indices from one end of Integer to the other, with the host's array procedures, with the plugin's
// own, and without arrays.
#include <limits>

#include "runtime/arrays.h"
#include "support/host_arrays.h"
#include "support/lock_changes.h"
#include "support/plugin_test.h"

namespace hostile {
namespace {

using support::Container;
using support::ContainerClass;
using support::Element;
using support::ElementType;

constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t outside[] = {least, least + 1, -1000000, -2,       -1,
                                    3,     4,         1000000,  most - 1, most};

class Indices : public support::ClassTest {
 protected:
  Element key_at(const Container& container, std::int32_t index) const {
    return container.call_for(container_class().key, "Key(index as integer) as {K}", index);
  }
  Element value_at(const Container& map, std::int32_t index) const {
    return map.call_for(*container_class().value, "ValueAtIndex(index as integer) as {V}", index);
  }

  /// Every index outside reads as nothing, raises the same, and locks nothing.
  void expect_nothing_outside(const std::string& exception) {
    const Container container = make_with(3);
    EXPECT_FALSE(support::is_neutral(key_at(container, 2)));
    const support::LockWatch watch;
    for (const std::int32_t index : outside) {
      SCOPED_TRACE(index);
      EXPECT_TRUE(support::is_neutral(key_at(container, index)));
      EXPECT_EQ(raised().substr(0, exception.size()), exception);
      if (!container_class().is_map()) continue;
      EXPECT_TRUE(support::is_neutral(value_at(container, index)));
      EXPECT_EQ(raised().substr(0, exception.size()), exception);
    }
    EXPECT_EQ(watch.changes(), support::LockChanges());
    EXPECT_EQ(container.count(), 3);
  }
};
class MapIndices : public Indices {};
class SetIndices : public Indices {};
ZRB_FOR_CLASSES(Indices, support::all_classes());
ZRB_FOR_CLASSES(MapIndices, support::map_classes());
ZRB_FOR_CLASSES(SetIndices, support::set_classes());

TEST_P(Indices, outside_are_reported_by_the_hosts_array) {
  expect_nothing_outside("OutOfBoundsException");
}

TEST_P(Indices, outside_read_as_nothing_through_the_plugins_own_procedures) {
  restart_without({"RuntimeArrayDirectGetGetProc"});
  const Container container = make_with(3);
  const support::LockWatch watch;
  key_at(container, 0);
  for (const std::int32_t index : outside) {
    SCOPED_TRACE(index);
    EXPECT_TRUE(support::is_neutral(key_at(container, index)));
    EXPECT_EQ(raised(), "");
  }
}

TEST_P(MapIndices, outside_read_as_nothing_where_the_host_makes_no_arrays) {
  restart_without({"RuntimeArrayCreateSingleDimBoundedArray"});
  const Container map = make_with(3);
  EXPECT_FALSE(support::is_neutral(value_at(map, 2)) && support::is_neutral(key_at(map, 2)));
  for (const std::int32_t index : outside) {
    SCOPED_TRACE(index);
    EXPECT_TRUE(support::is_neutral(key_at(map, index)));
    EXPECT_TRUE(support::is_neutral(value_at(map, index)));
    EXPECT_EQ(raised(), "");
  }
  EXPECT_EQ(map.count(), 3);
}

TEST_P(SetIndices, all_read_as_nothing_where_the_host_makes_no_arrays) {
  restart_without({"RuntimeArrayCreateSingleDimBoundedArray"});
  const Container set = make_with(3);
  for (const std::int32_t index : {least, -1, 0, 2, 3, most}) {
    EXPECT_TRUE(support::is_neutral(key_at(set, index)));
    EXPECT_EQ(raised(), "");
  }
}

TEST_P(Indices, an_empty_container_has_none) {
  const Container container = make();
  for (const std::int32_t index : {least, -1, 0, 1, most}) {
    EXPECT_TRUE(support::is_neutral(key_at(container, index)));
    EXPECT_EQ(raised().substr(0, 20), "OutOfBoundsException");
  }
}

TEST_P(Indices, an_instance_without_storage_has_none) {
  const Container container = Container::without_storage(container_class());
  for (const std::int32_t index : {least, -1, 0, most}) {
    EXPECT_TRUE(support::is_neutral(key_at(container, index)));
    EXPECT_EQ(raised(),
              container_class().is_map() ? "NilObjectException: Map not initialized" : "");
  }
}

TEST_P(Indices, a_cached_array_that_a_program_shortened_is_read_as_it_is) {
  const Container container = make_with(5);
  const auto keys = standin::ArrayRef::adopt(container.call<REALarray>("Keys as {K}()"));
  standin::resize(keys.get(), 1);
  EXPECT_EQ(support::describe(key_at(container, 1)),
            support::described(container_class().key, keys.get())[1]);
  EXPECT_TRUE(support::is_neutral(key_at(container, 2)));
  EXPECT_EQ(raised().substr(0, 20), "OutOfBoundsException");
  EXPECT_EQ(container.count(), 5);
  container.put(50);
  EXPECT_FALSE(support::is_neutral(key_at(container, 5))) << "the change made a fresh array";
}

TEST_P(Indices, a_cached_array_that_a_program_emptied_or_lengthened_is_read_as_it_is) {
  const Container container = make_with(5);
  const auto keys = standin::ArrayRef::adopt(container.call<REALarray>("Keys as {K}()"));
  standin::resize(keys.get(), 1000);
  EXPECT_TRUE(support::is_neutral(key_at(container, 1000)));
  EXPECT_EQ(raised(), "");
  standin::resize(keys.get(), -1);
  EXPECT_TRUE(support::is_neutral(key_at(container, 0)));
  EXPECT_EQ(raised().substr(0, 20), "OutOfBoundsException");
}

class IndexKeys : public Indices {};
ZRB_FOR_CLASSES(IndexKeys, support::classes_with_key(ElementType::integer));

TEST_P(IndexKeys, the_ends_of_integer_are_keys_like_any_other) {
  const Container container = make();
  for (const std::int32_t key : {least, -1, 0, 1, most}) {
    container.put(key, value(1));
    EXPECT_TRUE(container.contains(key));
  }
  EXPECT_EQ(container.count(), 5);
  for (const std::int32_t key : {least, -1, 0, 1, most}) EXPECT_EQ(container.remove(key), 1);
  EXPECT_TRUE(container.empty());
}

}  // namespace
}  // namespace hostile
