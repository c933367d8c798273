// Positional access and the export to arrays.
#include "model/actions.h"
#include "runtime/arrays.h"
#include "support/host_arrays.h"

namespace model::actions {
namespace {

using standin::ArrayRef;
using support::Element;
using support::ElementType;

std::string bracketed(const std::vector<std::string>& items) {
  std::string result;
  for (const std::string& item : items) result += "[" + item + "]";
  return result;
}

std::string expected_items(ElementType type, const std::vector<const Object*>& items) {
  std::vector<std::string> all_shown;
  for (const Object* item : items) all_shown.push_back(shown(type, *item->content));
  return bracketed(all_shown);
}

std::string actual_items(Session& session, ElementType type, REALarray array,
                         const std::vector<const Object*>& expected) {
  if (array == nullptr) return "nil";
  std::vector<std::string> all_shown;
  std::size_t index = 0;
  for (const Element& element : support::elements_of(type, array)) {
    all_shown.push_back(
        session.identified(index < expected.size() ? expected[index] : nullptr, element));
    ++index;
  }
  return bracketed(all_shown);
}

/// Asks for one of the cached arrays: it is the one given before, or a new one.
bool ask_for_array(Session& session, const char* declaration, ElementType type,
                   std::shared_ptr<KnownArray>& cache) {
  session.build_caches();
  const ArrayRef array = ArrayRef::adopt(session.container().call<REALarray>(declaration));
  const bool was_seen = cache->handle != nullptr;
  if (was_seen) {
    session.expect("the array given before", true, array.get() == cache->handle);
  } else if (session.held && session.held->known != cache) {
    session.expect("an array held since a change", false, array.get() == session.held->array.get());
  }
  cache->handle = array.get();
  session.performed.index = was_seen ? 1 : 0;
  session.expect_result(expected_items(type, cache->items()), session.outcome([&] {
    return actual_items(session, type, array.get(), cache->items());
  }));
  return true;
}

/// An index, now and then one outside.
std::int32_t index_of(Session& session, const Step& step) {
  const int count = session.model().count();
  std::int32_t index = count == 0 ? 0 : step.number * 31 % count;
  if (step.variation == 0) index = count;
  if (step.variation == 1) index = -1;
  return session.performed.index = index;
}

bool ask_at(Session& session, const Step& step, const char* declaration, ElementType type,
            std::shared_ptr<KnownArray>& cache) {
  const std::int32_t index = index_of(session, step);
  session.build_caches();
  const bool is_inside = index >= 0 && index < session.model().count();
  const Object* const expected =
      is_inside ? cache->items()[static_cast<std::size_t>(index)] : nullptr;
  const std::string actual = session.outcome([&] {
    return session.identified(expected, session.container().call_for(type, declaration, index));
  });
  session.expect_result(is_inside ? shown(type, *expected->content) : "OutOfBoundsException",
                        actual);
  return true;
}

bool add_to_array(Session& session, const char* declaration, ElementType type,
                  const Object& present, std::vector<const Object*> expected) {
  const ArrayRef target = support::host_array(type, {present.element});
  expected.push_back(&present);
  const std::string actual = session.outcome([&] {
    session.container().call<void>(declaration, target.get());
    return actual_items(session, type, target.get(), expected);
  });
  session.expect_result(expected_items(type, expected), actual);
  return true;
}

}  // namespace

bool keys(Session& session, const Step& /*step*/) {
  return ask_for_array(session, "Keys as {K}()", session.container_class().key, session.keys_cache);
}

bool values(Session& session, const Step& /*step*/) {
  return ask_for_array(session, "Values as {V}()", *session.container_class().value,
                       session.values_cache);
}

bool key_at(Session& session, const Step& step) {
  return ask_at(session, step, "Key(index as integer) as {K}", session.container_class().key,
                session.keys_cache);
}

bool value_at(Session& session, const Step& step) {
  return ask_at(session, step, "ValueAtIndex(index as integer) as {V}",
                *session.container_class().value, session.values_cache);
}

bool alter_keys(Session& session, const Step& step) {
  if (session.model().count() == 0) return false;
  session.build_caches();
  const Object& replacement = session.key_of(step);
  const int index = step.number % session.model().count();
  session.performed.index = index;
  const ArrayRef array = ArrayRef::adopt(session.container().call<REALarray>("Keys as {K}()"));
  support::set_element(array.get(), index, replacement.element);
  session.keys_cache->handle = array.get();
  session.keys_cache->set(static_cast<std::size_t>(index), replacement);
  const std::string actual = session.outcome([&] {
    return session.identified(&replacement,
                              session.container().call_for(session.container_class().key,
                                                           "Key(index as integer) as {K}", index));
  });
  session.expect_result(session.shown_key(replacement), actual);
  return true;
}

bool hold_keys(Session& session, const Step& /*step*/) {
  session.held.reset();
  session.build_caches();
  ArrayRef array = ArrayRef::adopt(session.container().call<REALarray>("Keys as {K}()"));
  session.keys_cache->handle = array.get();
  session.held.emplace(Session::HeldArray{std::move(array), session.keys_cache});
  return true;
}

bool read_held_keys(Session& session, const Step& step) {
  if (!session.held) return false;
  const std::vector<const Object*>& items = session.held->known->items();
  const ElementType type = session.container_class().key;
  const std::string actual = session.outcome(
      [&] { return actual_items(session, type, session.held->array.get(), items); });
  session.expect_result(expected_items(type, items), actual);
  session.performed.index = step.variation % 2;
  if (session.performed.index == 1) session.held.reset();
  return true;
}

bool add_keys(Session& session, const Step& step) {
  std::vector<const Object*> expected;
  for (const Entry& entry : session.model().order()) expected.push_back(entry.key);
  return add_to_array(session, "AddKeys(targetArray() as {K})", session.container_class().key,
                      session.key_of(step), std::move(expected));
}

bool add_values(Session& session, const Step& step) {
  std::vector<const Object*> expected;
  for (const Entry& entry : session.model().order()) expected.push_back(entry.value);
  return add_to_array(session, "AddValues(targetArray() as {V})", *session.container_class().value,
                      session.value_of(step), std::move(expected));
}

bool add_to_nil(Session& session, const Step& step) {
  const char* const declaration =
      step.variation % 2 == 0 ? "AddKeys(targetArray() as {K})" : "AddValues(targetArray() as {V})";
  const std::string actual = session.outcome([&] {
    session.container().call<void>(declaration, REALarray{nullptr});
    return std::string();
  });
  session.expect_result("NilObjectException: array is nil", actual);
  return true;
}

}  // namespace model::actions
