"""Lines and branches, as gcov counted them and gcovr adds them up over all instances."""

import json
import os
import subprocess
from dataclasses import dataclass, field


@dataclass
class FileCoverage:
    path: str
    lines: int = 0
    lines_hit: int = 0
    branches: int = 0
    branches_hit: int = 0
    missed: list = field(default_factory=list)  # (line number, text, what is missing)


def read(root, build, exclusions):
    """The coverage of each file of the plugin, the stand-in host and the console."""
    target = os.path.join(build, "coverage.json")
    subprocess.run(
        ["gcovr", "--root", root, "--json", target, "--exclude-unreachable-branches", "--filter", f"{root}/(plugin|standin|console)/", build],
        check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd=root)
    with open(target, encoding="utf-8") as file:
        counted = json.load(file)
    return [_file(root, entry, exclusions) for entry in counted["files"]]


def _file(root, entry, exclusions):
    result = FileCoverage(entry["file"])
    with open(os.path.join(root, result.path), encoding="utf-8") as file:
        texts = file.read().splitlines()
    for line in entry["lines"]:
        if line.get("gcovr/noncode"):
            continue
        number = line["line_number"]
        text = texts[number - 1]
        branches = _decisions(line["branches"])
        missing = sum(branch["count"] == 0 for branch in branches)
        problem = "never reached" if line["count"] == 0 else (
            f"{missing} of {len(branches)} branches never taken" if missing else "")
        excused = problem and exclusions.covers(result.path, text)
        result.lines += 1
        result.lines_hit += line["count"] > 0 or bool(excused)
        result.branches += len(branches)
        result.branches_hit += len(branches) if excused else len(branches) - missing
        if problem and not excused:
            result.missed.append((number, text.strip(), problem))
    return result


def _decisions(branches):
    """The branches without calls that may throw. Those have two: one for the exception, and one for
    going on, which gcovr's own option would leave behind as a branch that goes one way."""
    decisions = []
    position = 0
    while position < len(branches):
        pair = branches[position:position + 2]
        if len(pair) == 2 and any(branch["throw"] for branch in pair):
            position += 2
        else:
            decisions.append(branches[position])
            position += 1
    return decisions
