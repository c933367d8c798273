// Cached arrays on their way out of an instance.
#ifndef ZRB_PLUGIN_CONTAINERS_TAKEN_CACHES_H
#define ZRB_PLUGIN_CONTAINERS_TAKEN_CACHES_H

#include <utility>

#include "host/locked_handle.h"

/// Takes arrays out of their slots, and unlocks them when it dies, values first.
class TakenCaches {
 public:
  /// `values`: null for a set, which has no such slot.
  TakenCaches(REALarray& keys, REALarray* values)
      : keys_(std::exchange(keys, nullptr)),
        values_(values == nullptr ? nullptr : std::exchange(*values, nullptr)) {}
  TakenCaches(const TakenCaches&) = delete;
  TakenCaches& operator=(const TakenCaches&) = delete;
  ~TakenCaches() noexcept(false) {
    if (keys_ != nullptr) [[unlikely]]  // else there are no values either
      unlock();
  }

 private:
  // Not inline: every routine that changes a container has one of these.
  void unlock();

  REALarray keys_;
  REALarray values_;
};

#endif
