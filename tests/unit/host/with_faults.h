// The host of all unit tests here: services are looked up once a process, so whichever test comes
// first must find those that can fail.
#ifndef ZRB_TESTS_UNIT_HOST_WITH_FAULTS_H
#define ZRB_TESTS_UNIT_HOST_WITH_FAULTS_H

#include "runtime/host.h"

inline standin::HostOptions with_faults() {
  standin::HostOptions options;
  options.instrument = true;
  return options;
}

#endif
