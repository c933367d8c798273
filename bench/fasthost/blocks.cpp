#include "fasthost/blocks.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace fasthost {
namespace {

void* allocate(std::size_t size, bool zeroed) {
  void* block = zeroed ? std::calloc(size, 1) : std::malloc(size);
  if (block == nullptr) {
    std::fputs("fast host: out of memory; measure fewer elements\n", stderr);
    std::exit(EXIT_FAILURE);
  }
  return block;
}

std::size_t element_size(ArrayElementType type) {
  return type == ArrayElementType::integer ? sizeof(std::int32_t) : sizeof(void*);
}

void release_elements(REALarray array) {
  for (std::int32_t i = 0; i <= array->upper_bound; ++i) {
    if (array->element_type == ArrayElementType::string) {
      if (REALstring string = array->strings()[i]) unlock(string);
    } else if (array->element_type == ArrayElementType::object) {
      if (REALobject object = static_cast<REALobject*>(array->elements)[i]) unlock(object);
    }
  }
}

}  // namespace

REALstring make_string(std::string_view text, std::uint32_t tag) {
  auto* string =
      static_cast<REALstring>(allocate(sizeof(REALstringStruct) + text.size() + 1, false));
  *string = {1, host_encoding::utf8, static_cast<std::uint32_t>(text.size()), tag};
  std::memcpy(string->bytes(), text.data(), text.size());
  string->bytes()[text.size()] = '\0';
  return string;
}

REALobject make_instance(const REALclassDefinition& definition) {
  const auto size = sizeof(REALobjectStruct) + static_cast<std::size_t>(definition.dataSize);
  auto* object = static_cast<REALobject>(allocate(size, true));
  object->locks = 1;
  object->kind = ObjectKind::instance;
  object->definition = &definition;
  return object;
}

REALarray make_array(ArrayElementType element_type, std::int32_t upper_bound) {
  auto* array = static_cast<REALarray>(allocate(sizeof(REALarrayStruct), true));
  array->locks = 1;
  array->kind = ObjectKind::array;
  array->upper_bound = upper_bound;
  array->element_type = element_type;
  const auto count = static_cast<std::size_t>(upper_bound + 1);
  if (count > 0) array->elements = allocate(count * element_size(element_type), true);
  return array;
}

void destroy(REALstring string) {
  std::free(string);
}

void destroy(REALobject object) {
  if (object->kind == ObjectKind::array) {
    auto* array = reinterpret_cast<REALarray>(object);
    if (array->element_type != ArrayElementType::integer) release_elements(array);
    std::free(array->elements);
  } else if (void* destructor = object->definition->destructor) {
    reinterpret_cast<void (*)(REALobject)>(destructor)(object);
  }
  std::free(object);
}

}  // namespace fasthost
