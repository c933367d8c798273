"""Runs the benchmarks, prints the tables and writes docs/performance.md. Started by tools/bench."""

import argparse
import os
import platform
import statistics
import subprocess
import sys
import time

import page
import plan
import tables
import words
from plan import Benchmark
from results import Results
from runner import Failure, Runner, progress

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
BUILD = os.path.join(ROOT, "build", "bench")
LOADING_REPETITIONS = 11
CALL_SIZES = (1_000, 100_000)
CHECK_SIZE = 1_000


def read_options():
    parser = argparse.ArgumentParser(
        prog="tools/bench", description="Measures the plugin and its peers. A full run takes about "
        "an hour and writes docs/performance.md.")
    parser.add_argument("--quick", action="store_true",
                        help="1e3 and 1e5 elements and three repetitions; only prints")
    parser.add_argument("--case", metavar="PATTERN", default="",
                        help="only benchmarks with this regular expression in "
                        "STRUCTURE/KEY/CASE/SUBJECT, such as 'hashed/integer/find'; only prints")
    parser.add_argument("--repetitions", type=int, metavar="N", help="5 unless given")
    parser.add_argument("--no-instructions", action="store_true",
                        help="leave out the counts of instructions")
    parser.add_argument("--instructions", action="store_true",
                        help="count instructions in a quick run as well")
    parser.add_argument("--check", action="store_true",
                        help="only run every benchmark once, on few elements, and compare sums")
    parser.add_argument("--page-only", action="store_true",
                        help="write the page again from the last full run")
    return parser.parse_args()


def measure_times(runner, results, benchmarks, repetitions):
    runs = plan.interleave(plan.group(benchmarks), repetitions)
    for done, process in enumerate(runs, 1):
        for benchmark, figures in runner.measure(process.benchmarks).items():
            results.add(benchmark, figures)
        progress(done, len(runs), "processes")
    results.verify()


def by_subject(benchmarks):
    """Benchmarks whose figures are exact can share processes: one for each subject and size."""
    processes = {}
    for benchmark in benchmarks:
        if benchmark.case != plan.GROWTH_OF_PROCESS:
            where = (benchmark.structure, benchmark.key, benchmark.subject, benchmark.n)
            processes.setdefault(where, []).append(benchmark)
    return list(processes.values())


def count_calls(runner, results, names):
    benchmarks = [Benchmark(*name, n) for name in names for n in CALL_SIZES
                  if name[1] == "string" or name[3] == "plugin"]
    for process in by_subject(benchmarks):
        for benchmark, figures in runner.measure(process, "--count-calls", "--iterations=1").items():
            results.calls[benchmark] = figures["calls"]


def count_instructions(runner, results, names, sizes):
    benchmarks = [Benchmark(*name, n) for name in names for n in sizes]
    benchmarks += [Benchmark(*name, n) for name in names if name[3] == "plugin"
                   for n in tables.INSTRUCTION_GROWTH_SIZES if n not in sizes]
    processes = by_subject(benchmarks)
    for done, process in enumerate(processes, 1):
        results.instructions.update(runner.instructions(process))
        progress(done, len(processes), "processes under callgrind")


def measure_loading(runner, results):
    stripped = os.path.join(BUILD, "ZRBContainers.stripped.so")
    subprocess.run(["strip", "-o", stripped, runner.plugin], check=True)
    times = [runner.load(stripped) for _ in range(LOADING_REPETITIONS)]
    results.facts["loading_ms"] = statistics.median(times) / 1e6
    results.facts["stripped_bytes"] = os.path.getsize(stripped)


def describe_machine(results):
    with open("/proc/cpuinfo", encoding="utf-8") as lines:
        models = [line.split(":", 1)[1].strip() for line in lines if line.startswith("model name")]
    compiler = subprocess.run(["c++", "--version"], capture_output=True, text=True, check=True)
    release = platform.freedesktop_os_release()
    results.facts.update(cpu=models[0] if models else platform.machine(), processors=os.cpu_count(),
                         system=release["PRETTY_NAME"],
                         compiler="GCC " + compiler.stdout.split("\n")[0].split()[-1])


def check(runner, names):
    """Every benchmark once on few elements, with the plain and with the counting host."""
    for option in ((), ("--count-calls",)):
        results = Results()
        for process in by_subject(Benchmark(*name, CHECK_SIZE) for name in names):
            for benchmark, figures in runner.measure(process, "--iterations=1", *option).items():
                results.add(benchmark, figures)
        results.verify()
    runner.load(runner.plugin)
    print("bench: %d benchmarks ran, and all subjects found the same" % len(names))


def run(options, runner, names):
    results = Results()
    describe_machine(results)
    results.facts["cases"] = list(dict.fromkeys(name[2] for name in names))
    repetitions = options.repetitions or (3 if options.quick else 5)
    sizes = plan.QUICK_SIZES if options.quick else plan.FULL_SIZES
    benchmarks = plan.select(names, sizes, options.case)
    if not benchmarks:
        raise Failure("no benchmark has %r in its name" % options.case)
    measure_loading(runner, results)
    measure_times(runner, results, benchmarks, repetitions)
    chosen = list(dict.fromkeys(benchmark[:4] for benchmark in benchmarks))
    count_calls(runner, results, chosen)
    if options.instructions or not (options.quick or options.no_instructions):
        count_instructions(runner, results, chosen,
                           tables.INSTRUCTION_SIZES[:1 if options.quick else None])
    return results


def print_tables(results):
    for structure in ("hashed", "ordered"):
        for key in ("integer", "string"):
            for case, table in tables.operation_tables(results, structure, key):
                print("%s %s: %s\n%s\n" % (structure, key, case, table))
    for title, table in tables.per_operation_table(results.calls, "calls per operation"):
        print("%s: calls of the host\n%s\n" % (title, table))
    for title, table in tables.per_operation_table(results.instructions, "instructions"):
        print("%s: instructions per operation\n%s\n" % (title, table))
    print("growth, the plugin at 8 n and n\n%s\n" % tables.growth_table(results))
    print("goals, for 1e3 / 1e5 / 1e6 / 5e6 elements\n%s" % tables.goal_table(results))


def main():
    options = read_options()
    stored = os.path.join(BUILD, "results.json")
    if options.page_only:
        page.write(Results.read(stored), ROOT)
        return
    os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})  # the benchmarks inherit it
    runner = Runner(BUILD)
    words.write(runner.words)
    names = plan.parse_names(runner.names())
    if options.check:
        check(runner, names)
        return
    start = time.monotonic()
    results = run(options, runner, names)
    print_tables(results)
    if not (options.quick or options.case):
        results.save(stored)
        page.write(results, ROOT)
        print("\nbench: wrote docs/performance.md", file=sys.stderr)
    print("bench: %.0f minutes" % ((time.monotonic() - start) / 60), file=sys.stderr)


try:
    main()
except Failure as failure:
    sys.exit("bench: %s" % failure)
except FileNotFoundError as failure:
    sys.exit("bench: %s" % failure)
except KeyboardInterrupt:
    sys.exit(130)
