// Text encodings: their codes, and conversion between them.
#ifndef ZRB_STANDIN_RUNTIME_ENCODINGS_H
#define ZRB_STANDIN_RUNTIME_ENCODINGS_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/binary_interface.h"

namespace standin::encodings {

// The two 8-bit encodings that the host knows besides the Unicode ones. In Windows Latin 1 the
// bytes 0x80 to 0x9F are mostly punctuation (five of them are undefined); in ISO Latin 1 they are
// control characters.
inline constexpr std::uint32_t windows_latin1 = 0x500;
inline constexpr std::uint32_t iso_latin1 = 0x201;

// "UTF-8", "Windows Latin 1", "as stored"; "encoding 0x1234" for a code that the host does not
// know.
std::string name(std::uint32_t encoding);

// Whether the host can convert from and to it. Text as stored is not known: it has no encoding.
bool is_known(std::uint32_t encoding);

// The bytes in another encoding, or nothing: when one of the encodings is not known, when the input
// is ill-formed in its own (also: text as stored), or when the target lacks a character. Conversion
// from an encoding to itself, and to text as stored, keeps the bytes whatever they are.
std::optional<std::string> convert(std::string_view bytes, std::uint32_t from, std::uint32_t to);

// UTF-8 at any price: what cannot be read becomes U+FFFD. Text as stored is read as UTF-8.
std::string to_utf8_lossy(std::string_view bytes, std::uint32_t from);

}  // namespace standin::encodings

#endif
