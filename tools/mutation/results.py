"""What became of the mutants: the file of results, and what is printed of it."""

import os
import re
from collections import Counter
from dataclasses import dataclass

KILLED, SURVIVED, EQUIVALENT, REFUSED = "killed", "survived", "explained", "does not compile"
_COLUMNS = ["file", "line", "function", "region", "kind", "before", "after", "outcome", "killer",
            "seconds"]


@dataclass
class Result:
    mutant: object
    outcome: str
    killer: str = ""
    seconds: float = 0.0


class Explanations:
    """Survivors that no test can kill, from equivalent.txt. Each paragraph there is

        plugin/FILE FUNCTION
        - the lines before
        + the lines after
        why this changes nothing that can be seen
    """

    def __init__(self, path):
        self._reasons = {}
        with open(path, encoding="utf-8") as file:
            text = "\n".join(line for line in file.read().splitlines() if not line.startswith("#"))
        for paragraph in re.split(r"\n\s*\n", text.strip()):
            lines = paragraph.strip().splitlines()
            if not lines:
                continue
            if len(lines) < 4 or lines[1][:1] != "-" or lines[2][:1] != "+":
                raise ValueError(f"{os.path.basename(path)}: not as its head says:\n{paragraph}")
            file_name, _, function = lines[0].partition(" ")
            key = file_name, function.strip(), lines[1][1:].strip(), lines[2][1:].strip()
            self._reasons[key] = " ".join(line.strip() for line in lines[3:])

    def of(self, mutant):
        return self._reasons.get(mutant.key)

    def unused(self, mutants):
        """Those that fit none of the mutants, as happens when the code they are about has gone."""
        keys = {mutant.key for mutant in mutants}
        return [key for key in self._reasons if key not in keys]


def write(path, results):
    with open(path, "w", encoding="utf-8") as file:
        file.write("\t".join(_COLUMNS) + "\n")
        for result in results:
            mutant = result.mutant
            file.write("\t".join([
                mutant.path, str(mutant.line), mutant.function, mutant.region, mutant.kind,
                mutant.before, mutant.after, result.outcome, result.killer,
                f"{result.seconds:.1f}"]).replace("\n", " ") + "\n")


def _rows(path):
    with open(path, encoding="utf-8") as file:
        return [dict(zip(_COLUMNS, line.rstrip("\n").split("\t"))) for line in file][1:]


def _key(row):
    return row["file"], row["function"], row["before"], row["after"]


def survivors_in(path):
    """The keys of the mutants that survived an earlier run."""
    return {_key(row) for row in _rows(path) if row["outcome"] in (SURVIVED, EQUIVALENT)}


def results_in(path, mutants, explanations):
    """The results of those mutants that an earlier run came to."""
    rows = {(*_key(row), int(row["line"])): row for row in _rows(path)}
    found = [(mutant, rows.get((*mutant.key, mutant.line))) for mutant in mutants]
    return [Result(mutant, _outcome_now(row["outcome"], mutant, explanations), row["killer"],
                   float(row["seconds"])) for mutant, row in found if row]


def _outcome_now(outcome, mutant, explanations):
    return EQUIVALENT if outcome == SURVIVED and explanations.of(mutant) else outcome


def settled(results):
    """Those of mutants that were killed, or could not be built alone."""
    return [result for result in results if result.outcome == KILLED
            or result.outcome == REFUSED and result.mutant.alone]


def table(title, results, label):
    """Counts by what `label` gives for a mutant; which part of all was killed, and the mutation
    score, which leaves out those that no test can tell from the original."""
    counts = Counter((label(result.mutant), result.outcome) for result in results)
    names = sorted({name for name, _ in counts})
    width = max([len(title)] + [len(name) for name in names] + [len("all")])
    outcomes = [KILLED, SURVIVED, EQUIVALENT, REFUSED]
    lines = [f"{title:<{width}}  " + "  ".join(f"{outcome:>9}" for outcome in outcomes)
             + "  of all    score"]
    for name in names + ["all"]:
        row = [sum(count for (other, outcome), count in counts.items()
                   if outcome == wanted and name in (other, "all")) for wanted in outcomes]
        lines.append(f"{name:<{width}}  " + "  ".join(
            f"{count:>{max(9, len(outcome))}}" for count, outcome in zip(row, outcomes))
            + "  " + share(row[0], row[0] + row[1] + row[2]) + "  " + share(row[0], row[0] + row[1]))
    return "\n".join(lines)


def share(killed, counted):
    return f"{100 * killed / counted:5.1f} %" if counted else "    -"


def report(results, mutant_count, explanations):
    parts = []
    if len(results) < mutant_count:
        parts.append(f"not run: {mutant_count - len(results)} of {mutant_count} mutants")
    parts += [table("file", results, lambda mutant: mutant.path),
              table("kind", results, lambda mutant: mutant.kind),
              table("region", results, lambda mutant: mutant.region or "elsewhere")]
    survived = [result for result in results if result.outcome == SURVIVED]
    if survived:
        parts.append("Survivors without an explanation:\n\n" + "\n\n".join(
            f"{result.mutant.path} {result.mutant.function}\n- {result.mutant.before}\n"
            f"+ {result.mutant.after}" for result in survived))
    explained = [result for result in results if result.outcome == EQUIVALENT]
    if explained:
        parts.append("Survivors that are explained:\n\n" + "\n\n".join(
            f"{result.mutant.path} {result.mutant.function}\n- {result.mutant.before}\n"
            f"+ {result.mutant.after}\n{explanations.of(result.mutant)}" for result in explained))
    return "\n\n".join(parts)
