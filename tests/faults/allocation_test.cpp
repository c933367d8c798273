// A failure at each allocation that the plugin makes, once and from there on.
//
// It reaches the host as std::bad_alloc, but for memory that only makes the removal of all elements
// faster: that goes on without. Reading and copying, and a constructor that finds no
// memory for its storage, leave the content as it was; so does an insertion, whose table may have
// grown; a constructor that fills keeps the entries that it took before. Nothing is leaked.
#include <algorithm>
#include <new>

#include "plugin_heap.h"
#include "routine_test.h"
#include "support/leak_sanitizer.h"

namespace faults {
namespace {

const char* const once = "allocation fails once";
const char* const from_there_on = "allocation fails from there on";

class Allocations : public RoutineTest {
 protected:
  Allocations() { plugin_heap::attend_to(routines().front().method->function); }

  std::size_t count(Plain& plain) {
    Scene scene(*plain.routine, access(), stock(), plain.elements, plain.given);
    plugin_heap::fail_at(0, false);
    scene.call();
    const std::size_t asked_for = plugin_heap::stop_failing();
    plain.after = scene.now().value();
    expect_none(scene.end(false), plain, "no fault", 0);
    return asked_for;
  }

  void fail(const Plain& plain, std::size_t n, const char* mode) {
    const std::size_t blocks_at_begin = plugin_heap::live_blocks();
    Scene scene(*plain.routine, access(), stock(), plain.elements, plain.given);
    const std::size_t blocks_of_scene = plugin_heap::live_blocks() - blocks_at_begin;
    std::string problems = "no std::bad_alloc\n";
    plugin_heap::fail_at(n, mode == from_there_on);
    try {
      scene.call();
    } catch (const std::bad_alloc&) {
      problems.clear();
    }
    plugin_heap::stop_failing();

    const Contents now = scene.now().value();
    if (!problems.empty() && removes_all(plain) && now == plain.after) {
      problems.clear();
    } else if (!is_expected(scene, plain, now)) {
      problems += "content " + describe(now) + "\n";
    }
    problems += inconsistency(scene, now);
    const bool leaves_storage = scene.left_storage_behind();
    problems += later_trouble(scene, now);
    problems += scene.end(false);
    const std::size_t blocks_left = plugin_heap::live_blocks() - blocks_at_begin;
    if (blocks_left != (leaves_storage ? blocks_of_scene : 0)) {
      problems += std::to_string(blocks_left) + " blocks leaked\n";
    }
    expect_none(problems, plain, mode, n);
  }

 private:
  static bool removes_all(const Plain& plain) {
    const Effect effect = plain.routine->driver->effect;
    return effect == Effect::empties || effect == Effect::replaces || effect == Effect::destroys;
  }

  static bool is_expected(const Scene& scene, const Plain& plain, const Contents& now) {
    const Effect effect = plain.routine->driver->effect;
    if (now == scene.before()) return true;
    if (effect == Effect::inserts && plain.grows()) return has_same_entries(now, scene.before());
    if (effect != Effect::fills && effect != Effect::replaces) return false;
    const int size = Scene::source_size(scene.elements());
    return now.size() < static_cast<std::size_t>(size) &&
           std::all_of(now.begin(), now.end(), [&](const EntryIndices& entry) {
             const bool has_its_value =
                 !plain.routine->container_class->is_map() || entry.value == entry.key;
             return entry.key >= 0 && entry.key < size && has_its_value;
           });
  }

  static bool has_same_entries(Contents a, Contents b) {
    const auto by_key = [](const EntryIndices& left, const EntryIndices& right) {
      return left.key < right.key;
    };
    std::sort(a.begin(), a.end(), by_key);
    std::sort(b.begin(), b.end(), by_key);
    return a == b;
  }
};
ZRB_FOR_CLASSES(Allocations, support::all_classes());

TEST_P(Allocations, that_fail_in_any_routine_lose_nothing) {
  for_every_routine({once, from_there_on}, all_states(),
                    [&](const Routine& routine, int elements, Given given) {
                      Plain plain;
                      plain.routine = &routine;
                      plain.elements = elements;
                      plain.given = given;
                      const std::size_t allocations = count(plain);
                      for (const char* mode : {once, from_there_on}) {
                        for (std::size_t n = 1; n <= allocations; ++n) fail(plain, n, mode);
                        FaultTable::instance().add(plain.routine->name, plain.elements, mode,
                                                   allocations, allocations);
                      }
                    });
}

TEST_P(Allocations, are_seen_by_the_test) {
  const std::size_t before = plugin_heap::live_blocks();
  plugin_heap::fail_at(0, false);
  {
    const support::Container container = make_with(20);
    EXPECT_GT(plugin_heap::live_blocks(), before);
  }
  EXPECT_EQ(plugin_heap::live_blocks(), before);
  // The storage; in 32 bits nodes come from the heap too.
  EXPECT_GE(plugin_heap::stop_failing(), sizeof(void*) == sizeof(std::uint32_t) ? 2U : 1U);
}

#ifndef ZRB_HAS_ADDRESS_SANITIZER  // a sanitizer's malloc is not replaced
class CopiesOfText : public support::ClassTest {};
ZRB_FOR_CLASSES(CopiesOfText, support::classes_with_key(support::ElementType::string));

/// On a host without the service for string data the plugin makes the copies itself, by malloc.
TEST_P(CopiesOfText, that_fail_make_a_text_empty_and_do_no_harm) {
  restart_without({"PluginGetStringData"});
  const support::Container container = make_with(5);
  plugin_heap::attend_to(host().plugin_classes().front()->methods().front().function);
  plugin_heap::fail_at(0, false);
  container.count_key(key(3));
  const std::size_t copies = plugin_heap::stop_failing();
  EXPECT_GE(copies, 2u);
  for (std::size_t n = 1; n <= copies; ++n) {
    plugin_heap::fail_at(n, false);
    container.count_key(key(3));
    plugin_heap::stop_failing();
    EXPECT_EQ(container.count(), 5);
    EXPECT_EQ(container.count_key(key(3)), 1);
  }
}
#endif

}  // namespace
}  // namespace faults
