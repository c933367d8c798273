"""Tells what the tests do not reach. Started by tools/coverage."""

import argparse
import os
import shutil
import subprocess
import sys

import conditions
import lines
from exclusions import Exclusions

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
_OF_THE_FILE = "^abi_test$"  # what a plugin that counts asks of its runtime is no plugin's to ask
GOALS = {"plugin": (100, 100), "standin": (90, 0), "console": (90, 0)}  # % of lines, of branches


def read_options():
    parser = argparse.ArgumentParser(
        prog="tools/coverage", description="Runs the tests in a build that counts, and tells what "
        "they did not reach.")
    parser.add_argument("--mcdc", action="store_true",
                        help="conditions of the plugin that never decided, with clang")
    parser.add_argument("--tests", metavar="REGEX", default=".", help="only these tests of ctest")
    parser.add_argument("--no-run", action="store_true",
                        help="only report what the last run counted")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), metavar="N")
    parser.add_argument("--show", metavar="FOLDER", default="plugin",
                        help="list the missed lines of files that begin so (plugin)")
    return parser.parse_args()


def run_tests(options, preset, build):
    """Whether all tests pass."""
    subprocess.run([os.path.join(ROOT, "tools", "build"), preset], check=True)
    for folder, _, names in os.walk(build):  # what former runs counted
        for name in names:
            if name.endswith((".gcda", ".profraw")):
                os.remove(os.path.join(folder, name))
    profiles = os.path.join(build, "profiles")
    shutil.rmtree(profiles, ignore_errors=True)
    # One file for all copies of a program or library, which the runtime locks.
    environment = {**os.environ, "LLVM_PROFILE_FILE": os.path.join(profiles, "%m.profraw")}
    if os.path.isdir("/dev/shm"):
        environment["TMPDIR"] = "/dev/shm"  # tests load copies of the plugin
    done = subprocess.run(["ctest", "--preset", preset, "-j", str(options.jobs), "--quiet",
                           "--output-log", os.path.join(build, "tests.log"), "--no-tests=error",
                           "-R", options.tests, "-E", _OF_THE_FILE],
                          cwd=ROOT, env=environment)
    if done.returncode != 0:
        print(f"coverage: tests fail, see {build}/tests.log", file=sys.stderr)
    return done.returncode == 0


def percent(hit, count):
    """Rounded down, so that 100 means all."""
    return 100.0 if hit == count else int(1000 * hit / count) / 10


def report_lines(options, build):
    exclusions = Exclusions()
    files = lines.read(ROOT, build, exclusions)
    complaints = exclusions.complaints()
    print(f"{'':<40} {'lines':>14} {'%':>6} {'branches':>14} {'%':>6}")
    for folder, (line_goal, branch_goal) in GOALS.items():
        inside = [file for file in files if file.path.startswith(folder + "/")]
        sums = [sum(getattr(file, name) for file in inside)
                for name in ("lines_hit", "lines", "branches_hit", "branches")]
        row(folder, *sums)
        if percent(sums[0], sums[1]) < line_goal or percent(sums[2], sums[3]) < branch_goal:
            complaints.append(f"{folder}: the goal is {line_goal} % of lines"
                              + (f" and {branch_goal} % of branches" if branch_goal else ""))
    for file in files:
        if file.path.startswith(options.show) and file.missed:
            row("  " + file.path, file.lines_hit, file.lines, file.branches_hit, file.branches)
            for number, text, problem in file.missed:
                print(f"    {number}: {problem}\n        {text}")
    for path, line, reason in exclusions.reasons():
        print(f"excluded: {path}: {line}\n    {reason}")
    return complaints


def row(name, lines_hit, line_count, branches_hit, branch_count):
    print(f"{name:<40} {lines_hit:>6} of {line_count:>5} {percent(lines_hit, line_count):>6} "
          f"{branches_hit:>6} of {branch_count:>5} {percent(branches_hit, branch_count):>6}")


def report_conditions(build):
    files = conditions.read(build)
    for path, count, hit, missed in files:
        if count:
            print(f"{path:<45} {hit:>5} of {count:>5} {percent(hit, count):>6} %")
        for line, numbers in missed:
            print(f"    {line}: condition {', '.join(map(str, numbers))} never decided")
    count, hit = (sum(file[column] for file in files) for column in (1, 2))
    print(f"{'plugin: conditions that decided':<45} {hit:>5} of {count:>5} {percent(hit, count):>6} %")


def main():
    options = read_options()
    preset = "coverage-mcdc" if options.mcdc else "coverage"
    build = os.path.join(ROOT, "build", preset)
    passed = options.no_run or run_tests(options, preset, build)
    complaints = []
    if options.mcdc:
        report_conditions(build)
    else:
        complaints = report_lines(options, build)
    for complaint in complaints:
        print(f"coverage: {complaint}", file=sys.stderr)
    return 0 if passed and not complaints else 1


if __name__ == "__main__":
    sys.exit(main())
