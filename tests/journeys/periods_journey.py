"""Which trainings the overview shows: all, chosen ones, those of a year or of a month."""

import time

from card import record
from chart import fractions
from journey import Journey

LIST = "Wähle die Trainingsdatei"
DAY = 24 * 60 * 60
# Days before today and the value shown, oldest first; far from the edges of both periods.
TRAININGS = [(500, 100.0), (200, 170.0), (40, 120.0), (20, 150.0), (5, 130.0)]


class Periods(Journey):
    zone = "America/St_Johns"

    def setUp(self):
        super().setUp()
        self.filled = self.card()
        self.now = self.wall_clock()
        for i, (days, watt) in enumerate(TRAININGS):
            self.filled.add(record(i + 1, self.now - days * DAY, watt=watt))
        self.program = self.start(self.filled.root)
        self.program.tick("Übersicht", "Watt", "Balken")
        self.shows([100, 170, 120, 150, 130])

    def shows(self, watts):
        self.program.wait_bars(fractions(watts))
        dates = [
            time.strftime("%d.%m.%Y", time.gmtime(self.now - days * DAY))
            for days, watt in TRAININGS if watt in watts
        ]
        self.program.wait_told(
            f"Übersicht, {len(watts)} Trainings vom {dates[0]} bis {dates[-1]}: Watt (Balken)"
            f" von {min(watts)} bis {max(watts)}."
        )

    def open_list(self):
        self.program.choose("Übersicht", "Dateien öffnen")
        return self.program.window(LIST)

    def take(self, button):
        window = self.open_list()
        self.program.push(window, button)
        self.program.wait_gone(window)

    def test_month_year_and_all(self):
        self.take("Monatsfrist")
        self.shows([150, 130])
        self.picture("month")
        self.take("Jahresfrist")
        self.shows([170, 120, 150, 130])
        self.picture("year")
        self.take("Alle")
        self.shows([100, 170, 120, 150, 130])

    def test_the_month_ends_by_the_clock_on_the_wall(self):
        # Far enough from the edge for a slow machine, nearer than any zone's distance from UTC.
        for zone in ("Europe/Berlin", "America/St_Johns", "UTC"):
            self.program.end()
            self.move_to(zone)
            edge = self.wall_clock() - 31 * DAY
            near = self.card(zone.replace("/", " "))
            for i, (start, watt) in enumerate([(edge - 1500, 100.0), (edge + 1500, 150.0),
                                               (edge + DAY, 130.0)]):
                near.add(record(i + 1, start, watt=watt))
            self.program = self.start(near.root)
            self.program.tick("Übersicht", "Watt", "Balken")
            self.program.wait_bars(fractions([100, 150, 130]))
            self.take("Monatsfrist")
            self.program.wait_told("Übersicht, 2 Trainings vom ")

    def test_chosen_rows(self):
        program = self.program
        window = self.open_list()
        program.control(window, "push button", "Alle")
        program.desktop.click(program.list_row(window, 0))
        program.control(window, "push button", "Auswahl")
        program.desktop.click(program.list_row(window, 3), holding="ctrl")
        program.desktop.click(program.list_row(window, 4), holding="ctrl")
        program.wait_chosen(window, [0, 3, 4])
        self.picture("chosen")
        program.push(window, "Auswahl")
        program.wait_gone(window)
        self.shows([100, 170, 130])

    def test_cancelling_takes_no_training_until_the_card_is_read_again(self):
        program = self.program
        self.take("Abbruch")
        # One training is never drawn: the old picture stays. No training gives no values.
        program.choose("Übersicht", "Watt", "Grenzwerte")
        dialog = program.window("Grenzwerte")
        fields = [program.control(dialog, "text", name).text for name in ("Min:", "Max:")]
        self.assertEqual(fields, ["0,00", "0,00"])
        program.press("Escape")
        program.wait_gone(dialog)
        self.shows([100, 170, 120, 150, 130])
        self.take("Monatsfrist")
        self.shows([150, 130])
        self.take("Alle")
        self.shows([100, 170, 120, 150, 130])

    def test_the_file_stays_as_it_is(self):
        before = self.filled.read("dictionary.2")
        self.take("Monatsfrist")
        self.shows([150, 130])
        self.take("Abbruch")
        self.program.window()
        self.assertEqual(self.filled.read("dictionary.2"), before)
