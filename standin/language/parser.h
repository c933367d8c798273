// From tokens to the syntax tree.
#ifndef ZRB_STANDIN_LANGUAGE_PARSER_H
#define ZRB_STANDIN_LANGUAGE_PARSER_H

#include <string_view>
#include <vector>

#include "language/syntax.h"
#include "language/token.h"

namespace standin::language {

// Throws SourceError at the first thing that is no program, also for what the language leaves out
// (by name) and for expressions and blocks that are nested too deeply.
ProgramSyntax parse_program(const std::vector<Token>& tokens);

// A lone expression, for default values in the declarations of registered methods.
ExpressionPointer parse_expression(std::string_view text);

}  // namespace standin::language

#endif
