// Copies of maps.
#include "model/actions.h"
#include "model/replacement.h"

namespace model::actions {
namespace {

using support::Container;

constexpr const char* copy_constructor = "Constructor(other as {Class})";

/// A copy that was made of the container: it takes the container's place or goes at once.
void take_copy(Session& session, const Step& step, Container made, std::string actual) {
  const std::vector<Entry> source = session.model().order();
  std::unique_ptr<Model> expected = filled(session, source);
  const std::string expected_counts = counts(*expected);
  session.performed.index = step.variation % 2;
  if (step.variation % 2 == 0) {
    replace(session, std::move(made), source);
    session.set_model(std::move(expected));
  } else {
    made.release();
    released(session, source);
  }
  session.expect_result(expected_counts, actual);
}

}  // namespace

bool clone(Session& session, const Step& step) {
  Container made = Container::adopt(session.container_class(),
                                    session.container().call<REALobject>("Clone as {Class}"));
  session.expect("Clone gives an instance", true, static_cast<bool>(made));
  std::string actual = session.outcome([&] { return counts(made); });
  take_copy(session, step, std::move(made), std::move(actual));
  return true;
}

bool copy(Session& session, const Step& step) {
  Container made = Container::without_storage(session.container_class());
  made.call<void>(copy_constructor, session.container().get());
  std::string actual = session.outcome([&] { return counts(made); });
  take_copy(session, step, std::move(made), std::move(actual));
  return true;
}

bool copy_over(Session& session, const Step& step) {
  const std::vector<const Object*> keys = session.keys_of(step, 300, false);
  const std::vector<const Object*> values = session.values_of(step, keys.size());
  std::unique_ptr<Model> other_model = session.new_model();
  std::string actual;
  {
    const Container other = Container::make(session.container_class());
    for (std::size_t i = 0; i < keys.size(); ++i) {
      other.assign_value(keys[i]->element, values[i]->element);
      session.stored(*other_model, *keys[i], values[i]);
    }
    session.container().call<void>(copy_constructor, other.get());
    actual = session.outcome([&] { return counts(session.container()); });
  }
  session.drop_caches();
  released(session, session.model().order());
  session.abandoned();
  session.set_model(filled(session, other_model->order()));
  released(session, other_model->order());
  session.expect_result(counts(session.model()), actual);
  return true;
}

bool copy_itself(Session& session, const Step& /*step*/) {
  const std::string actual = session.outcome([&] {
    session.container().call<void>(copy_constructor, session.container().get());
    return counts(session.container());
  });
  session.drop_caches();
  released(session, session.model().order());
  session.abandoned();
  session.expect_result(counts(session.model()), actual);
  return true;
}

bool copy_nil(Session& session, const Step& /*step*/) {
  const std::string actual = session.outcome([&] {
    session.container().call<void>(copy_constructor, REALobject{nullptr});
    return std::string();
  });
  session.expect_result("NilObjectException: Other map is nil", actual);
  return true;
}

bool copy_uninitialised(Session& session, const Step& /*step*/) {
  const Container other = Container::without_storage(session.container_class());
  const std::string actual = session.outcome([&] {
    session.container().call<void>(copy_constructor, other.get());
    return std::string();
  });
  session.drop_caches();
  released(session, session.model().order());
  session.abandoned();
  session.expect_result("NilObjectException: Map not initialized", actual);
  return true;
}

}  // namespace model::actions
