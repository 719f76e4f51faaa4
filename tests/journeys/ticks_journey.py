"""Ticking, unticking and clearing values of the overview, with the pointer and with keys."""

from card import record, seconds
from chart import fractions
from journey import Journey

WATT = [100.0, 140.0, 120.0, 160.0, 110.0]
KJOULE = [400.0, 200.0, 300.0, 250.0, 350.0]
WATT_COLOUR = (64, 64, 64)
KJOULE_COLOUR = (200, 64, 32)
TREND_COLOUR = (255, 0, 0)


class Ticks(Journey):
    def setUp(self):
        super().setUp()
        self.filled = self.card()
        for i, (watt, kjoule) in enumerate(zip(WATT, KJOULE, strict=True)):
            self.filled.add(record(i + 1, seconds(2013, 5, i + 1, 18), watt=watt, kjoule=kjoule))
        self.program = self.start(self.filled.root)
        self.program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")

    def test_ticked_values_are_drawn_and_unticked_ones_vanish(self):
        program = self.program
        program.tick("Übersicht", "Watt", "Balken")
        program.wait_bars(fractions(WATT))
        trainings = "Übersicht, 5 Trainings vom 01.05.2013 bis 05.05.2013: "
        program.wait_told(trainings + "Watt (Balken) von 100 bis 160.")
        self.picture("bars")

        program.tick("Übersicht", "KJoule", "Kreise")
        chart = program.wait_chart(
            lambda chart: KJOULE_COLOUR in chart.colours(), "circles of the second value"
        )
        for i, value in enumerate(KJOULE):
            self.assertEqual(chart.circle(i, 5, value, 200, 400), KJOULE_COLOUR, i)
        self.assertTrue(program.is_marked("Übersicht", "Watt", "Balken"))
        program.wait_told(
            trainings + "Watt (Balken) von 100 bis 160; KJoule (Kreise) von 200 bis 400."
        )
        self.picture("two values")

        program.tick("Übersicht", "Watt", "Balken")
        chart = program.wait_chart(
            lambda chart: chart.colours() <= {(255, 255, 255), (200, 200, 200), KJOULE_COLOUR},
            "circles alone",
        )
        self.assertEqual(chart.circle(0, 5, 400, 200, 400), KJOULE_COLOUR)

    def test_styles_of_one_value_lie_on_each_other(self):
        program = self.program
        for style in ("Linie", "Kreise", "Quadrate", "Mittelwert", "Trend"):
            program.tick("Übersicht", "Watt", style)
        chart = program.wait_chart(
            lambda chart: TREND_COLOUR in chart.colours(), "the trend's red line"
        )
        for i, value in enumerate(WATT):
            self.assertEqual(chart.circle(i, 5, value, 100, 160), WATT_COLOUR, i)
        mean = round(chart.y_of(sum(WATT) / 5, 100, 160))
        row = [chart.pixels[x, mean] for x in range(chart.left, chart.left + chart.width - 2)]
        self.assertGreater(row.count(WATT_COLOUR), 0.9 * len(row))
        self.picture("all styles")

    def test_clearing_takes_every_mark_and_leaves_the_frame(self):
        program = self.program
        ticked = [("Watt", "Balken"), ("KJoule", "Linie"), ("Puls", "Punktewolke"),
                  ("Watt", "Trend")]
        for names in ticked:
            program.tick("Übersicht", *names)
        # All pulses are the same: a cloud of one point, a value without a height.
        program.choose("Übersicht", "Ausgabe löschen")
        program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")
        for names in ticked:
            self.assertFalse(program.is_marked("Übersicht", *names), names)
        self.picture("cleared")

    def test_menus_work_by_keys_alone(self):
        program = self.program
        bar = program.window().find("menu bar")
        titles = [title.name for title in bar.children]
        self.assertEqual(titles, ["Programm", "Übersicht", "Training", "Info"])
        program.choose_by_keys("Übersicht", "KJoule", "Balken")
        program.wait_bars(fractions(KJOULE))
        self.assertTrue(program.is_marked("Übersicht", "KJoule", "Balken"))
        program.choose_by_keys("Übersicht", "KJoule", "Balken")
        program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")
