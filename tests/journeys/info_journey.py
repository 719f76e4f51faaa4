"""Info and help."""

from card import record, seconds
from journey import Journey

TITLE = "Programminfo"


class Info(Journey):
    def setUp(self):
        super().setUp()
        self.filled = self.card()
        for i in range(2):
            self.filled.add(record(i + 1, seconds(2013, 5, i + 1)))
        self.program = self.start(self.filled.root)

    def open(self, item):
        self.program.choose("Info", item)
        window = self.program.window(TITLE)
        field = self.program.control(window, "text", TITLE)
        self.assertNotIn("editable", field.states)
        return window, field

    def test_version(self):
        window, field = self.open("Version")
        lines = field.text.split("\n")
        self.assertEqual(lines[:3], ["Kurbelbuch", "", "Version: 20130531"])
        self.assertEqual(len(lines), 7)
        for line in lines[3:]:
            self.assertRegex(line, r"^\S.*: \S")
        self.picture("version")
        # It is read, not written.
        self.program.desktop.type("x")
        self.program.press("Delete")
        self.assertEqual(field.text.split("\n"), lines)
        self.program.press("Escape")
        self.program.wait_gone(window)
        self.program.window()

    def test_help(self):
        window, field = self.open("Programm")
        lines = field.text.split("\n")
        self.assertEqual(len(lines), 111)
        self.assertEqual(lines[-1], "Viel Spaß!")
        self.assertIn("    Löscht den Bildschirm und die Häkchen der grafischen Auswahl.", lines)
        self.picture("top")
        # Of the main window's 560 pixels five whole hundreds, each less one.
        self.assertEqual(window.extents[3], 495)
        self.program.press("ctrl+End")
        self.program.close(window)
        self.program.window()

    def test_both_can_be_opened_again_and_the_program_goes_on(self):
        for item in ("Version", "Programm", "Version"):
            window, _ = self.open(item)
            self.program.press("Escape")
            self.program.wait_gone(window)
        self.program.tick("Übersicht", "Fahrzeit", "Linie")
