#include "keys/large_pages.h"

#include <sys/mman.h>

#include <cstdint>

void prefer_large_pages(void* memory, std::size_t bytes) noexcept {
#ifdef MADV_HUGEPAGE
  constexpr std::uintptr_t page_bytes = std::uintptr_t{2} << 20;
  const auto address = reinterpret_cast<std::uintptr_t>(memory);
  const std::uintptr_t first = (address + page_bytes - 1) & ~(page_bytes - 1);
  const std::uintptr_t end = (address + bytes) & ~(page_bytes - 1);
  ::madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);  // may be refused
#else
  static_cast<void>(memory);
  static_cast<void>(bytes);
#endif
}
