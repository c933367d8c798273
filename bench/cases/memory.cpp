#include "cases/memory.h"

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

double heap_bytes() {
  const struct mallinfo2 info = ::mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
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
