// Memory blocks of handles: allocation, birth and death.
#ifndef ZRB_STANDIN_RUNTIME_BLOCKS_H
#define ZRB_STANDIN_RUNTIME_BLOCKS_H

#include <cstddef>
#include <cstdint>

#include "runtime/handles.h"

namespace standin::blocks {

// Zeroed and 16-byte aligned.
void* allocate(std::size_t size);
void deallocate(void* block);

std::uintptr_t next_serial();

// The lock count of an object while its destructor runs, far from both ends, so that the destructor
// may lock and unlock the object as it likes.
inline constexpr std::uintptr_t dying_locks = 0x40000000;

}  // namespace standin::blocks

#endif
