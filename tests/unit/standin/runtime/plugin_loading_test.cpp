// Loading plugins, and everything that is none.
#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>

#include "fake_host_test.h"

namespace standin {
namespace {

using testing::AllOf;
using testing::HasSubstr;

std::string load_error(const std::string& path) {
  Host host;
  try {
    host.load_plugin(path);
  } catch (const PluginLoadError& error) {
    return error.what();
  }
  return "loaded";
}

using PluginLoadingTest = FakePluginTest;

TEST_F(PluginLoadingTest, classes_come_in_their_order_and_the_start_is_recorded) {
  start();
  ASSERT_EQ(host_->plugin_classes().size(), 2U);
  EXPECT_EQ(host_->plugin_classes()[0]->name(), "Fake");
  EXPECT_EQ(host_->plugin_classes()[1]->name(), "FakePartner");
  EXPECT_EQ(host_->plugin_versions(), std::vector<std::int32_t>{9});
  EXPECT_EQ(host_->plugin_main_result(), 7);
}

TEST_F(PluginLoadingTest, each_host_starts_with_a_fresh_copy) {
  start();
  EXPECT_EQ(property("CallsOfMain").as_integer(), 1);
  ObjectRef survivor = std::move(fake_);  // keeps the first copy in memory
  start();
  EXPECT_EQ(property("CallsOfMain").as_integer(), 1);
  fake_.reset();
  host_.reset();
  survivor.reset();  // its destructor, and so its library, must still be there
}

TEST_F(PluginLoadingTest, instance_data_is_zeroed_aligned_and_where_the_record_says) {
  for (const bool strict : {false, true}) {
    HostOptions options;
    options.strict_ledger = strict;
    start(options);
    for (const ClassInfo* class_info : host_->plugin_classes()) {
      const ObjectRef instance = host_->new_instance(*class_info);
      const auto* data = static_cast<const char*>(instance_data(instance.get(), *class_info));
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(instance.get()) % 16, 0U);
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(data) % 16, 0U);
      EXPECT_EQ(class_info->definition()->forSystemUse,
                data - reinterpret_cast<const char*>(instance.get()));
      EXPECT_EQ(std::string(data, 16), std::string(16, '\0'));
    }
  }
}

TEST_F(PluginLoadingTest, a_strict_host_gives_classes_different_offsets) {
  HostOptions options;
  options.strict_ledger = true;
  start(options);
  EXPECT_NE(host_->plugin_classes()[0]->data_offset(), host_->plugin_classes()[1]->data_offset());
}

TEST(PluginLoadError, a_missing_file_is_named) {
  EXPECT_THAT(
      load_error("/nowhere/plugin.so"),
      AllOf(HasSubstr("/nowhere/plugin.so"), HasSubstr("No such file"), HasSubstr("build it")));
}

TEST(PluginLoadError, a_folder_is_no_plugin) {
  EXPECT_THAT(load_error("/tmp"), HasSubstr("folder"));
}

TEST(PluginLoadError, a_text_file_is_no_plugin) {
  const std::string path = testing::TempDir() + "not_a_plugin.so";
  std::ofstream(path) << "hello\n";
  EXPECT_THAT(load_error(path), AllOf(HasSubstr(path), HasSubstr("-bit shared library")));
  std::remove(path.c_str());
}

TEST(PluginLoadError, an_empty_file_is_no_plugin) {
  const std::string path = testing::TempDir() + "empty_plugin.so";
  std::ofstream(path).close();
  EXPECT_THAT(load_error(path), HasSubstr(path));
  std::remove(path.c_str());
}

TEST(PluginLoadError, a_library_that_is_cut_short_is_told) {
  std::ifstream whole(FAKE_PLUGIN, std::ios::binary);
  std::string start(4000, '\0');
  ASSERT_TRUE(whole.read(start.data(), 4000));
  const std::string path = testing::TempDir() + "cut_plugin.so";
  std::ofstream(path, std::ios::binary) << start;
  EXPECT_THAT(load_error(path), AllOf(HasSubstr(path), HasSubstr("ends too early")));
  std::remove(path.c_str());
}

TEST(PluginLoadError, a_library_needs_the_entry) {
  EXPECT_THAT(load_error(NO_PLUGIN), HasSubstr("REALPluginMain"));
}

TEST(PluginLoadError, a_plugin_must_register_something) {
  EXPECT_THAT(load_error(SILENT_PLUGIN), HasSubstr("registered no class"));
}

TEST(PluginLoadError, two_plugins_cannot_share_a_class_name) {
  Host host;
  host.load_plugin(FAKE_PLUGIN);
  EXPECT_THROW(host.load_plugin(FAKE_PLUGIN), PluginLoadError);
  EXPECT_EQ(host.plugin_classes().size(), 2U);
  EXPECT_EQ(host.new_instance("Fake") ? 1 : 0, 1);
}

TEST(Host, there_is_one_at_a_time) {
  EXPECT_EQ(Host::current_or_null(), nullptr);
  EXPECT_THROW(Host::current(), std::logic_error);
  {
    Host host;
    EXPECT_EQ(&Host::current(), &host);
    EXPECT_THROW(Host(), std::logic_error);
    EXPECT_EQ(&Host::current(), &host);
  }
  EXPECT_EQ(Host::current_or_null(), nullptr);
}

TEST(Host, classes_are_found_in_any_case) {
  Host host;
  EXPECT_NE(host.find_class("DICTIONARY"), nullptr);
  EXPECT_EQ(host.find_class("Dictionary2"), nullptr);
  EXPECT_THROW(host.new_instance("Dictionary2"), std::invalid_argument);
}

}  // namespace
}  // namespace standin
