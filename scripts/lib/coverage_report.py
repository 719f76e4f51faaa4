#!/usr/bin/env python3
"""What the tests run through: coverage_report.py COUNTED BUILD ROOT UNIT...

COUNTED is gcovr's own JSON of the build directory BUILD. Prints lines and branches of every file, the
sums, and, of the units (paths without their ending) alone, the sums and each line that has a branch
not taken.

What only exceptions pass is left out here and not by gcovr: the branches into their ways, which it
would take for others in an inline function wherever that is never called; and the lines and branches
on these ways, as those that free what was made so far, which gcov marks but gcovr does not read. What
a test did pass all the same counts.
"""

import collections
import glob
import json
import os
import re
import subprocess
import sys

SOURCE = re.compile(r" *-: *0:Source:(.*)")
BLOCK = re.compile(r" *([^ :]+): *(\d+)-block +\d+")
LINE = re.compile(r" *([^ :]+): *(\d+):")


class Sum:
    def __init__(self):
        self.lines = self.lines_run = self.branches = self.branches_taken = 0

    def add(self, other):
        self.lines += other.lines
        self.lines_run += other.lines_run
        self.branches += other.branches
        self.branches_taken += other.branches_taken

    def text(self, name):
        return (f"{name:34} {self.lines_run:5} of {self.lines:5} {share(self.lines_run, self.lines)}"
                f"  {self.branches_taken:5} of {self.branches:5}"
                f" {share(self.branches_taken, self.branches)}")


def share(part, whole):
    return f"{100 * part / whole:5.1f} %" if whole else "      -"


def ways_of_exceptions(build):
    """{(source, line): how many branches lie on a way that only an exception takes}; a line without
    a branch that lies there itself has 0."""
    found = {}
    for data in glob.glob(os.path.join(build, "**", "*.gcda"), recursive=True):
        if f"{os.sep}tests{os.sep}" in data:
            continue
        printed = subprocess.run(
            ["gcov", "--all-blocks", "--branch-probabilities", "--stdout", data],
            cwd=build, capture_output=True, text=True, errors="replace", check=True,
        ).stdout
        for place, count in ways_in(printed, build).items():
            found[place] = max(found.get(place, 0), count)
    return found


def ways_in(printed, build):
    """The same for what gcov prints about one object."""
    found = collections.Counter()
    source, number, counts = None, 0, False
    for line in printed.split("\n"):
        if match := SOURCE.match(line):
            source, counts = os.path.realpath(os.path.join(build, match[1])), False
        elif match := BLOCK.match(line):
            number, counts = int(match[2]), match[1] == "$$$$$"
        elif match := LINE.match(line):
            counts = False
            if match[1] == "=====":
                found[source, int(match[2])] += 0
        elif counts and line.startswith("branch"):
            found[source, number] += 1
    return found


def branches_of(line):
    """How often each branch was taken."""
    counts = sorted(branch["count"] for branch in line["branches"] if not branch["throw"])
    unreached = min(counts.count(0), line["exceptional"] or 0)
    return counts[unreached:]


def code_of(entry):
    return [line for line in entry["lines"]
            if not line["gcovr/noncode"] and not line["gcovr/excluded"]
            and (line["count"] > 0 or line["exceptional"] is None)]


def sum_of(entry):
    found = Sum()
    for line in code_of(entry):
        found.lines += 1
        found.lines_run += line["count"] > 0
        branches = branches_of(line)
        found.branches += len(branches)
        found.branches_taken += sum(count > 0 for count in branches)
    return found


def gaps_of(entry, root):
    with open(os.path.join(root, entry["file"]), encoding="utf-8") as file:
        source = file.read().split("\n")
    for line in code_of(entry):
        branches = branches_of(line)
        missed = sum(count == 0 for count in branches)
        if missed or line["count"] == 0:
            number = line["line_number"]
            yield (f"{entry['file']}:{number}: {missed} of {len(branches)}:"
                   f" {source[number - 1].strip()}")


def main():
    counted, build, root, *units = sys.argv[1:]
    with open(counted, encoding="utf-8") as file:
        files = sorted(json.load(file)["files"], key=lambda entry: entry["file"])
    exceptional = ways_of_exceptions(build)
    for entry in files:
        path = os.path.realpath(os.path.join(root, entry["file"]))
        for line in entry["lines"]:
            line["exceptional"] = exceptional.get((path, line["line_number"]))
    chosen = [entry for entry in files if os.path.splitext(entry["file"])[0] in units]
    print(f"{'':34} {'lines':>22}  {'branches':>22}")
    everything, some = Sum(), Sum()
    for entry in files:
        found = sum_of(entry)
        everything.add(found)
        if entry in chosen:
            some.add(found)
        print(found.text(entry["file"]))
    print(everything.text("everything below app/"))
    print(some.text("readers and writers"))
    print("\nNot taken in readers and writers:")
    for entry in chosen:
        for gap in gaps_of(entry, root):
            print(gap)


if __name__ == "__main__":
    main()
