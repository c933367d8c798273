// A container that is changed from inside a comparison of its own: each call that changes it,
// inside each call that compares keys.
//
// What holds: the container ends as if one of the two calls had happened after the other, it is
// whole, and nothing that is gone is read. The answer belongs to the content of before, of after,
// or to a search that began again.
#include <algorithm>
#include <functional>

#include "runtime/dictionary.h"
#include "runtime/variants.h"
#include "support/host_arrays.h"
#include "support/plugin_test.h"

namespace hostile {
namespace {

using support::Container;
using support::ContainerClass;
using support::Element;
using support::ElementType;
using support::Iterator;

constexpr int element_count = 5;
constexpr int middle = 2;  // the key that searchers look for
constexpr int added = 7;

/// What changes a container; some need an iterator that was made before.
struct Mutator {
  const char* name;
  bool (*exists)(const ContainerClass&);
  std::function<void(const Container&, const Iterator& at_middle)> run;
};

standin::ArrayRef keys_array(const Container& container) {
  const ContainerClass& c = container.container_class();
  return support::host_array(c.key, {support::key(c, added), support::key(c, added + 1)});
}

Container other_map(const ContainerClass& c) {
  Container other = Container::make(c);
  other.put(added);
  return other;
}

bool every(const ContainerClass&) {
  return true;
}
bool sets(const ContainerClass& c) {
  return c.is_set();
}
bool maps(const ContainerClass& c) {
  return c.is_map();
}

const std::vector<Mutator>& mutators() {
  static const std::vector<Mutator> all = {
      {"put", every, [](const Container& c, const Iterator&) { c.put(added); }},
      {"remove by key", every,
       [](const Container& c, const Iterator&) {
         c.remove(support::key(c.container_class(), middle));
       }},
      {"remove by iterator", every, [](const Container& c, const Iterator& at) { c.remove(at); }},
      {"remove of a range", every,
       [](const Container& c, const Iterator&) { c.remove(c.first(), c.last()); }},
      {"clear", every, [](const Container& c, const Iterator&) { c.clear(); }},
      {"constructor", every, [](const Container& c, const Iterator&) { c.construct(); }},
      {"constructor from an array", sets,
       [](const Container& c, const Iterator&) {
         c.call<void>("Constructor(Keys() as {K})", keys_array(c).get());
       }},
      {"constructor from a dictionary", maps,
       [](const Container& c, const Iterator&) {
         const standin::ObjectRef dictionary = standin::make_dictionary();
         c.call<void>("Constructor(dic as dictionary)", dictionary.get());
       }},
      {"constructor from a map", maps,
       [](const Container& c, const Iterator&) {
         const Container other = other_map(c.container_class());
         c.call<void>("Constructor(other as {Class})", other.get());
       }},
      {"conversion to a dictionary", maps,
       [](const Container& c, const Iterator&) {
         standin::ObjectRef::adopt(c.call<REALobject>("CloneDictionary as Dictionary"));
       }},
      {"assignment through an iterator", maps,
       [](const Container& c, const Iterator& at) {
         at.set_value(support::value(c.container_class(), added));
       }},
  };
  return all;
}

/// What compares keys, with its answer as text.
struct Searcher {
  const char* name;
  bool (*exists)(const ContainerClass&);
  std::function<std::string(const Container&, const Element& key)> run;
};

bool ordered(const ContainerClass& c) {
  return c.is_ordered();
}

// An iterator that came out of a container which is another one now must not be looked at.
std::string found(const Iterator& iterator) {
  return iterator ? "iterator" : "nil";
}

const std::vector<Searcher>& searchers() {
  static const std::vector<Searcher> all = {
      {"find", every, [](const Container& c, const Element& k) { return found(c.find(k)); }},
      {"LowerBound", ordered,
       [](const Container& c, const Element& k) { return found(c.lower_bound(k)); }},
      {"UpperBound", ordered,
       [](const Container& c, const Element& k) { return found(c.upper_bound(k)); }},
      {"membership", every,
       [](const Container& c, const Element& k) { return std::to_string(c.contains(k)); }},
      {"CountKey", every,
       [](const Container& c, const Element& k) { return std::to_string(c.count_key(k)); }},
      {"value", maps,
       [](const Container& c, const Element& k) { return support::describe(c.value(k)); }},
      {"lookup", maps,
       [](const Container& c, const Element& k) {
         return support::describe(c.lookup(k, support::value(c.container_class(), 99)));
       }},
      {"put", every,
       [](const Container& c, const Element& k) {
         c.put(k, support::value(c.container_class(), 50));
         return std::string();
       }},
      {"remove", every,
       [](const Container& c, const Element& k) { return std::to_string(c.remove(k)); }},
  };
  return all;
}

class ChangedInsideAComparison : public support::ClassTest {
 protected:
  /// The service that locks keys: a comparison's first host call.
  const char* lock_service() const {
    return container_class().key == ElementType::string ? "REALLockString" : "REALLockObject";
  }

  static std::vector<std::string> sorted_content(const Container& container) {
    std::vector<std::string> content;
    const Iterator end = container.last();
    for (const Iterator at = container.first(); !at.is_equal(end); at.move_next()) {
      std::string text = support::describe(at.key());
      if (container.container_class().is_map()) text += " = " + support::describe(at.value());
      content.push_back(text);
    }
    std::sort(content.begin(), content.end());
    return content;
  }

  struct Outcome {
    std::string answer;
    std::vector<std::string> content;
  };

  Outcome in_turn(const Mutator& mutator, const Searcher& searcher, bool mutator_first) {
    const Container container = make_with(element_count);
    const Iterator at_middle = container.find(key(middle));
    Outcome outcome;
    if (mutator_first) mutator.run(container, at_middle);
    outcome.answer = searcher.run(container, key(middle));
    // What was made before the searcher removed its element must not be used.
    const bool is_usable = std::string_view(searcher.name) != "remove";
    if (!mutator_first) mutator.run(container, is_usable ? at_middle : container.last());
    static_cast<void>(raised());
    outcome.content = sorted_content(container);
    return outcome;
  }

  void run(const Mutator& mutator, const Searcher& searcher) {
    SCOPED_TRACE(std::string(mutator.name) + " inside " + searcher.name);
    const Outcome before = in_turn(mutator, searcher, true);
    const Outcome after = in_turn(mutator, searcher, false);

    const Container container = make_with(element_count);
    const Iterator at_middle = container.find(key(middle));
    const Element sought = key(middle);
    host().faults().reset_fired();
    // The first lock holds the key that is sought.
    host().faults().call_at(lock_service(), 2, [&] { mutator.run(container, at_middle); });
    const std::string answer = searcher.run(container, sought);
    host().faults().clear();
    EXPECT_EQ(host().faults().fired(), 1U);
    static_cast<void>(raised());
    EXPECT_TRUE(answer == before.answer || answer == after.answer)
        << answer << " instead of " << before.answer << " or " << after.answer;

    const std::vector<std::string> content = sorted_content(container);
    EXPECT_TRUE(content == before.content || content == after.content)
        << ::testing::PrintToString(content) << " instead of "
        << ::testing::PrintToString(before.content) << " or "
        << ::testing::PrintToString(after.content);
    EXPECT_EQ(container.count(), static_cast<std::int32_t>(content.size()));
    container.put(added + 5);
    EXPECT_TRUE(container.contains(key(added + 5)));
  }

  void inside_every_searcher(std::string_view name) {
    for (const Mutator& mutator : mutators()) {
      if (name != mutator.name || !mutator.exists(container_class())) continue;
      for (const Searcher& searcher : searchers()) {
        if (searcher.exists(container_class())) run(mutator, searcher);
      }
    }
  }
};
class SetChangedInsideAComparison : public ChangedInsideAComparison {};
class MapChangedInsideAComparison : public ChangedInsideAComparison {};
bool compares_in_the_host(const ContainerClass& c) {
  return c.key != ElementType::integer;
}
ZRB_FOR_CLASSES(ChangedInsideAComparison, support::classes_where(compares_in_the_host));
ZRB_FOR_CLASSES(SetChangedInsideAComparison, support::classes_where([](const ContainerClass& c) {
                  return compares_in_the_host(c) && c.is_set();
                }));
ZRB_FOR_CLASSES(MapChangedInsideAComparison, support::classes_where([](const ContainerClass& c) {
                  return compares_in_the_host(c) && c.is_map();
                }));

TEST_P(ChangedInsideAComparison, by_a_new_key) {
  inside_every_searcher("put");
}
TEST_P(ChangedInsideAComparison, by_removing_the_key_that_is_compared) {
  inside_every_searcher("remove by key");
}
TEST_P(ChangedInsideAComparison, by_removing_the_element_that_is_compared) {
  inside_every_searcher("remove by iterator");
}
TEST_P(ChangedInsideAComparison, by_removing_all_elements_as_a_range) {
  inside_every_searcher("remove of a range");
}
TEST_P(ChangedInsideAComparison, by_clearing) {
  inside_every_searcher("clear");
}
TEST_P(ChangedInsideAComparison, by_constructing_again) {
  inside_every_searcher("constructor");
}
TEST_P(SetChangedInsideAComparison, by_constructing_again_from_an_array) {
  inside_every_searcher("constructor from an array");
}
TEST_P(MapChangedInsideAComparison, by_constructing_again_from_a_dictionary) {
  inside_every_searcher("constructor from a dictionary");
}
TEST_P(MapChangedInsideAComparison, by_constructing_again_from_another_map) {
  inside_every_searcher("constructor from a map");
}
TEST_P(MapChangedInsideAComparison, by_converting_it_to_a_dictionary) {
  inside_every_searcher("conversion to a dictionary");
}
TEST_P(MapChangedInsideAComparison, by_assigning_through_an_iterator) {
  inside_every_searcher("assignment through an iterator");
}

/// The service that locks an element; none for integers.
const char* lock_service(ElementType type) {
  if (type == ElementType::string) return "REALLockString";
  return type == ElementType::variant ? "REALLockObject" : nullptr;
}

class MapWhoseKeyGoes : public support::ClassTest {};
ZRB_FOR_CLASSES(MapWhoseKeyGoes, support::map_classes());

// A key that is found can be removed while the value for it is locked.
TEST_P(MapWhoseKeyGoes, as_its_value_is_locked_holds_no_value_for_good) {
  const char* const value_lock = lock_service(*container_class().value);
  if (value_lock == nullptr) GTEST_SKIP() << "nothing is locked";
  const Element new_value = value(5);
  for (std::uint64_t n = 1; n <= 8; ++n) {
    const Container map = make_with(3);
    host().faults().call_at(value_lock, n, [&] { map.remove(key(1)); });
    map.put(key(1), new_value);
    host().faults().clear();
    map.clear();
    map.put(2);
    EXPECT_EQ(map.count(), 1) << n;
    EXPECT_EQ(support::locks(new_value), support::one_lock(new_value)) << n;
  }
}

bool locks_elements(const ContainerClass& c) {
  return lock_service(c.key) != nullptr || (c.is_map() && lock_service(*c.value) != nullptr);
}

class ContainerThatIsCleared : public support::ClassTest {
 protected:
  /// Reads part of the only element, which nobody else holds, and clears the container when the
  /// host is asked to lock it.
  template <class Read>
  void as_it_is_read(ElementType type, const Element& same, Read read) {
    const char* const lock = lock_service(type);
    if (lock == nullptr) return;
    const Container container = make();
    container.put(key(1), value(1));
    const Iterator position = container.first();
    host().faults().call_at(lock, 1, [&] { container.clear(); });
    const Element element = read(position);
    host().faults().clear();
    EXPECT_TRUE(container.empty());
    EXPECT_EQ(support::locks(element), support::one_lock(element));
    EXPECT_EQ(support::describe(element), support::describe(same));
  }
};
ZRB_FOR_CLASSES(ContainerThatIsCleared, support::classes_where(locks_elements));

TEST_P(ContainerThatIsCleared, as_an_element_is_handed_out_keeps_it_alive_so_long) {
  const ContainerClass& c = container_class();
  as_it_is_read(c.key, key(1), [](const Iterator& at) { return at.key(); });
  if (c.is_map()) as_it_is_read(*c.value, value(1), [](const Iterator& at) { return at.value(); });
}

}  // namespace
}  // namespace hostile
