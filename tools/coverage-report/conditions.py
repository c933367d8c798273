"""Conditions that decide: modified condition/decision coverage, as clang counts it.

Each condition of a decision must have been seen to change its outcome while the others stayed as
they were. That is what a test of every branch misses: in `a || b`, that `b` matters.
"""

import glob
import json
import os
import subprocess

VERSION = "19"


def read(build):
    """For each file of the plugin: conditions, those that decided, and the lines of the others."""
    data = os.path.join(build, "coverage.profdata")
    subprocess.run([f"llvm-profdata-{VERSION}", "merge", "-sparse", "-o", data,
                    *glob.glob(os.path.join(build, "profiles", "*.profraw"))], check=True)
    programs = [os.path.join(build, "ZRBContainers.so"),
                *(os.path.join(build, "tests", "unit", name) for name in (
                    "keys/storage_test", "host/host_binding_test"))]
    decisions = {}  # by file, by place
    for program in filter(os.path.exists, programs):
        exported = subprocess.run(
            [f"llvm-cov-{VERSION}", "export", "-format=text", f"-instr-profile={data}", program],
            check=True, capture_output=True, text=True).stdout
        for entry in json.loads(exported)["data"][0]["files"]:
            # The plugin's binary does not tell in which folder it was built.
            folder, found, path = entry["filename"].rpartition("/plugin/")
            if found and not folder.endswith("/tests"):
                _add_decisions(entry, decisions.setdefault("plugin/" + path, {}))
    return sorted((path, *_summary(seen)) for path, seen in decisions.items())


def _add_decisions(entry, seen):
    """A decision may be there once for each instance of a template: a condition counts as seen when
    it decided in one of them."""
    for record in entry.get("mcdc_records", []):
        place, decided = tuple(record[:4]), record[-1]
        former = seen.get(place, [False] * len(decided))
        seen[place] = [a or b for a, b in zip(former, decided)]


def _summary(seen):
    count = sum(map(len, seen.values()))
    hit = sum(map(sum, seen.values()))
    missed = [(place[0], [number for number, fine in enumerate(decided, 1) if not fine])
              for place, decided in sorted(seen.items()) if not all(decided)]
    return count, hit, missed
