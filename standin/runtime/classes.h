// Classes: those that a plugin registered and those that the host has of itself, seen alike.
#ifndef ZRB_STANDIN_RUNTIME_CLASSES_H
#define ZRB_STANDIN_RUNTIME_CLASSES_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/declarations.h"
#include "runtime/value.h"

namespace standin {

class ClassInfo;

// A method of a native class: the arguments in the order of the declaration; of a setter, the
// assigned value last. Raises by throwing HostException.
using NativeMethod = Value (*)(REALobject self, std::span<const Value> arguments);
using NativeGetter = Value (*)(REALobject self);
using NativeSetter = void (*)(REALobject self, const Value& value);

struct MethodInfo {
  Declaration declaration;
  void* function = nullptr;  // a plugin's routine, or null
  void* setter = nullptr;    // of an assignable declaration
  NativeMethod native = nullptr;
  NativeMethod native_setter = nullptr;
  const ClassInfo* owner = nullptr;
  std::size_t index = 0;  // row in the owner's table

  // Whether `name(arguments) = value` may be written.
  bool is_assignable() const {
    return setter != nullptr || native_setter != nullptr || declaration.has_assigns();
  }
};

struct PropertyInfo {
  std::string name;
  Type type;
  void* getter = nullptr;
  void* setter = nullptr;  // null: read-only
  std::int32_t param = 0;
  NativeGetter native_getter = nullptr;
  NativeSetter native_setter = nullptr;
  const ClassInfo* owner = nullptr;

  bool is_writable() const { return setter != nullptr || native_setter != nullptr; }
};

// What a native class does with the data of its instances, which the runtime gives it zeroed.
struct NativeData {
  std::size_t size = 0;
  void (*construct)(void* data) = nullptr;
  void (*destroy)(void* data) = nullptr;
};

class ClassInfo {
 public:
  // A native class.
  ClassInfo(std::string name, const ClassInfo* super, NativeData data);
  // A registered class. `guard` bytes lie before and behind each instance's data, to notice who
  // writes out of bounds; 0 for none.
  ClassInfo(const REALclassDefinition& definition, const ClassInfo* super, std::size_t guard);
  ClassInfo(const ClassInfo&) = delete;
  ClassInfo& operator=(const ClassInfo&) = delete;

  // Called once; tells each row its owner and its index.
  void set_members(std::vector<MethodInfo> methods, std::vector<PropertyInfo> properties);

  const std::string& name() const { return name_; }
  const ClassInfo* super() const { return super_; }
  bool is_native() const { return definition_ == nullptr; }
  const REALclassDefinition* definition() const { return definition_; }  // null if native
  // Where the class's own data lies in an instance, and how many bytes it is.
  std::size_t data_offset() const { return data_offset_; }
  std::size_t data_size() const { return data_size_; }
  std::size_t instance_size() const { return instance_size_; }
  std::size_t guard() const { return guard_; }
  const NativeData& native_data() const { return native_data_; }
  void* destructor() const;

  // In the order of the class's tables, without inherited ones.
  std::span<const MethodInfo> methods() const { return methods_; }
  std::span<const PropertyInfo> properties() const { return properties_; }

  // All methods of a name, in any case: the class's own, then the inherited ones that they leave
  // visible. Constructors are inherited only by a class without any.
  std::span<const MethodInfo* const> overloads(std::string_view name) const;
  // By declaration text (any case and spacing), inherited ones too; null if none.
  const MethodInfo* find_method(std::string_view declaration) const;
  // By name, inherited ones too; null if none.
  const PropertyInfo* property(std::string_view name) const;
  // True for the class itself.
  bool derives_from(const ClassInfo& other) const;

  // How many instances live.
  std::size_t live_instances() const { return live_instances_; }

 private:
  friend class InstanceCounter;

  std::string name_;
  const ClassInfo* super_;
  const REALclassDefinition* definition_ = nullptr;
  NativeData native_data_;
  std::size_t guard_ = 0;
  std::size_t data_offset_ = 0;
  std::size_t data_size_ = 0;
  std::size_t instance_size_ = 0;
  std::vector<MethodInfo> methods_;
  std::vector<PropertyInfo> properties_;
  std::map<std::string, std::vector<const MethodInfo*>, std::less<>> overloads_;  // by lower name
  std::map<std::string, const MethodInfo*, std::less<>> by_declaration_;          // normalised
  mutable std::size_t live_instances_ = 0;
};

// The class of an object; null for null and for boxed primitives.
inline const ClassInfo* class_of(REALobject object) {
  return object == nullptr ? nullptr : object->class_info;
}

// Where an object keeps the data of one of its classes.
inline void* instance_data(REALobject object, const ClassInfo& class_info) {
  return reinterpret_cast<char*>(object) + class_info.data_offset();
}

// A new instance: zeroed data, 16-byte aligned; native data constructed; no constructor run.
ObjectRef make_instance(const ClassInfo& class_info);

}  // namespace standin

#endif
