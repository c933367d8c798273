#include "maps/dictionary_access.h"

#include "host/services.h"

namespace {

using Setter = void (*)(REALdictionary, REALobject key, REALobject value);
using Getter = REALobject (*)(REALdictionary, REALobject key);
using KeyGetter = REALobject (*)(REALdictionary, std::int32_t index);

REALdictionary LastDictionary = nullptr;
Setter LastDictionarySetter = nullptr;
Getter LastDictionaryGetter = nullptr;
KeyGetter LastDictionaryKeyGetter = nullptr;

template <class Method>
void load(Method& method, REALdictionary dictionary, const char* declaration) {
  method = reinterpret_cast<Method>(REALLoadObjectMethod(dictionary, declaration));
}

void load_methods_of(REALdictionary dictionary) {
  if (dictionary == LastDictionary) return;
  LastDictionary = nullptr;  // until all three are loaded: the host may throw meanwhile
  load(LastDictionarySetter, dictionary, "Value(key As Variant, Assigns _value As Variant)");
  load(LastDictionaryGetter, dictionary, "Value(key As Variant) As Variant");
  load(LastDictionaryKeyGetter, dictionary, "Key(index As Integer) As Variant");
  LastDictionary = dictionary;
}

}  // namespace

REALdictionary NewDictionary() {
  return REALnewInstance("Dictionary");
}

std::int32_t GetDictionaryCount(REALdictionary dictionary) {
  std::int32_t count = 0;
  return REALGetPropValueInt32(dictionary, "Count", &count) ? count : 0;
}

void SetDictionaryValue(REALdictionary dictionary, REALobject key, REALobject value) {
  load_methods_of(dictionary);
  if (LastDictionarySetter != nullptr) LastDictionarySetter(dictionary, key, value);
}

REALobject GetDictionaryValue(REALdictionary dictionary, REALobject key) {
  load_methods_of(dictionary);
  return LastDictionaryGetter == nullptr ? nullptr : LastDictionaryGetter(dictionary, key);
}

REALobject GetDictionaryKey(REALdictionary dictionary, std::int32_t index) {
  load_methods_of(dictionary);
  return LastDictionaryKeyGetter == nullptr ? nullptr : LastDictionaryKeyGetter(dictionary, index);
}
