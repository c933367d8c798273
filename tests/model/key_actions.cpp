// Operations by key.
#include "model/actions.h"

namespace model::actions {
namespace {

using support::Container;
using support::Element;

const char* truth(bool value) {
  return value ? "True" : "False";
}

void put_one(Session& session, const Object& key, const Object* value) {
  const Container& container = session.container();
  if (value != nullptr) {
    container.assign_value(key.element, value->element);
  } else {
    container.insert(key.element);
  }
  session.drop_caches();
  session.stored(session.model(), key, value);
}

std::string remove_one(Session& session, const Object& key) {
  const std::int32_t removed = session.container().remove(key.element);
  session.drop_caches();
  if (session.searched(session.model(), key, true)) session.dropped(key.number);
  return std::to_string(removed);
}

}  // namespace

bool put(Session& session, const Step& step) {
  const Object& key = session.key_of(step);
  const Object* const value =
      session.container_class().is_map() ? &session.value_of(step) : nullptr;
  session.expect_result("", session.outcome([&] {
    put_one(session, key, value);
    return std::string();
  }));
  return true;
}

bool put_many(Session& session, const Step& step) {
  const std::vector<const Object*> keys = session.keys_of(step, 10000, false);
  std::vector<const Object*> values(keys.size(), nullptr);
  if (session.container_class().is_map()) values = session.values_of(step, keys.size());
  session.expect_result("", session.outcome([&] {
    for (std::size_t i = 0; i < keys.size(); ++i) put_one(session, *keys[i], values[i]);
    return std::string();
  }));
  return true;
}

bool contains(Session& session, const Step& step) {
  const Object& key = session.key_of(step);
  const std::string actual =
      session.outcome([&] { return truth(session.container().contains(key.element)); });
  session.expect_result(truth(session.searched(session.model(), key)), actual);
  return true;
}

bool count_key(Session& session, const Step& step) {
  const Object& key = session.key_of(step);
  const std::string actual =
      session.outcome([&] { return std::to_string(session.container().count_key(key.element)); });
  session.expect_result(session.searched(session.model(), key) ? "1" : "0", actual);
  return true;
}

bool read_value(Session& session, const Step& step) {
  const Object& key = session.key_of(step);
  const Entry* const entry = session.model().find(key.number);
  const std::string actual = session.outcome([&] {
    const Element read = session.container().value(key.element);
    return session.identified(entry != nullptr ? entry->value : nullptr, read);
  });
  session.searched(session.model(), key);
  session.expect_result(
      entry != nullptr ? session.shown_value(*entry->value) : "KeyNotFoundException: ", actual);
  return true;
}

bool lookup(Session& session, const Step& step) {
  const Object& key = session.key_of(step);
  const Object& default_value = session.value_of(step);
  const Entry* const entry = session.model().find(key.number);
  const Object& expected = entry != nullptr ? *entry->value : default_value;
  const std::string actual = session.outcome([&] {
    const Element read = session.container().lookup(key.element, default_value.element);
    return session.identified(&expected, read);
  });
  session.searched(session.model(), key);
  session.expect_result(session.shown_value(expected), actual);
  return true;
}

bool remove_key(Session& session, const Step& step) {
  const Object& key = session.key_of(step);
  const std::string expected = session.model().find(key.number) != nullptr ? "1" : "0";
  session.expect_result(expected, session.outcome([&] { return remove_one(session, key); }));
  return true;
}

bool remove_many(Session& session, const Step& step) {
  std::string expected;
  std::string actual;
  for (const Object* key : session.keys_of(step, 10000, false)) {
    expected += session.model().find(key->number) != nullptr ? "1" : "0";
    actual += session.outcome([&] { return remove_one(session, *key); });
  }
  session.expect_result(expected, actual);
  return true;
}

}  // namespace model::actions
