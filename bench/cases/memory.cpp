#include "cases/memory.h"

#include <malloc.h>
#include <unistd.h>

#include <cstdio>

double heap_bytes() {
  const struct mallinfo2 info = ::mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

double resident_bytes() {
  long size = 0;
  long resident = 0;
  if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(file, "%ld %ld", &size, &resident) != 2) resident = 0;
    std::fclose(file);
  }
  return static_cast<double>(resident) * static_cast<double>(::sysconf(_SC_PAGESIZE));
}
