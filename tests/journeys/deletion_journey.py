"""Deleting trainings in the list."""

from card import record, seconds
from chart import fractions
from journey import Journey

LIST = "Trainingsdateien bearbeiten"
QUESTION = "Sollen die ausgewählten Dateien wirklich gelöscht werden?"
WATT = [100.0, 140.0, 120.0, 160.0, 110.0]


class Deletion(Journey):
    def setUp(self):
        super().setUp()
        self.filled = self.card()
        # Dates run against the file numbers; the second has no pulse, which a save must keep so.
        self.entries = [
            record(0xA0 + i, seconds(2013, 5, 20 - i), f"Training {i}", watt=watt,
                   pulse=0.0 if i == 1 else 120.0, unknown5=i)
            for i, watt in enumerate(WATT)
        ]
        for entry in self.entries:
            self.filled.add(entry)
        self.program = self.start_with_bars(self.filled, WATT[::-1])

    def open_list(self):
        self.program.choose("Programm", "Trainingsdateien bearbeiten")
        return self.program.window(LIST)

    def names(self, window):
        return [row[12] for row in self.program.list_rows(window)]

    def expect_untouched(self):
        self.assertEqual(self.filled.read("dictionary.2"), b"".join(self.entries))
        self.assertEqual(len(self.filled.names()), 6)

    def test_two_trainings_go_and_the_others_stay_as_they_were(self):
        program = self.program
        window = self.open_list()
        numbers = [f"{0xA0 + i:016x}" for i in range(5)]
        self.assertEqual(self.names(window), numbers)  # newest first
        program.desktop.click(program.list_row(window, 0))
        program.desktop.click(program.list_row(window, 3), holding="ctrl")
        program.wait_chosen(window, [0, 3])
        program.push(window, "Löschen")
        program.window("Lösche Datei")
        self.picture("question")
        self.says(program, "Lösche Datei", QUESTION, "Ja")
        program.window(LIST)
        self.assertEqual(self.names(window), [numbers[i] for i in (1, 2, 4)])
        self.picture("list")
        self.assertEqual(self.filled.names(), [numbers[i] for i in (1, 2, 4)] + ["dictionary.2"])
        self.assertEqual(
            self.filled.read("dictionary.2"), b"".join(self.entries[i] for i in (4, 2, 1))
        )
        program.push(window, "Fertig")
        program.wait_gone(window)
        program.wait_bars(fractions([110, 120, 140]))

    def test_no_keeps_everything(self):
        program = self.program
        window = self.open_list()
        program.desktop.click(program.list_row(window, 0))
        program.push(window, "Löschen")
        self.says(program, "Lösche Datei", QUESTION, "Nein")
        program.window(LIST)
        # Escape is no Yes, and neither is Return on the question as it opens.
        for key in ("Escape", "Return"):
            program.push(window, "Löschen")
            box, _ = program.message("Lösche Datei")
            program.press(key)
            program.wait_gone(box)
            program.window(LIST)
        self.expect_untouched()

    def test_nothing_chosen_is_told(self):
        program = self.program
        window = self.open_list()
        program.push(window, "Löschen")
        self.says(program, "Lösche Datei", QUESTION, "Ja")
        self.says(program, "Lösche Datei", "Es wurden keine Dateien zum Löschen ausgewählt!")
        program.window(LIST)
        self.expect_untouched()
