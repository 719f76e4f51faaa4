// Where the backup copy goes: a directory that is missing, asked for, refused or the card itself.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <set>
#include <string>

#include "device/device_tree.h"
#include "services/disk/directories.h"
#include "services/disk/endings.h"
#include "services/text/text.h"
#include "tests/files/backup_fixture.h"

namespace {

namespace fs = std::filesystem;
using namespace files_tests;
using services::operator""_l1;
using stand_ins::world;

// A lease keeps the file from being opened for writing, whoever runs the test.
class ReadOnlyForAll {
  public:
    explicit ReadOnlyForAll(const char* path) : file(open(path, O_RDONLY | O_CLOEXEC)) {
        EXPECT_GE(file, 0);
        EXPECT_EQ(fcntl(file, F_SETLEASE, F_RDLCK), 0);
    }
    ~ReadOnlyForAll() {
        close(file);
        std::signal(SIGIO, previousHandler);
    }
    ReadOnlyForAll(const ReadOnlyForAll&) = delete;
    ReadOnlyForAll& operator=(const ReadOnlyForAll&) = delete;

  private:
    void (*previousHandler)(int) = std::signal(SIGIO, SIG_IGN);
    int file;
};

// The same place by a path whose text before the second "/", its drive, is another one.
std::string onAnotherDrive(const fs::path& path) {
    return "/." + path.string();
}

// Chooses a directory on the card's own drive, which is refused.
void chooseTheCardsOwnDrive(const fs::path& directory) {
    world.directoryAnswers.push_back(
        {services::Text("Wähle das Verzeichnis der Sicherheitskopie"_l1), "",
         directory.string() + "/"});
    stand_ins::expectMessage(
        "Fehler"_l1,
        "Das gewählte Laufwerk der Sicherheitskopie ist mit dem Laufwerk des Daum Verzeichnisses "
        "identisch!"_l1);
}

TEST_F(BackupCopy, AMissingBackupDirectoryIsReported) {
    useCard({recordOf(1, 1)});
    device::state.backupDirectory =
        "/nowhere/B\xC3\xBC"
        "cher/";
    stand_ins::expectMessage(
        "Fehler"_l1, "Die Datei '/nowhere/Bücher/Dictionary.2' konnte nicht geöffnet werden!"_l1);
    copyAndClose();
    EXPECT_EQ(lines(), "");
    EXPECT_EQ(tableChanges, 1);
}

TEST_F(BackupCopy, ADirectoryInPlaceOfTheBackupIndexIsReported) {
    useCard({recordOf(1, 1)});
    fs::create_directory(backup / "dictionary.2");
    stand_ins::expectMessage("Fehler"_l1,
                             services::Text("Die Datei '"_l1) + device::state.backupDirectory +
                                 services::Text("Dictionary.2' konnte nicht geöffnet werden!"_l1));
    copyAndClose();
    EXPECT_EQ(lines(), "");
    EXPECT_FALSE(fs::exists(backup / nameOf(1)));
}

TEST_F(BackupCopy, WithoutABackupDirectoryOneIsChosen) {
    useCard({recordOf(1, 1)});
    device::state.backupDirectory = "";
    device::state.programDirectory = "/program/";
    const fs::path elsewhere = directory / "zweiter";
    fs::create_directories(elsewhere);
    world.directoryAnswers.push_back(
        {services::Text("Wähle das Verzeichnis der Sicherheitskopie"_l1), "/program/",
         onAnotherDrive(elsewhere) + "/"});
    copyAndClose();
    EXPECT_EQ(lines(), line('+', 1));
    EXPECT_TRUE(fs::exists(elsewhere / "data/result/ergo_bike" / nameOf(1)));
}

TEST_F(BackupCopy, ARefusedChoiceStopsWhenNoDirectoryWasChosenBefore) {
    useCard({recordOf(1, 1)});
    device::state.backupDirectory = "";
    chooseTheCardsOwnDrive(directory);
    copy();
    EXPECT_TRUE(world.windows.empty());
    EXPECT_EQ(tableChanges, 0);
}

// An index in the tree that is made then would be found in place of the card's.
TEST_F(BackupCopy, ACancelledChoiceCopiesNothingHoweverOftenItIsCancelled) {
    useCard({recordOf(1, 1)});
    for (const services::Path& before : {services::Path(), services::currentDirectory()}) {
        device::state.backupDirectory = before;
        for (int i = 0; i < 2; ++i) {
            world.directoryAnswers.push_back(
                {services::Text("Wähle das Verzeichnis der Sicherheitskopie"_l1), "", ""});
            world.events = {closeEvent(services::reportWindow)};
            copy();
            EXPECT_EQ(world.events.size(), 1U) << "a report was read";
            EXPECT_EQ(device::state.backupDirectory, before);
        }
    }
    world.events.clear();
    EXPECT_TRUE(world.windows.empty());
    EXPECT_TRUE(fs::is_empty("data/result/ergo_bike"));
    EXPECT_EQ(tableChanges, 0);
    EXPECT_EQ(device::locateDeviceTree(), device::TreeLocation::current);
}

TEST_F(BackupCopy, AChoiceThatEndsWithTheProgramMakesAndCopiesNothing) {
    useCard({recordOf(1, 1)});
    device::state.backupDirectory = "";
    world.directoryAnswers.push_back(
        {services::Text("Wähle das Verzeichnis der Sicherheitskopie"_l1), "", ""});
    world.events = {closeEvent(services::reportWindow)};
    services::askForQuit();
    copy();
    services::forgetQuit();
    EXPECT_EQ(world.events.size(), 1U) << "a report was read";
    world.events.clear();
    EXPECT_TRUE(world.windows.empty());
    EXPECT_EQ(namesIn("."), (std::set<std::string>{"dictionary.2", nameOf(1)}));
    EXPECT_EQ(device::state.backupDirectory, "");
}

TEST_F(BackupCopy, TheCurrentDirectoryAsBackupAsksForAnotherAndCopiesNothing) {
    useCard({recordOf(1, 1)});
    device::state.backupDirectory = services::currentDirectory();
    chooseTheCardsOwnDrive(directory);
    const std::string index = bytesOf("dictionary.2");
    copyAndClose();
    EXPECT_EQ(lines(), line('*', 1));
    EXPECT_EQ(bytesOf("dictionary.2"), index);
}

TEST_F(BackupCopy, TheCurrentDirectoryAsBackupHasAMessageOfItsOwnWhenItCanNotBeWritten) {
    useCard({recordOf(1, 1)});
    device::state.backupDirectory = services::currentDirectory();
    chooseTheCardsOwnDrive(directory);
    stand_ins::expectMessage(
        "Fehler"_l1,
        "Der Pfad der Sicherheitskopie ist mit dem aktuellen Daum Verzeichnis identisch!"_l1);
    const ReadOnlyForAll index("dictionary.2");
    copyAndClose();
    EXPECT_EQ(lines(), "");
}

// Paths are compared as text: by another way to it the card is a backup like any other.
TEST_F(BackupCopy, TheCurrentDirectoryByAnotherPathIsTakenForAnother) {
    useCard({recordOf(1, 1)});
    device::state.backupDirectory = onAnotherDrive(services::currentDirectory());
    const std::string index = bytesOf("dictionary.2");
    copyAndClose();
    EXPECT_EQ(lines(), line('*', 1));
    EXPECT_EQ(bytesOf("dictionary.2"), index);

    stand_ins::expectMessage(
        "Fehler"_l1, services::concatenate("Die Datei '", device::state.backupDirectory,
                                           "Dictionary.2' konnte nicht geöffnet werden!"_l1));
    const ReadOnlyForAll leased("dictionary.2");
    copyAndClose();
    EXPECT_EQ(lines(), "");
}

}  // namespace
