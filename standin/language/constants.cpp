// Expressions whose value is known before the program runs.
#include "language/constants.h"

#include <utility>
#include <variant>

#include "language/operators.h"
#include "runtime/strings.h"

namespace standin::language {
namespace {

template <class... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <class... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

Code literal_of(TypeKind kind, Value value) {
  return std::make_unique<Literal>(Type::of(kind), std::move(value));
}

}  // namespace

Code literal_code(const LiteralSyntax& literal) {
  return std::visit(
      Overloaded{
          [](NilSyntax) -> Code { return std::make_unique<NilLiteral>(); },
          [](bool value) { return literal_of(TypeKind::boolean, Value::of_boolean(value)); },
          [](std::int32_t value) {
            return literal_of(TypeKind::integer, Value::of_integer(value));
          },
          [](std::int64_t value) { return literal_of(TypeKind::int64, Value::of_int64(value)); },
          [](double value) { return literal_of(TypeKind::double_, Value::of_double(value)); },
          [](const std::string& value) {
            return literal_of(TypeKind::string, Value::of_string(make_string(value)));
          },
          [](ColorSyntax value) { return literal_of(TypeKind::color, Value::of_color(value.rgb)); },
      },
      literal.value);
}

Value literal_value(const Expression& code) {
  Frame frame;
  return code.value(frame);
}

Code check_constant(const ExpressionSyntax& syntax, const Scope* scope, const std::string& what) {
  Code code;
  if (const auto* literal = std::get_if<LiteralSyntax>(&syntax.form)) {
    code = literal_code(*literal);
  } else if (const auto* name = std::get_if<NameSyntax>(&syntax.form)) {
    const Symbol* symbol = scope == nullptr ? nullptr : scope->find(name->name);
    if (symbol != nullptr && symbol->kind == Symbol::Kind::constant) code = code_of(*symbol);
  } else if (const auto* unary = std::get_if<UnarySyntax>(&syntax.form)) {
    code =
        make_unary(unary->operation, check_constant(*unary->operand, scope, what), syntax.position);
  } else if (const auto* binary = std::get_if<BinarySyntax>(&syntax.form)) {
    Code left = check_constant(*binary->left, scope, what);
    Code right = check_constant(*binary->right, scope, what);
    code = make_binary(binary->operation, std::move(left), std::move(right), syntax.position);
  }
  if (!code || !(code->is_literal() || code->is_nil())) {
    throw SourceError(syntax.position, what + " needs a constant");
  }
  return code;
}

}  // namespace standin::language
