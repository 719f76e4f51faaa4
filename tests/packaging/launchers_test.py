"""The two launchers, with a stand-in for the program that tells how it was started.

    launchers_test.py CHECKOUT
"""

import os
import pathlib
import stat
import subprocess
import sys
import tempfile
import unittest

checkout = pathlib.Path(sys.argv.pop(1)) if len(sys.argv) > 1 else pathlib.Path.cwd()

STAND_IN = '#!/bin/sh\npwd -P\necho "$LD_LIBRARY_PATH"\necho "$QT_PLUGIN_PATH"\necho "$0"\n'


def run(command, directory, **environment):
    return subprocess.run([str(part) for part in command], cwd=directory, text=True, check=False,
                          capture_output=True, env={"PATH": os.environ["PATH"], **environment})


class Launcher(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.place = pathlib.Path(place.name).resolve() / "Über uns"
        self.place.mkdir()

    def write(self, path, text, mode=0o755):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        path.chmod(mode)
        return path


class Installed(Launcher):
    def setUp(self):
        super().setUp()
        template = (checkout / "packaging/linux/kurbelbuch.in").read_text(encoding="utf-8")
        self.launcher = self.write(
            self.place / "usr/bin/kurbelbuch",
            template.replace("@KURBELBUCH_BIN_TO_PROGRAM@", "../libexec/kurbelbuch/kurbelbuch"))
        self.write(self.place / "usr/libexec/kurbelbuch/kurbelbuch", STAND_IN)
        self.home = self.place / "anna"
        self.home.mkdir()

    def assert_started_in(self, result, directory):
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(result.stdout.splitlines()[0], str(directory))

    def assert_refused(self, result, message):
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn(message, result.stderr)

    def test_makes_and_enters_the_users_own_directory(self):
        self.assert_started_in(run([self.launcher], self.place, HOME=str(self.home)),
                               self.home / ".config/kurbelbuch")

    def test_keeps_others_out_of_what_it_makes(self):
        run([self.launcher], self.place, HOME=str(self.home))
        for made in (self.home / ".config", self.home / ".config/kurbelbuch"):
            self.assertEqual(stat.S_IMODE(made.stat().st_mode), 0o700)

    def test_leaves_the_rights_of_what_is_there(self):
        there = self.home / ".config"
        there.mkdir(mode=0o755)
        there.chmod(0o755)
        run([self.launcher], self.place, HOME=str(self.home))
        self.assertEqual(stat.S_IMODE(there.stat().st_mode), 0o755)

    def test_goes_where_the_user_keeps_configurations(self):
        where = self.place / "meine -e Sachen"
        self.assert_started_in(
            run([self.launcher], self.place, HOME=str(self.home), XDG_CONFIG_HOME=str(where)),
            where / "kurbelbuch")
        self.assertFalse((self.home / ".config").exists())

    def test_takes_a_relative_or_empty_directory_for_none(self):
        for relative in ("", "config", "./config"):
            self.assert_started_in(
                run([self.launcher], self.place, HOME=str(self.home), XDG_CONFIG_HOME=relative),
                self.home / ".config/kurbelbuch")
        self.assertFalse((self.place / "config").exists())

    def test_starts_through_a_link_and_by_a_relative_name(self):
        link = self.place / "link"
        link.symlink_to(self.launcher)
        for command, directory in (([link], "/"), (["./kurbelbuch"], self.launcher.parent),
                                   (["sh", "kurbelbuch"], self.launcher.parent)):
            self.assert_started_in(run(command, directory, HOME=str(self.home)),
                                   self.home / ".config/kurbelbuch")

    def test_refuses_without_a_home(self):
        for environment in ({}, {"HOME": ""}, {"HOME": "anna"}):
            self.assert_refused(run([self.launcher], self.place, **environment), "HOME")

    def test_refuses_where_a_file_is_in_the_way(self):
        self.write(self.home / ".config", "", 0o644)
        self.assert_refused(run([self.launcher], self.place, HOME=str(self.home)),
                            str(self.home / ".config/kurbelbuch"))


class Portable(Launcher):
    def setUp(self):
        super().setUp()
        template = (checkout / "packaging/portable/kurbelbuch").read_text(encoding="utf-8")
        # A shell starts the stand-in as the system's loader starts the program.
        self.launcher = self.write(self.place / "kurbelbuch",
                                   template.replace("@KURBELBUCH_LOADER@", "/bin/sh"))
        self.files = self.place / "kurbelbuch-programm"
        self.program = self.write(self.files / "kurbelbuch", STAND_IN)

    def assert_started(self, result, libraries):
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(result.stdout.splitlines(),
                         [str(self.place), libraries, f"{self.files}/plugins", str(self.program)])

    def test_starts_in_its_own_directory(self):
        self.assert_started(run([self.launcher], "/"), f"{self.files}/lib")

    def test_starts_what_is_not_executable(self):
        self.launcher.chmod(0o644)
        self.program.chmod(0o644)
        self.assert_started(run(["sh", self.launcher], "/"), f"{self.files}/lib")

    def test_prefers_its_own_libraries_and_plugins(self):
        self.assert_started(run([self.launcher], "/", LD_LIBRARY_PATH="/elsewhere",
                                QT_PLUGIN_PATH="/elsewhere"), f"{self.files}/lib:/elsewhere")


if __name__ == "__main__":
    unittest.main()
