#include "cases/memory.h"

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

namespace {

// The resident bytes of usable memory inside of reserved stretches of addresses: of mappings
// between two inaccessible ones, without a gap. Libraries have such mappings too, but they do not
// grow.
double bytes_in_reservations() {
  std::ifstream mappings("/proc/self/smaps");
  double total = 0;
  double resident = 0;  // since the last inaccessible mapping
  bool behind_inaccessible = false;
  std::uintptr_t previous_end = 0;
  std::string line;
  while (std::getline(mappings, line)) {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    char access[5];
    if (std::sscanf(line.c_str(), "%" SCNxPTR "-%" SCNxPTR " %4s", &begin, &end, access) == 3) {
      if (begin != previous_end) behind_inaccessible = false;
      previous_end = end;
      if (std::strncmp(access, "---", 3) != 0) continue;
      if (behind_inaccessible) total += resident;
      behind_inaccessible = true;
      resident = 0;
    } else if (line.starts_with("Rss:")) {
      resident += std::strtod(line.c_str() + 4, nullptr) * 1024;
    }
  }
  return total;
}

}  // namespace

double heap_bytes() {
  const struct mallinfo2 info = ::mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd) + bytes_in_reservations();
}

// Not from statm, which may lag behind by dozens of pages.
double resident_bytes() {
  const int file = ::open("/proc/self/smaps_rollup", O_RDONLY);
  if (file < 0) return 0;
  char text[512];
  const ssize_t length = ::read(file, text, sizeof text - 1);
  ::close(file);
  if (length < 0) return 0;
  text[length] = '\0';
  const char* line = std::strstr(text, "\nRss:");
  return line == nullptr ? 0 : std::strtod(line + 5, nullptr) * 1024;
}
