// The block of a variant that holds a primitive (or, for tests, an object in a box).
#ifndef ZRB_STANDIN_RUNTIME_VARIANT_BOX_H
#define ZRB_STANDIN_RUNTIME_VARIANT_BOX_H

#include <cstdint>

#include "runtime/handles.h"

namespace standin {

struct VariantBox {
  REALobjectStruct header;
  VariantType type;
  union {
    std::int32_t integer;
    std::int64_t int64;  // also Currency
    float single;
    double double_;
    bool boolean;
    std::uint32_t color;
    REALstring string;  // locked
    REALobject object;  // locked
  };
};

inline bool is_box(REALobject handle) {
  return handle != nullptr && handle->block.magic == magic::variant;
}
inline VariantBox* box_of(REALobject handle) {
  return reinterpret_cast<VariantBox*>(handle);
}

// Unlocks what the box holds.
void release_box(REALobject handle);

}  // namespace standin

#endif
