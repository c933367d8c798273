// What is told when the process crashes, as a plugin may make it.
#include "crash_report.h"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <string_view>

#include "language/running_position.h"
#include "write_all.h"

namespace console {
namespace {

struct Crash {
  int signal;
  std::string_view name;
};
// Aborts too: the C library stops a program so that finds its heap damaged.
constexpr std::array crashes = {Crash{SIGSEGV, "segmentation fault"}, Crash{SIGBUS, "bus error"},
                                Crash{SIGABRT, "aborted"}};

// A handler can be given nothing, and has no stack left when the program used all of it.
OutputBuffer* output = nullptr;
std::string_view program;
std::array<char, 65536> handler_stack;

void tell(std::string_view text) {
  write_all(STDERR_FILENO, text);
}

void tell_number(std::uint32_t number) {
  std::array<char, 16> digits{};
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  tell({digits.data(), static_cast<std::size_t>(end - digits.data())});
}

// Calls nothing that a signal may not interrupt.
void report(int signal) {
  output->write_out();
  const standin::language::Position position = standin::language::running_position();
  if (position.line == 0) {
    tell("console: the plugin crashed outside of the program's statements (");
  } else {
    tell(program);
    tell(":");
    tell_number(position.line);
    tell(": the plugin crashed here (");
  }
  for (const Crash& crash : crashes) {
    if (crash.signal == signal) tell(crash.name);
  }
  tell(")\n");
  if (position.line != 0) {
    tell(
        "A use of an iterator whose element is gone can end so. The diagnostic build names it:\n"
        "  ./run --diagnose ");
    tell(program);
    tell("\n");
  }
  // The default action is back in place, and comes when this handler is left.
  raise(signal);
}

}  // namespace

void report_crashes(OutputBuffer& pending) {
  output = &pending;
  stack_t stack{};
  stack.ss_sp = handler_stack.data();
  stack.ss_size = handler_stack.size();
  sigaltstack(&stack, nullptr);
  struct sigaction action {};
  action.sa_handler = report;
  action.sa_flags = SA_ONSTACK | static_cast<int>(SA_RESETHAND);
  for (const Crash& crash : crashes) {
    struct sigaction before {};
    // A sanitizer has handlers of its own, which tell more.
    const bool free =
        sigaction(crash.signal, nullptr, &before) == 0 && before.sa_handler == SIG_DFL;
    if (free) sigaction(crash.signal, &action, nullptr);
  }
}

void name_program_in_crash_report(const std::string& name) {
  program = name;
}

}  // namespace console
