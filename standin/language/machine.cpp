// What a running program shares: the host, streams, static variables, the stack.
#include "language/machine.h"

#include <sys/resource.h>

#include <algorithm>
#include <exception>

#include "language/running_position.h"
#include "language/text_encoding.h"

namespace standin::language {
namespace {

constexpr std::size_t chunk_size = 4096;
// Half of the usual 8 MiB: a call deep down may still run a long expression or a plugin's routine.
constexpr std::size_t largest_stack_budget = 4U << 20U;

std::uintptr_t stack_address() {
  return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
}

std::size_t stack_budget() {
  rlimit limit{};
  if (getrlimit(RLIMIT_STACK, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) {
    return largest_stack_budget;
  }
  return std::min<std::size_t>(largest_stack_budget, static_cast<std::size_t>(limit.rlim_cur) / 2);
}

}  // namespace

Value* ValueStack::allocate(std::size_t count) {
  while (mark_.chunk < chunks_.size() && chunks_[mark_.chunk].size - mark_.used < count) {
    mark_ = {mark_.chunk + 1, 0};
  }
  if (mark_.chunk == chunks_.size()) {
    const std::size_t size = std::max(chunk_size, count);
    chunks_.push_back({std::make_unique<Value[]>(size), size});
  }
  Value* slots = chunks_[mark_.chunk].values.get() + mark_.used;
  mark_.used += count;
  return slots;
}

Machine::Machine(Host& host, const Streams& streams, std::size_t static_count,
                 std::uint64_t most_steps)
    : host_(host),
      streams_(streams),
      statics_(static_count),
      random_(std::random_device()()),
      stack_limit_(stack_address() - stack_budget()),
      steps_left_(most_steps) {}

REALobject Machine::text_encoding(std::uint32_t code) {
  ObjectRef& object = encodings_[code];
  if (!object) object = make_text_encoding(code);
  return object.get();
}

void Machine::check_stack() const {
  if (stack_address() < stack_limit_) {
    raise("StackOverflowException", "the calls are nested too deeply");
  }
}

Activation::Activation(Machine& machine, const Function& function)
    : function_(function), mark_(machine.stack().mark()), exceptions_(std::uncaught_exceptions()) {
  machine.check_stack();
  machine.count_step();
  frame_.machine = &machine;
  frame_.slots = machine.stack().allocate(static_cast<std::size_t>(function.slot_count));
  enter_frame(frame_);
}

Activation::~Activation() {
  Machine& machine = *frame_.machine;
  // An exception that leaves the function's own statements was raised there, unless a function
  // called from there has said otherwise. Position 0: the arguments were still being made.
  if (std::uncaught_exceptions() > exceptions_ && !machine.raised_at && frame_.position.line != 0) {
    machine.raised_at = frame_.position;
  }
  for (int slot = 0; slot < function_.slot_count; ++slot) frame_.slots[slot] = Value();
  machine.stack().release_to(mark_);
  leave_frame(frame_);
}

Value Activation::run() {
  function_.body.run(frame_);
  // A function that ends without Return gives what a variable starts as.
  if (frame_.result.kind() != function_.result.kind) return Value::initial(function_.result);
  return std::move(frame_.result);
}

}  // namespace standin::language
