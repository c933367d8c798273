"""Plots of time per operation against the number of elements, drawn by gnuplot."""

import math
import os
import subprocess

from plan import GROWTH_OF_PROCESS

COLUMNS = 3
COLOURS = {"plugin": "#d00000", "std::unordered_map": "#0060ad", "std::map": "#0060ad",
           "std::unordered_map-uncached": "#70b0e0", "ext::hash_map": "#808080",
           "boost::unordered_map": "#1a7a2a", "boost::unordered_flat_map": "#6cc070",
           "absl::flat_hash_map": "#b06fc8", "absl::node_hash_map": "#e0a030",
           "absl::btree_map": "#b06fc8"}


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
    rows = -(-(len(cases) + 1) // COLUMNS)
    lines = [
        'set terminal svg size 1200,%d font "sans-serif,12" background "white"' % (300 * rows),
        'set output "%s"' % path,
        "set multiplot layout %d,%d" % (rows, COLUMNS),
        "set logscale xy", 'set format x "10^{%L}"', 'set xlabel "elements"',
        'set ylabel "ns per operation"', "set grid", "unset key", "set autoscale xfix",
        "set offsets graph 0.04, graph 0.04, 0, 0",
    ]
    for case in cases:
        lines.extend(_plot(results, structure, key, case))
    lines.extend(_legend(results.subjects(structure, key)))
    lines.append("unset multiplot")
    return "\n".join(lines) + "\n"


def _style(subject):
    return 'with linespoints lw %s pt 7 ps 0.4 lc rgb "%s"' % (
        "2.5" if subject == "plugin" else "1.3", COLOURS.get(subject, "black"))


def _plot(results, structure, key, case):
    curves, data, times = [], [], []
    # The plugin last, so that its curve lies above the others.
    for subject in reversed(results.subjects(structure, key)):
        points = [(n, results.median(structure, key, case, subject, n))
                  for n in results.sizes(key)]
        points = [(n, time) for n, time in points if time is not None]
        if not points:
            continue
        block = "$data%d" % len(curves)
        data.append(block + " << END")
        data.extend("%d %g" % point for point in points)
        data.append("END")
        times.extend(time for _, time in points)
        curves.append("%s %s" % (block, _style(subject)))
    decades = math.floor(math.log10(min(times))), math.ceil(math.log10(max(times)) + 0.01)
    return [*data, 'set title "%s"' % case.replace("_", " "),
            "set yrange [1e%d:1e%d]" % decades, "plot " + ", ".join(curves)]


def _legend(subjects):
    """A panel of its own: a key in every plot would cover the curves."""
    curves = ['NaN %s title "%s" noenhanced' % (_style(subject), subject) for subject in subjects]
    return ["set key center center font ',12'", "unset title", "unset border", "unset tics",
            "unset xlabel", "unset ylabel", "unset logscale", "set xrange [0:1]", "set yrange [0:1]",
            "plot " + ", ".join(curves)]
