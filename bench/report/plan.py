"""Which processes a run consists of, and what each of them measures."""

import random
import re
from collections import namedtuple

# One benchmark: a case (what is done) with a subject (which map) at a size.
Benchmark = namedtuple("Benchmark", "structure key case subject n")

# One process: the benchmarks that it runs, all of one subject at one size.
Process = namedtuple("Process", "benchmarks")

# The largest maps take most of a run. Only the subjects with goals, and the fastest ones, go there.
LARGEST = 5_000_000
LARGEST_SUBJECTS = {"plugin", "std::unordered_map", "ext::hash_map", "std::map",
                    "boost::unordered_flat_map", "absl::btree_map"}

FULL_SIZES = {"integer": (1_000, 10_000, 100_000, 1_000_000, LARGEST),
              "string": (1_000, 10_000, 100_000, 1_000_000)}
QUICK_SIZES = {"integer": (1_000, 100_000), "string": (1_000, 100_000)}

# The growth check compares the plugin at n and 8 n.
GROWTH_SIZES = (125_000, 1_000_000)

# Filling a large map takes longer than to measure anything on it. Above this size one process fills
# a map in a clean heap and runs several cases on it: the cases that only read, then the destruction.
ALONE_UP_TO = 100_000
SHARING = (("insert_random", "find_hit", "find_dependent", "find_miss", "iterate", "destroy"),
           ("export_by_iterator", "keys", "key_at"))

# Repeats what find_iterator does until a leak would show; the size of the map does not matter.
GROWTH_OF_PROCESS = "find_iterator_growth"
GROWTH_OF_PROCESS_SIZE = 1_000

# Fills maps to see what they take.
MEMORY = "memory"


def parse_names(listing):
    """(structure, key, case, subject) of each line that --benchmark_list_tests prints, in order."""
    names = []
    for line in listing.splitlines():
        name = line.split("/iterations:")[0]
        if name.count("/") == 3:
            names.append(tuple(name.split("/")))
    return names


def sizes_of(name, sizes):
    structure, key, case, subject = name
    if case == GROWTH_OF_PROCESS:
        return (GROWTH_OF_PROCESS_SIZE,)
    chosen = set(sizes[key])
    if subject == "plugin" and set(GROWTH_SIZES) & chosen:
        chosen.update(GROWTH_SIZES)
    if subject not in LARGEST_SUBJECTS:
        chosen.discard(LARGEST)
    return sorted(chosen)


def select(names, sizes, pattern):
    """The benchmarks of a run whose name contains the pattern, a regular expression."""
    return [Benchmark(*name, n) for name in names if re.search(pattern, "/".join(name))
            for n in sizes_of(name, sizes)]


def group(benchmarks):
    """Divides benchmarks among processes."""
    shared, processes = {}, []
    for benchmark in benchmarks:
        team = next((team for team in SHARING if benchmark.case in team), None)
        if benchmark.n <= ALONE_UP_TO or team is None:
            processes.append(Process((benchmark,)))
        else:
            where = (benchmark.structure, benchmark.key, benchmark.subject, benchmark.n, team)
            shared.setdefault(where, []).append(benchmark)
    return processes + [Process(tuple(members)) for members in shared.values()]


def interleave(processes, repetitions):
    """Every process as often as there are repetitions, in random order."""
    runs = list(processes) * repetitions
    random.shuffle(runs)
    return runs
