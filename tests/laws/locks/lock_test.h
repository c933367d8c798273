// The fixture of the tests of lock balance, and the record of what they state.
//
// Each test names the members whose lock changes it states. It fails when it does not call them,
// and the coverage test fails when a class has a member that no test names.
#ifndef ZRB_TESTS_LAWS_LOCKS_LOCK_TEST_H
#define ZRB_TESTS_LAWS_LOCKS_LOCK_TEST_H

#include <functional>
#include <initializer_list>
#include <set>
#include <string>
#include <vector>

#include "laws/locks/members.h"
#include "support/host_arrays.h"
#include "support/lock_changes.h"
#include "support/plugin_test.h"

namespace locks {

/// Which members a test states the lock changes of.
struct Statement {
  std::string suite, test;
  std::vector<std::string> members;
};
const std::vector<Statement>& statements();

struct StatementOfTest {
  StatementOfTest(const char* suite, const char* test, std::initializer_list<const char*> members);
};

/// Every member of a class and of its iterators: declarations to the letter, setters and properties
/// named as in members.h.
std::set<std::string> members_of(const support::ContainerClass& container_class);

class LockTest : public support::ClassTest {
 protected:
  using Container = support::Container;
  using Element = support::Element;
  using ElementType = support::ElementType;
  using Iterator = support::Iterator;
  using LockChanges = support::LockChanges;
  using LockWatch = support::LockWatch;

  void SetUp() override;
  void TearDown() override;

  /// A container with one entry; the elements are the program's own, each with its lock.
  struct Single {
    Container container;
    Element key, value;
  };
  Single single(int index = 1) const;

  /// How many comparisons meet an equal key in a container that holds no other: one of equality in
  /// a hashed one, one of order either way round in an ordered one.
  int comparisons_of_equals() const { return container_class().is_hashed() ? 1 : 2; }
  /// Adds what comparisons leave: one lock each on both keys. Integers have none.
  static void add_comparisons(LockChanges& expected, const Element& a, const Element& b,
                              int count = 1);

  /// The index-th of several keys that share a bucket of 193; a new object each time.
  Element key_of_bucket(int index) const;

  /// Everything that searches for one key: it is read off what the search returned, which is given
  /// back at once.
  struct Search {
    const char* name;
    std::function<void(const Container&, const Element& key)> run;
  };
  std::vector<Search> searches();

 private:
  std::set<std::string> called_;
};

}  // namespace locks

/// A TEST_P that states the lock changes of the members named behind its name.
#define ZRB_LOCK_TEST(Suite, test, ...)                                                 \
  const ::locks::StatementOfTest Suite##_##test##_states(#Suite, #test, {__VA_ARGS__}); \
  TEST_P(Suite, test)

#endif
