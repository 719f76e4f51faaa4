"""One training: from the list of all trainings to its chart."""

from card import record, sample, seconds
from chart import fractions
from journey import Journey

LIST = "Wähle die Trainingsdatei"
WATT = [90, 0, 150, 120, 210, 180]
WATT_COLOUR = (204, 204, 0)  # the tenth of the ten start colours


def samples(watts):
    return b"".join(sample(10 * i, watt=watt, rpm=700 + i) for i, watt in enumerate(watts))


class Training(Journey):
    zone = "America/St_Johns"  # no date moves with it

    def setUp(self):
        super().setUp()
        self.filled = self.card()
        # Not in the order of their dates.
        self.filled.add(
            record(3, seconds(2013, 5, 9, 7, 5, 3), "Bergfahrt", watt=130.0, ride_time=3725),
            samples([100, 200]),
        )
        self.filled.add(
            record(1, seconds(2013, 5, 7, 18, 4, 9), "Früh", watt=95.55, distance=15234.0),
            samples(WATT),
        )
        self.filled.add(record(2, seconds(2013, 5, 8, 6), "leer"), b"\0" * 43)
        self.program = self.start(self.filled.root)
        self.program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")

    def open_list(self):
        self.program.choose("Training", "Datei öffnen")
        return self.program.window(LIST)

    def test_a_double_click_opens_a_training_and_its_values_can_be_ticked(self):
        program = self.program
        self.assertFalse(program.is_enabled("Training", "Watt", "Balken"))
        window = self.open_list()
        rows = program.list_rows(window)
        # Newest first.
        self.assertEqual([row[12] for row in rows], [f"{number:016x}" for number in (3, 2, 1)])
        # The tie of 95.55 lies below as a 32-bit float.
        self.assertEqual(
            rows[2],
            ("07.05.2013 18:04:09", "Früh", " 15.2", "0:30:00", " 25.0", "095.6", "120.0",
             "  0.80", "  0.637", " 80.0", "     0.67", "  300", "0000000000000001"),
        )
        self.assertEqual(rows[0][3], "1:02:05")
        self.picture("list")

        program.desktop.click(program.list_row(window, 2), times=2)
        program.wait_gone(window)
        program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")
        self.assertTrue(program.is_enabled("Training", "Watt", "Balken"))
        self.assertFalse(program.is_enabled("Übersicht", "Watt", "Balken"))

        program.tick("Training", "Watt", "Balken")
        # What is not positive stands at the smallest positive value.
        program.wait_bars(fractions([90, 90, 150, 120, 210, 180]))
        program.wait_told(
            "Training Früh, 07.05.2013 18:04:09 bis 07.05.2013 18:34:09: Watt (Balken) von 90 bis"
            " 210."
        )
        program.tick("Training", "Watt", "Balken")
        program.tick("Training", "Watt", "Kreise")
        chart = program.wait_chart(lambda chart: WATT_COLOUR in chart.colours(), "circles")
        self.assertEqual(chart.circle(2, 6, 150, 90, 210), WATT_COLOUR)
        self.picture("chart")

        # Marks of a locked menu may still lie on the overview; the training is drawn alone.
        program.choose("Training", "Ausgabe löschen")
        program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")

    def test_keys_choose_a_training_too(self):
        program = self.program
        window = self.open_list()
        program.press("Up")
        program.wait_chosen(window, [2])
        program.press("Return")
        program.wait_gone(window)
        program.tick("Training", "Watt", "Balken")
        program.wait_bars(fractions([90, 90, 150, 120, 210, 180]))

    def test_the_chosen_row_is_taken_by_the_button(self):
        program = self.program
        window = self.open_list()
        program.desktop.click(program.list_row(window, 0))
        program.wait_chosen(window, [0])
        program.push(window, "Auswahl")
        program.wait_gone(window)
        program.tick("Training", "Watt", "Balken")
        program.wait_bars([0, 1])

    def test_only_one_row_can_be_chosen(self):
        program = self.program
        window = self.open_list()
        program.desktop.click(program.list_row(window, 0))
        program.wait_chosen(window, [0])
        program.desktop.click(program.list_row(window, 2), holding="ctrl")
        program.wait_chosen(window, [2])
        program.press("Escape")
        program.wait_gone(window)

    def test_a_file_without_a_sample_is_reported(self):
        program = self.program
        window = self.open_list()
        program.desktop.click(program.list_row(window, 1), times=2)
        program.wait_gone(window)
        self.says(
            program,
            "Dateifehler",
            "Die Datei 'data\\result\\ergo_bike\\0000000000000002' ist leer oder wurde nicht"
            " gefunden!",
        )
        program.window()

    def test_back_from_a_training_to_the_overview(self):
        program = self.program
        program.tick("Übersicht", "Watt", "Balken")
        expected = fractions([95.55, 100, 130])
        program.wait_bars(expected)
        window = self.open_list()
        program.desktop.click(program.list_row(window, 0), times=2)
        program.wait_gone(window)
        program.wait_chart(lambda chart: chart.is_empty(), "the training without a value")

        program.choose("Übersicht", "Dateien öffnen")
        program.push(program.window(LIST), "Alle")
        program.wait_bars(expected)
        self.assertTrue(program.is_enabled("Übersicht", "Watt", "Balken"))
        self.assertFalse(program.is_enabled("Training", "Watt", "Balken"))
