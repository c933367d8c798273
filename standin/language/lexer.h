// From a program's text to tokens.
#ifndef ZRB_STANDIN_LANGUAGE_LEXER_H
#define ZRB_STANDIN_LANGUAGE_LEXER_H

#include <string_view>
#include <vector>

#include "language/conditional.h"
#include "language/source.h"
#include "language/token.h"

namespace standin::language {

// The whole program, without comments, blanks, and the lines that conditional compilation leaves
// out; it ends with an `end_of_file` token. Empty lines give no tokens. Throws SourceError.
std::vector<Token> tokenize(const SourceFile& source, const Conditions& conditions);

// One line, without an end token; for `#If` conditions and for default values in declarations.
// Throws SourceError.
std::vector<Token> tokenize_line(std::string_view line, std::uint32_t number);

}  // namespace standin::language

#endif
