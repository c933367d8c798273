// Keeping the book and comparing it with the host.
#include "model/lock_book.h"

#include "model/contents.h"

namespace model {

using support::Element;

void LockBook::open(const Element& element, bool has_room) {
  if (support::handle(element) == nullptr) return;
  const auto [position, is_new] = accounts_.try_emplace(support::handle(element));
  if (!is_new) return;
  position->second.element = element;
  position->second.expected = 2;
  position->second.has_room = has_room;
}

LockBook::Account* LockBook::account(const Element& element) {
  const auto found = accounts_.find(support::handle(element));
  return found == accounts_.end() ? nullptr : &found->second;
}

void LockBook::add(const Element& element, std::int64_t locks) {
  Account* const changed = account(element);
  if (changed == nullptr) return;
  changed->expected += locks;
  if (!changed->is_marked) changed_.push_back(changed);
  changed->is_marked = true;
}

void LockBook::compared(const Element& a, const Element& b) {
  add(a, 1);
  add(b, 1);
}

void LockBook::compared_some(std::int64_t at_least, std::int64_t at_most) {
  least_comparisons_ += at_least;
  most_comparisons_ += at_most;
}

std::string LockBook::check(const Account& account) {
  const std::int64_t actual = support::locks(account.element);
  if (account.has_room ? actual >= account.expected : actual == account.expected) return "";
  return shown(account.element) + " has " + std::to_string(actual) + " locks instead of " +
         (account.has_room ? "at least " : "") + std::to_string(account.expected);
}

std::string LockBook::check_changed() {
  std::string disorder;
  for (Account* const changed : changed_) {
    changed->is_marked = false;
    if (disorder.empty()) disorder = check(*changed);
  }
  changed_.clear();
  return disorder;
}

std::string LockBook::check_all() {
  std::int64_t surplus = 0;
  for (const auto& [handle, account] : accounts_) {
    if (std::string disorder = check(account); !disorder.empty()) return disorder;
    surplus += support::locks(account.element) - account.expected;
  }
  return check_surplus(surplus);
}

std::string LockBook::check_surplus(std::int64_t surplus) const {
  const bool is_enough =
      unknown_takes_part_ || (surplus % 2 == 0 && surplus >= 2 * least_comparisons_);
  if (is_enough && surplus <= 2 * most_comparisons_) return "";
  return "the keys have " + std::to_string(surplus) +
         " locks from comparisons, which should be twice the number of comparisons, " +
         std::to_string(least_comparisons_) + " to " + std::to_string(most_comparisons_);
}

}  // namespace model
