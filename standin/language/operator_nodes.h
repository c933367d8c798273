// The nodes of operators. Integer, Int64, Double and Boolean have nodes of their own for each
// operator, without a Value in between.
#ifndef ZRB_STANDIN_LANGUAGE_OPERATOR_NODES_H
#define ZRB_STANDIN_LANGUAGE_OPERATOR_NODES_H

#include <type_traits>
#include <utility>

#include "language/code.h"
#include "language/number_operators.h"
#include "language/syntax.h"
#include "runtime/classes.h"
#include "runtime/variants.h"

namespace standin::language {

// How a number type is computed with: the base of its nodes, and how operands are evaluated.
struct IntegerDomain {
  using Base = IntegerExpression;
  using Number = std::int32_t;
  static Number of(const Expression& code, Frame& frame) { return code.integer(frame); }
};
struct Int64Domain {
  using Base = Int64Expression;
  using Number = std::int64_t;
  static Number of(const Expression& code, Frame& frame) { return code.int64(frame); }
};
struct DoubleDomain {
  using Base = DoubleExpression;
  using Number = double;
  static Number of(const Expression& code, Frame& frame) { return code.real(frame); }
};
struct BooleanDomain {
  using Base = BooleanExpression;
  using Number = bool;
  static Number of(const Expression& code, Frame& frame) { return code.boolean(frame); }
};

template <class Domain, class Operation>
class Arithmetic final : public Domain::Base {
 public:
  Arithmetic(Code left, Code right) : left_(std::move(left)), right_(std::move(right)) {}

  std::int32_t integer(Frame& frame) const override {
    if constexpr (std::is_same_v<Domain, IntegerDomain>) {
      return compute(frame);
    } else {
      return Domain::Base::integer(frame);
    }
  }
  std::int64_t int64(Frame& frame) const override {
    if constexpr (std::is_same_v<Domain, Int64Domain>) {
      return compute(frame);
    } else {
      return Domain::Base::int64(frame);
    }
  }
  double real(Frame& frame) const override {
    if constexpr (std::is_same_v<Domain, DoubleDomain>) {
      return compute(frame);
    } else {
      return Domain::Base::real(frame);
    }
  }

 private:
  typename Domain::Number compute(Frame& frame) const {
    const typename Domain::Number left = Domain::of(*left_, frame);
    const typename Domain::Number right = Domain::of(*right_, frame);
    return Operation::apply(left, right);
  }
  Code left_, right_;
};

template <BinaryOperator comparison, class Number>
bool compare_numbers(Number a, Number b) {
  if constexpr (comparison == BinaryOperator::equal) return a == b;
  if constexpr (comparison == BinaryOperator::unequal) return a != b;
  if constexpr (comparison == BinaryOperator::less) return a < b;
  if constexpr (comparison == BinaryOperator::greater) return a > b;
  if constexpr (comparison == BinaryOperator::less_equal) return a <= b;
  if constexpr (comparison == BinaryOperator::greater_equal) return a >= b;
}

template <class Domain, BinaryOperator comparison>
class Comparison final : public BooleanExpression {
 public:
  Comparison(Code left, Code right) : left_(std::move(left)), right_(std::move(right)) {}
  bool boolean(Frame& frame) const override {
    const typename Domain::Number left = Domain::of(*left_, frame);
    const typename Domain::Number right = Domain::of(*right_, frame);
    return compare_numbers<comparison>(left, right);
  }

 private:
  Code left_, right_;
};

// An operator that needs no speed of its own: evaluates both operands, then calls a function.
template <class Function>
class BooleanBinary final : public BooleanExpression {
 public:
  BooleanBinary(Code left, Code right, Function function)
      : left_(std::move(left)), right_(std::move(right)), function_(std::move(function)) {}
  bool boolean(Frame& frame) const override {
    const Value left = left_->value(frame);
    const Value right = right_->value(frame);
    return function_(left, right);
  }

 private:
  Code left_, right_;
  Function function_;
};

// The same with a result that is a Value.
template <class Function>
class ValueBinary final : public Expression {
 public:
  ValueBinary(TypeKind kind, Code left, Code right, Function function)
      : Expression(Type::of(kind)),
        left_(std::move(left)),
        right_(std::move(right)),
        function_(std::move(function)) {}
  Value value(Frame& frame) const override {
    const Value left = left_->value(frame);
    const Value right = right_->value(frame);
    return function_(left, right);
  }

 private:
  Code left_, right_;
  Function function_;
};

template <class Function>
Code boolean_of(Code left, Code right, Function function) {
  return std::make_unique<BooleanBinary<Function>>(std::move(left), std::move(right),
                                                   std::move(function));
}

template <class Function>
Code value_of(TypeKind kind, Code left, Code right, Function function) {
  return std::make_unique<ValueBinary<Function>>(kind, std::move(left), std::move(right),
                                                 std::move(function));
}

class And final : public BooleanExpression {
 public:
  And(Code left, Code right) : left_(std::move(left)), right_(std::move(right)) {}
  bool boolean(Frame& frame) const override {
    return left_->boolean(frame) && right_->boolean(frame);
  }

 private:
  Code left_, right_;
};

class Or final : public BooleanExpression {
 public:
  Or(Code left, Code right) : left_(std::move(left)), right_(std::move(right)) {}
  bool boolean(Frame& frame) const override {
    return left_->boolean(frame) || right_->boolean(frame);
  }

 private:
  Code left_, right_;
};

template <class Operation>
Code number_operation(TypeKind kind, Code left, Code right) {
  if (kind == TypeKind::integer) {
    return std::make_unique<Arithmetic<IntegerDomain, Operation>>(std::move(left),
                                                                  std::move(right));
  }
  if (kind == TypeKind::int64) {
    return std::make_unique<Arithmetic<Int64Domain, Operation>>(std::move(left), std::move(right));
  }
  return std::make_unique<Arithmetic<DoubleDomain, Operation>>(std::move(left), std::move(right));
}

template <class Operation>
Code integer_operation(TypeKind kind, Code left, Code right) {
  if (kind == TypeKind::integer) {
    return std::make_unique<Arithmetic<IntegerDomain, Operation>>(std::move(left),
                                                                  std::move(right));
  }
  return std::make_unique<Arithmetic<Int64Domain, Operation>>(std::move(left), std::move(right));
}

template <class Domain>
Code comparison_in(BinaryOperator operation, Code left, Code right) {
  switch (operation) {
    case BinaryOperator::equal:
      return std::make_unique<Comparison<Domain, BinaryOperator::equal>>(std::move(left),
                                                                         std::move(right));
    case BinaryOperator::unequal:
      return std::make_unique<Comparison<Domain, BinaryOperator::unequal>>(std::move(left),
                                                                           std::move(right));
    case BinaryOperator::less:
      return std::make_unique<Comparison<Domain, BinaryOperator::less>>(std::move(left),
                                                                        std::move(right));
    case BinaryOperator::greater:
      return std::make_unique<Comparison<Domain, BinaryOperator::greater>>(std::move(left),
                                                                           std::move(right));
    case BinaryOperator::less_equal:
      return std::make_unique<Comparison<Domain, BinaryOperator::less_equal>>(std::move(left),
                                                                              std::move(right));
    default:
      return std::make_unique<Comparison<Domain, BinaryOperator::greater_equal>>(std::move(left),
                                                                                 std::move(right));
  }
}

class Not final : public BooleanExpression {
 public:
  explicit Not(Code operand) : operand_(std::move(operand)) {}
  bool boolean(Frame& frame) const override { return !operand_->boolean(frame); }

 private:
  Code operand_;
};

class VariantUnary final : public Expression {
 public:
  VariantUnary(Code operand, ObjectRef (*function)(REALobject))
      : Expression(Type::of(TypeKind::variant)),
        operand_(std::move(operand)),
        function_(function) {}
  Value value(Frame& frame) const override {
    const Value operand = operand_->value(frame);
    return Value::of_variant(function_(operand.as_variant()));
  }

 private:
  Code operand_;
  ObjectRef (*function_)(REALobject);
};

// A Double's sign is changed, not subtracted from 0, which has a sign itself.
class DoubleMinus final : public DoubleExpression {
 public:
  explicit DoubleMinus(Code operand) : operand_(std::move(operand)) {}
  double real(Frame& frame) const override { return -operand_->real(frame); }

 private:
  Code operand_;
};

class IsA final : public BooleanExpression {
 public:
  IsA(Code operand, const ClassInfo* class_info)
      : operand_(std::move(operand)), class_info_(class_info) {}
  bool boolean(Frame& frame) const override {
    const Value operand = operand_->value(frame);
    const REALobject variant = operand.as_object();
    const REALobject object =
        operand.kind() == TypeKind::variant && variant != nullptr ? to_object(variant) : variant;
    const ClassInfo* actual = class_of(object);
    return actual != nullptr && (class_info_ == nullptr || actual->derives_from(*class_info_));
  }

 private:
  Code operand_;
  const ClassInfo* class_info_;
};

}  // namespace standin::language

#endif
