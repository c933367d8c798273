// A host that lacks one of the names that the plugin looks up: every routine is called in the small
// states, and where a hashed container grows.
//
// The container works as ever with what is there, for a service that is missing is missing all the
// time: keys whose hash or text the host cannot tell are alike or differ, but always in the same
// way. Without iterator objects it cannot be walked, and keeps to what `Count` tells. On a host
// that can unlock and not lock, elements die while the container holds them: then all that holds is
// that the plugin itself touches nothing of theirs, and counts on. Locks cannot balance there, nor
// on a host that can lock and not unlock.
#include <algorithm>

#include "routine_test.h"
#include "runtime/entry_points.h"
#include "runtime/variants.h"

namespace {

using faults::Effect;
using faults::Given;
using faults::Routine;
using faults::Scene;

std::vector<std::string> names_looked_up() {
  std::vector<std::string> names;
  for (const standin::EntryPoint& entry_point : standin::entry_points()) {
    if (entry_point.group == standin::EntryPointGroup::array_procedure) continue;
    const std::string name = entry_point.name;
    // Without these there is no plugin.
    if (name != "RegisterPluginVersion" && name != "PluginRegisterClass") names.push_back(name);
  }
  return names;
}

class MissingService : public support::PluginTest,
                       public ::testing::WithParamInterface<std::string> {
 protected:
  MissingService() {
    standin::HostOptions options = default_options();
    options.without.insert(GetParam());
    restart(options);
    if (unbalances_locks()) host().ledger().on_violation(nullptr);
  }

  bool cannot_lock() const {
    return GetParam() == "REALLockObject" || GetParam() == "REALLockString";
  }
  bool unbalances_locks() const {
    return cannot_lock() || GetParam() == "REALUnlockObject" || GetParam() == "REALUnlockString";
  }
  bool can_make_iterators() const { return GetParam() != "PluginNewInstance"; }
  /// Names behind which a key's identity is: without them unlike keys may be alike.
  bool tells_keys() const {
    static const std::string names[] = {"VariantToString", "REALGetPropValueString"};
    return std::find(std::begin(names), std::end(names), GetParam()) != std::end(names);
  }

  void run_class(const support::ContainerClass& container_class) {
    const faults::Stock stock(container_class);
    if (unbalances_locks()) hold(stock);
    const faults::Access access(container_class, stock);
    for (const Routine& routine : faults::registered_routines(container_class)) {
      for (const int elements : faults::small_states) {
        if (!can_make_iterators() && elements != faults::no_storage) continue;
        for (const Given given : faults::cases(routine, elements)) {
          SCOPED_TRACE(routine.name + ", " + faults::state_name(elements) + ", argument " +
                       faults::name(given));
          run(routine, access, stock, elements, given);
        }
        faults::FaultTable::instance().add(routine.name, elements, "a service missing", 0, 1);
      }
    }
  }

 private:
  /// So many locks that a host without balance frees none of the elements.
  static void hold(const faults::Stock& stock) {
    const auto lock = [](const support::Element& element) {
      if (const auto* string = std::get_if<standin::StringRef>(&element)) lock_often(string->get());
      if (const auto* variant = std::get_if<standin::ObjectRef>(&element)) {
        lock_often(variant->get());
        if (standin::variant_type(variant->get()) == VariantType::string) {
          lock_often(standin::to_string(variant->get()).get());
        }
      }
    };
    for (int i = 0; i < faults::Stock::size; ++i) {
      lock(stock.key(i));
      lock(stock.equal_key(i));
      lock(stock.value(i));
    }
  }

  template <class Handle>
  static void lock_often(Handle handle) {
    for (int i = 0; i < 10000; ++i) standin::lock(handle);
  }

  static bool is_expected(Effect effect, std::int32_t before, std::int32_t count) {
    switch (effect) {
      case Effect::reads:
      case Effect::steps:
        return count == before;
      case Effect::inserts:
        return count == before || count == before + 1;
      case Effect::removes:
        return count <= before;
      case Effect::empties:
        return count == 0;
      default:
        return count >= 0;
    }
  }

  void run(const Routine& routine, const faults::Access& access, const faults::Stock& stock,
           int elements, Given given) {
    // Routines lock and unlock their instance.
    Scene scene(routine, access, stock, elements, given, cannot_lock() ? 10000 : 0);
    const std::int32_t before =
        elements == faults::no_storage ? 0 : access.count(scene.container());
    EXPECT_NO_THROW(scene.call());
    raised();
    const Effect effect = routine.driver->effect;
    if (scene.has_storage()) {
      const std::int32_t count = access.count(scene.container());
      EXPECT_TRUE(is_expected(effect, before, count)) << count << " after " << before;
      if (can_make_iterators() && !cannot_lock()) {
        EXPECT_EQ(scene.now().value().size(), static_cast<std::size_t>(count));
      }
      access.clear(scene.container());
      EXPECT_EQ(access.count(scene.container()), 0);
      access.put(scene.container(), stock.key(1), stock.value(1));
      EXPECT_EQ(access.count(scene.container()), 1);
      if (!tells_keys() && !cannot_lock()) {
        EXPECT_TRUE(access.contains(scene.container(), stock.equal_key(1)));
        EXPECT_EQ(access.remove(scene.container(), stock.equal_key(1)), 1);
      }
    } else {
      EXPECT_TRUE(elements == faults::no_storage || effect == Effect::destroys);
    }
    const std::string problems = scene.end(true);
    if (unbalances_locks()) {
      host().ledger().clear_violations();
    } else {
      EXPECT_EQ(problems, "");
    }
  }
};

TEST_P(MissingService, leaves_every_routine_working_without_it) {
  for (const support::ContainerClass& c : support::all_classes()) run_class(c);
}

INSTANTIATE_TEST_SUITE_P(Names, MissingService, ::testing::ValuesIn(names_looked_up()),
                         [](const auto& service) {
                           std::string name;
                           for (const char c : service.param) {
                             if (std::isalnum(static_cast<unsigned char>(c)) != 0) name += c;
                           }
                           return name;
                         });

}  // namespace
