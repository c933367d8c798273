// `Array(a, b, …)`
#ifndef ZRB_STANDIN_LANGUAGE_ARRAY_LITERAL_H
#define ZRB_STANDIN_LANGUAGE_ARRAY_LITERAL_H

#include <utility>
#include <vector>

#include "language/code.h"

namespace standin::language {

// A new array at each evaluation.
class ArrayLiteral final : public Expression {
 public:
  // The elements are of the array's element type.
  ArrayLiteral(const Type& element, std::vector<Code> elements)
      : Expression(Type::array_of(element)), elements_(std::move(elements)) {}
  Value value(Frame& frame) const override;
  // To convert them to what the context asks for.
  const std::vector<Code>& elements() const { return elements_; }
  std::vector<Code> take_elements() { return std::move(elements_); }

 private:
  std::vector<Code> elements_;
};

}  // namespace standin::language

#endif
