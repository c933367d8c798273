#include "host/arrays.h"

#include "host/locked_handle.h"
#include "host/services.h"

namespace {

template <class Element>
using GetProcedure = Element (*)(REALarray, std::int32_t index);
template <class Element>
using SetProcedure = void (*)(REALarray, Element value, std::int32_t index);
template <class Element>
using InsertProcedure = void (*)(REALarray, std::int32_t index, Element value);

// Our own procedures, for a host that gives none: an array object is three words, of which the
// third points to the elements. An index out of range reads as nil or 0 and takes no value, as far
// as the host can tell the range.
bool is_in_range(REALarray array, std::int32_t index) {
  return index >= 0 && (!REALGetArrayUBound.is_available() || index <= REALGetArrayUBound(array));
}

template <class Element>
Element& element_at(REALarray array, std::int32_t index) {
  struct ArrayObject {
    void* reserved[2];
    Element* elements;
  };
  return reinterpret_cast<ArrayObject*>(array)->elements[index];
}

template <class Struct>
Struct* get_own(REALarray array, std::int32_t index) {
  if (!is_in_range(array, index)) return nullptr;
  return LockedHandle<Struct>(element_at<Struct*>(array, index)).detach();
}

std::int32_t get_own_integer(REALarray array, std::int32_t index) {
  return is_in_range(array, index) ? element_at<std::int32_t>(array, index) : 0;
}

template <class Struct>
void set_own(REALarray array, Struct* value, std::int32_t index) {
  if (!is_in_range(array, index)) return;
  // The new element is locked before the old one is unlocked: they may be the same.
  LockedHandle<Struct> replacement(value);
  Struct*& element = element_at<Struct*>(array, index);
  const auto replaced = LockedHandle<Struct>::adopt(element);
  element = replacement.detach();
}

void set_own_integer(REALarray array, std::int32_t value, std::int32_t index) {
  if (is_in_range(array, index)) element_at<std::int32_t>(array, index) = value;
}

template <class Struct>
GetProcedure<Struct*> find_own_get(REALarray) {
  return &get_own<Struct>;
}
GetProcedure<std::int32_t> find_own_get_integer(REALarray) {
  return &get_own_integer;
}
template <class Struct>
SetProcedure<Struct*> find_own_set(REALarray) {
  return &set_own<Struct>;
}
SetProcedure<std::int32_t> find_own_set_integer(REALarray) {
  return &set_own_integer;
}

// A missing finder is replaced by our own for good, so the host is not asked again.
template <auto FindOwn>
void* find_or_substitute(const char* name) {
  void* found = find_entry_point(name);
  return found != nullptr ? found : reinterpret_cast<void*>(FindOwn);
}

// clang-format off

template <class Element, auto FindOwn>
using GetProcedureFinder = HostService<"RuntimeArrayDirectGetGetProc", GetProcedure<Element>(REALarray), nullptr, &find_or_substitute<FindOwn>>;
template <class Element, auto FindOwn>
using SetProcedureFinder = HostService<"RuntimeArrayDirectGetSetProc", SetProcedure<Element>(REALarray), nullptr, &find_or_substitute<FindOwn>>;
template <class Element>
using InsertProcedureFinder = HostService<"RuntimeArrayDirectGetInsertProc", InsertProcedure<Element>(REALarray)>;

constinit GetProcedureFinder<std::int32_t, &find_own_get_integer>           REALGetArrayValueInt32;
constinit GetProcedureFinder<REALstring, &find_own_get<REALstringStruct>>   REALGetArrayValueString;
constinit GetProcedureFinder<REALobject, &find_own_get<REALobjectStruct>>   REALGetArrayValueObject;
constinit SetProcedureFinder<std::int32_t, &find_own_set_integer>           REALSetArrayValueInt32;
constinit SetProcedureFinder<REALstring, &find_own_set<REALstringStruct>>   REALSetArrayValueString;
constinit SetProcedureFinder<REALobject, &find_own_set<REALobjectStruct>>   REALSetArrayValueObject;
constinit InsertProcedureFinder<std::int32_t>                               REALInsertArrayValueInt32;
constinit InsertProcedureFinder<REALstring>                                 REALInsertArrayValueString;
constinit InsertProcedureFinder<REALobject>                                 REALInsertArrayValueObject;

// clang-format on

template <class Finder, class Element>
void get_element(Finder& find_procedure, REALarray array, std::int32_t index, Element* value) {
  if (value == nullptr) return;
  if (const auto get = find_procedure(array); get != nullptr) *value = get(array, index);
}

template <class Finder, class Element>
void insert_element(Finder& find_procedure, REALarray array, std::int32_t index, Element value) {
  if (const auto insert = find_procedure(array); insert != nullptr) insert(array, index, value);
}

}  // namespace

void REALGetArrayValue(REALarray array, std::int32_t index, std::int32_t* value) {
  get_element(REALGetArrayValueInt32, array, index, value);
}
void REALGetArrayValue(REALarray array, std::int32_t index, REALstring* value) {
  get_element(REALGetArrayValueString, array, index, value);
}
void REALGetArrayValue(REALarray array, std::int32_t index, REALobject* value) {
  get_element(REALGetArrayValueObject, array, index, value);
}

template <>
SetProcedure<std::int32_t> ArrayWriter<std::int32_t>::find_procedure(REALarray array) {
  return REALSetArrayValueInt32(array);
}
template <>
SetProcedure<REALstring> ArrayWriter<REALstring>::find_procedure(REALarray array) {
  return REALSetArrayValueString(array);
}
template <>
SetProcedure<REALobject> ArrayWriter<REALobject>::find_procedure(REALarray array) {
  return REALSetArrayValueObject(array);
}

void REALInsertArrayValue(REALarray array, std::int32_t index, std::int32_t value) {
  insert_element(REALInsertArrayValueInt32, array, index, value);
}
void REALInsertArrayValue(REALarray array, std::int32_t index, REALstring value) {
  insert_element(REALInsertArrayValueString, array, index, value);
}
void REALInsertArrayValue(REALarray array, std::int32_t index, REALobject value) {
  insert_element(REALInsertArrayValueObject, array, index, value);
}
