// What the runtime's tests share: the fake plugin, and short ways to call its class.
#ifndef ZRB_TESTS_UNIT_STANDIN_RUNTIME_FAKE_HOST_TEST_H
#define ZRB_TESTS_UNIT_STANDIN_RUNTIME_FAKE_HOST_TEST_H

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "runtime/host.h"
#include "runtime/strings.h"

namespace standin {

class FakePluginTest : public testing::Test {
 protected:
  void start(HostOptions options = {}) {
    fake_.reset();
    host_.reset();
    host_ = std::make_unique<Host>(std::move(options));
    host_->load_plugin(FAKE_PLUGIN);
    fake_ = host_->new_instance("Fake");
  }

  static const MethodInfo& method(REALobject object, const std::string& name) {
    const auto overloads = class_of(object)->overloads(name);
    if (overloads.size() != 1) throw std::logic_error("not one method of the name " + name);
    return *overloads[0];
  }

  Value call(const std::string& name, std::vector<Value> arguments = {}) {
    return invoke(method(fake_.get(), name), fake_.get(), arguments);
  }

  Value property(const std::string& name) {
    return read_property(*class_of(fake_.get())->property(name), fake_.get());
  }

  std::unique_ptr<Host> host_;
  ObjectRef fake_;
};

inline Value text_value(const char* text) {
  return Value::of_string(make_string(text));
}

}  // namespace standin

#endif
