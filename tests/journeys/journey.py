"""What every journey begins and ends with.

A single one, of the release build, in this directory:
/usr/bin/python3 -B -m unittest limits_journey.Limits.test_a_dragged_band_becomes_the_limits
"""

import calendar
import datetime
import glob
import os
import shutil
import tempfile
import unittest
import zoneinfo

import program
from card import Card, record, seconds
from chart import fractions
from desktop import Desktop


def first_directory(path):
    """What the program takes for the drive of a path, without its slash."""
    return os.path.realpath(path).split("/")[1]


class Journey(unittest.TestCase):
    """A desktop for all journeys of a class; a fresh directory and fresh programs for each."""

    zone = "UTC"  # where the programs are started

    @classmethod
    def setUpClass(cls):
        cls.executable = program.find_executable()
        cls.pictures = os.path.join(os.path.dirname(cls.executable), "journeys")
        os.makedirs(cls.pictures, exist_ok=True)
        cls.prefix = cls.__module__.removesuffix("_journey")
        for old in glob.glob(os.path.join(glob.escape(cls.pictures), cls.prefix + "-*.png")):
            os.remove(old)
        cls.desktop = Desktop()
        cls.addClassCleanup(cls.desktop.stop)

    def setUp(self):
        self.place = tempfile.mkdtemp(dir=self.desktop.home)
        self.addCleanup(shutil.rmtree, self.place, ignore_errors=True)
        self.desktop.park_pointer()
        self.move_to(self.zone)

    def directory(self, name):
        path = os.path.join(self.place, name)
        os.makedirs(path, exist_ok=True)
        return path

    def move_to(self, zone):
        """Programs started from now on stand in this time zone."""
        self.zone = zone
        self.desktop.environment["TZ"] = zone

    def wall_clock(self):
        """What the clock on the wall shows there now, as the device counts it."""
        return calendar.timegm(datetime.datetime.now(zoneinfo.ZoneInfo(self.zone)).timetuple())

    def card(self, name="card"):
        return Card(self.directory(name))

    def card_of(self, watts):
        """A card with a training a day from 1 May 2013 on, of these powers."""
        card = self.card()
        for i, watt in enumerate(watts):
            card.add(record(i + 1, seconds(2013, 5, i + 1), watt=watt))
        return card

    def other_drive(self):
        """A directory on what the program takes for another drive than the card's."""
        for parent in ("/var/tmp", "/tmp", "/dev/shm"):
            if first_directory(parent) != first_directory(self.place) and os.path.isdir(parent):
                path = tempfile.mkdtemp(prefix="kurbelbuch-journey-", dir=parent)
                self.addCleanup(shutil.rmtree, path, ignore_errors=True)
                return path
        raise AssertionError("no second directory for what is temporary")

    def start(self, directory, executable=None, arguments=()):
        """Starts the program in a directory and waits for it to be there, not for its window: it
        may begin with a requester."""
        started = program.Program(
            self.desktop, executable or self.executable, directory, arguments
        )
        self.addCleanup(started.end)
        self.addCleanup(self.keep_evidence, started)
        return started

    def start_with_bars(self, card, watts):
        """Starts the program on a card and shows its trainings' powers as bars, which are these."""
        started = self.start(card.root)
        started.tick("Übersicht", "Watt", "Balken")
        started.wait_bars(fractions(watts))
        return started

    def keep_evidence(self, started):
        """The screen of a journey that failed."""
        result = self._outcome.result
        failed = any(test is self for test, _ in result.failures + result.errors)
        if failed and not getattr(self, "evidence_kept", False):
            self.evidence_kept = True
            self.picture("FAILED")
            print(f"{self.id()}: {started.condition()}")

    def picture(self, name):
        """Leaves a screenshot in the build directory."""
        method = self.id().split(".")[-1].removeprefix("test_")
        file = f"{self.prefix}-{method}-{name}.png".replace(" ", "_")
        self.desktop.screen().save(os.path.join(self.pictures, file))

    def says(self, started, title, text, button="OK"):
        """Expects a message box of exactly this text and answers it."""
        self.assertEqual(started.read_message(title, button), text)
