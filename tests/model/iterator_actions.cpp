// Operations with iterators. A program keeps three of them.
#include <algorithm>
#include <utility>

#include "model/actions.h"
#include "model/literals.h"

namespace model::actions {
namespace {

using support::Element;
using support::Iterator;

/// Chooses the iterator that the step is about.
int slot_of(Playthrough& playthrough, const Step& step) {
  return playthrough.performed.slot = step.number % slot_count;
}

int other_slot_of(Playthrough& playthrough, const Step& step) {
  return playthrough.performed.other_slot = step.number / slot_count % slot_count;
}

/// The key at an iterator, or that it stands at the end.
std::string shown_position(Playthrough& playthrough, const Iterator& position,
                           const std::optional<int>& expected) {
  if (position.is_equal(playthrough.container().last())) return "end";
  const Object* const key = expected ? playthrough.model().find(*expected)->key : nullptr;
  return playthrough.identified(key, position.key());
}

std::string expected_position(Playthrough& playthrough, const std::optional<int>& key) {
  return key ? playthrough.shown_key(*playthrough.model().find(*key)->key) : "end";
}

/// Puts a new iterator into the step's slot and looks where it stands.
void point(Playthrough& playthrough, const Step& step, Iterator iterator,
           std::optional<int> expected) {
  const int slot = slot_of(playthrough, step);
  playthrough.set_slot(slot, std::move(iterator), expected);
  const std::string actual = playthrough.outcome(
      [&] { return shown_position(playthrough, playthrough.slot(slot)->iterator, expected); });
  playthrough.expect_result(expected_position(playthrough, expected), actual);
}

void check_moved(Playthrough& playthrough, int slot, std::optional<int> expected) {
  Slot& moved = *playthrough.slot(slot);
  moved.key = expected;
  const std::string actual =
      playthrough.outcome([&] { return shown_position(playthrough, moved.iterator, expected); });
  playthrough.expect_result(expected_position(playthrough, expected), actual);
}

/// Whether an iterator comes before another one in the order of iteration.
bool is_before(Playthrough& playthrough, const std::optional<int>& a, const std::optional<int>& b) {
  if (!b) return a.has_value();
  for (std::optional<int> key = a; key; key = playthrough.model().next(*key)) {
    if (*key == *b) return *a != *b;
  }
  return false;
}

}  // namespace

bool point_to_first(Playthrough& playthrough, const Step& step) {
  point(playthrough, step, playthrough.container().first(), playthrough.model().first());
  return true;
}

bool point_to_last(Playthrough& playthrough, const Step& step) {
  point(playthrough, step, playthrough.container().last(), std::nullopt);
  return true;
}

bool point_to_key(Playthrough& playthrough, const Step& step) {
  const Object& key = playthrough.key_of(step);
  Iterator found = playthrough.container().find(key.element);
  std::optional<int> expected;
  if (playthrough.searched(playthrough.model(), key)) expected = key.number;
  point(playthrough, step, std::move(found), expected);
  return true;
}

bool point_to_lower_bound(Playthrough& playthrough, const Step& step) {
  const Object& key = playthrough.key_of(step);
  Iterator found = playthrough.container().lower_bound(key.element);
  playthrough.searched(playthrough.model(), key);
  point(playthrough, step, std::move(found), playthrough.model().lower_bound(key.number));
  return true;
}

bool point_to_upper_bound(Playthrough& playthrough, const Step& step) {
  const Object& key = playthrough.key_of(step);
  Iterator found = playthrough.container().upper_bound(key.element);
  playthrough.searched(playthrough.model(), key);
  point(playthrough, step, std::move(found), playthrough.model().lower_bound(key.number + 1));
  return true;
}

bool move_next(Playthrough& playthrough, const Step& step) {
  const int slot = slot_of(playthrough, step);
  // Behind the end there is nothing.
  if (!playthrough.slot(slot) || !playthrough.slot(slot)->key) return false;
  playthrough.slot(slot)->iterator.move_next();
  check_moved(playthrough, slot, playthrough.model().next(*playthrough.slot(slot)->key));
  return true;
}

bool move_previous(Playthrough& playthrough, const Step& step) {
  const int slot = slot_of(playthrough, step);
  if (!playthrough.slot(slot)) return false;
  const std::optional<int> from = playthrough.slot(slot)->key;
  const std::optional<int> expected =
      from ? playthrough.model().previous(*from) : playthrough.model().last();
  if (!expected) return false;
  playthrough.slot(slot)->iterator.move_prev();
  check_moved(playthrough, slot, expected);
  return true;
}

bool read_position(Playthrough& playthrough, const Step& step) {
  const int slot = slot_of(playthrough, step);
  if (!playthrough.slot(slot) || !playthrough.slot(slot)->key) return false;
  const Iterator& iterator = playthrough.slot(slot)->iterator;
  const Entry& entry = *playthrough.model().find(*playthrough.slot(slot)->key);
  const bool is_map = playthrough.container_class().is_map();
  const std::string actual = playthrough.outcome([&] {
    std::string result = playthrough.identified(entry.key, iterator.key());
    if (is_map) result += " and " + playthrough.identified(entry.value, iterator.value());
    return result;
  });
  std::string expected = playthrough.shown_key(*entry.key);
  if (is_map) expected += " and " + playthrough.shown_value(*entry.value);
  playthrough.expect_result(expected, actual);
  return true;
}

bool assign_position(Playthrough& playthrough, const Step& step) {
  const int slot = slot_of(playthrough, step);
  if (!playthrough.slot(slot) || !playthrough.slot(slot)->key) return false;
  const Object& value = playthrough.value_of(step);
  const Iterator& iterator = playthrough.slot(slot)->iterator;
  const std::string actual = playthrough.outcome([&] {
    iterator.set_value(value.element);
    return playthrough.identified(&value, iterator.value());
  });
  // The arrays made before keep the old value: an iterator does not know its container.
  playthrough.replaced(*playthrough.model().find(*playthrough.slot(slot)->key), value);
  playthrough.expect_result(playthrough.shown_value(value), actual);
  return true;
}

bool compare_positions(Playthrough& playthrough, const Step& step) {
  const auto& one = playthrough.slot(slot_of(playthrough, step));
  const auto& other = playthrough.slot(other_slot_of(playthrough, step));
  if (!one || !other) return false;
  const bool are_equal = one->key == other->key;
  const std::string actual = playthrough.outcome([&] {
    return std::string(boolean_literal(one->iterator.is_equal(other->iterator))) + " " +
           boolean_literal(one->iterator.is_not_equal(other->iterator));
  });
  playthrough.expect_result(
      std::string(boolean_literal(are_equal)) + " " + boolean_literal(!are_equal), actual);
  return true;
}

bool compare_with_nil(Playthrough& playthrough, const Step& step) {
  const auto& one = playthrough.slot(slot_of(playthrough, step));
  if (!one) return false;
  const bool ask_equal = step.variation % 2 == 0;
  const std::string actual = playthrough.outcome([&] {
    return boolean_literal(ask_equal ? one->iterator.is_equal(nullptr)
                                     : one->iterator.is_not_equal(nullptr));
  });
  playthrough.expect_result("NilObjectException: other iterator is nil", actual);
  return true;
}

bool use_unpositioned(Playthrough& playthrough, const Step& step) {
  const Iterator iterator = Iterator::without_position(playthrough.container_class());
  const support::ContainerClass& its_class = playthrough.container_class();
  const bool read_key = step.variation % 2 == 0;
  const std::string actual = playthrough.outcome([&] {
    if (read_key) return shown(iterator.key());
    iterator.move_next();
    return std::string();
  });
  playthrough.expect_result("NilObjectException: " + its_class.iterator_not_initialized_message(),
                            actual);
  return true;
}

bool remove_position(Playthrough& playthrough, const Step& step) {
  const int slot = slot_of(playthrough, step);
  if (!playthrough.slot(slot) || !playthrough.slot(slot)->key) return false;
  const int key = *playthrough.slot(slot)->key;
  const std::string actual = playthrough.outcome([&] {
    playthrough.container().remove(playthrough.slot(slot)->iterator);
    return std::string();
  });
  playthrough.drop_caches();
  playthrough.dropped(key);
  playthrough.expect_result("", actual);
  return true;
}

bool remove_range(Playthrough& playthrough, const Step& step) {
  int from = slot_of(playthrough, step);
  int to = other_slot_of(playthrough, step);
  if (!playthrough.slot(from) || !playthrough.slot(to)) return false;
  if (is_before(playthrough, playthrough.slot(to)->key, playthrough.slot(from)->key))
    std::swap(from, to);
  playthrough.performed.slot = from;
  playthrough.performed.other_slot = to;
  std::vector<int> keys;
  for (std::optional<int> key = playthrough.slot(from)->key; key != playthrough.slot(to)->key;
       key = playthrough.model().next(*key)) {
    keys.push_back(*key);
  }
  const std::string actual = playthrough.outcome([&] {
    playthrough.container().remove(playthrough.slot(from)->iterator,
                                   playthrough.slot(to)->iterator);
    return std::string();
  });
  playthrough.drop_caches();
  for (const int key : keys) playthrough.dropped(key);
  playthrough.expect_result("", actual);
  return true;
}

bool remove_nil(Playthrough& playthrough, const Step& step) {
  const Iterator unpositioned = Iterator::without_position(playthrough.container_class());
  const Iterator last = playthrough.container().last();
  const std::string actual = playthrough.outcome([&] {
    switch (step.variation % 4) {
      case 0:
        playthrough.container().remove_at(nullptr);
        break;
      case 1:
        playthrough.container().remove_at(unpositioned.get());
        break;
      case 2:
        playthrough.container().remove_range(nullptr, last.get());
        break;
      default:
        playthrough.container().remove_range(last.get(), unpositioned.get());
        break;
    }
    return std::string();
  });
  // Nothing happens, and the arrays stay.
  playthrough.expect_result("", actual);
  return true;
}

}  // namespace model::actions
