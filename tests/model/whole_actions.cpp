// Operations on a container as a whole: construction and clearing.
#include <map>

#include "model/actions.h"
#include "model/replacement.h"
#include "support/host_arrays.h"

namespace model::actions {
using standin::ArrayRef;
using support::Container;
using support::Element;
using support::ElementType;

bool max_size(Playthrough& playthrough, const Step& /*step*/) {
  const support::ContainerClass& its_class = playthrough.container_class();
  const std::string of_ordered = its_class.is_set() ? "1073741823" : "536870911";
  const std::string actual =
      playthrough.outcome([&] { return std::to_string(playthrough.container().max_size()); });
  playthrough.expect_result(its_class.is_hashed() ? "-1" : of_ordered, actual);
  return true;
}

bool clear(Playthrough& playthrough, const Step& /*step*/) {
  const std::string actual = playthrough.outcome([&] {
    playthrough.container().clear();
    return std::string();
  });
  playthrough.drop_caches();
  for (const Entry& entry : playthrough.model().order()) playthrough.dropped(entry.key->number);
  playthrough.expect_result("", actual);
  return true;
}

bool recreate(Playthrough& playthrough, const Step& /*step*/) {
  const std::vector<Entry> former = playthrough.model().order();
  replace(playthrough, Container::make(playthrough.container_class()), former);
  playthrough.set_model(playthrough.new_model());
  return true;
}

bool construct_again(Playthrough& playthrough, const Step& /*step*/) {
  const std::string actual = playthrough.outcome([&] {
    playthrough.container().construct();
    return std::string();
  });
  playthrough.drop_caches();
  playthrough.abandoned();
  playthrough.expect_result("", actual);
  return true;
}

bool use_uninitialised(Playthrough& playthrough, const Step& step) {
  const Container container = Container::without_storage(playthrough.container_class());
  const Object& key = playthrough.key_of(step);
  const std::string actual = playthrough.outcome([&] {
    switch (step.variation % 4) {
      case 0:
        return std::to_string(container.count());
      case 1:
        return std::to_string(container.remove(key.element));
      case 2:
        return std::to_string(container.count_key(key.element));
      default:
        container.clear();
        return std::string();
    }
  });
  playthrough.expect_result(
      "NilObjectException: " + playthrough.container_class().not_initialized_message(), actual);
  return true;
}

bool from_keys(Playthrough& playthrough, const Step& step) {
  const std::vector<const Object*> keys = playthrough.keys_of(step, 300, true);
  Container made = Container::without_storage(playthrough.container_class());
  {
    std::vector<Element> elements;
    for (const Object* key : keys) elements.push_back(key->element);
    const ArrayRef array = support::host_array(playthrough.container_class().key, elements);
    elements.clear();
    made.call<void>("Constructor(Keys() as {K})", array.get());
  }
  const std::string actual = playthrough.outcome([&] { return counts(made); });
  const std::vector<Entry> former = playthrough.model().order();
  std::unique_ptr<Model> expected = playthrough.new_model();
  for (const Object* key : keys) playthrough.stored(*expected, *key, nullptr);
  replace(playthrough, std::move(made), former);
  playthrough.set_model(std::move(expected));
  playthrough.expect_result(counts(playthrough.model()), actual);
  return true;
}

bool from_texts(Playthrough& playthrough, const Step& step) {
  std::vector<int> numbers;
  for (const Object* key : playthrough.keys_of(step, 60, true)) {
    if (playthrough.objects().is_text(key->number)) numbers.push_back(key->number);
  }
  playthrough.performed.keys.clear();
  Container made = Container::without_storage(playthrough.container_class());
  {
    std::vector<Element> texts;
    for (const int number : numbers) {
      const Object& text = playthrough.objects().key_text(number);
      playthrough.performed.keys.push_back({*text.content, false});
      texts.push_back(text.element);
    }
    const ArrayRef array = support::host_array(ElementType::string, texts);
    texts.clear();
    made.call<void>("Constructor(Keys() as string)", array.get());
  }
  const std::string actual = playthrough.outcome([&] { return counts(made); });
  std::map<std::string, Element> variants;
  for (Element& key : made.keys()) variants[shown(key)] = std::move(key);

  const std::vector<Entry> former = playthrough.model().order();
  std::unique_ptr<Model> expected = playthrough.new_model();
  for (const int number : numbers) {
    const Object& text = playthrough.objects().key_text(number);
    // The variant that the set made of the text holds it from now on.
    playthrough.book().add(text.element, 1);
    if (expected->find(number) != nullptr) {
      // This one was compared with the key that is there already, so it stays alive for good.
      playthrough.searched_by_unknown(*expected, number);
      playthrough.add_live(1);
      continue;
    }
    auto variant = variants.extract(shown(playthrough.container_class().key, *text.content));
    playthrough.expect("the key made of a text is there", true, !variant.empty());
    const Object& key = playthrough.objects().adopt_key(number, std::move(variant.mapped()));
    playthrough.stored(*expected, key, nullptr);
  }
  replace(playthrough, std::move(made), former);
  playthrough.set_model(std::move(expected));
  playthrough.expect_result(counts(playthrough.model()), actual);
  return true;
}

bool from_nil_array(Playthrough& playthrough, const Step& step) {
  const bool of_texts =
      step.variation % 2 == 1 && playthrough.container_class().key == ElementType::variant;
  const char* const declaration =
      of_texts ? "Constructor(Keys() as string)" : "Constructor(Keys() as {K})";
  const Container made = Container::without_storage(playthrough.container_class());
  const std::string raised = playthrough.outcome([&] {
    made.call<void>(declaration, REALarray{nullptr});
    return std::string();
  });
  playthrough.expect_result("NilObjectException: values array is nil", raised);
  playthrough.expect("Count afterwards", std::string("NilObjectException: Set not initialized"),
                     playthrough.outcome([&] { return std::to_string(made.count()); }));
  return true;
}

}  // namespace model::actions
