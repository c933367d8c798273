"""The tests that a mutant has to get past, in groups that run as one process each.

A group is a test with all its parameters. An unmutated run tells how long each takes and which
mutants it reaches; only those that reach a mutant are run against it, first those that have killed
others of the same function, then the quick ones.
"""

import os
import re
import resource
import shutil
import signal
import subprocess
import tempfile
import time
from collections import Counter
from dataclasses import dataclass, field

FAST = ["storage_test", "host_binding_test", "golden_test", "abi_test", "laws_test",
        "conversion_laws_test", "lock_laws_test", "faults_test", "exhausted_nodes_test",
        "model_test", "hostile_host_test"]
THOROUGH = FAST + ["missing_services_test", "every_routine_test", "reentrancy_test",
                   "allocation_test"]
LINKS_PLUGIN_FILES = {"keys": "storage_test", "host": "host_binding_test"}

_MEMORY_LIMIT = 3 << 30
_FAILED = re.compile(r"^\[  FAILED  \] (\S+?),? ", re.M)
_STARTED = re.compile(r"^\[ RUN      \] (\S+)", re.M)


@dataclass
class Group:
    program: str
    pattern: str  # for --gtest_filter
    seconds: float = 0.0
    reach: set = field(default_factory=set)
    kills: Counter = field(default_factory=Counter)  # by (path, function) and by path

    @property
    def timeout(self):
        return 10 * self.seconds + 5


class Sandbox:
    """A folder to run tests in, which hold copies of the plugin; in memory where there is room."""

    def __init__(self):
        self._base = tempfile.mkdtemp(prefix="zrb-mutation-",
                                      dir="/dev/shm" if os.path.isdir("/dev/shm") else None)

    def close(self):
        shutil.rmtree(self._base, ignore_errors=True)

    def use_plugin(self, path):
        shutil.copy(path, os.path.join(self._base, "ZRBContainers.so"))

    def run(self, program, pattern, timeout, environment=None):
        """Runs tests until one fails. What failed, or None."""
        scratch = os.path.join(self._base, "tmp")
        os.mkdir(scratch)
        output_path = os.path.join(self._base, "output")
        with open(output_path, "w+b") as output:
            process = subprocess.Popen(
                [program, "--gtest_fail_fast", f"--gtest_filter={pattern}"], cwd=self._base,
                env={**os.environ, "TMPDIR": scratch, **(environment or {})}, stdout=output,
                stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL, start_new_session=True,
                preexec_fn=_limit)
            hangs = False
            try:
                process.wait(timeout)
            except subprocess.TimeoutExpired:
                hangs = True
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()
            output.seek(0)
            text = output.read().decode(errors="replace")
        shutil.rmtree(scratch, ignore_errors=True)
        if process.returncode == 0 and not hangs:
            return None
        name = os.path.basename(program)
        failed, started = _FAILED.findall(text), _STARTED.findall(text)
        if hangs:
            return f"{name}: hang in {started[-1] if started else 'its start'}"
        if process.returncode < 0:
            return (f"{name}: {signal.Signals(-process.returncode).name} in "
                    f"{started[-1] if started else 'its start'}")
        return f"{name}: {failed[0] if failed else 'its start'}"


def _limit():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    # Not of addresses, of which the plugin reserves more than it uses.
    resource.setrlimit(resource.RLIMIT_DATA, (_MEMORY_LIMIT, _MEMORY_LIMIT))
    resource.setrlimit(resource.RLIMIT_STACK, (8 << 20, 8 << 20))


def groups_of(program, path, sandbox_folder):
    """The groups of a program, by its list of tests."""
    listed = subprocess.run([path, "--gtest_list_tests"], cwd=sandbox_folder, text=True,
                            capture_output=True, check=True).stdout
    groups, suite = {}, ""
    for line in listed.splitlines():
        name = line.split("#")[0].rstrip()
        if not name.startswith(" "):
            suite = name if name.endswith(".") else ""
        elif suite:
            test = name.strip().split("/")
            pattern = suite + test[0] + ("/*" if len(test) > 1 else "")
            if "DISABLED_" not in pattern:
                groups[pattern] = Group(program, pattern)
    return list(groups.values())


class Suites:
    """All groups of the chosen programs, measured."""

    def __init__(self, names, executables, plugin):
        self.executables = executables
        self.groups = []
        sandbox = Sandbox()
        try:
            sandbox.use_plugin(plugin)
            for name in names:
                self.groups += groups_of(name, executables[name], sandbox._base)
        finally:
            sandbox.close()

    def measure(self, plugin, mutant_count, progress):
        """Runs everything once without a mutant; what fails there is told and left out."""
        sandbox = Sandbox()
        reach_path = os.path.join(sandbox._base, "reach")
        sandbox.use_plugin(plugin)
        failing = []
        try:
            for done, group in enumerate(self.groups):
                progress(f"unmutated: {done} of {len(self.groups)} groups of tests")
                with open(reach_path, "wb") as file:
                    file.write(bytes(mutant_count + 1))
                begin = time.monotonic()
                failure = sandbox.run(self.executables[group.program], group.pattern, 600,
                                      {"ZRB_MUTANT_REACH": reach_path})
                group.seconds = time.monotonic() - begin
                if failure is not None:
                    failing.append((group, failure))
                with open(reach_path, "rb") as file:
                    group.reach = {number for number, mark in enumerate(file.read()) if mark}
        finally:
            sandbox.close()
        for group, _ in failing:
            self.groups.remove(group)
        return [failure for _, failure in failing]

    def against(self, mutant):
        """The groups to run against a mutant, the likeliest killers for their time first."""
        place = (mutant.path, mutant.function)

        def promise(group):
            likelihood = 0.02 + 2 * group.kills[place] + 0.2 * group.kills[mutant.path]
            return -likelihood / (group.seconds + 0.02)

        return sorted((group for group in self.groups
                       if mutant.alone or mutant.number in group.reach), key=promise)


def run_mutant(mutant, suites, sandbox, executables, budget):
    """What killed the mutant, or None; no group is begun after `budget` seconds."""
    end = time.monotonic() + budget
    for group in suites.against(mutant):
        if time.monotonic() > end:
            return None
        killer = sandbox.run(executables[group.program], group.pattern, group.timeout,
                             {"ZRB_MUTANT": str(mutant.number)})
        if killer is not None:
            group.kills[(mutant.path, mutant.function)] += 1
            group.kills[mutant.path] += 1
            return killer
    return None
