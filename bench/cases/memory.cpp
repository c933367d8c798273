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

// The resident bytes of usable memory that lies in a large reserved stretch of addresses: of
// mappings beside an inaccessible one of at least so many bytes.
constexpr double large_reservation = 256.0 * 1024 * 1024;

double bytes_in_reservations() {
  std::ifstream mappings("/proc/self/smaps");
  double total = 0;
  double resident = 0;
  std::uintptr_t previous_end = 0;
  bool usable = false;
  bool in_reservation = false;
  std::string line;
  while (std::getline(mappings, line)) {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    char access[5];
    if (std::sscanf(line.c_str(), "%" SCNxPTR "-%" SCNxPTR " %4s", &begin, &end, access) == 3) {
      const bool reserved = std::strncmp(access, "---", 3) == 0;
      if (begin != previous_end) {
        resident = 0;
        in_reservation = false;
      }
      if (reserved && static_cast<double>(end - begin) >= large_reservation) in_reservation = true;
      usable = std::strncmp(access, "rw", 2) == 0;
      previous_end = end;
    } else if (line.starts_with("Rss:") && usable) {
      resident += std::strtod(line.c_str() + 4, nullptr) * 1024;
    }
    if (in_reservation) {
      total += resident;
      resident = 0;
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
