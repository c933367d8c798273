// Hosts that lack a service without a replacement: the result is the neutral one, nothing is
// raised on that account, and the containers go on.

#include "runtime/strings.h"
#include "runtime/variants.h"
#include "support/host_arrays.h"
#include "support/lock_changes.h"
#include "support/plugin_test.h"

namespace {

using standin::ArrayRef;
using support::Container;
using support::ContainerClass;
using support::Element;
using support::ElementType;

class MissingServices : public support::ClassTest {
 protected:
  Element text(std::string_view bytes, std::uint32_t encoding = host_encoding::utf8) const {
    return container_class().key == ElementType::string ? support::string(bytes, encoding)
                                                        : support::variant_string(bytes, encoding);
  }
  bool equal_keys(const Element& a, const Element& b) const {
    const Container container = make();
    container.put(a, value(1));
    return container.contains(b);
  }
};
class MissingLockServices : public MissingServices {};
class MissingTextServices : public MissingServices {};
class MissingVariantServices : public MissingServices {};
class MissingSetServices : public MissingServices {};
class MissingVariantSetServices : public MissingServices {};
ZRB_FOR_CLASSES(MissingServices, support::all_classes());
// The others give back locks of their elements that they could not take.
ZRB_FOR_CLASSES(MissingLockServices, support::classes_where([](const ContainerClass& c) {
                  return c.key == ElementType::integer &&
                         c.value.value_or(ElementType::integer) == ElementType::integer;
                }));
ZRB_FOR_CLASSES(MissingTextServices, support::classes_where([](const ContainerClass& c) {
                  return c.key != ElementType::integer;
                }));
ZRB_FOR_CLASSES(MissingVariantServices, support::classes_with_key(ElementType::variant));
ZRB_FOR_CLASSES(MissingSetServices, support::set_classes());
ZRB_FOR_CLASSES(MissingVariantSetServices, support::classes_where([](const ContainerClass& c) {
                  return c.is_set() && c.key == ElementType::variant;
                }));

TEST_P(MissingServices, without_built_strings_exceptions_have_no_message) {
  restart_without({"REALBuildString"});
  Container::without_storage(container_class()).count();
  EXPECT_EQ(raised(), "NilObjectException: ");
}

TEST_P(MissingServices, without_settable_properties_exceptions_have_no_message) {
  restart_without({"REALSetPropValueString"});
  const Container container = Container::without_storage(container_class());
  const support::LockWatch watch;
  container.count();
  EXPECT_EQ(raised(), "NilObjectException: ");
  EXPECT_EQ(watch.changes(), support::LockChanges());
}

TEST_P(MissingServices, without_settable_encodings_messages_are_the_same_bytes) {
  restart_without({"REALSetStringEncoding"});
  Container::without_storage(container_class()).clear();
  const standin::ObjectRef exception = host().take_pending_exception();
  ASSERT_TRUE(exception);
  EXPECT_EQ(standin::bytes(standin::exception_message(exception.get()).get()),
            container_class().not_initialized_message());
}

TEST_P(MissingLockServices, what_is_lent_keeps_its_locks_when_it_could_not_be_held) {
  for (const char* missing : {"REALLockObject", "REALUnlockObject"}) {
    SCOPED_TRACE(missing);
    restart_without({missing});
    const Container container = make_with(3);
    const Container other = make_with(3);
    const Container copy = Container::without_storage(container_class());
    const ArrayRef array = support::host_array(container_class().key, {key(1), key(2)});
    container.call_for(container_class().key, "Key(index as integer) as {K}", 0);
    if (container_class().is_map()) {
      container.call<void>("AddKeys(targetArray() as {K})", array.get());
      copy.call<void>("Constructor(other as {Class})", other.get());
    } else {
      copy.call<void>("Constructor(Keys() as {K})", array.get());
    }
    EXPECT_EQ(standin::lock_count(container.get()), 1U);
    EXPECT_EQ(standin::lock_count(copy.get()), 1U);
    EXPECT_EQ(standin::lock_count(other.get()), 1U);
    EXPECT_EQ(standin::lock_count(array.get()), 1U);
    EXPECT_EQ(raised(), "");
  }
}

TEST_P(MissingServices, without_arrays_there_is_nothing_to_return) {
  restart_without({"RuntimeArrayCreateSingleDimBoundedArray"});
  const Container container = make_with(3);
  EXPECT_EQ(container.call<REALarray>("Keys as {K}()"), nullptr);
  if (container_class().is_map()) {
    EXPECT_EQ(container.call<REALarray>("Values as {V}()"), nullptr);
  }
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(container.count(), 3);
}

TEST_P(MissingServices, an_array_without_procedures_reads_as_nothing) {
  const Container container = make_with(3);
  for (const char* finder : {"RuntimeArrayDirectGetGetProc", "RuntimeArrayDirectGetSetProc"}) {
    host().faults().answer_null_at(finder, 1, standin::Faults::Repeat::from_there_on);
  }
  EXPECT_TRUE(support::is_neutral(
      container.call_for(container_class().key, "Key(index as integer) as {K}", 0)));
  EXPECT_EQ(raised(), "");
  EXPECT_EQ(container.count(), 3);
}

TEST_P(MissingServices, array_procedures_are_asked_for_once_where_the_plugin_has_its_own) {
  restart_without({"RuntimeArrayDirectGetGetProc"});
  const Container container = make_with(3);
  for (int round = 0; round < 3; ++round) {
    container.call_for(container_class().key, "Key(index as integer) as {K}", 0);
    EXPECT_EQ(host().calls().lookups("RuntimeArrayDirectGetGetProc"), 1U);
  }
}

TEST_P(MissingSetServices, without_upper_bounds_an_array_counts_as_one_element) {
  restart_without({"RuntimeUBound"});
  const ArrayRef array = support::host_array(container_class().key, {key(1), key(2), key(3)});
  const Container set = Container::without_storage(container_class());
  set.call<void>("Constructor(Keys() as {K})", array.get());
  EXPECT_EQ(set.count(), 1);
  EXPECT_TRUE(set.contains(key(1)));
}

TEST_P(MissingSetServices, elements_of_an_array_without_procedures_are_nothing) {
  const ArrayRef array = support::host_array(container_class().key, {key(1), key(2), key(3)});
  host().faults().answer_null_at("RuntimeArrayDirectGetGetProc", 1,
                                 standin::Faults::Repeat::from_there_on);
  const Container set = Container::without_storage(container_class());
  set.call<void>("Constructor(Keys() as {K})", array.get());
  EXPECT_EQ(set.count(), 1);
  EXPECT_TRUE(support::is_neutral(set.first().key()));
}

TEST_P(MissingVariantSetServices, without_variants_of_strings_every_string_is_nil) {
  restart_without({"StringToVariant"});
  const ArrayRef array =
      support::host_array(ElementType::string, {support::string("a"), support::string("b")});
  const Container set = Container::without_storage(container_class());
  set.call<void>("Constructor(Keys() as string)", array.get());
  EXPECT_EQ(set.count(), 1);
  EXPECT_TRUE(support::is_neutral(set.first().key()));
}

TEST_P(MissingTextServices, without_encodings_utf8_is_read_all_the_same) {
  restart_without({"REALGetStringEncoding"});
  EXPECT_TRUE(equal_keys(text("a"), text("a")));
  EXPECT_FALSE(equal_keys(text("a"), text("b")));
}

TEST_P(MissingTextServices, without_built_strings_raw_bytes_read_as_empty) {
  restart_without({"REALBuildString"});
  EXPECT_TRUE(equal_keys(text("a", host_encoding::as_stored), text("")));
  EXPECT_FALSE(equal_keys(text("a"), text("")));
}

TEST_P(MissingTextServices, a_host_before_2012_that_converts_nothing_has_empty_texts_only) {
  standin::HostOptions options = default_options();
  options.version = 2011.4;
  options.without = {"REALConvertString"};
  restart(options);
  EXPECT_TRUE(equal_keys(text("a"), text("b")));
  EXPECT_TRUE(equal_keys(text("a"), text("")));
}

TEST_P(MissingTextServices, without_string_data_and_lengths_every_text_is_empty) {
  restart_without({"PluginGetStringData", "LenB( s as string ) as integer"});
  EXPECT_TRUE(equal_keys(text("a"), text("b")));
  EXPECT_TRUE(equal_keys(text("a"), text("")));
}

TEST_P(MissingVariantServices, a_value_that_cannot_be_read_at_all_reads_as_0) {
  using namespace standin;
  struct Type {
    const char* accessor;
    const char* property_service;
    Element (*make)(int number);
  };
  const Type types[] = {
      {"VariantToInt32", "REALGetPropValueInt",
       [](int n) -> Element { return variant_from_integer(n); }},
      {"VariantToInt64", "REALGetPropValueInt64",
       [](int n) -> Element { return variant_from_int64(n); }},
      {"VariantToSingle", "REALGetPropValueSingle",
       [](int n) -> Element { return variant_from_single(static_cast<float>(n)); }},
      {"VariantToDouble", "REALGetPropValueDouble",
       [](int n) -> Element { return variant_from_double(n); }},
      {"VariantToString", "REALGetPropValueString",
       [](int n) { return support::variant_string(std::to_string(n)); }}};
  // Without "VariantHash" the keys share a bucket, so that nothing but the comparison decides.
  for (const Type& type : types) {
    SCOPED_TRACE(type.accessor);
    restart_without({"VariantHash"});
    EXPECT_FALSE(equal_keys(type.make(1), type.make(2)));
    EXPECT_GT(host().calls().of(type.accessor), 0U);
    EXPECT_EQ(host().calls().of(type.property_service), 0U);
    restart_without({"VariantHash", type.accessor, type.property_service});
    EXPECT_TRUE(equal_keys(type.make(1), type.make(2)));
  }
}

TEST_P(MissingVariantServices, variants_whose_type_cannot_be_read_are_one_key) {
  // The type reads as nil, and nil equals nil.
  restart_without({"VarType(value As Variant) As Int32", "REALGetPropValueInt", "VariantHash"});
  EXPECT_TRUE(equal_keys(support::variant_integer(1), support::variant_string("text")));
}

TEST(MissingRegistration, a_host_that_registers_no_class_starts_the_plugin_in_vain) {
  standin::HostOptions options;
  options.without = {"PluginRegisterClass"};
  standin::Host host(options);
  EXPECT_THROW(host.load_plugin(ZRB_PLUGIN_PATH), standin::PluginLoadError);
  EXPECT_EQ(host.plugin_versions(), std::vector<std::int32_t>({9})) << "it did start";
  EXPECT_TRUE(host.plugin_classes().empty());
}

}  // namespace
