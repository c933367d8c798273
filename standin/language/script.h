// A program from its text to its exit status.
#ifndef ZRB_STANDIN_LANGUAGE_SCRIPT_H
#define ZRB_STANDIN_LANGUAGE_SCRIPT_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "language/checker.h"
#include "language/machine.h"
#include "language/program.h"
#include "language/source.h"
#include "runtime/host.h"

namespace standin::language {

class Script {
 public:
  // Reads and checks the program, and runs nothing. Throws CheckErrors, also when the text is no
  // program at all. The host must outlive the script.
  Script(std::string name, std::string text, Host& host);

  // Runs the program's body with `args`: the script's name, then the arguments. Returns the exit
  // status. What no Catch caught is reported to the error stream, as "file:line: unhandled
  // KeyNotFoundException: message" with the source line; the status is 1 then.
  // A program that uses up its steps is stopped, and reported likewise.
  int run(const std::vector<std::string>& arguments, const Streams& streams,
          std::uint64_t most_steps = unlimited_steps) const;

 private:
  int run_body(const std::vector<std::string>& arguments, Machine& machine) const;
  int report(const std::string& reason, const Machine& machine) const;

  SourceFile source_;
  Host& host_;
  std::unique_ptr<Program> program_;
};

// All of them, as `format` shows each.
std::string format(const SourceFile& source, const CheckErrors& errors);

// The whole way: what is wrong with the program goes to the error stream, and the status is 1.
int run_script(const std::string& name, const std::string& text,
               const std::vector<std::string>& arguments, Host& host, const Streams& streams);

}  // namespace standin::language

#endif
