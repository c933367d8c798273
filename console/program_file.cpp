// The file that a program is read from.
#include "program_file.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace console {
namespace {

constexpr std::size_t largest_program = std::size_t{64} << 20U;

[[noreturn]] void fail(const std::string& file_name, const std::string& problem) {
  throw ProgramFileError("cannot read the program file " + file_name + ": " + problem);
}

std::string reason(int error) {
  return std::strerror(error == 0 ? EIO : error);
}

}  // namespace

std::string read_program(const std::string& file_name) {
  std::error_code ignored;
  if (std::filesystem::is_directory(file_name, ignored)) {
    fail(file_name, "that is a folder; name a program in it");
  }
  errno = 0;
  std::ifstream file(file_name, std::ios::binary);
  if (!file) fail(file_name, reason(errno) + "; name a file that can be read");
  std::string text;
  std::array<char, 65536> part{};
  while (file.read(part.data(), part.size()) || file.gcount() > 0) {
    text.append(part.data(), static_cast<std::size_t>(file.gcount()));
    if (text.size() > largest_program)
      fail(file_name, "it is larger than 64 MiB; that is no program");
  }
  if (file.bad()) fail(file_name, reason(errno));
  return text;
}

}  // namespace console
