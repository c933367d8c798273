// Contents and texts as the host's language writes them.
#ifndef ZRB_TESTS_MODEL_LITERALS_H
#define ZRB_TESTS_MODEL_LITERALS_H

#include <string>
#include <string_view>

#include "model/performed.h"

namespace model {

/// "Integer", "String", "Variant".
std::string type_name(support::ElementType type);
std::string boolean_literal(bool value);
std::string string_literal(std::string_view text);
/// An expression of that content; it may use the functions AsInteger, AsInt64 and AsNil, which
/// make variants of these types.
std::string literal(support::ElementType type, const Given& given);
/// A comment of as many lines as the text has.
std::string comment(std::string_view text);

/// Puts a word in the place of every placeholder.
void replace_all(std::string& text, const std::string& placeholder, const std::string& word);

}  // namespace model

#endif
