#include "host/errors.h"

#include <cstring>

#include "host/locked_handle.h"
#include "host/services.h"
#include "host/unicode_strings.h"

void RaiseException(const char* className, const char* message, std::uint32_t encoding) {
  LockedString text;
  if (message != nullptr) {
    const auto length = static_cast<std::int64_t>(std::strlen(message));
    text = LockedString::adopt(REALBuildUnicodeString(message, length, encoding));
  }
  auto exception = LockedObject::adopt(REALnewInstance(className));
  if (exception.get() == nullptr) {
    exception = LockedObject::adopt(REALnewInstance("RuntimeException"));
  }
  if (exception.get() == nullptr) return;
  REALSetPropValueString(exception.get(), "Message", text.get());
  REALRaiseException(exception.get());
}

namespace {

void raise_nil_object(const char* message) {
  RaiseException("NilObjectException", message, host_encoding::ascii);
}

}  // namespace

// clang-format off
void raise_set_not_initialized()      { raise_nil_object("Set not initialized"); }
void raise_map_not_initialized()      { raise_nil_object("Map not initialized"); }
void raise_other_map_is_nil()         { raise_nil_object("Other map is nil"); }
void raise_array_is_nil()             { raise_nil_object("array is nil"); }
void raise_values_array_is_nil()      { raise_nil_object("values array is nil"); }
void raise_iterator_is_nil()          { raise_nil_object("Iterator is nil"); }
void raise_iterator_not_initialized() { raise_nil_object("Iterator not initialized"); }
void raise_other_iterator_is_nil()    { raise_nil_object("other iterator is nil"); }
void raise_key_not_found()            { RaiseException("KeyNotFoundException", "", host_encoding::ascii); }
// clang-format on
