// A limit to the memory that the process takes from the C++ heap, so that a program which asks for
// ever more meets std::bad_alloc rather than the end of the machine.
//
// Only large blocks are refused: bookkeeping goes on when programs can no longer grow.
#ifndef ZRB_FUZZ_MEMORY_LIMIT_H
#define ZRB_FUZZ_MEMORY_LIMIT_H

#include <cstddef>

namespace fuzz {

/// While one lives, no block may be larger than `largest_block`, and once `total` more bytes are in
/// use than at first, none that is larger than a page.
class MemoryLimit {
 public:
  MemoryLimit(std::size_t largest_block, std::size_t total);
  ~MemoryLimit();
  MemoryLimit(const MemoryLimit&) = delete;
  MemoryLimit& operator=(const MemoryLimit&) = delete;
};

}  // namespace fuzz

#endif
