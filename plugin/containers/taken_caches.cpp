#include "containers/taken_caches.h"

void TakenCaches::unlock() {
  const auto keys = LockedArray::adopt(keys_);
  const auto values = LockedArray::adopt(values_);
}
