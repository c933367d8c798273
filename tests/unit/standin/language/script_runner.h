// Runs programs in the host language for tests.
#ifndef ZRB_TESTS_UNIT_STANDIN_LANGUAGE_SCRIPT_RUNNER_H
#define ZRB_TESTS_UNIT_STANDIN_LANGUAGE_SCRIPT_RUNNER_H

#include <string>
#include <vector>

#include "runtime/host.h"

struct Outcome {
  std::string out;
  std::string err;
  int status = 0;
};

// As "test.rbs", on a host of its own without a plugin. Fails the test if handles stay behind or
// are misused.
Outcome run_script(const std::string& text, const std::string& input = {},
                   const std::vector<std::string>& arguments = {});

// On a given host, whose ledger is left to the caller.
Outcome run_script_on(standin::Host& host, const std::string& text, const std::string& input = {},
                      const std::vector<std::string>& arguments = {});

// What a program prints; a report of errors counts as failure of the test.
std::string output_of(const std::string& text, const std::string& input = {});
// What one expression of type String gives.
std::string value_of(const std::string& expression);
// The message of the first error that keeps the program from running, without its place; fails the
// test if it runs.
std::string error_of(const std::string& text);
// The same for the exception that ends a program: "KeyNotFoundException: message".
std::string exception_of(const std::string& text);

#endif
