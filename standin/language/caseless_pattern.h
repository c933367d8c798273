// Searching a text for another without regard to case.
#ifndef ZRB_STANDIN_LANGUAGE_CASELESS_PATTERN_H
#define ZRB_STANDIN_LANGUAGE_CASELESS_PATTERN_H

#include <cstddef>
#include <string>
#include <string_view>

#include "language/text.h"

namespace standin::language {

// Letters are those that Lowercase and Uppercase know. It makes both cases of what is sought once,
// so that a search from a place on costs no more than the way to what it finds.
class CaselessPattern {
 public:
  // For the second of two strings in the first.
  explicit CaselessPattern(const SameEncoding& strings);
  // The first place at or after `from`; npos if there is none. The text is the first string.
  std::size_t find(std::string_view text, std::size_t from = 0) const;
  std::size_t size() const { return lower_.size(); }

 private:
  bool matches(std::string_view text, std::size_t at) const;

  std::string lower_, upper_;  // of the same size, letter by letter
  bool is_utf8_;
};

}  // namespace standin::language

#endif
