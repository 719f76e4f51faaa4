#!/usr/bin/env python3
"""Writes the measured part of docs/performance.md: report.py DIRECTORY FILE

DIRECTORY holds own.json, toolkit.json, cards.json and clock.json as Google Benchmark writes them,
processes.json of benchmarks/processes.py, and peers.tsv as benchmarks/peers/run prints it. What stands
between the two marks of FILE is replaced.
"""

import json
import platform
import statistics
import sys

BEGIN = "<!-- measured: written by scripts/bench -->"
END = "<!-- end of what was measured -->"

CHARTS = [
    ("3 line 500", "3 values, line, 500 samples"),
    ("3 bars 500", "3 values, bars, 500 samples"),
    ("5 bars+line 7200", "5 values, bars and line, 7,200 samples"),
    ("22x7 7200", "22 values, all styles, 7,200 samples"),
    ("22x7 7200 noise", "the same, pure noise"),
    ("22x7 86400", "22 values, all styles, 86,400 samples"),
    ("overview 20x7 100000", "overview, 20 values, all styles, 100,000 trainings"),
]
# The same charts on screens with more pixels.
SHARP = [
    ("22x7 7200 at 1.25", "at a pixel ratio of 1.25: 2400 × 1350 device pixels"),
    ("22x7 7200 at 2", "at a pixel ratio of 2: 3840 × 2160 device pixels"),
]
# What is done with a card, and other ways to do as much.
CARDS = [
    ("index of 10,000 trainings, every file looked for", "readIndex/10000", "openEveryTraining/10000", "streamEveryTraining/10000"),
    ("index of 100,000 trainings, every file looked for", "readIndex/100000", "openEveryTraining/100000", "streamEveryTraining/100000"),
    ("training of 86,400 samples", "readTraining/86400", None, "streamTraining/86400"),
    ("CSV of 86,400 samples", "trainingText/86400", "toCharsTrainingText/86400", "streamedTrainingText/86400"),
    ("100,000 trainings by date", "sortTrainingsByDate/100000", None, None),
    ("100,000 trainings by description", "sortTrainingsByDescription/100000", None, None),
    ("the cells of 50 rows of the list", "cellsOfOneScreen/50", None, None),
]
# By the clock: what waits for the disk, or for windows.
CLOCK = [
    ("backup of 1,000 trainings of 200 KB", "backup/command/1000", "backup/cp and sync/1000"),
    ("the same beside tools that compare, too", "backup/command/1000", "backup/cp, sync and diff/1000"),
    ("deleting 1,000 of 10,000 trainings", "changes/delete/1000", None),
    ("renumbering 1,000 of 10,000 trainings", "changes/renumber/1000", None),
    ("list of 100,000 trainings, until it is painted", "list/opens/100000", None),
    ("the same by description, until it is painted", "list/sorts/100000", None),
    ("the longest of 200 pages of it (processor's time)", "list/longest page/100000", None),
]
PEERS = ["qcustomplot", "qwt", "gnuplot", "matplotlib"]


def processor():
    with open("/proc/cpuinfo", encoding="utf-8") as lines:
        for line in lines:
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    return platform.machine()


def milliseconds(path, kind="cpu_time"):
    """The median by benchmark name, of the processor's time or of that on the clock."""
    with open(path, encoding="utf-8") as file:
        rows = json.load(file)["benchmarks"]
    times = {}
    scale = {"ns": 1e-6, "us": 1e-3, "ms": 1, "s": 1000}
    for row in rows:
        if row["run_type"] == "iteration":
            name = row["run_name"].split("/iterations:")[0]
            times.setdefault(name, []).append(row[kind] * scale[row["time_unit"]])
    return {name: statistics.median(values) for name, values in times.items()}


def figure(value):
    if value >= 100:
        return f"{value:,.0f}"
    return f"{value:.1f}" if value >= 10 else f"{value:.2f}"


def cell(value, own):
    return "–" if value is None else f"{figure(value)} ({value / own:,.0f}×)" if value >= 2 * own else f"{figure(value)} ({value / own:.1f}×)"


def report(directory):
    own = milliseconds(f"{directory}/own.json")
    toolkit = milliseconds(f"{directory}/toolkit.json")
    cards = milliseconds(f"{directory}/cards.json")
    peers = {}
    with open(f"{directory}/peers.tsv", encoding="utf-8") as lines:
        for line in lines:
            chart, tool, time = line.rstrip("\n").split("\t")
            # Less than nothing comes of a difference that is too small to be measured.
            if time != "failed" and float(time) > 0:
                peers[chart, tool] = float(time)

    lines = [
        f"Measured on one processor of {processor()}, Linux {platform.release()}; 1920 × 1080, the",
        "median of the processor's time in milliseconds. In brackets: how many times as long as ours.",
        "",
        "| one redraw | ours | toolkit's painter | QCustomPlot | Qwt | gnuplot | matplotlib |",
        "|---|---|---|---|---|---|---|",
    ]
    for name, text in CHARTS:
        mine = own["redraw/" + name]
        others = [toolkit.get("toolkit/" + name)] + [peers.get((name, peer)) for peer in PEERS]
        lines.append(f"| {text} | **{figure(mine)}** | " + " | ".join(cell(time, mine) for time in others) + " |")
    lines += ["", "| 22 values, all styles, 7,200 samples, on a sharp screen | ms |", "|---|---|"]
    for name, text in SHARP:
        lines.append(f"| {text} | {figure(own['sharp/' + name])} |")
    lines += ["", "| a tick of the band over a chart of 22 values in all styles | ms |", "|---|---|"]
    for samples in ("7200", "86400"):
        lines.append(f"| {int(samples):,} samples | {figure(own['band/tick/' + samples])} |")
    lines.append(f"| one copy of the image, for comparison | {figure(own['band/copy'])} |")
    lines += ["", "| growth: values × samples, all styles | ms |", "|---|---|"]
    for name, time in own.items():
        if name.startswith("growth/"):
            values, samples = name.removeprefix("growth/").split(" ")
            lines.append(f"| {values.removesuffix('x7')} × {int(samples):,} | {figure(time)} |")
    lines += ["", "| reading, exporting, listing | ours | bare calls | streams |", "|---|---|---|---|"]
    for text, name, bare, streams in CARDS:
        mine = cards[name]
        others = [cell(cards[other], mine) if other else "–" for other in (bare, streams)]
        lines.append(f"| {text} | **{figure(mine)}** | " + " | ".join(others) + " |")
    clock = milliseconds(f"{directory}/clock.json", "real_time")
    lines += ["", "| by the clock | ours | `cp -r`, then `sync` of the files |", "|---|---|---|"]
    for text, name, other in CLOCK:
        mine = clock[name]
        lines.append(f"| {text} | **{figure(mine)}** | {cell(clock[other], mine) if other else '–'} |")
    with open(f"{directory}/processes.json", encoding="utf-8") as file:
        processes = json.load(file)
    lines += ["", "| the whole program | ours | empty window with the same menus | ratio |", "|---|---|---|---|"]
    rows = [
        ("from the start to the first chart of 300 trainings, ms", processes["start"], processes["empty start"]),
        ("memory when idle, MiB", processes["idle"]["now"], processes["empty"]["now"]),
    ]
    for text, mine, empty in rows:
        lines.append(f"| {text} | **{figure(mine)}** | {figure(empty)} | {mine / empty:.2f} |")
    before, loaded = processes["before long training"], processes["long training"]
    for text, which in (("at most", "peak"), ("when idle again", "now")):
        more = loaded[which] - before["now"]
        lines.append(f"| 22 values, all styles, 86,400 samples: {text} so many MiB more | **{figure(more)}** | – | – |")
    return "\n".join(lines)


def main():
    directory, path = sys.argv[1:3]
    with open(path, encoding="utf-8") as file:
        text = file.read()
    before, rest = text.split(BEGIN)
    after = rest.split(END)[1]
    with open(path, "w", encoding="utf-8") as file:
        file.write(f"{before}{BEGIN}\n\n{report(directory)}\n\n{END}{after}")


main()
