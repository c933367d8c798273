#include "host/unicode_strings.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#include "host/locked_handle.h"
#include "host/services.h"

namespace {

constexpr std::int64_t size_limit = 0x7FFFFFFF;
constexpr std::int64_t local_buffer_size = 800;  // UTF-32 text of fewer bytes needs no heap block

REALstring build(const void* bytes, std::int64_t byte_count) {
  return RawBuildString(static_cast<const char*>(bytes), static_cast<std::int32_t>(byte_count));
}

// Tags raw UTF-16 as what it is and converts it; releases the raw string. Null is passed on to the
// conversion, which has the last word on what becomes of it.
REALstring utf8_from_raw_utf16(REALstring raw) {
  LockedString utf8;
  {
    const auto utf16 = LockedString::adopt(raw);
    if (raw != nullptr) REALSetStringEncoding(raw, host_encoding::utf16);
    utf8 = LockedString::adopt(REALConvertString(raw, host_encoding::utf8));
  }
  return utf8.detach();
}

void keep_low_halves(const void* utf32, std::int64_t units, char* utf16) {
  const char* source = static_cast<const char*>(utf32);
  for (std::int64_t i = 0; i < units; ++i) std::memcpy(utf16 + i * 2, source + i * 4, 2);
}

REALstring build_from_utf32(const void* bytes, std::int64_t byte_count) {
  const std::int64_t units = byte_count / 4;
  const std::int64_t utf16_size = units * 2;
  if (byte_count < local_buffer_size) {
    char buffer[local_buffer_size / 2];
    keep_low_halves(bytes, units, buffer);
    return utf8_from_raw_utf16(build(buffer, utf16_size));
  }
  const std::unique_ptr<void, void (*)(void*)> block(AllocateClearMemory(utf16_size + 4),
                                                     &FreeMemoryNow);
  if (block == nullptr) return nullptr;
  keep_low_halves(bytes, units, static_cast<char*>(block.get()));
  return utf8_from_raw_utf16(build(block.get(), utf16_size));
}

}  // namespace

REALstring REALBuildUnicodeString(const void* bytes, std::int64_t byteCount,
                                  std::uint32_t encoding) {
  if (bytes == nullptr || byteCount < 1 || byteCount >= size_limit) return nullptr;
  if (encoding == host_encoding::utf32) return build_from_utf32(bytes, byteCount);
  auto built = LockedString::adopt(build(bytes, byteCount));
  if (built.get() == nullptr) return nullptr;
  if (encoding == host_encoding::utf16) return utf8_from_raw_utf16(built.detach());
  REALSetStringEncoding(built.get(), encoding);
  return built.detach();
}

void* AllocateClearMemory(std::int64_t size) {
  if (size < 1 || size > size_limit) return nullptr;
  return std::calloc(1, static_cast<std::size_t>(size));
}

void FreeMemoryNow(void* block) {
  std::free(block);
}
