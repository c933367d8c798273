// RuntimeException and its subclasses, and throwing them.
#include "runtime/exceptions.h"

#include <stdexcept>

#include "runtime/host.h"
#include "runtime/native_classes.h"
#include "runtime/strings.h"

namespace standin {
namespace {

struct ExceptionData {
  StringRef message;
  std::int32_t error_number = 0;
};

constexpr NativeData exception_data = native_data_of<ExceptionData>();

// Null for an object that is no exception.
ExceptionData* data_of(REALobject exception) {
  const ClassInfo* owner = class_with(exception, exception_data.construct);
  return owner == nullptr ? nullptr : static_cast<ExceptionData*>(instance_data(exception, *owner));
}

Value construct(REALobject self, std::span<const Value> arguments) {
  if (!arguments.empty()) data_of(self)->message = arguments[0].share_string();
  if (arguments.size() > 1) data_of(self)->error_number = arguments[1].as_integer();
  return {};
}

Value get_message(REALobject self) {
  return Value::of_string(data_of(self)->message);
}
void set_message(REALobject self, const Value& value) {
  data_of(self)->message = value.share_string();
}
Value get_error_number(REALobject self) {
  return Value::of_integer(data_of(self)->error_number);
}
void set_error_number(REALobject self, const Value& value) {
  data_of(self)->error_number = value.as_integer();
}

constexpr NativeMethodRow methods[] = {
    {"Constructor", construct},
    {"Constructor(message As String)", construct},
    {"Constructor(message As String, errorNumber As Integer)", construct},
};

constexpr NativePropertyRow properties[] = {
    {"Message", "String", get_message, set_message},
    {"ErrorNumber", "Integer", get_error_number, set_error_number},
};

}  // namespace

std::span<const NativeClassRow> exception_class_rows() {
  static const NativeClassRow rows[] = {
      {"RuntimeException", nullptr, exception_data, methods, properties},
      {"NilObjectException", "RuntimeException", {}},
      {"KeyNotFoundException", "RuntimeException", {}},
      {"OutOfBoundsException", "RuntimeException", {}},
      {"IllegalCastException", "RuntimeException", {}},
      {"TypeMismatchException", "RuntimeException", {}},
      {"ZeroDivisionException", "RuntimeException", {}},
      {"StackOverflowException", "RuntimeException", {}},
      {"OutOfMemoryException", "RuntimeException", {}},
      {"UnsupportedFormatException", "RuntimeException", {}},
      {"InvalidArgumentException", "RuntimeException", {}},
  };
  return rows;
}

HostException::HostException(ObjectRef object) : exception_(std::move(object)) {
  what_ = class_name();
  const std::string text = message();
  if (!text.empty()) what_ += ": " + text;
}

std::string HostException::class_name() const {
  const ClassInfo* class_info = class_of(exception_.get());
  return class_info == nullptr ? "(no exception object)" : class_info->name();
}

std::string HostException::message() const {
  return utf8(exception_message(exception_.get()).get());
}

ObjectRef make_exception(std::string_view class_name, std::string_view message,
                         std::int32_t error_number) {
  Host& host = Host::current();
  const ClassInfo* class_info = host.find_class(class_name);
  if (class_info == nullptr) class_info = host.find_class("RuntimeException");
  ObjectRef exception = make_instance(*class_info);
  if (data_of(exception.get()) == nullptr) {
    exception = make_instance(*host.find_class("RuntimeException"));
  }
  ExceptionData& data = *data_of(exception.get());
  if (!message.empty()) data.message = make_string(message);
  data.error_number = error_number;
  return exception;
}

void raise(std::string_view class_name, std::string_view message, std::int32_t error_number) {
  throw HostException(make_exception(class_name, message, error_number));
}

StringRef exception_message(REALobject exception) {
  const ExceptionData* data = data_of(exception);
  return data == nullptr ? StringRef() : data->message;
}

std::int32_t exception_error_number(REALobject exception) {
  const ExceptionData* data = data_of(exception);
  return data == nullptr ? 0 : data->error_number;
}

}  // namespace standin
