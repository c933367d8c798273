// Conversion goes through code points; the Unicode work is utf8cpp's.
#include "runtime/encodings.h"

#include <utf8.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace standin::encodings {
namespace {

constexpr char32_t replacement = 0xFFFD;
// A byte that its encoding leaves undefined.
constexpr char32_t undefined = 0;

// Windows Latin 1 differs from ISO Latin 1 in these bytes only.
constexpr char32_t windows_80_to_9f[32] = {
    0x20AC,    undefined, 0x201A, 0x0192, 0x201E, 0x2026,    0x2020, 0x2021,
    0x02C6,    0x2030,    0x0160, 0x2039, 0x0152, undefined, 0x017D, undefined,
    undefined, 0x2018,    0x2019, 0x201C, 0x201D, 0x2022,    0x2013, 0x2014,
    0x02DC,    0x2122,    0x0161, 0x203A, 0x0153, undefined, 0x017E, 0x0178};

bool is_surrogate(char32_t c) {
  return c >= 0xD800 && c <= 0xDFFF;
}

// Decoding stops at the first thing that cannot be read, or replaces it.
enum class OnError { stop, replace };

using CodePoints = std::u32string;

std::optional<CodePoints> decode_utf8(std::string_view bytes, OnError on_error) {
  CodePoints result;
  result.reserve(bytes.size());
  auto at = bytes.begin();
  while (at != bytes.end()) {
    try {
      result.push_back(static_cast<char32_t>(utf8::next(at, bytes.end())));
    } catch (const utf8::exception&) {
      if (on_error == OnError::stop) return std::nullopt;
      result.push_back(replacement);
      // One mark for an ill-formed sequence: its continuation bytes belong to it.
      ++at;
      while (at != bytes.end() && utf8::internal::is_trail(*at)) ++at;
    }
  }
  return result;
}

std::optional<CodePoints> decode_utf16(std::string_view bytes, OnError on_error) {
  if (bytes.size() % 2 != 0 && on_error == OnError::stop) return std::nullopt;
  CodePoints result;
  const std::size_t units = bytes.size() / 2;
  const auto unit = [&](std::size_t i) {
    char16_t value;
    std::memcpy(&value, bytes.data() + i * 2, 2);
    return value;
  };
  for (std::size_t i = 0; i < units; ++i) {
    const char32_t first = unit(i);
    if (!is_surrogate(first)) {
      result.push_back(first);
    } else if (first < 0xDC00 && i + 1 < units && unit(i + 1) >= 0xDC00 && unit(i + 1) <= 0xDFFF) {
      result.push_back(0x10000 + ((first - 0xD800) << 10U) + (unit(i + 1) - 0xDC00U));
      ++i;
    } else {
      if (on_error == OnError::stop) return std::nullopt;
      result.push_back(replacement);
    }
  }
  if (bytes.size() % 2 != 0) result.push_back(replacement);
  return result;
}

std::optional<CodePoints> decode_utf32(std::string_view bytes, OnError on_error) {
  if (bytes.size() % 4 != 0 && on_error == OnError::stop) return std::nullopt;
  CodePoints result;
  for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
    char32_t value;
    std::memcpy(&value, bytes.data() + i, 4);
    if (value > 0x10FFFF || is_surrogate(value)) {
      if (on_error == OnError::stop) return std::nullopt;
      value = replacement;
    }
    result.push_back(value);
  }
  if (bytes.size() % 4 != 0) result.push_back(replacement);
  return result;
}

// One character of an 8-bit encoding; `undefined` for a byte that means none. Byte 0 is handled
// before.
char32_t character_of(unsigned char byte, std::uint32_t encoding) {
  if (byte < 0x80) return byte;
  if (encoding == host_encoding::ascii) return undefined;
  if (encoding == windows_latin1 && byte < 0xA0) return windows_80_to_9f[byte - 0x80];
  return byte;
}

std::optional<CodePoints> decode_bytes(std::string_view bytes, std::uint32_t encoding,
                                       OnError on_error) {
  CodePoints result;
  result.reserve(bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    char32_t character = character_of(byte, encoding);
    if (character == undefined && byte != 0) {
      if (on_error == OnError::stop) return std::nullopt;
      character = replacement;
    }
    result.push_back(character);
  }
  return result;
}

std::optional<CodePoints> decode(std::string_view bytes, std::uint32_t encoding, OnError on_error) {
  switch (encoding) {
    case host_encoding::utf8:
      return decode_utf8(bytes, on_error);
    case host_encoding::utf16:
      return decode_utf16(bytes, on_error);
    case host_encoding::utf32:
      return decode_utf32(bytes, on_error);
    case host_encoding::ascii:
    case windows_latin1:
    case iso_latin1:
      return decode_bytes(bytes, encoding, on_error);
    default:
      return std::nullopt;
  }
}

std::string encode_utf8(const CodePoints& text) {
  std::string result;
  result.reserve(text.size());
  for (const char32_t c : text)
    utf8::append(static_cast<std::uint32_t>(c), std::back_inserter(result));
  return result;
}

std::string encode_utf16(const CodePoints& text) {
  std::u16string units;
  for (const char32_t c : text) {
    if (c < 0x10000) {
      units.push_back(static_cast<char16_t>(c));
    } else {
      units.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10U)));
      units.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FFU)));
    }
  }
  return std::string(reinterpret_cast<const char*>(units.data()), units.size() * 2);
}

std::string encode_utf32(const CodePoints& text) {
  return std::string(reinterpret_cast<const char*>(text.data()), text.size() * 4);
}

std::optional<std::string> encode_bytes(const CodePoints& text, std::uint32_t encoding) {
  std::string result;
  result.reserve(text.size());
  for (const char32_t c : text) {
    if (c < 0x80) {
      result.push_back(static_cast<char>(c));
      continue;
    }
    int byte = 0x80;
    while (byte < 0x100 && character_of(static_cast<unsigned char>(byte), encoding) != c) ++byte;
    if (byte == 0x100) return std::nullopt;
    result.push_back(static_cast<char>(byte));
  }
  return result;
}

bool is_ascii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool is_ascii_compatible(std::uint32_t encoding) {
  return encoding == host_encoding::utf8 || encoding == host_encoding::ascii ||
         encoding == windows_latin1 || encoding == iso_latin1;
}

}  // namespace

std::string name(std::uint32_t encoding) {
  switch (encoding) {
    case host_encoding::utf8:
      return "UTF-8";
    case host_encoding::utf16:
      return "UTF-16";
    case host_encoding::utf32:
      return "UTF-32";
    case host_encoding::ascii:
      return "ASCII";
    case host_encoding::as_stored:
      return "as stored";
    case windows_latin1:
      return "Windows Latin 1";
    case iso_latin1:
      return "ISO Latin 1";
    default: {
      char text[32];
      std::snprintf(text, sizeof text, "encoding 0x%X", static_cast<unsigned>(encoding));
      return text;
    }
  }
}

bool is_known(std::uint32_t encoding) {
  return is_ascii_compatible(encoding) || encoding == host_encoding::utf16 ||
         encoding == host_encoding::utf32;
}

std::optional<std::string> convert(std::string_view bytes, std::uint32_t from, std::uint32_t to) {
  if (from == to || to == host_encoding::as_stored) return std::string(bytes);
  if (!is_known(from) || !is_known(to)) return std::nullopt;
  if (is_ascii_compatible(from) && is_ascii_compatible(to) && is_ascii(bytes)) {
    return std::string(bytes);
  }
  const std::optional<CodePoints> text = decode(bytes, from, OnError::stop);
  if (!text) return std::nullopt;
  switch (to) {
    case host_encoding::utf8:
      return encode_utf8(*text);
    case host_encoding::utf16:
      return encode_utf16(*text);
    case host_encoding::utf32:
      return encode_utf32(*text);
    default:
      return encode_bytes(*text, to);
  }
}

std::string to_utf8_lossy(std::string_view bytes, std::uint32_t from) {
  if (!is_known(from)) from = host_encoding::utf8;
  if (is_ascii_compatible(from) && is_ascii(bytes)) return std::string(bytes);
  const std::optional<CodePoints> text = decode(bytes, from, OnError::replace);
  return encode_utf8(*text);
}

}  // namespace standin::encodings
