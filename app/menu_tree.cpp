#include "app/menu_tree.h"

#include "charts/values/chart_options.h"
#include "charts/values/value_catalogue.h"
#include "services/windows.h"
#include "settings/start_settings.h"

namespace app {

using charts::Option;
using services::MenuRow;
using services::MenuRowKind;
using services::Text;
using services::TextView;
using services::operator""_l1;

namespace {

struct FixedRow {
    MenuRowKind kind;
    int number = 0;
    TextView text = {};
};

constexpr FixedRow programRows[] = {
    {MenuRowKind::title, 0, "Programm"_l1},
    {MenuRowKind::item, chooseDaumDirectoryItem, "Daum Verzeichnis wählen"_l1},
    {MenuRowKind::item, chooseBackupDirectoryItem, "Verzeichnis der Sicherheitskopie wählen"_l1},
    {MenuRowKind::separator},
    {MenuRowKind::item, editTrainingFilesItem, "Trainingsdateien bearbeiten"_l1},
    {MenuRowKind::separator},
    {MenuRowKind::item, saveSettingsItem, "Starteinstellungen speichern"_l1},
    {MenuRowKind::item, reloadSettingsItem, "Starteinstellungen erneut laden"_l1},
    {MenuRowKind::item, deleteSettingsItem, "Starteinstellungen löschen"_l1},
};

constexpr FixedRow overviewRows[] = {
    {MenuRowKind::title, 0, "Übersicht"_l1},
    {MenuRowKind::item, clearOverviewItem, "Ausgabe löschen"_l1},
    {MenuRowKind::item, openTrainingsItem, "Dateien öffnen"_l1},
    {MenuRowKind::item, exportTrainingsItem, "Daten exportieren"_l1},
    {MenuRowKind::separator},
};

constexpr FixedRow trainingRows[] = {
    {MenuRowKind::title, 0, "Training"_l1},
    {MenuRowKind::item, clearTrainingItem, "Ausgabe löschen"_l1},
    {MenuRowKind::item, openTrainingItem, "Datei öffnen"_l1},
    {MenuRowKind::item, exportTrainingItem, "Daten exportieren"_l1},
    {MenuRowKind::separator},
};

constexpr FixedRow infoRows[] = {
    {MenuRowKind::title, 0, "Info"_l1},
    {MenuRowKind::item, versionItem, "Version"_l1},
    {MenuRowKind::item, programItem, "Programm"_l1},
};

struct OptionRow {
    MenuRowKind kind;
    Option option = Option::bars;
};

// Every value's submenu.
constexpr OptionRow optionRows[] = {
    {MenuRowKind::checkItem, Option::bars},
    {MenuRowKind::checkItem, Option::line},
    {MenuRowKind::checkItem, Option::circles},
    {MenuRowKind::checkItem, Option::squares},
    {MenuRowKind::separator},
    {MenuRowKind::checkItem, Option::cloud},
    {MenuRowKind::separator},
    {MenuRowKind::checkItem, Option::mean},
    {MenuRowKind::checkItem, Option::trend},
    {MenuRowKind::separator},
    {MenuRowKind::item, Option::limits},
    {MenuRowKind::item, Option::colour},
};

void addFixedRows(std::vector<MenuRow>& rows, std::span<const FixedRow> fixed) {
    for (const FixedRow& row : fixed)
        rows.push_back({row.kind, row.number, Text(row.text)});
}

TextView hintOf(charts::ChartKind kind) {
    return kind == charts::ChartKind::overview
               ? "Zuerst im Menü 'Übersicht' den Punkt 'Dateien öffnen' wählen."_l1
               : "Zuerst im Menü 'Training' den Punkt 'Datei öffnen' wählen."_l1;
}

void addValueSubmenus(std::vector<MenuRow>& rows, charts::ChartKind kind) {
    // The values that the program derives stand apart from those of the device.
    constexpr int lastDerivedIndex = 2;
    const auto [first, end] = charts::valueRange(kind);
    for (int value = first; value < end; ++value) {
        rows.push_back({MenuRowKind::submenuStart, 0, Text(charts::valueTexts(value)->menuText)});
        for (const OptionRow& row : optionRows) {
            if (row.kind == MenuRowKind::separator) {
                rows.push_back({row.kind, 0, {}});
            } else {
                rows.push_back({row.kind, charts::optionItem(value, row.option),
                                Text(charts::optionText(row.option)), Text(hintOf(kind))});
            }
        }
        rows.push_back({MenuRowKind::submenuEnd, 0, {}});
        if (value - first == lastDerivedIndex) rows.push_back({MenuRowKind::separator, 0, {}});
    }
}

}  // namespace

std::vector<MenuRow> menuRows() {
    std::vector<MenuRow> rows;
    addFixedRows(rows, programRows);
    addFixedRows(rows, overviewRows);
    addValueSubmenus(rows, charts::ChartKind::overview);
    addFixedRows(rows, trainingRows);
    addValueSubmenus(rows, charts::ChartKind::training);
    addFixedRows(rows, infoRows);
    return rows;
}

void buildMenus() {
    services::buildMenuBar(services::mainWindow, menuRows());
    settings::applyMenuPreselection();
    charts::enableOptions(charts::ChartKind::overview, false);
    charts::enableOptions(charts::ChartKind::training, false);
}

int firstMarkedOverviewItem() {
    const auto [first, end] = charts::valueRange(charts::ChartKind::overview);
    for (int value = first; value < end; ++value) {
        for (int k = charts::firstMarkOption; k <= charts::lastMarkOption; ++k) {
            const int item = charts::optionItem(value, static_cast<Option>(k));
            if (services::itemMark(item)) return item;
        }
    }
    return 0;
}

}  // namespace app
