"""The first start: without a tree, with a chosen card, with a wrong one, from the card itself."""

import os
import shutil

from card import TREE, record, seconds
from chart import fractions
from journey import Journey

REQUESTER = "Wähle die SD-Karte bzw. das Daum-Verzeichnis"
CHOOSE = ("Programm", "Daum Verzeichnis wählen")
WATT = [110.0, 150.0, 130.0]


class FirstStart(Journey):
    def filled_card(self):
        card = self.card()
        for i, watt in enumerate(WATT):
            card.add(record(i + 1, seconds(2013, 3, i + 1), watt=watt))
        return card

    def shows_card(self, program):
        program.tick("Übersicht", "Watt", "Balken")
        program.wait_bars(fractions(WATT))

    def test_without_a_card_the_window_opens_empty_and_locked(self):
        start = self.directory("start")
        program = self.start(start)
        program.window(REQUESTER)
        self.picture("requester")
        program.cancel(REQUESTER)

        program.window()
        program.wait_no_chart()
        # Nine tenths of the screen's 1280 and seven of its 800 pixels.
        self.assertEqual(program.chart_place()[2:], (1152, 560))
        for menu in ("Übersicht", "Training"):
            for item in ("Balken", "Punktewolke", "Trend", "Grenzwerte", "Farbe"):
                self.assertFalse(program.is_enabled(menu, "Watt", item), (menu, item))
        self.assertTrue(program.is_enabled("Übersicht", "Dateien öffnen"))
        self.picture("empty window")

        program.press("Escape")
        self.assertEqual(program.wait_end(), 0)
        self.assertEqual(os.listdir(start), [])

    def test_a_chosen_card_is_read_and_its_values_can_be_ticked(self):
        card = self.filled_card()
        program = self.start(self.directory("start"))
        program.choose_path(REQUESTER, card.root)
        program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")
        self.assertTrue(program.is_enabled("Übersicht", "KJoule", "Linie"))
        self.assertFalse(program.is_enabled("Training", "Watt", "Balken"))
        self.shows_card(program)
        self.picture("chosen card")

    def test_a_wrong_directory_is_refused_and_another_can_be_chosen(self):
        card = self.filled_card()
        program = self.start(self.directory("start"))
        program.choose_path(REQUESTER, self.directory("no card"))
        text = (
            "Die Datei 'data/result/ergo_bike/dictionary.2' wurde im gewählten Verzeichnis nicht"
            " gefunden!"
        )
        self.says(program, "Dateifehler", text)
        program.window()
        self.assertFalse(program.is_enabled("Übersicht", "Watt", "Balken"))

        program.choose(*CHOOSE)
        program.choose_path(REQUESTER, card.root)
        program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")
        self.shows_card(program)

        # A wrong one afterwards leaves what there is.
        program.choose(*CHOOSE)
        program.choose_path(REQUESTER, self.directory("no card"))
        self.says(program, "Dateifehler", text)
        program.window()
        program.wait_bars(fractions(WATT))

    def test_another_card_replaces_the_first(self):
        card = self.filled_card()
        other = self.card("other")
        other.add(record(1, seconds(2013, 3, 1), watt=100))
        other.add(record(2, seconds(2013, 3, 2), watt=300))
        program = self.start(card.root)
        self.shows_card(program)
        program.choose(*CHOOSE)
        program.choose_path(REQUESTER, other.root)
        program.wait_bars([0, 1])

    def test_the_program_on_a_card_finds_that_card_from_anywhere(self):
        card = self.filled_card()
        program = self.start(self.directory("elsewhere"), shutil.copy(self.executable, card.root))
        program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")
        self.shows_card(program)

    def test_the_program_starts_within_the_tree(self):
        card = self.filled_card()
        program = self.start(os.path.join(card.root, TREE))
        program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")
        self.shows_card(program)

    def test_an_index_without_a_whole_entry_is_reported(self):
        card = self.filled_card()
        card.write("dictionary.2", card.index[:151])
        program = self.start(card.root)
        self.says(
            program,
            "Dateifehler",
            "Die Datei 'data\\result\\ergo_bike\\dictionary.2' ist leer oder wurde nicht gefunden!",
        )
        program.window()
        program.wait_no_chart()

    def test_arguments_say_nothing_not_even_the_toolkits_own(self):
        other = self.card("other")
        other.add(record(1, seconds(2013, 3, 1), watt=100))
        card = self.filled_card()
        program = self.start(
            card.root,
            arguments=["--help", "--version", "-platform", "offscreen", "-stylesheet", "none",
                       "-qmljsdebugger", other.root],
        )
        self.shows_card(program)
        program.press("Escape")
        self.assertEqual(program.wait_end(), 0)
