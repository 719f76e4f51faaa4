#include "settings/saving.h"

#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <clocale>
#include <filesystem>
#include <locale>
#include <string>

#include "services/disk/directories.h"
#include "tests/builders/card_builder.h"
#include "tests/settings/settings_file_fixture.h"
#include "tests/stand_ins/file_size_limit.h"

namespace {

using settings_tests::SettingsFile;

// What a first save without a card, a mark or a colour of one's own writes.
const std::string untouched =
    "[Programmeinstellungen]\n"
    "WindowBreite = 900\n"
    "WindowH\xF6he = 560\n"
    "Verzeichnis = \n"
    "Sicherheitskopie = \n"
    "Nummerieren = 0\n"
    "; \n"
    "[Farben]\n"
    "Farbe 0 = 16711680\n"
    "Farbe 1 = 11149344\n"
    "Farbe 2 = 48640\n"
    "Farbe 3 = 4210752\n"
    "Farbe 4 = 128\n"
    "Farbe 5 = 32896\n"
    "Farbe 6 = 2113736\n"
    "Farbe 7 = 13158400\n"
    "Farbe 8 = 8421376\n"
    "Farbe 9 = 52428\n"
    "Farbe 10 = 16711680\n"
    "Farbe 11 = 11149344\n"
    "Farbe 12 = 48640\n"
    "Farbe 13 = 4210752\n"
    "Farbe 14 = 128\n"
    "Farbe 15 = 32896\n"
    "Farbe 16 = 2113736\n"
    "Farbe 17 = 13158400\n"
    "Farbe 18 = 8421376\n"
    "Farbe 19 = 52428\n"
    "Farbe 50 = 16711680\n"
    "Farbe 51 = 11149344\n"
    "Farbe 52 = 48640\n"
    "Farbe 53 = 4210752\n"
    "Farbe 54 = 128\n"
    "Farbe 55 = 32896\n"
    "Farbe 56 = 2113736\n"
    "Farbe 57 = 13158400\n"
    "Farbe 58 = 8421376\n"
    "Farbe 59 = 52428\n"
    "Farbe 60 = 16711680\n"
    "Farbe 61 = 11149344\n"
    "Farbe 62 = 48640\n"
    "Farbe 63 = 4210752\n"
    "Farbe 64 = 128\n"
    "Farbe 65 = 32896\n"
    "Farbe 66 = 2113736\n"
    "Farbe 67 = 13158400\n"
    "Farbe 68 = 8421376\n"
    "Farbe 69 = 52428\n"
    "Farbe 70 = 15822571\n"
    "Farbe 71 = 22238255\n"
    "; \n";

TEST_F(SettingsFile, IsWrittenByteForByte) {
    save();
    EXPECT_EQ(untouched, file());
    EXPECT_EQ(1U, filesInDirectory());
}

TEST_F(SettingsFile, HoldsEverySettingInItsPlace) {
    builders::writeCard(directory / "Karte", 1);
    std::filesystem::current_path(directory / "Karte");
    settings::state.windowWidth = 640;
    settings::state.windowHeight = 256;
    device::state.backupDirectory =
        "/stick/B\xC3\xBC"
        "cher/data/result/ergo_bike/";
    device::state.renumberingEnabled = true;
    charts::state.colours = {};
    charts::state.colours[2] = 48640;
    charts::state.colours[20] = -5;
    charts::state.colours[71] = 0x0153542F;
    charts::state.colours[72] = 7;
    for (const int item : {771, 150, 201, 701, 100, 700, 119})
        services::setItemMark(item, true);
    save();
    EXPECT_EQ(
        "[Programmeinstellungen]\n"
        "WindowBreite = 640\n"
        "WindowH\xF6he = 256\n"
        "Verzeichnis = " +
            (directory / "Karte/data/result/ergo_bike/").string() +
            "\n"
            "Sicherheitskopie = /stick/B\xFC"
            "cher/data/result/ergo_bike/\n"
            "Nummerieren = 1\n"
            "; \n"
            "[Farben]\n"
            "Farbe 2 = 48640\n"
            "Farbe 20 = -5\n"
            "Farbe 71 = 22238255\n"
            "; \n"
            "[Men\xFCvorwahl]\n"
            "Menu 100 = 1\n"
            "Menu 700 = 1\n"
            "Menu 201 = 1\n"
            "Menu 701 = 1\n"
            "Menu 119 = 1\n"
            "Menu 150 = 1\n"
            "Menu 771 = 1\n",
        file());
}

TEST_F(SettingsFile, KeepsANumberOfTheRenumberingSwitchThatIsNeitherOffNorOn) {
    for (const char* number : {"5", "-1", "2147483647", "-2147483648"}) {
        const std::string line = std::string("\nNummerieren = ") + number + "\n";
        write("[Programmeinstellungen]" + line);
        settings::loadStartSettings();
        save();
        EXPECT_NE(std::string::npos, file().find(line)) << number << '\n' << file();
    }
}

TEST_F(SettingsFile, WithAllColoursSetHas72OfThemInIndexOrder) {
    charts::state.colours.fill(1);
    save();
    const std::string text = file();
    std::size_t position = text.find("[Farben]\n");
    ASSERT_NE(std::string::npos, position);
    position += 9;
    for (int i = 0; i < 72; ++i) {
        const std::string line = "Farbe " + std::to_string(i) + " = 1\n";
        EXPECT_EQ(line, text.substr(position, line.size()));
        position += line.size();
    }
    EXPECT_EQ("; \n", text.substr(position));
}

TEST_F(SettingsFile, ComesFromTheMenusAndNotFromTheStoredPreselection) {
    settings::state.menuPreselection[103] = 1;
    services::setItemMark(205, true);
    save();
    EXPECT_EQ(untouched + "[Men\xFCvorwahl]\nMenu 205 = 1\n", file());
}

TEST_F(SettingsFile, IsTheSameInEveryLocale) {
    struct Grouping : std::numpunct<char> {
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale(), new Grouping));
    for (const char* name : {"C", "de_DE.UTF-8", "en_US.UTF-8"}) {
        std::setlocale(LC_ALL, name);  // where the system has it
        save();
        EXPECT_EQ(untouched, file()) << name;
    }
    std::locale::global(before);
    std::setlocale(LC_ALL, "C");
}

TEST_F(SettingsFile, LeavesTheProgramDirectoryCurrent) {
    builders::writeCard(directory / "Karte", 1);
    std::filesystem::current_path(directory / "Karte");
    save();
    EXPECT_EQ(programDirectory(), services::currentDirectory());
    EXPECT_FALSE(std::filesystem::exists(directory / "Karte/data/result/ergo_bike/"
                                                     "Einstellungen.dat"));
    // A second save therefore finds no card.
    save();
    EXPECT_NE(std::string::npos, file().find("\nVerzeichnis = \n"));
}

TEST_F(SettingsFile, SavedAwayFromADeviceDirectoryHasAnEmptyOne) {
    std::filesystem::create_directory("leer");
    std::filesystem::current_path("leer");
    save();
    EXPECT_EQ(untouched, file());
}

TEST_F(SettingsFile, ReplacesALongerOneCompletely) {
    write(std::string(100000, ';') + "\n[Fremd]\nSchluessel = 1\n");
    save();
    EXPECT_EQ(untouched, file());
}

TEST_F(SettingsFile, ThatCannotBeWrittenIsPassedOverSilentlyAndTheProgramDirectoryIsCurrent) {
    std::filesystem::create_directories(directory / "Einstellungen.dat" / "voll");
    std::filesystem::create_directory("anderswo");
    std::filesystem::current_path("anderswo");
    settings::saveStartSettings();
    EXPECT_EQ(programDirectory(), services::currentDirectory());
    EXPECT_EQ(2U, filesInDirectory());
}

TEST_F(SettingsFile, StaysWholeAndSilentWhenTheDiskIsFull) {
    const std::string old = "[Farben]\nFarbe 4 = 9\n";
    write(old);
    {
        const stand_ins::FileSizeLimit full(100);
        settings::saveStartSettings();
    }
    EXPECT_EQ(old, file());
    EXPECT_EQ(1U, filesInDirectory());
}

// The program lies in a directory of somebody else's, its settings are the user's.
TEST_F(SettingsFile, IsWrittenInADirectoryThatTakesNoNewFile) {
    constexpr uid_t nobody = 65534;
    write("[Farben]\nFarbe 4 = 9\n");
    ASSERT_EQ(0, chmod(directory.c_str(), 0555));
    if (geteuid() == 0) {
        // Rights don't bind root.
        ASSERT_EQ(0, chown("Einstellungen.dat", nobody, static_cast<gid_t>(-1)));
        setfsuid(nobody);
    }
    save();
    setfsuid(geteuid());
    ASSERT_EQ(0, chmod(directory.c_str(), 0700));
    EXPECT_EQ(untouched, file());
    EXPECT_EQ(1U, filesInDirectory());
}

}  // namespace
