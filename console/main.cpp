// The console: loads a plugin into a stand-in host and runs a program of the host language on it.
//
// Exit status: the program's own; 1 for a program that cannot be read or checked, an unhandled
// exception, a plugin that cannot be loaded, and a violation that `--ledger` shows; 2 for wrong
// options.
#include <unistd.h>

#include <iostream>
#include <new>
#include <stdexcept>
#include <string>
#include <variant>

#include "class_listing.h"
#include "crash_report.h"
#include "language/script.h"
#include "ledger_report.h"
#include "options.h"
#include "output_buffer.h"
#include "program_file.h"
#include "runtime/host.h"

namespace console {
namespace {

constexpr int failure = 1;
constexpr int usage_error = 2;

int fail(const std::string& message, int status = failure) {
  std::cout.flush();
  std::cerr << "console: " << message << "\n";
  return status;
}

// What a plugin lets out of its start, whatever it is, is the plugin's fault.
void load_plugin(standin::Host& host, const std::string& file) {
  const std::string start = "cannot load the plugin " + file + ": its REALPluginMain threw ";
  try {
    host.load_plugin(file);
  } catch (const standin::PluginLoadError&) {
    throw;
  } catch (const std::exception& error) {
    throw standin::PluginLoadError(start + "an exception, \"" + error.what() + "\"");
  } catch (...) {
    throw standin::PluginLoadError(start + "an exception of unknown type");
  }
}

int run_program(const Options& options, standin::Host& host) {
  const std::string text = read_program(*options.program);
  const standin::language::Streams streams{std::cin, std::cout, std::cerr};
  try {
    const standin::language::Script script(*options.program, text, host);
    const standin::Ledger::Snapshot before = host.ledger().snapshot();
    int status = script.run(options.arguments, streams);
    if (options.shows_ledger) {
      std::cerr << ledger_report(host.ledger(), before);
      if (!host.ledger().violations().empty() && status == 0) status = failure;
    }
    for (const std::string& error : host.destructor_errors()) {
      std::cerr << "console: a destructor failed: " << error << "\n";
    }
    return status;
  } catch (const standin::language::CheckErrors& errors) {
    std::cerr << format(standin::language::SourceFile(*options.program, text), errors);
    return failure;
  }
}

int run(const Options& options) {
  if (options.program) name_program_in_crash_report(*options.program);
  standin::HostOptions host_options;
  host_options.version = options.host_version;
  host_options.without = {options.without.begin(), options.without.end()};
  host_options.instrument = options.traces || options.shows_ledger;
  // A host without its lock services frees too early: handles are kept then, so that the program
  // goes on and the ledger can tell.
  host_options.strict_ledger = options.shows_ledger || !options.without.empty();
  try {
    standin::Host host(host_options);
    standin::TracePrinter trace(std::cerr);
    if (options.traces) host.set_trace(&trace);
    load_plugin(host, options.plugin);
    if (options.lists_classes) std::cout << class_listing(host.plugin_classes());
    const int status = options.program ? run_program(options, host) : 0;
    host.set_trace(nullptr);
    return status;
  } catch (const std::invalid_argument& error) {
    return fail(std::string(error.what()) + "\nRun console --help for the options.", usage_error);
  } catch (const standin::PluginLoadError& error) {
    return fail(error.what());
  } catch (const ProgramFileError& error) {
    return fail(error.what());
  }
}

}  // namespace
}  // namespace console

int main(int count, char** words) {
  std::ios::sync_with_stdio(false);
  std::cin.tie(nullptr);
  static console::OutputBuffer output(STDOUT_FILENO);
  const console::Redirection redirection(std::cout, output);
  console::report_crashes(output);
  try {
    const auto parsed = console::parse_options(count, words, console::default_plugin_file());
    if (const auto* answer = std::get_if<console::Answer>(&parsed)) {
      (answer->status == 0 ? std::cout : std::cerr) << answer->text;
      return answer->status;
    }
    const int status = console::run(std::get<console::Options>(parsed));
    std::cout.flush();
    return std::cout.good() ? status : console::fail("standard output cannot be written");
  } catch (const std::bad_alloc&) {
    return console::fail("there is not enough memory");
  } catch (const std::exception& error) {
    return console::fail(error.what());
  }
}
