// From the syntax of statements to code, for one routine at a time.
#include "language/statement_checker.h"

#include <utility>

#include "language/calls.h"
#include "language/constants.h"
#include "language/conversions.h"
#include "language/operators.h"
#include "language/variables.h"
#include "runtime/arrays.h"

namespace standin::language {
namespace {

struct TooManyErrors {};

const char* loop_name(LeaveTarget loop) {
  return loop == LeaveTarget::for_ ? "For" : loop == LeaveTarget::while_ ? "While" : "Do";
}

// Whether one of several conditions holds, asked in their order. The tree is balanced, so that a
// long list does not make a deep one.
Code any_of(std::vector<Code> conditions, Position position) {
  while (conditions.size() > 1) {
    std::vector<Code> pairs;
    for (std::size_t i = 0; i < conditions.size(); i += 2) {
      const bool alone = i + 1 == conditions.size();
      pairs.push_back(alone ? std::move(conditions[i])
                            : make_binary(BinaryOperator::or_, std::move(conditions[i]),
                                          std::move(conditions[i + 1]), position));
    }
    conditions = std::move(pairs);
  }
  return std::move(conditions.front());
}

}  // namespace

void StatementChecker::report(const SourceError& error) {
  diagnostics_.push_back(error.diagnostic());
  if (diagnostics_.size() >= most_diagnostics) throw TooManyErrors();
}

void StatementChecker::check_program(const BlockSyntax& body) {
  kind_ = RoutineKind::program;
  result_ = Type::of(TypeKind::integer);
  program_.body.result = result_;
  Symbol args;
  args.name = "args";
  args.type = Type::array_of(Type::of(TypeKind::string));
  scope_.declare(std::move(args), {});
  try {
    program_.body.body = block(body);
  } catch (const TooManyErrors&) {
  }
  program_.body.slot_count = scope_.slot_count();
}

void StatementChecker::check_routine(const ProgramRoutine& routine) {
  const FunctionSyntax& syntax = *routine.syntax;
  kind_ = syntax.result ? RoutineKind::function : RoutineKind::sub;
  result_ = routine.function->result;
  for (std::size_t i = 0; i < syntax.parameters.size(); ++i) {
    Symbol symbol;
    symbol.name = syntax.parameters[i].name;
    if (i < routine.candidate.formals.size()) {
      const Formal& formal = routine.candidate.formals[i];
      symbol.type = formal.type;
      if (formal.by_ref) symbol.kind = Symbol::Kind::reference;
    } else {
      symbol.kind = Symbol::Kind::broken;
    }
    try {
      scope_.declare(std::move(symbol), syntax.parameters[i].position);
    } catch (const SourceError& error) {
      diagnostics_.push_back(error.diagnostic());
    }
  }
  try {
    routine.function->body = block(syntax.body);
  } catch (const TooManyErrors&) {
  }
  routine.function->slot_count = scope_.slot_count();
}

Block StatementChecker::block(const BlockSyntax& syntax) {
  Block block;
  scope_.open();
  add_statements(syntax, block);
  scope_.close(block);
  return block;
}

void StatementChecker::add_statements(const BlockSyntax& syntax, Block& block) {
  const std::size_t depth = scope_.depth();
  const std::size_t loops = loops_.size();
  for (const StatementSyntax& part : syntax) {
    if (add_statement(part, block)) continue;
    scope_.give_up_to(depth);
    loops_.resize(loops);
  }
}

bool StatementChecker::add_statement(const StatementSyntax& syntax, Block& block) {
  try {
    statement(syntax, block);
    return true;
  } catch (const SourceError& error) {
    report(error);
  } catch (const AlreadyReported&) {
  }
  return false;
}

void StatementChecker::statement(const StatementSyntax& syntax, Block& block) {
  const Position position = syntax.position;
  expressions_.set_line(position);
  const auto add = [&block](StatementCode code) { block.add(std::move(code)); };
  if (const auto* dim_form = std::get_if<DimSyntax>(&syntax.form)) {
    dim(*dim_form, position, block);
  } else if (const auto* const_form = std::get_if<ConstSyntax>(&syntax.form)) {
    constant(*const_form, position);
  } else if (const auto* redim_form = std::get_if<ReDimSyntax>(&syntax.form)) {
    redim(*redim_form, position, block);
  } else if (const auto* assign = std::get_if<AssignSyntax>(&syntax.form)) {
    add(expressions_.assignment(*assign, position));
  } else if (const auto* call = std::get_if<CallStatementSyntax>(&syntax.form)) {
    add(make_call_statement(expressions_.call_statement(*call->call, call->drops_result),
                            position));
  } else if (const auto* if_form = std::get_if<IfSyntax>(&syntax.form)) {
    add(if_(*if_form, position));
  } else if (const auto* for_form = std::get_if<ForSyntax>(&syntax.form)) {
    add(for_(*for_form, position));
  } else if (const auto* each = std::get_if<ForEachSyntax>(&syntax.form)) {
    add(for_each(*each, position));
  } else if (const auto* while_form = std::get_if<WhileSyntax>(&syntax.form)) {
    LoopCondition before{condition(*while_form->condition), false};
    int loop = 0;
    Block body = loop_body(while_form->body, LeaveTarget::while_, loop);
    add(make_loop(loop, std::move(before), std::move(body), {}, position));
  } else if (const auto* do_form = std::get_if<DoSyntax>(&syntax.form)) {
    add(do_(*do_form, position));
  } else if (const auto* select_form = std::get_if<SelectSyntax>(&syntax.form)) {
    add(select(*select_form, position));
  } else if (const auto* try_form = std::get_if<TrySyntax>(&syntax.form)) {
    add(try_(*try_form, position));
  } else if (const auto* exit = std::get_if<ExitSyntax>(&syntax.form)) {
    add(leave(Flow::exit, exit->target, position));
  } else if (const auto* again = std::get_if<ContinueSyntax>(&syntax.form)) {
    add(leave(Flow::continue_, again->target, position));
  } else if (const auto* raise_form = std::get_if<RaiseSyntax>(&syntax.form)) {
    add(raise(*raise_form, position));
  } else {
    add(return_(std::get<ReturnSyntax>(syntax.form), position));
  }
}

void StatementChecker::dim(const DimSyntax& syntax, Position position, Block& block) {
  for (const DimSyntax::Group& group : syntax.groups) {
    for (const DimSyntax::Variable& variable : group.variables) {
      try {
        declare(group, variable, syntax.is_static, position, block);
        continue;
      } catch (const SourceError& error) {
        report(error);
      } catch (const AlreadyReported&) {
      }
      // What uses the variable is not to blame.
      Symbol broken;
      broken.kind = Symbol::Kind::broken;
      broken.name = variable.name;
      if (scope_.find(variable.name) == nullptr) scope_.declare(std::move(broken), position);
    }
  }
}

void StatementChecker::declare(const DimSyntax::Group& syntax, const DimSyntax::Variable& variable,
                               bool is_static, Position position, Block& block) {
  if (syntax.type.is_array) {
    throw SourceError(syntax.type.position,
                      "an array is declared as " + variable.name + "() As " + syntax.type.name);
  }
  Type type = declarations_.type(syntax.type);
  if (variable.is_array) type = Type::array_of(type);
  // The first value cannot use the variable itself.
  Code initial = initial_value(syntax, variable, type, position);
  Symbol symbol;
  symbol.name = variable.name;
  symbol.type = type;
  if (is_static) {
    symbol.kind = Symbol::Kind::static_;
    symbol.index = program_.static_count++;
    const std::size_t index = symbol.index;
    scope_.declare(std::move(symbol), variable.position);
    block.add(make_static_declaration(index, type, std::move(initial), position));
  } else {
    const int slot = scope_.declare(std::move(symbol), variable.position).slot;
    block.add(make_declaration(slot, type, std::move(initial), position));
  }
}

Code StatementChecker::initial_value(const DimSyntax::Group& syntax,
                                     const DimSyntax::Variable& variable, const Type& type,
                                     Position position) {
  if (syntax.is_new) {
    if (variable.is_array) {
      throw SourceError(position, "an array is declared without New");
    }
    return convert(expressions_.new_object(syntax.type, syntax.arguments, syntax.type.position),
                   type, position);
  }
  if (syntax.initial) {
    if (variable.upper_bound) {
      throw SourceError(variable.position, "an array with a bound cannot have a first value");
    }
    return expressions_.expression(*syntax.initial, type);
  }
  return variable.is_array ? make_new_array(type, upper_bound(variable)) : nullptr;
}

Code StatementChecker::upper_bound(const DimSyntax::Variable& variable) {
  if (!variable.upper_bound) {
    return std::make_unique<Literal>(Type::of(TypeKind::int64), Value::of_int64(least_upper_bound));
  }
  const ExpressionSyntax& syntax = *variable.upper_bound;
  Code bound = check_constant(syntax, &scope_, "the bound of an array in Dim");
  const std::string written = describe(literal_value(*bound));
  bound = convert_index(std::move(bound), syntax.position);
  const std::int64_t value = literal_value(*bound).as_int64();
  if (value < least_upper_bound || value > greatest_upper_bound) {
    throw SourceError(syntax.position, "the bound of an array lies between " +
                                           std::to_string(least_upper_bound) + " and " +
                                           std::to_string(greatest_upper_bound) + "; " + written +
                                           " does not");
  }
  return bound;
}

void StatementChecker::constant(const ConstSyntax& syntax, Position position) {
  Symbol symbol;
  symbol.name = syntax.name;
  try {
    const Code value = check_constant(*syntax.value, &scope_, "Const");
    if (value->is_nil()) throw SourceError(position, "Nil cannot be a constant");
    symbol.kind = Symbol::Kind::constant;
    symbol.type = value->type();
    symbol.value = literal_value(*value);
  } catch (const SourceError& error) {
    report(error);
    symbol.kind = Symbol::Kind::broken;
  }
  scope_.declare(std::move(symbol), position);
}

void StatementChecker::redim(const ReDimSyntax& syntax, Position position, Block& block) {
  for (const ReDimSyntax::Array& part : syntax.arrays) {
    const std::string& name = std::get<NameSyntax>(part.array->form).name;
    Code array = expressions_.variable(name, part.array->position);
    if (!array->is(TypeKind::array)) {
      throw SourceError(part.array->position, "\"" + name + "\" is no array");
    }
    Code bound =
        convert_index(expressions_.expression(*part.upper_bound), part.upper_bound->position);
    block.add(make_redim(std::move(array), std::move(bound), position));
  }
}

Code StatementChecker::condition(const ExpressionSyntax& syntax) {
  try {
    return expressions_.condition(syntax);
  } catch (const SourceError& error) {
    report(error);
  } catch (const AlreadyReported&) {
  }
  return std::make_unique<Literal>(Type::of(TypeKind::boolean), Value::of_boolean(false));
}

StatementCode StatementChecker::if_(const IfSyntax& syntax, Position position) {
  std::vector<Branch> branches;
  for (const IfSyntax::Branch& part : syntax.branches) {
    Branch branch;
    branch.position = part.condition->position;
    expressions_.set_line(branch.position);
    branch.condition = condition(*part.condition);
    branch.body = block(part.body);
    branches.push_back(std::move(branch));
  }
  return make_if(std::move(branches), block(syntax.otherwise), position);
}

Block StatementChecker::loop_body(const BlockSyntax& syntax, LeaveTarget kind, int& loop) {
  loop = ++loop_count_;
  loops_.push_back({kind, loop});
  Block body = block(syntax);
  loops_.pop_back();
  return body;
}

StatementCode StatementChecker::for_(const ForSyntax& syntax, Position position) {
  Block outer;
  scope_.open();
  Code first = expressions_.expression(*syntax.first);
  if (syntax.declared_type) {
    Symbol symbol;
    symbol.name = syntax.variable;
    symbol.type = declarations_.type(*syntax.declared_type);
    scope_.declare(std::move(symbol), syntax.variable_position);
  }
  Code variable = expressions_.variable(syntax.variable, syntax.variable_position);
  const Type type = variable->type();
  if (!type.is_number()) {
    throw SourceError(
        syntax.variable_position,
        "a loop counts with an Integer, Int64, Single, Double or Currency, not " + name(type));
  }
  first = convert(std::move(first), type, syntax.first->position);
  Code last = expressions_.expression(*syntax.last, type);
  Code step = syntax.step ? expressions_.expression(*syntax.step, type) : nullptr;
  int loop = 0;
  Block body = loop_body(syntax.body, LeaveTarget::for_, loop);
  scope_.close(outer);  // a counter holds no handle
  return make_for(loop, std::move(variable), std::move(first), std::move(last), std::move(step),
                  syntax.downwards, std::move(body), position);
}

StatementCode StatementChecker::for_each(const ForEachSyntax& syntax, Position position) {
  Code array = expressions_.expression(*syntax.array);
  if (!array->is(TypeKind::array)) {
    throw SourceError(syntax.array->position,
                      "For Each needs an array, not " + described_type(*array));
  }
  const Type element = *array->type().element;
  Block outer;
  scope_.open();
  if (syntax.declared_type) {
    Symbol symbol;
    symbol.name = syntax.variable;
    symbol.type = declarations_.type(*syntax.declared_type);
    const Type type = symbol.type;
    const int slot = scope_.declare(std::move(symbol), syntax.variable_position).slot;
    outer.add(make_declaration(slot, type, nullptr, position));
  }
  Code variable = expressions_.variable(syntax.variable, syntax.variable_position);
  const Type type = variable->type();
  int loop = ++loop_count_;
  loops_.push_back({LeaveTarget::for_, loop});
  Block body;
  scope_.open();
  if (type != element) {
    // The element goes into a slot of its own, and is converted from there.
    const LocalPlace slot{scope_.hidden_slot(element)};
    Code converted = convert(std::make_unique<Variable<LocalPlace>>(element, slot), type,
                             syntax.variable_position);
    body.add(make_assignment(std::move(variable), std::move(converted), position));
    variable = std::make_unique<Variable<LocalPlace>>(element, slot);
  }
  add_statements(syntax.body, body);
  scope_.close(body);
  loops_.pop_back();
  outer.add(make_for_each(loop, std::move(variable), std::move(array), std::move(body), position));
  scope_.close(outer);
  return make_block_statement(std::move(outer), position);
}

StatementCode StatementChecker::do_(const DoSyntax& syntax, Position position) {
  const auto loop_condition = [this](const std::optional<DoSyntax::Condition>& part) {
    LoopCondition made;
    if (part) made = {condition(*part->expression), part->until};
    return made;
  };
  LoopCondition before = loop_condition(syntax.before);
  LoopCondition after = loop_condition(syntax.after);
  int loop = 0;
  Block body = loop_body(syntax.body, LeaveTarget::do_, loop);
  return make_loop(loop, std::move(before), std::move(body), std::move(after), position);
}

Code StatementChecker::case_test(const SelectSyntax::Test& test, const Type& type, int slot) {
  const Position position = test.low->position;
  const auto selector = [&] {
    return std::make_unique<Variable<LocalPlace>>(type, LocalPlace{slot});
  };
  Code low = expressions_.expression(*test.low);
  if (!test.high) return make_binary(test.operation, selector(), std::move(low), position);
  Code high = expressions_.expression(*test.high);
  Code from = make_binary(BinaryOperator::greater_equal, selector(), std::move(low), position);
  Code to = make_binary(BinaryOperator::less_equal, selector(), std::move(high), position);
  return make_binary(BinaryOperator::and_, std::move(from), std::move(to), position);
}

// The selector is evaluated once, into a slot of its own; the rest is a chain of conditions.
StatementCode StatementChecker::select(const SelectSyntax& syntax, Position position) {
  Block outer;
  Code selector = expressions_.expression(*syntax.selector);
  const Type type = selector->type();
  scope_.open();
  const int slot = scope_.hidden_slot(type);
  outer.add(make_declaration(slot, type, std::move(selector), position));
  std::vector<Branch> branches;
  for (const SelectSyntax::Case& part : syntax.cases) {
    Branch branch;
    branch.position = part.tests.front().low->position;
    expressions_.set_line(branch.position);
    std::vector<Code> tests;
    for (const SelectSyntax::Test& test : part.tests) {
      tests.push_back(case_test(test, type, slot));
    }
    branch.condition = any_of(std::move(tests), branch.position);
    branch.body = block(part.body);
    branches.push_back(std::move(branch));
  }
  outer.add(make_if(std::move(branches), block(syntax.otherwise), position));
  scope_.close(outer);
  return make_block_statement(std::move(outer), position);
}

const ClassInfo& StatementChecker::exception_class() const {
  return *declarations_.host().find_class("RuntimeException");
}

Type StatementChecker::exception_type(const TypeSyntax& syntax) const {
  const Type type = declarations_.type(syntax);
  if (type.kind != TypeKind::object || type.class_info == nullptr ||
      !type.class_info->derives_from(exception_class())) {
    throw SourceError(syntax.position, name(type) + " is no exception class");
  }
  return type;
}

StatementCode StatementChecker::try_(const TrySyntax& syntax, Position position) {
  Block body = block(syntax.body);
  std::vector<CatchCode> catches;
  for (const TrySyntax::Catch& part : syntax.catches) {
    CatchCode handler{&exception_class(), -1, {}};
    Type type = Type::of_class(&exception_class());
    if (part.type) type = exception_type(*part.type);
    handler.class_info = type.class_info;
    scope_.open();
    if (!part.variable.empty()) {
      Symbol symbol;
      symbol.name = part.variable;
      symbol.type = type;
      handler.slot = scope_.declare(std::move(symbol), part.position).slot;
    }
    add_statements(part.body, handler.body);
    scope_.close(handler.body);
    catches.push_back(std::move(handler));
  }
  const bool has_finally = !syntax.finally.empty();
  return make_try(std::move(body), std::move(catches), block(syntax.finally), has_finally,
                  position);
}

const char* StatementChecker::way_to_leave(RoutineKind kind) {
  switch (kind) {
    case RoutineKind::sub:
      return "; Exit Sub leaves the Sub";
    case RoutineKind::function:
      return "; Return leaves the Function";
    case RoutineKind::program:
      break;
  }
  return "; Return ends the program";
}

StatementCode StatementChecker::leave(Flow flow, LeaveTarget target, Position position) {
  if (target == LeaveTarget::sub || target == LeaveTarget::function) {
    const bool is_sub = target == LeaveTarget::sub;
    if (is_sub != (kind_ == RoutineKind::sub)) {
      throw SourceError(
          position, is_sub ? "Exit Sub outside of a Sub" : "Exit Function outside of a Function");
    }
    return make_return(nullptr, position);
  }
  for (auto loop = loops_.rbegin(); loop != loops_.rend(); ++loop) {
    if (target == LeaveTarget::innermost || target == loop->kind) {
      return make_leave(flow, loop->number, position);
    }
  }
  const char* word = flow == Flow::exit ? "Exit" : "Continue";
  if (target == LeaveTarget::innermost) {
    throw SourceError(position, std::string(word) + " outside of a loop" +
                                    (flow == Flow::exit ? way_to_leave(kind_) : ""));
  }
  const std::string loop = loop_name(target);
  throw SourceError(position, std::string(word) + " " + loop + " outside of a " + loop);
}

StatementCode StatementChecker::raise(const RaiseSyntax& syntax, Position position) {
  Code exception = expressions_.expression(*syntax.exception);
  if (exception->is(TypeKind::variant)) {
    throw SourceError(position, "Raise needs an exception, not a Variant");
  }
  return make_raise(
      convert(std::move(exception), Type::of_class(&exception_class()), syntax.exception->position),
      position);
}

StatementCode StatementChecker::return_(const ReturnSyntax& syntax, Position position) {
  if (!syntax.value) {
    if (kind_ == RoutineKind::function) {
      throw SourceError(position, "Return in a Function needs a value");
    }
    return make_return(nullptr, position);
  }
  if (kind_ == RoutineKind::sub) {
    throw SourceError(position, "a Sub has no result: Return stands alone");
  }
  return make_return(expressions_.expression(*syntax.value, result_), position);
}

}  // namespace standin::language
