// The console as a process: options, streams, exit status.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "console_runner.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST_F(Console, runs_a_program_with_the_plugin_beside_it) {
  write("p.rbs",
        "Dim s As New StringHashSetZRB\ns.insert StdIn.ReadLine\n"
        "Print s.first.Key + Str(s.Count)\nReturn 7\n");
  const Result result = run("p.rbs", "word\n");
  EXPECT_EQ(result.out, "word1\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.status, 7);
}

TEST_F(Console, what_follows_the_program_belongs_to_it) {
  write("p.rbs", "Print Join(args, \"|\")");
  EXPECT_EQ(run("p.rbs --help -x 'a b' --plugin").out, "p.rbs|--help|-x|a b|--plugin\n");
  EXPECT_EQ(run("--ledger -- p.rbs -- y").out, "p.rbs|--|y\n");
}

TEST_F(Console, lists_all_classes) {
  const Result result = run("--classes");
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, HasSubstr("\nVariantToVariantMapIteratorZRB: 6 methods, 0 properties\n"));
  EXPECT_THAT(result.out, HasSubstr("StringHashSetZRB: 14 methods, 4 properties\n"
                                    "  property MaxSize As Integer (read-only)\n"));
  EXPECT_THAT(result.out, HasSubstr("  value(key as string) as variant (assignable)\n"));
  int classes = 0;
  for (std::size_t at = 0; (at = result.out.find(" properties\n", at)) != std::string::npos; ++at) {
    ++classes;
  }
  EXPECT_EQ(classes, 36);
}

TEST_F(Console, traces_plugin_calls_with_host_calls_and_results) {
  write("p.rbs", "Dim s As New StringHashSetZRB\ns.insert \"a\"\nPrint Str(s.lookup(\"a\"))\n");
  const Result result = run("--trace p.rbs");
  EXPECT_EQ(result.out, "True\n");
  EXPECT_THAT(result.err, HasSubstr(".insert(string #"));
  EXPECT_THAT(result.err, HasSubstr("REALLockString("));
  EXPECT_THAT(result.err, testing::ContainsRegex("lookup.*\n(  .*\n)*.*-> True"));
}

TEST_F(Console, shows_what_is_still_locked) {
  write("balanced.rbs", "Dim s As New StringHashSetZRB\ns.insert \"a\"\n");
  const Result balanced = run("--ledger balanced.rbs");
  EXPECT_EQ(balanced.err, "ledger: nothing is held\nledger: no violations\n");
  EXPECT_EQ(balanced.status, 0);
  // A comparison of two strings leaves a lock on each.
  write("held.rbs",
        "Dim s As New StringHashSetZRB\nDim key As String = \"a\"\ns.insert key\n"
        "Print Str(s.lookup(key))\n");
  EXPECT_THAT(run("--ledger held.rbs").err,
              testing::MatchesRegex("ledger: 2 locks held on 1 string\n"
                                    "  string #[0-9]+ \"a\" .*: 2 locks\nledger: no violations\n"));
}

TEST_F(Console, plays_older_hosts_and_hosts_that_lack_services) {
  write("p.rbs",
        "#If RBVersion < 2012\nPrint \"old\"\n#EndIf\n"
        "Dim s As New StringHashSetZRB\ns.insert \"a\"\nPrint Str(s.lookup(\"a\"))\n");
  EXPECT_EQ(run("--host-version 2011.4 p.rbs").out, "old\nTrue\n");
  EXPECT_EQ(run("--without REALGetRBVersion --without PluginGetStringData p.rbs").out, "True\n");
  const Result unknown = run("--without REALFoo p.rbs");
  EXPECT_EQ(unknown.status, 2);
  EXPECT_THAT(unknown.err, HasSubstr("REALFoo"));
}

TEST_F(Console, wrong_options_say_what_to_do) {
  for (const char* words :
       {"--bogus p.rbs", "", "--host-version x p.rbs", "--host-version nan p.rbs",
        "--host-version -1 p.rbs", "--host-version 1e999 p.rbs", "--plugin"}) {
    const Result result = run(words);
    EXPECT_EQ(result.status, 2) << words;
    EXPECT_THAT(result.err, HasSubstr("console --help")) << words;
    EXPECT_EQ(result.out, "") << words;
  }
}

TEST_F(Console, a_host_version_that_is_none_is_shown_one) {
  for (const char* words : {"--host-version abc p.rbs", "--host-version -1 p.rbs"}) {
    EXPECT_THAT(run(words).err,
                StartsWith("console: a host's version is a positive number, such as 2012.1\n"))
        << words;
  }
}

TEST_F(Console, help_and_version_are_answers) {
  const Result help = run("--help");
  EXPECT_EQ(help.status, 0);
  for (const char* option : {"--plugin", "--classes", "--trace", "--ledger", "--host-version",
                             "--without", "--help", "--version"}) {
    EXPECT_THAT(help.out, HasSubstr(option));
  }
  EXPECT_THAT(run("--version").out, StartsWith("console "));
}

TEST_F(Console, errors_of_the_program_end_with_1) {
  write("syntax.rbs", "Print (");
  const Result syntax = run("syntax.rbs");
  EXPECT_EQ(syntax.status, 1);
  EXPECT_THAT(syntax.err, StartsWith("syntax.rbs:1: "));
  write("raises.rbs", "Print \"a\"\nDim s As StringHashSetZRB\ns.insert \"x\"\n");
  const Result raises = run("raises.rbs");
  EXPECT_EQ(raises.status, 1);
  EXPECT_EQ(raises.out, "a\n");
  EXPECT_THAT(raises.err, StartsWith("raises.rbs:3: unhandled NilObjectException"));
}

}  // namespace
