// The code of operators, by the types of their operands.
#include "language/operators.h"

#include <string>
#include <utility>

#include "language/conversions.h"
#include "language/number_types.h"
#include "language/operator_nodes.h"
#include "language/text.h"
#include "language/variant_operators.h"

namespace standin::language {
namespace {

bool is_comparison(BinaryOperator operation) {
  return operation >= BinaryOperator::equal && operation <= BinaryOperator::greater_equal;
}
bool is_equality(BinaryOperator operation) {
  return operation == BinaryOperator::equal || operation == BinaryOperator::unequal;
}
bool is_logical(BinaryOperator operation) {
  return operation >= BinaryOperator::and_ && operation <= BinaryOperator::xor_;
}

[[noreturn]] void refuse(BinaryOperator operation, const Expression& left, const Expression& right,
                         Position position) {
  std::string hint;
  const bool joins =
      operation == BinaryOperator::add && (left.is(TypeKind::string) || right.is(TypeKind::string));
  if (joins && (left.type().is_number() || right.type().is_number())) {
    hint = "; Str makes text of a number";
  }
  throw SourceError(position, std::string("the operator ") + symbol(operation) +
                                  " is not defined for " + described_type(left) + " and " +
                                  described_type(right) + hint);
}

class BinaryMaker {
 public:
  BinaryMaker(BinaryOperator operation, Code left, Code right, Position position)
      : operation_(operation),
        left_(std::move(left)),
        right_(std::move(right)),
        position_(position) {}

  Code make() {
    if (left_->is(TypeKind::void_) || right_->is(TypeKind::void_)) refuse_operands();
    if (operation_ == BinaryOperator::is) return identity();
    adapt_variants();
    if (left_->is(TypeKind::variant) && right_->is(TypeKind::variant)) return on_variants();
    if (left_->is(TypeKind::object) || right_->is(TypeKind::object)) {
      if (!is_equality(operation_)) refuse_operands();
      return identity();
    }
    if (left_->is(TypeKind::string) && right_->is(TypeKind::string)) return on_strings();
    if (left_->is(TypeKind::boolean) && right_->is(TypeKind::boolean)) return on_booleans();
    if (left_->is(TypeKind::color) && right_->is(TypeKind::color)) return on_colors();
    if (!left_->type().is_number() || !right_->type().is_number()) refuse_operands();
    return on_numbers();
  }

 private:
  [[noreturn]] void refuse_operands() const { refuse(operation_, *left_, *right_, position_); }
  void convert_both(const Type& type) {
    left_ = convert(std::move(left_), type, position_);
    right_ = convert(std::move(right_), type, position_);
  }

  // A Variant beside a primitive becomes that primitive; objects and Nil become Variants.
  void adapt_variants() {
    if (left_->is(TypeKind::variant) == right_->is(TypeKind::variant)) return;
    Code& variant = left_->is(TypeKind::variant) ? left_ : right_;
    Code& other = left_->is(TypeKind::variant) ? right_ : left_;
    if (other->is(TypeKind::array)) refuse_operands();
    if (other->is(TypeKind::object)) {
      other = convert(std::move(other), variant->type(), position_);
    } else {
      variant = convert(std::move(variant), other->type(), position_);
    }
  }

  Code identity() {
    const auto is_reference = [](const Expression& code) {
      return code.is(TypeKind::object) || code.is(TypeKind::variant) || code.is(TypeKind::array);
    };
    const bool arrays = left_->is(TypeKind::array) || right_->is(TypeKind::array);
    const bool with_nil = left_->is_nil() || right_->is_nil();
    if (!is_reference(*left_) || !is_reference(*right_) ||
        (arrays && !with_nil && left_->type() != right_->type())) {
      refuse_operands();
    }
    const bool negated = operation_ == BinaryOperator::unequal;
    return boolean_of(std::move(left_), std::move(right_),
                      [negated](const Value& a, const Value& b) {
                        const auto handle = [](const Value& value) -> const void* {
                          if (value.kind() == TypeKind::array) return value.as_array();
                          return value.as_object();
                        };
                        return (handle(a) == handle(b)) != negated;
                      });
  }

  Code on_variants() {
    const BinaryOperator operation = operation_;
    if (is_comparison(operation)) {
      return boolean_of(std::move(left_), std::move(right_),
                        [operation](const Value& a, const Value& b) {
                          return variant_comparison(operation, a.as_variant(), b.as_variant());
                        });
    }
    const bool logical = is_logical(operation);
    return value_of(TypeKind::variant, std::move(left_), std::move(right_),
                    [operation, logical](const Value& a, const Value& b) {
                      return Value::of_variant(
                          logical ? variant_logic(operation, a.as_variant(), b.as_variant())
                                  : variant_arithmetic(operation, a.as_variant(), b.as_variant()));
                    });
  }

  Code on_strings() {
    const BinaryOperator operation = operation_;
    if (operation == BinaryOperator::add) {
      return value_of(TypeKind::string, std::move(left_), std::move(right_),
                      [](const Value& a, const Value& b) {
                        return Value::of_string(join(a.as_string(), b.as_string()));
                      });
    }
    if (!is_comparison(operation)) refuse_operands();
    if (is_equality(operation)) {
      const bool negated = operation == BinaryOperator::unequal;
      return boolean_of(std::move(left_), std::move(right_),
                        [negated](const Value& a, const Value& b) {
                          return equal(a.as_string(), b.as_string()) != negated;
                        });
    }
    return boolean_of(std::move(left_), std::move(right_),
                      [operation](const Value& a, const Value& b) {
                        return holds(operation, compare(a.as_string(), b.as_string()));
                      });
  }

  Code on_booleans() {
    switch (operation_) {
      case BinaryOperator::and_:
        return std::make_unique<And>(std::move(left_), std::move(right_));
      case BinaryOperator::or_:
        return std::make_unique<Or>(std::move(left_), std::move(right_));
      case BinaryOperator::xor_:
        return comparison_in<BooleanDomain>(BinaryOperator::unequal, std::move(left_),
                                            std::move(right_));
      case BinaryOperator::equal:
      case BinaryOperator::unequal:
        return comparison_in<BooleanDomain>(operation_, std::move(left_), std::move(right_));
      default:
        refuse_operands();
    }
  }

  Code on_colors() {
    if (!is_equality(operation_)) refuse_operands();
    const bool negated = operation_ == BinaryOperator::unequal;
    return boolean_of(std::move(left_), std::move(right_),
                      [negated](const Value& a, const Value& b) {
                        return (a.as_color() == b.as_color()) != negated;
                      });
  }

  Code on_numbers() {
    const Type type = Type::of(common_number_type(left_->type().kind, right_->type().kind));
    const bool whole = operation_ == BinaryOperator::integer_divide ||
                       operation_ == BinaryOperator::modulo || is_logical(operation_);
    if (is_comparison(operation_)) return number_comparison(type);
    if (whole) {
      if (is_logical(operation_) && type.kind > TypeKind::int64) refuse_operands();
      convert_both(type.kind == TypeKind::integer ? type : Type::of(TypeKind::int64));
      return whole_operation(left_->type().kind);
    }
    if (operation_ == BinaryOperator::divide || operation_ == BinaryOperator::power) {
      convert_both(Type::of(TypeKind::double_));
      return operation_ == BinaryOperator::divide ? double_operation<Divide>()
                                                  : double_operation<Power>();
    }
    if (type.kind == TypeKind::currency) return currency_operation(type);
    if (type.kind == TypeKind::single) {
      convert_both(Type::of(TypeKind::double_));
      return convert(sum_or_product(TypeKind::double_), type, position_);
    }
    convert_both(type);
    return sum_or_product(type.kind);
  }

  template <class Operation>
  Code double_operation() {
    return std::make_unique<Arithmetic<DoubleDomain, Operation>>(std::move(left_),
                                                                 std::move(right_));
  }

  Code sum_or_product(TypeKind kind) {
    switch (operation_) {
      case BinaryOperator::add:
        return number_operation<Add>(kind, std::move(left_), std::move(right_));
      case BinaryOperator::subtract:
        return number_operation<Subtract>(kind, std::move(left_), std::move(right_));
      default:
        return number_operation<Multiply>(kind, std::move(left_), std::move(right_));
    }
  }

  Code whole_operation(TypeKind kind) {
    switch (operation_) {
      case BinaryOperator::integer_divide:
        return integer_operation<IntegerDivide>(kind, std::move(left_), std::move(right_));
      case BinaryOperator::modulo:
        return integer_operation<Modulo>(kind, std::move(left_), std::move(right_));
      case BinaryOperator::and_:
        return integer_operation<BitAnd>(kind, std::move(left_), std::move(right_));
      case BinaryOperator::or_:
        return integer_operation<BitOr>(kind, std::move(left_), std::move(right_));
      default:
        return integer_operation<BitXor>(kind, std::move(left_), std::move(right_));
    }
  }

  Code currency_operation(const Type& type) {
    convert_both(type);
    const BinaryOperator operation = operation_;
    return value_of(TypeKind::currency, std::move(left_), std::move(right_),
                    [operation](const Value& left, const Value& right) {
                      const std::int64_t a = left.as_currency();
                      const std::int64_t b = right.as_currency();
                      return Value::of_currency(operation == BinaryOperator::add ? Add::apply(a, b)
                                                : operation == BinaryOperator::subtract
                                                    ? Subtract::apply(a, b)
                                                    : multiply_currency(a, b));
                    });
  }

  Code number_comparison(const Type& type) {
    if (type.kind == TypeKind::integer) {
      return comparison_in<IntegerDomain>(operation_, std::move(left_), std::move(right_));
    }
    if (type.kind == TypeKind::int64) {
      convert_both(type);
      return comparison_in<Int64Domain>(operation_, std::move(left_), std::move(right_));
    }
    if (type.kind == TypeKind::currency) {
      convert_both(type);
      const BinaryOperator operation = operation_;
      return boolean_of(std::move(left_), std::move(right_),
                        [operation](const Value& left, const Value& right) {
                          const std::int64_t a = left.as_currency();
                          const std::int64_t b = right.as_currency();
                          return holds(operation, a == b ? 0 : a < b ? -1 : 1);
                        });
    }
    convert_both(Type::of(TypeKind::double_));
    return comparison_in<DoubleDomain>(operation_, std::move(left_), std::move(right_));
  }

  BinaryOperator operation_;
  Code left_, right_;
  Position position_;
};

Code literal_zero(const Type& type) {
  return std::make_unique<Literal>(type, Value::initial(type));
}

Code unfolded_unary(UnaryOperator operation, Code operand, Position position) {
  const TypeKind kind = operand->type().kind;
  const bool whole = kind == TypeKind::integer || kind == TypeKind::int64;
  if (operation == UnaryOperator::not_) {
    if (kind == TypeKind::boolean) return std::make_unique<Not>(std::move(operand));
    if (kind == TypeKind::variant) {
      return std::make_unique<VariantUnary>(std::move(operand), variant_not);
    }
    if (whole) {
      Code ones = std::make_unique<Literal>(Type::of(TypeKind::integer), Value::of_integer(-1));
      ones = convert(std::move(ones), operand->type(), position);
      return integer_operation<BitXor>(kind, std::move(operand), std::move(ones));
    }
  } else {
    if (kind == TypeKind::variant) {
      return std::make_unique<VariantUnary>(std::move(operand), variant_minus);
    }
    if (kind == TypeKind::double_) return std::make_unique<DoubleMinus>(std::move(operand));
    if (operand->type().is_number()) {
      Code zero = literal_zero(operand->type());
      return make_binary(BinaryOperator::subtract, std::move(zero), std::move(operand), position);
    }
  }
  throw SourceError(position, std::string("the operator ") + symbol(operation) +
                                  " is not defined for " + described_type(*operand));
}

}  // namespace

Code make_binary(BinaryOperator operation, Code left, Code right, Position position) {
  const bool literals = left->is_literal() && right->is_literal();
  return folded(BinaryMaker(operation, std::move(left), std::move(right), position).make(),
                literals);
}

Code make_unary(UnaryOperator operation, Code operand, Position position) {
  const bool literal = operand->is_literal();
  return folded(unfolded_unary(operation, std::move(operand), position), literal);
}

Code make_is_a(Code operand, const ClassInfo* class_info, Position position) {
  if (!operand->is(TypeKind::object) && !operand->is(TypeKind::variant)) {
    throw SourceError(position, "IsA needs an object, not " + described_type(*operand));
  }
  return std::make_unique<IsA>(std::move(operand), class_info);
}

}  // namespace standin::language
