// One-dimensional arrays.
//
// Elements are stored by kind: 32-bit integers, string handles, object handles (for Variants,
// Object and every class), and the language's other primitives. An array owns one lock on every
// handle in it. An index out of range raises OutOfBoundsException (thrown as HostException), a null
// array NilObjectException.
#ifndef ZRB_STANDIN_RUNTIME_ARRAYS_H
#define ZRB_STANDIN_RUNTIME_ARRAYS_H

#include <cstdint>
#include <limits>

#include "runtime/handles.h"
#include "runtime/value.h"

namespace standin {

ElementStorage storage_of(const Type& element);

// An upper bound of -1 gives an empty array. The elements are counted by an Integer.
inline constexpr std::int64_t least_upper_bound = -1;
inline constexpr std::int64_t greatest_upper_bound = std::numeric_limits<std::int32_t>::max() - 1;

// Elements from 0 to the upper bound start as 0, "", Nil. An upper bound that no array has raises
// OutOfBoundsException.
ArrayRef make_array(const Type& element, std::int64_t upper_bound);
ArrayRef make_array(ElementStorage storage, std::int64_t upper_bound);

std::int32_t upper_bound(REALarray array);
ElementStorage storage(REALarray array);

// An element of object storage is read as kind `object`; with the element's type given, Variants
// come as kind `variant`.
Value get(REALarray array, std::int32_t index);
Value get(REALarray array, std::int32_t index, const Type& element);
// The value must be of the kind that the array stores; both `object` and `variant` fit object
// storage.
void set(REALarray array, std::int32_t index, const Value& value);
// At any index from 0 to the upper bound plus one.
void insert(REALarray array, std::int32_t index, const Value& value);
void append(REALarray array, const Value& value);
void remove(REALarray array, std::int32_t index);
// For an index that the array, which must not be null, does not have.
[[noreturn]] void raise_out_of_bounds(REALarray array, std::int64_t index);
// Keeps what still fits.
void resize(REALarray array, std::int64_t upper_bound);
// Exchanges two elements.
void swap(REALarray array, std::int32_t a, std::int32_t b);

// Direct access without a lock or a Value, for sorting and for the element procedures. The storage
// must be the right one and the index in range.
std::int32_t& integer_at(REALarray array, std::int32_t index);
REALstring& string_at(REALarray array, std::int32_t index);
REALobject& object_at(REALarray array, std::int32_t index);

}  // namespace standin

#endif
