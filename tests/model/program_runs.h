// Running a printed program on the plugin, as the console does.
#ifndef ZRB_TESTS_MODEL_PROGRAM_RUNS_H
#define ZRB_TESTS_MODEL_PROGRAM_RUNS_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "language/script.h"
#include "runtime/host.h"

namespace model {

struct ProgramRun {
  int status;
  std::string output;
  std::string errors;  // what is wrong with the program, or what it did not catch
  int good;            // lines that begin with "ok"
  int bad;             // lines that begin with "not ok"
};

inline void count_lines(ProgramRun& run) {
  std::istringstream lines(run.output);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("ok ")) ++run.good;
    if (line.starts_with("not ok ")) ++run.bad;
  }
}

inline ProgramRun run_program(const std::string& text) {
  standin::HostOptions options;
  options.instrument = true;
  options.strict_ledger = true;
  standin::Host host(options);
  host.load_plugin(ZRB_PLUGIN_PATH);
  std::istringstream in;
  std::ostringstream out;
  std::ostringstream err;
  ProgramRun result{};
  result.status = standin::language::run_script("program.rbs", text, {}, host, {in, out, err});
  result.output = out.str();
  result.errors = err.str();
  count_lines(result);
  for (const standin::Violation& violation : host.ledger().violations()) {
    ADD_FAILURE() << violation.text();
  }
  return result;
}

/// In the console itself, as one would run the program that a failure shows. Errors are among the
/// output.
inline ProgramRun run_in_console(const std::string& text) {
  const std::string path = ::testing::TempDir() + "zrb_model_" + std::to_string(getpid()) + ".rbs";
  std::ofstream(path) << text;
  const std::string command =
      "'" ZRB_CONSOLE_PATH "' --plugin '" ZRB_PLUGIN_PATH "' '" + path + "' 2>&1";
  ProgramRun result{};
  FILE* const console = popen(command.c_str(), "r");
  char part[4096];
  while (const std::size_t size = std::fread(part, 1, sizeof part, console)) {
    result.output.append(part, size);
  }
  result.status = pclose(console);
  std::remove(path.c_str());
  count_lines(result);
  return result;
}

}  // namespace model

#endif
