// A C++ exception thrown by each host call of every routine, in every state.
//
// What holds afterwards, by what a routine does:
//  - reading, exporting and copying leave the content as it was;
//  - an insertion leaves the content as it was, unless the exception came from giving something
//  back
//    afterwards; a new key of a map stays, with nothing for a value, when locking the value failed;
//    a hash that throws while a table grows costs the elements moved by then, which are released,
//    and leaves the rest in its order;
//  - a removal leaves the content as it was until it begins to remove, and then goes on to the end;
//    a hashed container may have removed the key when it compares with the first one of the chain;
//  - clearing, destroying and the dropping of former content go on to the end;
//  - a constructor that fills keeps the entries that it took before the exception.
// In every case all temporary locks are given back, what was released is released once, and the
// container goes on working. A lock that the failing call itself should have given back is lost.
#include <algorithm>
#include <memory>

#include "routine_test.h"

namespace faults {
namespace {

const char* const mode = "exception";

class ThrowingCalls : public RoutineTest {
 protected:
  /// A failure after which the content must be as before leaves a scene that the next can use.
  void fail_each(const Plain& plain, const std::vector<std::size_t>& calls) {
    std::unique_ptr<Scene> scene;
    bool odd = false;
    for (const std::size_t n : calls) {
      if (scene == nullptr) {
        scene =
            std::make_unique<Scene>(*plain.routine, access(), stock(), plain.elements, plain.given);
      }
      std::string problems = fail(*scene, plain, n);
      const std::string& entry_point = plain.calls[n - 1];
      odd = odd || takes_lock(entry_point);
      const bool is_reusable = plain.is_large() && plain.reads_directly() &&
                               !gives_back(entry_point) && n != calls.back();
      if (!is_reusable) {
        problems += finish(*scene, plain, entry_point, odd);
        scene.reset();
        odd = false;
      }
      expect_none(problems, plain, mode, n);
    }
  }

 private:
  std::string fail(Scene& scene, const Plain& plain, std::size_t n) {
    const int iterator_before = scene.iterator_key();
    host().faults().throw_at(standin::Faults::any_entry_point, n);
    bool thrown = false;
    try {
      scene.call();
    } catch (const standin::InjectedFault&) {
      thrown = true;
    }
    host().faults().clear();
    static_cast<void>(host().take_pending_exception());
    const std::string misuses = taken_misuses();

    const std::string& entry_point = plain.calls[n - 1];
    std::string problems = misuses;
    if (!thrown) problems += "the exception did not pass through\n";
    if (host().faults().last_fired() != entry_point) {
      problems += std::string("another call: ") + host().faults().last_fired() + "\n";
    }
    const std::optional<Contents> now = scene.now();
    if (!now) return problems + "the container cannot be walked\n";
    const bool is_given_back = gives_back(entry_point);
    if (!is_expected(scene, plain, *now, entry_point)) {
      problems += "content " + describe(*now) + " after " + describe(scene.before()) + "\n";
    }
    const int iterator_now = scene.iterator_key();
    if (plain.routine->driver->effect == Effect::steps && iterator_now != iterator_before &&
        !(is_given_back && iterator_now == plain.iterator_after)) {
      problems += "the iterator moved to key " + std::to_string(iterator_now) + "\n";
    }
    const bool lost_elements = plain.grows() && now->size() < scene.before().size();
    if (plain.routine->takes(Argument::key) && !is_given_back && !lost_elements &&
        std::abs(scene.comparison_difference(*now)) > (takes_lock(entry_point) ? 1 : 0)) {
      problems += "locks besides those of comparisons: " +
                  std::to_string(scene.comparison_difference(*now)) + "\n";
    }
    return problems + inconsistency(scene, *now);
  }

  std::string finish(Scene& scene, const Plain& plain, const std::string& entry_point, bool odd) {
    const std::optional<Contents> now = scene.now();
    if (!now) return "";
    std::string problems = repeated(scene, plain, *now);
    problems += later_trouble(scene, scene.now().value());
    const std::string left = scene.end(odd);
    return gives_back(entry_point) ? problems : problems + left;
  }

  static bool is_expected(const Scene& scene, const Plain& plain, const Contents& now,
                          const std::string& entry_point) {
    const Contents& before = scene.before();
    if (plain.given == Given::nil) return now == before || now == plain.after;
    switch (plain.routine->driver->effect) {
      case Effect::reads:
      case Effect::steps:
        return now == before;
      case Effect::removes: {
        // A hashed container compares with the first key of a chain last, when the one that was
        // sought is gone.
        const bool may_be_gone =
            gives_back(entry_point) ||
            (plain.routine->takes(Argument::key) && plain.routine->container_class->is_hashed());
        return now == (may_be_gone && now.size() != before.size() ? plain.after : before);
      }
      case Effect::empties:
      case Effect::destroys:
        return now.empty();
      case Effect::abandons:
        return gives_back(entry_point) ? now.empty() || now == before : now == before;
      case Effect::fills:
      case Effect::replaces:
        return is_filled_so_far(scene, plain, now);
      case Effect::inserts:
        return is_expected_of_insertion(scene, plain, now, entry_point);
    }
    return false;
  }

  static bool is_expected_of_insertion(const Scene& scene, const Plain& plain, const Contents& now,
                                       const std::string& entry_point) {
    const Contents& before = scene.before();
    if (now == before) return true;
    if (gives_back(entry_point) && now == plain.after) return true;
    if (plain.elements == no_storage) return false;
    // The new key with no value; and the old content in the order of the grown table.
    Contents with_nothing, grown;
    for (EntryIndices entry : plain.after) {
      const bool is_argument = entry.key == scene.key_index();
      const bool is_new = is_argument && plain.given == Given::absent;
      if (is_argument && plain.routine->container_class->is_map()) {
        entry.value = is_new ? EntryIndices::nil_value : entry.key;
      }
      with_nothing.push_back(entry);
      if (!is_new) grown.push_back(entry);
    }
    if (plain.given == Given::absent && takes_lock(entry_point) && now == with_nothing) return true;
    if (!plain.grows()) return false;
    const bool lost_some =
        now.size() < before.size() && std::equal(now.rbegin(), now.rend(), before.rbegin());
    return lost_some || now == grown;
  }

  /// The first elements of the source; when the table had to grow meanwhile, any of them.
  static bool is_filled_so_far(const Scene& scene, const Plain& plain, const Contents& now) {
    std::vector<int> keys;
    int without_value = 0;
    for (const EntryIndices& entry : now) {
      keys.push_back(entry.key);
      if (!plain.routine->container_class->is_map() || entry.value == entry.key) continue;
      if (entry.value != EntryIndices::nil_value || ++without_value > 1) return false;
    }
    std::sort(keys.begin(), keys.end());
    const int size = Scene::source_size(scene.elements());
    const bool may_have_grown = plain.routine->container_class->is_hashed() && size > 193;
    // Another map is copied in its own order.
    if (may_have_grown || plain.routine->takes(Argument::other_map)) {
      return keys.empty() || (keys.front() >= 0 && keys.back() < size);
    }
    for (std::size_t i = 0; i < keys.size(); ++i) {
      if (keys[i] != static_cast<int>(i)) return false;
    }
    return true;
  }

  /// The same call once more, of which nothing fails now.
  std::string repeated(Scene& scene, const Plain& plain, const Contents& now) {
    const Effect effect = plain.routine->driver->effect;
    const bool starts_over = effect == Effect::fills || effect == Effect::abandons ||
                             effect == Effect::replaces || effect == Effect::destroys;
    // An array that took some elements already is not what it was.
    if (starts_over || plain.routine->takes(Argument::target_array) || now != scene.before())
      return "";
    scene.call();
    if (scene.result() != plain.result) {
      return "once more: " + scene.result() + " instead of " + plain.result + "\n";
    }
    return scene.now() == plain.after ? "" : "once more: " + describe(scene.now().value()) + "\n";
  }
};
ZRB_FOR_CLASSES(ThrowingCalls, support::all_classes());

TEST_P(ThrowingCalls, of_every_routine_leave_the_container_whole) {
  for_every_routine({mode}, all_states(), [&](const Routine& routine, int elements, Given given) {
    const Plain& plain = observe(routine, elements, given);
    const std::vector<std::size_t> calls = calls_to_fail(plain);
    fail_each(plain, calls);
    FaultTable::instance().add(plain.routine->name, plain.elements, mode, plain.calls.size(),
                               calls.size());
  });
}

class TwoExceptions : public support::ClassTest {
 protected:
  // A search in which the host throws at the n-th question for an encoding, and again while that
  // exception passes.
  void expect_first_of(std::uint64_t nth_encoding, const char* release) {
    const support::Container container = make_with(3);
    host().faults().throw_at("REALGetStringEncoding", nth_encoding);
    host().faults().throw_at(release, 1);
    host().faults().reset_fired();
    std::string first;
    try {
      container.contains(key(2));
    } catch (const standin::InjectedFault& fault) {
      first = fault.what();
    }
    host().faults().clear();
    EXPECT_EQ(host().faults().fired(), 2U);
    EXPECT_NE(first.find("REALGetStringEncoding"), first.npos) << first;
    EXPECT_TRUE(container.contains(key(2)));
  }
};
class TwoExceptionsBeforeComparisons : public TwoExceptions {};
ZRB_FOR_CLASSES(TwoExceptions, support::classes_with_key(support::ElementType::string));
ZRB_FOR_CLASSES(TwoExceptionsBeforeComparisons,
                support::classes_where([](const support::ContainerClass& c) {
                  return c.key == support::ElementType::string && c.is_hashed();
                }));

TEST_P(TwoExceptions, of_which_the_second_comes_in_a_release_end_with_the_first) {
  expect_first_of(2, "PluginDisposeStringData");
}

TEST_P(TwoExceptionsBeforeComparisons, of_which_the_second_comes_in_an_unlock_end_with_the_first) {
  expect_first_of(1, "REALUnlockString");
}

}  // namespace
}  // namespace faults
