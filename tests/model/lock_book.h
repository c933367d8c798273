// The book of locks: how many the host should count on every object that a sequence knows, and how
// many objects should live.
//
// A comparison of two strings or variants leaves a lock on each. A hashed container makes as many
// as its chains are long, so its book is exact. How many an ordered one makes is its own affair:
// there the keys may have more locks than the book says, within bounds, and two for each
// comparison.
#ifndef ZRB_TESTS_MODEL_LOCK_BOOK_H
#define ZRB_TESTS_MODEL_LOCK_BOOK_H

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "support/elements.h"

namespace model {

class LockBook {
 public:
  /// Opens an account of what the element holds. Nil and integers have none. The caller is expected
  /// to hold one lock, and the book takes another one. What is compared by an ordered container has
  /// room for locks that the book does not know of.
  void open(const support::Element& element, bool has_room);

  void add(const support::Element& element, std::int64_t locks);
  /// A comparison whose operands are known.
  void compared(const support::Element& a, const support::Element& b);
  /// Comparisons of an ordered container: at least and at most so many.
  void compared_some(std::int64_t at_least, std::int64_t at_most);
  /// From now on comparisons may occur of which only one operand has an account; the other one is
  /// nil, or out of sight.
  void unknown_takes_part() { unknown_takes_part_ = true; }

  /// What is in disorder; "" when nothing is. Looks at the accounts that changed since the last
  /// look.
  std::string check_changed();
  /// Looks at all accounts.
  std::string check_all();

 private:
  struct Account {
    support::Element element;  // one of its locks is the book's own
    std::int64_t expected = 0;
    bool has_room = false;
    bool is_marked = false;
  };

  Account* account(const support::Element& element);
  static std::string check(const Account& account);
  std::string check_surplus(std::int64_t surplus) const;

  std::unordered_map<const void*, Account> accounts_;
  std::vector<Account*> changed_;
  std::int64_t least_comparisons_ = 0;
  std::int64_t most_comparisons_ = 0;
  bool unknown_takes_part_ = false;
};

}  // namespace model

#endif
