// Saving the start settings, and both exports.
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "charts/chart_state.h"
#include "device/device_state.h"
#include "export/csv_export.h"
#include "export/csv_text.h"
#include "services/text/latin1.h"
#include "settings/saving.h"
#include "settings/settings_state.h"
#include "tests/builders/file_bytes.h"
#include "tests/faults/command_faults.h"

namespace {

namespace fs = std::filesystem;
using namespace command_faults;
using builders::bytesIfThere;
using builders::namesIn;
using builders::writeBytes;
using services::operator""_l1;
using stand_ins::world;

class SettingsFaults : public CommandFaults {
  protected:
    void useSettings(int width) {
        device::state.programDirectory = directory.string() + "/";
        device::state.backupDirectory = "/stick/";
        settings::state.windowWidth = width;
        settings::state.windowHeight = 600;
        charts::state.colours = charts::builtInColours();
    }

    std::string path() const { return (directory / "Einstellungen.dat").string(); }

    // The bytes that a save of that width gives.
    std::string savedBytes(int width, bool onCard) {
        openCard();
        if (!onCard) fs::current_path(directory);
        useSettings(width);
        settings::saveStartSettings();
        return bytesIfThere(path());
    }

    void trySaving(const char* command, bool existing) {
        makeCard({{1}, {2}});
        const std::string newBytes = savedBytes(1234, true);
        const std::string newWithoutCard = savedBytes(1234, false);
        const std::string oldBytes = existing ? savedBytes(777, true) : "";
        ASSERT_NE(oldBytes, newBytes);
        tryFaults(
            command,
            [&] {
                for (const std::string& name : namesIn(directory)) {
                    if (name.starts_with("Einstellungen")) fs::remove(directory / name);
                }
                if (existing) writeBytes(path(), oldBytes);
                openCard();
                useSettings(1234);
            },
            [] { settings::saveStartSettings(); },
            [&] {
                EXPECT_EQ(fs::exists(path()) || existing, fs::exists(path()));
                const std::string bytes = bytesIfThere(path());
                // A card that could not be looked at is none.
                EXPECT_TRUE(bytes == oldBytes || bytes == newBytes || bytes == newWithoutCard)
                    << bytes;
                expectEveryTraining();
            });
    }
};

TEST_F(SettingsFaults, LeaveTheOldOnesOrTheNewOnes) {
    trySaving("save settings over old ones", true);
}

TEST_F(SettingsFaults, LeaveNoneOrTheNewOnes) {
    trySaving("save settings for the first time", false);
}

class ExportFaults : public CommandFaults {
  protected:
    void tryExporting(const char* command, const char* name, const std::string& expected,
                      const std::function<void()>& prepare, const std::function<void()>& run) {
        const fs::path target = directory / "export.csv";
        tryFaults(
            command,
            [&] {
                fs::remove(target);
                makeCard({{1, true}, {5, true}, {9}});
                openCard();
                prepare();
                world.saveFileAnswers.push_back(
                    {services::Text("Name und Ort der CSV-Datei wählen"_l1), "", name,
                     target.string()});
            },
            run,
            [&] {
                EXPECT_TRUE(expected.starts_with(bytesIfThere(target)));
                expectEveryTraining();
            });
    }
};

TEST_F(ExportFaults, OfTheIndexTouchNoTraining) {
    makeCard({{1, true}, {5, true}, {9}});
    openCard();
    tryExporting(
        "export the index", "Dicitonary.csv", exporting::indexCsv(device::state.dictionary), [] {},
        [] { exporting::exportIndex(); });
}

TEST_F(ExportFaults, OfATrainingTouchNoTraining) {
    const std::vector<device::TrainingSample> samples(3);
    makeCard({{1, true}, {5, true}, {9}});
    openCard();
    tryExporting(
        "export a training", "0001  01_01_2013 00_00_00   60min   25,0km  Training 0.csv",
        exporting::trainingCsv(samples), [&] { device::state.samples = samples; },
        [] { exporting::exportTraining(); });
}

}  // namespace
