// Running a piece of a test within 64 KiB of stack.
#ifndef ZRB_TESTS_HOSTILE_SMALL_STACK_H
#define ZRB_TESTS_HOSTILE_SMALL_STACK_H

#include <cstddef>
#include <functional>

#include "support/leak_sanitizer.h"

namespace hostile {

/// The sanitizers' frames are several times as large, and so is the stack there.
#ifdef ZRB_HAS_ADDRESS_SANITIZER
inline constexpr std::size_t small_stack = 256 * 1024;
#else
inline constexpr std::size_t small_stack = 64 * 1024;
#endif

/// Runs `work` on a thread with a stack of that size and waits for it; what it throws passes on.
/// One byte more is a segmentation fault. std::system_error when there is no such thread.
void run_on_small_stack(const std::function<void()>& work);

}  // namespace hostile

#endif
