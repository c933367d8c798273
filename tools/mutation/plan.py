"""Which mutants there are, and which of them a run takes."""

import random
import re
from collections import defaultdict
from dataclasses import dataclass

import operators
from source import Source

# Where every mutant is taken: (region, files, functions), by the first row that fits.
_REGIONS = [
    ("tree", r"keys/red_black_tree\.", r""),
    ("hash", r"keys/(remainder|buckets|integer_key|string_key|variant_key|hashed_storage)\.",
     r"[Hh]ash(?!edStorage)|Remainder|Buckets::of"),
    ("comparison", r"keys/(integer_key|string_key|variant_key|compare_bytes|comparison_locks|"
     r"comparisons|ordered_storage|plain_chain|plain_descent)\.",
     r"[Cc]ompar|Equal|LT|Less|leave|equal_range|place_of|search_place|bound_below|find_plain|"
     r"Plain(Chain|Descent)::|append"),
    ("growth", r"keys/(hashed_storage|buckets|bucket_walk|node_memory|bucket_sizes|growth_order)\.",
     r"gather|grow|make_room|move_all|bucket_size|Buckets::Buckets|allocate_heads|add_block|"
     r"next_block|enlarge|copy_from|GrowthOrder|place_by|untouched|allocate_(until|all)|Sequence"),
    ("erase", r"keys/(hashed_storage|ordered_storage|buckets|entry_nodes|node_memory|node_removal|"
     r"finish|in_use)\.",
     r"erase|remove|take|destroy|[Uu]nlink|clear|finish|link_to|deallocate|release|put_off|"
     r"exchange|end_last_use"),
]
# What no test of behaviour can see: hints to the compiler, the processor and the sanitizer.
_HINTS = re.compile(r"\b(?:un)?poison\(|\bprefetch\w*\(|ahead\b|\bunpredictable\b|\bcached_\w+|"
                    r"\bnear_elements\b|\bis_large\b|\blevels\b|large_pages\b")
_HINTING = re.compile(r"::prefetch_\w+$|\bprefer_large_pages$")
# What 64-bit builds without sanitizers do not compile.
_OTHER_BUILDS = re.compile(r"keys/(node_blocks_narrow\.cpp|poison\.h)$")
# What only the diagnostic build asks.
_DIAGNOSTIC = re.compile(r"\bChecks::(?:may|note)_|\bmay_use\(|\belement_position\(iterator, \"")
_LITERAL_PIN = re.compile(r"^\s*(PIN|static_assert)\(")
# Evaluated by the compiler alone, so it cannot be switched when it runs.
_COMPILE_TIME = re.compile(r"host/(declarations\.h|fixed_string\.h|binary_interface_layout\.cpp)$")
_ROW = re.compile(r"^ +(?:Method|Property|ContainerClass)<.*,$", re.M)
_ROUTINE = re.compile(r"&(\w+)<C>::(\w+)(?=>,$)", re.M)


@dataclass
class Mutant:
    path: str
    function: str
    region: str  # "" outside of the regions that are always taken whole
    kind: str
    start: int
    end: int
    replacement: str
    line: int
    before: str  # the lines it changes
    after: str
    alone: bool  # to be built alone
    number: int = 0

    @property
    def key(self):
        return self.path, self.function, self.before, self.after


def candidates(path, text):
    """All mutants of a file, in a fixed order."""
    source = Source(path, text)
    changes = []
    for function in source.functions:
        alone = function.compile_time or _COMPILE_TIME.search(path) is not None
        inside = list(operators.expression_changes(source, function.start, function.end))
        inside += operators.statement_changes(source, function)
        changes += [(change, function.name, alone) for change in inside]
    for change in operators.expression_changes(source, 0, len(text)):
        if source.function_at(change.start) is None and change.kind in ("constant", "text"):
            changes.append((change, "", True))
    changes += [(change, "", True) for change in _row_changes(source)]

    mutants, seen = [], set()
    for change, function, alone in changes:
        first, last = source.line_span(change.start, change.end)
        before = text[first:last]
        after = text[first:change.start] + change.replacement + text[change.end:last]
        span = (change.start, change.end, change.replacement)
        if span in seen or before == after or _is_without_effect(before, path, function):
            continue
        seen.add(span)
        mutants.append(Mutant(path, function, _region(path, function), change.kind, *span,
                              source.line_number(change.start), _one_line(before), _one_line(after),
                              alone))
    return sorted(mutants, key=lambda mutant: (mutant.start, mutant.end, mutant.replacement))


def _row_changes(source):
    """Rows of tables in another order, and with the routine of the row below."""
    for first in _ROW.finditer(source.text):
        second = _ROW.match(source.text, first.end() + 1)
        if second is None:
            continue
        yield operators.Change("table", first.start(), second.end(),
                               second.group() + "\n" + first.group())
        mine, theirs = _ROUTINE.search(first.group()), _ROUTINE.search(second.group())
        if mine and theirs and mine.group() != theirs.group():
            yield operators.Change("table", first.start() + mine.start(), first.start() + mine.end(),
                                   theirs.group())


def _is_without_effect(lines, path, function):
    return (path.endswith("keys/hints.h") or _OTHER_BUILDS.search(path) or _HINTS.search(lines)
            or _HINTING.search(function) or _DIAGNOSTIC.search(lines)
            or _LITERAL_PIN.match(lines))


def _region(path, function):
    if function:
        for name, files, functions in _REGIONS:
            if re.search(files, path) and re.search(functions, function):
                return name
    return ""


def _one_line(lines):
    return " ".join(re.sub(r"\s*//.*", "", line).strip() for line in lines.splitlines()).strip()


def choose(mutants, count, seed):
    """All mutants of the regions, and `count` of the others: files by their number of candidates,
    but at least one of each; within a file at random."""
    chosen = [mutant for mutant in mutants if mutant.region]
    by_file = defaultdict(list)
    for mutant in mutants:
        if not mutant.region:
            by_file[mutant.path].append(mutant)
    total = sum(map(len, by_file.values()))
    chance = random.Random(seed)
    for path in sorted(by_file):
        share = max(1, round(count * len(by_file[path]) / total))
        chosen += chance.sample(by_file[path], min(share, len(by_file[path])))
    return sorted(chosen, key=lambda mutant: (mutant.path, mutant.start, mutant.end))
