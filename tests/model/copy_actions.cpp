// Copies of maps.
#include "model/actions.h"
#include "model/replacement.h"

namespace model::actions {
namespace {

using support::Container;

constexpr const char* copy_constructor = "Constructor(other as {Class})";

/// A copy that was made of the container: it takes the container's place or goes at once.
void take_copy(Playthrough& playthrough, const Step& step, Container made, std::string actual) {
  const std::vector<Entry> source = playthrough.model().order();
  std::unique_ptr<Model> expected = filled(playthrough, source);
  const std::string expected_counts = counts(*expected);
  playthrough.performed.index = step.variation % 2;
  if (step.variation % 2 == 0) {
    replace(playthrough, std::move(made), source);
    playthrough.set_model(std::move(expected));
  } else {
    made.release();
    released(playthrough, source);
  }
  playthrough.expect_result(expected_counts, actual);
}

}  // namespace

bool clone(Playthrough& playthrough, const Step& step) {
  Container made = Container::adopt(playthrough.container_class(),
                                    playthrough.container().call<REALobject>("Clone as {Class}"));
  playthrough.expect("Clone gives an instance", true, static_cast<bool>(made));
  std::string actual = playthrough.outcome([&] { return counts(made); });
  take_copy(playthrough, step, std::move(made), std::move(actual));
  return true;
}

bool copy(Playthrough& playthrough, const Step& step) {
  Container made = Container::without_storage(playthrough.container_class());
  made.call<void>(copy_constructor, playthrough.container().get());
  std::string actual = playthrough.outcome([&] { return counts(made); });
  take_copy(playthrough, step, std::move(made), std::move(actual));
  return true;
}

bool copy_over(Playthrough& playthrough, const Step& step) {
  const std::vector<const Object*> keys = playthrough.keys_of(step, 300, false);
  const std::vector<const Object*> values = playthrough.values_of(step, keys.size());
  std::unique_ptr<Model> other_model = playthrough.new_model();
  std::string actual;
  {
    const Container other = Container::make(playthrough.container_class());
    for (std::size_t i = 0; i < keys.size(); ++i) {
      other.assign_value(keys[i]->element, values[i]->element);
      playthrough.stored(*other_model, *keys[i], values[i]);
    }
    playthrough.container().call<void>(copy_constructor, other.get());
    actual = playthrough.outcome([&] { return counts(playthrough.container()); });
  }
  playthrough.drop_caches();
  released(playthrough, playthrough.model().order());
  playthrough.abandoned();
  playthrough.set_model(filled(playthrough, other_model->order()));
  released(playthrough, other_model->order());
  playthrough.expect_result(counts(playthrough.model()), actual);
  return true;
}

bool copy_itself(Playthrough& playthrough, const Step& /*step*/) {
  const std::string actual = playthrough.outcome([&] {
    playthrough.container().call<void>(copy_constructor, playthrough.container().get());
    return counts(playthrough.container());
  });
  playthrough.drop_caches();
  released(playthrough, playthrough.model().order());
  playthrough.abandoned();
  playthrough.expect_result(counts(playthrough.model()), actual);
  return true;
}

bool copy_nil(Playthrough& playthrough, const Step& /*step*/) {
  const std::string actual = playthrough.outcome([&] {
    playthrough.container().call<void>(copy_constructor, REALobject{nullptr});
    return std::string();
  });
  playthrough.expect_result("NilObjectException: Other map is nil", actual);
  return true;
}

bool copy_uninitialised(Playthrough& playthrough, const Step& /*step*/) {
  const Container other = Container::without_storage(playthrough.container_class());
  const std::string actual = playthrough.outcome([&] {
    playthrough.container().call<void>(copy_constructor, other.get());
    return std::string();
  });
  playthrough.drop_caches();
  released(playthrough, playthrough.model().order());
  playthrough.abandoned();
  playthrough.expect_result("NilObjectException: Map not initialized", actual);
  return true;
}

}  // namespace model::actions
