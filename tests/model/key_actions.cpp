// Operations by key.
#include "model/actions.h"
#include "model/literals.h"

namespace model::actions {
namespace {

using support::Container;
using support::Element;

void put_one(Playthrough& playthrough, const Object& key, const Object* value) {
  const Container& container = playthrough.container();
  if (value != nullptr) {
    container.assign_value(key.element, value->element);
  } else {
    container.insert(key.element);
  }
  playthrough.drop_caches();
  playthrough.stored(playthrough.model(), key, value);
}

std::string remove_one(Playthrough& playthrough, const Object& key) {
  const std::int32_t removed = playthrough.container().remove(key.element);
  playthrough.drop_caches();
  if (playthrough.searched(playthrough.model(), key, true)) playthrough.dropped(key.number);
  return std::to_string(removed);
}

}  // namespace

bool put(Playthrough& playthrough, const Step& step) {
  const Object& key = playthrough.key_of(step);
  const Object* const value =
      playthrough.container_class().is_map() ? &playthrough.value_of(step) : nullptr;
  playthrough.expect_result("", playthrough.outcome([&] {
    put_one(playthrough, key, value);
    return std::string();
  }));
  return true;
}

bool put_many(Playthrough& playthrough, const Step& step) {
  const std::vector<const Object*> keys = playthrough.keys_of(step, 10000, false);
  std::vector<const Object*> values(keys.size(), nullptr);
  if (playthrough.container_class().is_map()) values = playthrough.values_of(step, keys.size());
  playthrough.expect_result("", playthrough.outcome([&] {
    for (std::size_t i = 0; i < keys.size(); ++i) put_one(playthrough, *keys[i], values[i]);
    return std::string();
  }));
  return true;
}

bool contains(Playthrough& playthrough, const Step& step) {
  const Object& key = playthrough.key_of(step);
  const std::string actual = playthrough.outcome(
      [&] { return boolean_literal(playthrough.container().contains(key.element)); });
  playthrough.expect_result(boolean_literal(playthrough.searched(playthrough.model(), key)),
                            actual);
  return true;
}

bool count_key(Playthrough& playthrough, const Step& step) {
  const Object& key = playthrough.key_of(step);
  const std::string actual = playthrough.outcome(
      [&] { return std::to_string(playthrough.container().count_key(key.element)); });
  playthrough.expect_result(playthrough.searched(playthrough.model(), key) ? "1" : "0", actual);
  return true;
}

bool read_value(Playthrough& playthrough, const Step& step) {
  const Object& key = playthrough.key_of(step);
  const Entry* const entry = playthrough.model().find(key.number);
  const std::string actual = playthrough.outcome([&] {
    const Element read = playthrough.container().value(key.element);
    return playthrough.identified(entry != nullptr ? entry->value : nullptr, read);
  });
  playthrough.searched(playthrough.model(), key);
  playthrough.expect_result(
      entry != nullptr ? playthrough.shown_value(*entry->value) : "KeyNotFoundException: ", actual);
  return true;
}

bool lookup(Playthrough& playthrough, const Step& step) {
  const Object& key = playthrough.key_of(step);
  const Object& default_value = playthrough.value_of(step);
  const Entry* const entry = playthrough.model().find(key.number);
  const Object& expected = entry != nullptr ? *entry->value : default_value;
  const std::string actual = playthrough.outcome([&] {
    const Element read = playthrough.container().lookup(key.element, default_value.element);
    return playthrough.identified(&expected, read);
  });
  playthrough.searched(playthrough.model(), key);
  playthrough.expect_result(playthrough.shown_value(expected), actual);
  return true;
}

bool remove_key(Playthrough& playthrough, const Step& step) {
  const Object& key = playthrough.key_of(step);
  const std::string expected = playthrough.model().find(key.number) != nullptr ? "1" : "0";
  playthrough.expect_result(expected,
                            playthrough.outcome([&] { return remove_one(playthrough, key); }));
  return true;
}

bool remove_many(Playthrough& playthrough, const Step& step) {
  std::string expected;
  std::string actual;
  for (const Object* key : playthrough.keys_of(step, 10000, false)) {
    expected += playthrough.model().find(key->number) != nullptr ? "1" : "0";
    actual += playthrough.outcome([&] { return remove_one(playthrough, *key); });
  }
  playthrough.expect_result(expected, actual);
  return true;
}

}  // namespace model::actions
