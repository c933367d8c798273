// Declaration texts: "value(key as string) as variant" and their kin, parsed.
//
//   declaration = name [ "(" [ parameter { "," parameter } ] ")" ] [ "as" type ]
//   parameter   = { "ByRef" | "ByVal" | "Optional" | "Assigns" } name [ "()" ] "as" type [ "="
//   default ] type        = name [ "()" ]
//
// Letter case and blanks do not matter. Only the last parameter may be marked "Assigns".
#ifndef ZRB_STANDIN_RUNTIME_DECLARATIONS_H
#define ZRB_STANDIN_RUNTIME_DECLARATIONS_H

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/types.h"

namespace standin {

struct Parameter {
  std::string name;
  Type type;
  bool by_ref = false;
  bool assigns = false;
  bool optional = false;
  std::string default_text;  // of an optional one, as written
};

struct Declaration {
  std::string text;  // as given
  std::string name;
  std::vector<Parameter> parameters;
  Type result;  // kind `void_` if none

  bool has_result() const { return result.kind != TypeKind::void_; }
  // Whether the last parameter takes the assigned value of `name(…) = value`.
  bool has_assigns() const { return !parameters.empty() && parameters.back().assigns; }
};

// What is wrong with a declaration, with the text, the column (from 1), and what was expected
// there.
class DeclarationError : public std::runtime_error {
 public:
  DeclarationError(std::string_view text, std::size_t column, const std::string& problem);
};

// Throws DeclarationError, also for a type name that the resolver does not know.
Declaration parse_declaration(std::string_view text, const TypeResolver& resolver);

// The text without what does not matter: lower case, single blanks between words only. Two texts of
// one declaration normalise to the same, so this finds a method by its text.
std::string normalized(std::string_view declaration);

}  // namespace standin

#endif
