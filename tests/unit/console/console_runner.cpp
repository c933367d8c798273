// Runs the console as a process for tests.
#include "console_runner.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

Console::Console() {
  std::string pattern = (std::filesystem::temp_directory_path() / "console-XXXXXX").string();
  folder_ = mkdtemp(pattern.data());
}

Console::~Console() {
  std::filesystem::remove_all(folder_);
}

Console::Result Console::run(const std::string& words, const std::string& input) {
  write("in", input);
  const std::string command = "cd '" + folder_.string() + "' && timeout 120 '" + ZRB_CONSOLE_FILE +
                              "' " + words + " <in >out 2>err";
  const int status = std::system(command.c_str());
  const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  // What the shell makes of a signal.
  const bool is_signal = code > 128;
  return {read(folder_ / "out"), read(folder_ / "err"), is_signal ? -1 : code,
          is_signal ? code - 128 : 0};
}

void Console::write(const std::string& name, const std::string& text) {
  std::ofstream(folder_ / name, std::ios::binary) << text;
}

std::string Console::read(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}
