"""The two launchers, with a stand-in for the program that tells how it was started.

    launchers_test.py CHECKOUT
"""

import os
import pathlib
import shutil
import stat
import subprocess
import sys
import tempfile
import unittest

checkout = pathlib.Path(sys.argv.pop(1)) if len(sys.argv) > 1 else pathlib.Path.cwd()

# As the system's loader: starts a program, or lists what the program needs.
LOADER = '''#!/bin/sh
case $1 in
    --list) echo "$LISTED" >&2 ;;
    *) exec sh "$@" ;;
esac
'''

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

    def fill_in(self, template, **values):
        text = (checkout / template).read_text(encoding="utf-8")
        values["STOP"] = (checkout / "packaging/linux/stop.sh").read_text(encoding="utf-8")
        for name, value in values.items():
            self.assertIn(f"@KURBELBUCH_{name}@", text)
            text = text.replace(f"@KURBELBUCH_{name}@", str(value))
        self.assertNotIn("@KURBELBUCH", text)
        return text

    def commands(self, **scripts):
        """A PATH on which these shell scripts come first."""
        place = self.place / "commands"
        for name, script in scripts.items():
            self.write(place / name, f"#!/bin/sh\n{script}\n")
        return f"{place}:{os.environ['PATH']}"

    def assert_refused(self, result, message):
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn(message, result.stderr)

    def write(self, path, text, mode=0o755):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        path.chmod(mode)
        return path


class Installed(Launcher):
    def setUp(self):
        super().setUp()
        self.launcher = self.write(
            self.place / "usr/bin/kurbelbuch",
            self.fill_in("packaging/linux/kurbelbuch.in",
                         BIN_TO_PROGRAM="../libexec/kurbelbuch/kurbelbuch"))
        self.program = self.write(self.place / "usr/libexec/kurbelbuch/kurbelbuch", STAND_IN)
        self.home = self.place / "anna"
        self.home.mkdir()

    def assert_started_in(self, result, directory):
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(result.stdout.splitlines()[0], str(directory))

    def assert_started_without_its_own(self, result, directory, named):
        self.assertEqual(result.returncode, 0)
        self.assertEqual(result.stdout.splitlines()[0], str(directory))
        self.assertIn(f"Für die Starteinstellungen ist '{named}' nicht benutzbar.", result.stderr)

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

    def test_asks_the_system_for_a_home(self):
        self.write(self.program, STAND_IN + 'echo "$HOME"\n')
        path = self.commands(getent=f'echo "anna:x:$2:100::{self.home}:/bin/sh"')
        for environment in ({}, {"HOME": ""}, {"HOME": "anna"}):
            result = run([self.launcher], self.place, PATH=path, **environment)
            self.assert_started_in(result, self.home / ".config/kurbelbuch")
            self.assertEqual(result.stdout.splitlines()[-1], str(self.home))

    def test_starts_without_a_home(self):
        path = self.commands(getent="exit 2")
        for environment in ({}, {"HOME": ""}, {"HOME": "anna"}):
            self.assert_started_without_its_own(
                run([self.launcher], self.place, PATH=path, **environment), "/", "")
        self.assertFalse((self.place / "anna/.config").exists())

    def test_starts_at_home_where_a_file_is_in_the_way(self):
        self.write(self.home / ".config", "", 0o644)
        self.assert_started_without_its_own(
            run([self.launcher], self.place, HOME=str(self.home)), self.home,
            self.home / ".config/kurbelbuch")

    def test_starts_at_the_root_where_there_is_no_home_either(self):
        self.write(self.place / "file", "", 0o644)
        home = self.place / "file/anna"
        self.assert_started_without_its_own(
            run([self.launcher], self.place, HOME=str(home)), "/", home / ".config/kurbelbuch")

    def test_says_that_the_program_is_missing(self):
        self.program.unlink()
        self.assert_refused(run([self.launcher], self.place, HOME=str(self.home)), "neu installieren")

    def test_shows_what_stops_it_in_a_window(self):
        self.program.unlink()
        told = self.place / "told"
        tell = f"printf '%s\\n' \"${{0##*/}}\" \"$@\" >>'{told}'"
        plain = {name: f'exec {shutil.which(name)} "$@"' for name in ("sh", "dirname", "readlink")}
        tools = ["zenity", "kdialog", "xmessage", "notify-send"]
        display = {"DISPLAY": ":7"}
        while tools:
            path = self.commands(**plain, **dict.fromkeys(tools, tell)).split(":")[0]
            for environment in (display, {"WAYLAND_DISPLAY": "wayland-0"}):
                result = run([self.launcher], "/", PATH=path, HOME=str(self.home), **environment)
                self.assert_refused(result, "neu installieren")
                lines = told.read_text(encoding="utf-8").splitlines()
                told.unlink()
                self.assertEqual(lines[0], tools[0])
                message = result.stderr.removeprefix("kurbelbuch: ").strip()
                self.assertEqual(lines[-1].removeprefix("--text="), message)
            run([self.launcher], "/", PATH=path, HOME=str(self.home))
            self.assertFalse(told.exists())  # no display, no window
            (self.place / "commands" / tools.pop(0)).unlink()
        result = run([self.launcher], "/", PATH=path, HOME=str(self.home), **display)
        self.assert_refused(result, "neu installieren")


class Portable(Launcher):
    def setUp(self):
        super().setUp()
        # A shell starts the stand-in as the system's loader starts the program.
        self.loader = self.write(self.place / "loader", LOADER)
        self.launcher = self.write(
            self.place / "kurbelbuch",
            self.fill_in("packaging/portable/kurbelbuch", LOADER=f'"{self.loader}"',
                         MACHINE="x86_64"))
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

    def test_names_what_the_system_lacks(self):
        library = ("./kurbelbuch: error while loading shared libraries: libEGL.so.1: "
                   "cannot open shared object file: No such file or directory")
        versions = ("./kurbelbuch: /lib/libc.so.6: version `GLIBC_2.99' not found (required by x)\n"
                    "./kurbelbuch: /lib/libm.so.6: version `GLIBC_2.98' not found (required by x)\n"
                    "./kurbelbuch: /lib/libm.so.6: version `GLIBC_2.99' not found (required by x)\n"
                    "\tlibc.so.6 => /lib/libc.so.6 (0x00007f4a)")
        for listed, named in ((library, "libEGL.so.1"), (versions, "GLIBC_2.98 GLIBC_2.99")):
            for mode in (0o755, 0o644):
                self.program.chmod(mode)
                self.assert_refused(run([self.launcher], "/", LISTED=listed),
                                    f"was das Programm braucht: {named}\n")

    def test_names_what_is_missing_beside_it(self):
        self.program.unlink()
        self.assert_refused(run([self.launcher], "/"), str(self.files))

    def test_does_not_start_on_another_kind_of_machine(self):
        self.loader.unlink()
        self.assert_refused(run([self.launcher], "/"), "x86_64")

    def test_does_not_start_where_nothing_may_be_started(self):
        path = self.commands(findmnt="echo rw,nosuid,noexec,relatime")
        self.assert_refused(run([self.launcher], "/", PATH=path), "noexec")


if __name__ == "__main__":
    unittest.main()
