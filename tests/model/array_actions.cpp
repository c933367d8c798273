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
  for (const Object* item : items) all_shown.push_back(shown(type, *item));
  return bracketed(all_shown);
}

std::string actual_items(Playthrough& playthrough, ElementType type, REALarray array,
                         const std::vector<const Object*>& expected) {
  if (array == nullptr) return "nil";
  std::vector<std::string> all_shown;
  std::size_t index = 0;
  for (const Element& element : support::elements_of(type, array)) {
    all_shown.push_back(
        playthrough.identified(index < expected.size() ? expected[index] : nullptr, element));
    ++index;
  }
  return bracketed(all_shown);
}

/// Asks for one of the cached arrays: it is the one given before, or a new one.
bool ask_for_array(Playthrough& playthrough, const char* declaration, ElementType type,
                   std::shared_ptr<KnownArray>& cache) {
  playthrough.build_caches();
  const ArrayRef array = ArrayRef::adopt(playthrough.container().call<REALarray>(declaration));
  const bool was_seen = cache->handle != nullptr;
  if (was_seen) {
    playthrough.expect("the array given before", true, array.get() == cache->handle);
  } else if (playthrough.held && playthrough.held->known != cache) {
    playthrough.expect("an array held since a change", false,
                       array.get() == playthrough.held->array.get());
  }
  cache->handle = array.get();
  playthrough.performed.index = was_seen ? 1 : 0;
  playthrough.expect_result(expected_items(type, cache->items()), playthrough.outcome([&] {
    return actual_items(playthrough, type, array.get(), cache->items());
  }));
  return true;
}

/// An index, now and then one outside.
std::int32_t index_of(Playthrough& playthrough, const Step& step) {
  const int count = playthrough.model().count();
  std::int32_t index = count == 0 ? 0 : step.number * 31 % count;
  if (step.variation == 0) index = count;
  if (step.variation == 1) index = -1;
  return playthrough.performed.index = index;
}

bool ask_at(Playthrough& playthrough, const Step& step, const char* declaration, ElementType type,
            std::shared_ptr<KnownArray>& cache) {
  const std::int32_t index = index_of(playthrough, step);
  playthrough.build_caches();
  const bool is_inside = index >= 0 && index < playthrough.model().count();
  const Object* const expected =
      is_inside ? cache->items()[static_cast<std::size_t>(index)] : nullptr;
  const std::string actual = playthrough.outcome([&] {
    return playthrough.identified(expected,
                                  playthrough.container().call_for(type, declaration, index));
  });
  playthrough.expect_result(is_inside ? shown(type, *expected) : "OutOfBoundsException", actual);
  return true;
}

bool add_to_array(Playthrough& playthrough, const char* declaration, ElementType type,
                  const Object& present, std::vector<const Object*> expected) {
  const ArrayRef target = support::host_array(type, {present.element});
  expected.push_back(&present);
  const std::string actual = playthrough.outcome([&] {
    playthrough.container().call<void>(declaration, target.get());
    return actual_items(playthrough, type, target.get(), expected);
  });
  playthrough.expect_result(expected_items(type, expected), actual);
  return true;
}

}  // namespace

bool keys(Playthrough& playthrough, const Step& /*step*/) {
  return ask_for_array(playthrough, "Keys as {K}()", playthrough.container_class().key,
                       playthrough.keys_cache);
}

bool values(Playthrough& playthrough, const Step& /*step*/) {
  return ask_for_array(playthrough, "Values as {V}()", *playthrough.container_class().value,
                       playthrough.values_cache);
}

bool key_at(Playthrough& playthrough, const Step& step) {
  return ask_at(playthrough, step, "Key(index as integer) as {K}",
                playthrough.container_class().key, playthrough.keys_cache);
}

bool value_at(Playthrough& playthrough, const Step& step) {
  return ask_at(playthrough, step, "ValueAtIndex(index as integer) as {V}",
                *playthrough.container_class().value, playthrough.values_cache);
}

bool alter_keys(Playthrough& playthrough, const Step& step) {
  if (playthrough.model().count() == 0) return false;
  playthrough.build_caches();
  const Object& replacement = playthrough.key_of(step);
  const int index = step.number % playthrough.model().count();
  playthrough.performed.index = index;
  const ArrayRef array = ArrayRef::adopt(playthrough.container().call<REALarray>("Keys as {K}()"));
  support::set_element(array.get(), index, replacement.element);
  playthrough.keys_cache->handle = array.get();
  playthrough.keys_cache->set(static_cast<std::size_t>(index), replacement);
  const std::string actual = playthrough.outcome([&] {
    return playthrough.identified(
        &replacement, playthrough.container().call_for(playthrough.container_class().key,
                                                       "Key(index as integer) as {K}", index));
  });
  playthrough.expect_result(playthrough.shown_key(replacement), actual);
  return true;
}

bool hold_keys(Playthrough& playthrough, const Step& /*step*/) {
  playthrough.held.reset();
  playthrough.build_caches();
  ArrayRef array = ArrayRef::adopt(playthrough.container().call<REALarray>("Keys as {K}()"));
  playthrough.keys_cache->handle = array.get();
  playthrough.held.emplace(Playthrough::HeldArray{std::move(array), playthrough.keys_cache});
  return true;
}

bool read_held_keys(Playthrough& playthrough, const Step& step) {
  if (!playthrough.held) return false;
  const std::vector<const Object*>& items = playthrough.held->known->items();
  const ElementType type = playthrough.container_class().key;
  const std::string actual = playthrough.outcome(
      [&] { return actual_items(playthrough, type, playthrough.held->array.get(), items); });
  playthrough.expect_result(expected_items(type, items), actual);
  playthrough.performed.index = step.variation % 2;
  if (playthrough.performed.index == 1) playthrough.held.reset();
  return true;
}

bool add_keys(Playthrough& playthrough, const Step& step) {
  std::vector<const Object*> expected;
  for (const Entry& entry : playthrough.model().order()) expected.push_back(entry.key);
  return add_to_array(playthrough, "AddKeys(targetArray() as {K})",
                      playthrough.container_class().key, playthrough.key_of(step),
                      std::move(expected));
}

bool add_values(Playthrough& playthrough, const Step& step) {
  std::vector<const Object*> expected;
  for (const Entry& entry : playthrough.model().order()) expected.push_back(entry.value);
  return add_to_array(playthrough, "AddValues(targetArray() as {V})",
                      *playthrough.container_class().value, playthrough.value_of(step),
                      std::move(expected));
}

bool add_to_nil(Playthrough& playthrough, const Step& step) {
  const char* const declaration =
      step.variation % 2 == 0 ? "AddKeys(targetArray() as {K})" : "AddValues(targetArray() as {V})";
  const std::string actual = playthrough.outcome([&] {
    playthrough.container().call<void>(declaration, REALarray{nullptr});
    return std::string();
  });
  playthrough.expect_result("NilObjectException: array is nil", actual);
  return true;
}

}  // namespace model::actions
