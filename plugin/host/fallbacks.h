// What stands in for services that a host may lack.
#ifndef ZRB_PLUGIN_HOST_FALLBACKS_H
#define ZRB_PLUGIN_HOST_FALLBACKS_H

#include <cstdint>

#include "host/binary_interface.h"

namespace fallbacks {

/// The bytes of `string` in the wanted encoding, as a copy in `record` that the caller disposes of.
/// Needs the host's StringGetCString and LenB; false without them, for a null string, or when the
/// string cannot be converted. A 32-bit zero follows the bytes.
///
/// For text as stored the caller must have set `record->length` to the byte length beforehand:
/// the buffer is sized from it.
bool get_string_data(REALstring string, std::uint32_t encoding, REALstringData* record);

/// Gives the record's buffer back to the general heap.
void dispose_string_data(REALstringData* record);

}  // namespace fallbacks

#endif
