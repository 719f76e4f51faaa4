#include "settings/saving.h"

#include <sys/fsuid.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <fstream>
#include <iterator>
#include <locale>

#include "charts/values/chart_options.h"
#include "services/disk/directories.h"
#include "services/menus.h"
#include "settings/start_settings.h"
#include "tests/app/app_test.h"
#include "tests/builders/card_builder.h"

namespace {

using services::operator""_l1;
using stand_ins::world;

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
        stand_ins::expectMessage("Preferences"_l1,
                                 "Die aktuellen Einstellungen der Übersicht wurden als "
                                 "Starteinstellungen gespeichert!"_l1);
        settings::saveStartSettings();
    }
    static void reload() {
        stand_ins::expectMessage("Info"_l1, "Die Starteinstellungen wurden geladen!"_l1);
        settings::reloadStartSettings();
    }
    static void answerDeletion(bool yes) {
        world.questionAnswers.push_back(
            {services::Text("Starteinstellungen zurücksetzen"_l1),
             services::Text("Sollen die Starteinstellungen wirklich gelöscht werden?"_l1), yes});
    }

    std::string file() const {
        std::ifstream stream(directory / "Einstellungen.dat", std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    void write(const std::string& text) const {
        std::ofstream(directory / "Einstellungen.dat", std::ios::binary) << text;
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

    std::size_t filesInDirectory() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(directory), {}));
    }
};

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
    // Files can't grow beyond this: the first call writes a part, the second fails.
    rlimit before = {};
    ASSERT_EQ(0, getrlimit(RLIMIT_FSIZE, &before));
    rlimit small = before;
    small.rlim_cur = 100;
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &small));
    settings::saveStartSettings();
    ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &before));
    std::signal(SIGXFSZ, handler);
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

TEST_F(SettingsFile, IsNeverLookedForOnACardWhenTheProgramDirectoryIsGone) {
    const std::filesystem::path program = directory / "Programm";
    std::filesystem::create_directory(program);
    builders::writeCard(directory / "Karte", 1);
    const std::filesystem::path other = directory / "Karte/data/result/ergo_bike/Einstellungen.dat";
    std::ofstream(other) << "[Farben]\nFarbe 3 = 5\n";
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
