// Running a printed program on the plugin, as the console does.
#ifndef ZRB_TESTS_MODEL_PROGRAM_RUNS_H
#define ZRB_TESTS_MODEL_PROGRAM_RUNS_H

#include <gtest/gtest.h>

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
  std::istringstream lines(result.output);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("ok ")) ++result.good;
    if (line.starts_with("not ok ")) ++result.bad;
  }
  for (const standin::Violation& violation : host.ledger().violations()) {
    ADD_FAILURE() << violation.text();
  }
  return result;
}

}  // namespace model

#endif
