// The settings file of a program that has just started in a directory of its own.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "charts/chart_state.h"
#include "charts/values/chart_options.h"
#include "charts/values/value_catalogue.h"
#include "device/device_state.h"
#include "services/menus.h"
#include "services/text/latin1.h"
#include "settings/saving.h"
#include "settings/settings_state.h"
#include "settings/start_settings.h"
#include "tests/app/app_test.h"
#include "tests/builders/file_bytes.h"

namespace settings_tests {

class SettingsFile : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        std::vector<services::MenuRow> rows;
        for (const int first : {0, 50}) {
            const int count = first == 0 ? charts::overviewValueCount : charts::trainingValueCount;
            for (int value = first; value < first + count; ++value) {
                for (int base = 100; base <= 700; base += 100)
                    rows.push_back({services::MenuRowKind::checkItem, base + value, {}});
            }
        }
        services::buildMenuBar(services::mainWindow, rows);
        settings::loadStartSettings();
    }

    static void save() {
        using services::operator""_l1;
        stand_ins::expectMessage("Preferences"_l1,
                                 "Die aktuellen Einstellungen der Übersicht wurden als "
                                 "Starteinstellungen gespeichert!"_l1);
        settings::saveStartSettings();
    }
    static void reload() {
        using services::operator""_l1;
        stand_ins::expectMessage("Info"_l1, "Die Starteinstellungen wurden geladen!"_l1);
        settings::reloadStartSettings();
    }
    static void answerDeletion(bool yes) {
        using services::operator""_l1;
        stand_ins::world.questionAnswers.push_back(
            {services::Text("Starteinstellungen zurücksetzen"_l1),
             services::Text("Sollen die Starteinstellungen wirklich gelöscht werden?"_l1), yes});
    }

    std::string file() const { return builders::bytesOf(directory / "Einstellungen.dat"); }
    void write(const std::string& text) const {
        builders::writeBytes(directory / "Einstellungen.dat", text);
    }
    std::string programDirectory() const { return directory.string() + "/"; }

    // A new start of the program: nothing is left but the files.
    void startAgain() {
        std::filesystem::current_path(directory);
        charts::state = {};
        device::state = {};
        settings::state = {};
        charts::clearOptions(charts::ChartKind::overview);
        charts::clearOptions(charts::ChartKind::training);
        settings::loadStartSettings();
        settings::applyMenuPreselection();
    }

    std::size_t filesInDirectory() const { return builders::namesIn(directory).size(); }
};

}  // namespace settings_tests
