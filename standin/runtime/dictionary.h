// The host's Dictionary: variants by variant, in the order of insertion.
//
// String keys ignore the case of ASCII letters, and the same text in two encodings is two keys.
// Numbers are one key if they are equal, whatever their types; Booleans and colours compare within
// their type; objects by identity; Nil is a key like any other.
#ifndef ZRB_STANDIN_RUNTIME_DICTIONARY_H
#define ZRB_STANDIN_RUNTIME_DICTIONARY_H

#include <cstdint>

#include "runtime/classes.h"

namespace standin {

// All of these need an instance of the current host's Dictionary.
ObjectRef make_dictionary();
bool is_dictionary(REALobject object);
std::int32_t dictionary_count(REALobject dictionary);
void dictionary_set(REALobject dictionary, REALobject key, REALobject value);
bool dictionary_has(REALobject dictionary, REALobject key);
// KeyNotFoundException if the key is absent.
ObjectRef dictionary_value(REALobject dictionary, REALobject key);
// OutOfBoundsException outside 0 to count minus one.
ObjectRef dictionary_key(REALobject dictionary, std::int32_t index);
// KeyNotFoundException if the key is absent.
void dictionary_remove(REALobject dictionary, REALobject key);
void dictionary_clear(REALobject dictionary);

}  // namespace standin

#endif
