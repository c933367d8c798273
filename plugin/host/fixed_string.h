// A text usable as a template argument, so that a name can be part of a type.
#ifndef ZRB_PLUGIN_HOST_FIXED_STRING_H
#define ZRB_PLUGIN_HOST_FIXED_STRING_H

#include <algorithm>
#include <cstddef>
#include <string_view>

template <std::size_t Size>
struct FixedString {
  char text[Size] = {};

  consteval FixedString() = default;
  consteval FixedString(const char (&literal)[Size]) { std::copy_n(literal, Size, text); }

  constexpr std::string_view view() const { return {text, Size - 1}; }
};

/// The text with a place of its own in memory, for whoever needs its address.
template <FixedString Text>
inline constexpr auto text_constant = Text;

#endif
