#include "host/fallbacks.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "host/locked_handle.h"
#include "host/services.h"

namespace {

constexpr std::uint32_t terminator_size = 4;

// The buffer comes from malloc, since a host's dispose service may be the one to free it.
bool copy_bytes(REALstring string, std::uint32_t minimal_capacity, std::uint32_t encoding,
                REALstringData* record) {
  const auto length = static_cast<std::uint32_t>(std::max(LenB(string), 0));
  const char* bytes = StringGetCString(string);
  if (bytes == nullptr && length != 0) return false;
  const std::size_t capacity = std::size_t{std::max(length, minimal_capacity)} + terminator_size;
  auto* buffer = static_cast<char*>(std::malloc(capacity));
  if (buffer == nullptr) return false;
  if (length != 0) std::memcpy(buffer, bytes, length);
  std::memset(buffer + length, 0, terminator_size);
  *record = {buffer, length, encoding};
  return true;
}

struct OwnedData {
  REALstringData record{};
  ~OwnedData() { std::free(record.data); }
};

}  // namespace

bool fallbacks::get_string_data(REALstring string, std::uint32_t encoding, REALstringData* record) {
  if (!StringGetCString.is_available() || !LenB.is_available() || string == nullptr) return false;
  if (encoding == host_encoding::as_stored) {
    return copy_bytes(string, record->length, encoding, record);
  }
  if (REALGetStringEncoding(string) == encoding) return copy_bytes(string, 0, encoding, record);
  // Unlocking the converted string may throw, and the caller then gets no record to dispose of.
  OwnedData copy;
  {
    const auto converted = LockedString::adopt(REALConvertString(string, encoding));
    if (converted.get() == nullptr || !copy_bytes(converted.get(), 0, encoding, &copy.record)) {
      return false;
    }
  }
  *record = std::exchange(copy.record, {});
  return true;
}

void fallbacks::dispose_string_data(REALstringData* record) {
  std::free(record->data);
}
