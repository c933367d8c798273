// The code of blocks and of statements that direct the flow, but for loops.
#include "language/control.h"

#include <new>
#include <optional>

#include "language/machine.h"

namespace standin::language {
namespace {

class SlotCleaner {
 public:
  SlotCleaner(Value* first, Value* end) : first_(first), end_(end) {}
  ~SlotCleaner() {
    for (Value* slot = first_; slot != end_; ++slot) *slot = Value();
  }
  SlotCleaner(const SlotCleaner&) = delete;
  SlotCleaner& operator=(const SlotCleaner&) = delete;

 private:
  Value* first_;
  Value* end_;
};

class If final : public Statement {
 public:
  If(std::vector<Branch> branches, Block otherwise, Position position)
      : Statement(position), branches_(std::move(branches)), otherwise_(std::move(otherwise)) {}
  Flow run(Frame& frame) const override {
    for (const Branch& branch : branches_) {
      frame.position = branch.position;
      if (branch.condition->boolean(frame)) return branch.body.run(frame);
    }
    return otherwise_.run(frame);
  }

 private:
  std::vector<Branch> branches_;
  Block otherwise_;
};

class Try final : public Statement {
 public:
  Try(Block body, std::vector<CatchCode> catches, Block finally, bool has_finally,
      Position position)
      : Statement(position),
        body_(std::move(body)),
        catches_(std::move(catches)),
        finally_(std::move(finally)),
        has_finally_(has_finally) {}

  Flow run(Frame& frame) const override {
    if (!has_finally_) return run_catching(frame);
    Flow flow = Flow::next;
    try {
      flow = run_catching(frame);
    } catch (const HostException&) {
      if (const auto left = run_finally_after_exception(frame)) return *left;
      throw;
    } catch (const std::bad_alloc&) {
      if (const auto left = run_finally_after_exception(frame)) return *left;
      throw;
    }
    const int leaving = frame.leaving;
    const Flow left = finally_.run(frame);
    if (left != Flow::next) return left;
    frame.leaving = leaving;
    return flow;
  }

 private:
  Flow run_catching(Frame& frame) const {
    const CatchCode* handler = nullptr;
    ObjectRef caught;
    try {
      return body_.run(frame);
    } catch (const HostException& exception) {
      caught = ObjectRef::share(exception.object());
      handler = handler_for(caught.get());
      if (handler == nullptr) throw;
    } catch (const std::bad_alloc&) {
      caught = make_exception("OutOfMemoryException", "there is not enough memory");
      handler = handler_for(caught.get());
      if (handler == nullptr) throw;
    }
    frame.machine->raised_at.reset();
    if (handler->slot >= 0) {
      frame.slots[handler->slot] = Value::of_object(std::move(caught));
    } else {
      caught.reset();
    }
    return handler->body.run(frame);
  }

  const CatchCode* handler_for(REALobject exception) const {
    const ClassInfo* actual = class_of(exception);
    for (const CatchCode& handler : catches_) {
      if (actual != nullptr && actual->derives_from(*handler.class_info)) return &handler;
    }
    return nullptr;
  }

  // Nothing if the exception is to go on: it is not forgotten where it came from. Leaving the
  // Finally by Return or Exit drops it.
  std::optional<Flow> run_finally_after_exception(Frame& frame) const {
    const Position raised_at = frame.machine->raised_at.value_or(frame.position);
    frame.machine->raised_at.reset();
    const Flow left = finally_.run(frame);
    if (left != Flow::next) return left;
    frame.machine->raised_at = raised_at;
    return std::nullopt;
  }

  Block body_;
  std::vector<CatchCode> catches_;
  Block finally_;
  bool has_finally_;
};

class Raise final : public Statement {
 public:
  Raise(Code exception, Position position)
      : Statement(position), exception_(std::move(exception)) {}
  Flow run(Frame& frame) const override {
    const Value exception = exception_->value(frame);
    if (exception.as_object() == nullptr) raise("NilObjectException", "Nil was raised");
    throw HostException(exception.share_object());
  }

 private:
  Code exception_;
};

class Return final : public Statement {
 public:
  Return(Code value, Position position) : Statement(position), value_(std::move(value)) {}
  Flow run(Frame& frame) const override {
    if (value_) frame.result = value_->value(frame);
    return Flow::return_;
  }

 private:
  Code value_;
};

class CallStatement final : public Statement {
 public:
  CallStatement(Code call, Position position) : Statement(position), call_(std::move(call)) {}
  Flow run(Frame& frame) const override {
    call_->run(frame);
    return Flow::next;
  }

 private:
  Code call_;
};

class BlockStatement final : public Statement {
 public:
  BlockStatement(Block block, Position position) : Statement(position), block_(std::move(block)) {}
  Flow run(Frame& frame) const override { return block_.run(frame); }

 private:
  Block block_;
};

}  // namespace

Flow Block::run(Frame& frame) const {
  if (first_slot_ == end_slot_) return run_statements(frame);
  const SlotCleaner cleaner(frame.slots + first_slot_, frame.slots + end_slot_);
  return run_statements(frame);
}

Flow Block::run_statements(Frame& frame) const {
  for (const std::unique_ptr<Statement>& statement : statements_) {
    frame.position = statement->position();
    frame.machine->count_step();
    const Flow flow = statement->run(frame);
    if (flow != Flow::next) return flow;
  }
  return Flow::next;
}

StatementCode make_if(std::vector<Branch> branches, Block otherwise, Position position) {
  return std::make_unique<If>(std::move(branches), std::move(otherwise), position);
}

StatementCode make_try(Block body, std::vector<CatchCode> catches, Block finally, bool has_finally,
                       Position position) {
  return std::make_unique<Try>(std::move(body), std::move(catches), std::move(finally), has_finally,
                               position);
}

StatementCode make_raise(Code exception, Position position) {
  return std::make_unique<Raise>(std::move(exception), position);
}

StatementCode make_return(Code value, Position position) {
  return std::make_unique<Return>(std::move(value), position);
}

StatementCode make_call_statement(Code call, Position position) {
  return std::make_unique<CallStatement>(std::move(call), position);
}

StatementCode make_block_statement(Block block, Position position) {
  return std::make_unique<BlockStatement>(std::move(block), position);
}

}  // namespace standin::language
