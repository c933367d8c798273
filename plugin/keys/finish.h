// Removal of many elements, any of which may throw while it is destroyed.
#ifndef ZRB_PLUGIN_KEYS_FINISH_H
#define ZRB_PLUGIN_KEYS_FINISH_H

/// Calls `remove_rest(rest)`, which removes what is left to remove, one element after the other,
/// each taken out before it is destroyed. When that throws it is called again until everything is
/// gone; the first exception then passes on.
void finish_despite_exceptions(void (*remove_rest)(void* rest), void* rest);

/// The same for any function object. Not a template through and through, since what catches
/// exceptions is longer than what it guards.
template <class RemoveRest>
void finish_despite_exceptions(RemoveRest remove_rest) {
  finish_despite_exceptions([](void* rest) { (*static_cast<RemoveRest*>(rest))(); }, &remove_rest);
}

#endif
