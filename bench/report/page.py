"""docs/performance.md, written from the results of a run."""

import os

import plots
import tables

INTRODUCTION = """# Performance

Written by `tools/bench`. {where}

## How it is measured

- The plugin's binary is loaded by a minimal host with plain reference counts and no checks; its
  registered routines are called through function pointers, with handles. Peers stand behind function
  pointers of the same signatures, and the loops that call them are the same code.
- Every case runs in a process of its own with a clean heap, on one processor. Above {alone} elements one
  process fills a map and measures on it, in this order: insertion, the searches, iteration,
  destruction. The three exports of keys share a process too. All repetitions of all processes run in
  random order. A figure is the median of {repetitions} repetitions; a ratio is the plugin's median
  divided by the peer's, so less than 1 means that the plugin is faster.
- What the subjects find is added up, and a run whose sums differ between subjects gives no figures.
- Integer keys are distinct and spread over the whole range; ascending insertion takes them sorted.
  Strings are words of English and German, from about 450 000 on compounds of two; they are looked up
  with string objects other than the stored ones. A batch of searches has at most half a million keys.
- Small maps are filled, searched and followed in another order each time: a processor learns an order
  that is repeated by heart, branch by branch, which no program's map has.
- `find dependent` looks up what the search before has found. `churn` removes a key and inserts another;
  each counts as one operation. `iterate` does three calls for an element: `isNotEqual`, `Key`,
  `MoveNext`. `find iterator` makes an iterator object and releases it.
- The host's strings are UTF-8, and giving out their bytes costs it neither a copy nor a block, so that
  calls of the host are as cheap as they can be.
- `std::unordered_map`, `ext::hash_map` and `std::map` with string keys call the same services of the same
  host, step by step: each hash and each side of a comparison makes its own view of the text, and each
  comparison leaves a lock on both strings. `std::unordered_map` stores hash codes and compares only
  strings whose codes are equal, which the plugin may not; `std::unordered_map-uncached` does not store
  them. `ext::hash_map` has the plugin's bucket sizes and order.
"""


def write(results, root):
    """The page and its plots. What a person has to say about the figures is in bench/remarks.md, if
    there is such a file, and goes below the table of goals."""
    folder = os.path.join(root, "docs")
    pictures = plots.draw(results, os.path.join(folder, "performance"))
    with open(os.path.join(folder, "performance.md"), "w", encoding="utf-8") as out:
        out.write("\n\n".join(_sections(results, root, pictures)) + "\n")


def _sections(results, root, pictures):
    facts = results.facts
    where = "Measured on {cpu}, {processors} processors, {system}, {compiler}.".format(**facts)
    yield INTRODUCTION.format(where=where, alone="100 000",
                              repetitions=results.repetitions()).rstrip()
    yield "## Goals\n\nBy number of elements: 1e3 / 1e5 / 1e6 / 5e6 (strings up to 1e6)."
    yield tables.goal_table(results)
    remarks = os.path.join(root, "bench", "remarks.md")
    if os.path.exists(remarks):
        with open(remarks, encoding="utf-8") as text:
            yield "## Remarks\n\n" + text.read().strip()
    yield "## Time against the number of elements"
    for picture in pictures:
        yield "![%s](performance/%s)" % (picture[:-4].replace("-", " "), picture)
    for structure in ("hashed", "ordered"):
        for key in ("integer", "string"):
            yield "## Time: %s, %s keys" % (structure, key)
            for case, table in tables.operation_tables(results, structure, key):
                yield "### %s\n\n%s" % (case.replace("_", " "), table)
    yield "## Memory\n\nOf small maps, many are filled. Of the heap, with what the allocator adds to each " \
          "block; nodes that do not come from the heap count by what is resident of them:"
    yield tables.memory_table(results, "heap")
    yield "By what the process grew in memory:"
    yield tables.memory_table(results, "resident")
    if results.calls:
        yield "## Calls of the host per operation\n\nExact."
        for title, table in tables.per_operation_table(results.calls, "calls per operation"):
            yield "### %s\n\n%s" % (title, table)
    if results.instructions:
        yield "## Instructions per operation\n\nCounted by callgrind; the loop and the call by " \
              "pointer are part of them. They repeat from run to run."
        for title, table in tables.per_operation_table(results.instructions,
                                                       "instructions per operation"):
            yield "### %s\n\n%s" % (title, table)
    yield "## Growth\n\nThe plugin's cost per operation at 8 n divided by that at n. Time also grows " \
          "with every cache that the data no longer fits."
    yield tables.growth_table(results)
