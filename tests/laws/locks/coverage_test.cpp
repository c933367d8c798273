// No member without a statement of its locks: what the classes register is compared with what the
// tests of this program state.
#include "laws/locks/lock_test.h"

namespace {

class LockCoverage : public support::ClassTest {
 protected:
  /// The classes' members that a test states which runs for this class and is not a refusal.
  std::set<std::string> stated() const {
    std::set<std::string> result;
    for (const locks::Statement& statement : locks::statements()) {
      if (statement.suite.find("Failure") != std::string::npos || !runs_here(statement)) continue;
      for (const std::string& member : statement.members) {
        result.insert(support::fill(member, container_class()));
      }
    }
    return result;
  }

 private:
  bool runs_here(const locks::Statement& statement) const {
    const ::testing::UnitTest& program = *::testing::UnitTest::GetInstance();
    for (int i = 0; i < program.total_test_suite_count(); ++i) {
      const ::testing::TestSuite& suite = *program.GetTestSuite(i);
      if ("Classes/" + statement.suite != suite.name()) continue;
      for (int j = 0; j < suite.total_test_count(); ++j) {
        if (statement.test + "/" + container_class().name == suite.GetTestInfo(j)->name()) {
          return true;
        }
      }
    }
    return false;
  }
};
ZRB_FOR_CLASSES(LockCoverage, support::all_classes());

TEST_P(LockCoverage, every_member_has_a_test_of_its_locks) {
  const std::set<std::string> covered = stated();
  for (const std::string& member : locks::members_of(container_class())) {
    EXPECT_TRUE(covered.contains(member)) << member << " has no test of its lock changes";
  }
}

}  // namespace
