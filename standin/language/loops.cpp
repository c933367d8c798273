// The code of loops.
#include <cmath>
#include <limits>

#include "language/control.h"
#include "language/machine.h"
#include "runtime/arrays.h"
#include "runtime/currency.h"

namespace standin::language {
namespace {

// What a loop does when its body has ended in some way: whether it goes on.
bool goes_on(Frame& frame, int loop, Flow& flow) {
  if (flow == Flow::next) return true;
  if (flow == Flow::return_ || frame.leaving != loop) return false;
  const bool again = flow == Flow::continue_;
  flow = Flow::next;
  return again;
}

struct IntegerCounter {
  using Number = std::int32_t;
  static constexpr Number one = 1;
  static Number evaluate(const Expression& code, Frame& frame) { return code.integer(frame); }
  static Number read(const Value& value) { return value.as_integer(); }
  static Value wrap(Number number) { return Value::of_integer(number); }
};
struct Int64Counter {
  using Number = std::int64_t;
  static constexpr Number one = 1;
  static Number evaluate(const Expression& code, Frame& frame) { return code.int64(frame); }
  static Number read(const Value& value) { return value.as_int64(); }
  static Value wrap(Number number) { return Value::of_int64(number); }
};
struct CurrencyCounter {
  using Number = std::int64_t;
  static constexpr Number one = currency_scale;
  static Number evaluate(const Expression& code, Frame& frame) {
    return code.value(frame).as_currency();
  }
  static Number read(const Value& value) { return value.as_currency(); }
  static Value wrap(Number number) { return Value::of_currency(number); }
};
struct DoubleCounter {
  using Number = double;
  static constexpr Number one = 1;
  static Number evaluate(const Expression& code, Frame& frame) { return code.real(frame); }
  static Number read(const Value& value) { return value.as_double(); }
  static Value wrap(Number number) { return Value::of_double(number); }
};
struct SingleCounter {
  using Number = float;
  static constexpr Number one = 1;
  static Number evaluate(const Expression& code, Frame& frame) {
    return code.value(frame).as_single();
  }
  static Number read(const Value& value) { return value.as_single(); }
  static Value wrap(Number number) { return Value::of_single(number); }
};

// The end value is evaluated in every pass, the step once. A counter that would leave the range of
// its type ends the loop.
template <class Counter>
class For final : public Statement {
 public:
  using Number = typename Counter::Number;

  For(int loop, Code variable, Code first, Code last, Code step, bool downwards, Block body,
      Position position)
      : Statement(position),
        loop_(loop),
        variable_(std::move(variable)),
        first_(std::move(first)),
        last_(std::move(last)),
        step_(std::move(step)),
        downwards_(downwards),
        body_(std::move(body)) {}

  Flow run(Frame& frame) const override {
    Value& counter = *variable_->place(frame);
    const Number first = Counter::evaluate(*first_, frame);
    counter = Counter::wrap(first);
    const Number step = step_ ? Counter::evaluate(*step_, frame) : Counter::one;
    const bool falling = downwards_ || step < Number{0};
    while (true) {
      frame.position = position();
      frame.machine->count_step();
      const Number last = Counter::evaluate(*last_, frame);
      const Number current = Counter::read(counter);
      if (falling ? current < last : current > last) return Flow::next;
      if (std::isnan(static_cast<double>(current)) || std::isnan(static_cast<double>(last))) {
        return Flow::next;
      }
      Flow flow = body_.run(frame);
      if (!goes_on(frame, loop_, flow)) return flow;
      if (!advance(counter, step)) return Flow::next;
    }
  }

 private:
  bool advance(Value& counter, Number step) const {
    const Number current = Counter::read(counter);
    Number next{};
    bool in_range = true;
    if constexpr (std::is_integral_v<Number>) {
      in_range = downwards_ ? !__builtin_sub_overflow(current, step, &next)
                            : !__builtin_add_overflow(current, step, &next);
    } else {
      next = downwards_ ? current - step : current + step;
    }
    counter = Counter::wrap(next);
    return in_range;
  }

  int loop_;
  Code variable_, first_, last_, step_;
  bool downwards_;
  Block body_;
};

class ForEach final : public Statement {
 public:
  ForEach(int loop, Code variable, Code array, Block body, Position position)
      : Statement(position),
        loop_(loop),
        variable_(std::move(variable)),
        array_(std::move(array)),
        body_(std::move(body)) {}

  Flow run(Frame& frame) const override {
    const Value array = array_->value(frame);
    Value& variable = *variable_->place(frame);
    for (std::int32_t index = 0; index <= upper_bound(array.as_array()); ++index) {
      frame.machine->count_step();
      variable = get(array.as_array(), index, variable_->type());
      Flow flow = body_.run(frame);
      if (!goes_on(frame, loop_, flow)) return flow;
      frame.position = position();
    }
    return Flow::next;
  }

 private:
  int loop_;
  Code variable_, array_;
  Block body_;
};

class Loop final : public Statement {
 public:
  Loop(int loop, LoopCondition before, Block body, LoopCondition after, Position position)
      : Statement(position),
        loop_(loop),
        before_(std::move(before)),
        after_(std::move(after)),
        body_(std::move(body)) {}

  Flow run(Frame& frame) const override {
    while (true) {
      frame.position = position();
      frame.machine->count_step();
      if (ends(before_, frame)) return Flow::next;
      Flow flow = body_.run(frame);
      if (!goes_on(frame, loop_, flow)) return flow;
      frame.position = position();
      if (ends(after_, frame)) return Flow::next;
    }
  }

 private:
  static bool ends(const LoopCondition& condition, Frame& frame) {
    return condition.expression && condition.expression->boolean(frame) == condition.until;
  }

  int loop_;
  LoopCondition before_, after_;
  Block body_;
};

class Leave final : public Statement {
 public:
  Leave(Flow flow, int loop, Position position) : Statement(position), flow_(flow), loop_(loop) {}
  Flow run(Frame& frame) const override {
    frame.leaving = loop_;
    return flow_;
  }

 private:
  Flow flow_;
  int loop_;
};

}  // namespace

StatementCode make_for(int loop, Code variable, Code first, Code last, Code step, bool downwards,
                       Block body, Position position) {
  const auto make = [&]<class Counter>(Counter) -> StatementCode {
    return std::make_unique<For<Counter>>(loop, std::move(variable), std::move(first),
                                          std::move(last), std::move(step), downwards,
                                          std::move(body), position);
  };
  switch (variable->type().kind) {
    case TypeKind::integer:
      return make(IntegerCounter());
    case TypeKind::int64:
      return make(Int64Counter());
    case TypeKind::currency:
      return make(CurrencyCounter());
    case TypeKind::single:
      return make(SingleCounter());
    default:
      return make(DoubleCounter());
  }
}

StatementCode make_for_each(int loop, Code variable, Code array, Block body, Position position) {
  return std::make_unique<ForEach>(loop, std::move(variable), std::move(array), std::move(body),
                                   position);
}

StatementCode make_loop(int loop, LoopCondition before, Block body, LoopCondition after,
                        Position position) {
  return std::make_unique<Loop>(loop, std::move(before), std::move(body), std::move(after),
                                position);
}

StatementCode make_leave(Flow flow, int loop, Position position) {
  return std::make_unique<Leave>(flow, loop, position);
}

}  // namespace standin::language
