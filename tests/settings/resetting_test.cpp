// Saved settings come back at a start or by the menu's command, and are deleted.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "services/disk/directories.h"
#include "tests/builders/card_builder.h"
#include "tests/settings/settings_file_fixture.h"

namespace {

using builders::writeBytes;
using settings_tests::SettingsFile;
using stand_ins::world;

TEST_F(SettingsFile, SavedAndLoadedGivesBackEverythingButTheLimits) {
    builders::writeCard(directory / "Karte", 1);
    std::filesystem::current_path(directory / "Karte");
    settings::state.windowWidth = 700;
    settings::state.windowHeight = 300;
    device::state.backupDirectory = "/media/anna/Łódź/data/result/ergo_bike/";
    device::state.renumberingEnabled = true;
    charts::state.colours[3] = 77;
    charts::state.colours[59] = 78;
    charts::state.limits[3] = {.lower = 5, .upper = 6};
    const charts::ColourTable colours = charts::state.colours;
    const std::vector<int> marks = {100, 771, 503, 653};
    for (const int item : marks)
        services::setItemMark(item, true);
    save();
    startAgain();

    EXPECT_EQ(700, settings::state.windowWidth);
    EXPECT_EQ(300, settings::state.windowHeight);
    EXPECT_EQ((directory / "Karte/data/result/ergo_bike/").string(), services::currentDirectory());
    EXPECT_EQ("/media/anna/Łódź/data/result/ergo_bike/", device::state.backupDirectory);
    EXPECT_TRUE(device::state.renumberingEnabled);
    EXPECT_EQ(colours, charts::state.colours);
    EXPECT_EQ(0x00F16EEB, charts::state.colours[70]);
    EXPECT_EQ(0x0153542F, charts::state.colours[71]);
    for (int item = 100; item < 772; ++item) {
        EXPECT_EQ(std::find(marks.begin(), marks.end(), item) != marks.end(),
                  services::itemMark(item))
            << item;
    }
    EXPECT_EQ(0.0F, charts::state.limits[3].lower);
    EXPECT_EQ(0.0F, charts::state.limits[3].upper);
}

TEST_F(SettingsFile, ACardBelowAnyDirectoryIsFoundAgain) {
    for (const char* name : {"Karte", "Bücher", "Łódź", "日本", "Ã¼",
                             "B\xFC"
                             "cher",
                             " mit Blanks "}) {
        SCOPED_TRACE(name);
        builders::writeCard(directory / name, 1);
        std::filesystem::current_path(directory / name);
        save();
        startAgain();
        EXPECT_EQ((directory / name / "data/result/ergo_bike/").string(),
                  services::currentDirectory());
        // Two directories whose names are the same in Latin-1 could not be told apart.
        std::filesystem::current_path(directory);
        std::filesystem::remove_all(directory / name);
    }
}

TEST_F(SettingsFile, IsNeverLookedForOnACardWhenTheProgramDirectoryIsGone) {
    const std::filesystem::path program = directory / "Programm";
    std::filesystem::create_directory(program);
    builders::writeCard(directory / "Karte", 1);
    const std::filesystem::path other = directory / "Karte/data/result/ergo_bike/Einstellungen.dat";
    writeBytes(other, "[Farben]\nFarbe 3 = 5\n");
    std::filesystem::current_path(directory / "Karte/data/result/ergo_bike");
    device::state.programDirectory = program.string() + "/";
    std::filesystem::remove(program);
    settings::saveStartSettings();
    reload();
    EXPECT_EQ(4210752, charts::state.colours[3]);
    answerDeletion(true);
    settings::deleteStartSettings();
    EXPECT_TRUE(std::filesystem::exists(other));
}

TEST_F(SettingsFile, ReloadedMarksTheMenusAndTellsSo) {
    write(
        "[Programmeinstellungen]\nWindowBreite = 5000\nWindowH\xF6he = 300\n"
        "[Farben]\nFarbe 4 = 9\n[Men\xFCvorwahl]\nMenu 150 = 1\nMenu 203 = 1\nMenu 800 = 1\n");
    services::setItemMark(105, true);
    charts::state.limits[3] = {.lower = 5, .upper = 6};
    reload();
    EXPECT_TRUE(services::itemMark(150));
    EXPECT_TRUE(services::itemMark(203));
    EXPECT_FALSE(services::itemMark(105));
    EXPECT_EQ(9, charts::state.colours[4]);
    // Larger than the desktop, but only a start looks at that.
    EXPECT_EQ(5000, settings::state.windowWidth);
    EXPECT_EQ(5.0F, charts::state.limits[3].lower);
}

TEST_F(SettingsFile, WithoutAMarkClearsAllMarksWhenLoaded) {
    save();
    for (int item = 100; item < 772; ++item)
        services::setItemMark(item, true);
    reload();
    for (int item = 100; item < 772; ++item) {
        EXPECT_EQ(0, settings::state.menuPreselection[static_cast<std::size_t>(item)]);
        EXPECT_FALSE(services::itemMark(item));
    }
}

TEST_F(SettingsFile, IsNotDeletedWithoutAYes) {
    write("[Farben]\nFarbe 4 = 9\n");
    std::filesystem::create_directory("anderswo");
    std::filesystem::current_path("anderswo");
    charts::state.colours[3] = 77;
    settings::state.menuPreselection[103] = 1;
    device::state.backupDirectory = "/stick/";
    answerDeletion(false);
    settings::deleteStartSettings();
    EXPECT_EQ("[Farben]\nFarbe 4 = 9\n", file());
    EXPECT_EQ(77, charts::state.colours[3]);
    EXPECT_EQ(1, settings::state.menuPreselection[103]);
    EXPECT_EQ("/stick/", device::state.backupDirectory);
    EXPECT_EQ(programDirectory() + "anderswo/", services::currentDirectory());
}

TEST_F(SettingsFile, DeletedGivesBackTheDefaultsButKeepsMarksAndTrainingColours) {
    write("[Farben]\nFarbe 4 = 9\n");
    settings::state.windowWidth = 640;
    settings::state.windowHeight = 480;
    device::state.backupDirectory = "/stick/";
    device::state.renumberingEnabled = true;
    charts::state.colours[0] = 77;
    charts::state.colours[19] = 77;
    charts::state.colours[20] = 77;
    charts::state.colours[50] = 77;
    charts::state.colours[71] = 77;
    charts::state.limits[3] = {.lower = 5, .upper = 6};
    settings::state.menuPreselection[103] = 1;
    services::setItemMark(103, true);
    answerDeletion(true);
    settings::deleteStartSettings();

    EXPECT_FALSE(std::filesystem::exists(directory / "Einstellungen.dat"));
    EXPECT_EQ(900, settings::state.windowWidth);
    EXPECT_EQ(560, settings::state.windowHeight);
    EXPECT_EQ("", device::state.backupDirectory);
    EXPECT_FALSE(device::state.renumberingEnabled);
    EXPECT_EQ(16711680, charts::state.colours[0]);
    EXPECT_EQ(128, charts::state.colours[4]);
    EXPECT_EQ(52428, charts::state.colours[19]);
    EXPECT_EQ(77, charts::state.colours[20]);
    EXPECT_EQ(77, charts::state.colours[50]);
    EXPECT_EQ(77, charts::state.colours[71]);
    EXPECT_EQ(5.0F, charts::state.limits[3].lower);
    EXPECT_EQ(0, settings::state.menuPreselection[103]);
    EXPECT_TRUE(services::itemMark(103));
    EXPECT_EQ(programDirectory(), services::currentDirectory());
}

TEST_F(SettingsFile, DeletedWhileThereIsNoneIsTheSame) {
    charts::state.colours[0] = 77;
    answerDeletion(true);
    settings::deleteStartSettings();
    EXPECT_EQ(16711680, charts::state.colours[0]);
    EXPECT_EQ(0U, filesInDirectory());
}

TEST_F(SettingsFile, IsAppliedToTheMenusBeforeItIsToldLoaded) {
    write("[Men\xFCvorwahl]\nMenu 203 = 1\n");
    services::setItemMark(105, true);
    int told = 0;
    world.beforeMessage = [&](services::TextView) {
        ++told;
        EXPECT_TRUE(services::itemMark(203));
        EXPECT_FALSE(services::itemMark(105));
    };
    reload();
    EXPECT_EQ(told, 1);
}

// What it said is gone with it.
TEST_F(SettingsFile, IsDeletedBeforeTheSettingsAreLoaded) {
    builders::writeCard(directory / "karte", 2);
    write("[Programmeinstellungen]\nWindowBreite = 640\nWindowH\xF6he = 480\nVerzeichnis = " +
          programDirectory() +
          "karte/\nSicherheitskopie = /stick/\nNummerieren = 1\n[Farben]\nFarbe 30 = 5\n"
          "Farbe 50 = 9\n[Men\xFCvorwahl]\nMenu 203 = 1\n");
    charts::state.colours[50] = 77;
    answerDeletion(true);
    settings::deleteStartSettings();
    EXPECT_EQ(900, settings::state.windowWidth);
    EXPECT_EQ(560, settings::state.windowHeight);
    EXPECT_EQ("", device::state.backupDirectory);
    EXPECT_FALSE(device::state.renumberingEnabled);
    EXPECT_EQ(0, charts::state.colours[30]);
    EXPECT_EQ(77, charts::state.colours[50]);
    EXPECT_EQ(0, settings::state.menuPreselection[203]);
    EXPECT_EQ(programDirectory(), services::currentDirectory());
}

}  // namespace
