// A host handle together with one lock on it.
//
// Serves for everything that holds a host object: stored elements, temporaries, results on their
// way out. The lock lives as long as the object, so its scope is the lock's scope.
#ifndef ZRB_PLUGIN_HOST_LOCKED_HANDLE_H
#define ZRB_PLUGIN_HOST_LOCKED_HANDLE_H

#include <exception>
#include <utility>

#include "host/binary_interface.h"

/// Locks by the kind of handle, which must not be null.
void lock_handle(REALobject handle);
void lock_handle(REALstring handle);
void lock_handle(REALarray handle);

/// Whether objects and arrays can be locked as well as unlocked.
bool host_counts_object_locks();

/// Unlocks from within a destructor; see `release_in_destructor`. Not inline, as destructors are
/// everywhere.
void unlock_in_destructor(REALobject handle);
void unlock_in_destructor(REALstring handle);
void unlock_in_destructor(REALarray handle);

/// Runs a release from within a destructor. What the host throws meanwhile passes on, unless
/// another exception is already on its way: that one is the cause, and two cannot pass at once.
template <class Release>
inline void release_in_destructor(Release release) {
  try {
    release();
  } catch (...) {
    if (std::uncaught_exceptions() == 0) throw;
  }
}

template <class Struct>
class LockedHandle {
 public:
  using Handle = Struct*;

  LockedHandle() = default;

  /// Takes a lock of its own on `handle`; null is allowed and not locked.
  explicit LockedHandle(Handle handle) : handle_(handle) {
    if (handle != nullptr) lock_handle(handle);
  }

  /// Takes over a lock that the caller owns.
  static LockedHandle adopt(Handle handle) {
    LockedHandle adopted;
    adopted.handle_ = handle;
    return adopted;
  }

  LockedHandle(const LockedHandle& other) : LockedHandle(other.handle_) {}
  LockedHandle(LockedHandle&& other) noexcept : handle_(other.detach()) {}
  LockedHandle& operator=(LockedHandle other) {
    std::swap(handle_, other.handle_);
    return *this;
  }

  /// Gives the lock back; see `release_in_destructor`.
  ~LockedHandle() noexcept(false) {
    if (handle_ != nullptr) unlock_in_destructor(handle_);
  }

  Handle get() const { return handle_; }

  /// Hands the lock to the caller and is null afterwards.
  Handle detach() { return std::exchange(handle_, nullptr); }

 private:
  Handle handle_ = nullptr;
};

/// Holds what a caller lends, while host code runs that could let go of it: an instance, an
/// argument. Holds nothing on a host that has only one of the two services: the caller's own lock
/// would be given back instead.
template <class Struct>
class LentHandle : LockedHandle<Struct> {
 public:
  LentHandle() = default;
  explicit LentHandle(Struct* handle)
      : LockedHandle<Struct>(host_counts_object_locks() ? handle : nullptr) {}
};

using LockedObject = LockedHandle<REALobjectStruct>;
using LockedString = LockedHandle<REALstringStruct>;
using LockedArray = LockedHandle<REALarrayStruct>;
using LentObject = LentHandle<REALobjectStruct>;
using LentArray = LentHandle<REALarrayStruct>;

#endif
