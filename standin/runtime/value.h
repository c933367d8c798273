// A value of the host language, with the kind of its type.
#ifndef ZRB_STANDIN_RUNTIME_VALUE_H
#define ZRB_STANDIN_RUNTIME_VALUE_H

#include <cassert>
#include <cstdint>
#include <string>
#include <utility>

#include "runtime/handles.h"
#include "runtime/types.h"

namespace standin {

// Two words; cheap to move. A handle inside is locked once. The `as_…` accessors require the right
// kind; those for handles lend the handle without a lock.
//
// A Variant is a value of kind `variant` with the handle of a box or of any object, or null (Nil).
class Value {
 public:
  Value() noexcept : kind_(TypeKind::void_), payload_{.handle = nullptr} {}
  ~Value() {
    if (holds_handle()) unlock_handle();
  }
  Value(const Value& other) : kind_(other.kind_), payload_(other.payload_) {
    if (holds_handle()) lock_handle();
  }
  Value(Value&& other) noexcept : kind_(other.kind_), payload_(other.payload_) {
    other.kind_ = TypeKind::void_;
  }
  Value& operator=(const Value& other) {
    Value copy(other);
    swap(copy);
    return *this;
  }
  Value& operator=(Value&& other) noexcept {
    Value moved(std::move(other));
    swap(moved);
    return *this;
  }

  static Value of_boolean(bool value) { return {TypeKind::boolean, {.boolean = value}}; }
  static Value of_integer(std::int32_t value) { return {TypeKind::integer, {.integer = value}}; }
  static Value of_int64(std::int64_t value) { return {TypeKind::int64, {.int64 = value}}; }
  static Value of_single(float value) { return {TypeKind::single, {.single = value}}; }
  static Value of_double(double value) { return {TypeKind::double_, {.double_ = value}}; }
  // Scaled by 10,000.
  static Value of_currency(std::int64_t value) { return {TypeKind::currency, {.int64 = value}}; }
  // 0x00RRGGBB
  static Value of_color(std::uint32_t value) { return {TypeKind::color, {.color = value}}; }
  static Value of_string(StringRef value) {
    return {TypeKind::string, {.handle = value.release()}};
  }
  static Value of_object(ObjectRef value) {
    return {TypeKind::object, {.handle = value.release()}};
  }
  static Value of_variant(ObjectRef value) {
    return {TypeKind::variant, {.handle = value.release()}};
  }
  static Value of_array(ArrayRef value) { return {TypeKind::array, {.handle = value.release()}}; }

  // What a variable of this type starts as: 0, "", False, Nil; for an array the null array.
  static Value initial(const Type& type) {
    Value value;
    value.kind_ = type.kind;
    value.payload_ = {.int64 = 0};
    if (value.holds_handle()) value.payload_ = {.handle = nullptr};
    return value;
  }

  TypeKind kind() const noexcept { return kind_; }

  bool as_boolean() const { return checked(TypeKind::boolean).boolean; }
  std::int32_t as_integer() const { return checked(TypeKind::integer).integer; }
  std::int64_t as_int64() const { return checked(TypeKind::int64).int64; }
  float as_single() const { return checked(TypeKind::single).single; }
  double as_double() const { return checked(TypeKind::double_).double_; }
  std::int64_t as_currency() const { return checked(TypeKind::currency).int64; }
  std::uint32_t as_color() const { return checked(TypeKind::color).color; }
  REALstring as_string() const { return static_cast<REALstring>(checked(TypeKind::string).handle); }
  REALarray as_array() const { return static_cast<REALarray>(checked(TypeKind::array).handle); }
  // For objects and variants alike.
  REALobject as_object() const {
    assert(kind_ == TypeKind::object || kind_ == TypeKind::variant);
    return static_cast<REALobject>(payload_.handle);
  }
  REALobject as_variant() const { return as_object(); }

  // With a lock of the caller's own.
  StringRef share_string() const { return StringRef::share(as_string()); }
  ObjectRef share_object() const { return ObjectRef::share(as_object()); }

  void swap(Value& other) noexcept {
    std::swap(kind_, other.kind_);
    std::swap(payload_, other.payload_);
  }

 private:
  union Payload {
    bool boolean;
    std::int32_t integer;
    std::int64_t int64;
    float single;
    double double_;
    std::uint32_t color;
    void* handle;
  };

  Value(TypeKind kind, Payload payload) noexcept : kind_(kind), payload_(payload) {}

  bool holds_handle() const { return kind_ >= TypeKind::string; }
  void lock_handle() const;
  void unlock_handle() const;
  const Payload& checked([[maybe_unused]] TypeKind kind) const {
    assert(kind_ == kind);
    return payload_;
  }

  TypeKind kind_;
  Payload payload_;
};

inline void Value::lock_handle() const {
  if (kind_ == TypeKind::string) {
    lock(static_cast<REALstring>(payload_.handle));
  } else if (kind_ == TypeKind::array) {
    lock(static_cast<REALarray>(payload_.handle));
  } else {
    lock(static_cast<REALobject>(payload_.handle));
  }
}

inline void Value::unlock_handle() const {
  if (kind_ == TypeKind::string) {
    unlock(static_cast<REALstring>(payload_.handle));
  } else if (kind_ == TypeKind::array) {
    unlock(static_cast<REALarray>(payload_.handle));
  } else {
    unlock(static_cast<REALobject>(payload_.handle));
  }
}

// For traces and messages: `5`, `"abc"`, `Dictionary #7`.
std::string describe(const Value& value);

}  // namespace standin

#endif
