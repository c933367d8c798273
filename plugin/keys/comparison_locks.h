// The one lock imbalance of the plugin that is meant.
#ifndef ZRB_PLUGIN_KEYS_COMPARISON_LOCKS_H
#define ZRB_PLUGIN_KEYS_COMPARISON_LOCKS_H

#include "host/locked_handle.h"

/// Takes a lock on either operand of a comparison, unless it is nil, that nobody ever gives back.
/// Programs have come to rely on it: an object that was once compared as a key is not freed by the
/// host afterwards, so its handle stays a stable identity.
template <class Handle>
void leave_comparison_locks(Handle a, Handle b) {
  if (a != nullptr) lock_handle(a);
  if (b != nullptr) lock_handle(b);
}

#endif
