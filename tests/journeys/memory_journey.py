"""A machine that is short of memory: what needs too much ends, and the program goes on."""

import os
import resource

from card import file_name, record, sample, seconds
from chart import fractions
from journey import Journey

LIST = "Wähle die Trainingsdatei"
WATT = [90, 150, 120]
ROOM = 256 << 20  # bytes beyond what the program has when it has started
HUGE = 3 << 30  # bytes of a training; its samples take a little more in memory


def size_of(process):
    """The bytes of a process's address space."""
    with open(f"/proc/{process.pid}/statm", encoding="ascii") as statm:
        return int(statm.read().split()[0]) * os.sysconf("SC_PAGESIZE")


class Memory(Journey):
    def setUp(self):
        super().setUp()
        self.filled = self.card()
        for number, content in ((1, b"".join(sample(i, watt=watt) for i, watt in enumerate(WATT))),
                                (2, b"")):
            start = seconds(2013, 5, number, 12)
            self.filled.add(record(number, start, f"Training {number}"), content)
        os.truncate(self.filled.path(file_name(2)), HUGE)

    def limited(self):
        program = self.start(self.filled.root)
        program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")
        limit = size_of(program.process) + ROOM
        resource.prlimit(program.process.pid, resource.RLIMIT_AS, (limit, limit))
        return program

    def open_row(self, program, row):
        program.choose("Training", "Datei öffnen")
        window = program.window(LIST)
        program.desktop.click(program.list_row(window, row), times=2)
        program.wait_gone(window)

    def test_a_training_that_finds_no_memory_is_reported_and_others_open(self):
        program = self.limited()
        before = self.filled.read("dictionary.2")
        for _ in range(2):
            self.open_row(program, 0)
            self.says(
                program,
                "Dateifehler",
                "Die Datei 'data\\result\\ergo_bike\\0000000000000002' ist leer oder wurde nicht"
                " gefunden!",
            )
        self.open_row(program, 1)
        program.tick("Training", "Watt", "Balken")
        program.wait_bars(fractions(WATT))
        self.assertEqual(self.filled.read("dictionary.2"), before)

    def test_an_index_that_finds_no_memory_is_reported_and_read_again_later(self):
        entry = self.filled.read("dictionary.2")[:152]
        program = self.limited()
        good = self.filled.read("dictionary.2")
        self.filled.write("dictionary.2", entry * (ROOM // 100))
        program.choose("Übersicht", "Dateien öffnen")
        self.says(
            program,
            "Dateifehler",
            "Die Datei 'data\\result\\ergo_bike\\dictionary.2' ist leer oder wurde nicht gefunden!",
        )
        window = program.window(LIST)
        program.press("Escape")
        program.wait_gone(window)
        self.filled.write("dictionary.2", good)
        program.choose("Übersicht", "Dateien öffnen")
        self.assertEqual(len(program.list_rows(program.window(LIST))), 2)
