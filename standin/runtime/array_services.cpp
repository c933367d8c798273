// The entry points for arrays, and the procedures for their elements.
#include "runtime/arrays.h"
#include "runtime/entry_points.h"
#include "runtime/guarded.h"
#include "runtime/services.h"

namespace standin::services {
namespace {

// The three procedures of one kind, as places in the table of entry points.
struct Procedures {
  std::size_t integer;
  std::size_t string;
  std::size_t object;
};

Procedures procedures(const std::string& verb) {
  return {require_entry_point("array " + verb + " integer"),
          require_entry_point("array " + verb + " string"),
          require_entry_point("array " + verb + " object")};
}

// Arrays that only the language can make have no procedures.
void* procedure_of(const Procedures& places, REALarray array) {
  if (array == nullptr) return nullptr;
  const Host& host = Host::current();
  switch (array->storage) {
    case ElementStorage::integer:
      return host.hand_out(places.integer);
    case ElementStorage::string:
      return host.hand_out(places.string);
    case ElementStorage::object:
      return host.hand_out(places.object);
    default:
      return nullptr;
  }
}

}  // namespace

REALarray create_array(std::int32_t element_type, std::int32_t upper_bound) {
  if (upper_bound < -1) return nullptr;
  return guarded([&]() -> REALarray {
    switch (static_cast<ArrayElementType>(element_type)) {
      case ArrayElementType::integer:
        return make_array(ElementStorage::integer, upper_bound).release();
      case ArrayElementType::string:
        return make_array(ElementStorage::string, upper_bound).release();
      case ArrayElementType::object:
        return make_array(ElementStorage::object, upper_bound).release();
    }
    return nullptr;
  });
}

std::int32_t array_upper_bound(REALarray array) {
  return array == nullptr ? -1 : upper_bound(array);
}

void* array_get_procedure(REALarray array) {
  static const Procedures places = procedures("get");
  return procedure_of(places, array);
}
void* array_set_procedure(REALarray array) {
  static const Procedures places = procedures("set");
  return procedure_of(places, array);
}
void* array_insert_procedure(REALarray array) {
  static const Procedures places = procedures("insert");
  return procedure_of(places, array);
}

std::int32_t array_get_integer(REALarray array, std::int32_t index) {
  return guarded([&] { return get(array, index).as_integer(); });
}
REALstring array_get_string(REALarray array, std::int32_t index) {
  return guarded([&] { return get(array, index).share_string().release(); });
}
REALobject array_get_object(REALarray array, std::int32_t index) {
  return guarded([&] { return get(array, index).share_object().release(); });
}

void array_set_integer(REALarray array, std::int32_t value, std::int32_t index) {
  guarded([&] { set(array, index, Value::of_integer(value)); });
}
void array_set_string(REALarray array, REALstring value, std::int32_t index) {
  guarded([&] { set(array, index, Value::of_string(StringRef::share(value))); });
}
void array_set_object(REALarray array, REALobject value, std::int32_t index) {
  guarded([&] { set(array, index, Value::of_object(ObjectRef::share(value))); });
}

void array_insert_integer(REALarray array, std::int32_t index, std::int32_t value) {
  guarded([&] { insert(array, index, Value::of_integer(value)); });
}
void array_insert_string(REALarray array, std::int32_t index, REALstring value) {
  guarded([&] { insert(array, index, Value::of_string(StringRef::share(value))); });
}
void array_insert_object(REALarray array, std::int32_t index, REALobject value) {
  guarded([&] { insert(array, index, Value::of_object(ObjectRef::share(value))); });
}

}  // namespace standin::services
