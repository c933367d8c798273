// What the real language has and this one leaves out, refused by name.
#ifndef ZRB_STANDIN_LANGUAGE_REFUSED_H
#define ZRB_STANDIN_LANGUAGE_REFUSED_H

#include <string>

#include "language/token.h"

namespace standin::language {

// Why the word at hand cannot be used, such as `"Class" is not part of the language here: …`; ""
// for any word that is not left out.
std::string refusal(const Token& word);

}  // namespace standin::language

#endif
