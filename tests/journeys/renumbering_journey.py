"""Renumbering the training files, locked and unlocked."""

from card import file_name, record, seconds, some_samples
from journey import Journey

LIST = "Trainingsdateien bearbeiten"
REPORT = "Dateinamen neu nummerieren"
WARNING = (
    "Das Durchnummerieren ist nicht freigeschaltet! Beim Durchnummerieren kann es zu Konflikten"
    " mit den Dateinamen der Sicherheitskopie kommen. Soll das Durchnummerieren trotzdem"
    " freigeschaltet werden?"
)
QUESTION = "Sollen die Dateinamen neu durchnummeriert werden?"
DONE = "Die Dateinamen wurden neu durchnummeriert!"


class Renumbering(Journey):
    def setUp(self):
        super().setUp()
        self.filled = self.card()
        self.samples = {0x10: some_samples(3), 0x12: some_samples(4), 0x1F: some_samples(5)}
        self.entries = {}
        for day, number in enumerate(self.samples):
            self.entries[number] = record(number, seconds(2013, 5, day + 1), unknown5=number)
            self.filled.add(self.entries[number], self.samples[number])
        self.before = self.contents()

    def contents(self):
        return {name: self.filled.read(name) for name in self.filled.names()}

    def open_list(self):
        self.program = self.start(self.filled.root)
        self.program.choose("Programm", "Trainingsdateien bearbeiten")
        return self.program.window(LIST)

    def says_in_turn(self, *rows):
        for title, text, button in rows:
            self.says(self.program, title, text, button)

    def test_locked_it_warns_and_no_leaves_everything(self):
        window = self.open_list()
        for _ in range(2):  # it asks every time
            self.program.push(window, "Nummerieren")
            self.program.window("Sicherheitswarnung")
            self.picture("warning")
            self.says_in_turn(("Sicherheitswarnung", WARNING, "Nein"))
            self.program.window(LIST)
        self.assertEqual(self.contents(), self.before)

    def test_unlocked_it_asks_once_more_and_renumbers(self):
        window = self.open_list()
        program = self.program
        program.push(window, "Nummerieren")
        self.says_in_turn(
            ("Sicherheitswarnung", WARNING, "Ja"),
            ("Dateinamen neu durchnummerieren", QUESTION, "Nein"),
        )
        program.window(LIST)
        self.assertEqual(self.contents(), self.before)

        program.push(window, "Nummerieren")  # unlocked by now
        self.says_in_turn(
            ("Dateinamen neu durchnummerieren", QUESTION, "Ja"), ("Dateinamen", DONE, "OK")
        )
        report = program.window(REPORT)
        self.assertEqual(
            program.control(report, "text", REPORT).text.splitlines(),
            [
                "0000000000000010 = 0000000000000010",
                "0000000000000012 = 0000000000000011",
                "000000000000001f = 0000000000000012",
            ],
        )
        self.picture("report")
        program.press("Escape")
        program.wait_gone(report)
        program.window(LIST)
        self.assertEqual(
            [row[12] for row in program.list_rows(window)],
            [file_name(number) for number in (0x12, 0x11, 0x10)],
        )
        self.expect_files({0x10: 0x10, 0x12: 0x11, 0x1F: 0x12})

    def test_the_switch_is_saved_with_the_settings(self):
        with open(self.filled.root + "/Einstellungen.dat", "wb") as file:
            file.write(b"[Programmeinstellungen]\nNummerieren = 1\n")
        window = self.open_list()
        self.program.push(window, "Nummerieren")
        self.says_in_turn(
            ("Dateinamen neu durchnummerieren", QUESTION, "Ja"), ("Dateinamen", DONE, "OK")
        )
        self.program.close(self.program.window(REPORT))
        self.program.window(LIST)
        self.expect_files({0x10: 0x10, 0x12: 0x11, 0x1F: 0x12})

    def expect_files(self, names):
        expected = {file_name(new): self.samples[old] for old, new in names.items()}
        expected["dictionary.2"] = b"".join(
            new.to_bytes(8, "little") + self.entries[old][8:] for old, new in names.items()
        )
        self.assertEqual(self.contents(), expected)
