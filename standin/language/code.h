// The checked tree: expressions and statements that know their types and where their variables
// live, and run themselves.
#ifndef ZRB_STANDIN_LANGUAGE_CODE_H
#define ZRB_STANDIN_LANGUAGE_CODE_H

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "language/source.h"
#include "runtime/value.h"

namespace standin::language {

class Machine;

// One activation of the program's body or of a routine.
struct Frame {
  Machine* machine = nullptr;
  const Frame* caller = nullptr;
  Value* slots = nullptr;  // parameters, then variables
  Position position;       // of the statement at work
  int leaving = 0;         // which loop an Exit or Continue is about
  Value result;
};

// Everything may raise HostException.
class Expression {
 public:
  explicit Expression(const Type& type) : type_(type) {}
  virtual ~Expression() = default;
  Expression(const Expression&) = delete;
  Expression& operator=(const Expression&) = delete;

  const Type& type() const { return type_; }
  bool is(TypeKind kind) const { return type_.kind == kind; }

  // The value's kind is that of the type.
  virtual Value value(Frame& frame) const = 0;
  // The same without a Value around it; only for expressions of that type.
  virtual bool boolean(Frame& frame) const { return value(frame).as_boolean(); }
  virtual std::int32_t integer(Frame& frame) const { return value(frame).as_integer(); }
  virtual std::int64_t int64(Frame& frame) const { return value(frame).as_int64(); }
  virtual double real(Frame& frame) const { return value(frame).as_double(); }
  // The variable itself; null for what is no variable.
  virtual Value* place(Frame&) const { return nullptr; }
  virtual bool is_variable() const { return false; }
  // Evaluates and drops the result.
  virtual void run(Frame& frame) const { value(frame); }

  virtual bool is_literal() const { return false; }
  virtual bool is_nil() const { return false; }

 private:
  Type type_;
};

using Code = std::unique_ptr<Expression>;

// Bases of expressions that compute their value without a Value.
class BooleanExpression : public Expression {
 public:
  BooleanExpression() : Expression(Type::of(TypeKind::boolean)) {}
  Value value(Frame& frame) const final { return Value::of_boolean(boolean(frame)); }
  bool boolean(Frame& frame) const override = 0;
};

class IntegerExpression : public Expression {
 public:
  IntegerExpression() : Expression(Type::of(TypeKind::integer)) {}
  Value value(Frame& frame) const final { return Value::of_integer(integer(frame)); }
  std::int32_t integer(Frame& frame) const override = 0;
};

class Int64Expression : public Expression {
 public:
  Int64Expression() : Expression(Type::of(TypeKind::int64)) {}
  Value value(Frame& frame) const final { return Value::of_int64(int64(frame)); }
  std::int64_t int64(Frame& frame) const override = 0;
};

class DoubleExpression : public Expression {
 public:
  DoubleExpression() : Expression(Type::of(TypeKind::double_)) {}
  Value value(Frame& frame) const final { return Value::of_double(real(frame)); }
  double real(Frame& frame) const override = 0;
};

class Literal final : public Expression {
 public:
  Literal(const Type& type, Value value) : Expression(type), value_(std::move(value)) {}
  Value value(Frame&) const override { return value_; }
  bool boolean(Frame&) const override { return value_.as_boolean(); }
  std::int32_t integer(Frame&) const override { return value_.as_integer(); }
  std::int64_t int64(Frame&) const override { return value_.as_int64(); }
  double real(Frame&) const override { return value_.as_double(); }
  bool is_literal() const override { return true; }

 private:
  Value value_;
};

// Nil, of type Object; it converts to every class, to Variant and to arrays.
class NilLiteral final : public Expression {
 public:
  NilLiteral() : Expression(Type::of(TypeKind::object)) {}
  Value value(Frame&) const override { return Value::of_object(nullptr); }
  bool is_nil() const override { return true; }
};

// How a statement ended.
enum class Flow : std::uint8_t { next, exit, continue_, return_ };

class Statement {
 public:
  explicit Statement(Position position) : position_(position) {}
  virtual ~Statement() = default;
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  Position position() const { return position_; }
  virtual Flow run(Frame& frame) const = 0;

 private:
  Position position_;
};

// Statements with the variables that live in them. When the block is left, however that happens,
// its variables let go of what they hold.
class Block {
 public:
  Block() = default;
  Flow run(Frame& frame) const;
  void add(std::unique_ptr<Statement> statement) { statements_.push_back(std::move(statement)); }
  // The slots that the block's own variables with handles lie in.
  void set_slots(int first, int end) {
    first_slot_ = first;
    end_slot_ = end;
  }

 private:
  Flow run_statements(Frame& frame) const;

  std::vector<std::unique_ptr<Statement>> statements_;
  int first_slot_ = 0;
  int end_slot_ = 0;
};

// A Sub or Function, or the program's body, ready to run.
struct Function {
  std::string name;
  int slot_count = 0;
  Type result;
  Block body;
};

}  // namespace standin::language

#endif
