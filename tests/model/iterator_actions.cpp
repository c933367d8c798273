// Operations with iterators. A program keeps three of them.
#include <algorithm>
#include <utility>

#include "model/actions.h"

namespace model::actions {
namespace {

using support::Element;
using support::Iterator;

/// Chooses the iterator that the step is about.
int slot_of(Session& session, const Step& step) {
  return session.performed.slot = step.number % slot_count;
}

int other_slot_of(Session& session, const Step& step) {
  return session.performed.other_slot = step.number / slot_count % slot_count;
}

/// The key at an iterator, or that it stands at the end.
std::string shown_position(Session& session, const Iterator& position,
                           const std::optional<int>& expected) {
  if (position.is_equal(session.container().last())) return "end";
  const Object* const key = expected ? session.model().find(*expected)->key : nullptr;
  return session.identified(key, position.key());
}

std::string expected_position(Session& session, const std::optional<int>& key) {
  return key ? session.shown_key(*session.model().find(*key)->key) : "end";
}

/// Puts a new iterator into the step's slot and looks where it stands.
void point(Session& session, const Step& step, Iterator iterator, std::optional<int> expected) {
  const int slot = slot_of(session, step);
  session.set_slot(slot, std::move(iterator), expected);
  const std::string actual = session.outcome(
      [&] { return shown_position(session, session.slot(slot)->iterator, expected); });
  session.expect_result(expected_position(session, expected), actual);
}

void check_moved(Session& session, int slot, std::optional<int> expected) {
  Slot& moved = *session.slot(slot);
  moved.key = expected;
  const std::string actual =
      session.outcome([&] { return shown_position(session, moved.iterator, expected); });
  session.expect_result(expected_position(session, expected), actual);
}

/// Whether an iterator comes before another one in the order of iteration.
bool is_before(Session& session, const std::optional<int>& a, const std::optional<int>& b) {
  if (!b) return a.has_value();
  for (std::optional<int> key = a; key; key = session.model().next(*key)) {
    if (*key == *b) return *a != *b;
  }
  return false;
}

const char* truth(bool value) {
  return value ? "True" : "False";
}

}  // namespace

bool point_to_first(Session& session, const Step& step) {
  point(session, step, session.container().first(), session.model().first());
  return true;
}

bool point_to_last(Session& session, const Step& step) {
  point(session, step, session.container().last(), std::nullopt);
  return true;
}

bool point_to_key(Session& session, const Step& step) {
  const Object& key = session.key_of(step);
  Iterator found = session.container().find(key.element);
  std::optional<int> expected;
  if (session.searched(session.model(), key)) expected = key.number;
  point(session, step, std::move(found), expected);
  return true;
}

bool point_to_lower_bound(Session& session, const Step& step) {
  const Object& key = session.key_of(step);
  Iterator found = session.container().lower_bound(key.element);
  session.searched(session.model(), key);
  point(session, step, std::move(found), session.model().lower_bound(key.number));
  return true;
}

bool point_to_upper_bound(Session& session, const Step& step) {
  const Object& key = session.key_of(step);
  Iterator found = session.container().upper_bound(key.element);
  session.searched(session.model(), key);
  point(session, step, std::move(found), session.model().lower_bound(key.number + 1));
  return true;
}

bool move_next(Session& session, const Step& step) {
  const int slot = slot_of(session, step);
  // Behind the end there is nothing.
  if (!session.slot(slot) || !session.slot(slot)->key) return false;
  session.slot(slot)->iterator.move_next();
  check_moved(session, slot, session.model().next(*session.slot(slot)->key));
  return true;
}

bool move_previous(Session& session, const Step& step) {
  const int slot = slot_of(session, step);
  if (!session.slot(slot)) return false;
  const std::optional<int> from = session.slot(slot)->key;
  std::optional<int> expected;
  if (from) {
    expected = session.model().previous(*from);
  } else if (session.model().count() > 0) {
    expected = session.model().order().back().key->number;
  }
  if (!expected) return false;
  session.slot(slot)->iterator.move_prev();
  check_moved(session, slot, expected);
  return true;
}

bool read_position(Session& session, const Step& step) {
  const int slot = slot_of(session, step);
  if (!session.slot(slot) || !session.slot(slot)->key) return false;
  const Iterator& iterator = session.slot(slot)->iterator;
  const Entry& entry = *session.model().find(*session.slot(slot)->key);
  const bool is_map = session.container_class().is_map();
  const std::string actual = session.outcome([&] {
    std::string result = session.identified(entry.key, iterator.key());
    if (is_map) result += " and " + session.identified(entry.value, iterator.value());
    return result;
  });
  std::string expected = session.shown_key(*entry.key);
  if (is_map) expected += " and " + session.shown_value(*entry.value);
  session.expect_result(expected, actual);
  return true;
}

bool assign_position(Session& session, const Step& step) {
  const int slot = slot_of(session, step);
  if (!session.slot(slot) || !session.slot(slot)->key) return false;
  const Object& value = session.value_of(step);
  const Iterator& iterator = session.slot(slot)->iterator;
  const std::string actual = session.outcome([&] {
    iterator.set_value(value.element);
    return session.identified(&value, iterator.value());
  });
  // The arrays made before keep the old value: an iterator does not know its container.
  session.replaced(*session.model().find(*session.slot(slot)->key), value);
  session.expect_result(session.shown_value(value), actual);
  return true;
}

bool compare_positions(Session& session, const Step& step) {
  const auto& one = session.slot(slot_of(session, step));
  const auto& other = session.slot(other_slot_of(session, step));
  if (!one || !other) return false;
  const bool are_equal = one->key == other->key;
  const std::string actual = session.outcome([&] {
    return std::string(truth(one->iterator.is_equal(other->iterator))) + " " +
           truth(one->iterator.is_not_equal(other->iterator));
  });
  session.expect_result(std::string(truth(are_equal)) + " " + truth(!are_equal), actual);
  return true;
}

bool compare_with_nil(Session& session, const Step& step) {
  const auto& one = session.slot(slot_of(session, step));
  if (!one) return false;
  const bool ask_equal = step.variation % 2 == 0;
  const std::string actual = session.outcome([&] {
    return truth(ask_equal ? one->iterator.is_equal(nullptr) : one->iterator.is_not_equal(nullptr));
  });
  session.expect_result("NilObjectException: other iterator is nil", actual);
  return true;
}

bool use_unpositioned(Session& session, const Step& step) {
  const Iterator iterator = Iterator::without_position(session.container_class());
  const support::ContainerClass& its_class = session.container_class();
  const bool read_key = step.variation % 2 == 0;
  const std::string actual = session.outcome([&] {
    if (read_key) return shown(iterator.key());
    iterator.move_next();
    return std::string();
  });
  session.expect_result("NilObjectException: " + its_class.iterator_not_initialized_message(),
                        actual);
  return true;
}

bool remove_position(Session& session, const Step& step) {
  const int slot = slot_of(session, step);
  if (!session.slot(slot) || !session.slot(slot)->key) return false;
  const int key = *session.slot(slot)->key;
  const std::string actual = session.outcome([&] {
    session.container().remove(session.slot(slot)->iterator);
    return std::string();
  });
  session.drop_caches();
  session.dropped(key);
  session.expect_result("", actual);
  return true;
}

bool remove_range(Session& session, const Step& step) {
  int from = slot_of(session, step);
  int to = other_slot_of(session, step);
  if (!session.slot(from) || !session.slot(to)) return false;
  if (is_before(session, session.slot(to)->key, session.slot(from)->key)) std::swap(from, to);
  session.performed.slot = from;
  session.performed.other_slot = to;
  std::vector<int> keys;
  for (std::optional<int> key = session.slot(from)->key; key != session.slot(to)->key;
       key = session.model().next(*key)) {
    keys.push_back(*key);
  }
  const std::string actual = session.outcome([&] {
    session.container().remove(session.slot(from)->iterator, session.slot(to)->iterator);
    return std::string();
  });
  session.drop_caches();
  for (const int key : keys) session.dropped(key);
  session.expect_result("", actual);
  return true;
}

bool remove_nil(Session& session, const Step& step) {
  const Iterator unpositioned = Iterator::without_position(session.container_class());
  const Iterator last = session.container().last();
  const std::string actual = session.outcome([&] {
    switch (step.variation % 4) {
      case 0:
        session.container().remove_at(nullptr);
        break;
      case 1:
        session.container().remove_at(unpositioned.get());
        break;
      case 2:
        session.container().remove_range(nullptr, last.get());
        break;
      default:
        session.container().remove_range(last.get(), unpositioned.get());
        break;
    }
    return std::string();
  });
  // Nothing happens, and the arrays stay.
  session.expect_result("", actual);
  return true;
}

}  // namespace model::actions
