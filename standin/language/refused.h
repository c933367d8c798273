// What the real language has and this one leaves out, refused by name.
#ifndef ZRB_STANDIN_LANGUAGE_REFUSED_H
#define ZRB_STANDIN_LANGUAGE_REFUSED_H

#include <string>
#include <string_view>

#include "language/token.h"

namespace standin::language {

// Why the word at hand cannot be used, such as `"Class" is not part of the language here: …`; ""
// for any word that is not left out.
std::string refusal(const Token& word);
// The same for what a statement begins with, such as `On Error` and `EndIf`.
std::string statement_refusal(const Token& word, const Token& following);
// The same for the name of a routine that the real language has.
std::string routine_refusal(std::string_view name);

}  // namespace standin::language

#endif
