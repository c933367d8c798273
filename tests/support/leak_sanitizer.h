// Tells the leak sanitizer of memory that is meant to stay behind: the container classes give up
// storage without freeing it in two places, on purpose.
#ifndef ZRB_TESTS_SUPPORT_LEAK_SANITIZER_H
#define ZRB_TESTS_SUPPORT_LEAK_SANITIZER_H

#include "runtime/address_sanitizer.h"

#ifdef ZRB_HAS_ADDRESS_SANITIZER
#include <sanitizer/lsan_interface.h>
#endif

namespace support {

/// While one lives, what is allocated may leak.
class LeaksExpected {
 public:
  LeaksExpected() {
#ifdef ZRB_HAS_ADDRESS_SANITIZER
    __lsan_disable();
#endif
  }
  ~LeaksExpected() {
#ifdef ZRB_HAS_ADDRESS_SANITIZER
    __lsan_enable();
#endif
  }
  LeaksExpected(const LeaksExpected&) = delete;
  LeaksExpected& operator=(const LeaksExpected&) = delete;
};

}  // namespace support

#endif
