"""Both exports, also over a longer file, cancelled, and to where nothing can be written."""

import os

from card import record, sample, seconds
from journey import Journey
from waiting import wait_until

LIST = "Wähle die Trainingsdatei"
REQUESTER = "Name und Ort der CSV-Datei wählen"

INDEX_HEADER = (
    "Trainingsart;Beschreibung;Startdatum;Enddatum;Watt;Unbekannt1;Puls;RPM;km/h;KJoule/Min.;"
    "Fahrzeit;Strecke;Max km/h;Unbekannt2;Max. RPM;Unbekannt3;Max. KJoule/Min.;KJoule;Unbekannt4;"
    "Unbekannt5;Unbekannt6\r\n"
)
TRAINING_HEADER = (
    "Elapsed Time (s);Distance (km);Phys. kJoule;Slope (%);NM;RPM;Speed (km/h);Watt;Gear;"
    "Device Active;Pulse;Pulse Type;Training Type;Training Value;Pulse Time 1;2;3;4;5;6\r\n"
)

FIRST = record(
    0x1A, seconds(2013, 5, 7, 18, 4, 9), "Hügel; früh", training_type=-2,
    end=seconds(2013, 5, 7, 18, 34, 59), watt=112.5, unknown1=2.5, pulse=0.0, rpm=805.0,
    speed=251.25, kjoule_per_minute=5.125, ride_time=1850, distance=15234.0, max_speed=31.375,
    unknown2=-7, max_rpm=98.5, unknown3=3.5, max_kjoule_per_minute=9.75, kjoule=310.5,
    unknown4=-1.5, unknown5=2147483647, unknown6=-2147483648,
)
# A pulse that was not measured counts as 1, ties go to the even digit.
FIRST_LINE = (
    "-2;Hügel; früh;07.05.2013 18:04:09;07.05.2013 18:34:59;112;2;1;80;25,12;5,12;"
    "0:30:50;152.34;31,38;-7;98;4;10;310;-2;2147483647;-2147483648\r\n"
)
SECOND = record(
    0x1B, seconds(2014, 12, 31, 23, 59, 59), "", ride_time=36000, end=seconds(2015, 1, 1, 9, 59, 59)
)
SECOND_LINE = (
    "1;;31.12.2014 23:59:59;01.01.2015 09:59:59;100;0;120;8;2,50;5,00;"
    "10:00:00;125.00;30,00;0;95;0;9;300;0;0;0\r\n"
)
THIRD = record(0x1C, seconds(2012, 2, 29, 0, 0, 0), "alt", ride_time=59)
THIRD_LINE = (
    "1;alt;29.02.2012 00:00:00;29.02.2012 00:00:59;100;0;120;8;2,50;5,00;"
    "0:00:59;125.00;30,00;0;95;0;9;300;0;0;0\r\n"
)

SAMPLES = b"".join([
    sample(0, slope=-25, torque=125, rpm=805, speed=251, watt=-1, gear=-128, active=0, pulse=-1,
           pulse_times=(1, 2, 3, 4, 5, 32767), training_type=3, pulse_type=4, training_value=0.25),
    sample(10, distance=1234.0, kjoule=2.5, slope=35, torque=135, rpm=795, speed=-5, watt=300,
           gear=12, active=1, pulse=140, pulse_times=(-1, 0, 0, 0, 0, 0), training_value=-1.75),
])
SAMPLE_LINES = (
    "0;0,000;0;-2;12;80;25,1;-1;-128;0;-1;4;3;0,2;1;2;3;4;5;32767\r\n"
    "10;1,234;2;4;14;80;-0,5;300;12;1;140;2;1;-1,8;-1;0;0;0;0;0\r\n"
)


class Export(Journey):
    zone = "Europe/Berlin"  # no date moves with it

    def setUp(self):
        super().setUp()
        self.filled = self.card()
        self.filled.add(FIRST, SAMPLES)
        self.filled.add(SECOND)
        self.filled.add(THIRD, sample(0))
        self.target = self.directory("Tabellen")
        self.program = self.start(self.filled.root)
        self.program.wait_chart(lambda chart: chart.is_empty(), "frame and grid alone")

    def file(self, name):
        return os.path.join(self.target, name)

    def read(self, name):
        with open(self.file(name), "rb") as file:
            return file.read().decode("latin-1")

    def write(self, name, text):
        with open(self.file(name), "wb") as file:
            file.write(text.encode("latin-1"))

    def begin(self, menu):
        self.program.choose(menu, "Daten exportieren")
        return self.program.window(LIST)

    def begin_index(self):
        window = self.begin("Übersicht")
        self.program.push(window, "Alle")
        self.program.wait_gone(window)

    def begin_training(self, row):
        window = self.begin("Training")
        self.program.desktop.click(self.program.list_row(window, row), times=2)
        self.program.wait_gone(window)

    def expect_default(self, name):
        requester = self.program.window(REQUESTER)
        field = wait_until(lambda: requester.find("text", state="focused"), "the name's field")
        wait_until(lambda: field.text == name, lambda: f"{name!r}, not {field.text!r}")

    def save(self, name, replace=False):
        requester = self.program.enter_path(REQUESTER, self.file(name))
        self.program.press("Return")
        if replace:
            # The requester's own question, before it returns.
            question = self.program.window(REQUESTER, role="alert message")
            self.assertIn(name, self.program.message_text(question))
            self.program.answer(question, "Ja")
        self.program.wait_gone(requester)
        self.says(self.program, "Info", f"Die Datei '{self.file(name)}' wurde gespeichert!")
        self.program.window()

    def test_all_trainings_into_a_new_file(self):
        self.begin_index()
        self.expect_default("Dicitonary.csv")
        self.picture("requester")
        self.save("neu.csv")
        self.assertEqual(self.read("neu.csv"), INDEX_HEADER + THIRD_LINE + FIRST_LINE + SECOND_LINE)
        # No extension is added, and only the chosen trainings are written.
        window = self.begin("Übersicht")
        self.program.desktop.click(self.program.list_row(window, 1))
        self.program.push(window, "Auswahl")
        self.program.wait_gone(window)
        self.save("Liste")
        self.assertEqual(self.read("Liste"), INDEX_HEADER + FIRST_LINE)
        self.assertEqual(sorted(os.listdir(self.target)), ["Liste", "neu.csv"])

    def test_a_longer_file_keeps_its_end(self):
        self.write("lang.csv", "x" * 2000 + "Ende")
        self.begin_index()
        self.save("lang.csv", replace=True)
        text = INDEX_HEADER + THIRD_LINE + FIRST_LINE + SECOND_LINE
        self.assertEqual(self.read("lang.csv"), text + "x" * (2000 - len(text)) + "Ende")

        self.begin_training(1)
        self.save("lang.csv", replace=True)
        shorter = TRAINING_HEADER + SAMPLE_LINES
        self.assertEqual(
            self.read("lang.csv"),
            shorter + text[len(shorter):] + "x" * (2000 - max(len(text), len(shorter))) + "Ende",
        )

    def test_one_training(self):
        self.begin_training(1)
        self.expect_default("0026  07_05_2013 18_04_09   31min   15,2km  Hügel; früh.csv")
        self.picture("requester")
        self.save("training.csv")
        self.assertEqual(self.read("training.csv"), TRAINING_HEADER + SAMPLE_LINES)

    def test_a_training_of_one_sample_is_not_exported(self):
        self.begin_training(2)
        window = self.begin("Training")  # nothing came in between
        self.program.press("Escape")
        self.program.wait_gone(window)
        self.assertEqual(os.listdir(self.target), [])

    def test_a_cancelled_requester_writes_nothing(self):
        self.begin_index()
        self.program.cancel(REQUESTER)
        self.begin_training(1)
        self.program.cancel(REQUESTER)
        self.program.window()
        self.assertEqual(os.listdir(self.target), [])
        self.assertEqual(
            self.filled.names(),
            ["000000000000001a", "000000000000001b", "000000000000001c", "dictionary.2"],
        )

    def test_a_file_that_cannot_be_created_is_reported(self):
        path = self.file("gibt es nicht/neu.csv")
        for begin in (self.begin_index, lambda: self.begin_training(1)):
            begin()
            self.program.choose_path(REQUESTER, path)
            self.says(
                self.program, "Dateifehler", f"Die Datei '{path}' konnte nicht geöffnet!"
            )
            self.program.window()
        self.assertEqual(os.listdir(self.target), [])

    def test_the_last_directory_is_offered_again(self):
        self.begin_index()
        self.save("eins.csv")
        self.begin_index()
        requester = self.program.window(REQUESTER)
        place = requester.find("combo box")
        wait_until(lambda: place.name == self.target, lambda: f"{self.target}: {place.name}")
        self.program.cancel(REQUESTER)
