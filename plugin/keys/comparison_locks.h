// The one lock imbalance of the plugin that is meant.
#ifndef ZRB_PLUGIN_KEYS_COMPARISON_LOCKS_H
#define ZRB_PLUGIN_KEYS_COMPARISON_LOCKS_H

#include "host/services.h"

/// Takes a lock on either operand of a comparison, unless it is nil, that nobody ever gives back.
/// Programs have come to rely on it: an object that was once compared as a key is not freed by the
/// host afterwards, so its handle stays a stable identity. Calls the host directly: a search in a
/// tree comes here at every level.
inline void leave_comparison_locks(REALobject a, REALobject b) {
  if (a != nullptr) REALLockObject(a);
  if (b != nullptr) REALLockObject(b);
}
inline void leave_comparison_locks(REALstring a, REALstring b) {
  if (a != nullptr) REALLockString(a);
  if (b != nullptr) REALLockString(b);
}

#endif
