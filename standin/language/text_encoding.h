// TextEncoding: what `Encodings.UTF8` and `s.Encoding` are.
#ifndef ZRB_STANDIN_LANGUAGE_TEXT_ENCODING_H
#define ZRB_STANDIN_LANGUAGE_TEXT_ENCODING_H

#include <cstdint>

#include "runtime/classes.h"

namespace standin::language {

const ClassInfo& text_encoding_class();
// A new object for an encoding; programs see only one for each (Machine::text_encoding).
ObjectRef make_text_encoding(std::uint32_t code);
// The code of a TextEncoding; text as stored for Nil.
std::uint32_t encoding_code(REALobject text_encoding);

}  // namespace standin::language

#endif
