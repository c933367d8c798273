// Conversions: which there are, how good they are, and the code that performs them.
#include "language/conversions.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <utility>

#include "language/array_literal.h"
#include "language/machine.h"
#include "language/number_types.h"
#include "language/variant_operators.h"
#include "runtime/arrays.h"
#include "runtime/currency.h"
#include "runtime/host.h"
#include "runtime/variants.h"

namespace standin::language {
namespace {

std::int64_t scaled(double value) {
  return saturate_int64(std::round(value * real_currency_scale));
}
std::int64_t scaled(std::int64_t value) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(value) *
                                   static_cast<std::uint64_t>(currency_scale));
}

// A number of any type as the two that carry all of them.
double as_real(const Value& value) {
  switch (value.kind()) {
    case TypeKind::integer:
      return value.as_integer();
    case TypeKind::int64:
      return static_cast<double>(value.as_int64());
    case TypeKind::currency:
      return static_cast<double>(value.as_currency()) / real_currency_scale;
    case TypeKind::single:
      return static_cast<double>(value.as_single());
    default:
      return value.as_double();
  }
}
std::int64_t as_whole(const Value& value) {
  switch (value.kind()) {
    case TypeKind::integer:
      return value.as_integer();
    case TypeKind::int64:
      return value.as_int64();
    case TypeKind::currency:
      return value.as_currency() / currency_scale;
    case TypeKind::single:
      return saturate_int64(static_cast<double>(value.as_single()));
    default:
      return saturate_int64(value.as_double());
  }
}

class ToInteger final : public IntegerExpression {
 public:
  explicit ToInteger(Code operand) : operand_(std::move(operand)) {}
  std::int32_t integer(Frame& frame) const override {
    if (operand_->is(TypeKind::double_)) return saturate_int32(operand_->real(frame));
    const Value value = operand_->value(frame);
    if (value.kind() == TypeKind::single) {
      return saturate_int32(static_cast<double>(value.as_single()));
    }
    // What does not fit wraps, as integer arithmetic does.
    return static_cast<std::int32_t>(as_whole(value));
  }

 private:
  Code operand_;
};

class ToInt64 final : public Int64Expression {
 public:
  explicit ToInt64(Code operand) : operand_(std::move(operand)) {}
  std::int64_t int64(Frame& frame) const override {
    return operand_->is(TypeKind::integer) ? operand_->integer(frame)
                                           : as_whole(operand_->value(frame));
  }

 private:
  Code operand_;
};

class ToDouble final : public DoubleExpression {
 public:
  explicit ToDouble(Code operand) : operand_(std::move(operand)) {}
  double real(Frame& frame) const override {
    return operand_->is(TypeKind::integer) ? operand_->integer(frame)
                                           : as_real(operand_->value(frame));
  }

 private:
  Code operand_;
};

class ToSingle final : public Expression {
 public:
  explicit ToSingle(Code operand)
      : Expression(Type::of(TypeKind::single)), operand_(std::move(operand)) {}
  Value value(Frame& frame) const override {
    return Value::of_single(static_cast<float>(as_real(operand_->value(frame))));
  }

 private:
  Code operand_;
};

class ToCurrency final : public Expression {
 public:
  explicit ToCurrency(Code operand)
      : Expression(Type::of(TypeKind::currency)), operand_(std::move(operand)) {}
  Value value(Frame& frame) const override {
    const Value value = operand_->value(frame);
    const bool whole = value.kind() == TypeKind::integer || value.kind() == TypeKind::int64;
    return Value::of_currency(whole ? scaled(as_whole(value)) : scaled(as_real(value)));
  }

 private:
  Code operand_;
};

class ToVariant final : public Expression {
 public:
  explicit ToVariant(Code operand)
      : Expression(Type::of(TypeKind::variant)), operand_(std::move(operand)) {}
  Value value(Frame& frame) const override {
    return Value::of_variant(from_value(operand_->value(frame)));
  }

 private:
  Code operand_;
};

// Checks that an object may be used as one of a class; Nil always may.
void require_class(REALobject object, const Type& type, const char* exception) {
  if (object == nullptr || type.class_info == nullptr) return;
  const ClassInfo* actual = class_of(object);
  if (actual != nullptr && actual->derives_from(*type.class_info)) return;
  raise(exception, "a " + (actual == nullptr ? std::string("Variant") : actual->name()) +
                       " is no " + type.class_info->name());
}

class FromVariant final : public Expression {
 public:
  FromVariant(Code operand, const Type& to) : Expression(to), operand_(std::move(operand)) {}
  Value value(Frame& frame) const override {
    const Value held = operand_->value(frame);
    const REALobject variant = held.as_variant();
    if (type().kind != TypeKind::object) require_primitive(variant);
    switch (type().kind) {
      case TypeKind::boolean:
        return Value::of_boolean(to_boolean(variant));
      case TypeKind::integer:
        return Value::of_integer(to_int32(variant));
      case TypeKind::int64:
        return Value::of_int64(to_int64(variant));
      case TypeKind::single:
        return Value::of_single(to_single(variant));
      case TypeKind::double_:
        return Value::of_double(to_double(variant));
      case TypeKind::currency:
        return Value::of_currency(to_currency(variant));
      case TypeKind::color:
        return Value::of_color(to_color(variant));
      case TypeKind::string:
        return Value::of_string(to_string(variant));
      default:
        break;
    }
    if (variant == nullptr) return Value::of_object(nullptr);
    const VariantType held_type = variant_type(variant);
    if (held_type != VariantType::object && held_type != VariantType::date) {
      raise("TypeMismatchException", "the Variant holds no object");
    }
    const REALobject object = to_object(variant);
    require_class(object, type(), "TypeMismatchException");
    return Value::of_object(ObjectRef::share(object));
  }

 private:
  Code operand_;
};

// To a class that the object's own type derives from, or to one that it must turn out to be.
class AsClass final : public Expression {
 public:
  AsClass(Code operand, const Type& to, bool checked)
      : Expression(to), operand_(std::move(operand)), checked_(checked) {}
  Value value(Frame& frame) const override {
    Value object = operand_->value(frame);
    if (checked_) require_class(object.as_object(), type(), "IllegalCastException");
    return object;
  }

 private:
  Code operand_;
  bool checked_;
};

class NilArray final : public Expression {
 public:
  using Expression::Expression;
  Value value(Frame&) const override { return Value::of_array(nullptr); }
};

// `Function Operator_Convert As T`, called on the object.
class ConvertFrom final : public Expression {
 public:
  ConvertFrom(Code operand, const MethodInfo& method)
      : Expression(method.declaration.result), operand_(std::move(operand)), method_(method) {}
  Value value(Frame& frame) const override {
    const Value object = operand_->value(frame);
    if (object.as_object() == nullptr) return Value::of_object(nullptr);
    return invoke(method_, object.as_object());
  }

 private:
  Code operand_;
  const MethodInfo& method_;
};

// `Sub Operator_Convert(x As T)`, called on a new instance that no constructor has seen.
class ConvertTo final : public Expression {
 public:
  ConvertTo(Code operand, const MethodInfo& method)
      : Expression(Type::of_class(method.owner)), operand_(std::move(operand)), method_(method) {}
  Value value(Frame& frame) const override {
    const Value source = operand_->value(frame);
    ObjectRef instance = frame.machine->host().new_instance(*method_.owner);
    invoke(method_, instance.get(), {&source, 1});
    return Value::of_object(std::move(instance));
  }

 private:
  Code operand_;
  const MethodInfo& method_;
};

int distance_to_super(const ClassInfo* derived, const ClassInfo* super) {
  int steps = 0;
  for (; derived != nullptr && derived != super; derived = derived->super()) ++steps;
  return std::min(steps, 15);
}

enum class Kind : std::uint8_t {
  exact,
  nil,
  to_super,
  number,
  to_variant,
  from_variant,
  array_literal,
  convert_from,
  convert_to,
  none,
};

struct Conversion {
  Kind kind = Kind::none;
  std::uint64_t cost = impossible;
  const MethodInfo* method = nullptr;
};

// Costs: each sort of step outweighs eight arguments' worth of the one before.
constexpr std::uint64_t cost_of_step(int sort) {
  return std::uint64_t{1} << (8 * sort);
}

// Without Operator_Convert.
Conversion standard_conversion(const Expression& expression, const Type& to) {
  const Type& from = expression.type();
  if (expression.is_nil()) {
    if (to.kind == TypeKind::object) return {Kind::nil, cost_of_step(0)};
    if (to.kind == TypeKind::array) return {Kind::nil, cost_of_step(0) * 2};
    if (to.kind == TypeKind::variant) return {Kind::to_variant, cost_of_step(2)};
    return {};
  }
  if (from == to) return {Kind::exact, 0};
  if (from.is_number() && to.is_number()) {
    const int steps = width(to.kind) - width(from.kind);
    // Double rather than Single for what is no Single.
    const bool lossy = to.kind == TypeKind::single;
    if (steps > 0) {
      return {Kind::number, cost_of_step(0) * static_cast<std::uint64_t>(lossy ? 6 : steps)};
    }
    return {Kind::number, cost_of_step(1) * static_cast<std::uint64_t>(-steps)};
  }
  if (from.kind == TypeKind::object && to.kind == TypeKind::object) {
    const bool up = to.class_info == nullptr ||
                    (from.class_info != nullptr && from.class_info->derives_from(*to.class_info));
    if (!up) return {};
    const int steps = distance_to_super(from.class_info, to.class_info);
    return {Kind::to_super, cost_of_step(0) * static_cast<std::uint64_t>(steps + 1)};
  }
  if (to.kind == TypeKind::variant && from.kind != TypeKind::array &&
      from.kind != TypeKind::void_) {
    return {Kind::to_variant, cost_of_step(2)};
  }
  if (from.kind == TypeKind::variant && to.kind != TypeKind::array && to.kind != TypeKind::void_) {
    return {Kind::from_variant, cost_of_step(to.kind == TypeKind::object ? 4 : 3)};
  }
  const auto* literal = dynamic_cast<const ArrayLiteral*>(&expression);
  if (literal != nullptr && to.kind == TypeKind::array) {
    std::uint64_t worst = cost_of_step(1);
    for (const Code& element : literal->elements()) {
      const std::uint64_t cost = conversion_cost(*element, *to.element);
      if (cost == impossible) return {};
      worst = std::max(worst, cost);
    }
    return {Kind::array_literal, worst};
  }
  return {};
}

Conversion best_conversion(const Expression& expression, const Type& to) {
  const Conversion standard = standard_conversion(expression, to);
  if (standard.kind != Kind::none || expression.is_nil()) return standard;
  const Type& from = expression.type();
  if (from.kind == TypeKind::object && from.class_info != nullptr) {
    for (const MethodInfo* method : from.class_info->overloads("Operator_Convert")) {
      if (method->declaration.parameters.empty() && method->declaration.result == to) {
        return {Kind::convert_from, cost_of_step(5), method};
      }
    }
  }
  Conversion best;
  if (to.kind == TypeKind::object && to.class_info != nullptr) {
    for (const MethodInfo* method : to.class_info->overloads("Operator_Convert")) {
      const Declaration& declaration = method->declaration;
      if (declaration.parameters.size() != 1 || declaration.has_result()) continue;
      const Conversion first = standard_conversion(expression, declaration.parameters.front().type);
      if (first.kind == Kind::none || first.kind == Kind::to_variant) continue;
      const std::uint64_t cost = cost_of_step(5) + first.cost;
      if (cost < best.cost) best = {Kind::convert_to, cost, method};
    }
  }
  return best;
}

Code convert_number(Code expression, const Type& to) {
  const bool literal = expression->is_literal();
  Code converted;
  switch (to.kind) {
    case TypeKind::integer:
      converted = std::make_unique<ToInteger>(std::move(expression));
      break;
    case TypeKind::int64:
      converted = std::make_unique<ToInt64>(std::move(expression));
      break;
    case TypeKind::single:
      converted = std::make_unique<ToSingle>(std::move(expression));
      break;
    case TypeKind::currency:
      converted = std::make_unique<ToCurrency>(std::move(expression));
      break;
    default:
      converted = std::make_unique<ToDouble>(std::move(expression));
      break;
  }
  return folded(std::move(converted), literal);
}

Code convert_elements(Code expression, const Type& to, Position position) {
  assert(to.kind == TypeKind::array && to.element != nullptr);
  std::vector<Code> elements = static_cast<ArrayLiteral&>(*expression).take_elements();
  for (Code& element : elements) element = convert(std::move(element), *to.element, position);
  return std::make_unique<ArrayLiteral>(*to.element, std::move(elements));
}

}  // namespace

Value ArrayLiteral::value(Frame& frame) const {
  ArrayRef array = make_array(*type().element, -1);
  for (const Code& element : elements_) append(array.get(), element->value(frame));
  return Value::of_array(std::move(array));
}

std::string described_type(const Expression& expression) {
  if (expression.is_nil()) return "Nil";
  return expression.is(TypeKind::void_) ? "what has no result" : name(expression.type());
}

std::uint64_t conversion_cost(const Expression& from, const Type& to) {
  return best_conversion(from, to).cost;
}

Code convert(Code expression, const Type& to, Position position) {
  const Conversion conversion = best_conversion(*expression, to);
  switch (conversion.kind) {
    case Kind::exact:
      return expression;
    case Kind::nil:
      if (to.kind == TypeKind::array) return std::make_unique<NilArray>(to);
      return std::make_unique<AsClass>(std::move(expression), to, false);
    case Kind::to_super:
      return std::make_unique<AsClass>(std::move(expression), to, false);
    case Kind::number:
      return convert_number(std::move(expression), to);
    case Kind::to_variant:
      return std::make_unique<ToVariant>(std::move(expression));
    case Kind::from_variant:
      return std::make_unique<FromVariant>(std::move(expression), to);
    case Kind::array_literal:
      return convert_elements(std::move(expression), to, position);
    case Kind::convert_from:
      return std::make_unique<ConvertFrom>(std::move(expression), *conversion.method);
    case Kind::convert_to: {
      const Type& parameter = conversion.method->declaration.parameters.front().type;
      Code argument = convert(std::move(expression), parameter, position);
      return std::make_unique<AsClass>(
          std::make_unique<ConvertTo>(std::move(argument), *conversion.method), to, false);
    }
    case Kind::none:
      break;
  }
  std::string hint;
  if (to.kind == TypeKind::string && expression->type().is_number())
    hint = "; Str makes text of it";
  if (to.is_number() && expression->is(TypeKind::string)) hint = "; Val reads the number in it";
  if (to.kind == TypeKind::object && expression->is(TypeKind::object) && to.class_info != nullptr &&
      (expression->type().class_info == nullptr ||
       to.class_info->derives_from(*expression->type().class_info))) {
    hint = " without a cast: " + name(to) + "(…)";
  }
  throw SourceError(position,
                    described_type(*expression) + " cannot be converted to " + name(to) + hint);
}

Code convert_index(Code expression, Position position) {
  if (!expression->type().is_number() && !expression->is(TypeKind::variant)) {
    expression = convert(std::move(expression), Type::of(TypeKind::integer), position);
  }
  return convert(std::move(expression), Type::of(TypeKind::int64), position);
}

Code cast(Code expression, const Type& to, Position position) {
  const Conversion conversion = best_conversion(*expression, to);
  if (conversion.kind == Kind::from_variant) {
    // A Variant's object of the wrong class is an illegal cast here, not a mismatch.
    Code object = std::make_unique<FromVariant>(std::move(expression), Type::of_class(nullptr));
    return std::make_unique<AsClass>(std::move(object), to, true);
  }
  if (conversion.kind != Kind::none) return convert(std::move(expression), to, position);
  const Type& from = expression->type();
  const bool downwards =
      from.kind == TypeKind::object &&
      (from.class_info == nullptr ||
       (to.class_info != nullptr && to.class_info->derives_from(*from.class_info)));
  if (!downwards) {
    throw SourceError(position, described_type(*expression) + " can never be a " + name(to));
  }
  return std::make_unique<AsClass>(std::move(expression), to, true);
}

Code folded(Code expression, bool operands_are_literals) {
  if (!operands_are_literals) return expression;
  try {
    Frame frame;
    Value value = expression->value(frame);
    return std::make_unique<Literal>(expression->type(), std::move(value));
  } catch (const HostException&) {
    return expression;  // such as a division by zero, which the program shall raise
  }
}

}  // namespace standin::language
