// A backup whose index the system lets nobody read or cut.
#include <cerrno>

#include "device/index_recovery.h"
#include "files/backup_copy.h"
#include "tests/faults/fault_injector.h"
#include "tests/files/files_test.h"

namespace {

namespace fs = std::filesystem;
using namespace files_tests;
using fault_injector::FaultKind;
using stand_ins::world;

class BackupCalls : public FilesTest {
  protected:
    void SetUp() override {
        FilesTest::SetUp();
        backup = directory / "stick" / "data" / "result" / "ergo_bike";
        fs::create_directories(backup);
        useCard({recordOf(1, 1), recordOf(2, 2), recordOf(3, 3)});
        device::state.backupDirectory = backup.string() + "/";
        world.anyMessageIsFine = true;
        whole = device::encodeDictionaryRecord(recordOf(1, 1)) +
                device::encodeDictionaryRecord(recordOf(2, 2));
    }

    static int copy(const fault_injector::Fault& fault) {
        world.events.push_back(closeEvent(services::reportWindow));
        fault_injector::arm(fault);
        files::copyToBackup(700, [] {});
        return fault_injector::disarm();
    }

    fs::path backup;
    std::string whole;  // the backup's index of the first two trainings
};

// Half of its names would have trainings appended that it has already.
TEST_F(BackupCalls, ABackupIndexOfUnknownContentGetsNothingAppended) {
    const std::string cutShort = whole.substr(0, 200);
    const auto leaveCutOffSave = [&] {
        fs::remove_all(backup);
        fs::create_directories(backup);
        writeBytes(backup / nameOf(1), contentOf(nameOf(1)));
        writeBytes(backup / nameOf(2), contentOf(nameOf(2)));
        writeBytes(backup / "dictionary.2", cutShort);
        writeBytes(backup / device::indexCopyName, device::encodeIndexCopy({.index = whole}));
    };
    leaveCutOffSave();
    const int opens = copy({.names = {"open"}});
    const std::string complete = whole + device::encodeDictionaryRecord(recordOf(3, 3));
    ASSERT_EQ(bytesOf(backup / "dictionary.2"), complete);

    int leftAlone = 0;
    for (int at = 0; at < opens; ++at) {
        leaveCutOffSave();
        copy({.kind = FaultKind::fail, .at = at, .error = EIO, .names = {"open"}});
        const std::string index = bytesOf(backup / "dictionary.2");
        EXPECT_TRUE(index == cutShort || complete.starts_with(index)) << at;
        if (index == cutShort) {
            ++leftAlone;
            EXPECT_FALSE(fs::exists(backup / nameOf(3))) << at;
        }
        copy({});
        EXPECT_EQ(bytesOf(backup / "dictionary.2"), complete) << at;
    }
    EXPECT_GT(leftAlone, 0);
}

// The index is replaced as a whole, or stays.
TEST_F(BackupCalls, ATornRecordStaysWhereTheIndexCantBeReplaced) {
    const std::string torn = whole + device::encodeDictionaryRecord(recordOf(3, 3)).substr(0, 70);
    writeBytes(backup / "dictionary.2", torn);
    EXPECT_GT(copy({.kind = FaultKind::fail, .error = EIO, .goesOn = true, .names = {"rename"}}),
              0);
    EXPECT_EQ(bytesOf(backup / "dictionary.2"), torn);
    EXPECT_EQ(namesIn(backup), (std::set<std::string>{"dictionary.2", nameOf(3)}));
    copy({});
    EXPECT_EQ(bytesOf(backup / "dictionary.2"),
              whole + device::encodeDictionaryRecord(recordOf(3, 3)));
}

// Each try writes the whole index: on a full disk one for each record would take hours.
TEST_F(BackupCalls, RecordsForWhichThereIsNoRoomAreTriedByHalves) {
    std::vector<device::DictionaryRecord> records;
    for (std::uint64_t i = 1; i <= 40; ++i)
        records.push_back(recordOf(i, static_cast<std::int32_t>(i)));
    useCard(records);
    // 40, 20, 10, 5, 2 and 1
    EXPECT_EQ(copy({.kind = FaultKind::fail, .error = ENOSPC, .goesOn = true, .names = {"rename"}}),
              6);
    EXPECT_EQ(bytesOf(backup / "dictionary.2"), "");
    copy({.kind = FaultKind::fail, .error = ENOSPC, .names = {"rename"}});
    EXPECT_EQ(fs::file_size(backup / "dictionary.2"), 40U * 152);
}

// It may be in memory alone, from a program that was killed.
TEST_F(BackupCalls, WhatCountsAsCopiedIsOnTheDisk) {
    copy({});
    ASSERT_EQ(fs::file_size(backup / "dictionary.2"), 3U * 152);
    EXPECT_GT(copy({.names = {"fsync"}}), 0);
    EXPECT_EQ(fs::file_size(backup / "dictionary.2"), 3U * 152);
}

}  // namespace
