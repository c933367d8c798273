// What a running program shares: the host, streams, static variables, the stack.
#ifndef ZRB_STANDIN_LANGUAGE_MACHINE_H
#define ZRB_STANDIN_LANGUAGE_MACHINE_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <vector>

#include "language/character_index.h"
#include "language/code.h"
#include "runtime/host.h"

namespace standin::language {

struct Streams {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
};

// Thrown by Quit. No Finally runs, but everything is released.
struct QuitProgram {
  int status;
};

// How many steps a program may take: statements, passes of loops, calls of its routines.
inline constexpr std::uint64_t unlimited_steps = std::numeric_limits<std::uint64_t>::max();

// Thrown when they are used up; the program ends as with Quit.
struct StepsUsedUp {};

// Room for the variables of all activations. Slots do not move while they are in use.
class ValueStack {
 public:
  struct Mark {
    std::size_t chunk = 0;
    std::size_t used = 0;
  };

  Mark mark() const { return mark_; }
  // Empty values.
  Value* allocate(std::size_t count);
  // The slots allocated since must have been emptied.
  void release_to(Mark mark) { mark_ = mark; }

 private:
  struct Chunk {
    std::unique_ptr<Value[]> values;
    std::size_t size;
  };
  std::vector<Chunk> chunks_;
  Mark mark_;
};

class Machine {
 public:
  // Calls may use the native stack from here on, within a budget that leaves enough of it to
  // whatever they call.
  Machine(Host& host, const Streams& streams, std::size_t static_count,
          std::uint64_t most_steps = unlimited_steps);

  Host& host() const { return host_; }
  const Streams& streams() const { return streams_; }
  Value& static_variable(std::size_t index) { return statics_[index]; }
  CharacterIndex& characters() { return characters_; }
  std::mt19937& random() { return random_; }
  // Since the program was started.
  std::chrono::steady_clock::duration running_time() const {
    return std::chrono::steady_clock::now() - start_;
  }
  ValueStack& stack() { return stack_; }
  // The one TextEncoding object of an encoding.
  REALobject text_encoding(std::uint32_t code);

  void count_step() {
    if (steps_left_-- == 0) throw StepsUsedUp{};
  }

  // Raises StackOverflowException when the budget is used up.
  void check_stack() const;

  // Where the exception that is under way was raised; nothing if it was in the innermost
  // activation that still lives.
  std::optional<Position> raised_at;

 private:
  Host& host_;
  Streams streams_;
  std::vector<Value> statics_;
  ValueStack stack_;
  CharacterIndex characters_;
  std::mt19937 random_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::map<std::uint32_t, ObjectRef> encodings_;
  std::uintptr_t stack_limit_;
  std::uint64_t steps_left_;
};

// An activation of a function: fill the slots of its parameters, then run it.
class Activation {
 public:
  Activation(Machine& machine, const Function& function);
  ~Activation();
  Activation(const Activation&) = delete;
  Activation& operator=(const Activation&) = delete;

  Value* slots() const { return frame_.slots; }
  Frame& frame() { return frame_; }
  Value run();

 private:
  const Function& function_;
  ValueStack::Mark mark_;
  int exceptions_;
  Frame frame_;
};

}  // namespace standin::language

#endif
