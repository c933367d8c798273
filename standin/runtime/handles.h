// Counted handles: locking, unlocking, and `Ref`, which owns one lock.
//
// A null handle is Nil, or the empty string; locking and unlocking it does nothing here. The entry
// points that a plugin calls are stricter (see ledger.h).
#ifndef ZRB_STANDIN_RUNTIME_HANDLES_H
#define ZRB_STANDIN_RUNTIME_HANDLES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "host/binary_interface.h"
#include "runtime/layout.h"

namespace standin {

enum class HandleKind : std::uint8_t { string, object, variant, array };

// When the last lock goes, an object's registered destructor runs, then everything that the block
// holds is unlocked, then its memory is freed. A destructor that throws is recorded by the host
// (Host::destructor_errors) and goes no further.
namespace detail {
void release(REALstring handle);  // for the last lock; reports a release of what has none left
void release(REALobject handle);
void release(REALarray handle);
void lock_of_dead(const void* handle);  // reports a use after release
}  // namespace detail

inline void lock(REALstring handle) {
  if (handle == nullptr) return;
  if (handle->locks == 0) return detail::lock_of_dead(handle);
  ++handle->locks;
}

inline void lock(REALobject handle) {
  if (handle == nullptr) return;
  if (handle->block.locks == 0) return detail::lock_of_dead(handle);
  ++handle->block.locks;
}

inline void lock(REALarray handle) {
  if (handle == nullptr) return;
  if (handle->block.locks == 0) return detail::lock_of_dead(handle);
  ++handle->block.locks;
}

inline void unlock(REALstring handle) {
  if (handle == nullptr) return;
  if (handle->locks > 1) {
    --handle->locks;
  } else {
    detail::release(handle);
  }
}

inline void unlock(REALobject handle) {
  if (handle == nullptr) return;
  if (handle->block.locks > 1) {
    --handle->block.locks;
  } else {
    detail::release(handle);
  }
}

inline void unlock(REALarray handle) {
  if (handle == nullptr) return;
  if (handle->block.locks > 1) {
    --handle->block.locks;
  } else {
    detail::release(handle);
  }
}

// How many locks a handle has; 0 for null.
inline std::uint32_t lock_count(REALstring handle) {
  return handle == nullptr ? 0 : static_cast<std::uint32_t>(handle->locks);
}
inline std::uint32_t lock_count(REALobject handle) {
  return handle == nullptr ? 0 : static_cast<std::uint32_t>(handle->block.locks);
}
inline std::uint32_t lock_count(REALarray handle) {
  return handle == nullptr ? 0 : static_cast<std::uint32_t>(handle->block.locks);
}

// Owns exactly one lock on a handle, or nothing.
template <class Struct>
class Ref {
 public:
  Ref() noexcept = default;
  Ref(std::nullptr_t) noexcept {}  // NOLINT: null is the natural empty reference

  // Takes over a lock that the caller owns.
  static Ref adopt(Struct* handle) noexcept {
    Ref ref;
    ref.handle_ = handle;
    return ref;
  }

  // Adds a lock.
  static Ref share(Struct* handle) {
    lock(handle);
    return adopt(handle);
  }

  Ref(const Ref& other) : handle_(other.handle_) { lock(handle_); }
  Ref(Ref&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Ref() { unlock(handle_); }

  Struct* get() const noexcept { return handle_; }
  // Hands the lock to the caller.
  [[nodiscard]] Struct* release() noexcept { return std::exchange(handle_, nullptr); }
  void reset() noexcept { *this = Ref(); }
  explicit operator bool() const noexcept { return handle_ != nullptr; }
  // Identity, not content.
  friend bool operator==(const Ref& a, const Ref& b) noexcept { return a.handle_ == b.handle_; }

 private:
  Struct* handle_ = nullptr;
};

using StringRef = Ref<REALstringStruct>;
using ObjectRef = Ref<REALobjectStruct>;
using ArrayRef = Ref<REALarrayStruct>;

// One line for messages: kind, serial number, and what it holds, as in `string #12 "abc" (UTF-8)`,
// `variant #3 Integer 5`, `Dictionary #7`, `array #9 of 4 strings`, `nil`; for a
// dead handle that the ledger keeps, `released string #12`.
std::string describe(REALstring handle);
std::string describe(REALobject handle);
std::string describe(REALarray handle);

}  // namespace standin

#endif
