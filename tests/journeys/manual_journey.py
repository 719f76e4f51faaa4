"""The steps of the manual (docs/handbuch.md), section by section, as it tells them."""

import os
import shutil
import time

from card import TREE, record, seconds, some_samples
from chart import fractions
from journey import Journey
from waiting import wait_until

DAY = 86400
EDIT = "Trainingsdateien bearbeiten"
CHOOSE = "Wähle die Trainingsdatei"
CARD_REQUESTER = "Wähle die SD-Karte bzw. das Daum-Verzeichnis"
BACKUP_REQUESTER = "Wähle das Verzeichnis der Sicherheitskopie"
EXPORT_REQUESTER = "Name und Ort der CSV-Datei wählen"
NOT_FOUND = (
    "Die Datei 'data/result/ergo_bike/dictionary.2' wurde im gewählten Verzeichnis nicht gefunden!"
)
# Days before today, value.
TRAININGS = [(500, 100.0), (400, 140.0), (200, 120.0), (100, 160.0), (10, 110.0)]
WATT = [watt for _, watt in TRAININGS]
WATT_COLOUR = (64, 64, 64)


def midnight_before(days):
    now = time.gmtime()
    return seconds(now.tm_year, now.tm_mon, now.tm_mday) - days * DAY


class Manual(Journey):
    def setUp(self):
        super().setUp()
        self.filled = self.card()
        for i, (days, watt) in enumerate(TRAININGS):
            entry = record(i + 1, midnight_before(days), f"Fahrt {i}", watt=watt, kjoule=200 + watt)
            self.filled.add(entry, some_samples(4 + i))
        self.home = self.directory("Kurbelbuch")

    def settings(self):
        with open(os.path.join(self.home, "Einstellungen.dat"), "rb") as file:
            return file.read().decode("latin-1").splitlines()

    def start_at_card(self):
        """As a rider does who has saved the start settings once."""
        program = self.start(self.home)
        program.choose_path(CARD_REQUESTER, self.filled.root)
        program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")
        return program

    def save(self, program):
        program.choose("Programm", "Starteinstellungen speichern")
        program.read_message("Preferences")
        program.window()

    def open_all(self, program):
        """Übersicht › Dateien öffnen, Alle."""
        program.choose("Übersicht", "Dateien öffnen")
        window = program.window(CHOOSE)
        program.push(window, "Alle")
        program.wait_gone(window)

    def finish(self, program, window):
        program.push(window, "Fertig")
        program.wait_gone(window)
        program.window()

    def end(self, program):
        program.window()
        program.press("Escape")
        self.assertEqual(program.wait_end(), 0)

    def test_reading_a_card(self):
        program = self.start_at_card()
        self.save(program)
        self.end(program)
        self.start(self.home).wait_chart(lambda chart: chart.is_empty(), "the card without asking")

    def test_showing_values(self):
        program = self.start_at_card()
        program.tick("Übersicht", "Watt", "Balken")
        program.wait_bars(fractions(WATT))
        for item in ("Mittelwert", "Trend", "Kreise", "Quadrate", "Linie", "Punktewolke"):
            program.tick("Übersicht", "Watt", item)
        self.picture("all of a value")
        program.choose("Übersicht", "Ausgabe löschen")
        program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")
        program.tick("Übersicht", "Watt", "Balken")

        for button, expected in (("Jahresfrist", WATT[2:]), ("Alle", WATT)):
            program.choose("Übersicht", "Dateien öffnen")
            window = program.window(CHOOSE)
            program.push(window, button)
            program.wait_gone(window)
            program.wait_bars(fractions(expected))

        program.choose("Übersicht", "Dateien öffnen")
        window = program.window(CHOOSE)
        program.desktop.click(program.list_row(window, 0))
        program.desktop.click(program.list_row(window, 2), holding="ctrl")
        program.push(window, "Auswahl")
        program.wait_gone(window)
        program.wait_bars(fractions([120, 110]))

    def test_a_single_training_and_back(self):
        program = self.start_at_card()
        program.tick("Übersicht", "Watt", "Balken")
        program.choose("Training", "Datei öffnen")
        window = program.window(CHOOSE)
        program.desktop.click(program.list_row(window, 1), times=2)
        program.wait_gone(window)
        program.tick("Training", "Watt", "Balken")
        program.wait_bars(fractions([90 + 5 * i for i in range(7)]))
        self.assertFalse(program.is_enabled("Übersicht", "Watt", "Balken"))
        self.tells_what_to_do_first(
            program, ("Übersicht", "Watt", "Balken"),
            "Zuerst im Menü 'Übersicht' den Punkt 'Dateien öffnen' wählen.",
        )
        self.open_all(program)
        program.wait_bars(fractions(WATT))
        self.assertFalse(program.is_enabled("Training", "Watt", "Balken"))

    def tells_what_to_do_first(self, program, names, hint):
        """Expects this tooltip of a disabled menu item that the pointer rests on."""
        for depth in range(1, len(names)):
            title = program.menu_item(*names[:depth])
            program.desktop.click(title)
            popup = title.child(0)
            wait_until(lambda popup=popup: popup.has("showing"), f"menu {names}")
        x, y = program.menu_item(*names).middle
        program.desktop.move_pointer(x - 3, y)
        program.desktop.move_pointer(x, y)
        wait_until(
            lambda: any(window.name == hint for window in program.windows()),
            lambda: f"{hint!r}: {program.condition()}",
        )
        self.picture("hint")
        program.press("Escape", "Escape")
        wait_until(lambda: not popup.has("showing"), "the menu to close")
        program.desktop.park_pointer()

    def test_limits(self):
        program = self.start_at_card()
        program.tick("Übersicht", "Watt", "Balken")
        program.choose("Übersicht", "Watt", "Grenzwerte")
        dialog = program.window("Grenzwerte")
        program.fill_in(program.control(dialog, "text", "Min:"), "110")
        program.fill_in(program.control(dialog, "text", "Max:"), "150")
        program.push(dialog, "Übernehmen")
        program.wait_gone(dialog)
        program.wait_bars(fractions(WATT, 110, 150))
        program.choose("Übersicht", "Watt", "Grenzwerte")
        dialog = program.window("Grenzwerte")
        for name in ("Min:", "Max:"):
            program.fill_in(program.control(dialog, "text", name), "0")
        program.push(dialog, "Übernehmen")
        program.wait_gone(dialog)
        program.wait_bars(fractions(WATT))

    def test_exporting_one_training_and_seeing_all_again(self):
        documents = os.path.join(self.desktop.home, "Documents")
        os.makedirs(documents, exist_ok=True)
        program = self.start_at_card()
        program.tick("Übersicht", "Watt", "Kreise")
        program.choose("Übersicht", "Daten exportieren")
        window = program.window(CHOOSE)
        program.desktop.click(program.list_row(window, 0))
        program.push(window, "Auswahl")
        program.wait_gone(window)
        requester = program.window(EXPORT_REQUESTER)
        place = requester.find("combo box")
        wait_until(lambda: place.name == documents, lambda: f"{documents}: {place.name}")
        self.picture("requester")
        program.press("Return")
        program.wait_gone(requester)
        program.read_message("Info")
        self.assertEqual(os.listdir(documents), ["Dicitonary.csv"])

        # One circle as wide as the chart, as soon as the chart is drawn again.
        program.tick("Übersicht", "Watt", "Mittelwert")
        program.tick("Übersicht", "Watt", "Mittelwert")
        program.wait_chart(
            lambda chart: chart.pixels[chart.left + chart.width // 2 + 40, chart.top + 60]
            == WATT_COLOUR, "a giant circle",
        )
        self.picture("giant")
        self.open_all(program)
        chart = program.wait_chart(
            lambda chart: chart.circle(3, 5, 160, 100, 160) == WATT_COLOUR, "all circles"
        )
        self.assertEqual(chart.circle(0, 5, 100, 100, 160), WATT_COLOUR)

    def test_tidying_up(self):
        program = self.start_at_card()
        program.tick("Übersicht", "Watt", "Balken")
        program.choose("Programm", "Trainingsdateien bearbeiten")
        window = program.window(EDIT)
        program.desktop.click(program.list_row(window, 3))
        program.desktop.click(program.list_row(window, 4), holding="ctrl")
        program.push(window, "Löschen")
        program.read_message("Lösche Datei", "Ja")
        wait_until(lambda: len(program.list_rows(window)) == 3, "three rows")
        self.assertEqual(len(self.filled.names()), 4)
        self.finish(program, window)
        program.wait_bars(fractions(WATT[2:]))

    def choose_backup(self, program, directory):
        program.choose("Programm", "Verzeichnis der Sicherheitskopie wählen")
        program.choose_path(BACKUP_REQUESTER, directory)
        program.window()

    def test_a_backup_keeps_the_chart_and_can_be_looked_at(self):
        program = self.start_at_card()
        program.tick("Übersicht", "Watt", "Balken")
        program.tick("Übersicht", "KJoule", "Linie")
        stick = self.other_drive()
        self.choose_backup(program, stick)
        program.choose("Programm", "Trainingsdateien bearbeiten")
        window = program.window(EDIT)
        program.push(window, "Sicherheitskopie")
        report = program.window("Dateien kopieren")
        program.press("Escape")
        program.wait_gone(report)
        program.window(EDIT)
        self.finish(program, window)
        program.wait_bars(fractions(WATT))
        self.save(program)
        saved = self.settings()
        self.assertIn(f"Verzeichnis = {self.filled.tree}/", saved)
        self.assertIn(f"Sicherheitskopie = {os.path.join(stick, TREE)}/", saved)
        self.assertEqual(saved[-3:], ["[Menüvorwahl]", "Menu 103 = 1", "Menu 216 = 1"])

        # Its own drive is refused while it is known as the backup.
        program.choose("Programm", "Daum Verzeichnis wählen")
        program.choose_path(CARD_REQUESTER, stick)
        program.read_message("Fehler")
        program.window()

        self.filled.add(record(6, midnight_before(1), watt=180.0))  # only on the card
        program.choose("Programm", "Starteinstellungen löschen")
        program.read_message("Starteinstellungen zurücksetzen", "Ja")
        program.window()
        program.choose("Programm", "Daum Verzeichnis wählen")
        program.choose_path(CARD_REQUESTER, stick)
        program.wait_bars(fractions(WATT))

        program.choose("Programm", "Daum Verzeichnis wählen")
        program.choose_path(CARD_REQUESTER, self.filled.root)
        program.wait_bars(fractions([*WATT, 180.0]))
        self.choose_backup(program, stick)
        self.save(program)
        self.assertEqual(self.settings(), saved)
        self.end(program)

        # The program beside the backup shows the backup, without settings of its own.
        program = self.start(self.home, shutil.copy(self.executable, stick))
        program.tick("Übersicht", "Watt", "Balken")
        program.wait_bars(fractions(WATT))

    def test_start_settings(self):
        program = self.start_at_card()
        program.tick("Übersicht", "Watt", "Balken")
        self.save(program)
        program.tick("Übersicht", "Watt", "Linie")
        program.choose("Programm", "Starteinstellungen erneut laden")
        program.read_message("Info")
        program.window()
        self.assertFalse(program.is_marked("Übersicht", "Watt", "Linie"))
        self.assertTrue(program.is_marked("Übersicht", "Watt", "Balken"))

    def test_what_to_do_when_a_value_has_no_data(self):
        program = self.start_at_card()
        program.tick("Übersicht", "Watt", "Balken")
        program.choose("Programm", "Trainingsdateien bearbeiten")
        window = program.window(EDIT)
        program.press("Escape")
        program.wait_gone(window)
        self.says(program, "Fehler", "Das Menü 'Watt' enthält keine Daten!")
        program.window()
        self.assertFalse(program.is_marked("Übersicht", "Watt", "Balken"))
        self.open_all(program)
        program.tick("Übersicht", "Watt", "Balken")
        program.wait_bars(fractions(WATT))

    def test_what_to_do_about_a_chart_that_changes_no_more(self):
        program = self.start_at_card()
        program.tick("Übersicht", "Watt", "Balken")
        program.wait_bars(fractions(WATT))
        program.choose("Übersicht", "Dateien öffnen")
        window = program.window(CHOOSE)
        program.push(window, "Abbruch")
        program.wait_gone(window)
        program.tick("Übersicht", "Watt", "Kreise")
        self.assertNotIn(WATT_COLOUR, program.wait_bars(fractions(WATT)).colours())
        self.open_all(program)
        program.wait_chart(
            lambda chart: chart.circle(3, 5, 160, 100, 160) == WATT_COLOUR, "the circles"
        )

    def test_what_to_do_about_a_wrong_directory(self):
        program = self.start(self.home)
        program.choose_path(CARD_REQUESTER, os.path.join(self.filled.root, "data"))
        self.says(program, "Dateifehler", NOT_FOUND)
        program.window()
        program.choose("Programm", "Daum Verzeichnis wählen")
        program.choose_path(CARD_REQUESTER, self.filled.root)
        program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")
        self.assertTrue(program.is_enabled("Übersicht", "Watt", "Balken"))

    def test_larger_letters_in_the_help(self):
        program = self.start_at_card()
        program.choose("Info", "Programm")
        window = program.window("Programminfo")
        field = program.control(window, "text", "Programminfo")
        before = field.letter_height
        program.press("ctrl+plus", "ctrl+plus", "ctrl+plus")
        wait_until(lambda: field.letter_height > before, "larger letters")
        self.picture("larger")
        program.press("ctrl+minus", "ctrl+minus", "ctrl+minus")
        wait_until(lambda: field.letter_height == before, "letters as before")
