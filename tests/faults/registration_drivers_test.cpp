// Every registered routine is described, and every description is of a registered routine.
#include <algorithm>

#include "routines.h"
#include "support/plugin_test.h"

namespace {

using faults::Part;
using faults::Routine;

class Drivers : public support::PluginTest {
 protected:
  static std::vector<Routine> all() {
    std::vector<Routine> routines;
    for (const support::ContainerClass& c : support::all_classes()) {
      const std::vector<Routine> of_class = faults::registered_routines(c);
      routines.insert(routines.end(), of_class.begin(), of_class.end());
    }
    return routines;
  }
  static std::ptrdiff_t count(const std::vector<Routine>& routines, Part part) {
    return std::count_if(routines.begin(), routines.end(),
                         [part](const Routine& routine) { return routine.part == part; });
  }
};

TEST_F(Drivers, exist_for_every_registered_routine) {
  for (const Routine& routine : all()) EXPECT_NE(routine.driver, nullptr) << routine.name;
}

TEST_F(Drivers, are_all_of_use) {
  const std::vector<Routine> routines = all();
  for (const faults::Driver& driver : faults::drivers()) {
    EXPECT_TRUE(std::any_of(routines.begin(), routines.end(), [&](const Routine& routine) {
      return routine.driver == &driver;
    })) << driver.declaration;
  }
}

TEST_F(Drivers, cover_the_registration_as_a_whole) {
  const std::vector<Routine> routines = all();
  EXPECT_EQ(count(routines, Part::method), 485);
  EXPECT_EQ(count(routines, Part::setter), 24);
  EXPECT_EQ(count(routines, Part::getter), 63);
  EXPECT_EQ(count(routines, Part::destructor), 18);
}

TEST_F(Drivers, know_all_classes_that_the_plugin_registers) {
  EXPECT_EQ(host().plugin_classes().size(), 2 * support::all_classes().size());
}

}  // namespace
