// Expressions on another line than their statement.
#ifndef ZRB_STANDIN_LANGUAGE_LOCATED_H
#define ZRB_STANDIN_LANGUAGE_LOCATED_H

#include "language/code.h"

namespace standin::language {

// While the expression is evaluated, its own place is the frame's position, so that what it raises
// is told there. Everything on the line of its statement goes without, and costs nothing.
Code make_located(Code expression, Position position);

}  // namespace standin::language

#endif
