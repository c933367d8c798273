"""The tables: of goals, of operations, of memory, host calls, instructions and growth. Markdown whose
columns are aligned, so that it reads well in a terminal too."""

import goals
from plan import GROWTH_OF_PROCESS, GROWTH_SIZES, Benchmark

INSTRUCTION_SIZES = (1_000, 100_000)
INSTRUCTION_GROWTH_SIZES = (12_500, 100_000)

# An operation of a hashed map takes as long at 8 n as at n, one of a tree log 8n / log n as long,
# which is 1.22 here; what is added leaves room for how full the table happens to be.
MOST_GROWTH_OF_INSTRUCTIONS = 1.5


def markdown(header, rows):
    table = [list(map(str, row)) for row in [header, *rows]]
    widths = [max(len(row[column]) for row in table) for column in range(len(header))]
    lines = ["| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |"
             for row in table]
    lines.insert(1, "|" + "|".join("-" * (width + 2) for width in widths) + "|")
    return "\n".join(lines)


def number(value):
    """Three digits that count, at most two after the point."""
    if value is None:
        return "-"
    return "%.0f" % value if value >= 100 else "%.1f" % value if value >= 10 else "%.2f" % value


def size(n):
    """1e5 for 100000; a number of many digits as it is."""
    digits = str(n).rstrip("0")
    return "%se%d" % (digits, len(str(n)) - 1) if len(digits) == 1 else str(n)


def goal_table(results):
    def values(numbers):
        same = len(set(numbers)) == 1 and len(numbers) > 1
        return " / ".join(map(number, numbers[:1] if same else numbers))
    rows = [(row.operation, row.against, ("≤ %s %s" % (values(row.limits), row.unit)).strip(),
             " / ".join(map(number, row.reached)), goals.verdict(row))
            for row in goals.rows(results)]
    return markdown(("Operation", "Against", "Goal", "Reached", "Met?"), rows)


def operation_tables(results, structure, key):
    """(case, table) for each case: ns per operation, and the plugin's time divided by the peer's."""
    sizes = results.sizes(key)
    subjects = results.subjects(structure, key)
    for case in results.cases(structure, key):
        if case == GROWTH_OF_PROCESS:
            continue
        rows = []
        for subject in subjects:
            times = [results.median(structure, key, case, subject, n) for n in sizes]
            if all(time is None for time in times):
                continue
            ratios = [results.ratio(structure, key, case, subject, n) for n in sizes]
            rows.append((subject, *map(number, times),
                         *("" if subject == "plugin" else number(ratio) for ratio in ratios)))
        yield case, markdown(("ns per operation, n =", *map(size, sizes),
                              *("ratio, " + size(n) for n in sizes)), rows)


def memory_table(results, figure):
    sizes = results.sizes("integer")
    rows = []
    for structure in ("hashed", "ordered"):
        for key in ("integer", "string"):
            for subject in results.subjects(structure, key):
                values = [results.median(structure, key, "memory", subject, n, figure)
                          for n in sizes]
                if any(value is not None for value in values):
                    rows.append(("%s %s" % (structure, key), subject, *map(number, values)))
    return markdown(("Bytes per element, n =", "", *map(size, sizes)), rows)


def per_operation_table(figures, what, keys=("integer", "string")):
    """Of one exact figure for each benchmark: cases down, sizes and subjects across."""
    for structure in ("hashed", "ordered"):
        for key in keys:
            chosen = {b: value for b, value in figures.items()
                      if (b.structure, b.key) == (structure, key) and b.n in INSTRUCTION_SIZES}
            if not chosen:
                continue
            cases = list(dict.fromkeys(b.case for b in chosen))
            columns = list(dict.fromkeys((b.subject, b.n) for b in chosen))
            columns.sort(key=lambda column: (column[1], column[0] != "plugin"))
            rows = [(case, *(number(chosen.get(Benchmark(structure, key, case, subject, n)))
                             for subject, n in columns)) for case in cases]
            header = ["%s, %s" % (subject, size(n)) for subject, n in columns]
            yield "%s %s" % (structure, key), markdown((what, *header), rows)


def growth_table(results):
    """The plugin's cost at 8 n divided by its cost at n."""
    rows = []
    for structure in ("hashed", "ordered"):
        for key in ("integer", "string"):
            for case in results.cases(structure, key):
                rows.extend(_growth(results, structure, key, case))
    sizes = [size(n) for n in (*GROWTH_SIZES, *INSTRUCTION_GROWTH_SIZES)]
    return markdown(("Operation", "time, %s to %s" % tuple(sizes[:2]),
                     "instructions, %s to %s" % tuple(sizes[2:]),
                     "instructions ≤ %s?" % MOST_GROWTH_OF_INSTRUCTIONS), rows)


def _growth(results, structure, key, case):
    times = [results.median(structure, key, case, "plugin", n) for n in GROWTH_SIZES]
    counts = [results.instructions.get(Benchmark(structure, key, case, "plugin", n))
              for n in INSTRUCTION_GROWTH_SIZES]
    time = times[1] / times[0] if all(times) else None
    count = counts[1] / counts[0] if all(counts) else None
    if time is None and count is None:
        return
    fits = "-" if count is None else "yes" if count <= MOST_GROWTH_OF_INSTRUCTIONS else "no"
    yield "%s %s, %s" % (structure, key, case), number(time), number(count), fits
