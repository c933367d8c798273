// Declaration texts, spelled out at compile time from one template for all classes of a kind.
#ifndef ZRB_PLUGIN_HOST_DECLARATIONS_H
#define ZRB_PLUGIN_HOST_DECLARATIONS_H

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "host/fixed_string.h"

/// In a template, {K} and {V} stand for the words of the key and value type, {Class} and {Iterator}
/// for the names of the container class and its iterator class.
template <class Container>
class DeclarationWriter {
 public:
  /// Length of the finished text.
  static constexpr std::size_t length(std::string_view text) {
    std::size_t written = 0;
    expand(text, [&](std::string_view piece) { written += piece.size(); });
    return written;
  }

  template <std::size_t Length>
  static constexpr FixedString<Length + 1> write(std::string_view text) {
    FixedString<Length + 1> written;
    char* end = written.text;
    expand(text, [&](std::string_view piece) { end = std::ranges::copy(piece, end).out; });
    return written;
  }

 private:
  template <class Take>
  static constexpr void expand(std::string_view text, Take take) {
    while (!text.empty()) {
      const std::size_t open = position_of('{', text);
      take(text.substr(0, open));
      text.remove_prefix(open);
      if (text.empty()) return;
      const std::size_t close = position_of('}', text);
      take(meaning(text.substr(1, close - 1)));
      text.remove_prefix(close + 1);
    }
  }

  // Where `character` stands first, else the text's size. Not string_view::find: gcc does not
  // evaluate that at compile time while it builds with the undefined behaviour sanitizer.
  static constexpr std::size_t position_of(char character, std::string_view text) {
    std::size_t position = 0;
    while (position < text.size() && text[position] != character) ++position;
    return position;
  }

  static constexpr std::string_view meaning(std::string_view placeholder) {
    if (placeholder == "K") return Container::Key::word.view();
    if (placeholder == "V") return Container::Value::word.view();
    if (placeholder == "Class") return Container::name.view();
    if (placeholder == "Iterator") return Container::iterator_name.view();
    throw "unknown placeholder";  // stops the compilation
  }
};

/// The text of a declaration template for one container class, NUL-terminated. Classes with the
/// same text share it.
template <class Container, FixedString Template>
inline constexpr const char* declaration_text =
    text_constant<DeclarationWriter<Container>::template write<
        DeclarationWriter<Container>::length(Template.view())>(Template.view())>.text;

#endif
