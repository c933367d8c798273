// Variants: making them, asking what they hold, and converting it.
//
// The handle of a variant that holds a primitive is a box. A variant that holds an object (a Date,
// a Dictionary, any instance) is that object's own handle. Null is Nil.
#ifndef ZRB_STANDIN_RUNTIME_VARIANTS_H
#define ZRB_STANDIN_RUNTIME_VARIANTS_H

#include <cstdint>
#include <string>
#include <string_view>

#include "runtime/handles.h"
#include "runtime/value.h"

namespace standin {

ObjectRef variant_from_boolean(bool value);
ObjectRef variant_from_integer(std::int32_t value);
ObjectRef variant_from_int64(std::int64_t value);
ObjectRef variant_from_single(float value);
ObjectRef variant_from_double(double value);
ObjectRef variant_from_currency(std::int64_t scaled);
ObjectRef variant_from_color(std::uint32_t rgb);
// Locks the string. A null string gives a variant that holds "".
ObjectRef variant_from_string(REALstring string);
// A box around an object, of type 9 (7 for a Date): what "VariantToObject" of it gives is the
// object that it holds. The host language never makes one; hosts might.
ObjectRef box_object(REALobject object);

// The type code; nil for null. Any object but a Date is `object`.
VariantType variant_type(REALobject variant);

// Lenient conversions. Numbers convert to one another as the language assigns them (fractions are
// cut, what does not fit saturates); strings are read as far as they are numbers; numbers become
// text as Str makes it, with up to 15 significant digits, Currency with up to 4 decimals; True is 1
// and "True"; a colour is its 24 bits and "&cRRGGBB"; a Date is its total seconds and "2012-05-17
// 10:00:00". Everything else is 0, False, "".
std::int32_t to_int32(REALobject variant);
std::int64_t to_int64(REALobject variant);
float to_single(REALobject variant);
double to_double(REALobject variant);
std::int64_t to_currency(REALobject variant);
bool to_boolean(REALobject variant);
std::uint32_t to_color(REALobject variant);
StringRef to_string(REALobject variant);
// The object that the variant holds: a box's object, otherwise the handle itself, also for boxed
// primitives. Borrowed.
REALobject to_object(REALobject variant);

// Equal values of one type hash alike; an object's hash is its identity's; 0 for Nil.
std::uint32_t variant_hash(REALobject variant);

// Whether it holds a number, or a string that is one.
bool is_numeric(REALobject variant);

// What a variant holds, as a value of that type: kind `void_` for Nil.
Value to_value(REALobject variant);
// Any value as a variant. Arrays cannot be held: TypeMismatchException.
ObjectRef from_value(const Value& value);

// A number's text, as variants convert it.
std::string number_text(double value);
std::string number_text(float value);
std::string currency_text(std::int64_t scaled);
std::string color_text(std::uint32_t rgb);
// Whether a text is a number and nothing else but blanks around it.
bool is_number_text(std::string_view text);
// The number that a text starts with (after blanks; &h, &b and &o forms too); 0 if none.
double parse_number(std::string_view text);
// The same for whole numbers, exact over all 64 bits.
std::int64_t parse_integer(std::string_view text);

// Out of range saturates, NaN is 0.
std::int32_t saturate_int32(double value);
std::int64_t saturate_int64(double value);

}  // namespace standin

#endif
