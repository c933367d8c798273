"""Runs the benchmark program: for its list of benchmarks, and for figures."""

import glob
import json
import os
import subprocess
import sys
import tempfile


class Failure(Exception):
    """A run that gave no figures; the text says which, and why."""


class Runner:
    """Names of benchmarks stand in its filters as they are: none has a character that regular
    expressions take for something else."""

    def __init__(self, build):
        self.program = os.path.join(build, "bin", "zrb_bench")
        self.plugin = os.path.join(build, "ZRBContainers.so")
        self.words = os.path.join(build, "words.txt")

    def names(self):
        command = [self.program, "--plugin=" + self.plugin, "--benchmark_list_tests"]
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout

    def measure(self, benchmarks, *options):
        """The figures of each of the benchmarks, all run in one process, and its context."""
        pattern = "|".join("/".join(b[:4]) for b in benchmarks)
        output = self._run(["--n=%d" % benchmarks[0].n, *options], "^(%s)/iter" % pattern)
        by_name = {}
        for figures in output["benchmarks"]:
            by_name[figures["name"].split("/iterations:")[0]] = figures
        missing = [b for b in benchmarks if "/".join(b[:4]) not in by_name]
        if missing:
            raise Failure("no figures came for %s" % (missing,))
        return {b: by_name["/".join(b[:4])] for b in benchmarks}

    def load(self, plugin):
        """Nanoseconds from opening this file to its classes registered, in a process of its own."""
        figures = self._run([], "^loading/plugin/", plugin=plugin)["benchmarks"][0]
        if figures["checksum"] != 36:
            raise Failure("%d classes were registered instead of 36" % figures["checksum"])
        return figures["ns"]

    def instructions(self, benchmarks):
        """Instructions per operation of each benchmark, all run in one process under callgrind."""
        with tempfile.TemporaryDirectory() as folder:
            callgrind = ["valgrind", "--tool=callgrind", "--instr-atstart=no", "--log-file=/dev/null",
                         "--callgrind-out-file=" + os.path.join(folder, "out")]
            pattern = "|".join("/".join(b[:4]) for b in benchmarks)
            output = self._run(["--n=%d" % benchmarks[0].n, "--iterations=1"],
                               "^(%s)/iter" % pattern, prefix=callgrind)
            dumps = sorted(glob.glob(os.path.join(folder, "out.*")),
                           key=lambda name: int(name.rsplit(".", 1)[1]))
            # Each benchmark leaves one dump, in the order in which they ran.
            counts = [_total(dump) for dump in dumps]
        ran = [figures["name"].split("/iterations:")[0] for figures in output["benchmarks"]]
        if len(counts) < len(ran):
            raise Failure("callgrind left %d dumps for %d benchmarks" % (len(counts), len(ran)))
        operations = {figures["name"].split("/iterations:")[0]: figures["operations"]
                      for figures in output["benchmarks"]}
        per_operation = {name: count / operations[name] for name, count in zip(ran, counts)}
        return {b: per_operation["/".join(b[:4])] for b in benchmarks}

    def _run(self, options, pattern, plugin=None, prefix=()):
        command = [*prefix, self.program, "--plugin=" + (plugin or self.plugin),
                   "--words=" + self.words, "--benchmark_filter=" + pattern,
                   "--benchmark_format=json", *options]
        done = subprocess.run(command, capture_output=True, text=True,
                              env={**os.environ, "LC_ALL": "C"})
        if done.returncode != 0:
            raise Failure("%s\nfailed with status %d: %s" %
                          (" ".join(command), done.returncode, done.stderr.strip()[-2000:]))
        output = json.loads(done.stdout)
        for figures in output["benchmarks"]:
            if figures.get("error_occurred"):
                raise Failure("%s: %s" % (figures["name"], figures["error_message"]))
        return output


def _total(dump):
    with open(dump, encoding="utf-8") as lines:
        for line in lines:
            if line.startswith("totals:"):
                return int(line.split()[1])
    raise Failure("callgrind left no total in " + dump)


def progress(done, total, what):
    if sys.stderr.isatty():
        print("\r\033[K%d of %d: %s" % (done, total, what), end="", file=sys.stderr, flush=True)
        if done == total:
            print(file=sys.stderr)
    elif total >= 10 and done % (total // 10) == 0:
        print("bench: %d of %d %s" % (done, total, what), file=sys.stderr)
