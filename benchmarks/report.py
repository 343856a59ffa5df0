#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
"""Reads the results of the benchmark programs and prints how zolt stands beside its peers.

A ratio is the peer's median over ours, so above 1 zolt is ahead; the one of the least times stands beside that
of the best peer. Results of several runs are pooled. Goals are lines of goals.tsv: a pattern of task names, a
peer, the least ratio of the medians. Exit status 1 when one is missed.
"""
import argparse
import fnmatch
import json
import re
import statistics
import sys
from collections import defaultdict

US = "zolt"
GROWTH_LIMIT = 1.3


class Side:
    """The times of one side of a task, in nanoseconds per unit; or its bytes per unit."""

    def __init__(self):
        self.samples = []

    @property
    def median(self):
        return statistics.median(self.samples)

    @property
    def least(self):
        return min(self.samples)


def read_results(files):
    """Task name -> side name -> Side."""
    tasks = defaultdict(lambda: defaultdict(Side))
    for file in files:
        with open(file) as stream:
            entries = json.load(stream)["benchmarks"]
        for entry in entries:
            task, _, who = entry["name"].rpartition(":")
            if "peak" in entry:
                tasks[task + ", peak"][who].samples.append(entry["peak"])
                tasks[task + ", ready"][who].samples.append(entry["ready"])
            elif entry.get("run_type") == "iteration":
                tasks[task][who].samples.append(entry["cpu_time"] / entry["units"])
    return tasks


def read_goals(file):
    goals = []
    with open(file) as stream:
        for line in stream:
            if line.strip() and not line.startswith("#"):
                pattern, peer, ratio = line.rstrip("\n").split("\t")
                goals.append((pattern, peer, float(ratio)))
    return goals


def position(task):
    """Where a task stands in the table: by its name, and by the size of the input where that is at the end."""
    stem, _, last = task.rpartition("/")
    size = re.fullmatch(r"(\d+)([KM]?)B", last)
    return (stem, int(size[1]) << {"": 0, "K": 10, "M": 20}[size[2]]) if size else (task, 0)


def number(value):
    return f"{value:.3g}" if value < 1000 else f"{value:.0f}"


class Table:
    def __init__(self, goals):
        self.goals = goals
        self.rows = []
        self.missed = []
        self.bars = []  # (task, ratio to the best peer)

    def add_comparison(self, task, sides):
        ours = sides[US]
        ratios = {who: side.median / ours.median for who, side in sides.items() if who != US}
        if not ratios:
            return
        best = min(ratios, key=ratios.get)
        notes = []
        for pattern, peer, least in self.goals:
            if not fnmatch.fnmatchcase(task, pattern) or peer not in ratios:
                continue
            held = ratios[peer] >= least
            notes.append(f"{peer} {number(ratios[peer])}" + (f" ≥ {least:g}" if held else f" **< {least:g}**"))
            if not held:
                self.missed.append(f"{task}: {peer} {number(ratios[peer])}, goal {least:g}")
        others = [f"{who} {number(ratio)}" for who, ratio in ratios.items()
                  if who != best and not any(note.startswith(who + " ") for note in notes)]
        self.bars.append((task, ratios[best]))
        self.rows.append((task, f"{number(ours.median)} ({number(ours.least)})",
                          f"{best} {number(sides[best].median)} ({number(sides[best].least)})",
                          f"{number(ratios[best])} ({number(sides[best].least / ours.least)})",
                          ", ".join(notes + others)))

    def add_growth(self, name, costs):
        """`costs`: times the base input -> nanoseconds per unit."""
        ratio = costs[1000] / costs[10]
        limit = next((goal for pattern, peer, goal in self.goals
                      if peer == "growth" and fnmatch.fnmatchcase(name, pattern)), GROWTH_LIMIT)
        if ratio > limit:
            self.missed.append(f"growth of {name}: {number(ratio)}, limit {limit:g}")
        self.rows.append((f"growth/{name}", " → ".join(number(costs[times]) for times in sorted(costs)), "",
                          number(ratio), f"≤ {limit:g}" if ratio <= limit else f"**> {limit:g}**"))

    def lines(self):
        yield "| Task | zolt: ns or bytes per unit, median (least) | Best peer | Best peer / zolt | Every peer / zolt, goal |"
        yield "|---|---|---|---|---|"
        for row in self.rows:
            yield "| " + " | ".join(row) + " |"


def draw(table, file):
    """A bar for each task: the ratio to the best peer on a logarithmic scale, the line at 1."""
    import math

    left, width, height = 330, 480, 16
    highest = max(max(ratio for _, ratio in table.bars), 10)
    scale = width / math.log10(highest / 0.1)
    at = lambda ratio: left + scale * math.log10(max(ratio, 0.1) / 0.1)
    svg = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{left + width + 60}" '
           f'height="{height * (len(table.bars) + 2)}" font-family="sans-serif" font-size="11">',
           '<rect width="100%" height="100%" fill="white"/>',
           f'<text x="{left}" y="12">best peer / zolt, logarithmic; right of the line zolt is ahead</text>']
    for row, (task, ratio) in enumerate(table.bars, start=1):
        y = row * height + 6
        start, end = sorted((at(1), at(ratio)))
        svg.append(f'<text x="{left - 6}" y="{y + 10}" text-anchor="end">{task.replace("&", "&amp;")}</text>'
                   f'<rect x="{start:.1f}" y="{y}" width="{max(end - start, 1):.1f}" height="{height - 4}" '
                   f'fill="{"#2a7f62" if ratio >= 1 else "#b3402f"}"/>'
                   f'<text x="{max(end, at(1)) + 4:.1f}" y="{y + 10}">{number(ratio)}</text>')
    svg.append(f'<line x1="{at(1)}" x2="{at(1)}" y1="18" y2="{height * (len(table.bars) + 1) + 6}" stroke="black"/></svg>')
    with open(file, "w") as stream:
        stream.write("\n".join(svg) + "\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("files", nargs="+")
    parser.add_argument("--goals", required=True)
    parser.add_argument("--svg")
    parser.add_argument("--markdown")
    arguments = parser.parse_args()

    table = Table(read_goals(arguments.goals))
    growths = defaultdict(dict)
    results = read_results(arguments.files)
    for task in sorted(results, key=position):
        sides = results[task]
        if US not in sides:
            continue
        if task.startswith("growth/"):
            name, _, times = task.removeprefix("growth/").rpartition("/")
            growths[name][int(times)] = sides[US].median
        else:
            table.add_comparison(task, sides)
    for name, costs in growths.items():
        table.add_growth(name, costs)

    text = "\n".join(table.lines()) + "\n"
    print(text)
    if arguments.markdown:
        with open(arguments.markdown, "w") as stream:
            stream.write(text)
    if arguments.svg:
        draw(table, arguments.svg)
    print(f"{len(table.missed)} goals missed" + "".join("\n  " + line for line in table.missed))
    return 1 if table.missed else 0


if __name__ == "__main__":
    sys.exit(main())
