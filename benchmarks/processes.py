#!/usr/bin/env python3
"""How soon the program's first chart is there, and the memory it takes: processes.py BUILD FILE

Whole processes on a virtual X server of their own, beside benchmarks/empty_window.cpp. What the
server shows is read from its picture in memory, so that watching costs it nothing. Writes the
figures to FILE as JSON: milliseconds and MiB.
"""

import glob
import json
import math
import mmap
import os
import shutil
import statistics
import struct
import subprocess
import sys
import tempfile
import time

WIDTH, HEIGHT = 1920, 1080
CONTENT = (1600, 900)
TRAININGS = 300
SAMPLES = 86_400
STARTS = 21
PATIENCE = 60


class Screen:
    """A virtual X server, and the bytes of what it shows."""

    def __init__(self, place):
        reader, writer = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", f"{WIDTH}x{HEIGHT}x24",
             "-nolisten", "tcp", "-noreset", "-fbdir", place],
            pass_fds=[writer], stderr=subprocess.DEVNULL,
        )
        os.close(writer)
        with os.fdopen(reader) as pipe:
            self.display = ":" + pipe.readline().strip()
        with open(glob.glob(os.path.join(place, "Xvfb_screen*"))[0], "rb") as file:
            self.memory = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
        fields = struct.unpack(">25I", self.memory[:100])
        self.row_bytes = fields[12]
        self.pixels = fields[0] + fields[19] * 12  # behind the header and the colours

    def row(self, y, x, end):
        start = self.pixels + y * self.row_bytes
        return self.memory[start + 4 * x:start + 4 * end]

    def stop(self):
        self.server.terminate()
        self.server.wait()


def shows_window(screen):
    """Something light in the middle of the screen, which is black without a window."""
    return screen.row(HEIGHT // 2, WIDTH // 2, WIDTH // 2 + 1)[0] > 200


def shows_chart(screen):
    """Marks in a row of the chart: pixels that are neither white nor grey."""
    row = screen.row(HEIGHT // 2, 200, CONTENT[0] - 200)
    blue, red = row[0::4], row[2::4]
    return blue != red and any(abs(b - r) > 100 for b, r in zip(blue, red))


def wait(condition, what):
    end = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > end:
            raise AssertionError("in vain: " + what)
        time.sleep(0.0003)


class Running:
    """A process on the screen, from its start until it is ended."""

    def __init__(self, screen, command, directory, shows):
        environment = {
            "PATH": os.environ["PATH"], "HOME": directory, "LANG": "C.UTF-8",
            "XDG_RUNTIME_DIR": directory, "DISPLAY": screen.display, "QT_QPA_PLATFORM": "xcb",
            "QT_LOGGING_RULES": "*.debug=false",
        }
        begin = time.monotonic()
        self.process = subprocess.Popen(
            command, cwd=directory, env=environment, stderr=subprocess.DEVNULL
        )
        wait(lambda: shows(screen), " ".join(command))
        self.milliseconds = 1000 * (time.monotonic() - begin)
        self.screen = screen

    def memory(self):
        """The resident size in MiB, now and at most."""
        sizes = {}
        with open(f"/proc/{self.process.pid}/status", encoding="utf-8") as lines:
            for line in lines:
                name, _, value = line.partition(":")
                if value.endswith("kB\n"):
                    sizes[name] = int(value.split()[0]) / 1024
        return {"now": sizes["VmRSS"], "peak": sizes["VmHWM"]}

    def end(self):
        self.process.terminate()
        self.process.wait()
        wait(lambda: not shows_window(self.screen), "an empty screen")


def settled(running):
    """The memory when it has not changed for a second."""
    before = None
    while before != (now := running.memory()):
        before = now
        time.sleep(1)
    return now


def settings(marks):
    lines = ["[Programmeinstellungen]", f"WindowBreite = {CONTENT[0]}", f"WindowHöhe = {CONTENT[1]}",
             "[Menüvorwahl]", *[f"Menu {mark} = 1" for mark in marks]]
    return ("\n".join(lines) + "\n").encode("latin-1")


def make_home(place, name, trainings, marks):
    directory = os.path.join(place, name)
    os.mkdir(directory, 0o700)
    subprocess.run(
        [os.path.join(BUILD, "demo_card"), directory, "--trainings", str(trainings),
         "--until", "2013-12-18"], check=True
    )
    with open(os.path.join(directory, "Einstellungen.dat"), "wb") as file:
        file.write(settings(marks))
    return directory


def measure_starts(screen, place):
    home = make_home(place, "start", TRAININGS, [100, 200])
    program = [os.path.join(BUILD, "kurbelbuch")]
    empty = [os.path.join(BUILD, "empty_window"), *map(str, CONTENT)]
    ours, theirs = [], []
    for attempt in range(STARTS + 2):
        # Alternating, so that both meet the same machine. The first two only fill its caches.
        for command, shows, times in ((empty, shows_window, theirs), (program, shows_chart, ours)):
            running = Running(screen, command, home, shows)
            running.end()
            if attempt >= 2:
                times.append(running.milliseconds)
    figures = {"start": statistics.median(ours), "empty start": statistics.median(theirs)}
    running = Running(screen, empty, home, shows_window)
    figures["empty"] = settled(running)
    running.end()
    running = Running(screen, program, home, shows_chart)
    figures["idle"] = settled(running)
    running.end()
    return figures


def write_training(path, samples):
    """Curves for every value, all of them slow: a value without data has no chart."""
    layout = struct.Struct("<i2f5h2b7h2bf")
    with open(path, "wb") as file:
        for i in range(samples):
            waves = [1 + math.sin(i / (900 + 70 * k)) for k in range(20)]
            file.write(layout.pack(
                i, 0.01 * i, 0.2 * i,
                *[int(100 + 80 * wave) for wave in waves[:5]], *[int(1 + 9 * w) for w in waves[5:7]],
                *[int(100 + 300 * wave) for wave in waves[7:14]], 1 + i % 3, 1, 50 + waves[14],
            ))


def press(screen, *keys):
    for key in keys:
        subprocess.run(
            ["xdotool", "key", key], env={**os.environ, "DISPLAY": screen.display}, check=True
        )
        time.sleep(0.3)


def measure_long_training(screen, place):
    """What the longest training takes in memory, with all its values in all styles."""
    marks = [style + value for value in range(50, 72) for style in range(100, 800, 100)]
    home = make_home(place, "long", 1, marks)
    tree = os.path.join(home, "data", "result", "ergo_bike")
    name = next(name for name in os.listdir(tree) if name != "dictionary.2")
    write_training(os.path.join(tree, name), SAMPLES)
    manager = subprocess.Popen(
        ["openbox", "--sm-disable"], env={**os.environ, "DISPLAY": screen.display},
        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
    )
    time.sleep(1)
    try:
        running = Running(screen, [os.path.join(BUILD, "kurbelbuch")], home, shows_window)
        idle = settled(running)
        # "Datei öffnen" of the menu "Training", and the first of the list.
        press(screen, "F10", "Right", "Right", "Down", "Return")
        time.sleep(1)
        press(screen, "Down", "Return")
        wait(lambda: shows_chart(screen), "the chart of a training")
        loaded = settled(running)
        running.end()
    finally:
        manager.terminate()
        manager.wait()
    return {"before long training": idle, "long training": loaded}


def main():
    place = tempfile.mkdtemp(prefix="kurbelbuch-processes-")
    try:
        screen = Screen(place)
        try:
            figures = measure_starts(screen, place)
            figures.update(measure_long_training(screen, place))
        finally:
            screen.stop()
    finally:
        shutil.rmtree(place)
    print(json.dumps(figures, indent=1))
    with open(sys.argv[2], "w", encoding="utf-8") as file:
        json.dump(figures, file)


BUILD = os.path.abspath(sys.argv[1])
main()
