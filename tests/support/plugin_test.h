// The fixture of every test that runs the plugin in the stand-in host.
//
// Each test has a host of its own with a fresh copy of the plugin, instrumented and with a strict
// ledger. A test fails at its end if an exception is still pending that it did not take, or if the
// ledger saw a handle used wrongly.
#ifndef ZRB_TESTS_SUPPORT_PLUGIN_TEST_H
#define ZRB_TESTS_SUPPORT_PLUGIN_TEST_H

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "runtime/host.h"
#include "support/container.h"
#include "support/container_classes.h"
#include "support/elements.h"

namespace support {

class PluginTest : public ::testing::Test {
 protected:
  PluginTest();
  ~PluginTest() override;

  standin::Host& host() { return *host_; }

  /// Starts over with a host that differs: another version, or without some entry points. No
  /// handle of the old host may be alive.
  void restart(standin::HostOptions options);
  /// The same with a host into which `load` loads the plugin.
  using Load = std::function<void(standin::Host&)>;
  void restart(standin::HostOptions options, const Load& load);
  /// Options of the default host, to be changed and given to `restart`.
  static standin::HostOptions default_options();
  void restart_without(std::initializer_list<const char*> entry_points);

  /// Takes the pending exception; "" when there is none, else "Class: message".
  std::string raised();

  /// Checks what TearDown checks, so far: nothing pending, no destructor that threw.
  void expect_clean();

  void TearDown() override;

 private:
  std::unique_ptr<standin::Host> host_;
};

/// The same for a suite that is instantiated for several classes.
class ClassTest : public PluginTest, public ::testing::WithParamInterface<ContainerClass> {
 protected:
  const ContainerClass& container_class() const { return GetParam(); }
  Container make() const { return Container::make(GetParam()); }
  Container make_with(int count) const;
  Element key(int index) const { return support::key(GetParam(), index); }
  Element value(int index) const { return support::value(GetParam(), index); }
};

}  // namespace support

/// Instantiates a suite for some of the classes, and names the instances after them.
#define ZRB_FOR_CLASSES(Suite, classes) \
  INSTANTIATE_TEST_SUITE_P(Classes, Suite, ::testing::ValuesIn(classes), ::support::ClassName{})

#endif
