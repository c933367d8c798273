// Variables, array elements, and what is assigned to them.
#include "language/variables.h"

#include <string>
#include <utility>

#include "language/machine.h"
#include "runtime/arrays.h"
#include "runtime/exceptions.h"

namespace standin::language {
namespace {

class ArrayElement final : public Expression {
 public:
  ArrayElement(Code array, Code index)
      : Expression(*array->type().element),
        array_(std::move(array)),
        index_(std::move(index)),
        is_wide_(index_->is(TypeKind::int64)) {}
  Value value(Frame& frame) const override {
    const Place place = checked_place(frame);
    return get(place.array, place.index, type());
  }
  std::int32_t integer(Frame& frame) const override {
    const Place place = checked_place(frame);
    return integer_at(place.array, place.index);
  }
  // The value comes first, since it may change the array.
  void assign(Frame& frame, const Value& value) const {
    const Place place = checked_place(frame);
    set(place.array, place.index, value);
  }
  void assign_integer(Frame& frame, std::int32_t value) const {
    const Place place = checked_place(frame);
    integer_at(place.array, place.index) = value;
  }

 private:
  struct Place {
    REALarray array;
    std::int32_t index;
  };
  Place checked_place(Frame& frame) const {
    const std::int64_t index = is_wide_ ? index_->int64(frame) : index_->integer(frame);
    const REALarray array = array_->place(frame)->as_array();
    if (index < 0 || index > upper_bound(array)) raise_out_of_bounds(array, index);
    return {array, static_cast<std::int32_t>(index)};
  }

  Code array_, index_;
  bool is_wide_;
};

class NewArray final : public Expression {
 public:
  NewArray(const Type& array, Code upper_bound)
      : Expression(array), upper_bound_(std::move(upper_bound)) {}
  Value value(Frame& frame) const override {
    return Value::of_array(make_array(*type().element, upper_bound_->int64(frame)));
  }

 private:
  Code upper_bound_;
};

class Assignment final : public Statement {
 public:
  Assignment(Code target, Code value, Position position)
      : Statement(position), target_(std::move(target)), value_(std::move(value)) {}
  Flow run(Frame& frame) const override {
    Value value = value_->value(frame);
    *target_->place(frame) = std::move(value);
    return Flow::next;
  }

 private:
  Code target_, value_;
};

class IntegerAssignment final : public Statement {
 public:
  IntegerAssignment(Code target, Code value, Position position)
      : Statement(position), target_(std::move(target)), value_(std::move(value)) {}
  Flow run(Frame& frame) const override {
    const std::int32_t value = value_->integer(frame);
    *target_->place(frame) = Value::of_integer(value);
    return Flow::next;
  }

 private:
  Code target_, value_;
};

class ElementAssignment final : public Statement {
 public:
  ElementAssignment(std::unique_ptr<ArrayElement> target, Code value, Position position)
      : Statement(position), target_(std::move(target)), value_(std::move(value)) {}
  Flow run(Frame& frame) const override {
    if (target_->is(TypeKind::integer)) {
      target_->assign_integer(frame, value_->integer(frame));
    } else {
      target_->assign(frame, value_->value(frame));
    }
    return Flow::next;
  }

 private:
  std::unique_ptr<ArrayElement> target_;
  Code value_;
};

class Declaration final : public Statement {
 public:
  Declaration(int slot, const Type& type, Code initial, Position position)
      : Statement(position), slot_(slot), type_(type), initial_(std::move(initial)) {}
  Flow run(Frame& frame) const override {
    frame.slots[slot_] = initial_ ? initial_->value(frame) : Value::initial(type_);
    return Flow::next;
  }

 private:
  int slot_;
  Type type_;
  Code initial_;
};

class StaticDeclaration final : public Statement {
 public:
  StaticDeclaration(std::size_t index, const Type& type, Code initial, Position position)
      : Statement(position), index_(index), type_(type), initial_(std::move(initial)) {}
  Flow run(Frame& frame) const override {
    if (frame.machine->static_variable(index_).kind() == TypeKind::void_) {
      Value value = initial_ ? initial_->value(frame) : Value::initial(type_);
      frame.machine->static_variable(index_) = std::move(value);
    }
    return Flow::next;
  }

 private:
  std::size_t index_;
  Type type_;
  Code initial_;
};

class ReDim final : public Statement {
 public:
  ReDim(Code array, Code upper_bound, Position position)
      : Statement(position), array_(std::move(array)), upper_bound_(std::move(upper_bound)) {}
  Flow run(Frame& frame) const override {
    const std::int64_t bound = upper_bound_->int64(frame);
    resize(array_->place(frame)->as_array(), bound);
    return Flow::next;
  }

 private:
  Code array_, upper_bound_;
};

}  // namespace

Value reference_to(Value* variable) {
  return Value::of_int64(static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(variable)));
}

Value* referred_to(const Value& slot) {
  return reinterpret_cast<Value*>(static_cast<std::intptr_t>(slot.as_int64()));
}

Value& StaticPlace::in(Frame& frame) const {
  return frame.machine->static_variable(index);
}

Code make_array_element(Code array, Code index) {
  return std::make_unique<ArrayElement>(std::move(array), std::move(index));
}

Code make_new_array(const Type& array, Code upper_bound) {
  return std::make_unique<NewArray>(array, std::move(upper_bound));
}

std::unique_ptr<Statement> make_assignment(Code target, Code value, Position position) {
  if (auto* element = dynamic_cast<ArrayElement*>(target.get())) {
    static_cast<void>(target.release());  // `element` is owned as what it is from here on
    return std::make_unique<ElementAssignment>(std::unique_ptr<ArrayElement>(element),
                                               std::move(value), position);
  }
  if (target->is(TypeKind::integer)) {
    return std::make_unique<IntegerAssignment>(std::move(target), std::move(value), position);
  }
  return std::make_unique<Assignment>(std::move(target), std::move(value), position);
}

std::unique_ptr<Statement> make_declaration(int slot, const Type& type, Code initial,
                                            Position position) {
  return std::make_unique<Declaration>(slot, type, std::move(initial), position);
}

std::unique_ptr<Statement> make_static_declaration(std::size_t index, const Type& type,
                                                   Code initial, Position position) {
  return std::make_unique<StaticDeclaration>(index, type, std::move(initial), position);
}

std::unique_ptr<Statement> make_redim(Code array, Code upper_bound, Position position) {
  return std::make_unique<ReDim>(std::move(array), std::move(upper_bound), position);
}

}  // namespace standin::language
