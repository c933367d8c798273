// Strings: immutable bytes with an encoding.
#ifndef ZRB_STANDIN_RUNTIME_STRINGS_H
#define ZRB_STANDIN_RUNTIME_STRINGS_H

#include <cstdint>
#include <string>
#include <string_view>

#include "runtime/handles.h"

namespace standin {

// A new string, also for no bytes at all (null is the empty string too, but has no encoding of its
// own to keep).
StringRef make_string(std::string_view bytes, std::uint32_t encoding = host_encoding::utf8);

// The bytes, valid while the string lives. They are followed by four zero bytes. Null: none.
inline std::string_view bytes(REALstring string) {
  return string == nullptr ? std::string_view()
                           : std::string_view(string->data + 1, string->length);
}

// Null: UTF-8.
inline std::uint32_t encoding(REALstring string) {
  return string == nullptr ? host_encoding::utf8 : string->encoding;
}

// A new string in that encoding; null if it cannot be converted (encodings::convert says when).
// Null converts to null.
StringRef convert(REALstring string, std::uint32_t encoding);

// Changes the mark in place, not the bytes. For the plugin's service, and for strings that nobody
// else holds.
void set_encoding(REALstring string, std::uint32_t encoding);

// The text as UTF-8; what cannot be read is replaced by U+FFFD.
std::string utf8(REALstring string);

}  // namespace standin

#endif
