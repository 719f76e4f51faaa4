// Choosing the Daum directory and the backup directory. A drive is the first part of a path, so
// everything below the test's directory is one drive ("/tmp", say), as everything below /Volumes
// is.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "device/device_tree.h"
#include "services/disk/directories.h"
#include "services/disk/endings.h"
#include "services/text/latin1.h"
#include "tests/device/card_fixture.h"

namespace {

using device::chooseBackupDirectory;
using device::chooseDaumDirectory;
using device::state;
using services::operator""_l1;
namespace fs = std::filesystem;

class DirectoryChoice : public device_tests::CardTest {
  protected:
    void SetUp() override {
        CardTest::SetUp();
        state.programDirectory = "/where/the/program/lies/";
        root = fs::canonical(directory).string() + "/";
        ASSERT_TRUE(fs::create_directory(root + "start"));
        fs::current_path(root + "start");
    }

    void makeCard(const std::string& name) {
        fs::create_directories(root + name + "data/result/ergo_bike");
        device_tests::writeBytes(root + name + "data/result/ergo_bike/dictionary.2", "");
    }

    static void answerDaum(const std::string& chosen) {
        stand_ins::world.directoryAnswers.push_back(
            {services::Text("Wähle die SD-Karte bzw. das Daum-Verzeichnis"_l1),
             "/where/the/program/lies/", chosen});
    }

    static void answerBackup(const std::string& chosen) {
        stand_ins::world.directoryAnswers.push_back(
            {services::Text("Wähle das Verzeichnis der Sicherheitskopie"_l1),
             "/where/the/program/lies/", chosen});
    }

    static void expectNotFound() {
        stand_ins::expectMessage("Dateifehler"_l1,
                                 "Die Datei 'data/result/ergo_bike/dictionary.2' wurde im "
                                 "gewählten Verzeichnis nicht gefunden!"_l1);
    }

    static void expectDaumOnBackupDrive() {
        stand_ins::expectMessage("Fehler"_l1,
                                 "Das gewählte Laufwerk des Daum Verzeichnisses ist mit dem "
                                 "Laufwerk der Sicherheitskopie identisch!"_l1);
    }

    static void expectBackupOnDaumDrive() {
        stand_ins::expectMessage("Fehler"_l1,
                                 "Das gewählte Laufwerk der Sicherheitskopie ist mit dem "
                                 "Laufwerk des Daum Verzeichnisses identisch!"_l1);
    }

    // The same directory by a path whose text before the second "/" differs: "/." instead of
    // "/tmp".
    std::string onAnotherDrive(const std::string& name) const { return "/." + root + name; }

    std::string here() const { return services::currentDirectory(); }

    std::string root;  // the test's directory with a "/" at its end
};

TEST_F(DirectoryChoice, OnlyTheCardIsLookedForAmongTheDrives) {
    answerDaum("");
    chooseDaumDirectory();
    answerBackup("/elsewhere/");
    chooseBackupDirectory();
    EXPECT_EQ((std::vector<services::Path>{"data/result/ergo_bike/dictionary.2", ""}),
              stand_ins::world.filesOnDrives);
}

TEST_F(DirectoryChoice, ADaumDirectoryWithATreeBecomesCurrent) {
    makeCard("CARD/");
    answerDaum(root + "CARD/");
    chooseDaumDirectory();
    EXPECT_EQ(here(), root + "CARD/data/result/ergo_bike/");
}

TEST_F(DirectoryChoice, AnErgoBikeDirectoryItselfCanBeChosen) {
    makeCard("CARD/");
    answerDaum(root + "CARD/data/result/ergo_bike/");
    chooseDaumDirectory();
    EXPECT_EQ(here(), root + "CARD/data/result/ergo_bike/");
}

TEST_F(DirectoryChoice, ACancelledDaumRequesterChangesNothing) {
    makeCard("start/");
    answerDaum("");
    chooseDaumDirectory();
    EXPECT_EQ(here(), root + "start/");
}

TEST_F(DirectoryChoice, ADaumDirectoryWithoutATreeIsToldAndLeft) {
    fs::create_directory(root + "empty");
    state.backupDirectory = "/Volumes/STICK/data/result/ergo_bike/";
    expectNotFound();
    answerDaum(root + "empty/");
    chooseDaumDirectory();
    EXPECT_EQ(here(), root + "start/");
}

TEST_F(DirectoryChoice, ADaumDirectoryThatVanishedIsToldThoughTheOldTreeIsStillThere) {
    makeCard("start/");
    expectNotFound();
    answerDaum(root + "vanished/");
    chooseDaumDirectory();
    EXPECT_EQ(here(), root + "start/");
}

TEST_F(DirectoryChoice, ADaumDirectoryOnTheBackupsDriveIsRefused) {
    makeCard("CARD/");
    state.backupDirectory = root + "STICK/data/result/ergo_bike/";
    expectDaumOnBackupDrive();
    answerDaum(root + "CARD/");
    chooseDaumDirectory();
    EXPECT_EQ(here(), root + "start/");
}

TEST_F(DirectoryChoice, EverythingBelowVolumesIsOneDrive) {
    state.backupDirectory = "/Volumes/STICK/";
    expectNotFound();  // there is no such card here
    expectDaumOnBackupDrive();
    answerDaum("/Volumes/CARD/");
    chooseDaumDirectory();
    EXPECT_EQ(here(), root + "start/");
}

TEST_F(DirectoryChoice, AWrongDaumDirectoryOnTheBackupsDriveIsToldBoth) {
    fs::create_directory(root + "empty");
    state.backupDirectory = root;
    expectNotFound();
    expectDaumOnBackupDrive();
    answerDaum(root + "empty/");
    chooseDaumDirectory();
    EXPECT_EQ(here(), root + "start/");
}

TEST_F(DirectoryChoice, WithoutABackupEveryAbsoluteDaumPathPasses) {
    makeCard("CARD/");
    state.backupDirectory = "";
    answerDaum(root + "CARD/");
    chooseDaumDirectory();
    EXPECT_EQ(here(), root + "CARD/data/result/ergo_bike/");
}

TEST_F(DirectoryChoice, TheRootHasTheEmptyDriveAsAMissingBackupHas) {
    expectNotFound();
    expectDaumOnBackupDrive();
    answerDaum("/");
    chooseDaumDirectory();
    EXPECT_EQ(here(), root + "start/");
}

TEST_F(DirectoryChoice, DrivesAreComparedByteForByte) {
    makeCard("CARD/");
    state.backupDirectory = onAnotherDrive("STICK/");
    answerDaum(root + "CARD/");
    chooseDaumDirectory();
    EXPECT_EQ(here(), root + "CARD/data/result/ergo_bike/");
}

TEST_F(DirectoryChoice, TheBackupTreeIsMadeForTheOwnerOnly) {
    fs::create_directory(root + "Sicherung");
    answerBackup(onAnotherDrive("Sicherung/"));
    chooseBackupDirectory();
    EXPECT_EQ(state.backupDirectory, onAnotherDrive("Sicherung/data/result/ergo_bike/"));
    for (const char* made : {"data", "data/result", "data/result/ergo_bike"}) {
        const fs::path path = root + "Sicherung/" + made;
        ASSERT_TRUE(fs::is_directory(path)) << made;
        EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_all) << made;
    }
    EXPECT_EQ(here(), root + "start/");
}

TEST_F(DirectoryChoice, DirectoriesThatExistArePassedOver) {
    fs::create_directories(root + "Sicherung/data/result");
    answerBackup(onAnotherDrive("Sicherung/"));
    chooseBackupDirectory();
    EXPECT_EQ(state.backupDirectory, onAnotherDrive("Sicherung/data/result/ergo_bike/"));
    EXPECT_TRUE(fs::is_directory(root + "Sicherung/data/result/ergo_bike"));
}

TEST_F(DirectoryChoice, DirectoriesThatCantBeMadeArePassedOver) {
    fs::create_directory(root + "Sicherung");
    device_tests::writeBytes(root + "Sicherung/data", "a file in the way");
    answerBackup(onAnotherDrive("Sicherung/"));
    chooseBackupDirectory();
    EXPECT_EQ(state.backupDirectory, onAnotherDrive("Sicherung/data/result/ergo_bike/"));
    EXPECT_EQ(device_tests::bytesOf(root + "Sicherung/data"), "a file in the way");
}

TEST_F(DirectoryChoice, ABackupTreeItselfIsKeptAsItIsAndNothingIsMade) {
    const std::string inTree[] = {"Sicherung/data/result/ergo_bike/",
                                  "Sicherung/data/result/ergo_bike/older/"};
    for (const std::string& name : inTree) {
        fs::create_directories(root + name);
        answerBackup(onAnotherDrive(name));
        chooseBackupDirectory();
        EXPECT_EQ(state.backupDirectory, onAnotherDrive(name));
        EXPECT_TRUE(fs::is_empty(root + name));
    }
}

TEST_F(DirectoryChoice, ABackupOnTheDevicesDriveIsRefused) {
    fs::create_directory(root + "Sicherung");
    state.backupDirectory = "/Volumes/STICK/data/result/ergo_bike/";
    expectBackupOnDaumDrive();
    answerBackup(root + "Sicherung/");
    chooseBackupDirectory();
    EXPECT_EQ(state.backupDirectory, "/Volumes/STICK/data/result/ergo_bike/");
    EXPECT_TRUE(fs::is_empty(root + "Sicherung"));
}

// The requester's answer isn't tested: no answer is the empty path, on no drive.
TEST_F(DirectoryChoice, ACancelledBackupRequesterMakesTheTreeInTheWorkingDirectory) {
    state.backupDirectory = "/Volumes/STICK/data/result/ergo_bike/";
    answerBackup("");
    chooseBackupDirectory();
    EXPECT_EQ(state.backupDirectory, "data/result/ergo_bike/");
    EXPECT_TRUE(fs::is_directory(root + "start/data/result/ergo_bike"));
}

TEST_F(DirectoryChoice, ABackupRequesterThatEndsWithTheProgramChangesNothing) {
    state.backupDirectory = "/Volumes/STICK/data/result/ergo_bike/";
    answerBackup("");
    services::askForQuit();
    EXPECT_FALSE(chooseBackupDirectory());
    services::forgetQuit();
    EXPECT_EQ(state.backupDirectory, "/Volumes/STICK/data/result/ergo_bike/");
    EXPECT_TRUE(fs::is_empty(root + "start"));
}

TEST_F(DirectoryChoice, ABackupIsChosenUnlessItsRequesterIsCancelled) {
    fs::create_directory(root + "Sicherung");
    answerBackup(onAnotherDrive("Sicherung/"));
    EXPECT_TRUE(chooseBackupDirectory());
    answerBackup(onAnotherDrive("Sicherung/data/result/ergo_bike/"));
    EXPECT_TRUE(chooseBackupDirectory());
    expectBackupOnDaumDrive();
    answerBackup(root + "Sicherung/");
    EXPECT_TRUE(chooseBackupDirectory());
    answerBackup("");
    EXPECT_FALSE(chooseBackupDirectory());
    // The root is on the drive of no answer.
    fs::current_path("/");
    expectBackupOnDaumDrive();
    answerBackup("");
    EXPECT_FALSE(chooseBackupDirectory());
}

TEST_F(DirectoryChoice, PathsBeyondLatin1Work) {
    makeCard("Łódź \xFF/");
    answerDaum(root + "Łódź \xFF/");
    chooseDaumDirectory();
    EXPECT_EQ(here(), root + "Łódź \xFF/data/result/ergo_bike/");
    fs::create_directory(root + "Bücher \xFE");
    answerBackup(onAnotherDrive("Bücher \xFE/"));
    chooseBackupDirectory();
    EXPECT_EQ(state.backupDirectory, onAnotherDrive("Bücher \xFE/data/result/ergo_bike/"));
    EXPECT_TRUE(fs::is_directory(root + "Bücher \xFE/data/result/ergo_bike"));
}

}  // namespace
