// Chooses the mutant that runs, in sources where many of them stand beside each other.
#ifndef ZRB_MUTANT_SWITCH_H
#define ZRB_MUTANT_SWITCH_H

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <type_traits>

struct ZrbMutants {
  // From the environment: ZRB_MUTANT.
  int chosen;
  // From ZRB_MUTANT_REACH, a file: a byte for each mutant, set when it is asked.
  unsigned char* reach;
};

// Read at the first question: a plugin does nothing before the host calls it.
[[gnu::visibility("hidden")]] inline const ZrbMutants& zrb_mutants() {
  static constinit ZrbMutants mutants = {-1, nullptr};
  if (mutants.chosen < 0) {
    const char* number = std::getenv("ZRB_MUTANT");
    mutants.chosen = number == nullptr ? 0 : std::atoi(number);
    if (const char* path = std::getenv("ZRB_MUTANT_REACH")) {
      const int file = open(path, O_RDWR);
      const auto size = static_cast<std::size_t>(lseek(file, 0, SEEK_END));
      mutants.reach = static_cast<unsigned char*>(
          mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0));
      close(file);
    }
  }
  return mutants;
}

constexpr bool zrb_mutant(int number) {
  if (std::is_constant_evaluated()) return false;
  const ZrbMutants& mutants = zrb_mutants();
  if (mutants.reach != nullptr) mutants.reach[number] = 1;
  return mutants.chosen == number;
}

#endif
