"""What happens to the main window while another one is open, and what a command leaves behind."""

import os
import time

from card import TREE, record, sample, seconds
from chart import fractions
from journey import Journey
from waiting import wait_until

WATT = [100.0, 140.0, 120.0, 160.0, 110.0]
EDIT = "Trainingsdateien bearbeiten"
LIST = "Wähle die Trainingsdatei"
SAVE = "Name und Ort der CSV-Datei wählen"
BACKUP = "Wähle das Verzeichnis der Sicherheitskopie"


class Meanwhile(Journey):
    def setUp(self):
        super().setUp()
        self.filled = self.card()
        content = b"".join(sample(10 * i, watt=100 + i) for i in range(5))
        for i, watt in enumerate(WATT):
            self.filled.add(record(i + 1, seconds(2013, 5, i + 1), watt=watt), content)
        self.program = self.start_with_bars(self.filled, WATT)

    def handle(self, title):
        return self.desktop.xdotool("search", "--name", f"^{title}$").split()[-1]

    def resize_main(self, width, height):
        """By the window manager, as its user may at any moment."""
        before = self.program.chart_place()[2:]
        self.desktop.xdotool("windowsize", self.handle("Kurbelbuch"), width, height)
        wait_until(lambda: self.program.chart_place()[2:] != before, "another size")

    def move_main(self, x, y):
        before = self.program.chart_place()[:2]
        self.desktop.xdotool("windowmove", self.handle("Kurbelbuch"), x, y)
        wait_until(lambda: self.program.chart_place()[:2] != before, "another place")

    def move_below_the_menus(self, title):
        """Out of the way of the main window's menus, which then can be seen and clicked."""
        window = self.program.window(title)
        self.desktop.xdotool("windowmove", self.handle(title), 250, 300)
        wait_until(lambda: window.extents[1] > 290, f"{title} to move")
        return window

    def opens_a_menu(self):
        """Whether a click on the menu bar opens a menu; closes it again."""
        title = self.program.menu_item("Programm")
        popup = title.child(0)
        self.desktop.click(title)
        end = time.monotonic() + 0.5
        while time.monotonic() < end and not popup.has("showing"):
            time.sleep(0.02)
        is_open = popup.has("showing")
        if is_open:
            self.press_in_menu("Escape", popup)
        return is_open

    def press_in_menu(self, key, popup):
        self.program.press(key)
        wait_until(lambda: not popup.has("showing"), "the menu to close")

    def test_a_cancelled_list_above_a_resized_window_keeps_the_ticks(self):
        program = self.program
        for size, path in (((800, 500), ("Training", "Daten exportieren")),
                           ((900, 600), ("Training", "Datei öffnen"))):
            program.choose(*path)
            window = program.window(LIST)
            self.resize_main(*size)
            self.picture("above " + path[1])
            program.press("Escape")
            program.wait_gone(window)
            program.window()
            time.sleep(0.3)
            self.assertEqual(len(program.windows()), 1, program.titles())
            self.picture("after " + path[1])
            self.assertTrue(program.is_marked("Übersicht", "Watt", "Balken"))

    def test_an_export_of_two_shows_itself_when_the_window_moves(self):
        program = self.program
        program.choose("Übersicht", "Daten exportieren")
        window = program.window(LIST)
        self.desktop.click(program.list_row(window, 0))
        self.desktop.click(program.list_row(window, 2), holding="ctrl")
        program.wait_chosen(window, [0, 2])
        program.push(window, "Auswahl")
        program.cancel(SAVE)
        program.window()
        program.wait_bars(fractions(WATT))
        self.picture("before")
        self.move_main(40, 60)
        program.wait_bars(fractions([WATT[2], WATT[4]]))
        self.picture("after")

    def test_the_menus_open_above_the_windows_of_info_alone(self):
        program = self.program
        self.assertTrue(self.opens_a_menu())
        for path, title, button in ((("Programm", EDIT), EDIT, "Fertig"),
                                    (("Übersicht", "Dateien öffnen"), LIST, "Alle"),
                                    (("Übersicht", "Watt", "Grenzwerte"), "Grenzwerte", "Abbruch")):
            program.choose(*path)
            window = self.move_below_the_menus(title)
            self.assertFalse(self.opens_a_menu(), title)
            self.picture("above " + title)
            program.push(program.window(title), button)
            program.wait_gone(window)
            program.wait_bars(fractions(WATT))
        self.assertTrue(self.opens_a_menu())

        program.choose("Info", "Version")
        window = self.move_below_the_menus("Programminfo")
        self.assertTrue(self.opens_a_menu())
        self.desktop.xdotool("windowactivate", "--sync", self.handle("Programminfo"))
        program.press("Escape")
        program.wait_gone(window)

    def test_the_menus_stay_shut_above_a_report(self):
        program = self.program
        program.choose("Programm", EDIT)
        program.push(program.window(EDIT), "Sicherheitskopie")
        program.choose_path(BACKUP, self.other_drive())
        report = self.move_below_the_menus("Dateien kopieren")
        self.desktop.xdotool("windowmove", self.handle(EDIT), 260, 330)
        self.assertFalse(self.opens_a_menu())
        self.picture("shut")
        program.window("Dateien kopieren")
        program.press("Escape")
        program.wait_gone(report)
        program.close(program.window(EDIT))

    def test_a_backup_that_is_cancelled_makes_no_index(self):
        program = self.program
        inner = os.path.join(self.filled.tree, TREE)
        for _ in range(2):
            program.choose("Programm", EDIT)
            window = program.window(EDIT)
            program.push(window, "Sicherheitskopie")
            program.cancel(BACKUP)
            program.window(EDIT)
            self.picture("cancelled")
            program.close(window)
            self.assertEqual(os.listdir(inner), [])
        program.wait_bars(fractions(WATT))

    def test_a_trend_leaves_the_pointer_its_band(self):
        program = self.program
        program.tick("Übersicht", "Watt", "Trend")
        x, y, width, height = program.chart_place()
        program.choose("Übersicht", "Watt", "Grenzwerte")
        dialog = program.window("Grenzwerte")
        program.fill_in(program.control(dialog, "text", "Min:"), "120")
        program.press("Return")
        program.wait_gone(dialog)
        program.wait_bars(fractions(WATT, 120))
        program.tick("Übersicht", "Watt", "Trend")
        program.tick("Übersicht", "Watt", "Trend")
        self.picture("limited")
        self.desktop.click((x + width // 2, y + height // 2), button=3)
        program.wait_bars(fractions(WATT))
        self.picture("free")
