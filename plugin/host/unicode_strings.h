// Host strings from text in a given encoding.
#ifndef ZRB_PLUGIN_HOST_UNICODE_STRINGS_H
#define ZRB_PLUGIN_HOST_UNICODE_STRINGS_H

#include <cstdint>

#include "host/binary_interface.h"

/// Builds a host string from `byteCount` bytes of text in `encoding`; the caller owns its lock.
///
/// UTF-16 and UTF-32 text becomes UTF-8, any other encoding is kept as it is. Of a UTF-32 unit only
/// the low 16 bits count: code points above U+FFFF are cut. Null for no bytes, for a count below 1
/// or of 0x7FFFFFFF and more, when memory is short, or when the host builds no string.
REALstring REALBuildUnicodeString(const void* bytes, std::int64_t byteCount,
                                  std::uint32_t encoding);

/// Zero-filled heap block; null for a size below 1 or above 0x7FFFFFFF, or when memory is short.
void* AllocateClearMemory(std::int64_t size);
void FreeMemoryNow(void* block);

#endif
