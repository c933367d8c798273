// Programs that may take only so many steps.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "language/script.h"
#include "script_runner.h"

namespace {

using testing::HasSubstr;

Outcome run_for(std::uint64_t most_steps, const std::string& text) {
  standin::HostOptions options;
  options.strict_ledger = true;
  standin::Host host(options);
  const standin::Ledger::Snapshot before = host.ledger().snapshot();
  std::istringstream in;
  std::ostringstream out;
  std::ostringstream err;
  const int status =
      standin::language::Script("test.rbs", text, host).run({}, {in, out, err}, most_steps);
  EXPECT_EQ(standin::text(host.ledger().held_since(before)), "") << text;
  return {out.str(), err.str(), status};
}

TEST(StepLimit, stops_whatever_does_not_end) {
  for (const char* program : {
           "While True\nWend\n",
           "Do\nLoop\n",
           "Do\nLoop Until False\n",
           "For i As Integer = 1 To 2 Step 0\nNext\n",
           "For i As Double = 1 To 2 Step 0\nNext\n",
           "Dim a(0) As Integer\nFor Each i As Integer In a\n  a.Append i\nNext\n",
           "Sub Run()\n  Run\nEnd Sub\nWhile True\n  Try\n    Run\n  Catch e As RuntimeException\n"
           "  End Try\nWend\n",
       }) {
    const Outcome outcome = run_for(1000, program);
    EXPECT_EQ(outcome.status, 1) << program;
    EXPECT_THAT(outcome.err, HasSubstr("stopped after 1000 steps")) << program;
  }
}

TEST(StepLimit, tells_the_line) {
  EXPECT_THAT(run_for(50, "Dim i As Integer\nWhile True\n  i = i + 1\nWend\n").err,
              HasSubstr("test.rbs:"));
}

TEST(StepLimit, lets_a_program_take_that_many_steps) {
  const std::string program = "Print \"a\"\nPrint \"b\"\n";
  // The program itself is the first one.
  EXPECT_EQ(run_for(3, program).out, "a\nb\n");
  EXPECT_EQ(run_for(3, program).status, 0);
  EXPECT_EQ(run_for(2, program).out, "a\n");
  EXPECT_EQ(run_for(2, program).status, 1);
}

TEST(StepLimit, is_no_exception_that_a_program_could_catch) {
  const Outcome outcome = run_for(
      100,
      "Try\n  While True\n  Wend\nCatch e As RuntimeException\n  Print \"caught\"\nFinally\n"
      "  Print \"finally\"\nEnd Try\n");
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.status, 1);
}

}  // namespace
