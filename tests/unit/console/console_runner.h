// Runs the console as a process for tests.
#ifndef ZRB_TESTS_UNIT_CONSOLE_CONSOLE_RUNNER_H
#define ZRB_TESTS_UNIT_CONSOLE_CONSOLE_RUNNER_H

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

// A test with a folder of its own, in which the console is run.
class Console : public testing::Test {
 protected:
  struct Result {
    std::string out;
    std::string err;
    int status = -1;  // 124 for what did not end in two minutes, -1 for a signal
    int signal = 0;   // that ended it
  };

  Console();
  ~Console() override;

  // Words are given to a shell.
  Result run(const std::string& words, const std::string& input = {});
  void write(const std::string& name, const std::string& text);
  std::string read(const std::filesystem::path& file);
  std::filesystem::path folder() const { return folder_; }

 private:
  std::filesystem::path folder_;
};

#endif
