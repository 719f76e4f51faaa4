"""The program where there is no display, or none that it can use.

    no_display_test.py PROGRAM
"""

import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = os.path.abspath(sys.argv.pop(1))
PATIENCE = 60  # seconds


class NoDisplay(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.place = pathlib.Path(place.name)

    def environment(self, **settings):
        return {"PATH": os.environ["PATH"], "HOME": str(self.place),
                "XDG_RUNTIME_DIR": str(self.place), "LANG": "C.UTF-8", **settings}

    def test_ends_with_one_german_line(self):
        rows = (
            ({}, "keine Anzeige da"),
            ({"DISPLAY": ":65000"}, ":65000"),
            ({"DISPLAY": "nowhere.invalid:0"}, "nowhere.invalid:0"),
            ({"WAYLAND_DISPLAY": "nothing"}, "Anzeige lässt sich nicht benutzen"),
            ({"QT_QPA_PLATFORM": "nonsense"}, "nonsense"),
            ({"QT_QPA_PLATFORM": "xcb"}, "Anzeige lässt sich nicht benutzen"),
        )
        for settings, named in rows:
            with self.subTest(settings):
                result = subprocess.run(
                    [PROGRAM], cwd=self.place, env=self.environment(**settings), check=False,
                    capture_output=True, text=True, timeout=PATIENCE)
                self.assertEqual(1, result.returncode, result.stderr)
                self.assertEqual("", result.stdout)
                lines = result.stderr.splitlines()
                self.assertEqual(1, len(lines), lines)
                self.assertTrue(lines[0].startswith("kurbelbuch: "), lines)
                self.assertIn(named, lines[0])

    def test_what_the_toolkit_says_otherwise_is_still_said(self):
        said = self.place / "said"
        with open(said, "wb") as errors:
            program = subprocess.Popen(
                [PROGRAM], cwd=self.place, stdout=errors, stderr=errors,
                env=self.environment(QT_QPA_PLATFORM="nonsense;offscreen"))
        try:
            end = time.monotonic() + PATIENCE
            while b"nonsense" not in said.read_bytes() and time.monotonic() < end:
                time.sleep(0.05)
            self.assertIn(b"nonsense", said.read_bytes())
            self.assertIsNone(program.poll())
        finally:
            program.send_signal(signal.SIGTERM)
            try:
                program.wait(PATIENCE)
            except subprocess.TimeoutExpired:
                program.kill()
                program.wait()


if __name__ == "__main__":
    unittest.main(verbosity=2)
