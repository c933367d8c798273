// A C++ exception of the host, thrown by one host call after another, passes through the plugin:
// the plugin gives back what it took for the call, the container stays whole, and the same
// operation works afterwards.
#include <algorithm>
#include <map>

#include "support/leak_sanitizer.h"
#include "support/lock_changes.h"
#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Element;
using support::ElementType;
using support::LockChanges;
using support::LockWatch;

bool gives_back(const std::string& entry_point) {
  return entry_point.find("Unlock") != std::string::npos ||
         entry_point.find("Dispose") != std::string::npos;
}

/// What an operation works on: a container with one entry, and arguments that equal that entry or
/// not.
struct Scene {
  Scene(const support::ContainerClass& container_class, int argument_index)
      : container(Container::make(container_class)),
        stored_key(support::key(container_class, 1)),
        stored_value(support::value(container_class, 1)),
        argument_key(support::key(container_class, argument_index)),
        argument_value(support::value(container_class, 2)) {
    container.put(stored_key, stored_value);
  }
  Container container;
  Element stored_key, stored_value;
  Element argument_key, argument_value;
};

using Operation = void (*)(const Scene&);

void put(const Scene& scene) {
  scene.container.put(scene.argument_key, scene.argument_value);
}
void contains(const Scene& scene) {
  scene.container.contains(scene.argument_key);
}
void find(const Scene& scene) {
  scene.container.find(scene.argument_key);
}
void count_key(const Scene& scene) {
  scene.container.count_key(scene.argument_key);
}
void remove(const Scene& scene) {
  scene.container.remove(scene.argument_key);
}
void look_up(const Scene& scene) {
  scene.container.lookup(scene.argument_key, scene.argument_value);
}
void read_key(const Scene& scene) {
  scene.container.first().key();
}
void assign_by_iterator(const Scene& scene) {
  scene.container.first().set_value(scene.argument_value);
}

class HostExceptions : public support::ClassTest {
 protected:
  /// Lets each host call of an operation fail in turn, those aside that give something back, and
  /// calls `check` with the scene after each failure.
  void fail_each_call(Operation operation, int argument_index) {
    std::map<std::string, std::uint64_t> calls;
    for (int run = 0; run < 2; ++run) {  // the first one looks services up, the second counts
      const Scene scene(container_class(), argument_index);
      host().calls().reset();
      operation(scene);
      calls = host().calls().called();
      raised();
    }
    for (const auto& [entry_point, count] : calls) {
      if (gives_back(entry_point)) continue;
      for (std::uint64_t n = 1; n <= count; ++n) {
        SCOPED_TRACE(entry_point + ", call " + std::to_string(n));
        fail_once(operation, argument_index, entry_point, n);
      }
    }
  }

 private:
  void fail_once(Operation operation, int argument_index, const std::string& entry_point,
                 std::uint64_t n) {
    const Scene scene(container_class(), argument_index);
    const LockWatch watch;
    host().faults().reset_fired();
    host().faults().throw_at(entry_point, n);
    EXPECT_THROW(operation(scene), standin::InjectedFault);
    host().faults().clear();
    EXPECT_EQ(host().faults().fired(), 1u);
    EXPECT_EQ(raised(), "");

    expect_only_comparisons_left(watch, scene);
    expect_whole(scene);
    operation(scene);
    raised();
    expect_whole(scene);
  }

  /// Only locks of comparisons may stay: as many on one side as on the other, but for the one
  /// that failed half-way, and the locks of what was stored before the failure.
  void expect_only_comparisons_left(const LockWatch& watch, const Scene& scene) const {
    const bool both_stored = scene.container.count() == 2;
    LockChanges changes = watch.changes();
    const auto take = [&changes](const Element& element) {
      const auto found = changes.find(support::handle(element));
      if (found == changes.end()) return std::int64_t{0};
      const std::int64_t change = found->second;
      changes.erase(found);
      return change;
    };
    const std::int64_t argument =
        take(scene.argument_key) - (both_stored ? support::one_lock(scene.argument_key) : 0);
    const std::int64_t stored = take(scene.stored_key);
    if (container_class().key == ElementType::integer) {
      EXPECT_EQ(argument, 0);
      EXPECT_EQ(stored, 0);
    } else {
      EXPECT_GE(argument, 0);
      EXPECT_GE(stored, 0);
      EXPECT_LE(std::abs(argument - stored), 1) << argument << " and " << stored;
    }
    EXPECT_EQ(changes, LockChanges()) << "locks on something else";
  }

  void expect_whole(const Scene& scene) const {
    const std::vector<std::string> keys = scene.container.described_keys();
    EXPECT_EQ(static_cast<std::size_t>(scene.container.count()), keys.size());
    for (const std::string& key : keys) {
      EXPECT_TRUE(key == support::describe(scene.stored_key) ||
                  key == support::describe(scene.argument_key))
          << key;
    }
  }
};
class MapHostExceptions : public HostExceptions {};
class HostExceptionsOfValues : public HostExceptions {};
ZRB_FOR_CLASSES(HostExceptions, support::all_classes());
ZRB_FOR_CLASSES(MapHostExceptions, support::map_classes());
ZRB_FOR_CLASSES(HostExceptionsOfValues,
                support::classes_where([](const support::ContainerClass& c) {
                  return c.is_map() && c.value != ElementType::integer;  // integers take no locks
                }));

constexpr int present = 1;
constexpr int absent = 2;

TEST_P(HostExceptions, pass_through_putting_an_absent_key) {
  fail_each_call(put, absent);
}
TEST_P(HostExceptions, pass_through_putting_a_present_key) {
  fail_each_call(put, present);
}
TEST_P(HostExceptions, pass_through_membership) {
  fail_each_call(contains, present);
  fail_each_call(contains, absent);
}
TEST_P(HostExceptions, pass_through_counting) {
  fail_each_call(count_key, present);
}
TEST_P(HostExceptions, pass_through_finding) {
  fail_each_call(find, present);
  fail_each_call(find, absent);
}
TEST_P(HostExceptions, pass_through_removing) {
  fail_each_call(remove, present);
  fail_each_call(remove, absent);
}
TEST_P(HostExceptions, pass_through_reading_a_key) {
  fail_each_call(read_key, present);
}
TEST_P(MapHostExceptions, pass_through_looking_up) {
  fail_each_call(look_up, present);
  fail_each_call(look_up, absent);
}
TEST_P(MapHostExceptions, pass_through_assigning_by_an_iterator) {
  fail_each_call(assign_by_iterator, present);
}

TEST_P(HostExceptionsOfValues, that_refuse_the_value_of_a_new_key_leave_the_key_with_nothing) {
  const Element new_key = key(1);
  const Element new_value = value(1);
  const char* const service =
      container_class().value == ElementType::string ? "REALLockString" : "REALLockObject";
  // The lock of the value is the last that the service takes in an assignment.
  std::uint64_t locks = 0;
  for (int run = 0; run < 2; ++run) {
    const Container container = make();
    host().calls().reset();
    container.assign_value(key(1), value(1));
    locks = host().calls().of(service);
  }
  const Container container = make();
  host().faults().throw_at(service, locks);
  EXPECT_THROW(container.assign_value(new_key, new_value), standin::InjectedFault);
  host().faults().clear();
  EXPECT_EQ(container.count(), 1);
  EXPECT_TRUE(support::is_neutral(container.first().value()));
  EXPECT_EQ(support::locks(new_value), 1);
  EXPECT_EQ(support::locks(new_key), 2 * support::one_lock(new_key));
  container.assign_value(new_key, new_value);
  EXPECT_EQ(container.count(), 1);
  EXPECT_EQ(support::locks(new_value), 2);
}

TEST_P(HostExceptions, even_of_services_that_give_back_end_no_program) {
  const support::LeaksExpected of_what_is_not_given_back;
  std::map<std::string, std::uint64_t> calls;
  for (int run = 0; run < 2; ++run) {
    const Scene scene(container_class(), absent);
    host().calls().reset();
    put(scene);
    contains(scene);
    calls = host().calls().called();
  }
  for (const auto& [entry_point, count] : calls) {
    if (!gives_back(entry_point)) continue;
    for (std::uint64_t n = 1; n <= count; ++n) {
      SCOPED_TRACE(entry_point + ", call " + std::to_string(n));
      const Scene scene(container_class(), absent);
      host().faults().throw_at(entry_point, n);
      EXPECT_THROW(
          {
            put(scene);
            contains(scene);
          },
          standin::InjectedFault);
      host().faults().clear();
      EXPECT_EQ(static_cast<std::size_t>(scene.container.count()), scene.container.keys().size());
    }
  }
}

}  // namespace
