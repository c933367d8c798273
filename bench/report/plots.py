"""Plots of time per operation against the number of elements, drawn by gnuplot."""

import os
import subprocess

from plan import GROWTH_OF_PROCESS

COLUMNS = 3
COLOURS = {"plugin": "#d00000", "std": "#0060ad", "ext": "#808080", "boost": "#2a9d3a",
           "absl": "#b06fc8"}


def draw(results, folder):
    """One file for each kind of map, a plot for each case; the names of the files."""
    os.makedirs(folder, exist_ok=True)
    names = []
    for structure in ("hashed", "ordered"):
        for key in ("integer", "string"):
            cases = [case for case in results.cases(structure, key) if case != GROWTH_OF_PROCESS]
            if cases:
                name = "%s-%s.svg" % (structure, key)
                script = _script(results, structure, key, cases, os.path.join(folder, name))
                subprocess.run(["gnuplot"], input=script, text=True, check=True)
                names.append(name)
    return names


def _script(results, structure, key, cases, path):
    rows = -(-len(cases) // COLUMNS)
    lines = [
        'set terminal svg size 1200,%d font "sans-serif,11" background "white"' % (300 * rows),
        'set output "%s"' % path,
        'set multiplot layout %d,%d' % (rows, COLUMNS),
        "set logscale xy", 'set format x "10^{%L}"', 'set xlabel "elements"',
        'set ylabel "ns per operation"', "set grid", "set key top left font ',8' samplen 1.5",
        "set offsets graph 0.05, 0.05, 0.35, 0.05",
    ]
    for case in cases:
        lines.extend(_plot(results, structure, key, case))
    lines.append("unset multiplot")
    return "\n".join(lines) + "\n"


def _plot(results, structure, key, case):
    curves, data = [], []
    for subject in results.subjects(structure, key):
        points = [(n, results.median(structure, key, case, subject, n))
                  for n in results.sizes(key)]
        points = [(n, time) for n, time in points if time is not None]
        if not points:
            continue
        block = "$data%d" % len(curves)
        data.append(block + " << END")
        data.extend("%d %g" % point for point in points)
        data.append("END")
        curves.append('%s with linespoints lw %s pt %d ps 0.5 lc rgb "%s" title "%s" noenhanced' %
                      (block, "2.5" if subject == "plugin" else "1.2", len(curves) + 4,
                       COLOURS[subject.split("::")[0]], subject))
    title = 'set title "%s %s: %s"' % (structure, key, case.replace("_", " "))
    return [*data, title, "plot " + ", ".join(curves)]
