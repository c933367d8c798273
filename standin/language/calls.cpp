// The code of calls: of the program's routines, of methods, of library routines.
#include "language/calls.h"

#include <cstddef>
#include <memory>
#include <new>
#include <span>
#include <utility>

#include "language/machine.h"
#include "language/variables.h"

namespace standin::language {
namespace {

// Arguments, evaluated in order. Most calls have one or two: what is not used is not touched.
class Arguments {
 public:
  Arguments() = default;
  // Apart from the constructor, so that what was evaluated is released when an argument raises.
  std::span<const Value> evaluate(Frame& frame, const std::vector<Code>& codes) {
    for (const Code& code : codes) {
      new (storage_ + count_ * sizeof(Value)) Value(code->value(frame));
      ++count_;
    }
    return {data(), count_};
  }
  ~Arguments() { std::destroy_n(data(), count_); }
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

 private:
  Value* data() { return std::launder(reinterpret_cast<Value*>(storage_)); }

  std::size_t count_ = 0;
  alignas(Value) std::byte storage_[(most_arguments + 1) * sizeof(Value)];  // and a setter's value
};

REALobject required(const Value& object, const char* kind, const std::string& member) {
  if (object.as_object() == nullptr) {
    raise("NilObjectException", std::string("the ") + kind + " " + member + " of Nil was used");
  }
  return object.as_object();
}

class FunctionCall final : public Expression {
 public:
  FunctionCall(const Function& function, std::vector<Code> arguments, std::vector<bool> by_ref)
      : Expression(function.result),
        function_(function),
        arguments_(std::move(arguments)),
        by_ref_(std::move(by_ref)) {}
  Value value(Frame& frame) const override {
    Activation activation(*frame.machine, function_);
    for (std::size_t i = 0; i < arguments_.size(); ++i) {
      activation.slots()[i] =
          by_ref_[i] ? reference_to(arguments_[i]->place(frame)) : arguments_[i]->value(frame);
    }
    return activation.run();
  }

 private:
  const Function& function_;
  std::vector<Code> arguments_;
  std::vector<bool> by_ref_;
};

class MethodCall final : public Expression {
 public:
  MethodCall(Code object, const MethodInfo& method, std::vector<Code> arguments, bool sets)
      : Expression(sets ? Type() : method.declaration.result),
        object_(std::move(object)),
        method_(method),
        arguments_(std::move(arguments)),
        sets_(sets) {}
  Value value(Frame& frame) const override {
    const Value object = object_->value(frame);
    Arguments storage;
    const auto arguments = storage.evaluate(frame, arguments_);
    const REALobject instance = required(object, "method", method_.declaration.name);
    return sets_ ? invoke_setter(method_, instance, arguments)
                 : invoke(method_, instance, arguments);
  }

 private:
  Code object_;
  const MethodInfo& method_;
  std::vector<Code> arguments_;
  bool sets_;
};

class PropertyRead final : public Expression {
 public:
  PropertyRead(Code object, const PropertyInfo& property)
      : Expression(property.type), object_(std::move(object)), property_(property) {}
  Value value(Frame& frame) const override {
    const Value object = object_->value(frame);
    return read_property(property_, required(object, "property", property_.name));
  }

 private:
  Code object_;
  const PropertyInfo& property_;
};

class PropertyWrite final : public Expression {
 public:
  PropertyWrite(Code object, const PropertyInfo& property, Code value)
      : Expression(Type()),
        object_(std::move(object)),
        property_(property),
        value_(std::move(value)) {}
  Value value(Frame& frame) const override {
    const Value object = object_->value(frame);
    const Value value = value_->value(frame);
    write_property(property_, required(object, "property", property_.name), value);
    return {};
  }

 private:
  Code object_;
  const PropertyInfo& property_;
  Code value_;
};

class LibraryCall final : public Expression {
 public:
  LibraryCall(const Routine& routine, const Type& result, const Type& element,
              std::vector<Code> arguments)
      : Expression(result),
        function_(routine.function),
        element_(element),
        arguments_(std::move(arguments)) {}
  Value value(Frame& frame) const override {
    Arguments storage;
    const auto arguments = storage.evaluate(frame, arguments_);
    return function_({*frame.machine, arguments, element_});
  }

 private:
  RoutineFunction function_;
  Type element_;
  std::vector<Code> arguments_;
};

class NewObject final : public Expression {
 public:
  NewObject(const ClassInfo& class_info, const MethodInfo* constructor, std::vector<Code> arguments)
      : Expression(Type::of_class(&class_info)),
        class_info_(class_info),
        constructor_(constructor),
        arguments_(std::move(arguments)) {}
  Value value(Frame& frame) const override {
    Arguments storage;
    const auto arguments = storage.evaluate(frame, arguments_);
    ObjectRef instance = frame.machine->host().new_instance(class_info_);
    if (constructor_ != nullptr) invoke(*constructor_, instance.get(), arguments);
    return Value::of_object(std::move(instance));
  }

 private:
  const ClassInfo& class_info_;
  const MethodInfo* constructor_;
  std::vector<Code> arguments_;
};

}  // namespace

Code make_function_call(const Function& function, std::vector<Code> arguments,
                        std::vector<bool> by_ref) {
  return std::make_unique<FunctionCall>(function, std::move(arguments), std::move(by_ref));
}

Code make_method_call(Code object, const MethodInfo& method, std::vector<Code> arguments) {
  return std::make_unique<MethodCall>(std::move(object), method, std::move(arguments), false);
}

Code make_setter_call(Code object, const MethodInfo& method, std::vector<Code> arguments) {
  return std::make_unique<MethodCall>(std::move(object), method, std::move(arguments), true);
}

Code make_property_read(Code object, const PropertyInfo& property) {
  return std::make_unique<PropertyRead>(std::move(object), property);
}

Code make_property_write(Code object, const PropertyInfo& property, Code value) {
  return std::make_unique<PropertyWrite>(std::move(object), property, std::move(value));
}

Code make_routine_call(const Routine& routine, const Type& result, const Type& element,
                       std::vector<Code> arguments) {
  return std::make_unique<LibraryCall>(routine, result, element, std::move(arguments));
}

Code make_new_object(const ClassInfo& class_info, const MethodInfo* constructor,
                     std::vector<Code> arguments) {
  return std::make_unique<NewObject>(class_info, constructor, std::move(arguments));
}

}  // namespace standin::language
