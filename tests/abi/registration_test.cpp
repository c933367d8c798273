// What the plugin registers at its start, and every field of its class records.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/container_classes.h"
#include "support/registration_recorder.h"

namespace {

using support::ContainerClass;
using support::LoadedPlugin;
using support::Registration;

constexpr bool is_64_bit = sizeof(void*) == 8;

const REALclassDefinition& record_of(const std::string& name) {
  for (const REALclassDefinition* record : LoadedPlugin::first_registration().records) {
    if (name == record->name) return *record;
  }
  throw std::runtime_error("not registered: " + name);
}

std::vector<std::string> names(const Registration& registration) {
  std::vector<std::string> result;
  for (const REALclassDefinition* record : registration.records) result.emplace_back(record->name);
  return result;
}

std::vector<std::string> expected_names() {
  std::vector<std::string> result;
  for (const ContainerClass& container_class : support::all_classes()) {
    result.emplace_back(container_class.name);
    result.emplace_back(container_class.iterator_name);
  }
  return result;
}

TEST(Registration, the_plugin_starts_with_result_zero) {
  EXPECT_EQ(LoadedPlugin::first_registration().result, 0);
}

TEST(Registration, interface_version_9_is_announced_and_the_host_asked_for_its_version_first) {
  const std::vector<std::string>& events = LoadedPlugin::first_registration().events;
  ASSERT_GE(events.size(), 2u);
  EXPECT_EQ(events[0], "version 9");
  EXPECT_EQ(events[1], "host version");
  EXPECT_EQ(events.size(), 2u + 36u);
}

TEST(Registration, thirty_six_classes_are_registered_each_container_before_its_iterator) {
  EXPECT_EQ(names(LoadedPlugin::first_registration()), expected_names());
}

TEST(Registration, the_iterator_of_the_variant_to_variant_ordered_map_lacks_the_word_ordered) {
  EXPECT_EQ(names(LoadedPlugin::first_registration()).back(), "VariantToVariantMapIteratorZRB");
}

TEST(Registration, registering_again_hands_over_the_same_records_and_rounds_nothing_more) {
  std::vector<std::int32_t> sizes;
  for (const REALclassDefinition* record : LoadedPlugin::first_registration().records) {
    sizes.push_back(record->dataSize);
  }
  const Registration again = LoadedPlugin::started().run_entry();
  EXPECT_EQ(again.result, 0);
  EXPECT_EQ(again.records, LoadedPlugin::first_registration().records);
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    EXPECT_EQ(again.records[i]->dataSize, sizes[i]) << again.records[i]->name;
  }
}

class ClassRecord : public ::testing::TestWithParam<ContainerClass> {
 protected:
  const REALclassDefinition& container() const { return record_of(GetParam().name); }
  const REALclassDefinition& iterator() const { return record_of(GetParam().iterator_name); }
};

INSTANTIATE_TEST_SUITE_P(AllClasses, ClassRecord, ::testing::ValuesIn(support::all_classes()),
                         support::ClassName{});

TEST_P(ClassRecord, version_flags_and_unused_tables_are_the_same_in_every_record) {
  for (const REALclassDefinition* record : {&container(), &iterator()}) {
    SCOPED_TRACE(record->name);
    EXPECT_EQ(record->version, 9);
    EXPECT_EQ(record->superName, nullptr);
    EXPECT_EQ(record->constructor, nullptr);
    EXPECT_EQ(record->events, nullptr);
    EXPECT_EQ(record->eventCount, 0);
    EXPECT_EQ(record->eventInstances, nullptr);
    EXPECT_EQ(record->eventInstanceCount, 0);
    EXPECT_EQ(record->interfaces, nullptr);
    EXPECT_EQ(record->attributes, nullptr);
    EXPECT_EQ(record->attributeCount, 0);
    EXPECT_EQ(record->constants, nullptr);
    EXPECT_EQ(record->constantCount, 0);
    EXPECT_EQ(record->mFlags, 4);
    EXPECT_EQ(record->sharedProperties, nullptr);
    EXPECT_EQ(record->sharedPropertyCount, 0);
    EXPECT_EQ(record->sharedMethods, nullptr);
    EXPECT_EQ(record->sharedMethodCount, 0);
  }
}

TEST_P(ClassRecord, the_data_size_is_rounded_up_to_a_multiple_of_16) {
  EXPECT_EQ(container().dataSize, GetParam().is_map() && is_64_bit ? 32 : 16);
  EXPECT_EQ(iterator().dataSize, is_64_bit ? 32 : 16);
}

TEST_P(ClassRecord, the_host_alone_writes_the_offset_of_the_instance_data) {
  EXPECT_EQ(container().forSystemUse, 0);
  EXPECT_EQ(iterator().forSystemUse, 0);
}

TEST_P(ClassRecord, containers_have_a_destructor_and_iterators_none) {
  EXPECT_NE(container().destructor, nullptr);
  EXPECT_EQ(iterator().destructor, nullptr);
}

TEST_P(ClassRecord, method_counts_are_those_of_the_kind) {
  EXPECT_EQ(container().methodCount, GetParam().method_count());
  EXPECT_EQ(iterator().methodCount, GetParam().iterator_method_count());
}

TEST_P(ClassRecord, properties_stand_in_order_and_are_read_only) {
  std::vector<std::pair<std::string, std::string>> expected = {
      {"MaxSize", "Integer"}, {"Count", "Integer"}, {"BinCount", "Integer"}, {"Empty", "Boolean"}};
  if (GetParam().is_ordered()) expected.erase(expected.begin() + 2);
  ASSERT_EQ(container().propertyCount, static_cast<std::int32_t>(expected.size()));
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const REALproperty& property = container().properties[i];
    SCOPED_TRACE(expected[i].first);
    EXPECT_EQ(property.group, nullptr);
    EXPECT_EQ(property.name, expected[i].first);
    EXPECT_EQ(property.type, expected[i].second);
    EXPECT_EQ(property.flags, 6);
    EXPECT_NE(property.getter, nullptr);
    EXPECT_EQ(property.setter, nullptr);
    EXPECT_EQ(property.param, 0);
    EXPECT_EQ(property.editor, nullptr);
    EXPECT_EQ(property.enumCount, 0);
    EXPECT_EQ(property.enumEntries, nullptr);
  }
}

TEST_P(ClassRecord, iterators_have_no_properties) {
  EXPECT_EQ(iterator().properties, nullptr);
  EXPECT_EQ(iterator().propertyCount, 0);
}

}  // namespace
