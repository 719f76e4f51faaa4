#!/usr/bin/env python3
"""Whether the tests see small mistakes: run.py BUILD [TOPIC...]

Puts one mistake at a time into the sources of a topic, links the topic's own tests with what that
changes, and runs them. BUILD is a build directory in which logic_tests is up to date; the checkout is
not touched. Prints the mutants that no test has seen and that explained.txt does not know; exits with
1 if there is one, or an explanation of nothing.
"""

import argparse
import concurrent.futures
import glob
import json
import os
import resource
import shlex
import shutil
import subprocess
import sys
import time

from mutations import mutants_of

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.realpath(os.path.join(HERE, "..", ".."))

# A topic: the sources that get the mistakes, and the tests that should see them.
TOPICS = {
    "records": (
        ["device/record_layout.h", "device/dictionary_record.cpp"],
        ["device/dictionary_record_test.cpp", "device/dictionary_load_test.cpp",
         "device/dictionary_save_test.cpp", "device/training_sample_test.cpp"],
    ),
    "samples": (
        ["device/training_sample.cpp"],
        ["device/training_*_test.cpp"],
    ),
    "series": (
        ["charts/values/value_series.cpp", "charts/values/value_catalogue.cpp"],
        ["charts/values/*_series_test.cpp", "charts/values/value_catalogue_test.cpp"],
    ),
    "csv": (
        ["export/csv_text.cpp", "export/csv_formats.h", "export/csv_formats.cpp",
         "export/digit_table.h", "export/default_name.cpp", "export/csv_export.cpp"],
        ["export/*_test.cpp"],
    ),
    "renumbering": (
        ["files/renumber_plan.cpp"],
        ["files/renumber_plan_test.cpp", "files/renumbering_test.cpp"],
    ),
}

# A mistake may never come to an end, or want all memory there is.
CPU_SECONDS = 20
ELAPSED_SECONDS = 120
MEMORY = 2 << 30


def limit_resources():
    resource.setrlimit(resource.RLIMIT_CPU, (CPU_SECONDS, CPU_SECONDS))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def succeeds(command, **options):
    try:
        done = subprocess.run(
            command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            timeout=ELAPSED_SECONDS, check=False, **options,
        )
    except subprocess.TimeoutExpired:
        return False
    return done.returncode == 0


class Build:
    """What the build directory knows: how each source is compiled, and what it includes."""

    def __init__(self, directory):
        self.directory = os.path.realpath(directory)
        with open(os.path.join(self.directory, "compile_commands.json"), encoding="utf-8") as file:
            rows = json.load(file)
        self.commands = {}  # by object
        self.sources = {}  # by object
        for row in rows:
            words = shlex.split(row["command"])
            target = words[words.index("-o") + 1]
            self.commands[target] = words
            source = os.path.realpath(os.path.join(row["directory"], row["file"]))
            self.sources[target] = os.path.relpath(source, ROOT)
        self.includes = self.read_includes()
        self.libraries = [
            os.path.join(self.directory, folder, f"libkurbelbuch_{name}.a")
            for folder, name in [
                ("app", "app"), ("files", "files"), ("settings", "settings"), ("export", "export"),
                ("charts", "charts"), ("charts/strips", "strips"), ("charts/marks", "marks"),
                ("charts/values", "values"), ("tests/builders", "builders"), ("tools", "demo_card"),
                ("device", "device"), ("services", "services"), ("services/disk", "disk"),
                ("services/raster", "raster"), ("services/text", "text"),
            ]
        ]

    def read_includes(self):
        """The checkout's own files that went into each object."""
        printed = subprocess.run(
            ["ninja", "-C", self.directory, "-t", "deps"], capture_output=True, text=True, check=True
        ).stdout
        includes = {}
        files = []
        for line in printed.splitlines():
            if line.startswith(" "):
                path = os.path.realpath(os.path.join(self.directory, line.strip()))
                if path.startswith(ROOT + os.sep):
                    files.append(os.path.relpath(path, ROOT))
            elif ":" in line:
                files = includes.setdefault(line.split(":")[0], [])
        return includes

    def path(self, target):
        return os.path.join(self.directory, target)

    def objects_of(self, sources, folder):
        """The objects of these sources in the folder of one target of CMake."""
        return [
            target for target, source in self.sources.items()
            if source in sources and f"/{folder}.dir/" in "/" + target
        ]

    def compile(self, target, overlay, to, options):
        """Compiles a source as the build does, but with the files in `overlay` first."""
        words = list(self.commands[target])
        while not os.path.basename(words[0]).startswith(("c++", "g++", "clang++")):
            words.pop(0)  # what the compiler is launched by
        source = self.sources[target]
        changed = os.path.join(overlay, source)
        words[words.index("-o") + 1] = to
        words[words.index("-c") + 1] = (
            changed if os.path.exists(changed) else os.path.join(ROOT, source)
        )
        words = [word for word in words if word not in ("-g", "-Werror")]
        words[1:1] = ["-iquote", overlay]
        words += ["-w", *options]
        return succeeds(words, cwd=self.directory, env=dict(os.environ, CCACHE_DISABLE="1"))


class Topic:
    def __init__(self, build, name, place):
        self.build = build
        self.name = name
        self.place = os.path.join(place, name)
        self.sources, patterns = TOPICS[name]
        tests = sorted(
            os.path.relpath(path, ROOT)
            for pattern in patterns
            for path in glob.glob(os.path.join(ROOT, "tests", pattern))
        )
        if not tests:
            sys.exit(f"no tests for {name}")
        self.objects = build.objects_of(tests, "logic_tests")
        self.objects += build.objects_of(["tests/stand_ins/stand_ins.cpp"], "kurbelbuch_stand_ins")
        self.program = [
            target for target, source in build.sources.items()
            if target.split("/")[0] in ("device", "charts", "export", "files", "settings")
        ]

    def affected(self, source):
        """Objects that change when this source does: the program's, and the tests'."""
        return [
            target for target in self.objects + self.program
            if source in self.build.includes.get(target, [])
        ]

    def link(self, directory, changed, to):
        """The topic's tests. What is given as an object stays out of the libraries."""
        objects = [changed.get(target, self.build.path(target)) for target in self.objects]
        objects += [path for target, path in changed.items() if target not in self.objects]
        return succeeds(
            ["c++", "-s", "-o", to, *objects, *self.build.libraries, "-lgtest_main", "-lgtest"],
            cwd=directory,
        )

    def passes(self, program, directory):
        return succeeds(
            [program, "--gtest_brief=1", "--gtest_fail_fast"],
            cwd=directory, env=dict(os.environ, TMPDIR=directory), preexec_fn=limit_resources,
        )

    def judge(self, number, source, mutant):
        directory = os.path.join(self.place, str(number))
        overlay = os.path.join(directory, "overlay")
        os.makedirs(os.path.join(overlay, os.path.dirname(source)))
        try:
            with open(os.path.join(overlay, source), "w", encoding="utf-8") as file:
                file.write(mutant.text)
            return self.judge_in(directory, overlay, source)
        finally:
            shutil.rmtree(directory, ignore_errors=True)

    def judge_in(self, directory, overlay, source):
        changed = {}
        for i, target in enumerate(self.affected(source)):
            changed[target] = os.path.join(directory, f"{i}.o")
            if not self.build.compile(target, overlay, changed[target], ["-O0"]):
                return "refused"
        program = os.path.join(directory, "tests")
        if not self.link(directory, changed, program):
            return "refused"
        if not self.passes(program, directory):
            return "seen"
        return "same" if self.is_same_code(directory, overlay, source) else "survived"

    def is_same_code(self, directory, overlay, source):
        """Whether the optimizer makes the same program of it: no test can tell them apart."""
        original = os.path.join(directory, "original")
        os.makedirs(os.path.join(original, os.path.dirname(source)))
        shutil.copy(os.path.join(ROOT, source), os.path.join(original, source))
        for target in self.affected(source):
            codes = []
            for version in (original, overlay):
                to = os.path.join(directory, "optimized.o")
                if not self.build.compile(target, version, to, ["-O2", "-frandom-seed=0"]):
                    return False
                with open(to, "rb") as file:
                    codes.append(file.read())
            if codes[0] != codes[1]:
                return False
        return True

    def check_unchanged(self):
        """Without a mistake the tests pass, or they would see every one."""
        directory = os.path.join(self.place, "unchanged")
        os.makedirs(directory)
        program = os.path.join(directory, "tests")
        if not self.link(directory, {}, program) or not self.passes(program, directory):
            sys.exit(f"the tests of {self.name} do not pass as they are")


def read_explanations():
    """{(source, before, after)}: the blocks of explained.txt."""
    found = {}
    source = before = after = None
    with open(os.path.join(HERE, "explained.txt"), encoding="utf-8") as file:
        for line in file:
            line = line.rstrip("\n")
            if line.startswith("== "):
                source = line[3:]
            elif line.startswith("- "):
                before = line[2:]
            elif line.startswith("+ "):
                after = line[2:]
                found[source, before, after] = False
    return found


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build")
    parser.add_argument("topics", nargs="*")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    arguments = parser.parse_args()
    names = arguments.topics or list(TOPICS)
    unknown = [name for name in names if name not in TOPICS]
    if unknown:
        sys.exit(f"no topics {unknown}; there are: {' '.join(TOPICS)}")

    begin = time.monotonic()
    build = Build(arguments.build)
    place = os.path.join(build.directory, "mutants")
    shutil.rmtree(place, ignore_errors=True)
    explained = read_explanations()
    failed = False
    print(f"{'source':32} mutants refused   seen   same  explained  survived")
    for name in names:
        topic = Topic(build, name, place)
        topic.check_unchanged()
        for source in topic.sources:
            with open(os.path.join(ROOT, source), encoding="utf-8") as file:
                mutants = mutants_of(file.read())
            with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as workers:
                judged = list(workers.map(
                    lambda pair, topic=topic, source=source: topic.judge(pair[0], source, pair[1]),
                    enumerate(mutants),
                ))
            survivors = [m for m, verdict in zip(mutants, judged, strict=True)
                         if verdict == "survived"]
            unexplained = [m for m in survivors if (source, m.before, m.after) not in explained]
            for mutant in survivors:
                explained.pop((source, mutant.before, mutant.after), None)
            print(f"{source:32} {len(mutants):7} {judged.count('refused'):7}"
                  f" {judged.count('seen'):6} {judged.count('same'):6}"
                  f" {len(survivors) - len(unexplained):10} {len(unexplained):9}", flush=True)
            for mutant in unexplained:
                print(f"  {source}:{mutant.line}\n  - {mutant.before}\n  + {mutant.after}", flush=True)
            failed = failed or bool(unexplained)
    judged_sources = {source for name in names for source in TOPICS[name][0]}
    for source, before, after in explained:
        if source in judged_sources:
            print(f"explained, but no survivor: {source}\n  - {before}\n  + {after}")
            failed = True
    minutes, seconds = divmod(int(time.monotonic() - begin), 60)
    print(f"{minutes} minutes {seconds} seconds")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
