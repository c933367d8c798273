// Writing to a file without anything that a signal handler must not use.
#include "write_all.h"

#include <unistd.h>

#include <cerrno>

namespace console {

bool write_all(int file, std::string_view text) noexcept {
  while (!text.empty()) {
    const ssize_t size = write(file, text.data(), text.size());
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(size));
  }
  return true;
}

}  // namespace console
