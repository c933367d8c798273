// The one lock imbalance of the plugin that is meant.
#ifndef ZRB_PLUGIN_KEYS_COMPARISON_LOCKS_H
#define ZRB_PLUGIN_KEYS_COMPARISON_LOCKS_H

#include <utility>

#include "host/locked_handle.h"
#include "host/services.h"

/// A handle that is searched for, held for one operation: by a lock of its own, or from its first
/// comparison on by the lock that this leaves. So of the calls that lock, lock and unlock it, only
/// one is made.
template <class Struct>
class SoughtHandle : public LockedHandle<Struct> {
 public:
  using LockedHandle<Struct>::LockedHandle;
  SoughtHandle(const SoughtHandle&) = delete;
  SoughtHandle& operator=(const SoughtHandle&) = delete;
  ~SoughtHandle() noexcept(false) {
    if (was_compared_) this->detach();
  }

  /// Notes a comparison, and tells whether there was one before: only then does the lock that it
  /// leaves have to be taken.
  bool note_comparison() const { return std::exchange(was_compared_, true); }

 private:
  mutable bool was_compared_ = false;
};

/// Leaves the lock of a comparison on one operand, unless it is nil. Calls the host directly: a
/// search in a tree comes here at every level.
inline void leave_lock(const LockedHandle<REALobjectStruct>& operand) {
  if (operand.get() != nullptr) REALLockObject(operand.get());
}
inline void leave_lock(const LockedHandle<REALstringStruct>& operand) {
  if (operand.get() != nullptr) REALLockString(operand.get());
}
template <class Struct>
void leave_lock(const SoughtHandle<Struct>& key) {
  if (key.note_comparison()) leave_lock(static_cast<const LockedHandle<Struct>&>(key));
}

/// Takes a lock on either operand of a comparison that nobody ever gives back: an object that was
/// once compared as a key is not freed by the host afterwards, so its handle stays a stable
/// identity, by which variants of different types are ordered.
template <class A, class B>
void leave_comparison_locks(const A& a, const B& b) {
  leave_lock(a);
  leave_lock(b);
}

#endif
