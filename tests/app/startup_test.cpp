#include "app/startup.h"

#include <fstream>

#include "app/main_window.h"
#include "app/menu_tree.h"
#include "device/index_recovery.h"
#include "services/disk/directories.h"
#include "tests/app/app_test.h"
#include "tests/builders/card_builder.h"

namespace {

using services::operator""_l1;
using stand_ins::world;

class Startup : public AppTest {
  protected:
    void writeSettings(const std::string& text) { std::ofstream("Einstellungen.dat") << text; }

    const stand_ins::WindowRecord& window() { return world.windows.at(services::mainWindow); }
};

TEST_F(Startup, OnACardOpensTheWindowAndDrawsTheOverview) {
    builders::writeCard(directory, 3);
    ASSERT_TRUE(app::startUp({}));
    EXPECT_EQ("Kurbelbuch", window().title);
    EXPECT_TRUE(window().shown);
    EXPECT_EQ(1, window().row.x);
    EXPECT_EQ(1, window().row.y);
    EXPECT_EQ(256, window().row.minimumWidth);
    EXPECT_EQ(256, window().row.minimumHeight);
    EXPECT_EQ(3U, device::state.dictionary.size());
    EXPECT_EQ("Diagramm", window().controlNames.at(app::chartImageControl));
    // The frame is drawn: the picture is no longer all white.
    const services::Surface& picture = window().images.at(app::chartImageControl);
    EXPECT_EQ(900, picture.width);
    EXPECT_EQ(560, picture.height);
    EXPECT_NE(std::vector<std::uint32_t>(picture.pixels.size(), 0xFFFFFFFFU), picture.pixels);
    EXPECT_TRUE(services::itemEnabled(103));
    EXPECT_FALSE(services::itemEnabled(153));
    EXPECT_EQ(directory.string() + "/data/result/ergo_bike/", services::currentDirectory());
}

TEST_F(Startup, WithoutSettingsTheWindowTakesNineBySevenTenthsOfTheDesktopRounded) {
    builders::writeCard(directory, 2);
    world.desktopWidth = 1365;   // 1228.5: a half goes to the even neighbour
    world.desktopHeight = 1025;  // 717.5
    ASSERT_TRUE(app::startUp({}));
    EXPECT_EQ(1228, window().width);
    EXPECT_EQ(718, window().height);
}

TEST_F(Startup, AStoredSizeThatFitsIsTaken) {
    builders::writeCard(directory, 2);
    writeSettings("[Programmeinstellungen]\nWindowBreite = 640\nWindowH\xF6he = 480\n");
    ASSERT_TRUE(app::startUp({}));
    EXPECT_EQ(640, window().width);
    EXPECT_EQ(480, window().height);
}

TEST_F(Startup, AStoredSizeOfTheWholeDesktopIsTaken) {
    builders::writeCard(directory, 2);
    writeSettings("[Programmeinstellungen]\nWindowBreite = 1000\nWindowH\xF6he = 800\n");
    ASSERT_TRUE(app::startUp({}));
    EXPECT_EQ(1000, window().width);
    EXPECT_EQ(800, window().height);
}

TEST_F(Startup, AStoredSizeLargerThanTheDesktopBecomesNineTenthsBySevenTenths) {
    builders::writeCard(directory, 2);
    for (const char* size : {"WindowBreite = 1001\nWindowH\xF6he = 480\n",
                             "WindowBreite = 640\nWindowH\xF6he = 801\n"}) {
        SCOPED_TRACE(size);
        std::filesystem::current_path(directory);
        device::state = {};
        writeSettings(std::string("[Programmeinstellungen]\n") + size);
        ASSERT_TRUE(app::startUp({}));
        EXPECT_EQ(900, window().width);
        EXPECT_EQ(560, window().height);
    }
}

TEST_F(Startup, AStoredSizeBelow256InOneDirectionIsReplacedInBoth) {
    builders::writeCard(directory, 2);
    writeSettings("[Programmeinstellungen]\nWindowBreite = 300\nWindowH\xF6he = 255\n");
    ASSERT_TRUE(app::startUp({}));
    EXPECT_EQ(900, window().width);
    EXPECT_EQ(560, window().height);
}

TEST_F(Startup, AWindowThatCannotBeOpenedEndsTheProgramWithoutAMessage) {
    world.windowsOpen = false;
    EXPECT_FALSE(app::startUp({}));
}

TEST_F(Startup, WithNoTreeAndTheRequesterCancelledEveryOptionStaysDisabled) {
    world.directoryAnswers.push_back(
        {services::Text("Wähle die SD-Karte bzw. das Daum-Verzeichnis"_l1),
         directory.string() + "/", ""});
    ASSERT_TRUE(app::startUp({}));
    EXPECT_TRUE(window().shown);
    for (int base = 100; base <= 900; base += 100) {
        for (int i = 0; i < 20; ++i)
            EXPECT_FALSE(services::itemEnabled(base + i));
        for (int i = 50; i < 72; ++i)
            EXPECT_FALSE(services::itemEnabled(base + i));
    }
    // The window shows an empty white picture.
    const services::Surface& picture = window().images.at(app::chartImageControl);
    EXPECT_EQ(std::vector<std::uint32_t>(picture.pixels.size(), 0xFFFFFFFFU), picture.pixels);
}

TEST_F(Startup, ATreeChosenAtTheStartIsReadAndDrawn) {
    const std::filesystem::path card = directory / "Karte";
    builders::writeCard(card, 4);
    world.directoryAnswers.push_back(
        {services::Text("Wähle die SD-Karte bzw. das Daum-Verzeichnis"_l1),
         directory.string() + "/", card.string() + "/"});
    ASSERT_TRUE(app::startUp({}));
    EXPECT_EQ(4U, device::state.dictionary.size());
    EXPECT_TRUE(services::itemEnabled(919));
}

TEST_F(Startup, EscapeIsTheProgramsOnlyShortcut) {
    builders::writeCard(directory, 2);
    ASSERT_TRUE(app::startUp({}));
    EXPECT_EQ((std::map<int, int>{{services::escapeKey, 99}}), window().shortcuts);
}

TEST_F(Startup, TheFirstMarkedOverviewOptionIsTheLastMenuItem) {
    builders::writeCard(directory, 2);
    writeSettings("[Men\xFCvorwahl]\nMenu 603 = 1\nMenu 205 = 1\n");
    ASSERT_TRUE(app::startUp({}));
    EXPECT_EQ(603, app::state.lastMenuItem);
    EXPECT_TRUE(services::itemMark(603));
    EXPECT_TRUE(services::itemMark(205));
}

TEST_F(Startup, AProgramLyingOnACardFindsItWithoutAsking) {
    builders::writeCard(directory / "Karte", 3);
    std::filesystem::create_directory("anderswo");
    std::filesystem::current_path("anderswo");
    ASSERT_TRUE(app::startUp((directory / "Karte").string() + "/"));
    EXPECT_EQ(3U, device::state.dictionary.size());
    EXPECT_EQ((directory / "Karte").string() + "/", device::state.programDirectory);
}

TEST_F(Startup, AProgramLyingOnACardWorksThereWhereverItIsStarted) {
    const std::string elsewhere = (directory / "anderswo").string() + "/";
    const std::string card = (directory / "Karte").string() + "/";
    EXPECT_EQ(elsewhere, app::workingDirectoryAtStart(elsewhere, card));
    EXPECT_EQ(elsewhere, app::workingDirectoryAtStart(elsewhere, ""));
    for (const char* file :
         {"Einstellungen.dat", "dictionary.2", "data/result/ergo_bike/dictionary.2"}) {
        SCOPED_TRACE(file);
        std::filesystem::create_directories(std::filesystem::path(card + file).parent_path());
        std::ofstream(card + file) << "x";
        EXPECT_EQ(card, app::workingDirectoryAtStart(elsewhere, card));
        std::filesystem::remove_all(card);
    }
}

// Saving the index was cut off where it is missing.
TEST_F(Startup, AProgramLyingOnACardKnowsItByTheCopyOfItsIndex) {
    const std::string elsewhere = (directory / "anderswo").string() + "/";
    const std::string card = (directory / "Karte").string() + "/";
    const std::filesystem::path tree = card + "data/result/ergo_bike";
    builders::writeCard(card, 2);
    std::ifstream index(tree / "dictionary.2", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(index), {}};
    std::filesystem::remove(tree / "dictionary.2");
    EXPECT_EQ(elsewhere, app::workingDirectoryAtStart(elsewhere, card));
    std::ofstream(tree / device::indexCopyName, std::ios::binary)
        << device::encodeIndexCopy({.index = bytes});
    EXPECT_EQ(card, app::workingDirectoryAtStart(elsewhere, card));
}

TEST_F(Startup, OffersTheOverviewThoughEveryRecordWasDropped) {
    builders::writeCard(directory, 2);
    for (const char* training : {"0000000000000001", "0000000000000002"})
        std::filesystem::remove(directory / "data/result/ergo_bike" / training);
    ASSERT_TRUE(app::startUp({}));
    EXPECT_TRUE(device::state.dictionary.empty());
    for (int base = 100; base <= 900; base += 100) {
        EXPECT_TRUE(services::itemEnabled(base)) << base;
        EXPECT_TRUE(services::itemEnabled(base + 19)) << base;
        EXPECT_FALSE(services::itemEnabled(base + 50)) << base;
    }
}

}  // namespace
