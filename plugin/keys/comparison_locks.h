// The one lock imbalance of the plugin that is meant.
#ifndef ZRB_PLUGIN_KEYS_COMPARISON_LOCKS_H
#define ZRB_PLUGIN_KEYS_COMPARISON_LOCKS_H

#include "host/locked_handle.h"

/// Takes a lock on either operand of a comparison that nobody ever gives back. Programs have come
/// to rely on it: an object that was once compared as a key is not freed by the host afterwards,
/// so its handle stays a stable identity.
template <class Struct>
void leave_comparison_locks(const LockedHandle<Struct>& a, const LockedHandle<Struct>& b) {
  if (a.get() != nullptr) lock_handle(a.get());
  if (b.get() != nullptr) lock_handle(b.get());
}

#endif
