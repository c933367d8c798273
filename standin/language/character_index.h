// Finding the n-th character of a string.
#ifndef ZRB_STANDIN_LANGUAGE_CHARACTER_INDEX_H
#define ZRB_STANDIN_LANGUAGE_CHARACTER_INDEX_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "runtime/handles.h"

namespace standin::language {

// Characters are code points in UTF-8, UTF-16 and UTF-32, otherwise bytes. A program that walks
// through a long UTF-8 text by `Mid(s, i, 1)` would count from its start each time; so the index
// remembers, for the few long strings met last, how many characters they have and where it was.
class CharacterIndex {
 public:
  std::size_t length(REALstring string);
  // The byte offset of a character, from 0; beyond the last, that of the end.
  std::size_t offset(REALstring string, std::size_t character);
  // The characters from `first` on, at most `count`.
  std::string_view part(REALstring string, std::size_t first, std::size_t count);
  // How many characters begin before a byte offset.
  std::size_t characters_before(REALstring string, std::size_t offset);

 private:
  struct Entry {
    REALstring string = nullptr;
    std::uintptr_t serial = 0;
    std::uint32_t encoding = 0;
    std::size_t length = 0;
    std::size_t character = 0;  // some place in it
    std::size_t offset = 0;
  };
  Entry& entry(REALstring string);

  std::array<Entry, 16> entries_;
};

}  // namespace standin::language

#endif
