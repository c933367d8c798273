// What the entry points do, as plain functions: plugins reach them through the table in
// entry_points.cpp. They never let an exception of the runtime out: it becomes the pending one, and
// the answer is null, 0 or false.
#ifndef ZRB_STANDIN_RUNTIME_SERVICES_H
#define ZRB_STANDIN_RUNTIME_SERVICES_H

#include <cstdint>

#include "runtime/handles.h"

namespace standin::services {

// A Boolean answer is its low byte; the bytes above hold whatever they happen to hold.
enum class HostBoolean : std::uint32_t { no = 0x5A5A5A00, yes = 0x5A5A5A01 };
inline HostBoolean boolean(bool value) {
  return value ? HostBoolean::yes : HostBoolean::no;
}

// Strings. What is returned carries one lock for the caller.
REALstring build_string(const void* bytes, std::int32_t count);
void set_string_encoding(REALstring string, std::uint32_t encoding);
std::uint32_t get_string_encoding(REALstring string);
REALstring convert_string(REALstring string, std::uint32_t encoding);
void lock_string(REALstring string);
void unlock_string(REALstring string);
HostBoolean get_string_data(REALstring string, std::uint32_t encoding, REALstringData* record);
void dispose_string_data(REALstringData* record);
const char* string_get_cstring(REALstring string);
std::int32_t length_in_bytes(REALstring string);

// Objects; also for arrays and variants.
void lock_object(REALobject object);
void unlock_object(REALobject object);
REALobject new_instance(const char* class_name);
void raise_exception(REALobject exception);

// The plugin's start, and functions by declaration.
void register_plugin_version(std::int32_t version);
double get_version();
void register_class(REALclassDefinition* definition);
void* load_global_method(std::int32_t zero, const char* declaration);
void* load_object_method(REALobject object, const char* declaration);

// Properties by name, of objects and of variants. What string getters give carries one lock for the
// caller; what object getters give is borrowed.
HostBoolean get_property_int32(REALobject object, const char* name, std::int32_t* value);
HostBoolean get_property_int64(REALobject object, const char* name, std::int64_t* value);
HostBoolean get_property_single(REALobject object, const char* name, float* value);
HostBoolean get_property_double(REALobject object, const char* name, double* value);
HostBoolean get_property_string(REALobject object, const char* name, REALstring* value);
HostBoolean get_property_object(REALobject object, const char* name, REALobject* value);
HostBoolean set_property_string(REALobject object, const char* name, REALstring value);

// Variants. New ones and strings carry one lock for the caller; the object that a variant holds is
// borrowed.
REALobject string_to_variant(REALstring string);
REALobject int32_to_variant(std::int32_t value);
std::int32_t variant_type_code(REALobject variant);
REALobject variant_to_object(REALobject variant);
REALstring variant_to_string(REALobject variant);
std::uint32_t hash_of_variant(REALobject variant);
std::int32_t variant_to_int32(REALobject variant);
std::int64_t variant_to_int64(REALobject variant);
float variant_to_single(REALobject variant);
double variant_to_double(REALobject variant);

// Arrays. Elements that are handles carry one lock for the caller.
REALarray create_array(std::int32_t element_type, std::int32_t upper_bound);
std::int32_t array_upper_bound(REALarray array);
void* array_get_procedure(REALarray array);
void* array_set_procedure(REALarray array);
void* array_insert_procedure(REALarray array);
std::int32_t array_get_integer(REALarray array, std::int32_t index);
REALstring array_get_string(REALarray array, std::int32_t index);
REALobject array_get_object(REALarray array, std::int32_t index);
void array_set_integer(REALarray array, std::int32_t value, std::int32_t index);
void array_set_string(REALarray array, REALstring value, std::int32_t index);
void array_set_object(REALarray array, REALobject value, std::int32_t index);
void array_insert_integer(REALarray array, std::int32_t index, std::int32_t value);
void array_insert_string(REALarray array, std::int32_t index, REALstring value);
void array_insert_object(REALarray array, std::int32_t index, REALobject value);

// The methods of Dictionary.
void dictionary_set_value(REALobject dictionary, REALobject key, REALobject value);
REALobject dictionary_get_value(REALobject dictionary, REALobject key);
REALobject dictionary_get_key(REALobject dictionary, std::int32_t index);

}  // namespace standin::services

#endif
