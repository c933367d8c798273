// A host that answers null, 0 or false where it should answer, at each host call of every routine:
// once, and from there on.
//
// Services without an answer (locking, unlocking, disposing, raising, storing array elements) have
// no null to give and work as ever. What holds afterwards:
//  - a routine that reads leaves the content as it was;
//  - a host that tells a wrong hash, type, number or text of a key speaks of another key, so an
//    insertion may add the key a second time, and may put it where it is not found; a removal may
//    find nothing. Nothing else is lost or added, and what `Count` tells is what is exported;
//  - all locks are given back, `Clear` empties the container, and it works afterwards.
#include <algorithm>

#include "routine_test.h"
#include "runtime/arrays.h"
#include "runtime/entry_points.h"
#include "support/host_arrays.h"

namespace faults {
namespace {

const char* const once = "null once";
const char* const from_there_on = "null from there on";

bool has_answer(std::string_view entry_point) {
  static constexpr std::string_view without[] = {
      "RegisterPluginVersion", "PluginRegisterClass",     "REALSetStringEncoding",
      "REALLockString",        "REALUnlockString",        "REALLockObject",
      "REALUnlockObject",      "PluginDisposeStringData", "RuntimeRaiseException"};
  return std::find(std::begin(without), std::end(without), entry_point) == std::end(without) &&
         entry_point.find("array set") == std::string_view::npos &&
         entry_point.find("array insert") == std::string_view::npos &&
         entry_point.find("Assigns") == std::string_view::npos;
}

class NullAnswers : public RoutineTest {
 protected:
  void answer_null(const Plain& plain, std::size_t n, const char* mode) {
    Scene scene(*plain.routine, access(), stock(), plain.elements, plain.given);
    set_faults(n, mode);
    std::string problems;
    try {
      scene.call();
    } catch (const std::exception& exception) {
      problems += std::string("threw ") + exception.what() + "\n";
    }
    host().faults().clear();
    static_cast<void>(host().take_pending_exception());
    const std::string misuses = taken_misuses();

    problems += misuses + unexpected_content(scene, plain);
    if (scene.has_storage()) problems += trouble_with_clearing(scene);
    // A key that could not be had is nil, and takes no lock when it is compared.
    const bool has_nil_keys =
        plain.routine->takes(Argument::dictionary) || plain.routine->takes(Argument::array);
    expect_none(problems + scene.end(has_nil_keys), plain, mode, n);
  }

 private:
  void set_faults(std::size_t n, const char* mode) {
    standin::Faults& faults = host().faults();
    if (mode == once) {
      faults.answer_null_at(standin::Faults::any_entry_point, n);
    } else if (n == 1) {
      all_answer_null();
    } else {
      // Behind the call before, so that the services without an answer go on working.
      faults.call_at(standin::Faults::any_entry_point, n - 1, [this] { all_answer_null(); });
    }
  }

  void all_answer_null() {
    for (const standin::EntryPoint& entry_point : standin::entry_points()) {
      if (!has_answer(entry_point.name)) continue;
      host().faults().answer_null_at(entry_point.name, 1, standin::Faults::Repeat::from_there_on);
    }
  }

  /// The keys as arrays have them, which needs neither hashes nor comparisons.
  std::vector<int> exported_keys(const Scene& scene) const {
    std::vector<int> keys;
    access().remove(scene.container(), stock().key(Stock::spare));  // drops the cached arrays
    const standin::ArrayRef array = access().keys(scene.container());
    for (const support::Element& key : support::elements_of(container_class().key, array.get())) {
      keys.push_back(access().index_of_key(key));
    }
    std::sort(keys.begin(), keys.end());
    return keys;
  }

  std::string unexpected_content(const Scene& scene, const Plain& plain) const {
    if (!scene.has_storage()) {
      return plain.elements == no_storage || plain.routine->driver->effect == Effect::destroys
                 ? ""
                 : "the storage is gone\n";
    }
    std::vector<int> before;
    for (const EntryIndices& entry : scene.before()) before.push_back(entry.key);
    std::sort(before.begin(), before.end());
    const std::vector<int> now = exported_keys(scene);
    if (access().count(scene.container()) != static_cast<std::int32_t>(now.size())) {
      return "Count differs from the number of exported keys\n";
    }
    bool is_expected = false;
    switch (plain.routine->driver->effect) {
      case Effect::reads:
      case Effect::steps:
        is_expected = now == before;
        break;
      case Effect::inserts:
        is_expected = now.size() <= before.size() + 1 &&
                      std::includes(now.begin(), now.end(), before.begin(), before.end());
        break;
      case Effect::removes:
        is_expected = std::includes(before.begin(), before.end(), now.begin(), now.end());
        break;
      case Effect::empties:
        is_expected = now.empty();
        break;
      case Effect::abandons:
        is_expected = now.empty() || now == before;
        break;
      case Effect::fills:
      case Effect::replaces:
        is_expected = now.size() <= static_cast<std::size_t>(Scene::source_size(plain.elements)) ||
                      now == before;
        break;
      case Effect::destroys:
        break;
    }
    return is_expected ? "" : std::to_string(now.size()) + " keys now\n";
  }

  std::string trouble_with_clearing(const Scene& scene) const {
    access().clear(scene.container());
    if (access().count(scene.container()) != 0) return "it cannot be cleared\n";
    return later_trouble(scene, {});
  }
};
ZRB_FOR_CLASSES(NullAnswers, support::all_classes());

TEST_P(NullAnswers, to_every_routine_leave_the_container_usable) {
  for_every_routine({once, from_there_on}, all_states(),
                    [&](const Routine& routine, int elements, Given given) {
                      const Plain& plain = observe(routine, elements, given);
                      for (const char* mode : {once, from_there_on}) {
                        std::uint64_t runs = 0;
                        for (const std::size_t n : calls_to_fail(plain)) {
                          if (!has_answer(plain.calls[n - 1])) continue;
                          answer_null(plain, n, mode);
                          ++runs;
                        }
                        FaultTable::instance().add(plain.routine->name, plain.elements, mode,
                                                   plain.calls.size(), runs);
                      }
                    });
}

}  // namespace
}  // namespace faults
