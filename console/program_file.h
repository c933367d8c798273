// The file that a program is read from.
#ifndef ZRB_CONSOLE_PROGRAM_FILE_H
#define ZRB_CONSOLE_PROGRAM_FILE_H

#include <stdexcept>
#include <string>

namespace console {

// Which file, why it cannot be read, and what to do.
class ProgramFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The whole text; a pipe will do. Throws ProgramFileError, also for more than any program has, such
// as a device without end.
std::string read_program(const std::string& file_name);

}  // namespace console

#endif
