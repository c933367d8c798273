// Expressions on another line than their statement.
#include "language/located.h"

#include <utility>

namespace standin::language {
namespace {

class Located final : public Expression {
 public:
  Located(Code expression, Position position)
      : Expression(expression->type()), expression_(std::move(expression)), position_(position) {}

  Value value(Frame& frame) const override { return evaluate(&Expression::value, frame); }
  bool boolean(Frame& frame) const override { return evaluate(&Expression::boolean, frame); }
  std::int32_t integer(Frame& frame) const override {
    return evaluate(&Expression::integer, frame);
  }
  std::int64_t int64(Frame& frame) const override { return evaluate(&Expression::int64, frame); }
  double real(Frame& frame) const override { return evaluate(&Expression::real, frame); }

 private:
  // An exception leaves the position where it was raised.
  template <class Result>
  Result evaluate(Result (Expression::*as_kind)(Frame&) const, Frame& frame) const {
    const Position outer = std::exchange(frame.position, position_);
    Result result = (expression_.get()->*as_kind)(frame);
    frame.position = outer;
    return result;
  }

  Code expression_;
  Position position_;
};

}  // namespace

Code make_located(Code expression, Position position) {
  return std::make_unique<Located>(std::move(expression), position);
}

}  // namespace standin::language
