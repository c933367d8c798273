"""Changes the plugin, one small thing at a time, and tells which changes the tests do not notice.
Started by tools/mutate."""

import argparse
import os
import queue
import re
import sys
import threading
import time
from collections import defaultdict

import plan
import results as outcomes
import schemata
import suites as tests
from results import EQUIVALENT, KILLED, REFUSED, SURVIVED, Result
from workspace import HERE, WORK, BuildFailure, Workspace, plugin_files, read

EXPLANATIONS = os.path.join(HERE, "equivalent.txt")
_SWITCHED_FLAGS = "-O1 -w"
_ALONE_FLAGS = "-O0 -w"


def read_options():
    parser = argparse.ArgumentParser(
        prog="tools/mutate", description="Makes small changes in copies of the plugin and runs the "
        "fast tests against each. Works in build/mutation; writes results.tsv there (of a part of the "
        "mutants, part.tsv).")
    parser.add_argument("--only", metavar="PATTERN", default="",
                        help="only mutants with this regular expression in 'FILE FUNCTION REGION'")
    parser.add_argument("--count", type=int, default=300, metavar="N",
                        help="mutants outside of the regions that are always taken whole (300)")
    parser.add_argument("--seed", type=int, default=1, help="for the choice of these (1)")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), metavar="N")
    parser.add_argument("--list", action="store_true", help="print the mutants and run nothing")
    parser.add_argument("--again", action="store_true",
                        help="only those that survived the last run, with an explanation or without")
    parser.add_argument("--thorough", action="store_true",
                        help="also run the suites that put a fault into every host call")
    parser.add_argument("--continue", dest="goes_on", action="store_true",
                        help="only those that the last run did not come to, or that survived it; "
                        "what it killed counts as before")
    parser.add_argument("--budget", type=float, default=float("inf"), metavar="SECONDS",
                        help="of tests against one mutant; who outlives them counts as a survivor, "
                        "though a later test might have killed it (no limit)")
    parser.add_argument("--report", action="store_true",
                        help="only print what the last run found, which may have been broken off")
    parser.add_argument("--first", type=int, metavar="N", help="only the first N of what is chosen")
    return parser.parse_args()


class Progress:
    """One line that changes, on a terminal; elsewhere a line now and then."""

    def __init__(self):
        self._last = time.monotonic()

    def __call__(self, text):
        if sys.stderr.isatty():
            print(f"\r\033[K{text}", end="", file=sys.stderr, flush=True)
        elif text and time.monotonic() > self._last + 60:
            self._last = time.monotonic()
            print(f"mutate: {text}", file=sys.stderr, flush=True)


progress = Progress()


def all_mutants(texts):
    return [mutant for path, text in texts.items() for mutant in plan.candidates(path, text)]


def choose_mutants(options, every):
    chosen = plan.choose(every, options.count, options.seed)
    if options.only:
        chosen = [mutant for mutant in chosen if re.search(
            options.only, f"{mutant.path} {mutant.function} {mutant.region}")]
    if options.again:
        survived = outcomes.survivors_in(os.path.join(WORK, "results.tsv"))
        chosen = [mutant for mutant in chosen if mutant.key in survived]
    chosen = chosen[:options.first]
    for number, mutant in enumerate(chosen, 1):
        mutant.number = number
    return chosen


def build_switched(workspace, texts, mutants, targets):
    """Builds all mutants that can be switched into one plugin; those that do not compile are left
    out and given back."""
    refused = set()
    while True:
        by_file = defaultdict(list)
        for mutant in mutants:
            if not mutant.alone and mutant.number not in refused:
                by_file[mutant.path].append(mutant)
        for path, text in texts.items():
            workspace.write(path, schemata.with_switches(path, text, by_file[path])
                            if path in by_file else text)
        culprits = workspace.make(["zrb_plugin", *targets]) - refused
        if not culprits:
            return refused
        refused |= culprits
        progress(f"{len(refused)} mutants do not compile")


class Run:
    """The mutants of one run, tested by several threads."""

    def __init__(self, options, texts, mutants):
        self.options = options
        self.texts = texts
        self.mutants = mutants
        self.results = []
        self._explanations = outcomes.Explanations(EXPLANATIONS)
        if options.goes_on:
            self.results = outcomes.settled(self.last_results())
        self._lock = threading.Lock()
        self._alone = None  # where mutants are built alone

    def last_results(self):
        return outcomes.results_in(os.path.join(WORK, "results.tsv"), self.mutants,
                                   self._explanations)

    def report(self, results):
        print(outcomes.report(results, len(self.mutants), self._explanations))

    def execute(self):
        names = tests.THOROUGH if self.options.thorough else tests.FAST
        switched = Workspace("switched", _SWITCHED_FLAGS, self.options.jobs)
        switched.prepare()
        begin = time.monotonic()
        refused = build_switched(switched, self.texts, self.mutants, names)
        built = time.monotonic()
        self._suites = tests.Suites(names, switched.executables(), switched.plugin)
        for failure in self._suites.measure(switched.plugin, len(self.mutants), progress):
            print(f"fails without a mutant, left out: {failure}", file=sys.stderr)
        measured = time.monotonic()

        waiting = queue.Queue()
        settled = {result.mutant.number for result in self.results}
        for mutant in sorted(self.mutants, key=lambda mutant: mutant.alone):
            if mutant.number in settled:
                continue
            if mutant.number in refused:
                self._add(Result(mutant, REFUSED))
            elif self._explanations.of(mutant) and not self.options.again:
                self._add(Result(mutant, EQUIVALENT))
            else:
                waiting.put(mutant)
        self._plugin = switched.plugin
        workers = [threading.Thread(target=self._work, args=(waiting,), daemon=True)
                   for _ in range(self.options.jobs)]
        for worker in workers:
            worker.start()
        for worker in workers:
            worker.join()
        progress("")
        print(f"built in {built - begin:.0f} s, tests measured in {measured - built:.0f} s, "
              f"mutants run in {time.monotonic() - measured:.0f} s", file=sys.stderr)
        self.results.sort(key=lambda result: result.mutant.number)

    def write(self):
        options = self.options
        is_part = options.again or options.only or options.first
        outcomes.write(os.path.join(WORK, "part.tsv" if is_part else "results.tsv"),
                       list(self.results))

    def _work(self, waiting):
        sandbox = tests.Sandbox()
        try:
            while True:
                try:
                    mutant = waiting.get_nowait()
                except queue.Empty:
                    return
                self._add(self._test(mutant, sandbox))
        finally:
            sandbox.close()

    def _test(self, mutant, sandbox):
        begin = time.monotonic()
        executables = dict(self._suites.executables)
        if mutant.alone:
            with self._lock:
                if not self._build_alone(mutant, sandbox, executables):
                    return Result(mutant, REFUSED)
                # The folder is the next one's as soon as the lock goes.
                killer = self._killer(mutant, sandbox, executables)
        else:
            sandbox.use_plugin(self._plugin)
            killer = self._killer(mutant, sandbox, executables)
        outcome = KILLED if killer else (EQUIVALENT if self._explanations.of(mutant) else SURVIVED)
        return Result(mutant, outcome, killer or "", time.monotonic() - begin)

    def _killer(self, mutant, sandbox, executables):
        return tests.run_mutant(mutant, self._suites, sandbox, executables, self.options.budget)

    def _build_alone(self, mutant, sandbox, executables):
        if self._alone is None:
            self._alone = Workspace("alone", _ALONE_FLAGS, 1)
            self._alone.prepare()
        for path, text in self.texts.items():
            self._alone.write(path, schemata.alone(text, mutant) if path == mutant.path else text)
        program = tests.LINKS_PLUGIN_FILES.get(mutant.path.split("/")[1])
        if not self._alone.compiles(["zrb_plugin"] + ([program] if program else [])):
            return False
        sandbox.use_plugin(self._alone.plugin)
        if program:
            executables[program] = self._alone.executables()[program]
        return True

    def _add(self, result):
        self.results.append(result)
        if len(self.results) % 20 == 0:  # so that a run that is broken off has told something
            self.write()
        killed = sum(each.outcome == KILLED for each in self.results)
        progress(f"{len(self.results)} of {len(self.mutants)} mutants, {killed} killed")


def main():
    options = read_options()
    texts = {path: read(path) for path in plugin_files()}
    every = all_mutants(texts)
    for file_name, function, before, _ in outcomes.Explanations(EXPLANATIONS).unused(every):
        print(f"mutate: {os.path.basename(EXPLANATIONS)} explains what there is no more: "
              f"{file_name} {function}: {before}", file=sys.stderr)
    mutants = choose_mutants(options, every)
    if options.list:
        for mutant in mutants:
            print(f"{mutant.path}:{mutant.line} {mutant.function} [{mutant.region or '-'}, {mutant.kind}]"
                  f"\n- {mutant.before}\n+ {mutant.after}")
        print(f"{len(mutants)} mutants, {sum(mutant.alone for mutant in mutants)} of them to be "
              "built alone")
        return 0
    if not mutants:
        print("mutate: no mutant fits", file=sys.stderr)
        return 1
    run = Run(options, texts, mutants)
    if options.report:
        run.report(run.last_results())
        return 0
    try:
        run.execute()
    except BuildFailure as failure:
        print(f"mutate: the build fails:\n{failure}", file=sys.stderr)
        return 1
    run.write()
    run.report(run.results)
    return 0


if __name__ == "__main__":
    sys.exit(main())
