// What the fast host's handles point to: a count of locks, then the content. Nothing is checked,
// traced or kept in a register of handles, so that a measurement sees the plugin and little else.
#ifndef ZRB_FASTHOST_BLOCKS_H
#define ZRB_FASTHOST_BLOCKS_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/binary_interface.h"

/// A string; its bytes, NUL-terminated, follow the header in the same block.
struct REALstringStruct {
  std::uint32_t locks;
  std::uint32_t encoding;
  std::uint32_t length;
  std::uint32_t tag;  // a number of the benchmark's own, by which it tells strings apart

  char* bytes() { return reinterpret_cast<char*>(this + 1); }
  std::string_view text() { return {bytes(), length}; }
  static REALstring from_bytes(void* bytes) { return static_cast<REALstring>(bytes) - 1; }
};

enum class ObjectKind : std::uint32_t { instance, array };

/// An instance of a registered class; the plugin's data follows the header.
struct alignas(16) REALobjectStruct {
  std::uint32_t locks;
  ObjectKind kind;
  const REALclassDefinition* definition;

  void* data() { return this + 1; }
};

/// An array. It is locked as an object, so it begins like one; the third word is the vector, as in
/// the host.
struct REALarrayStruct {
  std::uint32_t locks;
  ObjectKind kind;
  std::int32_t upper_bound;
  ArrayElementType element_type;
  void* elements;

  std::int32_t* integers() { return static_cast<std::int32_t*>(elements); }
  REALstring* strings() { return static_cast<REALstring*>(elements); }
};
static_assert(offsetof(REALarrayStruct, elements) == 2 * sizeof(void*));

namespace fasthost {

/// A new string in UTF-8 with one lock.
REALstring make_string(std::string_view text, std::uint32_t tag = 0);

/// A new instance with zeroed data and one lock; no constructor is run.
REALobject make_instance(const REALclassDefinition& definition);

/// An array of zeroed elements with one lock. For an upper bound of -1 it is empty.
REALarray make_array(ArrayElementType element_type, std::int32_t upper_bound);

void destroy(REALstring string);
void destroy(REALobject object);  // runs the class's destructor

inline void lock(REALstring string) {
  ++string->locks;
}
inline void lock(REALobject object) {
  ++object->locks;
}
inline void unlock(REALstring string) {
  if (--string->locks == 0) destroy(string);
}
inline void unlock(REALobject object) {
  if (--object->locks == 0) destroy(object);
}
inline void unlock(REALarray array) {
  unlock(reinterpret_cast<REALobject>(array));
}

}  // namespace fasthost

#endif
