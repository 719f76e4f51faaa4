#include "app/help_text.h"

#include <iterator>

namespace app {

using services::TextView;
using services::operator""_l1;

namespace {

// Kept as its readers know it: with its slips of the pen, its two sections (4c), its lines of
// blanks and the limits that it counts among the saved settings.
constexpr TextView helpLines[] = {
    "(1) 'Sinn und Zweck'"_l1,
    "  Dieses Programm dient zur grafischen Ausgabe und zur Verwaltung von Trainingsergebnissen"_l1,
    "  eines Daum Premium 8i Ergometers."_l1,
    ""_l1,
    "(2) 'Aufbau der Daum SD-Karte'"_l1,
    "  Die Trainingsergebnisse befinden sich auf der SD-Karte im Verzeichnisbaum"_l1,
    "  'data/result/ergo_bike' bzw.'data\\result\\ergo_bike'"_l1,
    "  Die Dateinamen der Trainingsdateien bestehen aus einer 16-stelligen Hexadezimalzahl, sie"_l1,
    "  beinhalten die Einzelwerte eines Trainings."_l1,
    "  Die Datei 'dictionary.2' beinhaltet die Dateinamen und die Durchschnittswerte der"_l1,
    "  einzelnen Trainingsdateien."_l1,
    ""_l1,
    "(3) 'Programm'"_l1,
    " "_l1,
    "  (3a) 'Daum Verzeichnis wählen'"_l1,
    "    Wird das Programm von der Daum SD-Karte gestartet, ist eine Wahl des Daum Verzeichnisses nicht"_l1,
    "    notwendig. Ansonsten einVerzeichnis zu wählen, in dem sich der Verzeichnisbaum"_l1,
    "    'data/result/ergo_bike' bzw.'data\\result\\ergo_bike' befindet."_l1,
    ""_l1,
    "  (3b) 'Verzeichnis der Sicherheitskopie wählen'"_l1,
    "    Ein Laufwerk oder Verzeichnis in dem sich der Verzeichnisbaum"_l1,
    "    'data/result/ergo_bike' bzw.'data\\result\\ergo_bike' befindet. Ist der Verzeichnisbaum nicht vorhanden,"_l1,
    "    wird er vom Programm angelegt. Die Sicherheitskopie muss sich auf einen anderen Datenträger als das"_l1,
    "    Daum Verzeichnis befinden."_l1,
    ""_l1,
    "  (3c) Trainingsdateien bearbeiten"_l1,
    "    Öffnet ein Fenster mit dem Inhalt der Datei 'dictionary.2'"_l1,
    ""_l1,
    "    (3ca) 'Fertig' "_l1,
    "      Verlässt das Fenster"_l1,
    " "_l1,
    "    (3cb) 'Sortieren'"_l1,
    "      Zeigt die Daten entweder nach Entstehungsdatum oder nach Dateinamen sortiert an."_l1,
    " "_l1,
    "    (3cc) 'Löschen'"_l1,
    "      Löscht die zuvor markierten Dateien nach eine Sicherheitsabfrage und entfernt auch die Einträge"_l1,
    "      aus der Datei 'dictionary.2'"_l1,
    " "_l1,
    "    (3cd) 'Nummerieren'"_l1,
    "      Ändert die Dateinamen, wenn sich in der hexadezimalen Abfolge der Dateinamen eine Lücke befindet."_l1,
    "      Diese Option sollte, wenn überhaupt, nur mit Vorsicht benutzt werden, da es damit zu Namens-"_l1,
    "      überschneidungen mit der Sicherheitskopie kommen kann, was den Verlust von einzelnen Dateien"_l1,
    "      zur Folge hätte. Eine Sicherheitsabfrage weist darauf hin, sie erscheint nicht mehr, wenn die"_l1,
    "      Starteinstellungen nach der Abfrage gespeichert werden s.u."_l1,
    ""_l1,
    "    (3ce) 'Sicherheitskopie'"_l1,
    "      Dient zum Sichern und zum Archivieren der Daten. Müssen Daten von der SD-Karte aus Platzmangel"_l1,
    "      gelöscht werden, können sie vorher als Sicherheitskopie gespeichert werden. Neue Dateien werden"_l1,
    "      dabei in das Verzeichnis der Sicherheitskopie kopiert und die Datei 'dictionary.2' entsprechend"_l1,
    "      angepasst.  "_l1,
    ""_l1,
    "  (3d) 'Starteinstellungen speichern'"_l1,
    "    Speichert die aktuell aktiven Einstellungen als da sind:"_l1,
    "    Das Daum Verzeichnis"_l1,
    "    Das Verzeichnis der Sicherheitskopie"_l1,
    "    Die angewählten Grafiken von 'Übersicht' und 'Training'"_l1,
    "    Die Farben der Grafiken"_l1,
    "    Die Grenzwerte der Grafiken"_l1,
    "    Die Freischaltung der Nummerierung"_l1,
    "    Die Daten werden in der Datei 'Einstellungen.dat' gespeichert, vorher gespeichert Daten werden"_l1,
    "    überschrieben."_l1,
    ""_l1,
    "  (3e) 'Starteinstellungen erneut laden'"_l1,
    "    Alle Einstellungen werden auf die gespeicherten Starteinstellungen zurückgesetzt."_l1,
    ""_l1,
    "  (3f) 'Starteinstellungen löschen'"_l1,
    "    Löscht die Datei 'Einstellungen.dat' und mit ihr alle gespeicherten Daten."_l1,
    ""_l1,
    ""_l1,
    "(4) 'Übersicht'"_l1,
    ""_l1,
    "  (4a) 'Ausgabe löschen'"_l1,
    "    Löscht den Bildschirm und die Häkchen der grafische Auswahl"_l1,
    " "_l1,
    "  (4b) 'Dateien öffnen'"_l1,
    "    Öffnet alle bzw. die zur Auswahl markierten Dateien."_l1,
    ""_l1,
    "  (4c) 'Daten exportieren'"_l1,
    "    Erstellt aud den Trainingsdaten der gewählten Datei eine Textdatei mit der Endung '.csv'. Die"_l1,
    "    Datensätze werden mit einem Semikolon ';' getrennt."_l1,
    ""_l1,
    "  (4c) Es folgen drei vom Programm errechnete Ausgaben wobei Watt/Puls der Daum Fitnessanzeige dfv"_l1,
    "    entspricht."_l1,
    "    Anschließend kann man die einzelnen Werte grafisch ausgeben. Die Reihenfolge entspricht der Datei"_l1,
    "    'dictionary.2'"_l1,
    "    Bei der Ausgabe stehen links der Max. und Min. Wert. Unten das Datum des ersten und letzten"_l1,
    "    Trainings, die Gesamtzeit und die Anzahl der Trainings."_l1,
    ""_l1,
    ""_l1,
    "(5) 'Training'"_l1,
    ""_l1,
    "  (5a) 'Ausgabe löschen'"_l1,
    "    Löscht den Bildschirm und die Häkchen der grafischen Auswahl."_l1,
    "   "_l1,
    "  (5b) 'Dateie öffnen'"_l1,
    "    Öffnet die zur Auswahl markierte Datei."_l1,
    ""_l1,
    "  (5c) 'Daten exportieren'"_l1,
    "    Erstellt aud den Trainingsdaten der gewählten Datei eine Textdatei mit der Endung '.csv'. Die"_l1,
    "    Datensätze werden mit einem Semikolon ';' getrennt."_l1,
    " "_l1,
    "  (5d) Nach drei vom Programm errechnete Ausgaben folgen die Daten in der in der Trainingsdatei"_l1,
    "    abgespeicherten Reihenfolge."_l1,
    "    Bei der Ausgabe stehen links der Max. und Min. Wert. Unten das Datum und die Uhrzeit des"_l1,
    "    Trainings, in der Mitte die Beschreibung."_l1,
    ""_l1,
    ""_l1,
    "(6) 'Info'"_l1,
    "  Ausgabe der Versionsangabe und dieser Datei."_l1,
    " "_l1,
    "Viel Spaß!"_l1,
};
static_assert(std::size(helpLines) == helpLineCount);

}  // namespace

services::Text helpText() {
    services::Text text;
    for (const TextView line : helpLines) {
        if (!text.empty()) text += "\r\n";
        text += line;
    }
    return text;
}

}  // namespace app
