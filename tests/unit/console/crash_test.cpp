// Plugins that crash: what was printed is kept, and the place in the program is told.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "console_runner.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class Crash : public Console {
 protected:
  void SetUp() override {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer reports crashes itself";
#endif
  }
  Result run_crashing(const std::string& program) {
    write("crash.rbs", "Dim r As New Reckless\n" + program);
    return run("--plugin '" ZRB_RECKLESS_PLUGIN "' crash.rbs");
  }
};

TEST_F(Crash, is_told_with_the_line_of_the_program_and_ends_by_its_signal) {
  const Result result = run_crashing("Print \"a\"\nr.Crash\nPrint \"b\"\n");
  EXPECT_EQ(result.signal, SIGSEGV);
  EXPECT_THAT(result.err,
              StartsWith("crash.rbs:3: the plugin crashed here (segmentation fault)\n"));
  EXPECT_THAT(result.err, HasSubstr("  ./run --diagnose crash.rbs\n"));
}

TEST_F(Crash, of_another_sort_is_told_too) {
  const Result result = run_crashing("r.Abort\n");
  EXPECT_EQ(result.signal, SIGABRT);
  EXPECT_THAT(result.err, StartsWith("crash.rbs:2: the plugin crashed here (aborted)\n"));
}

TEST_F(Crash, before_the_program_runs_is_told_without_a_line) {
  write("good.rbs", "Print \"ran\"\n");
  const Result result = run("--plugin '" ZRB_CRASHING_PLUGIN "' good.rbs");
  EXPECT_EQ(result.signal, SIGSEGV);
  EXPECT_THAT(result.err, StartsWith("console: the plugin crashed outside of the program's "
                                     "statements (segmentation fault)\n"));
}

TEST_F(Crash, leaves_all_that_was_printed) {
  const Result result = run_crashing(
      "For i As Integer = 1 To 30000\n  Print \"line\"\nNext\nStdOut.Write \"end\"\nr.Crash\n");
  EXPECT_EQ(result.out.size(), 30000U * 5 + 3);
  EXPECT_TRUE(result.out.ends_with("line\nend"));
}

TEST_F(Crash, in_a_routine_is_told_there) {
  EXPECT_THAT(run_crashing("S r\nSub S(x As Reckless)\n  x.Crash\nEnd Sub\n").err,
              StartsWith("crash.rbs:4: "));
  // And where it was called from, once it has returned.
  EXPECT_THAT(run_crashing("S\nr.Crash\nSub S()\n  Print \"\"\nEnd Sub\n").err,
              StartsWith("crash.rbs:3: "));
}

}  // namespace
