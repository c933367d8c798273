"""The figures of a run: collected, checked against each other, kept in a file."""

import json
import statistics

from plan import MEMORY, Benchmark
from runner import Failure


class Results:
    def __init__(self):
        self.samples = {}       # benchmark -> {figure -> one value for each repetition}
        self.calls = {}         # benchmark -> host calls per operation
        self.instructions = {}  # benchmark -> instructions per operation
        self.facts = {}         # loading time, sizes, and what the figures were measured on

    def add(self, benchmark, figures):
        kept = self.samples.setdefault(benchmark, {})
        for figure in ("ns", "heap", "resident", "growth", "checksum"):
            if figure in figures:
                kept.setdefault(figure, []).append(figures[figure])

    def median(self, structure, key, case, subject, n, figure="ns"):
        """None when it was not measured."""
        values = self.samples.get(Benchmark(structure, key, case, subject, n), {}).get(figure)
        return statistics.median(values) if values else None

    def ratio(self, structure, key, case, peer, n, figure="ns"):
        """The plugin's figure divided by a peer's."""
        mine = self.median(structure, key, case, "plugin", n, figure)
        theirs = self.median(structure, key, case, peer, n, figure)
        return mine / theirs if mine is not None and theirs else None

    def subjects(self, structure, key):
        found = {b.subject for b in self.samples if (b.structure, b.key) == (structure, key)}
        return sorted(found, key=lambda subject: (subject != "plugin", _rank(subject), subject))

    def cases(self, structure, key):
        """Those whose times say something, in the order in which the benchmark program lists them."""
        found = {b.case for b in self.samples
                 if (b.structure, b.key) == (structure, key) and b.case != MEMORY}
        return [case for case in self.facts["cases"] if case in found]

    def sizes(self, key):
        return sorted({b.n for b in self.samples if b.key == key and b.subject != "plugin"} or
                      {b.n for b in self.samples if b.key == key})

    def repetitions(self):
        counts = [len(figures["ns"]) for figures in self.samples.values()]
        return min(counts) if counts else 0

    def verify(self):
        """Every subject must have found the same. Raises Failure otherwise."""
        seen = {}
        for benchmark, figures in self.samples.items():
            what = (benchmark.key, benchmark.case, benchmark.n)
            for checksum in figures["checksum"]:
                first, expected = seen.setdefault(what, (benchmark, checksum))
                if checksum != expected:
                    raise Failure("%s has the checksum %d, but %s has %d" %
                                  ("/".join(map(str, benchmark)), checksum,
                                   "/".join(map(str, first)), expected))

    def save(self, path):
        def rows(table):
            return [[*benchmark, value] for benchmark, value in table.items()]
        with open(path, "w", encoding="utf-8") as out:
            json.dump({"samples": rows(self.samples), "calls": rows(self.calls),
                       "instructions": rows(self.instructions), "facts": self.facts}, out)

    @staticmethod
    def read(path):
        results = Results()
        with open(path, encoding="utf-8") as stored:
            content = json.load(stored)
        for name in ("samples", "calls", "instructions"):
            setattr(results, name, {Benchmark(*row[:5]): row[5] for row in content[name]})
        results.facts = content["facts"]
        return results


def _rank(subject):
    return ("std", "ext", "boost", "absl").index(subject.split("::")[0]) if "::" in subject else -1
