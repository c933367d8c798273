// Expressions whose value is known before the program runs.
#ifndef ZRB_STANDIN_LANGUAGE_CONSTANTS_H
#define ZRB_STANDIN_LANGUAGE_CONSTANTS_H

#include <string>

#include "language/code.h"
#include "language/scope.h"
#include "language/syntax.h"

namespace standin::language {

// Literals, constants in scope, and operators on them. Throws SourceError for anything else;
// `what` needs the constant, for the message.
Code check_constant(const ExpressionSyntax& syntax, const Scope* scope, const std::string& what);

Code literal_code(const LiteralSyntax& literal);

// The value of a literal's code.
Value literal_value(const Expression& code);

}  // namespace standin::language

#endif
