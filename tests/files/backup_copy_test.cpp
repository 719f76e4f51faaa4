#include "files/backup_copy.h"

#include <chrono>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "device/index_recovery.h"
#include "device/training_names.h"
#include "services/disk/held_directory.h"
#include "services/disk/numbered_files.h"
#include "services/disk/whole_files.h"
#include "services/text/text.h"
#include "tests/files/backup_fixture.h"
#include "tests/stand_ins/file_size_limit.h"

namespace {

namespace fs = std::filesystem;
using namespace files_tests;
using services::operator""_l1;
using stand_ins::FileSizeLimit;
using stand_ins::world;
using Numbers = std::vector<std::uint64_t>;

TEST_F(BackupCopy, CopiesWhatTheBackupLacksAndAppendsItsRecords) {
    useCard({recordOf(1, 1), recordOf(2, 2), recordOf(3, 3)});
    useBackupIndex({recordOf(2, 2)});
    const auto time = fs::file_time_type::clock::now() - std::chrono::hours(50'000);
    fs::last_write_time(nameOf(3), time);
    copyAndClose();
    EXPECT_EQ(lines(), line('+', 1) + line('*', 2) + line('+', 3));
    EXPECT_EQ(namesIn(backup), (std::set<std::string>{"dictionary.2", nameOf(1), nameOf(3)}));
    EXPECT_EQ(bytesOf(backup / nameOf(1)), contentOf(nameOf(1)));
    EXPECT_EQ(fs::last_write_time(backup / nameOf(3)), fs::last_write_time(nameOf(3)));
    EXPECT_EQ(bytesOf(backup / "dictionary.2"), device::encodeDictionaryRecord(recordOf(2, 2)) +
                                                    device::encodeDictionaryRecord(recordOf(1, 1)) +
                                                    device::encodeDictionaryRecord(recordOf(3, 3)));
    EXPECT_EQ(tableChanges, 1);
}

// The backup was the card for a while, and saving its index was cut off.
TEST_F(BackupCopy, ABackupIndexThatWasCutOffIsTakenUpFirst) {
    useCard({recordOf(1, 1), recordOf(2, 2), recordOf(3, 3)});
    writeBytes(backup / nameOf(1), contentOf(nameOf(1)));
    writeBytes(backup / nameOf(2), contentOf(nameOf(2)));
    const std::string whole = device::encodeDictionaryRecord(recordOf(1, 1)) +
                              device::encodeDictionaryRecord(recordOf(2, 2));
    writeBytes(backup / device::indexCopyName, device::encodeIndexCopy({.index = whole}));
    writeBytes(backup / "dictionary.2", whole.substr(0, 200));
    copyAndClose();
    EXPECT_EQ(lines(), line('*', 1) + line('*', 2) + line('+', 3));
    EXPECT_EQ(bytesOf(backup / "dictionary.2"),
              whole + device::encodeDictionaryRecord(recordOf(3, 3)));
    EXPECT_FALSE(fs::exists(backup / device::indexCopyName));
}

// After deleting all trainings the index is empty: that is said once.
TEST_F(BackupCopy, AnIndexThatCannotBeReadIsNotReadAgain) {
    useCard({recordOf(1, 1)});
    writeBytes("dictionary.2", "");
    stand_ins::expectMessage(
        "Dateifehler",
        "Die Datei 'data\\result\\ergo_bike\\dictionary.2' ist leer oder wurde nicht gefunden!");
    copyAndClose();
    EXPECT_FALSE(fs::exists(backup / nameOf(1)));
}

TEST_F(BackupCopy, ACompleteBackupIsLeftAsItIs) {
    useCard({recordOf(1, 1), recordOf(2, 2)});
    useBackupIndex({recordOf(2, 2), recordOf(7, 3), recordOf(1, 1)});
    const std::string index = bytesOf(backup / "dictionary.2");
    copyAndClose();
    EXPECT_EQ(lines(), line('*', 1) + line('*', 2));
    EXPECT_EQ(namesIn(backup), std::set<std::string>{"dictionary.2"});
    EXPECT_EQ(bytesOf(backup / "dictionary.2"), index);
}

TEST_F(BackupCopy, CopyingTwiceCopiesOnce) {
    useCard({recordOf(1, 1), recordOf(2, 2)});
    copyAndClose();
    EXPECT_EQ(lines(), line('+', 1) + line('+', 2));
    const std::string index = bytesOf(backup / "dictionary.2");
    copyAndClose();
    EXPECT_EQ(lines(), line('*', 1) + line('*', 2));
    EXPECT_EQ(bytesOf(backup / "dictionary.2"), index);
}

TEST_F(BackupCopy, StrayBytesAtTheEndOfTheBackupIndexStayAndRecordsFollowThem) {
    useCard({recordOf(1, 1), recordOf(2, 2), recordOf(3, 3), recordOf(4, 4)});
    useBackupIndex({recordOf(1, 1), recordOf(2, 2), recordOf(3, 3)}, "0123456789");
    const std::string before = bytesOf(backup / "dictionary.2");
    ASSERT_EQ(before.size(), 152U * 3 + 10);
    copyAndClose();
    EXPECT_EQ(lines(), line('*', 1) + line('*', 2) + line('*', 3) + line('+', 4));
    EXPECT_EQ(bytesOf(backup / "dictionary.2"),
              before + device::encodeDictionaryRecord(recordOf(4, 4)));
}

// However little an interrupted backup has written of it.
TEST_F(BackupCopy, APieceOfAMissingRecordAtTheEndOfTheBackupIndexGoes) {
    useCard({recordOf(0x4a3f1c, 1), recordOf(0x4a3f1d, 2)});
    const std::string first = device::encodeDictionaryRecord(recordOf(0x4a3f1c, 1));
    const std::string second = device::encodeDictionaryRecord(recordOf(0x4a3f1d, 2));
    for (const std::size_t length : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 76U, 151U}) {
        SCOPED_TRACE(length);
        fs::remove(backup / nameOf(0x4a3f1d));
        writeBytes(backup / "dictionary.2", first + second.substr(0, length));
        copyAndClose();
        EXPECT_EQ(lines(), line('*', 0x4a3f1c) + line('+', 0x4a3f1d));
        EXPECT_EQ(bytesOf(backup / "dictionary.2"), first + second);
    }
}

TEST_F(BackupCopy, AMissingBackupIndexIsMadeAndNamesNumberZero) {
    useCard({recordOf(0, 1), recordOf(1, 2)});
    ASSERT_FALSE(fs::exists(backup / "dictionary.2"));
    copyAndClose();
    EXPECT_EQ(lines(), line('*', 0) + line('+', 1));
    EXPECT_EQ(numbersInIndex(backup / "dictionary.2"), Numbers{1});
}

TEST_F(BackupCopy, ATrainingThatStandsTwiceIsCopiedAndAppendedTwice) {
    useCard({recordOf(1, 1), recordOf(1, 2)});
    copyAndClose();
    EXPECT_EQ(lines(), line('+', 1) + line('+', 1));
    EXPECT_EQ(numbersInIndex(backup / "dictionary.2"), (Numbers{1, 1}));
}

TEST_F(BackupCopy, AFileOfTheSameContentCountsAsCopiedAndOneOfOtherContentIsLeftAlone) {
    useCard({recordOf(1, 1), recordOf(2, 2)});
    writeBytes(backup / nameOf(1), contentOf(nameOf(1)));
    writeBytes(backup / nameOf(2), "older");
    copyAndClose();
    EXPECT_EQ(lines(), line('+', 1) + line('-', 2));
    EXPECT_EQ(bytesOf(backup / nameOf(2)), "older");
    EXPECT_EQ(numbersInIndex(backup / "dictionary.2"), Numbers{1});
}

TEST_F(BackupCopy, ATrainingFileThatIsALinkIsNotCopied) {
    useCard({recordOf(1, 1), recordOf(2, 2)});
    fs::rename(nameOf(1), "../elsewhere");
    fs::create_symlink("../elsewhere", nameOf(1));
    copyAndClose();
    EXPECT_EQ(lines(), line('-', 1) + line('+', 2));
    EXPECT_EQ(namesIn(backup), (std::set<std::string>{"dictionary.2", nameOf(2)}));
}

TEST_F(BackupCopy, AFullDiskIsReportedAndWhatWasCopiedStaysUsable) {
    useCard({recordOf(1, 1), recordOf(2, 2), recordOf(3, 3)});
    writeBytes(nameOf(2), std::string(5000, 'x'));
    world.events.push_back(closeEvent(services::reportWindow));
    {
        const FileSizeLimit full(4000);
        copy();
    }
    EXPECT_EQ(lines(), line('+', 1) + line('-', 2) + line('+', 3));
    EXPECT_EQ(namesIn(backup), (std::set<std::string>{"dictionary.2", nameOf(1), nameOf(3)}));
    EXPECT_EQ(numbersInIndex(backup / "dictionary.2"), (Numbers{1, 3}));
}

TEST_F(BackupCopy, ARecordThatCanNotBeAppendedWholeIsTakenBack) {
    useCard({recordOf(1, 1), recordOf(2, 2), recordOf(3, 3)});
    useBackupIndex({recordOf(1, 1)});
    const std::string before = bytesOf(backup / "dictionary.2");
    world.events.push_back(closeEvent(services::reportWindow));
    {
        const FileSizeLimit full(152 + 100);
        copy();
    }
    EXPECT_EQ(lines(), line('*', 1) + line('-', 2) + line('-', 3));
    EXPECT_EQ(bytesOf(backup / "dictionary.2"), before);

    // With room again the copies that are there already are taken over.
    copyAndClose();
    EXPECT_EQ(lines(), line('*', 1) + line('+', 2) + line('+', 3));
    EXPECT_EQ(numbersInIndex(backup / "dictionary.2"), (Numbers{1, 2, 3}));
}

TEST_F(BackupCopy, LeftoversOfAnInterruptedCopyAreRemovedAndNothingElse) {
    useCard({recordOf(1, 1)});
    writeBytes(backup / device::unfinishedName(nameOf(1)), "half");
    writeBytes(backup / device::unfinishedName(nameOf(99)), "half");
    writeBytes(backup / device::unfinishedName("notes"), "precious");
    writeBytes(backup / nameOf(98), "precious");
    copyAndClose();
    EXPECT_EQ(lines(), line('+', 1));
    EXPECT_EQ(namesIn(backup), (std::set<std::string>{"dictionary.2", nameOf(1), nameOf(98),
                                                      device::unfinishedName("notes")}));
}

// Saving the index was cut off, and now the card can't be written: its trainings are listed from
// the copy of the index, and can be backed up.
TEST_F(BackupCopy, ACardThatIsListedFromTheCopyOfItsIndexIsBackedUp) {
    useCard({recordOf(1, 1), recordOf(2, 2)});
    const std::string index = bytesOf("dictionary.2");
    writeBytes(device::indexCopyName, device::encodeIndexCopy({.index = index}));
    fs::remove("dictionary.2");
    // Nothing can be written under the name that a repaired index has until it is complete.
    fs::create_directory(device::unfinishedIndexName);
    copyAndClose();
    EXPECT_FALSE(fs::exists("dictionary.2"));
    EXPECT_EQ(lines(), line('+', 1) + line('+', 2));
    EXPECT_EQ(bytesOf(backup / "dictionary.2"), index);
    EXPECT_EQ(bytesOf(backup / nameOf(2)), contentOf(nameOf(2)));
}

// The disk no longer gives the index: one that claims more bytes than any memory holds counts so.
TEST_F(BackupCopy, ACardWhoseIndexCantBeReadIsBackedUpByTheCopy) {
    useCard({recordOf(1, 1), recordOf(2, 2)});
    const std::string index = bytesOf("dictionary.2");
    writeBytes(device::indexCopyName, device::encodeIndexCopy({.index = index}));
    fs::resize_file("dictionary.2", std::uintmax_t{1} << 42U);
    copyAndClose();
    EXPECT_EQ(lines(), line('+', 1) + line('+', 2));
    EXPECT_EQ(bytesOf(backup / "dictionary.2"), index);
    EXPECT_EQ(bytesOf(backup / nameOf(2)), contentOf(nameOf(2)));
}

// The old index lies beside the copy.
TEST_F(BackupCopy, ACardWithAnOldIndexBesideItsCopyIsBackedUpByTheCopy) {
    useCard({recordOf(1, 1), recordOf(2, 2), recordOf(3, 3)});
    const std::string old = bytesOf("dictionary.2");
    const std::string index = old.substr(0, 152) + old.substr(2 * 152);
    writeBytes(device::indexCopyName,
               device::encodeIndexCopy(
                   {.index = index, .oldLength = old.size(), .oldHash = services::hashOf(old)}));
    fs::remove(nameOf(2));
    writeBytes("dictionary.2", old.substr(0, 200));  // and half of it is gone
    fs::create_directory(device::unfinishedCopyName);
    copyAndClose();
    EXPECT_EQ(lines(), line('+', 1) + line('+', 3));
    EXPECT_EQ(bytesOf(backup / "dictionary.2"), index);
}

TEST_F(BackupCopy, AnotherCardInTheMiddleStopsTheCopying) {
    useCard({recordOf(1, 1), recordOf(2, 2)});
    world.whileRepainting = [&](int) {
        // Not before the index is read, and then once.
        const auto& window = world.windows[services::reportWindow];
        if (!window.controls.at(files::reportText).text.ends_with("werden.\r")) return;
        writeBytes("dictionary.2", device::encodeDictionaryRecord(recordOf(2, 1)));
        writeBytes(nameOf(2), "of another card");
    };
    copyAndClose();
    EXPECT_EQ(lines(), line('-', 1) + line('-', 2));
    EXPECT_EQ(namesIn(backup), std::set<std::string>{"dictionary.2"});
    EXPECT_EQ(fs::file_size(backup / "dictionary.2"), 0U);
    // The table shows what is there now.
    ASSERT_EQ(device::state.dictionary.size(), 1U);
    EXPECT_EQ(device::state.dictionary[0].fileName, nameOf(2));
}

// Both would write under the same names, or copy one training's samples for another's.
TEST_F(BackupCopy, ACardOrBackupThatAnotherProgramIsAtWorkOnCanNotBeOpened) {
    useCard({recordOf(1, 1)});
    services::HeldDirectory theirs;
    ASSERT_EQ(services::holdDirectory(theirs, device::state.backupDirectory),
              services::Holding::done);
    stand_ins::expectMessage(
        "Fehler"_l1, services::concatenate("Die Datei '"_l1, backup.string(),
                                           "/Dictionary.2' konnte nicht geöffnet werden!"_l1));
    copyAndClose();
    EXPECT_EQ(lines(), "");
    ASSERT_EQ(services::holdDirectory(theirs, {}), services::Holding::done);
    stand_ins::expectMessage("Fehler"_l1,
                             "Die Datei 'Dictionary.2' konnte nicht geöffnet werden!"_l1);
    copyAndClose();
    EXPECT_EQ(lines(), "");
    services::letGo(theirs);
    copyAndClose();
    EXPECT_EQ(lines(), line('+', 1));
}

TEST_F(BackupCopy, WhileItIsMadeCardAndBackupAreHeldAndNoLonger) {
    useCard({recordOf(1, 1)});
    services::HeldDirectory theirs;
    int looked = 0;
    world.whileRepainting = [&](int) {
        const auto& window = world.windows[services::reportWindow];
        if (!window.controls.at(files::reportText).text.ends_with("werden.\r")) return;
        if (++looked == 1) return;  // the line itself, before anything is opened
        for (const services::Path& place : {services::Path(), device::state.backupDirectory})
            EXPECT_EQ(services::holdDirectory(theirs, place), services::Holding::heldByAnother);
    };
    copyAndClose();
    EXPECT_GT(looked, 1);
    for (const services::Path& place : {services::Path(), device::state.backupDirectory})
        EXPECT_EQ(services::holdDirectory(theirs, place), services::Holding::done);
    services::letGo(theirs);
}

TEST_F(BackupCopy, AMissingCurrentIndexIsReported) {
    useCard({recordOf(1, 1)});
    fs::remove("dictionary.2");
    stand_ins::expectMessage(
        "Dateifehler",
        "Die Datei 'data\\result\\ergo_bike\\dictionary.2' ist leer oder wurde nicht gefunden!");
    stand_ins::expectMessage("Fehler"_l1,
                             "Die Datei 'Dictionary.2' konnte nicht geöffnet werden!"_l1);
    copyAndClose();
    EXPECT_EQ(lines(), "");
    EXPECT_FALSE(fs::exists(backup / "dictionary.2"));
}

TEST_F(BackupCopy, TheTableIsReadAfreshBeforeAndAfter) {
    auto unmeasured = recordOf(1, 2);
    unmeasured.pulse = unmeasured.rpm = 1.0F;
    useCard({unmeasured, recordOf(2, 1)});
    for (auto& record : device::state.dictionary)
        record.selected = 0;
    std::swap(device::state.dictionary[0], device::state.dictionary[1]);
    copyAndClose();
    EXPECT_EQ(lines(), line('+', 2) + line('+', 1));
    ASSERT_EQ(device::state.dictionary.size(), 2U);
    EXPECT_EQ(device::state.dictionary[1].pulse, 1.0F);
    EXPECT_EQ(device::state.dictionary[1].rpm, 1.0F);
    EXPECT_EQ(device::state.dictionary[0].selected, 1);
}

TEST_F(BackupCopy, TheReportWindowIsAsWideAsItsText) {
    useCard({recordOf(1, 1)});
    copyAndClose();
    EXPECT_EQ(report.title, "Dateien kopieren");
    EXPECT_EQ(report.width, 448);
    EXPECT_EQ(report.height, 686);
    EXPECT_EQ(report.controls[files::reportText].box, (services::Box{8, 8, 448, 672}));
    EXPECT_TRUE(report.shortcuts.contains(services::escapeKey));
    EXPECT_TRUE(world.windows.empty());
}

TEST_F(BackupCopy, WithoutAReportWindowNothingIsCopied) {
    useCard({recordOf(1, 1)});
    world.windowsOpen = false;
    copy();
    EXPECT_TRUE(fs::is_empty(backup));
}

}  // namespace
