// Upper and lower case of letters.
#ifndef ZRB_STANDIN_LANGUAGE_LETTER_CASE_H
#define ZRB_STANDIN_LANGUAGE_LETTER_CASE_H

#include "runtime/handles.h"

namespace standin::language {

// Of the Latin, Greek and Cyrillic letters that come in simple pairs; anything else is kept.
char32_t upper_letter(char32_t letter);
char32_t lower_letter(char32_t letter);

// A text with each letter replaced, in its own encoding; `before` is the character in front of it
// in the text, 0 for the first. Without a known encoding, only ASCII letters are letters.
using LetterReplacement = char32_t (*)(char32_t letter, char32_t before);
StringRef with_letters(REALstring text, LetterReplacement replacement);

}  // namespace standin::language

#endif
