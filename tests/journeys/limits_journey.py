"""Limits of a value: typed, reset, dragged with the pointer, removed."""

import itertools

from chart import BLACK, fractions
from journey import Journey
from waiting import wait_until

WATT = [100.0, 140.0, 120.0, 160.0, 110.0]
DIALOG = "Grenzwerte"


class Limits(Journey):
    def setUp(self):
        super().setUp()
        self.filled = self.card_of(WATT)
        self.program = self.start_with_bars(self.filled, WATT)

    def shows(self, low=None, high=None):
        return self.program.wait_bars(fractions(WATT, low, high))

    def open(self):
        self.program.choose("Übersicht", "Watt", "Grenzwerte")
        return self.program.window(DIALOG)

    def fields(self, dialog):
        return [self.program.control(dialog, "text", name) for name in ("Min:", "Max:")]

    def texts(self, dialog):
        return [field.text for field in self.fields(dialog)]

    def type_limits(self, lower, upper):
        dialog = self.open()
        for field, text in zip(self.fields(dialog), (lower, upper), strict=True):
            self.program.fill_in(field, text)
        self.program.press("Return")
        self.program.wait_gone(dialog)

    def leave(self, dialog, button):
        self.program.push(dialog, button)
        self.program.wait_gone(dialog)

    def expect_limits(self, lower, upper):
        dialog = self.open()
        self.assertEqual(self.texts(dialog), [lower, upper])
        self.leave(dialog, "Abbruch")

    def test_typed_limits_fix_the_scale(self):
        program = self.program
        dialog = self.open()
        self.assertEqual(self.texts(dialog), ["100,00", "160,00"])
        lower, upper = self.fields(dialog)
        self.assertTrue(lower.has("focused"))
        self.assertEqual(lower.description, "Eingabe des minimalen Wertes > 0")
        self.assertEqual(upper.description, "Eingabe des maximalen Wertes")
        # The field's text is chosen: typing replaces it.
        program.desktop.type("112,5")
        wait_until(lambda: lower.text == "112,5", lambda: lower.text)
        program.press("Tab")
        wait_until(lambda: upper.has("focused"), "the second field by Tab")
        program.desktop.type("150.25")
        wait_until(lambda: upper.text == "150.25", lambda: upper.text)
        self.picture("typed")
        program.press("Return")
        program.wait_gone(dialog)
        self.shows(112.5, 150.25)
        self.picture("limited")
        self.expect_limits("112,50", "150,25")

    def test_leaving_without_accepting_changes_nothing(self):
        for leave in ("Abbruch", "Escape", "close"):
            dialog = self.open()
            self.program.fill_in(self.fields(dialog)[0], "130")
            if leave == "Abbruch":
                self.program.push(dialog, leave)
            elif leave == "Escape":
                self.program.press(leave)
            else:
                self.program.press("alt+F4")
            self.program.wait_gone(dialog)
            self.expect_limits("100,00", "160,00")
        self.shows()

    def test_limits_in_the_wrong_order_are_swapped(self):
        self.type_limits("150", "120")
        self.shows(120, 150)
        self.expect_limits("120,00", "150,00")

    def test_an_empty_field_or_no_number_removes_a_limit(self):
        self.type_limits("120", "150")
        self.shows(120, 150)
        self.type_limits("", "150")
        self.shows(None, 150)
        self.type_limits("110", "viel")
        # No number is 0, which is less than 110: the swapped pair is 0 and 110.
        self.shows(100, 110)

    def test_reset_shows_what_the_data_have(self):
        self.type_limits("120", "150")
        self.shows(120, 150)
        dialog = self.open()
        self.program.push(dialog, "Reset")
        wait_until(lambda: self.texts(dialog) == ["100,00", "160,00"], "the data's own limits")
        self.leave(dialog, "Abbruch")
        self.expect_limits("120,00", "150,00")

        dialog = self.open()
        self.program.push(dialog, "Reset")
        wait_until(lambda: self.texts(dialog) == ["100,00", "160,00"], "the data's own limits")
        self.leave(dialog, "Übernehmen")
        self.shows()
        self.expect_limits("100,00", "160,00")

    def band(self, column):
        """The rows between which the band lies in this column of the plot, or None."""
        chart = self.program.chart()
        rows = [
            y for y in range(chart.top, chart.top + chart.height)
            if chart.pixels[column, y] == BLACK
        ]
        return (rows[0], rows[-1] + 1) if rows else None

    def drag(self, start, end):
        """Draws a band between two rows of the chart; returns them, the upper one first."""
        desktop = self.program.desktop
        chart = self.program.chart()
        x, y, _, _ = self.program.chart_place()
        column = chart.left + 3  # left of the first bar
        place = x + chart.left + chart.width // 2
        desktop.click((place, y + start))
        # The band begins where the next tick of a timer finds the pointer, and is not to be seen
        # before the pointer moves again after that.
        forth = range(1, 21) if end > start else range(-1, -21, -1)
        way = itertools.cycle([*forth, *reversed(forth)])

        def move_on():
            desktop.move_pointer(place, y + start + next(way))
            return self.band(column)

        wait_until(move_on, "the band")
        desktop.move_pointer(place, y + end)
        band = wait_until(
            lambda: (band := self.band(column)) and end in band and band,
            lambda: f"the band to reach row {end}: {self.band(column)}",
        )
        self.assertTrue(any(edge - start in (0, *forth) for edge in band), (band, start))
        self.picture("band")
        desktop.click((place, y + end))
        wait_until(lambda: not self.band(column), "the band to go")
        return band

    def test_a_dragged_band_becomes_the_limits(self):
        chart = self.shows()
        lower, upper = 100, 160
        # Downwards, then upwards within what the first one left.
        for start, end in ((100, 300), (250, 200)):
            upper_row, lower_row = self.drag(chart.top + start, chart.top + end)
            per_row = (upper - lower) / chart.height
            upper -= per_row * (upper_row - chart.top)
            lower += per_row * (chart.height + chart.top - lower_row)
            self.shows(lower, upper)
        dialog = self.open()
        shown = [float(text.replace(",", ".")) for text in self.texts(dialog)]
        self.assertAlmostEqual(shown[0], lower, delta=0.0051)
        self.assertAlmostEqual(shown[1], upper, delta=0.0051)
        self.leave(dialog, "Abbruch")

        # After a dialog, clicks on the chart do nothing.
        x, y, _, _ = self.program.chart_place()
        self.program.desktop.click((x + 300, y + 300), button=3)
        self.expect_limits(*(f"{limit:.2f}".replace(".", ",") for limit in shown))

    def test_a_band_by_keys_becomes_the_limits(self):
        program = self.program
        height = self.shows().height
        program.window()
        program.press(*["ctrl+Down"] * 11)  # the first puts the mark at the top, others 10 rows on
        program.press("space")
        program.press(*["ctrl+Down"] * 20)
        program.press("shift+Up")
        self.picture("band")
        program.press("space")
        self.shows(100 + 60 / height * (height - 299), 160 - 60 / height * 100)
        program.press("Delete")
        self.shows()

    def test_a_right_click_removes_the_limits(self):
        self.type_limits("120", "150")
        self.shows(120, 150)
        self.program.tick("Übersicht", "Watt", "Balken")
        self.program.tick("Übersicht", "Watt", "Balken")
        self.shows(120, 150)
        x, y, _, _ = self.program.chart_place()
        self.program.desktop.click((x + 300, y + 300), button=3)
        self.shows()
        self.expect_limits("100,00", "160,00")
