// Host arrays: creation, size, and access to elements.
//
// A host does not give out its elements directly; for each array it names a procedure that reads,
// writes or inserts. A host without such procedures is served by our own, which work on the array's
// vector of elements; only insertion has no replacement and does nothing there.
#ifndef ZRB_PLUGIN_HOST_ARRAYS_H
#define ZRB_PLUGIN_HOST_ARRAYS_H

#include <cstdint>

#include "host/binary_interface.h"
#include "host/services.h"

/// New arrays of `upperBound + 1` elements, owned by the caller; null when the host refuses.
inline REALarray REALCreateArrayInteger(std::int32_t upperBound) {
  return REALCreateArray(ArrayElementType::integer, upperBound);
}
inline REALarray REALCreateArrayString(std::int32_t upperBound) {
  return REALCreateArray(ArrayElementType::string, upperBound);
}
inline REALarray REALCreateArrayObject(std::int32_t upperBound) {
  return REALCreateArray(ArrayElementType::object, upperBound);
}

/// Reads element `index` into `*value`, a string or object with one lock for the caller. When the
/// host names no procedure for the array, `*value` stays as it is. O(1).
void REALGetArrayValue(REALarray array, std::int32_t index, std::int32_t* value);
void REALGetArrayValue(REALarray array, std::int32_t index, REALstring* value);
void REALGetArrayValue(REALarray array, std::int32_t index, REALobject* value);

/// Writes elements of one array, which must live as long. The host is asked once for the array's
/// procedure, with the first element; again only if it named none.
template <class Element>
class ArrayWriter {
 public:
  explicit ArrayWriter(REALarray array) : array_(array) {}

  /// Replaces element `index`; the array takes a lock of its own on a string or object. Nothing
  /// happens when the host names no procedure. O(1).
  void set(std::int32_t index, Element value) {
    if (set_ == nullptr) set_ = find_procedure(array_);
    if (set_ != nullptr) set_(array_, value, index);
  }

 private:
  using Procedure = void (*)(REALarray, Element value, std::int32_t index);
  static Procedure find_procedure(REALarray array);

  REALarray array_;
  Procedure set_ = nullptr;
};

template <>
ArrayWriter<std::int32_t>::Procedure ArrayWriter<std::int32_t>::find_procedure(REALarray array);
template <>
ArrayWriter<REALstring>::Procedure ArrayWriter<REALstring>::find_procedure(REALarray array);
template <>
ArrayWriter<REALobject>::Procedure ArrayWriter<REALobject>::find_procedure(REALarray array);

/// Inserts before element `index`; what stood there and behind moves up by one.
void REALInsertArrayValue(REALarray array, std::int32_t index, std::int32_t value);
void REALInsertArrayValue(REALarray array, std::int32_t index, REALstring value);
void REALInsertArrayValue(REALarray array, std::int32_t index, REALobject value);

#endif
