"""Choosing a value's colour."""

import os

from journey import Journey

WATT = [100.0, 140.0, 120.0]
DEFAULT = (64, 64, 64)
CHOSEN = (0x10, 0xA0, 0xE8)


class Colours(Journey):
    def setUp(self):
        super().setUp()
        self.filled = self.card_of(WATT)
        self.program = self.start(self.filled.root)
        self.program.tick("Übersicht", "Watt", "Quadrate")
        self.shows(DEFAULT, CHOSEN)

    def shows(self, there, gone):
        def fits(chart):
            colours = chart.colours()
            return there in colours and gone not in colours

        return self.program.wait_chart(fits, f"{there} and not {gone}")

    def open(self):
        self.program.choose("Übersicht", "Watt", "Farbe")
        return self.program.window("Farbe")

    def test_a_chosen_colour_is_drawn_and_saved(self):
        program = self.program
        requester = self.open()
        field = program.control(requester, "text", "HTML:")
        self.assertEqual(field.text, "#404040")
        program.fill_in(field, "#10a0e8")
        self.picture("requester")
        program.push(requester, "OK")
        program.wait_gone(requester)
        self.shows(CHOSEN, DEFAULT)
        self.picture("chart")

        program.choose("Programm", "Starteinstellungen speichern")
        program.read_message("Preferences")
        with open(os.path.join(self.filled.root, "Einstellungen.dat"), "rb") as file:
            lines = file.read().split(b"\n")
        # Red, green times 256 and blue times 65536.
        self.assertIn(b"Farbe 3 = %d" % (0x10 + 0xA0 * 256 + 0xE8 * 65536), lines)
        self.assertIn(b"Farbe 2 = %d" % (190 * 256), lines)

        program.window()
        program.press("Escape")
        self.assertEqual(program.wait_end(), 0)
        self.program = self.start(self.filled.root)
        self.shows(CHOSEN, DEFAULT)
        self.assertTrue(self.program.is_marked("Übersicht", "Watt", "Quadrate"))

    def test_a_cancelled_requester_keeps_the_colour(self):
        program = self.program
        for leave in ("Escape", "Abbrechen"):
            requester = self.open()
            program.fill_in(program.control(requester, "text", "HTML:"), "#10a0e8")
            if leave == "Escape":
                program.press("Escape")
            else:
                program.push(requester, leave)
            program.wait_gone(requester)
            program.window()
            self.shows(DEFAULT, CHOSEN)
        requester = self.open()
        self.assertEqual(program.control(requester, "text", "HTML:").text, "#404040")
        program.press("Escape")
        program.wait_gone(requester)
