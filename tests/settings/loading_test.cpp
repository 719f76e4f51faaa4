#include <filesystem>
#include <string>

#include "charts/values/chart_options.h"
#include "services/disk/directories.h"
#include "services/menus.h"
#include "settings/start_settings.h"
#include "tests/app/app_test.h"
#include "tests/builders/card_builder.h"
#include "tests/builders/file_bytes.h"

namespace {

using settings::loadStartSettings;

class LoadingSettings : public AppTest {
  protected:
    void load(const std::string& text) {
        builders::writeBytes(directory / "Einstellungen.dat", text);
        loadStartSettings();
    }
};

TEST_F(LoadingSettings, TheFirstLoadFixesTheProgramDirectoryAndLaterOnesReturnToIt) {
    loadStartSettings();
    EXPECT_EQ(directory.string() + "/", device::state.programDirectory);
    std::filesystem::create_directory("unten");
    std::filesystem::current_path("unten");
    loadStartSettings();
    EXPECT_EQ(directory.string() + "/", device::state.programDirectory);
    EXPECT_EQ(directory.string() + "/", services::currentDirectory());
}

TEST_F(LoadingSettings, AMissingFileGivesTheDefaults) {
    device::state.backupDirectory = "/x/";
    device::state.renumberingEnabled = true;
    settings::state.menuPreselection[103] = 1;
    const charts::ColourTable before = charts::state.colours;
    loadStartSettings();
    EXPECT_EQ(900, settings::state.windowWidth);
    EXPECT_EQ(560, settings::state.windowHeight);
    EXPECT_EQ("", device::state.backupDirectory);
    EXPECT_FALSE(device::state.renumberingEnabled);
    EXPECT_EQ(0, settings::state.menuPreselection[103]);
    EXPECT_EQ(before, charts::state.colours);
}

TEST_F(LoadingSettings, TheDesktopsShareIsRoundedHalfToEven) {
    struct Row {
        int desktop;
        int width;
        int height;
    };
    for (const Row& row : {Row{1445, 1300, 1012}, Row{1435, 1292, 1004}, Row{1455, 1310, 1018},
                           Row{865, 778, 606}, Row{1, 1, 1}, Row{1080, 972, 756}}) {
        SCOPED_TRACE(row.desktop);
        stand_ins::world.desktopWidth = row.desktop;
        stand_ins::world.desktopHeight = row.desktop;
        settings::useDesktopSize();
        EXPECT_EQ(row.width, settings::state.windowWidth);
        EXPECT_EQ(row.height, settings::state.windowHeight);
    }
}

// Against the whole numbers themselves: ten times the share, and its last digit.
TEST_F(LoadingSettings, TheDesktopsShareIsExactForEveryDesktop) {
    const auto share = [](int desktop, int tenths) {
        const int whole = desktop * tenths / 10;
        const int rest = desktop * tenths % 10;
        return whole + (rest > 5 || (rest == 5 && whole % 2 != 0) ? 1 : 0);
    };
    for (int desktop = 0; desktop <= 20000; ++desktop) {
        stand_ins::world.desktopWidth = desktop;
        stand_ins::world.desktopHeight = desktop;
        settings::useDesktopSize();
        ASSERT_EQ(share(desktop, 9), settings::state.windowWidth) << desktop;
        ASSERT_EQ(share(desktop, 7), settings::state.windowHeight) << desktop;
    }
}

TEST_F(LoadingSettings, KeysAreFoundWithoutRegardToCaseAndBlanks) {
    load("[PROGRAMMEINSTELLUNGEN]\r\nwindowbreite=800\r\nWINDOWH\xD6HE = 600\r\n");
    EXPECT_EQ(800, settings::state.windowWidth);
    EXPECT_EQ(600, settings::state.windowHeight);
}

TEST_F(LoadingSettings, ASizeLargerThanTheDesktopStaysAsLoaded) {
    load("[Programmeinstellungen]\nWindowBreite = 5000\nWindowH\xF6he = 4000\n");
    EXPECT_EQ(5000, settings::state.windowWidth);
    EXPECT_EQ(4000, settings::state.windowHeight);
}

TEST_F(LoadingSettings, ASizeFrom256OnIsKept) {
    struct Row {
        const char* width;
        const char* height;
        bool kept;
    };
    for (const Row& row : {Row{"256", "256", true}, Row{"255", "256", false},
                           Row{"256", "255", false}, Row{"300", "-1", false}}) {
        load(std::string("[Programmeinstellungen]\nWindowBreite = ") + row.width +
             "\nWindowH\xF6he = " + row.height + "\n");
        EXPECT_EQ(row.kept ? 256 : 900, settings::state.windowWidth) << row.width;
        EXPECT_EQ(row.kept ? 256 : 560, settings::state.windowHeight) << row.height;
    }
}

TEST_F(LoadingSettings, AColourOfZeroOrAMissingOneKeepsTheCurrentColour) {
    charts::state.colours[3] = 77;
    charts::state.colours[4] = 78;
    load("[Farben]\nFarbe 3 = 0\nFarbe 5 = 255\nFarbe 20 = 9\nFarbe 71 = 11\nFarbe 72 = 5\n");
    EXPECT_EQ(77, charts::state.colours[3]);
    EXPECT_EQ(78, charts::state.colours[4]);
    EXPECT_EQ(255, charts::state.colours[5]);
    EXPECT_EQ(9, charts::state.colours[20]);
    EXPECT_EQ(11, charts::state.colours[71]);
    EXPECT_EQ(0, charts::state.colours[72]);  // never read
}

TEST_F(LoadingSettings, NumbersBeyond32BitsWrap) {
    load("[Farben]\nFarbe 3 = 4294967297\n");
    EXPECT_EQ(1, charts::state.colours[3]);
}

TEST_F(LoadingSettings, MarksAreReadFor100To771AndNothingElse) {
    load(
        "[Men\xFCvorwahl]\nMenu 100 = 1\nMenu 150 = 1\nMenu 771 = 1\nMenu 772 = 1\nMenu 800 = 1\n");
    EXPECT_EQ(1, settings::state.menuPreselection[100]);
    EXPECT_EQ(1, settings::state.menuPreselection[150]);
    EXPECT_EQ(1, settings::state.menuPreselection[771]);
    EXPECT_EQ(0, settings::state.menuPreselection[772]);
}

TEST_F(LoadingSettings, EntriesBeforeTheFirstGroupAreNotFound) {
    load("WindowBreite = 640\nWindowH\xF6he = 480\n[Programmeinstellungen]\n");
    EXPECT_EQ(900, settings::state.windowWidth);
}

TEST_F(LoadingSettings, AStoredDeviceDirectoryWithATreeBecomesTheWorkingDirectory) {
    builders::writeCard(directory / "Karte", 1);
    load("[Programmeinstellungen]\nVerzeichnis = " + (directory / "Karte").string() + "/\n");
    EXPECT_EQ((directory / "Karte/data/result/ergo_bike/").string(), services::currentDirectory());
}

TEST_F(LoadingSettings, AStoredDeviceDirectoryWithoutATreeIsForgottenSilently) {
    std::filesystem::create_directory("leer");
    load("[Programmeinstellungen]\nVerzeichnis = " + (directory / "leer").string() + "/\n");
    EXPECT_EQ(directory.string() + "/", services::currentDirectory());
    load("[Programmeinstellungen]\nVerzeichnis = /gibt/es/nicht/\n");
    EXPECT_EQ(directory.string() + "/", services::currentDirectory());
}

TEST_F(LoadingSettings, AnEmptyDeviceDirectoryEntersNoTreeBesideTheProgram) {
    builders::writeCard(directory, 1);
    for (const char* line : {"Verzeichnis = \n", "Verzeichnis\n", ""}) {
        load(std::string("[Programmeinstellungen]\n") + line);
        EXPECT_EQ(directory.string() + "/", services::currentDirectory()) << line;
    }
}

TEST_F(LoadingSettings, PathsArriveAsUtf8) {
    load(
        "[Programmeinstellungen]\nSicherheitskopie = /stick/B\xFC"
        "cher/\n");
    EXPECT_EQ("/stick/Bücher/", device::state.backupDirectory);
    builders::writeCard(directory / "Bücher", 1);
    load("[Programmeinstellungen]\nVerzeichnis = " + directory.string() +
         "/B\xFC"
         "cher/\n");
    EXPECT_EQ(directory.string() + "/Bücher/data/result/ergo_bike/", services::currentDirectory());
}

TEST_F(LoadingSettings, TheRenumberingSwitchIsANumber) {
    struct Row {
        const char* value;
        std::int32_t number;
    };
    for (const Row& row : {Row{"1", 1}, Row{"5", 5}, Row{"-1", -1}, Row{"0", 0}, Row{"ja", 0},
                           Row{"1x", 1}, Row{"4294967297", 1}}) {
        load(std::string("[Programmeinstellungen]\nNummerieren = ") + row.value + "\n");
        EXPECT_EQ(row.number, device::state.renumberingEnabled) << row.value;
    }
}

TEST_F(LoadingSettings, BackupDirectoryAndRenumberingSwitchAreRead) {
    load(
        "[Programmeinstellungen]\nSicherheitskopie = /stick/data/result/ergo_bike/\nNummerieren = "
        "1\n");
    EXPECT_EQ("/stick/data/result/ergo_bike/", device::state.backupDirectory);
    EXPECT_TRUE(device::state.renumberingEnabled);
}

}  // namespace
