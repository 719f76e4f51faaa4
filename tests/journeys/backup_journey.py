"""The backup copy: to a fresh stick, to one that has grown, to where it must not go."""

import os

from card import INDEX, TREE, file_name, record, seconds, some_samples
from journey import Journey

LIST = "Trainingsdateien bearbeiten"
REQUESTER = "Wähle das Verzeichnis der Sicherheitskopie"
REPORT = "Dateien kopieren"
LEGEND = [
    "* = Die Datei ist bereits vorhanden.",
    "+ = Die Datei wurde kopiert.",
    "- = Die Datei konnte nicht kopiert werden.",
]


class Backup(Journey):
    def setUp(self):
        super().setUp()
        self.filled = self.card()
        self.entries = [
            record(0x20 + i, seconds(2013, 5, i + 1), f"Runde {i}", unknown5=i) for i in range(4)
        ]
        for i, entry in enumerate(self.entries[:3]):
            self.filled.add(entry, some_samples(2 + i))
        self.stick = self.other_drive()
        self.program = self.start(self.filled.root)

    def open_list(self):
        self.program.choose("Programm", "Trainingsdateien bearbeiten")
        return self.program.window(LIST)

    def begin(self, window):
        self.program.push(window, "Sicherheitskopie")

    def read_report(self, lines):
        report = self.program.window(REPORT)
        text = self.program.control(report, "text", REPORT).text
        self.assertEqual(text.splitlines(), LEGEND + lines)
        return report

    def leave(self, report):
        self.program.press("Escape")
        self.program.wait_gone(report)
        self.program.window(LIST)

    def expect_stick(self, numbers, index=None):
        tree = os.path.join(self.stick, TREE)
        files = {}
        for name in os.listdir(tree):
            with open(os.path.join(tree, name), "rb") as file:
                files[name] = file.read()
        expected = {file_name(0x20 + i): some_samples(2 + i) for i in numbers}
        expected[INDEX] = b"".join(self.entries[i] for i in numbers) if index is None else index
        self.assertEqual(files, expected)

    def lines(self, marks):
        return [f"{mark} {file_name(0x20 + i)} Runde {i}" for i, mark in enumerate(marks)]

    def test_a_fresh_stick_gets_everything_and_a_grown_one_what_is_new(self):
        before = self.filled.read(INDEX)
        window = self.open_list()
        self.begin(window)
        self.program.choose_path(REQUESTER, self.stick)
        report = self.read_report(self.lines("+++"))
        self.picture("fresh")
        self.leave(report)
        self.expect_stick(range(3))
        self.assertEqual(self.filled.read(INDEX), before)

        # The card grows by a training; the stick is known by now.
        self.filled.add(self.entries[3], some_samples(5))
        self.begin(window)
        report = self.read_report(self.lines("***+"))
        self.picture("grown")
        self.leave(report)
        self.expect_stick(range(4))
        rows = self.program.list_rows(window)
        self.assertEqual([row[1] for row in rows], ["Runde 3", "Runde 2", "Runde 1", "Runde 0"])

        # Nothing new, and nothing is written twice.
        self.begin(window)
        self.leave(self.read_report(self.lines("****")))
        self.expect_stick(range(4))

    def test_what_the_stick_has_is_never_replaced(self):
        tree = os.path.join(self.stick, TREE)
        os.makedirs(tree)
        for name, content in ((INDEX, self.entries[1] + b"end"), (file_name(0x22), b"older")):
            with open(os.path.join(tree, name), "wb") as file:
                file.write(content)
        window = self.open_list()
        self.begin(window)
        self.program.choose_path(REQUESTER, self.stick)
        self.leave(self.read_report(self.lines("+*-")))
        with open(os.path.join(tree, INDEX), "rb") as file:
            self.assertEqual(file.read(), self.entries[1] + b"end" + self.entries[0])
        with open(os.path.join(tree, file_name(0x22)), "rb") as file:
            self.assertEqual(file.read(), b"older")
        self.assertFalse(os.path.exists(os.path.join(tree, file_name(0x21))))

    def test_the_stick_can_be_chosen_before_and_is_saved(self):
        program = self.program
        program.choose("Programm", "Verzeichnis der Sicherheitskopie wählen")
        program.choose_path(REQUESTER, self.stick)
        program.window()
        tree = os.path.join(self.stick, TREE)
        self.assertEqual(os.listdir(tree), [])
        program.choose("Programm", "Starteinstellungen speichern")
        program.read_message("Preferences")
        program.window()
        program.press("Escape")
        self.assertEqual(program.wait_end(), 0)
        with open(os.path.join(self.filled.root, "Einstellungen.dat"), "rb") as file:
            self.assertIn(f"Sicherheitskopie = {tree}/".encode(), file.read().split(b"\n"))

        self.program = self.start(self.filled.root)
        self.begin(self.open_list())
        self.leave(self.read_report(self.lines("+++")))
        self.expect_stick(range(3))

    def test_the_drive_of_the_card_is_refused(self):
        program = self.program
        program.choose("Programm", "Verzeichnis der Sicherheitskopie wählen")
        program.choose_path(REQUESTER, self.directory("same drive"))
        self.says(
            program,
            "Fehler",
            "Das gewählte Laufwerk der Sicherheitskopie ist mit dem Laufwerk des Daum"
            " Verzeichnisses identisch!",
        )
        program.window()
        self.assertEqual(os.listdir(self.directory("same drive")), [])
        # The other way round: a card on the drive of the backup.
        program.choose("Programm", "Verzeichnis der Sicherheitskopie wählen")
        program.choose_path(REQUESTER, self.stick)
        os.mkdir(os.path.join(self.stick, "Karte"))
        program.choose("Programm", "Daum Verzeichnis wählen")
        program.choose_path("Wähle die SD-Karte bzw. das Daum-Verzeichnis", self.stick + "/Karte")
        program.read_message("Dateifehler")
        self.says(
            program,
            "Fehler",
            "Das gewählte Laufwerk des Daum Verzeichnisses ist mit dem Laufwerk der"
            " Sicherheitskopie identisch!",
        )
        program.window()
