// Arrays grow by doubling; their vector of elements is plain memory.
#include "runtime/arrays.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <type_traits>

#include "runtime/blocks.h"
#include "runtime/exceptions.h"
#include "runtime/instances.h"
#include "runtime/ledger.h"

namespace standin {
namespace {

std::size_t element_size(ElementStorage storage) {
  switch (storage) {
    case ElementStorage::integer:
    case ElementStorage::single:
    case ElementStorage::color:
      return 4;
    case ElementStorage::string:
    case ElementStorage::object:
      return sizeof(void*);
    case ElementStorage::int64:
    case ElementStorage::double_:
    case ElementStorage::currency:
      return 8;
    case ElementStorage::boolean:
      return 1;
  }
  throw std::logic_error("an array of unknown storage");
}

char* element_address(REALarray array, std::int32_t index) {
  return static_cast<char*>(array->elements) +
         static_cast<std::size_t>(index) * element_size(array->storage);
}

template <class T>
T& element(REALarray array, std::int32_t index) {
  return *reinterpret_cast<T*>(element_address(array, index));
}

void require(REALarray array) {
  if (array == nullptr) raise("NilObjectException", "the array is nil");
}

void require_index(REALarray array, std::int32_t index) {
  require(array);
  if (index < 0 || index >= array->count) raise_out_of_bounds(array, index);
}

void require_upper_bound(std::int64_t upper_bound) {
  if (upper_bound < least_upper_bound || upper_bound > greatest_upper_bound) {
    raise("OutOfBoundsException", "an array with the upper bound " + std::to_string(upper_bound));
  }
}

void reserve(REALarray array, std::int32_t count) {
  if (count <= array->capacity) return;
  const std::int32_t limit = std::numeric_limits<std::int32_t>::max();
  std::int32_t capacity = array->capacity > limit / 2 ? limit : array->capacity * 2;
  if (capacity < count) capacity = count;
  if (capacity < 4) capacity = 4;
  const std::size_t size = element_size(array->storage);
  if (static_cast<std::size_t>(capacity) > std::numeric_limits<std::size_t>::max() / 2 / size) {
    throw std::bad_alloc();
  }
  void* elements = std::realloc(array->elements, static_cast<std::size_t>(capacity) * size);
  if (elements == nullptr) throw std::bad_alloc();
  array->elements = elements;
  array->capacity = capacity;
}

// Opens or closes a gap of zeroed elements; the handles in it are not the array's any more.
void open_gap(REALarray array, std::int32_t index, std::int32_t count) {
  reserve(array, array->count + count);
  const std::size_t size = element_size(array->storage);
  char* gap = element_address(array, index);
  const std::size_t gap_size = static_cast<std::size_t>(count) * size;
  std::memmove(gap + gap_size, gap, static_cast<std::size_t>(array->count - index) * size);
  std::memset(gap, 0, gap_size);
  array->count += count;
}

// The value must be stored before the old one is let go: its end may come back to this array.
template <class Handle>
void replace(Handle& element, Handle value) {
  lock(value);
  const Handle old = element;
  element = value;
  unlock(old);
}

void unlock_elements(REALarray array, std::int32_t from) {
  for (std::int32_t i = from; i < array->count; ++i) {
    if (array->storage == ElementStorage::string) replace<REALstring>(string_at(array, i), nullptr);
    if (array->storage == ElementStorage::object) replace<REALobject>(object_at(array, i), nullptr);
  }
}

[[noreturn]] void refuse_kind() {
  throw std::logic_error("a value of another kind than the array stores");
}

void require_kind(REALarray array, const Value& value) {
  if (array->storage == ElementStorage::object) {
    if (value.kind() != TypeKind::object && value.kind() != TypeKind::variant) refuse_kind();
  } else if (value.kind() == TypeKind::void_ || value.kind() == TypeKind::array ||
             storage_of(Type::of(value.kind())) != array->storage) {
    refuse_kind();
  }
}

}  // namespace

ElementStorage storage_of(const Type& type) {
  switch (type.kind) {
    case TypeKind::boolean:
      return ElementStorage::boolean;
    case TypeKind::integer:
      return ElementStorage::integer;
    case TypeKind::int64:
      return ElementStorage::int64;
    case TypeKind::single:
      return ElementStorage::single;
    case TypeKind::double_:
      return ElementStorage::double_;
    case TypeKind::currency:
      return ElementStorage::currency;
    case TypeKind::color:
      return ElementStorage::color;
    case TypeKind::string:
      return ElementStorage::string;
    case TypeKind::variant:
    case TypeKind::object:
      return ElementStorage::object;
    case TypeKind::void_:
    case TypeKind::array:
      break;
  }
  throw std::logic_error("an array cannot hold elements of type " + name(type));
}

ArrayRef make_array(const Type& element, std::int64_t upper_bound) {
  return make_array(storage_of(element), upper_bound);
}

ArrayRef make_array(ElementStorage storage, std::int64_t upper_bound) {
  require_upper_bound(upper_bound);
  auto* array = static_cast<REALarray>(blocks::allocate(sizeof(REALarrayStruct)));
  array->block = {magic::array, 1};
  array->storage = storage;
  array->serial = blocks::next_serial();
  if (Ledger* ledger = Ledger::active_one()) ledger->created(array, HandleKind::array);
  ArrayRef result = ArrayRef::adopt(array);
  if (upper_bound >= 0) resize(array, upper_bound);
  return result;
}

void release_elements(REALarray array) {
  unlock_elements(array, 0);
  std::free(array->elements);
  array->elements = nullptr;
  array->count = array->capacity = 0;
}

void raise_out_of_bounds(REALarray array, std::int64_t index) {
  const std::string where = array->count == 0
                                ? "an empty array"
                                : "an array from 0 to " + std::to_string(array->count - 1);
  raise("OutOfBoundsException", "index " + std::to_string(index) + " of " + where);
}

std::int32_t upper_bound(REALarray array) {
  require(array);
  return array->count - 1;
}

ElementStorage storage(REALarray array) {
  require(array);
  return array->storage;
}

Value get(REALarray array, std::int32_t index) {
  require_index(array, index);
  switch (array->storage) {
    case ElementStorage::integer:
      return Value::of_integer(element<std::int32_t>(array, index));
    case ElementStorage::string:
      return Value::of_string(StringRef::share(string_at(array, index)));
    case ElementStorage::object:
      return Value::of_object(ObjectRef::share(object_at(array, index)));
    case ElementStorage::int64:
      return Value::of_int64(element<std::int64_t>(array, index));
    case ElementStorage::single:
      return Value::of_single(element<float>(array, index));
    case ElementStorage::double_:
      return Value::of_double(element<double>(array, index));
    case ElementStorage::currency:
      return Value::of_currency(element<std::int64_t>(array, index));
    case ElementStorage::boolean:
      return Value::of_boolean(element<bool>(array, index));
    case ElementStorage::color:
      return Value::of_color(element<std::uint32_t>(array, index));
  }
  refuse_kind();
}

Value get(REALarray array, std::int32_t index, const Type& element_type) {
  if (element_type.kind != TypeKind::variant) return get(array, index);
  require_index(array, index);
  if (array->storage != ElementStorage::object) refuse_kind();
  return Value::of_variant(ObjectRef::share(object_at(array, index)));
}

void set(REALarray array, std::int32_t index, const Value& value) {
  require_index(array, index);
  require_kind(array, value);
  switch (array->storage) {
    case ElementStorage::integer:
      element<std::int32_t>(array, index) = value.as_integer();
      break;
    case ElementStorage::string:
      replace(string_at(array, index), value.as_string());
      break;
    case ElementStorage::object:
      replace(object_at(array, index), value.as_object());
      break;
    case ElementStorage::int64:
      element<std::int64_t>(array, index) = value.as_int64();
      break;
    case ElementStorage::single:
      element<float>(array, index) = value.as_single();
      break;
    case ElementStorage::double_:
      element<double>(array, index) = value.as_double();
      break;
    case ElementStorage::currency:
      element<std::int64_t>(array, index) = value.as_currency();
      break;
    case ElementStorage::boolean:
      element<bool>(array, index) = value.as_boolean();
      break;
    case ElementStorage::color:
      element<std::uint32_t>(array, index) = value.as_color();
      break;
  }
}

void insert(REALarray array, std::int32_t index, const Value& value) {
  require(array);
  if (index != array->count) require_index(array, index);
  if (array->count == std::numeric_limits<std::int32_t>::max()) throw std::bad_alloc();
  require_kind(array, value);
  open_gap(array, index, 1);
  set(array, index, value);
}

void append(REALarray array, const Value& value) {
  require(array);
  insert(array, array->count, value);
}

void remove(REALarray array, std::int32_t index) {
  require_index(array, index);
  const Value removed = get(array, index);
  if (array->storage == ElementStorage::string)
    replace<REALstring>(string_at(array, index), nullptr);
  if (array->storage == ElementStorage::object)
    replace<REALobject>(object_at(array, index), nullptr);
  const std::size_t size = element_size(array->storage);
  char* gap = element_address(array, index);
  std::memmove(gap, gap + size, static_cast<std::size_t>(array->count - index - 1) * size);
  --array->count;
}

void resize(REALarray array, std::int64_t upper_bound) {
  require(array);
  require_upper_bound(upper_bound);
  const auto count = static_cast<std::int32_t>(upper_bound + 1);
  if (count > array->count) {
    open_gap(array, array->count, count - array->count);
  } else {
    unlock_elements(array, count);
    array->count = count;
  }
}

void swap(REALarray array, std::int32_t a, std::int32_t b) {
  require_index(array, a);
  require_index(array, b);
  const std::size_t size = element_size(array->storage);
  char copy[sizeof(std::int64_t)];
  std::memcpy(copy, element_address(array, a), size);
  std::memmove(element_address(array, a), element_address(array, b), size);
  std::memcpy(element_address(array, b), copy, size);
}

std::int32_t& integer_at(REALarray array, std::int32_t index) {
  return element<std::int32_t>(array, index);
}
REALstring& string_at(REALarray array, std::int32_t index) {
  return element<REALstring>(array, index);
}
REALobject& object_at(REALarray array, std::int32_t index) {
  return element<REALobject>(array, index);
}

}  // namespace standin
