// Runs programs in the host language for tests.
#include "script_runner.h"

#include <gtest/gtest.h>

#include <sstream>

#include "language/script.h"

Outcome run_script_on(standin::Host& host, const std::string& text, const std::string& input,
                      const std::vector<std::string>& arguments) {
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream err;
  const int status =
      standin::language::run_script("test.rbs", text, arguments, host, {in, out, err});
  return {out.str(), err.str(), status};
}

Outcome run_script(const std::string& text, const std::string& input,
                   const std::vector<std::string>& arguments) {
  standin::HostOptions options;
  options.strict_ledger = true;
  standin::Host host(options);
  const standin::Ledger::Snapshot before = host.ledger().snapshot();
  Outcome outcome = run_script_on(host, text, input, arguments);
  EXPECT_EQ(standin::text(host.ledger().held_since(before)), "") << text;
  EXPECT_TRUE(host.ledger().violations().empty()) << text;
  return outcome;
}

std::string output_of(const std::string& text, const std::string& input) {
  const Outcome outcome = run_script(text, input);
  EXPECT_EQ(outcome.err, "") << text;
  EXPECT_EQ(outcome.status, 0) << text;
  return outcome.out;
}

std::string value_of(const std::string& expression) {
  const Outcome outcome = run_script("StdOut.Write " + expression + "\n");
  EXPECT_EQ(outcome.err, "") << expression;
  return outcome.out;
}

namespace {

// Without "test.rbs:3: " and without the source line.
std::string first_message(const Outcome& outcome, const std::string& text) {
  EXPECT_EQ(outcome.status, 1) << text << "\nprinted: " << outcome.out;
  const std::string line = outcome.err.substr(0, outcome.err.find('\n'));
  const std::size_t colon = line.find(": ");
  return colon == std::string::npos ? line : line.substr(colon + 2);
}

}  // namespace

std::string error_of(const std::string& text) {
  const Outcome outcome = run_script(text);
  const std::string message = first_message(outcome, text);
  EXPECT_FALSE(message.starts_with("unhandled")) << message;
  return message;
}

std::string exception_of(const std::string& text) {
  const std::string message = first_message(run_script(text), text);
  const std::string prefix = "unhandled ";
  EXPECT_TRUE(message.starts_with(prefix)) << text << "\n" << message;
  return message.substr(message.starts_with(prefix) ? prefix.size() : 0);
}
