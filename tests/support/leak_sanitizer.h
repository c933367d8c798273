// Tells the leak sanitizer of memory that is meant to stay behind: the container classes give up
// storage without freeing it in two places, on purpose.
#ifndef ZRB_TESTS_SUPPORT_LEAK_SANITIZER_H
#define ZRB_TESTS_SUPPORT_LEAK_SANITIZER_H

#if defined(__SANITIZE_ADDRESS__)
#define ZRB_LEAK_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZRB_LEAK_SANITIZER 1
#endif
#endif

#ifdef ZRB_LEAK_SANITIZER
#include <sanitizer/lsan_interface.h>
#endif

namespace support {

/// While one lives, what is allocated may leak.
class LeaksExpected {
 public:
  LeaksExpected() {
#ifdef ZRB_LEAK_SANITIZER
    __lsan_disable();
#endif
  }
  ~LeaksExpected() {
#ifdef ZRB_LEAK_SANITIZER
    __lsan_enable();
#endif
  }
  LeaksExpected(const LeaksExpected&) = delete;
  LeaksExpected& operator=(const LeaksExpected&) = delete;
};

}  // namespace support

#endif
