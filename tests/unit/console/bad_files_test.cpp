// Files that are no programs and no plugins: the console says which file, what is wrong with it and
// what to do, and ends with status 1.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "console_runner.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class BadFile : public Console {
 protected:
  void SetUp() override { write("good.rbs", "Print \"ran\"\n"); }
  void expect_failure(const std::string& words, const std::string& message) {
    const Result result = run(words);
    EXPECT_EQ(result.status, 1) << words << result.err;
    EXPECT_EQ(result.out, "") << words;
    EXPECT_THAT(result.err, AllOf(StartsWith("console: "), HasSubstr(message))) << words;
  }
  void expect_no_program(const std::string& file, const std::string& message) {
    expect_failure("'" + file + "'", "cannot read the program file " + file + ": " + message);
  }
  void expect_no_plugin(const std::string& file, const std::string& message) {
    expect_failure("--plugin '" + file + "' good.rbs", file);
    expect_failure("--plugin '" + file + "' good.rbs", message);
  }
};

TEST_F(BadFile, a_program_that_does_not_exist) {
  expect_no_program("nothing.rbs", "No such file or directory; name a file that can be read\n");
  expect_no_program("good.rbs/more.rbs", "Not a directory");
  expect_no_program("", "No such file or directory");
}

TEST_F(BadFile, a_folder_as_program) {
  expect_no_program(".", "that is a folder; name a program in it\n");
}

TEST_F(BadFile, a_program_that_must_not_be_read) {
  if (geteuid() == 0) GTEST_SKIP() << "the superuser may read everything";
  std::filesystem::permissions(folder() / "good.rbs", std::filesystem::perms::none);
  expect_no_program("good.rbs", "Permission denied");
}

TEST_F(BadFile, a_device_without_end_as_program) {
  expect_no_program("/dev/zero", "it is larger than 64 MiB; that is no program\n");
}

TEST_F(BadFile, an_empty_program_does_nothing) {
  write("empty.rbs", "");
  for (const char* file : {"empty.rbs", "/dev/null"}) {
    const Result result = run(file);
    EXPECT_EQ(result.status, 0) << file;
    EXPECT_EQ(result.out + result.err, "") << file;
  }
}

TEST_F(BadFile, a_plugin_that_does_not_exist) {
  expect_no_plugin("nothing.so", "No such file or directory; build it, or name another file\n");
}

TEST_F(BadFile, a_folder_as_plugin) {
  expect_no_plugin(".", "that is a folder; name the plugin file in it\n");
}

TEST_F(BadFile, a_text_as_plugin) {
  expect_no_plugin("good.rbs", "-bit shared library with the entry REALPluginMain is needed\n");
  write("empty.so", "");
  expect_no_plugin("empty.so", "empty.so");
  expect_no_plugin("/dev/null", "that is a device or a pipe; name a plugin file\n");
}

TEST_F(BadFile, an_executable_as_plugin) {
  expect_no_plugin(ZRB_CONSOLE_FILE, "shared library with the entry REALPluginMain is needed\n");
}

// The loader alone would be stopped by a signal when it touches what is missing.
TEST_F(BadFile, a_plugin_that_is_cut_short) {
  const std::string whole = read(ZRB_PLUGIN_FILE);
  ASSERT_GT(whole.size(), 100000U);
  for (const std::size_t size : {100U, 1000U, 5000U, 50000U}) {
    write("cut.so", whole.substr(0, size));
    expect_no_plugin("cut.so", "the file ends too early; copy or build it again\n");
  }
}

TEST_F(BadFile, a_library_that_is_no_plugin) {
  expect_no_plugin(ZRB_NO_PLUGIN, "it is a library without the entry REALPluginMain");
}

TEST_F(BadFile, a_plugin_that_registers_nothing) {
  expect_no_plugin(ZRB_SILENT_PLUGIN,
                   "registered no class; its REALPluginMain must call \"PluginRegisterClass\"");
}

TEST_F(BadFile, a_plugin_whose_declarations_cannot_be_read) {
  const std::string head =
      "registers what this host cannot read; correct the record and build again:\n";
  expect_no_plugin(ZRB_UNREADABLE_PLUGIN, head);
  expect_no_plugin(
      ZRB_UNREADABLE_PLUGIN,
      "\n  class Open: method row 1, declaration \"Ask(question as string\", column 23: "
      "expected \",\" or \")\", found the end\n");
  expect_no_plugin(ZRB_UNREADABLE_PLUGIN,
                   "\n  class Odd: method row 0, declaration \"Count as number\", column 10: "
                   "no type or class is called \"number\"\n");
}

TEST_F(BadFile, a_plugin_whose_start_throws) {
  expect_no_plugin(ZRB_THROWING_PLUGIN,
                   "its REALPluginMain threw an exception, \"the licence has expired\"\n");
}

TEST_F(BadFile, a_plugin_whose_routines_throw) {
  const auto output_of = [this](const std::string& statement) {
    write("calls.rbs", "Dim r As New Reckless\n" + statement + "\n");
    const Result result = run("--plugin '" ZRB_RECKLESS_PLUGIN "' calls.rbs");
    EXPECT_EQ(result.status, 1);
    return result.err;
  };
  EXPECT_THAT(output_of("r.Fail"),
              StartsWith("calls.rbs:2: a C++ exception passed through: the disk is full\n"));
  EXPECT_THAT(output_of("r.FailWithNumber"),
              StartsWith("calls.rbs:2: a C++ exception of unknown type passed through\n"));
  EXPECT_THAT(output_of("Try\nr.FailWithNumber\nCatch\nEnd Try"),
              StartsWith("calls.rbs:3: a C++ exception of unknown type passed through\n"));
}

}  // namespace
