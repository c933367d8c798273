// Sets made from arrays of keys.
#include "support/host_arrays.h"
#include "support/lock_changes.h"
#include "support/plugin_test.h"

namespace {

using standin::ArrayRef;
using support::Container;
using support::Element;
using support::ElementType;
using support::LockWatch;

class SetConstructors : public support::ClassTest {
 protected:
  Container constructed_from(const std::vector<Element>& keys) const {
    const Container set = Container::without_storage(container_class());
    const ArrayRef array = support::host_array(container_class().key, keys);
    set.call<void>("Constructor(Keys() as {K})", array.get());
    return set;
  }
};
class VariantSetConstructors : public SetConstructors {
 protected:
  Container constructed_from_texts(const std::vector<Element>& texts) const {
    const Container set = Container::without_storage(container_class());
    const ArrayRef array = support::host_array(ElementType::string, texts);
    set.call<void>("Constructor(Keys() as string)", array.get());
    return set;
  }
};
ZRB_FOR_CLASSES(SetConstructors, support::set_classes());
ZRB_FOR_CLASSES(VariantSetConstructors,
                support::classes_where([](const support::ContainerClass& c) {
                  return c.is_set() && c.key == ElementType::variant;
                }));

TEST_P(SetConstructors, a_set_has_the_keys_of_the_array) {
  std::vector<Element> keys;
  for (int i = 0; i < 250; ++i) keys.push_back(key(i));
  const Container set = constructed_from(keys);
  EXPECT_EQ(set.count(), 250);
  EXPECT_EQ(set.described_keys(), make_with(250).described_keys());
}

TEST_P(SetConstructors, of_equal_keys_the_first_one_stays) {
  const std::vector<Element> keys = {key(1), key(2), key(1)};
  const Container set = constructed_from(keys);
  EXPECT_EQ(set.count(), 2);
  EXPECT_EQ(support::handle(set.find(key(1)).key()), support::handle(keys[0]));
}

TEST_P(SetConstructors, an_empty_array_makes_an_empty_set) {
  const Container set = constructed_from({});
  EXPECT_EQ(set.count(), 0);
  EXPECT_TRUE(set.empty());
  set.put(1);
  EXPECT_EQ(set.count(), 1);
}

TEST_P(SetConstructors, a_nil_array_raises_and_leaves_the_set_without_storage) {
  const Container set = Container::without_storage(container_class());
  set.call<void>("Constructor(Keys() as {K})", REALarray{nullptr});
  EXPECT_EQ(raised(), "NilObjectException: values array is nil");
  EXPECT_EQ(set.count(), 0);
  EXPECT_EQ(raised(), "NilObjectException: Set not initialized");
}

TEST_P(SetConstructors, each_key_is_locked_once_by_the_set) {
  const Element stored_key = key(1);
  const ArrayRef array = support::host_array(container_class().key, {stored_key});
  const Container set = Container::without_storage(container_class());
  const LockWatch watch;
  set.call<void>("Constructor(Keys() as {K})", array.get());
  support::LockChanges expected;
  support::expect(expected, stored_key, 1);
  EXPECT_EQ(watch.changes(), expected);
}

TEST_P(SetConstructors, the_plugins_own_array_procedures_do_the_same) {
  restart_without({"RuntimeArrayDirectGetGetProc"});
  const Element stored_key = key(1);
  const ArrayRef array = support::host_array(container_class().key, {stored_key});
  const Container set = Container::without_storage(container_class());
  const LockWatch watch;
  set.call<void>("Constructor(Keys() as {K})", array.get());
  EXPECT_EQ(watch.change(stored_key), support::one_lock(stored_key));
  EXPECT_TRUE(set.contains(key(1)));
}

TEST_P(VariantSetConstructors, strings_become_variants) {
  const Container set =
      constructed_from_texts({support::string("b"), support::string("a"), support::string("b")});
  EXPECT_EQ(set.count(), 2);
  EXPECT_TRUE(set.contains(support::variant_string("a")));
  EXPECT_TRUE(set.contains(support::variant_string("b")));
  EXPECT_FALSE(set.contains(support::variant_string("c")));
  set.insert(support::variant_string("a"));
  EXPECT_EQ(set.count(), 2);
}

TEST_P(VariantSetConstructors, a_nil_string_becomes_the_empty_text) {
  const Container set = constructed_from_texts({support::neutral(ElementType::string)});
  EXPECT_EQ(set.count(), 1);
  EXPECT_TRUE(set.contains(support::variant_string("")));
  EXPECT_FALSE(set.contains(support::neutral(ElementType::variant)));
}

TEST_P(VariantSetConstructors, a_string_is_held_by_its_variant_alone) {
  const Element text = support::string("text");
  const ArrayRef array = support::host_array(ElementType::string, {text});
  const Container set = Container::without_storage(container_class());
  const auto live = host().ledger().live_count();
  const LockWatch watch;
  set.call<void>("Constructor(Keys() as string)", array.get());
  EXPECT_EQ(host().ledger().live_count(), live + 1) << "the variant";
  EXPECT_EQ(watch.change(text), 1) << "held by the variant";
  set.clear();
  EXPECT_EQ(host().ledger().live_count(), live);
  EXPECT_EQ(watch.changes(), support::LockChanges());
}

TEST_P(VariantSetConstructors, a_nil_array_of_strings_raises_too) {
  const Container set = Container::without_storage(container_class());
  set.call<void>("Constructor(Keys() as string)", REALarray{nullptr});
  EXPECT_EQ(raised(), "NilObjectException: values array is nil");
  EXPECT_EQ(set.first_word(), nullptr);
}

}  // namespace
