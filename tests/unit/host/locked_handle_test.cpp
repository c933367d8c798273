// What a host throws while something is released.
#include "host/locked_handle.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

struct Failing {
  ~Failing() noexcept(false) {
    release_in_destructor([] { throw std::runtime_error("the release"); });
  }
};

TEST(ReleaseInADestructor, passes_on_what_the_host_throws) {
  EXPECT_THROW(const Failing failing, std::runtime_error);
}

TEST(ReleaseInADestructor, lets_the_exception_pass_that_was_there_before) {
  const auto fail_twice = [] {
    const Failing failing;
    throw std::logic_error("the cause");
  };
  EXPECT_THROW(fail_twice(), std::logic_error);
}

}  // namespace
