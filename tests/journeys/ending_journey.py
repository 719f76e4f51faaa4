"""The end of the program or of its desktop in the middle of a backup, and the backup after that."""

import os
import signal
import threading
import time

from card import INDEX, TREE, file_name, record, seconds
from journey import Journey
from waiting import wait_until

LIST = "Trainingsdateien bearbeiten"
REQUESTER = "Wähle das Verzeichnis der Sicherheitskopie"
TRAININGS = 1500
LENGTH = 60_000


def content(number):
    return bytes([number % 251]) * LENGTH


class Ending(Journey):
    def setUp(self):
        super().setUp()
        self.filled = self.card()
        self.index = b""
        for i in range(1, TRAININGS + 1):
            entry = record(i, seconds(2010, 1, 1) + i * 86_400, f"Runde {i}")
            self.index += entry
            self.filled.write(file_name(i), content(i))
        self.filled.write(INDEX, self.index)
        self.stick = self.other_drive()
        self.tree = os.path.join(self.stick, TREE)
        self.program = self.start(self.filled.root)

    def back_up(self, in_the_middle=None):
        """Starts the backup; calls in_the_middle as soon as its first trainings are complete."""
        self.program.choose("Programm", "Trainingsdateien bearbeiten")
        self.program.push(self.program.window(LIST), "Sicherheitskopie")
        watcher = None
        if in_the_middle is not None:
            # Not by what the program shows: it would be through by then.
            watcher = threading.Thread(target=self.watch, args=[in_the_middle])
            watcher.start()
        try:
            self.program.choose_path(REQUESTER, self.stick)
        except Exception:
            if self.program.process.poll() is None:
                raise
        if watcher is not None:
            watcher.join()

    def watch(self, in_the_middle):
        end = time.monotonic() + 20
        while self.listed() == 0 and time.monotonic() < end:
            time.sleep(0.0005)
        in_the_middle()

    def listed(self):
        try:
            return os.path.getsize(os.path.join(self.tree, INDEX)) // 152
        except FileNotFoundError:
            return 0

    def expect_whole_trainings(self, leftovers=False):
        """What the index lists, whole, and nothing else; returns their number."""
        with open(os.path.join(self.tree, INDEX), "rb") as file:
            index = file.read()
        self.assertEqual(len(index) % 152, 0)
        count = len(index) // 152
        self.assertEqual(index, self.index[:len(index)])
        names = set(os.listdir(self.tree))
        for i in range(1, count + 1):
            with open(os.path.join(self.tree, file_name(i)), "rb") as file:
                self.assertTrue(file.read() == content(i), file_name(i))
        others = names - {INDEX} - {file_name(i) for i in range(1, count + 1)}
        if leftovers:
            # Complete ones whose records were about to follow, and those that are no trainings.
            others = {name for name in others if len(name) == 16}
            for name in others:
                with open(os.path.join(self.tree, name), "rb") as file:
                    self.assertTrue(file.read() == content(int(name, 16)), name)
        else:
            self.assertEqual(others, set())
        return count

    def complete(self):
        self.program = self.start(self.filled.root)
        self.back_up()
        wait_until(lambda: self.listed() == TRAININGS, "the whole backup")
        self.assertEqual(self.expect_whole_trainings(), TRAININGS)

    def test_a_signal_ends_it_when_the_trainings_at_work_are_complete(self):
        process = self.program.process
        self.back_up(lambda: process.send_signal(signal.SIGTERM))
        self.assertEqual(self.program.wait_end(), -signal.SIGTERM)
        self.assertLess(self.expect_whole_trainings(), TRAININGS)
        self.complete()

    def test_being_killed_leaves_no_half_training(self):
        process = self.program.process
        self.back_up(process.kill)
        self.assertEqual(self.program.wait_end(), -signal.SIGKILL)
        self.assertLess(self.expect_whole_trainings(leftovers=True), TRAININGS)
        self.complete()

    def test_losing_its_display_leaves_no_half_training(self):
        """As when the desktop session is torn down under its programs."""
        window = self.desktop.xdotool("search", "--name", "^Kurbelbuch$").split()[-1]
        self.back_up(lambda: self.desktop.xdotool("windowkill", window))
        self.assertEqual(self.program.wait_end(), 1)
        self.assertLess(self.expect_whole_trainings(leftovers=True), TRAININGS)
        self.complete()
