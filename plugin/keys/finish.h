// Removal of many elements, any of which may throw while it is destroyed.
#ifndef ZRB_PLUGIN_KEYS_FINISH_H
#define ZRB_PLUGIN_KEYS_FINISH_H

/// Runs `remove_rest`, which removes what is left to remove, one element after the other, each
/// taken out before it is destroyed. When that throws it is run again until everything is gone;
/// the first exception then passes on.
template <class RemoveRest>
void finish_despite_exceptions(RemoveRest remove_rest) {
  try {
    remove_rest();
  } catch (...) {
    for (bool finished = false; !finished;) {
      try {
        remove_rest();
        finished = true;
      } catch (...) {  // the first one is the cause
      }
    }
    throw;
  }
}

#endif
