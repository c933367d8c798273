"""The figures to reach, and whether they are reached."""

from collections import namedtuple

SIZES = {"integer": (1_000, 100_000, 1_000_000, 5_000_000), "string": (1_000, 100_000, 1_000_000)}

# A row of the table of goals: `limits` and `reached` by size or, if there is no more to tell, one
# each. A figure that was not measured is None.
Row = namedtuple("Row", "operation against unit limits reached")

UNORDERED, HASH_MAP, MAP = "std::unordered_map", "ext::hash_map", "std::map"
UNCACHED = "std::unordered_map-uncached"

# Structure, case, peer, figure, and the largest ratio at each size; one number holds everywhere.
INTEGER_RATIOS = (
    ("hashed", "insert_random", UNORDERED, "ns", (0.35, 0.6, 0.35, 0.35)),
    ("hashed", "churn", UNORDERED, "ns", (0.45, 0.35, 0.3, 0.3)),
    ("hashed", "find_hit", UNORDERED, "ns", (0.4, 0.6, 0.45, 0.5)),
    ("hashed", "find_hit", HASH_MAP, "ns", (1.0,)),
    ("hashed", "find_dependent", UNORDERED, "ns", (0.6, 0.6, 0.35, 0.6)),
    ("hashed", "find_miss", UNORDERED, "ns", (0.6,)),
    ("hashed", "iterate", HASH_MAP, "ns", (0.6, 0.6, 0.25, 0.25)),
    ("hashed", "copy", UNORDERED, "ns", (0.4,)),
    ("hashed", "destroy", UNORDERED, "ns", (0.02,)),
    ("hashed", "memory", UNORDERED, "heap", (0.5,)),
    ("ordered", "find_hit", MAP, "ns", (0.7, 0.65, 0.5, 0.5)),
    ("ordered", "insert_random", MAP, "ns", (1.0, 0.65, 0.8, 0.75)),
    ("ordered", "insert_ascending", MAP, "ns", (0.7, 0.35, 0.2, 0.2)),
    ("ordered", "churn", MAP, "ns", (0.7,)),
    ("ordered", "iterate", MAP, "ns", (1.0, 1.0, 0.5, 0.5)),
    ("ordered", "copy", MAP, "ns", (0.5,)),
    ("ordered", "destroy", MAP, "ns", (0.02,)),
    ("ordered", "memory", MAP, "heap", (0.5,)),
)

# Structure, case, peer that takes every step, and the most calls of the host per operation.
CALLS_SIZE = 100_000
CALLS = (
    ("hashed", "find_hit", HASH_MAP, 13),
    ("hashed", "find_miss", HASH_MAP, 8.5),
    ("hashed", "insert_random", HASH_MAP, 18),
    ("ordered", "find_hit", MAP, 100),
)

STRING_PEERS = (("hashed", UNORDERED), ("hashed", UNCACHED), ("ordered", MAP))
STRING_RATIO = 0.7
EXPORT_SIZE, EXPORT_RATIO = 1_000_000, 0.5
ARRAY_READ_CALLS = 2  # the array's procedure, and the call of it
LOADING_MILLISECONDS, PLUGIN_BYTES = 1.0, 400_000
PROCESS_GROWTH_BYTES = 65_536  # what a process may need once; an iterator object each would be 160 MB


def label(key, structure, case, figure="ns"):
    operation = "bytes per element" if figure == "heap" else case.replace("_", " ")
    return "%s %s, %s" % (structure, key, operation)


def rows(results):
    yield from _ratios(results)
    yield from _calls(results)
    yield from _string_times(results)
    yield from _exports(results)
    yield from _process(results)


def _ratios(results):
    for structure, case, peer, figure, limits in INTEGER_RATIOS:
        sizes = SIZES["integer"]
        reached = [results.ratio(structure, "integer", case, peer, n, figure) for n in sizes]
        yield Row(label("integer", structure, case, figure), peer, "",
                  limits * len(sizes) if len(limits) == 1 else limits, reached)


def _calls(results):
    for structure, case, peer, limit in CALLS:
        mine, theirs = (results.calls.get((structure, "string", case, subject, CALLS_SIZE))
                        for subject in ("plugin", peer))
        against = "step by step" + ("" if theirs is None else " (%.1f)" % theirs)
        yield Row(label("string", structure, case) + ": host calls", against, "calls", [limit],
                  [mine])


def _string_times(results):
    sizes = SIZES["string"]
    for structure, peer in STRING_PEERS:
        for case in results.cases(structure, "string"):
            reached = [results.ratio(structure, "string", case, peer, n) for n in sizes]
            if any(ratio is not None for ratio in reached):
                yield Row(label("string", structure, case), peer, "", [STRING_RATIO] * len(sizes),
                          reached)


def _exports(results):
    for structure in ("hashed", "ordered"):
        keys, key_at, walk = (results.median(structure, "integer", case, "plugin", EXPORT_SIZE)
                              for case in ("keys", "key_at", "export_by_iterator"))
        ratio = (keys + key_at) / walk if keys and key_at and walk else None
        yield Row("%s integer, Keys of 1e6, then Key(i) in a loop" % structure,
                  "export by iterator", "", [EXPORT_RATIO], [ratio])
        calls = results.calls.get((structure, "integer", "key_at", "plugin", CALLS_SIZE))
        yield Row("%s integer, Key(i): host calls" % structure, "one array read", "calls",
                  [ARRAY_READ_CALLS], [calls])


def _process(results):
    yield Row("loading, to thirty-six classes registered", "", "ms", [LOADING_MILLISECONDS],
              [results.facts.get("loading_ms")])
    size = results.facts.get("stripped_bytes")
    yield Row("the plugin's file, stripped", "", "KB", [PLUGIN_BYTES / 1000],
              [size / 1000 if size else None])
    for structure in ("hashed", "ordered"):
        growth = results.median(structure, "integer", "find_iterator_growth", "plugin", 1_000,
                                "growth")
        yield Row("%s integer, ten million iterator objects: growth of the process" % structure, "",
                  "KB", [PROCESS_GROWTH_BYTES / 1000], [growth / 1000 if growth is not None else None])


def verdict(row):
    """yes, no, or a dash when nothing of the row was measured."""
    pairs = [(limit, value) for limit, value in zip(row.limits, row.reached) if value is not None]
    if not pairs:
        return "-"
    if any(value > limit for limit, value in pairs):
        return "no"
    return "yes" if len(pairs) == len(row.limits) else "yes, as far as measured"
