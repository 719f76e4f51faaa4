#include "app/menu_tree.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "charts/values/value_catalogue.h"
#include "tests/app/app_test.h"

namespace {

using services::MenuRow;
using services::MenuRowKind;

// The tree as lines of text: "+" opens a title, ">" a submenu, "-" is a separator.
std::vector<std::string> lines(const std::vector<MenuRow>& rows) {
    std::vector<std::string> result;
    for (const MenuRow& row : rows) {
        const std::string text = services::latin1ToUtf8(row.text);
        switch (row.kind) {
            case MenuRowKind::title:
                result.push_back("+ " + text);
                break;
            case MenuRowKind::submenuStart:
                result.push_back("> " + text);
                break;
            case MenuRowKind::submenuEnd:
                result.push_back("<");
                break;
            case MenuRowKind::separator:
                result.push_back("-");
                break;
            case MenuRowKind::item:
                result.push_back(std::to_string(row.number) + " " + text);
                break;
            case MenuRowKind::checkItem:
                result.push_back(std::to_string(row.number) + " [" + text + "]");
                break;
        }
    }
    return result;
}

std::vector<std::string> valueLines(const std::string& name, int value) {
    const auto number = [value](int base) { return std::to_string(base + value); };
    return {
        "> " + name,
        number(100) + " [Balken]",
        number(200) + " [Linie]",
        number(300) + " [Kreise]",
        number(400) + " [Quadrate]",
        "-",
        number(500) + " [Punktewolke]",
        "-",
        number(600) + " [Mittelwert]",
        number(700) + " [Trend]",
        "-",
        number(800) + " Grenzwerte",
        number(900) + " Farbe",
        "<",
    };
}

void append(std::vector<std::string>& to, const std::vector<std::string>& from) {
    to.insert(to.end(), from.begin(), from.end());
}

TEST(MenuTree, ItemsThatMayBeDisabledSayWhichItemEnablesThem) {
    std::map<int, std::string> hints;
    for (const MenuRow& row : app::menuRows()) {
        if (!row.hint.empty()) hints[row.number] = services::latin1ToUtf8(row.hint);
    }
    EXPECT_EQ(9U * (20 + 22), hints.size());
    EXPECT_EQ("Zuerst im Menü 'Übersicht' den Punkt 'Dateien öffnen' wählen.", hints[100]);
    EXPECT_EQ("Zuerst im Menü 'Training' den Punkt 'Datei öffnen' wählen.", hints[971]);
    for (const auto& [item, hint] : hints)
        EXPECT_EQ(hints[item % 100 < 50 ? 100 : 971], hint) << item;
}

TEST(MenuTree, IsTheWholeTreeFromTopToBottom) {
    const std::vector<std::string> overviewNames = {"Watt / Puls / RPM * 100",
                                                    "Watt / Puls",
                                                    "RPM / Puls",
                                                    "Watt",
                                                    "Unbekannt 1",
                                                    "Puls",
                                                    "RPM",
                                                    "km/h",
                                                    "KJoule / Minute",
                                                    "Fahrzeit",
                                                    "Strecke",
                                                    "Max. km/h",
                                                    "Unbekannt 2",
                                                    "Max. RPM",
                                                    "Unbekannt 3",
                                                    "Max. Joule / Minute",
                                                    "KJoule",
                                                    "Unbekannt 4",
                                                    "Unbekannt 5",
                                                    "Unbekannt 6"};
    const std::vector<std::string> trainingNames = {"Watt / Puls / RPM * 100",
                                                    "Watt / Puls",
                                                    "RPM / Puls",
                                                    "km",
                                                    "KJolue",
                                                    "Steigung",
                                                    "Newtonmeter",
                                                    "RPM",
                                                    "km/h",
                                                    "Watt",
                                                    "Gang",
                                                    "Gerät",
                                                    "Puls",
                                                    "Pulszeit 1",
                                                    "Pulszeit 2",
                                                    "Pulszeit 3",
                                                    "Pulszeit 4",
                                                    "Pulszeit 5",
                                                    "Pulszeit 6",
                                                    "Trainingsart",
                                                    "Pulsart",
                                                    "Trainingswert"};
    std::vector<std::string> expected = {
        "+ Programm",
        "1 Daum Verzeichnis wählen",
        "2 Verzeichnis der Sicherheitskopie wählen",
        "-",
        "3 Trainingsdateien bearbeiten",
        "-",
        "4 Starteinstellungen speichern",
        "5 Starteinstellungen erneut laden",
        "6 Starteinstellungen löschen",
        "+ Übersicht",
        "20 Ausgabe löschen",
        "21 Dateien öffnen",
        "22 Daten exportieren",
        "-",
    };
    for (int i = 0; i < 20; ++i) {
        append(expected, valueLines(overviewNames[static_cast<std::size_t>(i)], i));
        if (i == 2) expected.push_back("-");
    }
    append(expected,
           {"+ Training", "30 Ausgabe löschen", "31 Datei öffnen", "32 Daten exportieren", "-"});
    for (int i = 0; i < 22; ++i) {
        append(expected, valueLines(trainingNames[static_cast<std::size_t>(i)], 50 + i));
        if (i == 2) expected.push_back("-");
    }
    append(expected, {"+ Info", "1000 Version", "1001 Programm"});
    EXPECT_EQ(expected, lines(app::menuRows()));
}

TEST(MenuTree, NumbersEveryItemOnceAndStaysWithinItsRanges) {
    std::set<int> numbers;
    for (const MenuRow& row : app::menuRows()) {
        if (row.kind != MenuRowKind::item && row.kind != MenuRowKind::checkItem) continue;
        EXPECT_TRUE(numbers.insert(row.number).second) << row.number;
        EXPECT_FALSE(row.number >= 920 && row.number <= 949) << row.number;
        EXPECT_FALSE(row.number >= 972 && row.number < 1000) << row.number;
        EXPECT_LE(row.number, 1001);
    }
}

class BuiltMenus : public AppTest {};

TEST_F(BuiltMenus, TakeTheirMarksFromTheSettingsAndDisableEveryOption) {
    settings::state.menuPreselection[103] = 1;
    settings::state.menuPreselection[153] = 7;  // anything but 0 counts
    settings::state.menuPreselection[203] = -1;
    app::buildMenus();
    EXPECT_TRUE(services::itemMark(103));
    EXPECT_TRUE(services::itemMark(153));
    EXPECT_TRUE(services::itemMark(203));
    EXPECT_FALSE(services::itemMark(104));
    for (int value = 0; value < charts::valueNumberLimit; ++value) {
        if (!charts::valueTexts(value)) continue;
        for (int base = 100; base <= 900; base += 100) {
            EXPECT_FALSE(services::itemEnabled(base + value)) << base + value;
        }
    }
    EXPECT_TRUE(services::itemEnabled(1));
    EXPECT_TRUE(services::itemEnabled(21));
    EXPECT_TRUE(services::itemEnabled(1001));
}

TEST_F(BuiltMenus, NumbersWithoutAnItemCannotBeMarked) {
    settings::state.menuPreselection[130] = 1;
    settings::state.menuPreselection[772] = 1;
    app::buildMenus();
    EXPECT_FALSE(services::itemMark(130));
    EXPECT_FALSE(services::itemMark(772));
}

TEST_F(BuiltMenus, TheFirstMarkedOverviewItemIsFoundByValueBeforeOption) {
    app::buildMenus();
    EXPECT_EQ(0, app::firstMarkedOverviewItem());
    services::setItemMark(150, true);  // a training option does not count
    EXPECT_EQ(0, app::firstMarkedOverviewItem());
    services::setItemMark(105, true);
    services::setItemMark(704, true);
    EXPECT_EQ(704, app::firstMarkedOverviewItem());
    services::setItemMark(204, true);
    EXPECT_EQ(204, app::firstMarkedOverviewItem());
}

}  // namespace
