// The fixture of the suites that run every routine of a class: how a routine behaves by itself, and
// what must hold after each failure.
#ifndef ZRB_TESTS_FAULTS_ROUTINE_TEST_H
#define ZRB_TESTS_FAULTS_ROUTINE_TEST_H

#include <string>
#include <vector>

#include "access.h"
#include "fault_table.h"
#include "routines.h"
#include "scene.h"
#include "stock.h"
#include "support/plugin_test.h"

namespace faults {

/// A routine in one state, with one kind of arguments, when nothing fails.
struct Plain {
  const Routine* routine = nullptr;
  int elements = 0;
  Given given = Given::present;
  std::vector<std::string> calls;  // the entry points called, in order
  std::string result;
  Contents after;
  int iterator_after = EntryIndices::unknown;

  bool is_large() const { return elements > 100; }
  /// Whether the call changes nothing at all: neither the cached arrays nor an array given to it.
  bool reads_directly() const;
  /// Whether the call inserts into a hashed table that has no room left.
  bool grows() const;
};

/// Entry points that give something back, by which the operation is mostly done.
bool gives_back(const std::string& entry_point);
bool takes_lock(const std::string& entry_point);

class RoutineTest : public support::ClassTest {
 protected:
  RoutineTest();
  ~RoutineTest() override;

  const std::vector<Routine>& routines() const { return routines_; }
  const Stock& stock() const { return stock_; }
  const Access& access() const { return access_; }

  /// Calls `run` for every routine of the class, in every state given, with all kinds of arguments;
  /// then checks that the table has them all.
  template <class Run>
  void for_every_routine(std::initializer_list<std::string> modes, std::vector<int> states,
                         Run run) {
    for (const Routine& routine : routines_) {
      for (const int elements : states) {
        for (const Given given : cases(routine, elements)) {
          run(routine, elements, given);
          if (HasFatalFailure()) return;
        }
      }
    }
    expect_no_routine_missing(modes, states);
  }

  /// Runs the routine without a fault; once for all tests, since every host sees the same.
  const Plain& observe(const Routine& routine, int elements, Given given);

  /// The calls, counted from 1, at which to set a fault: all, but where a routine makes more than
  /// a hundred and twenty (thirty under the sanitizers, nine on large containers), the first and
  /// the last ones and some between: a scene is to be set for each.
  static std::vector<std::size_t> calls_to_fail(const Plain& plain);

  /// What is wrong with the container by itself, "" for nothing: the walk from first to last and
  /// `Count` agree, keys are unique and in order, and those of the walk are found.
  std::string inconsistency(const Scene& scene, const Contents& now) const;
  /// What does not work any more: adding, finding and removing a key.
  std::string later_trouble(const Scene& scene, const Contents& now) const;

  /// What the ledger saw used wrongly, a line each; it then forgets it.
  std::string taken_misuses();

  /// Fails the test with what was done, unless `problem` is empty.
  void expect_none(const std::string& problem, const Plain& plain, const std::string& mode,
                   std::size_t call) const;

 private:
  void expect_no_routine_missing(std::initializer_list<std::string> modes,
                                 const std::vector<int>& states) const;

  /// So that the plugin has looked up all services, which it does once.
  void warm_up();

  Stock stock_;
  Access access_;
  std::vector<Routine> routines_;
};

std::vector<int> all_states();

}  // namespace faults

#endif
