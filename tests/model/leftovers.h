// What stays locked when a sequence is over: the comparisons of strings and variants leave locks
// for good. The book of locks has looked at them; a leak sanitizer should not.
#ifndef ZRB_TESTS_MODEL_LEFTOVERS_H
#define ZRB_TESTS_MODEL_LEFTOVERS_H

#include "runtime/host.h"

namespace model {

/// At its end, frees whatever still lives in the host. Nothing may be used afterwards.
class Leftovers {
 public:
  explicit Leftovers(standin::Host& host) : host_(host) {}
  ~Leftovers();
  Leftovers(const Leftovers&) = delete;
  Leftovers& operator=(const Leftovers&) = delete;

 private:
  standin::Host& host_;
};

}  // namespace model

#endif
