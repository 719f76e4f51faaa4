"""The list of trainings by its keys and its buttons."""

from card import record, seconds
from chart import fractions
from journey import Journey
from waiting import wait_until

EDIT = "Trainingsdateien bearbeiten"
CHOOSE = "Wähle die Trainingsdatei"
# Day of May, description, value.
TRAININGS = [
    (1, "Berg", 100.0),
    (2, "anfang", 140.0),
    (3, "Berg", 120.0),
    (4, "Zeit", 160.0),
    (5, "Mitte", 110.0),
]
WATT = [watt for _, _, watt in TRAININGS]


class List(Journey):
    zone = "Europe/Berlin"  # no date moves with it

    def setUp(self):
        super().setUp()
        self.filled = self.card()
        for day, description, watt in TRAININGS:
            self.filled.add(record(day, seconds(2013, 5, day), description, watt=watt))
        self.program = self.start_with_bars(self.filled, WATT)

    def open_edit(self):
        self.program.choose("Programm", "Trainingsdateien bearbeiten")
        return self.program.window(EDIT)

    def open_many(self):
        self.program.choose("Übersicht", "Dateien öffnen")
        return self.program.window(CHOOSE)

    def open_one(self):
        self.program.choose("Training", "Datei öffnen")
        return self.program.window(CHOOSE)

    def days(self, window):
        return [int(row[0][:2]) for row in self.program.list_rows(window)]

    def buttons(self, window):
        return [node.name for node, role in window.walk() if role == "push button"]

    def expect_chosen_watt(self, watt):
        """Expects a selection of the one training that has this value."""
        self.program.choose("Übersicht", "Watt", "Grenzwerte")
        dialog = self.program.window("Grenzwerte")
        texts = [self.program.control(dialog, "text", name).text for name in ("Min:", "Max:")]
        self.assertEqual(texts, [f"{watt:.0f},00"] * 2)
        self.program.press("Escape")
        self.program.wait_gone(dialog)

    def leave(self, window, button):
        self.program.push(window, button)
        self.program.wait_gone(window)

    def test_arrows_walk_and_wrap(self):
        program = self.program
        for open_list in (self.open_edit, self.open_many, self.open_one):
            window = open_list()
            self.assertEqual(self.days(window), [5, 4, 3, 2, 1])
            program.wait_chosen(window, [])
            for row in (0, 1, 2, 3, 4, 0):
                program.press("Down")
                program.wait_chosen(window, [row])
            for row in (4, 3):
                program.press("Up")
                program.wait_chosen(window, [row])
            if open_list == self.open_edit:
                self.picture("edit")
                self.leave(window, "Fertig")
            else:
                self.leave(window, "Abbruch")

    def test_return_takes_the_highlighted_training_alone(self):
        program = self.program
        window = self.open_many()
        program.press("Return")  # nothing is highlighted, nothing happens
        program.press("Up", "Up")
        program.wait_chosen(window, [3])
        program.press("Return")
        program.wait_gone(window)
        self.expect_chosen_watt(140)

        window = self.open_edit()
        program.press("Down")
        program.wait_chosen(window, [0])
        program.press("KP_Enter")
        program.wait_gone(window)
        self.expect_chosen_watt(110)

    def test_a_double_click_takes_its_training_alone(self):
        program = self.program
        for row, watt in ((1, 160), (4, 100)):
            window = self.open_many()
            program.desktop.click(program.list_row(window, row), times=2)
            program.wait_gone(window)
            self.expect_chosen_watt(watt)

    def test_sorting_by_description_and_back(self):
        program = self.program
        for open_list in (self.open_edit, self.open_many, self.open_one):
            window = open_list()
            program.push(window, "Sortieren")
            # Descending from below, without regard to case. The last training of all has a
            # description of its own and is sorted by date among the group before it.
            wait_until(lambda: self.days(window) == [3, 2, 1, 5, 4], lambda: f"{self.days(window)}")
            if open_list == self.open_edit:
                self.picture("sorted")
            program.push(window, "Sortieren")
            wait_until(lambda: self.days(window) == [5, 4, 3, 2, 1], lambda: f"{self.days(window)}")
            self.leave(window, "Fertig" if open_list == self.open_edit else "Abbruch")

    def test_a_row_means_the_training_that_it_shows_however_sorted(self):
        program = self.program
        window = self.open_many()
        program.push(window, "Sortieren")
        wait_until(lambda: self.days(window) == [3, 2, 1, 5, 4], lambda: f"{self.days(window)}")
        program.desktop.click(program.list_row(window, 4), times=2)
        program.wait_gone(window)
        self.expect_chosen_watt(160)

    def test_the_buttons_of_each_mode(self):
        window = self.open_edit()
        self.assertEqual(
            self.buttons(window),
            ["Fertig", "Sicherheitskopie", "Löschen", "Nummerieren", "Sortieren"],
        )
        self.leave(window, "Fertig")
        window = self.open_many()
        self.assertEqual(
            self.buttons(window), ["Alle", "Abbruch", "Jahresfrist", "Monatsfrist", "Sortieren"]
        )
        self.picture("many")
        self.leave(window, "Abbruch")
        window = self.open_one()
        self.assertEqual(self.buttons(window), ["Auswahl", "Abbruch", "Sortieren"])
        self.picture("one")
        self.leave(window, "Abbruch")

    def test_done_without_a_choice_takes_all_and_with_one_takes_that(self):
        program = self.program
        window = self.open_edit()
        program.desktop.click(program.list_row(window, 0))
        program.desktop.click(program.list_row(window, 2), holding="shift")
        program.wait_chosen(window, [0, 1, 2])
        self.leave(window, "Fertig")
        program.wait_bars(fractions([120, 160, 110]))
        self.leave(self.open_edit(), "Fertig")
        program.wait_bars(fractions(WATT))
        # Closing the window is no cancelling here.
        program.close(self.open_edit())
        program.window()
        program.wait_bars(fractions(WATT))

    def test_keys_alone_choose_rows_and_press_buttons(self):
        program = self.program
        window = self.open_many()
        program.press("Down")
        program.wait_chosen(window, [0])
        program.press("shift+Down")
        program.wait_chosen(window, [0, 1])
        button = program.control(window, "push button", "Alle")
        program.press("Tab")
        wait_until(lambda: button.has("focused"), "the first button by Tab")
        program.press("space")
        program.wait_gone(window)
        program.wait_bars(fractions([160, 110]))

    def test_a_long_list_scrolls_to_the_highlighted_row(self):
        long = self.card("long")
        for number in range(60):
            long.add(record(number + 1, seconds(2013, 1, 1) + number * 86400, f"Nr {number}"))
        program = self.start(long.root)
        program.choose("Training", "Datei öffnen")
        window = program.window(CHOOSE)
        bottom = program.list_row(window, 59)

        def is_inside(cell):
            _, top, _, height = program.list_of(window).extents
            _, y, _, cell_height = cell.extents
            return top <= y and y + cell_height <= top + height

        self.assertFalse(is_inside(bottom))
        program.press("Up")
        wait_until(lambda: bottom.has("selected") and is_inside(bottom), "the bottom row")
        self.picture("scrolled")
        program.press("Down")
        first = program.list_row(window, 0)
        wait_until(lambda: first.has("selected") and is_inside(first), "the top row")
