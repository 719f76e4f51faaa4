// Preference files on the disk: the old file stays whole until the new one is.
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <set>

#include "services/disk/preferences.h"
#include "tests/builders/file_bytes.h"
#include "tests/stand_ins/file_size_limit.h"
#include "tests/stand_ins/stand_ins.h"

namespace {

using namespace services;
using builders::bytesOf;
using builders::namesIn;
using builders::writeBytes;

using PreferenceFiles = stand_ins::StandInTest;

TEST_F(PreferenceFiles, AMissingFileGivesDefaultsAndIsNotMade) {
    Preferences preferences = openPreferences("settings");
    preferenceGroup(preferences, "group");
    EXPECT_EQ(7, readInteger(preferences, "key", 7));
    EXPECT_EQ("x", readText(preferences, "key", "x"));
    EXPECT_TRUE(closePreferences(preferences));
    EXPECT_TRUE(namesIn(directory).empty());
}

TEST_F(PreferenceFiles, WhatIsNoRegularFileGivesDefaults) {
    std::filesystem::create_directory("directory");
    ASSERT_EQ(0, mkfifo("fifo", 0600));
    for (const char* path : {"directory", "fifo", "/dev/zero", ""})
        EXPECT_TRUE(openPreferences(path).groups.empty()) << path;
}

TEST_F(PreferenceFiles, AFileBeyondAnySenseGivesDefaults) {
    writeBytes("settings", "[group]\nkey = value\n");
    std::filesystem::resize_file("settings", static_cast<std::uintmax_t>(preferenceFileLimit) + 1);
    EXPECT_TRUE(openPreferences("settings").groups.empty());
}

TEST_F(PreferenceFiles, OpeningSelectsThePartBeforeTheFirstGroup) {
    writeBytes("settings", "key = value\n[group]\nkey = other\n");
    const Preferences preferences = openPreferences("settings");
    EXPECT_EQ("value", readText(preferences, "key", "-"));
}

TEST_F(PreferenceFiles, ClosingWithoutAChangeLeavesTheBytes) {
    const std::string bytes = "[group]\r\nKEY=value";
    writeBytes("settings", bytes);
    Preferences preferences = openPreferences("settings");
    EXPECT_TRUE(closePreferences(preferences));
    EXPECT_EQ(bytes, bytesOf("settings"));
}

TEST_F(PreferenceFiles, ClosingAfterAChangeWritesEverything) {
    writeBytes("settings", "[group]\r\nKEY=value");
    Preferences preferences = openPreferences("settings");
    preferenceGroup(preferences, "group");
    writeInteger(preferences, "more", 1);
    EXPECT_TRUE(closePreferences(preferences));
    EXPECT_EQ("[group]\nKEY = value\nmore = 1\n", bytesOf("settings"));
    EXPECT_EQ(std::set<std::string>{"settings"}, namesIn(directory));
}

TEST_F(PreferenceFiles, ACreatedFileIsWrittenEvenWhenEmpty) {
    Preferences preferences;
    ASSERT_TRUE(createPreferences(preferences, "settings"));
    EXPECT_TRUE(closePreferences(preferences));
    EXPECT_EQ(std::set<std::string>{"settings"}, namesIn(directory));
    EXPECT_EQ("", bytesOf("settings"));
}

TEST_F(PreferenceFiles, CreatingForgetsWhatTheFileHeld) {
    writeBytes("settings", "[old]\nkey = value\n");
    Preferences preferences = openPreferences("settings");
    ASSERT_TRUE(createPreferences(preferences, "settings"));
    preferenceGroup(preferences, "new");
    writeInteger(preferences, "key", 1);
    EXPECT_TRUE(closePreferences(preferences));
    EXPECT_EQ("[new]\nkey = 1\n", bytesOf("settings"));
}

TEST_F(PreferenceFiles, TheOldFileIsWholeUntilTheNewOneIs) {
    writeBytes("settings", "[old]\nkey = value\n");
    Preferences preferences;
    ASSERT_TRUE(createPreferences(preferences, "settings"));
    preferenceGroup(preferences, "new");
    writeInteger(preferences, "key", 1);
    EXPECT_EQ("[old]\nkey = value\n", bytesOf("settings"));
    EXPECT_EQ(2U, namesIn(directory).size()) << "the new file exists at once, under another name";
    EXPECT_TRUE(closePreferences(preferences));
    EXPECT_EQ("[new]\nkey = 1\n", bytesOf("settings"));
}

TEST_F(PreferenceFiles, AnUnwritablePlaceIsToldWhenCreating) {
    std::filesystem::create_directory("directory");
    ASSERT_EQ(0, mkfifo("fifo", 0600));
    for (const Path& path :
         {Path("missing/settings"), Path("directory"), Path("fifo"), Path("/dev/null"),
          Path("/proc/settings"), Path(""), Path("settings\0x", 10)}) {
        Preferences preferences;
        preferences.changed = true;
        EXPECT_FALSE(createPreferences(preferences, path)) << path;
        EXPECT_FALSE(preferences.changed) << path;
        EXPECT_TRUE(closePreferences(preferences)) << path;
    }
    EXPECT_EQ(2U, namesIn(directory).size());
    EXPECT_TRUE(std::filesystem::is_fifo("fifo"));
}

TEST_F(PreferenceFiles, AShortWriteLeavesTheOldFileAndNothingElse) {
    const std::string old = "[old]\nkey = value\n";
    writeBytes("settings", old);
    Preferences preferences;
    ASSERT_TRUE(createPreferences(preferences, "settings"));
    preferenceGroup(preferences, "new");
    writeText(preferences, "key", Text(100'000, 'x'));

    {
        const stand_ins::FileSizeLimit full(4096);
        EXPECT_FALSE(closePreferences(preferences));
    }
    EXPECT_EQ(old, bytesOf("settings"));
    EXPECT_EQ(std::set<std::string>{"settings"}, namesIn(directory));
}

TEST_F(PreferenceFiles, ADirectoryThatVanishesIsAFailure) {
    std::filesystem::create_directory("place");
    Preferences preferences;
    ASSERT_TRUE(createPreferences(preferences, "place/settings"));
    std::filesystem::remove_all("place");
    EXPECT_FALSE(closePreferences(preferences));
}

TEST_F(PreferenceFiles, ATargetThatBecameADirectoryIsAFailure) {
    Preferences preferences;
    ASSERT_TRUE(createPreferences(preferences, "settings"));
    std::filesystem::create_directory("settings");
    EXPECT_FALSE(closePreferences(preferences));
    EXPECT_EQ(std::set<std::string>{"settings"}, namesIn(directory));
}

TEST_F(PreferenceFiles, TheWorkingDirectoryMayChangeMeanwhile) {
    std::filesystem::create_directory("elsewhere");
    Preferences preferences;
    ASSERT_TRUE(createPreferences(preferences, "settings"));
    std::filesystem::current_path("elsewhere");
    EXPECT_TRUE(closePreferences(preferences));
    std::filesystem::current_path(directory);
    EXPECT_TRUE(std::filesystem::is_regular_file("settings"));
    EXPECT_TRUE(std::filesystem::is_empty("elsewhere"));
    EXPECT_EQ(2U, namesIn(directory).size());
}

TEST_F(PreferenceFiles, ALinkIsReplacedAndWhatItLedToStays) {
    std::filesystem::create_directory("place");
    writeBytes("place/real", "precious");
    std::filesystem::create_symlink("place/real", "settings");
    Preferences preferences;
    ASSERT_TRUE(createPreferences(preferences, "settings"));
    writeInteger(preferences, "key", 1);
    EXPECT_TRUE(closePreferences(preferences));
    EXPECT_FALSE(std::filesystem::is_symlink("settings"));
    EXPECT_EQ("key = 1\n", bytesOf("settings"));
    EXPECT_EQ("precious", bytesOf("place/real"));
}

// As a user who may write a file, but nothing beside it.
class PreferenceFilesInPlace : public PreferenceFiles {
  protected:
    static constexpr uid_t nobody = 65534;

    void SetUp() override {
        PreferenceFiles::SetUp();
        place = directory / "place";
        std::filesystem::create_directory(place);
        path = (place / "settings").string();
        writeBytes(path, old);
    }

    void TearDown() override {
        setfsuid(geteuid());
        chmod(place.c_str(), 0700);
        PreferenceFiles::TearDown();
    }

    // Rights don't bind root: there the test becomes somebody else who owns the file.
    void becomeUser() const {
        ASSERT_EQ(0, chmod(directory.c_str(), 0755));
        ASSERT_EQ(0, chmod(place.c_str(), 0555));
        if (geteuid() != 0) return;
        ASSERT_EQ(0, chown(path.c_str(), nobody, static_cast<gid_t>(-1)));
        setfsuid(nobody);
    }

    const std::string old = "[old]\nkey = value\n" + std::string(5000, ';') + "\n";
    std::filesystem::path place;
    std::string path;
};

TEST_F(PreferenceFilesInPlace, AreWrittenWhereNothingCanBeMadeBesideThem) {
    becomeUser();
    struct stat before = {};
    struct stat after = {};
    ASSERT_EQ(0, stat(path.c_str(), &before));
    // Shorter than the file, then longer.
    for (const std::string& value : {std::string("1"), std::string(9000, 'x')}) {
        Preferences preferences;
        ASSERT_TRUE(createPreferences(preferences, path));
        preferenceGroup(preferences, "new");
        writeText(preferences, "key", value);
        EXPECT_TRUE(closePreferences(preferences));
        EXPECT_EQ("[new]\nkey = " + value + "\n", bytesOf(path));
    }
    ASSERT_EQ(0, stat(path.c_str(), &after));
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(std::set<std::string>{"settings"}, namesIn(place));
}

TEST_F(PreferenceFilesInPlace, KeepTheirBytesUntilTheyAreClosed) {
    becomeUser();
    Preferences preferences;
    ASSERT_TRUE(createPreferences(preferences, path));
    writeInteger(preferences, "key", 1);
    EXPECT_EQ(old, bytesOf(path));
    discardPreferences(preferences);
    EXPECT_EQ(old, bytesOf(path));
}

TEST_F(PreferenceFilesInPlace, GetTheirBytesBackWhenTheDiskIsFull) {
    becomeUser();
    Preferences preferences;
    ASSERT_TRUE(createPreferences(preferences, path));
    writeText(preferences, "key", Text(100'000, 'x'));
    {
        const stand_ins::FileSizeLimit full(8192);
        EXPECT_FALSE(closePreferences(preferences));
    }
    EXPECT_EQ(old, bytesOf(path));
}

TEST_F(PreferenceFilesInPlace, ThatMayNotBeWrittenOrAreNoneOrLinksAreLeftAlone) {
    ASSERT_EQ(0, chmod(path.c_str(), 0444));
    writeBytes("real", "precious");
    std::filesystem::create_symlink(directory / "real", place / "link");
    if (geteuid() == 0) {
        ASSERT_EQ(0, chown("real", nobody, static_cast<gid_t>(-1)));
    }
    becomeUser();
    for (const char* name : {"settings", "link", "missing"}) {
        Preferences preferences;
        EXPECT_FALSE(createPreferences(preferences, (place / name).string())) << name;
    }
    EXPECT_EQ(old, bytesOf(path));
    EXPECT_EQ("precious", bytesOf("real"));
    EXPECT_EQ((std::set<std::string>{"settings", "link"}), namesIn(place));
}

TEST_F(PreferenceFiles, WhatSavesHaveLeftThatWereCutOffIsRemoved) {
    // No process has so high a number, and one that runs always has the number 1.
    for (const char* name : {"settings.neu-2147483647", "settings.neu-1", "settings.neu-",
                             "settings.neu-2x", "other.neu-2147483647"}) {
        writeBytes(name, "");
    }
    Preferences preferences;
    ASSERT_TRUE(createPreferences(preferences, "settings"));
    EXPECT_TRUE(closePreferences(preferences));
    const std::set<std::string> left = namesIn(directory);
    EXPECT_EQ((std::set<std::string>{"other.neu-2147483647", "settings", "settings.neu-",
                                     "settings.neu-1", "settings.neu-2x"}),
              left);
}

// Behind the name stands what no process ever had for a number.
TEST_F(PreferenceFiles, AFileOfNoProcessIsNobodysLeftover) {
    const std::set<std::string> others = {"settings.neu-0", "settings.neu-2147483648",
                                          "settings.neu-99999999999999999999", "settings.neu--5"};
    for (const std::string& name : others)
        writeBytes(name, "");
    Preferences preferences;
    ASSERT_TRUE(createPreferences(preferences, "settings"));
    EXPECT_TRUE(closePreferences(preferences));
    std::filesystem::remove("settings");
    const std::set<std::string> left = namesIn(directory);
    EXPECT_EQ(others, left);
}

TEST_F(PreferenceFiles, ClosingReleasesEverything) {
    Preferences preferences;
    ASSERT_TRUE(createPreferences(preferences, "settings"));
    writeInteger(preferences, "key", 1);
    EXPECT_TRUE(closePreferences(preferences));
    EXPECT_TRUE(preferences.groups.empty());
    EXPECT_TRUE(preferences.path.empty());
    std::filesystem::remove("settings");
    EXPECT_TRUE(closePreferences(preferences));
    EXPECT_TRUE(namesIn(directory).empty());
}

TEST_F(PreferenceFiles, ALeftoverOfARunThatWasCutOffIsNoObstacle) {
    Preferences cutOff;
    ASSERT_TRUE(createPreferences(cutOff, "settings"));
    Preferences preferences;
    ASSERT_TRUE(createPreferences(preferences, "settings"));
    EXPECT_TRUE(closePreferences(preferences));
    EXPECT_EQ(std::set<std::string>{"settings"}, namesIn(directory));
}

TEST_F(PreferenceFiles, FilesBelowAnyNameAreKept) {
    std::filesystem::create_directory("Łódź");
    Preferences preferences;
    ASSERT_TRUE(createPreferences(preferences, "Łódź/settings"));
    EXPECT_TRUE(closePreferences(preferences));
    EXPECT_TRUE(std::filesystem::is_regular_file("Łódź/settings"));
}

}  // namespace
