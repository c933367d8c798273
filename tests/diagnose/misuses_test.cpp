// Every wrong use of an iterator that the diagnostic plugin finds, in every class that has it.
#include <gmock/gmock.h>

#include <string>

#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;
using support::Iterator;

class Misuse : public support::ClassTest {
 protected:
  // The whole exception: which class and operation, and how the finding begins.
  void expect_found(const char* class_name, const std::string& operation,
                    const std::string& finding) {
    EXPECT_THAT(raised(), ::testing::StartsWith("RuntimeException: " + std::string(class_name) +
                                                "." + operation + ": " + finding));
  }
  void expect_iterator_found(const std::string& operation, const std::string& finding) {
    expect_found(container_class().iterator_name, operation, finding);
  }
  void expect_container_found(const std::string& finding) {
    expect_found(container_class().name, "Remove", finding);
  }

  // Each operation that takes `stale`, on a container of the class.
  void expect_stale(const Iterator& stale, const std::string& reason) {
    const std::string finding = "the iterator is stale: " + reason;
    const Container other = make_with(1);
    stale.move_next();
    expect_iterator_found("MoveNext", finding);
    if (container_class().is_ordered()) {
      stale.move_prev();
      expect_iterator_found("MovePrev", finding);
    }
    EXPECT_TRUE(support::is_neutral(stale.key()));
    expect_iterator_found("Key", finding);
    if (container_class().is_map()) {
      EXPECT_TRUE(support::is_neutral(stale.value()));
      expect_iterator_found("Value", finding);
      stale.set_value(value(7));
      expect_iterator_found("Value", finding);
    }
    const Iterator sound = other.first();
    for (const auto& [one, two] : {std::pair(&stale, &sound), {&sound, &stale}, {&stale, &stale}}) {
      EXPECT_FALSE(one->is_equal(*two));
      expect_iterator_found("isEqual", finding);
      EXPECT_FALSE(one->is_not_equal(*two));
      expect_iterator_found("isNotEqual", finding);
    }
    other.remove(stale);
    expect_container_found(finding);
    other.remove(stale, other.last());
    expect_container_found(finding);
    other.remove(other.first(), stale);
    expect_container_found(finding);
    EXPECT_EQ(other.count(), 1);
  }
};
class MapMisuse : public Misuse {};
class OrderedMisuse : public Misuse {};
ZRB_FOR_CLASSES(Misuse, support::all_classes());
ZRB_FOR_CLASSES(MapMisuse, support::map_classes());
ZRB_FOR_CLASSES(OrderedMisuse, support::ordered_classes());

constexpr const char* removed = "its element was removed";
constexpr const char* cleared = "its container was cleared";
constexpr const char* replaced = "its container was constructed again, assigned or converted";
constexpr const char* gone = "its container is gone";

// ---- stale iterators ----

TEST_P(Misuse, iterators_of_an_element_that_was_removed_by_key_are_stale) {
  const Container container = make_with(3);
  const Iterator at = container.find(key(1));
  container.remove(key(1));
  expect_stale(at, removed);
}

TEST_P(Misuse, iterators_of_an_element_that_was_removed_by_position_are_stale) {
  const Container container = make_with(3);
  const Iterator at = container.find(key(1));
  const Iterator same = container.find(key(1));
  container.remove(same);
  expect_stale(at, removed);
  expect_stale(same, removed);
}

TEST_P(Misuse, iterators_of_elements_in_a_range_that_was_removed_are_stale) {
  const Container container = make_with(3);
  const Iterator first = container.first();
  const Iterator second = container.first();
  second.move_next();
  container.remove(container.first(), container.last());
  expect_stale(first, removed);
  expect_stale(second, removed);
}

// Nodes are used again: the iterator names another element by then.
TEST_P(Misuse, stale_iterators_stay_so_when_another_element_takes_the_place) {
  const Container container = make_with(3);
  const Iterator at = container.find(key(1));
  container.remove(key(1));
  container.put(5);
  container.put(1);
  expect_stale(at, removed);
}

TEST_P(Misuse, iterators_are_stale_after_clear) {
  const Container container = make_with(3);
  const Iterator at = container.find(key(1));
  container.clear();
  container.put(1);
  expect_stale(at, cleared);
}

TEST_P(Misuse, iterators_are_stale_after_another_constructor_call) {
  const Container container = make_with(3);
  const Iterator at = container.find(key(1));
  const Iterator end = container.last();
  container.construct();
  expect_stale(at, replaced);
  expect_stale(end, replaced);
}

TEST_P(MapMisuse, iterators_are_stale_when_the_map_takes_on_the_content_of_another) {
  const Container map = make_with(3);
  const Container other = make_with(2);
  const Iterator at = map.find(key(1));
  const Iterator end = map.last();
  map.call<void>("Constructor(other as {Class})", other.get());
  expect_stale(at, replaced);
  expect_stale(end, replaced);
}

TEST_P(MapMisuse, iterators_are_stale_when_the_map_takes_on_a_dictionary) {
  const Container map = make_with(3);
  const Iterator at = map.find(key(1));
  map.call<void>("Operator_Convert(dic as dictionary)", REALobject{});
  expect_stale(at, replaced);
}

TEST_P(MapMisuse, iterators_are_stale_when_the_map_was_converted_to_a_dictionary) {
  const Container map = make_with(3);
  const Iterator at = map.find(key(1));
  const auto dictionary =
      standin::ObjectRef::adopt(map.call<REALobject>("CloneDictionary as Dictionary"));
  EXPECT_TRUE(dictionary);
  expect_stale(at, replaced);
}

TEST_P(Misuse, iterators_are_stale_when_the_container_is_gone) {
  Container container = make_with(3);
  const Iterator at = container.find(key(1));
  const Iterator end = container.last();
  container.release();
  expect_stale(at, gone);
  expect_stale(end, gone);
}

// ---- iterators of another container ----

TEST_P(Misuse, iterators_of_another_container_are_not_removed) {
  const Container container = make_with(3);
  const Container other = make_with(3);
  const std::string finding = "the iterator belongs to another container";
  container.remove(other.first());
  expect_container_found(finding);
  container.remove(container.first(), other.last());
  expect_container_found(finding);
  container.remove(other.first(), container.last());
  expect_container_found(finding);
  container.remove(other.last());
  expect_container_found(finding);
  EXPECT_EQ(container.count(), 3);
  EXPECT_EQ(other.count(), 3);
}

TEST_P(Misuse, iterators_of_different_containers_are_not_compared) {
  const Container container = make_with(3);
  const Container other = make_with(3);
  const std::string finding = "the iterators belong to two different containers";
  for (const auto& [one, two] :
       {std::pair(container.first(), other.first()), std::pair(container.last(), other.last())}) {
    EXPECT_FALSE(one.is_equal(two));
    expect_iterator_found("isEqual", finding);
    EXPECT_FALSE(one.is_not_equal(two));
    expect_iterator_found("isNotEqual", finding);
  }
}

// ---- beyond the ends ----

TEST_P(Misuse, nothing_is_stepped_to_read_or_removed_at_the_end) {
  for (const Container& container : {make(), make_with(3)}) {
    const Iterator end = container.last();
    end.move_next();
    expect_iterator_found("MoveNext", "the iterator is at the end");
    EXPECT_TRUE(end.is_equal(container.last()));
    EXPECT_TRUE(support::is_neutral(end.key()));
    expect_iterator_found("Key", "the iterator is at the end");
    if (container_class().is_map()) {
      EXPECT_TRUE(support::is_neutral(end.value()));
      expect_iterator_found("Value", "the iterator is at the end");
      end.set_value(value(7));
      expect_iterator_found("Value", "the iterator is at the end");
    }
    container.remove(end);
    expect_container_found("the iterator is at the end");
  }
}

TEST_P(Misuse, the_end_is_known_when_it_is_stepped_to) {
  const Container container = make_with(2);
  const Iterator at = container.first();
  at.move_next();
  at.move_next();
  EXPECT_EQ(raised(), "");
  at.move_next();
  expect_iterator_found("MoveNext", "the iterator is at the end");
}

TEST_P(OrderedMisuse, nothing_is_before_the_first_element) {
  const Container container = make_with(2);
  const Iterator at = container.first();
  at.move_prev();
  expect_iterator_found("MovePrev", "the iterator is at the first element");
  EXPECT_TRUE(at.is_equal(container.first()));
  make().last().move_prev();
  expect_iterator_found("MovePrev", "the iterator is at the first element");
}

}  // namespace
