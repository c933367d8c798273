// A host that calls back into the same container from inside a host call: at each host call of
// every routine, one of four things is done to the container. A lock or unlock may run code of a
// program (a destructor, when the last lock goes), and so may anything else that a host does.
//
// What holds: what the call back did stays done, the container is whole afterwards and goes on
// working, all locks are given back. A routine that reads answers for the content from before the
// call back, from after it, or from between; it never reads an element that is gone. Left out are
// changes from within the service that locks or reads a cached array: that service itself has the
// array in its hands.
#include <algorithm>

#include "routine_test.h"

namespace faults {
namespace {

struct Action {
  const char* mode;
  void (*run)(const Access& access, const Stock& stock, const Scene& scene);
  bool changes;
};

void read(const Access& access, const Stock& stock, const Scene& scene) {
  access.walk(scene.container());
  access.contains(scene.container(), stock.key(scene.key_index()));
  access.keys(scene.container());
}

void add(const Access& access, const Stock& stock, const Scene& scene) {
  access.put(scene.container(), stock.key(Stock::added), stock.value(Stock::new_value));
}

/// Adds as many as make a hashed container grow.
void add_many(const Access& access, const Stock& stock, const Scene& scene) {
  for (int i = 0; i < 200; ++i) {
    access.put(scene.container(), stock.key(Stock::added - i), stock.value(Stock::new_value));
  }
}

/// The key of the argument, or where there is none that of the element in the middle.
void remove(const Access& access, const Stock& stock, const Scene& scene) {
  access.remove(scene.container(), stock.key(scene.key_index()));
}

void clear(const Access& access, const Stock&, const Scene& scene) {
  access.clear(scene.container());
}

constexpr Action reading = {"call back that reads", read, false};
constexpr Action adding = {"call back that adds a key", add, true};
constexpr Action adding_many = {"call back that adds many keys", add_many, true};
constexpr Action removing = {"call back that removes the key", remove, true};
constexpr Action clearing = {"call back that clears", clear, true};

class Reentrancy : public RoutineTest {
 protected:
  void at_each_call(const Action& action, const std::vector<int>& states) {
    for_every_routine(
        {action.mode}, states, [&](const Routine& routine, int elements, Given given) {
          const Plain& plain = observe(routine, elements, given);
          // An iterator whose element goes must not be used, not even by the call it is in.
          const bool loses_element = action.run == remove || action.run == clear;
          if (loses_element && plain.routine->part == Part::setter && plain.routine->of_iterator) {
            FaultTable::instance().add(plain.routine->name, plain.elements, action.mode, 0, 0);
            return;
          }
          const std::vector<std::size_t> calls = calls_to_fail(plain);
          std::uint64_t runs = 0;
          for (const std::size_t n : calls) {
            if (action.changes && works_on_cached_array(plain, n)) continue;
            call_back(plain, n, action);
            ++runs;
          }
          FaultTable::instance().add(plain.routine->name, plain.elements, action.mode,
                                     plain.calls.size(), runs);
        });
  }

 private:
  /// Whether the call hands a cached array itself to the host, to be locked for the caller or read.
  /// A change of the container would take it from under that very service.
  static bool works_on_cached_array(const Plain& plain, std::size_t n) {
    const std::string& entry_point = plain.calls[n - 1];
    if (plain.routine->takes(Argument::index)) {
      return entry_point == "RuntimeArrayDirectGetGetProc" ||
             entry_point.find("array get") != std::string::npos;
    }
    const bool gives_array =
        plain.routine->method != nullptr &&
        plain.routine->method->declaration.result.kind == standin::TypeKind::array;
    const auto later = plain.calls.begin() + static_cast<std::ptrdiff_t>(n);
    return gives_array && entry_point == "REALLockObject" &&
           std::find(later, plain.calls.end(), entry_point) == plain.calls.end();
  }

  void call_back(const Plain& plain, std::size_t n, const Action& action) {
    Scene scene(*plain.routine, access(), stock(), plain.elements, plain.given);
    bool called = false;
    host().faults().call_at(standin::Faults::any_entry_point, n, [&] {
      called = scene.has_storage();
      if (called) action.run(access(), stock(), scene);
    });
    std::string problems;
    try {
      scene.call();
    } catch (const std::exception& exception) {
      problems += std::string("threw ") + exception.what() + "\n";
    }
    host().faults().clear();
    static_cast<void>(host().take_pending_exception());
    problems += taken_misuses();

    const std::optional<Contents> now = scene.now();
    if (!now) {
      expect_none("the container cannot be walked", plain, action.mode, n);
      return;
    }
    problems += inconsistency(scene, *now);
    if (called) problems += unexpected_content(scene, plain, action, *now);
    problems += later_trouble(scene, *now);
    const bool is_left_with_unknown_content = scene.left_storage_behind();
    // Of many keys, not all have their locks counted.
    const std::string left = scene.end(action.run == add_many);
    if (!is_left_with_unknown_content) problems += left;
    expect_none(problems, plain, action.mode, n);
  }

  static std::vector<int> keys_of(const Contents& contents) {
    std::vector<int> keys;
    for (const EntryIndices& entry : contents) keys.push_back(entry.key);
    std::sort(keys.begin(), keys.end());
    return keys;
  }

  /// What a routine that reads leaves: exactly what the call back made of the content. Of one that
  /// changes the content too, either may have had the last word.
  std::string unexpected_content(const Scene& scene, const Plain& plain, const Action& action,
                                 const Contents& now) const {
    const Effect effect = plain.routine->driver->effect;
    if (!action.changes) {
      return now == plain.after ? "" : "content " + describe(now) + "\n";
    }
    if (effect != Effect::reads && effect != Effect::steps) return "";
    std::vector<int> expected = keys_of(scene.before());
    if (action.run == add) {
      expected.push_back(Stock::added);
    } else if (action.run == add_many) {
      for (int i = 0; i < 200; ++i) expected.push_back(Stock::added - i);
    } else if (action.run == remove) {
      std::erase(expected, scene.key_index());
    } else {
      expected.clear();
    }
    std::sort(expected.begin(), expected.end());
    expected.erase(std::unique(expected.begin(), expected.end()), expected.end());
    return keys_of(now) == expected ? "" : "content " + describe(now) + "\n";
  }
};
ZRB_FOR_CLASSES(Reentrancy, support::all_classes());

TEST_P(Reentrancy, that_reads_does_no_harm) {
  at_each_call(reading, {no_storage, 0, 1, 5});
}
TEST_P(Reentrancy, that_adds_a_key_does_no_harm) {
  at_each_call(adding, {no_storage, 0, 1, 5, 193});
}
TEST_P(Reentrancy, that_makes_a_table_grow_does_no_harm) {
  at_each_call(adding_many, {0, 1, 5});
}
TEST_P(Reentrancy, that_removes_the_key_does_no_harm) {
  at_each_call(removing, {no_storage, 0, 1, 5});
}
TEST_P(Reentrancy, that_clears_does_no_harm) {
  at_each_call(clearing, {no_storage, 0, 1, 5});
}

}  // namespace
}  // namespace faults
