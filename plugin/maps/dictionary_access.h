// The host's own Dictionary class, reached by the declarations of its members.
#ifndef ZRB_PLUGIN_MAPS_DICTIONARY_ACCESS_H
#define ZRB_PLUGIN_MAPS_DICTIONARY_ACCESS_H

#include <cstdint>

#include "host/binary_interface.h"

/// A new Dictionary, owned by the caller; nil when the host refuses it.
REALdictionary NewDictionary();

/// How many entries the Dictionary says it has; 0 when the host cannot tell.
std::int32_t GetDictionaryCount(REALdictionary dictionary);

// The methods below are looked up anew when the Dictionary is not the one of the last call. One
// that the host does not have does nothing and answers nil.

void SetDictionaryValue(REALdictionary dictionary, REALobject key, REALobject value);

/// The value of a key, owned by the caller.
REALobject GetDictionaryValue(REALdictionary dictionary, REALobject key);

/// The key at an index from 0 to the count minus one, owned by the caller.
REALobject GetDictionaryKey(REALdictionary dictionary, std::int32_t index);

#endif
