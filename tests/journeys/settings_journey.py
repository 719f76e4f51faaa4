"""Saving, restarting with, reloading and deleting the start settings."""

import os

from card import record, seconds
from chart import fractions
from journey import Journey

WATT = [100.0, 140.0, 120.0]
FILE = "Einstellungen.dat"

COLOURS = [
    (0, 0, 255), (32, 32, 170), (0, 190, 0), (64, 64, 64), (128, 0, 0),
    (128, 128, 0), (200, 64, 32), (0, 200, 200), (0, 128, 128), (204, 204, 0),
] * 2


def number(colour):
    return colour[0] + colour[1] * 256 + colour[2] * 65536


def settings(width, height, directory, marks=(), *, backup="", renumber=0):
    """The file as the program must write it while no colour was changed."""
    lines = [
        "[Programmeinstellungen]",
        f"WindowBreite = {width}",
        f"WindowHöhe = {height}",
        f"Verzeichnis = {directory}",
        f"Sicherheitskopie = {backup}",
        f"Nummerieren = {renumber}",
        "; ",
        "[Farben]",
        *[f"Farbe {i} = {number(colour)}" for i, colour in enumerate(COLOURS)],
        *[f"Farbe {50 + i} = {number(colour)}" for i, colour in enumerate(COLOURS)],
        "Farbe 70 = 15822571",
        "Farbe 71 = 22238255",
        "; ",
    ]
    if marks:
        lines += ["[Menüvorwahl]", *[f"Menu {mark} = 1" for mark in marks]]
    return ("\n".join(lines) + "\n").encode("latin-1")


class Settings(Journey):
    def setUp(self):
        super().setUp()
        self.filled = self.card()
        for i, watt in enumerate(WATT):
            self.filled.add(record(i + 1, seconds(2013, 5, i + 1), watt=watt, kjoule=200 + watt))
        self.home = self.directory("start")
        self.file = os.path.join(self.home, FILE)

    def read(self):
        with open(self.file, "rb") as file:
            return file.read()

    def write(self, content):
        with open(self.file, "wb") as file:
            file.write(content)

    def start_with_card(self):
        program = self.start(self.home)
        program.choose_path("Wähle die SD-Karte bzw. das Daum-Verzeichnis", self.filled.root)
        program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")
        return program

    def save(self, program):
        program.choose("Programm", "Starteinstellungen speichern")
        self.says(
            program,
            "Preferences",
            "Die aktuellen Einstellungen der Übersicht wurden als Starteinstellungen gespeichert!",
        )

    def test_saved_settings_come_back_after_a_restart(self):
        program = self.start_with_card()
        program.tick("Übersicht", "Watt", "Balken")
        program.tick("Übersicht", "KJoule", "Trend")
        program.tick("Übersicht", "Watt", "Mittelwert")
        self.assertFalse(os.path.exists(self.file))
        self.save(program)
        tree = self.filled.tree + "/"
        self.assertEqual(self.read(), settings(1152, 560, tree, [103, 603, 716]))
        self.picture("saved")

        # What is changed afterwards is forgotten when the program ends.
        program.tick("Übersicht", "Puls", "Linie")
        program.press("Escape")
        self.assertEqual(program.wait_end(), 0)
        self.assertEqual(self.read(), settings(1152, 560, tree, [103, 603, 716]))

        program = self.start(self.home)  # no requester this time
        program.window()
        program.wait_bars(fractions(WATT))
        self.assertTrue(program.is_marked("Übersicht", "Watt", "Balken"))
        self.assertTrue(program.is_marked("Übersicht", "KJoule", "Trend"))
        self.assertFalse(program.is_marked("Übersicht", "Puls", "Linie"))
        self.picture("restarted")

    def test_the_window_opens_with_the_stored_size(self):
        self.write(settings(700, 400, self.filled.tree + "/", [103]))
        program = self.start(self.home)
        program.wait_bars(fractions(WATT))
        self.assertEqual(program.chart_place()[2:], (700, 400))

    def test_a_stored_size_that_the_screen_has_not_is_replaced(self):
        self.write(settings(1281, 400, self.filled.tree + "/", [103]))
        program = self.start(self.home)
        program.wait_bars(fractions(WATT))
        self.assertEqual(program.chart_place()[2:], (1152, 560))

    def test_settings_written_by_hand_are_understood(self):
        text = (
            "; from another computer\r\n"
            "[PROGRAMMEINSTELLUNGEN]\r\n"
            "\twindowbreite=500\r\n"
            "WindowHöhe =   300px\r\n"
            f"Verzeichnis={self.filled.root}/\r\n"
            "[Menüvorwahl] ignored\r\n"
            "Menu 103=1\r\n"
        )
        self.write(text.encode("latin-1"))
        program = self.start(self.home)
        program.wait_bars(fractions(WATT))
        self.assertEqual(program.chart_place()[2:], (500, 300))

    def test_reloading_takes_marks_from_the_file_and_keeps_the_window(self):
        program = self.start_with_card()
        program.tick("Übersicht", "KJoule", "Linie")
        self.write(settings(700, 400, self.filled.tree + "/", [103]))
        program.choose("Programm", "Starteinstellungen erneut laden")
        self.says(program, "Info", "Die Starteinstellungen wurden geladen!")
        program.window()
        program.wait_bars(fractions(WATT))
        self.assertTrue(program.is_marked("Übersicht", "Watt", "Balken"))
        self.assertFalse(program.is_marked("Übersicht", "KJoule", "Linie"))
        self.assertEqual(program.chart_place()[2:], (1152, 560))

    def test_deleting_asks_first_and_keeps_the_marks(self):
        content = settings(700, 400, self.filled.tree + "/", [103])
        content = content.replace(b"Farbe 3 = 4210752\n", b"Farbe 3 = 255\n")
        self.write(content)
        program = self.start(self.home)
        chart = program.wait_bars(fractions(WATT))
        red = (255, 127, 127)  # half transparent on white
        self.assertIn(red, {tuple(c - c % 2 + 1 for c in colour) for colour in chart.colours()})

        question = "Sollen die Starteinstellungen wirklich gelöscht werden?"
        title = "Starteinstellungen zurücksetzen"
        program.choose("Programm", "Starteinstellungen löschen")
        self.says(program, title, question, "Nein")
        program.window()
        self.assertEqual(self.read(), content)

        program.choose("Programm", "Starteinstellungen löschen")
        self.says(program, title, question, "Ja")
        program.window()
        program.wait_chart(
            lambda chart: not any(r > g for r, g, _ in chart.colours()), "the default colour"
        )
        self.assertFalse(os.path.exists(self.file))
        program.wait_bars(fractions(WATT))
        self.assertTrue(program.is_marked("Übersicht", "Watt", "Balken"))
        self.assertEqual(os.listdir(self.home), [])
