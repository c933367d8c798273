// What holds of a container whatever happened to it.
#include "routine_test.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace faults {
namespace {

constexpr std::size_t longest_problem = 400;  // contents can be long

}  // namespace

bool Plain::grows() const {
  return routine->container_class->is_hashed() && (elements == 193 || elements == 389) &&
         routine->driver->effect == Effect::inserts && !routine->of_iterator;
}

bool Plain::reads_directly() const {
  const bool uses_caches = routine->takes(Argument::index) ||
                           (routine->method != nullptr &&
                            routine->method->declaration.result.kind == standin::TypeKind::array);
  return routine->driver->effect == Effect::reads && !uses_caches &&
         !routine->takes(Argument::target_array);
}

bool gives_back(const std::string& entry_point) {
  return entry_point.find("Unlock") != std::string::npos ||
         entry_point.find("Dispose") != std::string::npos;
}

bool takes_lock(const std::string& entry_point) {
  return entry_point == "REALLockObject" || entry_point == "REALLockString";
}

std::vector<int> all_states() {
  std::vector<int> states(std::begin(small_states), std::end(small_states));
  states.insert(states.end(), std::begin(large_states), std::end(large_states));
  return states;
}

RoutineTest::RoutineTest()
    : stock_(container_class()),
      access_(container_class(), stock_),
      routines_(registered_routines(container_class())) {
  warm_up();
}

RoutineTest::~RoutineTest() {
  // What a failing unlock left locked ends with the host, in whatever order.
  host().ledger().on_violation(nullptr);
}

void RoutineTest::warm_up() {
  for (const Routine& routine : routines_) {
    for (const int elements : {no_storage, 1}) {
      for (const Given given : cases(routine, elements)) {
        Scene(routine, access_, stock_, elements, given).call();
      }
    }
  }
}

const Plain& RoutineTest::observe(const Routine& routine, int elements, Given given) {
  static std::map<std::tuple<std::string, int, Given>, Plain> observed;
  Plain& plain = observed[{routine.name, elements, given}];
  const bool is_known = plain.routine != nullptr;
  plain.routine = &routine;
  if (is_known) return plain;

  plain.elements = elements;
  plain.given = given;
  Scene scene(routine, access_, stock_, elements, given);
  host().faults().call_at(
      standin::Faults::any_entry_point, 1,
      [&] { plain.calls.emplace_back(host().faults().last_fired()); },
      standin::Faults::Repeat::from_there_on);
  scene.call();
  host().faults().clear();
  plain.result = scene.result();
  plain.after = scene.now().value();
  plain.iterator_after = scene.iterator_key();
  expect_none(inconsistency(scene, plain.after), plain, "no fault", 0);
  expect_none(scene.end(false), plain, "no fault", 0);
  return plain;
}

std::vector<std::size_t> RoutineTest::calls_to_fail(const Plain& plain) {
  const std::size_t count = plain.calls.size();
#ifdef __SANITIZE_ADDRESS__
  std::size_t at_ends = 10;  // each run takes several times as long
  std::size_t between = 5;
#else
  std::size_t at_ends = 40;
  std::size_t between = 20;
#endif
  if (plain.is_large()) at_ends = between = count > 1000 ? 2 : 3;
  std::vector<std::size_t> chosen;
  for (std::size_t n = 1; n <= count; ++n) {
    const bool is_at_end = n <= at_ends || n > count - at_ends;
    if (count <= 3 * at_ends || is_at_end || n % (count / between) == 0) chosen.push_back(n);
  }
  return chosen;
}

std::string RoutineTest::inconsistency(const Scene& scene, const Contents& now) const {
  if (!scene.has_storage()) return "";
  std::string problems;
  const std::int32_t count = access_.count(scene.container());
  if (static_cast<std::size_t>(count) != now.size()) {
    problems += "Count is " + std::to_string(count) + ", but the walk meets " +
                std::to_string(now.size()) + "\n";
  }
  std::vector<int> keys;
  for (const EntryIndices& entry : now) keys.push_back(entry.key);
  if (container_class().is_hashed()) std::sort(keys.begin(), keys.end());
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (keys[i] < 0 || (i > 0 && keys[i - 1] >= keys[i])) {
      return problems + "keys out of order, or twice: " + describe(now) + "\n";
    }
  }
  for (std::size_t i = 0; i<keys.size(); i += keys.size()> 100 ? keys.size() / 4 : 1) {
    if (!access_.contains(scene.container(), stock_.key(keys[i]))) {
      problems += "key " + std::to_string(keys[i]) + " is not found\n";
    }
  }
  return problems;
}

std::string RoutineTest::later_trouble(const Scene& scene, const Contents& now) const {
  REALobject container = scene.container();
  if (!scene.has_storage()) return "";
  std::string problems;
  access_.put(container, stock_.key(Stock::spare), stock_.value(Stock::new_value));
  if (access_.count(container) != static_cast<std::int32_t>(now.size()) + 1 ||
      !access_.contains(container, stock_.key(Stock::spare))) {
    problems += "a key cannot be added\n";
  }
  if (access_.remove(container, stock_.key(Stock::spare)) != 1 ||
      access_.count(container) != static_cast<std::int32_t>(now.size())) {
    problems += "a key cannot be removed\n";
  }
  return problems;
}

std::string RoutineTest::taken_misuses() {
  std::string text;
  for (const standin::Violation& violation : host().ledger().violations()) {
    text += violation.text() + "\n";
  }
  host().ledger().clear_violations();
  return text;
}

void RoutineTest::expect_none(const std::string& problem, const Plain& plain,
                              const std::string& mode, std::size_t call) const {
  if (problem.empty()) return;
  const bool in_order = call >= 1 && call <= plain.calls.size();
  ADD_FAILURE() << plain.routine->name << ", " << state_name(plain.elements) << ", argument "
                << name(plain.given) << ", " << mode << " at call " << call << " of "
                << plain.calls.size() << (in_order ? " (" + plain.calls[call - 1] + ")" : "")
                << ":\n"
                << problem.substr(0, longest_problem);
}

void RoutineTest::expect_no_routine_missing(std::initializer_list<std::string> modes,
                                            const std::vector<int>& states) const {
  for (const Routine& routine : routines_) {
    for (const int elements : states) {
      for (const std::string& mode : modes) {
        EXPECT_TRUE(FaultTable::instance().has(routine.name, elements, mode))
            << routine.name << ", " << state_name(elements) << ", " << mode;
      }
    }
  }
}

}  // namespace faults
