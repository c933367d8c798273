#include "host/locked_handle.h"

#include "host/services.h"

namespace {

// To the lock services an array is an object like any other.
REALobject as_object(REALarray array) {
  return reinterpret_cast<REALobject>(array);
}

}  // namespace

void lock_handle(REALobject handle) {
  REALLockObject(handle);
}
void lock_handle(REALstring handle) {
  REALLockString(handle);
}
void lock_handle(REALarray handle) {
  REALLockObject(as_object(handle));
}
bool host_counts_object_locks() {
  return REALLockObject.is_available() && REALUnlockObject.is_available();
}
void unlock_in_destructor(REALobject handle) {
  release_in_destructor([=] { REALUnlockObject(handle); });
}
void unlock_in_destructor(REALstring handle) {
  release_in_destructor([=] { REALUnlockString(handle); });
}
void unlock_in_destructor(REALarray handle) {
  unlock_in_destructor(as_object(handle));
}
