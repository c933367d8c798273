// What the plugin's binary shows to the dynamic linker, as binutils reads it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

std::vector<std::string> output_lines(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), &pclose);
  if (!pipe) throw std::runtime_error("cannot run " + command);
  std::string text;
  char buffer[4096];
  while (std::fgets(buffer, sizeof buffer, pipe.get()) != nullptr) text += buffer;
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

const std::string plugin = "'" ZRB_PLUGIN_PATH "'";

TEST(DynamicSymbols, exactly_the_two_entries_are_exported) {
  std::vector<std::string> exported;
  for (const std::string& line : output_lines("nm -D --defined-only --format=posix " + plugin)) {
    exported.push_back(line.substr(0, line.find(' ')));
  }
  EXPECT_THAT(exported, ::testing::UnorderedElementsAre("REALPluginMain", "PluginEntry"));
}

TEST(DynamicSymbols, both_entries_are_functions) {
  for (const std::string& line : output_lines("nm -D --defined-only --format=posix " + plugin)) {
    EXPECT_THAT(line, ::testing::ContainsRegex(" T ")) << line;
  }
}

TEST(DynamicSymbols, nothing_but_the_c_and_cpp_runtime_is_needed) {
  for (const std::string& line : output_lines("readelf -d " + plugin)) {
    if (line.find("(NEEDED)") == std::string::npos) continue;
    EXPECT_THAT(line, ::testing::ContainsRegex("\\[(libc|libm|libgcc_s|libstdc\\+\\+|ld-linux.*|"
                                               "libasan|libubsan)\\.so\\.[0-9]+\\]"));
  }
}

TEST(DynamicSymbols, the_binary_is_of_this_builds_width) {
  const std::string wanted = sizeof(void*) == 8 ? "ELF64" : "ELF32";
  std::string class_line;
  for (const std::string& line : output_lines("readelf -h " + plugin)) {
    if (line.find("Class:") != std::string::npos) class_line = line;
  }
  EXPECT_THAT(class_line, ::testing::HasSubstr(wanted));
}

}  // namespace
