// Exceptions of the host language, as C++ exceptions of the runtime.
#ifndef ZRB_STANDIN_RUNTIME_EXCEPTIONS_H
#define ZRB_STANDIN_RUNTIME_EXCEPTIONS_H

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "runtime/handles.h"

namespace standin {

// Carries the exception object: one that a plugin's routine left pending, or one that the runtime
// raised itself.
class HostException : public std::exception {
 public:
  explicit HostException(ObjectRef object);
  const char* what() const noexcept override { return what_.c_str(); }

  REALobject object() const { return exception_.get(); }
  std::string class_name() const;
  // The "Message" property as UTF-8; "" when it is not set.
  std::string message() const;

 private:
  ObjectRef exception_;
  std::string what_;  // "KeyNotFoundException: message"
};

// A new exception object. Needs a Host; a class that is no exception is taken as RuntimeException.
ObjectRef make_exception(std::string_view class_name, std::string_view message,
                         std::int32_t error_number = 0);

// Throws HostException with such an object.
[[noreturn]] void raise(std::string_view class_name, std::string_view message = "",
                        std::int32_t error_number = 0);

// The text and the number that an exception object carries. Empty and 0 for any other object.
StringRef exception_message(REALobject exception);
std::int32_t exception_error_number(REALobject exception);

}  // namespace standin

#endif
