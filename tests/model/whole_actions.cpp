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

bool max_size(Session& session, const Step& /*step*/) {
  const support::ContainerClass& its_class = session.container_class();
  const std::string of_ordered = its_class.is_set() ? "1073741823" : "536870911";
  const std::string actual =
      session.outcome([&] { return std::to_string(session.container().max_size()); });
  session.expect_result(its_class.is_hashed() ? "-1" : of_ordered, actual);
  return true;
}

bool clear(Session& session, const Step& /*step*/) {
  const std::string actual = session.outcome([&] {
    session.container().clear();
    return std::string();
  });
  session.drop_caches();
  for (const Entry& entry : session.model().order()) session.dropped(entry.key->number);
  session.expect_result("", actual);
  return true;
}

bool recreate(Session& session, const Step& /*step*/) {
  const std::vector<Entry> former = session.model().order();
  replace(session, Container::make(session.container_class()), former);
  session.set_model(session.new_model());
  return true;
}

bool construct_again(Session& session, const Step& /*step*/) {
  const std::string actual = session.outcome([&] {
    session.container().construct();
    return std::string();
  });
  session.drop_caches();
  session.abandoned();
  session.expect_result("", actual);
  return true;
}

bool use_uninitialised(Session& session, const Step& step) {
  const Container container = Container::without_storage(session.container_class());
  const Object& key = session.key_of(step);
  const std::string actual = session.outcome([&] {
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
  session.expect_result(
      "NilObjectException: " + session.container_class().not_initialized_message(), actual);
  return true;
}

bool from_keys(Session& session, const Step& step) {
  const std::vector<const Object*> keys = session.keys_of(step, 300, true);
  Container made = Container::without_storage(session.container_class());
  {
    std::vector<Element> elements;
    for (const Object* key : keys) elements.push_back(key->element);
    const ArrayRef array = support::host_array(session.container_class().key, elements);
    elements.clear();
    made.call<void>("Constructor(Keys() as {K})", array.get());
  }
  const std::string actual = session.outcome([&] { return counts(made); });
  const std::vector<Entry> former = session.model().order();
  std::unique_ptr<Model> expected = session.new_model();
  for (const Object* key : keys) session.stored(*expected, *key, nullptr);
  replace(session, std::move(made), former);
  session.set_model(std::move(expected));
  session.expect_result(counts(session.model()), actual);
  return true;
}

bool from_texts(Session& session, const Step& step) {
  std::vector<int> numbers;
  for (const Object* key : session.keys_of(step, 60, true)) {
    if (session.objects().is_text(key->number)) numbers.push_back(key->number);
  }
  session.performed.keys.clear();
  Container made = Container::without_storage(session.container_class());
  {
    std::vector<Element> texts;
    for (const int number : numbers) {
      const Object& text = session.objects().key_text(number);
      session.performed.keys.push_back({*text.content, false});
      texts.push_back(text.element);
    }
    const ArrayRef array = support::host_array(ElementType::string, texts);
    texts.clear();
    made.call<void>("Constructor(Keys() as string)", array.get());
  }
  const std::string actual = session.outcome([&] { return counts(made); });
  std::map<std::string, Element> variants;
  for (Element& key : made.keys()) variants[shown(key)] = std::move(key);

  const std::vector<Entry> former = session.model().order();
  std::unique_ptr<Model> expected = session.new_model();
  for (const int number : numbers) {
    const Object& text = session.objects().key_text(number);
    // The variant that the set made of the text holds it from now on.
    session.book().add(text.element, 1);
    if (expected->find(number) != nullptr) {
      // This one was compared with the key that is there already, so it stays alive for good.
      session.searched_by_unknown(*expected, number);
      session.add_live(1);
      continue;
    }
    auto variant = variants.extract(shown(session.container_class().key, *text.content));
    session.expect("the key made of a text is there", true, !variant.empty());
    const Object& key = session.objects().adopt_key(number, std::move(variant.mapped()));
    session.stored(*expected, key, nullptr);
  }
  replace(session, std::move(made), former);
  session.set_model(std::move(expected));
  session.expect_result(counts(session.model()), actual);
  return true;
}

bool from_nil_array(Session& session, const Step& step) {
  const bool of_texts =
      step.variation % 2 == 1 && session.container_class().key == ElementType::variant;
  const char* const declaration =
      of_texts ? "Constructor(Keys() as string)" : "Constructor(Keys() as {K})";
  const Container made = Container::without_storage(session.container_class());
  const std::string raised = session.outcome([&] {
    made.call<void>(declaration, REALarray{nullptr});
    return std::string();
  });
  session.expect_result("NilObjectException: values array is nil", raised);
  session.expect("Count afterwards", std::string("NilObjectException: Set not initialized"),
                 session.outcome([&] { return std::to_string(made.count()); }));
  return true;
}

}  // namespace model::actions
