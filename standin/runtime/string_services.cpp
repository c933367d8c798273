// The entry points for strings.
#include <cstdlib>
#include <cstring>

#include "runtime/guarded.h"
#include "runtime/services.h"
#include "runtime/strings.h"

namespace standin::services {
namespace {

constexpr std::size_t terminator = 4;

}  // namespace

REALstring build_string(const void* data, std::int32_t count) {
  if (count < 0 || (data == nullptr && count > 0)) return nullptr;
  const std::string_view text(static_cast<const char*>(data), static_cast<std::size_t>(count));
  return guarded([&] { return make_string(text, host_encoding::as_stored).release(); });
}

void set_string_encoding(REALstring string, std::uint32_t encoding) {
  set_encoding(string, encoding);
}

std::uint32_t get_string_encoding(REALstring string) {
  return encoding(string);
}

REALstring convert_string(REALstring string, std::uint32_t encoding) {
  return guarded([&] { return convert(string, encoding).release(); });
}

void lock_string(REALstring string) {
  lock(string);
}
void unlock_string(REALstring string) {
  unlock(string);
}

// The buffer comes from malloc, as the plugin's own buffers do: either side may free either's.
HostBoolean get_string_data(REALstring string, std::uint32_t encoding, REALstringData* record) {
  if (string == nullptr || record == nullptr) return HostBoolean::no;
  std::string_view text = bytes(string);
  StringRef converted;
  // Most strings are in the wanted encoding already.
  if (encoding != string->encoding && encoding != host_encoding::as_stored) {
    converted = guarded([&] { return convert(string, encoding); });
    if (!converted) return HostBoolean::no;
    text = bytes(converted.get());
  }
  char* buffer = static_cast<char*>(std::malloc(text.size() + terminator));
  if (buffer == nullptr) return HostBoolean::no;
  if (!text.empty()) std::memcpy(buffer, text.data(), text.size());
  std::memset(buffer + text.size(), 0, terminator);
  *record = {buffer, static_cast<std::uint32_t>(text.size()), encoding};
  return HostBoolean::yes;
}

void dispose_string_data(REALstringData* record) {
  if (record == nullptr) return;
  std::free(record->data);
  record->data = nullptr;
  record->length = 0;
}

const char* string_get_cstring(REALstring string) {
  return string == nullptr ? "" : bytes(string).data();
}

std::int32_t length_in_bytes(REALstring string) {
  return static_cast<std::int32_t>(bytes(string).size());
}

}  // namespace standin::services
