// A program from its text to its exit status.
#include "language/script.h"

#include <new>
#include <ostream>
#include <utility>

#include "language/lexer.h"
#include "language/parser.h"
#include "runtime/arrays.h"
#include "runtime/strings.h"

namespace standin::language {
namespace {

ArrayRef string_array(const std::string& first, const std::vector<std::string>& others) {
  ArrayRef array = make_array(Type::of(TypeKind::string), -1);
  append(array.get(), Value::of_string(make_string(first)));
  for (const std::string& other : others) {
    append(array.get(), Value::of_string(make_string(other)));
  }
  return array;
}

}  // namespace

Script::Script(std::string name, std::string text, Host& host)
    : source_(std::move(name), std::move(text)), host_(host) {
  Conditions conditions;
  if (host.options().version) conditions.host_version = *host.options().version;
  try {
    const ProgramSyntax syntax = parse_program(tokenize(source_, conditions));
    program_ = check(syntax, host);
  } catch (const SourceError& error) {
    throw CheckErrors({error.diagnostic()});
  }
}

int Script::run(const std::vector<std::string>& arguments, const Streams& streams,
                std::uint64_t most_steps) const {
  Machine machine(host_, streams, program_->static_count, most_steps);
  int status = 1;
  try {
    status = run_body(arguments, machine);
  } catch (const QuitProgram& quit) {
    status = quit.status;
  } catch (const StepsUsedUp&) {
    status = report("stopped after " + std::to_string(most_steps) + " steps", machine);
  } catch (const HostException& exception) {
    const std::string message = exception.message();
    status = report("unhandled " + exception.class_name() + (message.empty() ? "" : ": ") + message,
                    machine);
  } catch (const std::bad_alloc&) {
    status = report("unhandled OutOfMemoryException: there is not enough memory", machine);
  } catch (const std::exception& exception) {
    status = report(std::string("a C++ exception passed through: ") + exception.what(), machine);
  } catch (...) {
    status = report("a C++ exception of unknown type passed through", machine);
  }
  streams.out.flush();
  return status;
}

int Script::run_body(const std::vector<std::string>& arguments, Machine& machine) const {
  Activation activation(machine, program_->body);
  activation.slots()[0] = Value::of_array(string_array(source_.name(), arguments));
  return activation.run().as_integer();
}

int Script::report(const std::string& reason, const Machine& machine) const {
  machine.streams().out.flush();
  machine.streams().err << format(source_, {machine.raised_at.value_or(Position{}), reason});
  return 1;
}

std::string format(const SourceFile& source, const CheckErrors& errors) {
  std::string text;
  for (const Diagnostic& diagnostic : errors.diagnostics()) text += format(source, diagnostic);
  return text;
}

int run_script(const std::string& name, const std::string& text,
               const std::vector<std::string>& arguments, Host& host, const Streams& streams) {
  try {
    return Script(name, text, host).run(arguments, streams);
  } catch (const CheckErrors& errors) {
    streams.err << format(SourceFile(name, text), errors);
    return 1;
  }
}

}  // namespace standin::language
