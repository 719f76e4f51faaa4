"""Escape: it leaves whatever is open, one thing at a time, and ends the program in the end."""

import os
import time

from chart import fractions
from journey import Journey
from waiting import wait_until

WATT = [100.0, 140.0, 120.0]
EDIT = "Trainingsdateien bearbeiten"
CHOOSE = "Wähle die Trainingsdatei"


class Escape(Journey):
    def setUp(self):
        super().setUp()
        self.filled = self.card_of(WATT)
        self.before = self.contents()
        self.program = self.start_with_bars(self.filled, WATT)

    def contents(self):
        found = {}
        for directory, _, names in os.walk(self.filled.root):
            for name in names:
                path = os.path.join(directory, name)
                with open(path, "rb") as file:
                    found[os.path.relpath(path, self.filled.root)] = file.read()
        return found

    def leave(self, title):
        window = self.program.window(title)
        self.program.press("Escape")
        self.program.wait_gone(window)

    def test_every_window_of_the_menus_is_left(self):
        program = self.program
        for names, title in (
            (("Programm", "Daum Verzeichnis wählen"),
             "Wähle die SD-Karte bzw. das Daum-Verzeichnis"),
            (("Übersicht", "Watt", "Grenzwerte"), "Grenzwerte"),
            (("Übersicht", "Watt", "Farbe"), "Farbe"),
            (("Programm", "Starteinstellungen erneut laden"), "Info"),
            (("Programm", "Starteinstellungen löschen"), "Starteinstellungen zurücksetzen"),
            (("Info", "Version"), "Programminfo"),
            (("Info", "Programm"), "Programminfo"),
        ):
            with self.subTest(names):
                program.choose(*names)
                self.leave(title)
                program.window()
        # Reloading without a file took the mark; nothing else happened.
        program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")
        self.assertEqual(self.contents(), self.before)

    def test_an_open_menu_is_left_level_by_level(self):
        program = self.program
        title = program.menu_item("Übersicht")
        popup = title.child(0)
        program.desktop.click(title)
        wait_until(lambda: popup.has("showing"), "the menu")
        value = program.menu_item("Übersicht", "Watt")
        program.desktop.click(value)
        inner = value.child(0)
        wait_until(lambda: inner.has("showing"), "the submenu")
        self.picture("menus")
        program.press("Escape")
        wait_until(lambda: not inner.has("showing"), "the submenu to go")
        self.assertTrue(popup.has("showing"))
        program.press("Escape")
        wait_until(lambda: not popup.has("showing"), "the menu to go")
        program.tick("Übersicht", "Watt", "Linie")  # the program is there still

    def test_the_lists_are_left_without_a_training(self):
        program = self.program
        program.choose("Training", "Datei öffnen")
        self.leave(CHOOSE)
        # No training was chosen: no message, and an empty training chart is not drawn.
        program.window()
        program.choose("Übersicht", "Dateien öffnen")
        program.push(program.window(CHOOSE), "Alle")
        program.wait_bars(fractions(WATT))

        program.choose("Programm", "Trainingsdateien bearbeiten")
        self.leave(EDIT)
        # No training is chosen now, as the chart tells; the value loses its mark.
        self.says(program, "Fehler", "Das Menü 'Watt' enthält keine Daten!")
        program.window()
        self.assertFalse(program.is_marked("Übersicht", "Watt", "Balken"))
        self.assertEqual(self.contents(), self.before)

    def test_what_a_list_opens_is_left_before_the_list(self):
        program = self.program
        program.choose("Programm", "Trainingsdateien bearbeiten")
        window = program.window(EDIT)
        program.desktop.click(program.list_row(window, 0))
        for button, title in (
            ("Löschen", "Lösche Datei"),
            ("Nummerieren", "Sicherheitswarnung"),
        ):
            program.push(window, button)
            self.leave(title)
            program.window(EDIT)
        self.assertEqual(self.contents(), self.before)

    def test_a_report_is_left_before_its_list(self):
        stick = self.other_drive()
        program = self.program
        program.choose("Programm", "Trainingsdateien bearbeiten")
        window = program.window(EDIT)
        program.push(window, "Sicherheitskopie")
        program.choose_path("Wähle das Verzeichnis der Sicherheitskopie", stick)
        self.leave("Dateien kopieren")
        program.window(EDIT)
        program.push(window, "Fertig")
        program.wait_bars(fractions(WATT))

    def test_a_held_key_leaves_one_window(self):
        program = self.program
        program.choose("Info", "Version")
        window = program.window("Programminfo")
        program.desktop.xdotool("keydown", "Escape")
        program.wait_gone(window)
        time.sleep(1.0)  # keys repeat after two thirds of a second here
        self.assertIsNone(program.process.poll())
        program.desktop.xdotool("keyup", "Escape")
        program.window()
        program.press("Escape")
        self.assertEqual(program.wait_end(), 0)

    def test_the_main_window_ends_without_a_question_and_saves_nothing(self):
        self.program.window()
        self.program.press("Escape")
        self.assertEqual(self.program.wait_end(), 0)
        self.assertEqual(self.contents(), self.before)

    def test_closing_the_main_window_ends_it_too(self):
        self.program.window()
        self.program.press("alt+F4")
        self.assertEqual(self.program.wait_end(), 0)
        self.assertEqual(self.contents(), self.before)
