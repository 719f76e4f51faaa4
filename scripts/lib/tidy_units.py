#!/usr/bin/env python3
"""What clang-tidy is to look at: tidy_units.py ROOT, each ended by NUL

clang-tidy's time goes into the headers of the system, again with every source. So the tests, whose
names all lie in one unnamed namespace each, are put together by the dozen: a copy of each below
build/tidy, line by line the same but for that namespace, which gets a name of its own. Compile commands
for those and for the program's sources, as the release build has them, are left in build/tidy, too.
What the build generates is not looked at, nor what it leaves out.
"""

import itertools
import json
import os
import re
import shutil
import sys

TESTS_TOGETHER = 12
UNNAMED = re.compile(r"^namespace \{$", re.MULTILINE)
# Programs of many tests; the sources of each are compiled in the same way.
PROGRAMS = ("logic_tests", "window_tests", "fault_tests")


def program_of(command):
    return next((name for name in PROGRAMS if f"{name}.dir/" in command), None)


def put_together(root, place, name, paths):
    """Leaves a source that includes changed copies of these; returns its path."""
    lines = []
    for number, path in enumerate(paths):
        with open(os.path.join(root, path), encoding="utf-8") as file:
            text = file.read()
        copy = os.path.join(place, path)
        os.makedirs(os.path.dirname(copy), exist_ok=True)
        with open(copy, "w", encoding="utf-8") as file:
            file.write(UNNAMED.sub(f"namespace unnamed_{number} {{", text))
        lines.append(f'#include "{copy}"  // NOLINT\n')
    unit = os.path.join(place, name + ".cpp")
    with open(unit, "w", encoding="utf-8") as file:
        file.writelines(lines)
    return unit


def main():
    root = os.path.realpath(sys.argv[1])
    build = os.path.join(root, "build")
    place = os.path.join(build, "tidy")
    shutil.rmtree(place, ignore_errors=True)
    os.makedirs(place)
    with open(os.path.join(build, "release", "compile_commands.json"), encoding="utf-8") as file:
        rows = json.load(file)

    units = []
    together = {}  # by program: rows of tests
    for row in sorted(rows, key=lambda row: row["file"]):
        path = os.path.realpath(os.path.join(row["directory"], row["file"]))
        if not path.startswith(root + os.sep) or path.startswith(build + os.sep):
            continue
        row = dict(row, file=path)
        program = program_of(row["command"])
        with open(path, encoding="utf-8") as file:
            is_alone = len(UNNAMED.findall(file.read())) != 1
        if program and path.endswith("_test.cpp") and not is_alone:
            together.setdefault(program, []).append(row)
        elif all(path != unit["file"] for unit in units):
            units.append(row)
    for program, tests in together.items():
        count = -(-len(tests) // TESTS_TOGETHER)
        for i in range(count):
            # Not one after the other: what takes long often lies side by side.
            chosen = list(itertools.islice(tests, i, None, count))
            paths = [os.path.relpath(row["file"], root) for row in chosen]
            unit = put_together(root, place, f"{program}_{i}", paths)
            command = chosen[0]["command"].replace(chosen[0]["file"], unit)
            # Together first: they take longest.
            units.insert(0, dict(chosen[0], file=unit, command=command))

    with open(os.path.join(place, "compile_commands.json"), "w", encoding="utf-8") as file:
        json.dump(units, file)
    for unit in units:
        sys.stdout.buffer.write(os.fsencode(os.path.relpath(unit["file"], root)) + b"\0")


if __name__ == "__main__":
    main()
