"""What every journey begins and ends with."""

import os
import shutil
import tempfile
import unittest

import program
from card import Card
from desktop import Desktop

OTHER_DRIVE = "/var/tmp"


class Journey(unittest.TestCase):
    """A desktop for all journeys of a class; a fresh directory and fresh programs for each."""

    @classmethod
    def setUpClass(cls):
        cls.executable = program.find_executable()
        cls.pictures = os.path.join(os.path.dirname(cls.executable), "journeys")
        os.makedirs(cls.pictures, exist_ok=True)
        cls.desktop = Desktop()
        cls.addClassCleanup(cls.desktop.stop)

    def setUp(self):
        self.place = tempfile.mkdtemp(dir=self.desktop.home)
        self.addCleanup(shutil.rmtree, self.place, ignore_errors=True)
        self.desktop.park_pointer()

    def directory(self, name):
        path = os.path.join(self.place, name)
        os.makedirs(path, exist_ok=True)
        return path

    def card(self, name="card"):
        return Card(self.directory(name))

    def other_drive(self):
        """A directory on what the program takes for another drive: below another first directory
        than that of the card."""
        path = tempfile.mkdtemp(prefix="kurbelbuch-journey-", dir=OTHER_DRIVE)
        self.addCleanup(shutil.rmtree, path, ignore_errors=True)
        first = [os.path.realpath(p).split("/")[1] for p in (path, self.place)]
        self.assertNotEqual(*first, "the temporary directories lie below the same one")
        return path

    def start(self, directory, executable=None):
        """Starts the program in a directory and waits for it to be there, not for its window: it
        may begin with a requester."""
        started = program.Program(self.desktop, executable or self.executable, directory)
        self.addCleanup(started.end)
        self.addCleanup(self.keep_evidence, started)
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
        module, _, method = self.id().split(".")
        file = f"{module.removesuffix('_journey')}-{method.removeprefix('test_')}-{name}.png"
        self.desktop.screen().save(os.path.join(self.pictures, file))

    def says(self, started, title, text, button="OK"):
        """Expects a message box of exactly this text and answers it."""
        self.assertEqual(started.read_message(title, button), text)
