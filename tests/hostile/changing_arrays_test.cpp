// Arrays that change while they are read, and whose bounds lie.
//
// An array is read up to the bound that the host told at first, element by element: what is no
// longer there reads as nothing and is reported by the host, what came later is not seen.
#include <limits>

#include "lies.h"
#include "runtime/arrays.h"
#include "runtime/services.h"
#include "runtime/value.h"
#include "support/host_arrays.h"
#include "support/plugin_test.h"

namespace hostile {
namespace {

using support::Container;
using support::ContainerClass;
using support::Element;
using support::ElementType;

std::int32_t told_bound = 0;

std::int32_t lying_bound(REALarray) {
  return told_bound;
}

std::int32_t growing_bound(REALarray array) {
  return standin::upper_bound(array) + 1;
}

const char* get_procedure(ElementType type) {
  switch (type) {
    case ElementType::integer:
      return "array get integer";
    case ElementType::string:
      return "array get string";
    case ElementType::variant:
      break;
  }
  return "array get object";
}

class ChangingArray : public support::ClassTest {
 protected:
  standin::ArrayRef array_of(int first, int count) const {
    std::vector<Element> elements;
    for (int i = first; i < first + count; ++i) elements.push_back(key(i));
    return support::host_array(container_class().key, elements);
  }
  Container made_from(const standin::ArrayRef& array) const {
    const Container set = Container::without_storage(container_class());
    set.call<void>("Constructor(Keys() as {K})", array.get());
    return set;
  }
  void restart_with_bound(std::int32_t bound) {
    told_bound = bound;
    restart(default_options(), [](standin::Host& host) {
      load_with_lies(host, {{"RuntimeUBound", lie(&lying_bound)}});
    });
  }
  void at_second_element(std::function<void()> change) {
    host().faults().call_at(get_procedure(container_class().key), 2, std::move(change));
  }
};
ZRB_FOR_CLASSES(ChangingArray, support::set_classes());

TEST_P(ChangingArray, that_shrinks_gives_nothing_for_what_is_gone) {
  const standin::ArrayRef array = array_of(1, 5);
  at_second_element([&] { standin::resize(array.get(), 1); });
  const Container set = made_from(array);
  EXPECT_EQ(raised().substr(0, 20), "OutOfBoundsException");
  EXPECT_EQ(set.count(), 3) << "two elements, and nothing once";
  EXPECT_TRUE(set.contains(key(1)));
  EXPECT_TRUE(set.contains(key(2)));
  EXPECT_TRUE(set.contains(support::neutral(container_class().key)));
}

TEST_P(ChangingArray, that_is_emptied_gives_nothing_for_the_rest) {
  const standin::ArrayRef array = array_of(1, 5);
  at_second_element([&] { standin::resize(array.get(), -1); });
  const Container set = made_from(array);
  EXPECT_EQ(raised().substr(0, 20), "OutOfBoundsException");
  EXPECT_EQ(set.count(), 2);
}

TEST_P(ChangingArray, that_grows_is_read_to_its_first_bound) {
  const standin::ArrayRef array = array_of(1, 3);
  at_second_element([&] {
    for (int i = 10; i < 300; ++i) {
      const standin::ArrayRef more = array_of(i, 1);
      standin::append(array.get(), standin::get(more.get(), 0));
    }
  });
  const Container set = made_from(array);
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(set.count(), 3);
  EXPECT_EQ(standin::upper_bound(array.get()), 292);
}

TEST_P(ChangingArray, whose_elements_move_gives_some_twice_and_some_not) {
  const standin::ArrayRef array = array_of(1, 5);
  at_second_element([&] { standin::swap(array.get(), 0, 4); });
  const Container set = made_from(array);
  EXPECT_EQ(set.count(), 4);
  EXPECT_TRUE(set.contains(key(1)));
  EXPECT_FALSE(set.contains(key(5)));
}

TEST_P(ChangingArray, that_is_released_meanwhile_is_held_to_the_end) {
  standin::ArrayRef array = array_of(1, 5);
  const Container set = Container::without_storage(container_class());
  at_second_element([&] { array.reset(); });
  set.call<void>("Constructor(Keys() as {K})", array.get());
  EXPECT_FALSE(array);
  EXPECT_EQ(set.count(), 5);
  EXPECT_TRUE(set.contains(key(5)));
}

TEST_P(ChangingArray, whose_bound_is_negative_is_empty) {
  restart_with_bound(-1);
  for (const std::int32_t bound : {-1, -2, -1000, std::numeric_limits<std::int32_t>::min()}) {
    SCOPED_TRACE(bound);
    told_bound = bound;
    const Container set = made_from(array_of(1, 5));
    EXPECT_EQ(set.count(), 0);
    EXPECT_EQ(raised(), "");
  }
}

TEST_P(ChangingArray, whose_bound_is_too_small_gives_its_beginning) {
  restart_with_bound(2);
  const Container set = made_from(array_of(1, 5));
  EXPECT_EQ(set.count(), 3);
  EXPECT_FALSE(set.contains(key(4)));
}

TEST_P(ChangingArray, whose_bound_is_too_large_gives_nothing_behind_its_end) {
  restart_with_bound(2000);
  const Container set = made_from(array_of(1, 5));
  EXPECT_EQ(raised().substr(0, 20), "OutOfBoundsException");
  EXPECT_EQ(set.count(), 6);
  EXPECT_TRUE(set.contains(support::neutral(container_class().key)));
}

TEST_P(ChangingArray, whose_bound_is_always_one_more_is_asked_once) {
  restart(default_options(), [](standin::Host& host) {
    load_with_lies(host, {{"RuntimeUBound", lie(&growing_bound)}});
  });
  const Container set = made_from(array_of(1, 5));
  EXPECT_EQ(raised().substr(0, 20), "OutOfBoundsException");
  EXPECT_EQ(set.count(), 6);
}

class ChangingTarget : public support::ClassTest {
 protected:
  std::string insert_procedure() const {
    const std::string get = get_procedure(container_class().key);
    return "array insert" + get.substr(get.rfind(' '));
  }
};
ZRB_FOR_CLASSES(ChangingTarget, support::map_classes());

TEST_P(ChangingTarget, that_is_emptied_gets_what_the_host_still_takes) {
  const Container map = make_with(5);
  const standin::ArrayRef target = support::host_array(container_class().key, {key(50)});
  host().faults().call_at(insert_procedure(), 3, [&] { standin::resize(target.get(), -1); });
  map.call<void>("AddKeys(targetArray() as {K})", target.get());
  EXPECT_EQ(raised().substr(0, 20), "OutOfBoundsException");
  EXPECT_EQ(standin::upper_bound(target.get()), -1);
  EXPECT_EQ(map.count(), 5);
}

TEST_P(ChangingTarget, that_is_released_meanwhile_is_held_to_the_end) {
  const Container map = make_with(5);
  standin::ArrayRef target = support::host_array(container_class().key, {key(50)});
  host().faults().call_at(insert_procedure(), 3, [&] { target.reset(); });
  map.call<void>("AddKeys(targetArray() as {K})", target.get());
  EXPECT_EQ(raised(), "");
  EXPECT_FALSE(target);
  EXPECT_EQ(host().calls().of(insert_procedure()), 5U);
}

REALarray array_without_room(std::int32_t element_type, std::int32_t) {
  return standin::services::create_array(element_type, 0);
}

class ArraysWithoutRoom : public support::ClassTest {};
ZRB_FOR_CLASSES(ArraysWithoutRoom, support::all_classes());

TEST_P(ArraysWithoutRoom, hold_what_fits_and_the_container_stays) {
  restart(default_options(), [](standin::Host& host) {
    load_with_lies(host, {{"RuntimeArrayCreateSingleDimBoundedArray", lie(&array_without_room)}});
  });
  const Container container = make_with(5);
  const auto keys = standin::ArrayRef::adopt(container.call<REALarray>("Keys as {K}()"));
  EXPECT_EQ(raised().substr(0, 20), "OutOfBoundsException");
  EXPECT_EQ(support::described(container_class().key, keys.get()).at(0),
            container.described_keys().at(0));
  EXPECT_EQ(standin::upper_bound(keys.get()), 0);
  EXPECT_EQ(container.count(), 5);
}

}  // namespace
}  // namespace hostile
