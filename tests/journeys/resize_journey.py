"""Resizing the main window, also below its smallest size."""

import os

from chart import fractions
from journey import Journey
from waiting import wait_until

WATT = [100.0, 140.0, 120.0, 160.0]


class Resize(Journey):
    def setUp(self):
        super().setUp()
        self.filled = self.card_of(WATT)
        self.program = self.start_with_bars(self.filled, WATT)

    def size(self):
        return self.program.chart_place()[2:]

    def drag_corner(self, width, height):
        """Drags the window's lower right corner as if the chart were to get this size, which it
        does as far as the window can be so small."""
        x, y, old_width, old_height = self.program.chart_place()
        corner = (x + old_width - 3, y + old_height + 2)  # the grip below the window
        end = (corner[0] + width - old_width, corner[1] + height - old_height)
        size = (max(width, 256), max(height, 256))
        self.program.desktop.drag(corner, end, lambda: self.size() == size)
        return self.resized(*size)

    def resized(self, width, height):
        wait_until(lambda: self.size() == (width, height), lambda: f"{self.size()}")
        # The chart is drawn anew for the size, with its texts around it.
        chart = self.program.wait_bars(fractions(WATT))
        self.assertEqual(chart.picture.size, (width, height))
        return chart

    def saved_size(self):
        self.program.choose("Programm", "Starteinstellungen speichern")
        self.program.read_message("Preferences")
        self.program.window()
        with open(os.path.join(self.filled.root, "Einstellungen.dat"), "rb") as file:
            lines = file.read().decode("latin-1").split("\n")
        return lines[1:3]

    def test_smaller_and_larger(self):
        chart = self.drag_corner(801, 423)
        self.picture("smaller")
        margins = 801 - chart.width, 423 - chart.height
        chart = self.drag_corner(1200, 700)
        # The margins depend on the font alone.
        self.assertEqual((1200 - chart.width, 700 - chart.height), margins)
        self.assertEqual(self.saved_size(), ["WindowBreite = 1200", "WindowHöhe = 700"])

    def test_not_below_256_pixels(self):
        self.assertEqual(self.drag_corner(100, 400).picture.size, (256, 400))
        self.assertEqual(self.drag_corner(300, 90).picture.size, (300, 256))
        self.assertEqual(self.drag_corner(20, 20).picture.size, (256, 256))
        self.picture("smallest")
        self.assertEqual(self.saved_size(), ["WindowBreite = 256", "WindowHöhe = 256"])

    def test_maximised_and_back(self):
        x, y, width, height = self.program.chart_place()
        title_bar = (x + width // 2, y - 30)
        self.program.desktop.click(title_bar, times=2)
        wait_until(lambda: self.size()[0] > 1270, lambda: f"{self.size()}")
        chart = self.program.wait_bars(fractions(WATT))
        self.assertGreater(chart.picture.size[1], 700)
        self.picture("maximised")
        self.program.desktop.click((x + width // 2, 10), times=2)
        self.resized(width, height)
