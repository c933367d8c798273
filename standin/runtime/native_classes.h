// How the host's own classes are written down: tables of members, much as a plugin's.
#ifndef ZRB_STANDIN_RUNTIME_NATIVE_CLASSES_H
#define ZRB_STANDIN_RUNTIME_NATIVE_CLASSES_H

#include <new>
#include <span>

#include "runtime/classes.h"

namespace standin {

struct NativeMethodRow {
  const char* declaration;
  NativeMethod method;
  NativeMethod setter = nullptr;  // of an assignable one
};

struct NativePropertyRow {
  const char* name;
  const char* type;
  NativeGetter getter;
  NativeSetter setter = nullptr;  // null: read-only
};

struct NativeClassRow {
  const char* name;
  const char* super;  // listed before; null for none
  NativeData data;
  std::span<const NativeMethodRow> methods = {};
  std::span<const NativePropertyRow> properties = {};
};

// All of them, superclasses first.
std::span<const NativeClassRow> native_class_rows();

// The classes' own parts of that list.
NativeClassRow dictionary_class_row();
NativeClassRow date_class_row();
std::span<const NativeClassRow> exception_class_rows();

// Data that is a C++ object.
template <class Data>
constexpr NativeData native_data_of() {
  return {sizeof(Data), [](void* data) { new (data) Data; },
          [](void* data) { static_cast<Data*>(data)->~Data(); }};
}

// The class among an object's classes that owns such data, or null.
inline const ClassInfo* class_with(REALobject object, void (*construct)(void*)) {
  const ClassInfo* c = class_of(object);
  while (c != nullptr && c->native_data().construct != construct) c = c->super();
  return c;
}

// Binds the rows' members to the class.
void bind_native_members(ClassInfo& class_info, const NativeClassRow& row,
                         const TypeResolver& resolver);

}  // namespace standin

#endif
