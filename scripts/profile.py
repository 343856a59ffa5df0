#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
"""Prints callgrind's counts of the sides of benchmarks, per unit, beside each other."""
import argparse
import re
import subprocess

# What is printed of callgrind's events; the misses of data are those of reads and writes.
COLUMNS = {"instructions": ["Ir"], "mispredicted": ["Bcm", "Bim"], "level 1 misses": ["D1mr", "D1mw"],
           "level 2 misses": ["DLmr", "DLmw"]}


def read_profile(file):
    """The side's name, its units, event -> count; None for a dump that no side asked for."""
    with open(file) as stream:
        text = stream.read()
    label = re.search(r"^desc: Trigger: Client Request: (.*) (\d+)$", text, re.M)
    if not label:
        return None
    events = re.search(r"^events: (.*)$", text, re.M)[1].split()
    counts = re.search(r"^(?:summary|totals): (.*)$", text, re.M)[1].split()
    return label[1], int(label[2]), dict(zip(events, map(int, counts)))


def functions(file, count):
    """What callgrind_annotate lists first: the share of the instructions and the name of each function."""
    text = subprocess.run(["callgrind_annotate", "--inclusive=yes", "--auto=no", "--show=Ir", file],
                          capture_output=True, text=True, check=True).stdout
    shares = {}
    for share, name in re.findall(r"^ *[\d,]+ \( ?([\d.]+%)\)  \S*?:(.*?)(?: \[.*)?$", text, re.M):
        if not name.startswith("0x") and "LambdaBenchmark" not in name:
            shares.setdefault(name, share)
    return [f"    {share:>7} {name[:110]}" for name, share in list(shares.items())[:count]]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("files", nargs="+")
    parser.add_argument("--functions", type=int, default=0, help="how many functions of each side to list")
    arguments = parser.parse_args()

    sides = {}  # the last profile of a side is that of its second time
    for file in sorted(arguments.files, key=lambda name: int(name.rpartition(".")[2])):
        profile = read_profile(file)
        if profile:
            sides[profile[0]] = (file, *profile[1:])
    counted = next(iter(sides.values()))[2]
    columns = {title: events for title, events in COLUMNS.items() if events[0] in counted}
    width = max(map(len, sides))
    print(f"{'per unit':{width}}" + "".join(f"{title:>16}" for title in columns) + "  profile")
    for name, (file, units, counts) in sides.items():
        figures = (sum(counts[event] for event in events) / units for events in columns.values())
        print(f"{name:{width}}" + "".join(f"{figure:16.4g}" for figure in figures) + f"  {file}")
        for line in functions(file, arguments.functions) if arguments.functions else ():
            print(line)


if __name__ == "__main__":
    main()
