// How failures reach the host: by which exception class, and what happens when the host lacks it.
#include "runtime/exceptions.h"
#include "runtime/strings.h"
#include "support/plugin_test.h"

namespace {

using support::Container;
using support::Iterator;

class Errors : public support::ClassTest {
 protected:
  void restart_without_classes(std::initializer_list<const char*> names) {
    standin::HostOptions options = default_options();
    options.without_classes.insert(names.begin(), names.end());
    restart(options);
  }
  std::string message() const { return container_class().not_initialized_message(); }
};
class MapErrors : public Errors {};
ZRB_FOR_CLASSES(Errors, support::all_classes());
ZRB_FOR_CLASSES(MapErrors, support::map_classes());

TEST_P(Errors, without_the_named_class_a_runtime_exception_carries_the_message) {
  restart_without_classes({"NilObjectException"});
  EXPECT_EQ(Container::without_storage(container_class()).count(), 0);
  EXPECT_EQ(raised(), "RuntimeException: " + message());
  const Container container = make_with(1);
  EXPECT_FALSE(container.first().is_equal(nullptr));
  EXPECT_EQ(raised(), "RuntimeException: other iterator is nil");
}

TEST_P(Errors, without_both_classes_nothing_is_raised_and_nothing_stays_locked) {
  restart_without_classes({"NilObjectException", "RuntimeException"});
  const Container container = Container::without_storage(container_class());
  const auto before = host().ledger().snapshot();
  EXPECT_EQ(container.count(), 0);
  EXPECT_FALSE(container.empty());
  EXPECT_FALSE(container.find(key(1)));
  EXPECT_FALSE(host().has_pending_exception());
  EXPECT_TRUE(host().ledger().changes_since(before).empty());
}

TEST_P(MapErrors, without_the_key_not_found_class_a_runtime_exception_has_no_message) {
  restart_without_classes({"KeyNotFoundException"});
  make().value(key(1));
  ASSERT_TRUE(host().has_pending_exception());
  EXPECT_FALSE(standin::exception_message(host().pending_exception()));
  EXPECT_EQ(raised(), "RuntimeException: ");
}

TEST_P(MapErrors, without_both_classes_an_absent_key_reads_as_nothing) {
  restart_without_classes({"KeyNotFoundException", "RuntimeException"});
  EXPECT_TRUE(support::is_neutral(make().value(key(1))));
  EXPECT_FALSE(host().has_pending_exception());
}

TEST_P(Errors, the_exception_is_the_hosts_alone_after_the_call) {
  const Container container = Container::without_storage(container_class());
  container.clear();
  const standin::ObjectRef exception = host().take_pending_exception();
  ASSERT_TRUE(exception);
  EXPECT_EQ(standin::lock_count(exception.get()), 1u);
  const standin::StringRef text = standin::exception_message(exception.get());
  EXPECT_EQ(standin::lock_count(text.get()), 2u) << "the exception's and the test's";
}

TEST_P(Errors, the_message_is_ascii_text) {
  const Container container = Container::without_storage(container_class());
  container.clear();
  const standin::ObjectRef exception = host().take_pending_exception();
  const standin::StringRef text = standin::exception_message(exception.get());
  EXPECT_EQ(standin::bytes(text.get()), message());
  EXPECT_EQ(standin::encoding(text.get()), host_encoding::ascii);
}

TEST_P(Errors, a_host_that_cannot_raise_is_left_in_peace) {
  restart_without({"RuntimeRaiseException"});
  const Container container = Container::without_storage(container_class());
  const auto before = host().ledger().snapshot();
  EXPECT_EQ(container.count(), 0);
  EXPECT_TRUE(host().ledger().changes_since(before).empty());
}

TEST_P(MapErrors, the_message_of_an_absent_key_is_set_to_nothing) {
  const Container map = make();
  host().calls().reset();
  map.value(key(1));
  EXPECT_EQ(host().calls().of("REALSetPropValueString"), 1u);
  EXPECT_EQ(host().calls().of("REALBuildString"), 0u);
  EXPECT_EQ(raised(), "KeyNotFoundException: ");
}

TEST_P(Errors, work_goes_on_after_a_failure) {
  const Container container = make_with(3);
  container.first().is_equal(nullptr);
  EXPECT_EQ(raised(), "NilObjectException: other iterator is nil");
  container.put(3);
  EXPECT_EQ(container.count(), 4);
}

}  // namespace
