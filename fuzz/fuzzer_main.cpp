// One target as a fuzzer. What it finds ends the process, as libFuzzer expects it.
#include <cstdio>
#include <cstdlib>

#include "targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string problem = fuzz::ZRB_FUZZ_TARGET({data, size});
  if (problem.empty()) return 0;
  std::fprintf(stderr, "FINDING: %s\n", problem.c_str());
  std::abort();
}
