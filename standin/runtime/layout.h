// The memory behind the three kinds of handles.
//
// Only two facts of it concern a plugin, namely one for hosts that lack some services: a string's
// second word points one byte before its text, and an array's third word points to its elements.
// Everything else is the runtime's own business and may change.
#ifndef ZRB_STANDIN_RUNTIME_LAYOUT_H
#define ZRB_STANDIN_RUNTIME_LAYOUT_H

#include <cstddef>
#include <cstdint>

#include "host/binary_interface.h"

namespace standin {

class ClassInfo;

// The first word of every block: what it is, or that it is no more.
namespace magic {
inline constexpr std::uintptr_t string = 0x53545231;   // a string
inline constexpr std::uintptr_t object = 0x4F424A31;   // an instance of a class
inline constexpr std::uintptr_t variant = 0x56415231;  // a box with a primitive value
inline constexpr std::uintptr_t array = 0x41525231;    // an array
inline constexpr std::uintptr_t dead = 0x44454144;     // released for good, kept by the ledger
}  // namespace magic

// What objects, variants and arrays begin with, so that one pair of services locks all of them.
// A live block has at least one lock; a dead one has none.
struct CountedBlock {
  std::uintptr_t magic;
  std::uintptr_t locks;
};

// How an array stores its elements. The first three are those that a plugin can ask for.
enum class ElementStorage : std::uint8_t {
  integer,
  string,
  object,
  int64,
  single,
  double_,
  currency,
  boolean,
  color,
};

}  // namespace standin

struct REALobjectStruct {
  standin::CountedBlock block;
  const standin::ClassInfo* class_info;  // null for a variant box
  std::uintptr_t serial;
  // An instance's data follows at its class's offset, a box's value at once.
};

struct REALarrayStruct {
  standin::CountedBlock block;
  void* elements;
  std::int32_t count;
  std::int32_t capacity;
  standin::ElementStorage storage;
  std::uintptr_t serial;
};

struct REALstringStruct {
  std::uintptr_t magic;
  char* data;  // a length byte, then the text, then four zero bytes
  std::uintptr_t locks;
  std::uint32_t encoding;
  std::uint32_t length;
  std::uintptr_t serial;
};

static_assert(offsetof(REALstringStruct, data) == sizeof(void*));
static_assert(offsetof(REALarrayStruct, elements) == 2 * sizeof(void*));
static_assert(sizeof(REALobjectStruct) % 16 == 0);

#endif
