// Finding the n-th character of a string.
#include "language/character_index.h"

#include <algorithm>
#include <cstring>

#include "runtime/strings.h"

namespace standin::language {
namespace {

// Shorter ones are counted anew each time.
constexpr std::size_t long_string = 64;

bool is_utf16(std::uint32_t encoding) {
  return encoding == host_encoding::utf16;
}
bool is_utf32(std::uint32_t encoding) {
  return encoding == host_encoding::utf32;
}
bool is_utf8(std::uint32_t encoding) {
  return encoding == host_encoding::utf8;
}

// Whether a character begins at this offset. In ill-formed text, a stray continuation belongs to
// what stands before it.
bool begins_character(std::string_view text, std::size_t offset, std::uint32_t encoding) {
  if (is_utf8(encoding)) {
    return (static_cast<unsigned char>(text[offset]) & 0xC0U) != 0x80U || offset == 0;
  }
  if (is_utf16(encoding)) {
    char16_t unit = 0;
    if (offset % 2 != 0 || offset + 2 > text.size()) return false;
    std::memcpy(&unit, text.data() + offset, 2);
    return unit < 0xDC00 || unit > 0xDFFF || offset == 0;
  }
  return !is_utf32(encoding) || offset % 4 == 0;
}

std::size_t unit_size(std::uint32_t encoding) {
  return is_utf16(encoding) ? 2 : is_utf32(encoding) ? 4 : 1;
}

std::size_t count(std::string_view text, std::size_t from, std::size_t to, std::uint32_t encoding) {
  std::size_t characters = 0;
  for (std::size_t at = from; at < to; at += unit_size(encoding)) {
    if (begins_character(text, at, encoding)) ++characters;
  }
  return characters;
}

std::size_t next(std::string_view text, std::size_t offset, std::uint32_t encoding) {
  do {
    offset += unit_size(encoding);
  } while (offset < text.size() && !begins_character(text, offset, encoding));
  return std::min(offset, text.size());
}

std::size_t previous(std::string_view text, std::size_t offset, std::uint32_t encoding) {
  do {
    offset -= unit_size(encoding);
  } while (offset > 0 && !begins_character(text, offset, encoding));
  return offset;
}

bool is_byte_text(std::uint32_t encoding) {
  return !is_utf8(encoding) && !is_utf16(encoding) && !is_utf32(encoding);
}

}  // namespace

CharacterIndex::Entry& CharacterIndex::entry(REALstring string) {
  const std::size_t hash = (reinterpret_cast<std::uintptr_t>(string) >> 4U) % entries_.size();
  Entry& found = entries_[hash];
  if (found.string != string || found.serial != string->serial ||
      found.encoding != string->encoding) {
    const std::string_view text = bytes(string);
    found = {
        string, string->serial, string->encoding, count(text, 0, text.size(), string->encoding), 0,
        0};
  }
  return found;
}

std::size_t CharacterIndex::length(REALstring string) {
  const std::string_view text = bytes(string);
  if (text.empty() || is_byte_text(string->encoding)) return text.size();
  if (text.size() < long_string) return count(text, 0, text.size(), string->encoding);
  return entry(string).length;
}

std::size_t CharacterIndex::offset(REALstring string, std::size_t character) {
  const std::string_view text = bytes(string);
  const std::uint32_t code = encoding(string);
  if (text.empty() || is_byte_text(code)) return std::min(character, text.size());
  if (text.size() < long_string) {
    std::size_t offset = 0;
    for (; character > 0 && offset < text.size(); --character) offset = next(text, offset, code);
    return offset;
  }
  Entry& known = entry(string);
  if (character >= known.length) return text.size();
  if (known.length * unit_size(code) == text.size()) return character * unit_size(code);
  // From the nearest of the start, the place where it was, and the end.
  if (character < known.character / 2) {
    known.character = 0;
    known.offset = 0;
  } else if (character > known.character &&
             character - known.character > known.length - character) {
    known.character = known.length;
    known.offset = text.size();
  }
  for (; known.character < character; ++known.character) {
    known.offset = next(text, known.offset, code);
  }
  for (; known.character > character; --known.character) {
    known.offset = previous(text, known.offset, code);
  }
  return known.offset;
}

std::string_view CharacterIndex::part(REALstring string, std::size_t first, std::size_t count) {
  const std::string_view text = bytes(string);
  const std::size_t begin = offset(string, first);
  if (count == 1) {
    if (begin >= text.size()) return {};
    const std::uint32_t code = encoding(string);
    const std::size_t end = is_byte_text(code) ? begin + 1 : next(text, begin, code);
    return text.substr(begin, end - begin);
  }
  // The sum may be too large for the type.
  const bool to_the_end = count >= text.size() || first >= text.size();
  const std::size_t end = to_the_end ? text.size() : offset(string, first + count);
  return text.substr(begin, end - begin);
}

std::size_t CharacterIndex::characters_before(REALstring string, std::size_t offset) {
  const std::string_view text = bytes(string);
  const std::uint32_t code = encoding(string);
  if (text.empty() || is_byte_text(code)) return offset;
  if (text.size() >= long_string) {
    const Entry& known = entry(string);
    if (known.length * unit_size(code) == text.size()) return offset / unit_size(code);
  }
  return count(text, 0, offset, code);
}

}  // namespace standin::language
