// Maps made from Dictionaries, and turned into one.
#include <algorithm>

#include "model/actions.h"
#include "model/replacement.h"
#include "runtime/dictionary.h"
#include "runtime/variants.h"

namespace model::actions {
namespace {

using standin::ObjectRef;
using support::Container;
using support::Element;
using support::ElementType;

constexpr const char* construct_from_dictionary = "Constructor(dic as dictionary)";
constexpr const char* convert_from_dictionary = "Operator_Convert(dic as dictionary)";

ObjectRef boxed(const Element& element) {
  if (const auto* integer = std::get_if<std::int32_t>(&element)) {
    return standin::variant_from_integer(*integer);
  }
  if (const auto* string = std::get_if<standin::StringRef>(&element)) {
    return standin::variant_from_string(string->get());
  }
  return std::get<ObjectRef>(element);
}

/// What a variant of the Dictionary was made of.
const Object& unboxed(const std::vector<const Object*>& objects, ElementType type,
                      const ObjectRef& variant) {
  for (const Object* object : objects) {
    if (type == ElementType::integer) {
      if (std::get<std::int32_t>(object->element) == standin::to_int32(variant.get())) {
        return *object;
      }
    } else if (type == ElementType::string) {
      if (support::handle(object->element) == standin::to_string(variant.get()).get()) {
        return *object;
      }
    } else if (support::handle(object->element) == variant.get()) {
      return *object;
    }
  }
  throw std::logic_error("the Dictionary holds something else");
}

/// The entries of a Dictionary in its order. It holds some keys to be equal that a map tells apart,
/// and the other way round.
std::vector<Entry> entries_of(Playthrough& playthrough, REALobject dictionary,
                              const std::vector<const Object*>& keys,
                              const std::vector<const Object*>& values) {
  const support::ContainerClass& its_class = playthrough.container_class();
  std::vector<Entry> result;
  for (std::int32_t i = 0; i < standin::dictionary_count(dictionary); ++i) {
    const ObjectRef key = standin::dictionary_key(dictionary, i);
    const ObjectRef value = standin::dictionary_value(dictionary, key.get());
    result.push_back(
        {&unboxed(keys, its_class.key, key), &unboxed(values, *its_class.value, value)});
  }
  return result;
}

/// Gives a dictionary to the container itself, or to a new one that takes its place, by the
/// constructor or by conversion.
std::string give(Playthrough& playthrough, const Step& step, REALobject dictionary) {
  const char* const declaration =
      step.variation % 2 == 0 ? construct_from_dictionary : convert_from_dictionary;
  const bool in_place = step.variation % 3 == 0;
  const std::vector<Entry> former = playthrough.model().order();
  if (in_place) {
    playthrough.container().call<void>(declaration, dictionary);
    playthrough.drop_caches();
    released(playthrough, former);
  } else {
    Container made = Container::without_storage(playthrough.container_class());
    made.call<void>(declaration, dictionary);
    replace(playthrough, std::move(made), former);
  }
  playthrough.abandoned();
  return playthrough.outcome([&] { return counts(playthrough.container()); });
}

}  // namespace

bool from_dictionary(Playthrough& playthrough, const Step& step) {
  const std::vector<const Object*> keys = playthrough.keys_of(step, 60, false);
  if (std::any_of(keys.begin(), keys.end(),
                  [](const Object* key) { return is_nan(*key->content); }))
    return false;
  const std::vector<const Object*> values = playthrough.values_of(step, keys.size());
  std::vector<Entry> entries;
  std::string actual;
  {
    const ObjectRef dictionary = standin::make_dictionary();
    for (std::size_t i = 0; i < keys.size(); ++i) {
      standin::dictionary_set(dictionary.get(), boxed(keys[i]->element).get(),
                              boxed(values[i]->element).get());
    }
    entries = entries_of(playthrough, dictionary.get(), keys, values);
    actual = give(playthrough, step, dictionary.get());
  }
  playthrough.set_model(filled(playthrough, entries));
  playthrough.expect_result(counts(playthrough.model()), actual);
  return true;
}

bool from_nil_dictionary(Playthrough& playthrough, const Step& step) {
  const std::string actual = give(playthrough, step, nullptr);
  playthrough.expect_result(counts(playthrough.model()), actual);
  return true;
}

bool to_dictionary(Playthrough& playthrough, const Step& step) {
  const char* const declaration =
      step.variation % 2 == 0 ? "CloneDictionary as Dictionary" : "Operator_Convert as Dictionary";
  const std::string actual = playthrough.outcome([&] {
    const ObjectRef dictionary =
        ObjectRef::adopt(playthrough.container().call<REALobject>(declaration));
    if (!standin::is_dictionary(dictionary.get())) return std::string("no Dictionary");
    return std::to_string(standin::dictionary_count(dictionary.get())) + ", " +
           counts(playthrough.container());
  });
  // The former entries stay locked for good.
  playthrough.drop_caches();
  playthrough.abandoned();
  playthrough.expect_result("0, " + counts(playthrough.model()), actual);
  return true;
}

}  // namespace model::actions
