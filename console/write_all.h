// Writing to a file without anything that a signal handler must not use.
#ifndef ZRB_CONSOLE_WRITE_ALL_H
#define ZRB_CONSOLE_WRITE_ALL_H

#include <string_view>

namespace console {

// Whether all of the text was written.
bool write_all(int file, std::string_view text) noexcept;

}  // namespace console

#endif
