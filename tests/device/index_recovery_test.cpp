#include "device/index_recovery.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "device/device_tree.h"
#include "device/dictionary.h"
#include "tests/device/card_fixture.h"
#include "tests/stand_ins/file_size_limit.h"

namespace {

namespace fs = std::filesystem;
using device::loadDictionary;
using device::saveDictionary;
using device::SaveMode;
using device::state;
using device_tests::bytesOf;
using device_tests::indexRecord;
using device_tests::nameOf;
using device_tests::writeBytes;
using device_tests::writeTrainingFile;

class IndexRecovery : public device_tests::CardTest {
  protected:
    void SetUp() override {
        CardTest::SetUp();
        for (std::uint64_t i = 1; i <= 3; ++i) {
            writeTrainingFile(i);
            index += indexRecord(i, static_cast<std::int32_t>(i)).bytes;
        }
    }

    // What a run leaves that was cut off before it removed the copy.
    void leaveCopy(const fs::path& directory_ = ".") {
        writeBytes(directory_ / device::indexCopyName, device::encodeIndexCopy({.index = index}));
    }

    static bool copyLies() { return fs::exists(device::indexCopyName); }

    std::string index;
};

TEST_F(IndexRecovery, AMissingIndexIsTakenUpFromTheCopy) {
    leaveCopy();
    loadDictionary();
    EXPECT_EQ(state.dictionary.size(), 3U);
    EXPECT_EQ(bytesOf("dictionary.2"), index);
    EXPECT_FALSE(copyLies());
}

TEST_F(IndexRecovery, AnIndexThatWasCutShortIsTakenUpFromTheCopy) {
    for (const std::size_t length : {0U, 1U, 152U, 300U, 455U}) {
        leaveCopy();
        writeBytes("dictionary.2", index.substr(0, length));
        loadDictionary();
        EXPECT_EQ(state.dictionary.size(), 3U);
        EXPECT_EQ(bytesOf("dictionary.2"), index);
        EXPECT_FALSE(copyLies());
    }
}

TEST_F(IndexRecovery, AnUnfinishedCopyIsNotTakenUp) {
    const std::string copy = device::encodeIndexCopy({.index = index});
    writeBytes(std::string(device::indexCopyName), copy.substr(0, copy.size() - 1));
    device_tests::expectUnreadableIndex();
    loadDictionary();
    EXPECT_FALSE(fs::exists("dictionary.2"));
}

TEST_F(IndexRecovery, AGoodIndexIsNotReplacedByAnOldCopy) {
    leaveCopy();
    const std::string newer = index + indexRecord(4, 4).bytes;
    writeTrainingFile(4);
    writeBytes("dictionary.2", newer);
    loadDictionary();
    EXPECT_EQ(bytesOf("dictionary.2"), newer);
    EXPECT_EQ(state.dictionary.size(), 4U);
    EXPECT_FALSE(copyLies());
}

TEST_F(IndexRecovery, ACardWithoutItsIndexIsFoundByItsCopy) {
    const fs::path tree = directory / "card/data/result/ergo_bike";
    fs::create_directories(tree);
    leaveCopy(tree);
    fs::current_path(directory / "card");
    EXPECT_EQ(device::locateDeviceTree(), device::TreeLocation::below);
    EXPECT_EQ(bytesOf("dictionary.2"), index);
    fs::remove("dictionary.2");
    leaveCopy();
    EXPECT_EQ(device::locateDeviceTree(), device::TreeLocation::current);
    EXPECT_EQ(bytesOf("dictionary.2"), index);
}

TEST_F(IndexRecovery, WhatCantBeWrittenIsLoadedAllTheSame) {
    leaveCopy();
    const stand_ins::FileSizeLimit full(100);
    loadDictionary();
    EXPECT_EQ(state.dictionary.size(), 3U);
    EXPECT_FALSE(fs::exists("dictionary.2"));
    EXPECT_TRUE(copyLies());
    // Trainings can be deleted then, which makes room, unless another card is there meanwhile.
    EXPECT_TRUE(device::isIndexAsLoaded());
    writeBytes("dictionary.2", "x");
    EXPECT_FALSE(device::isIndexAsLoaded());
}

// What it tells would be lost with it: the index on the card is not what it should be.
TEST_F(IndexRecovery, ACopyThatCouldNotBeSettledIsNotReplacedByAnother) {
    leaveCopy();
    const std::string copy = bytesOf(std::string(device::indexCopyName));
    writeBytes("dictionary.2", index.substr(0, 152));
    {
        const stand_ins::FileSizeLimit full(100);
        loadDictionary();
    }
    ASSERT_EQ(state.dictionary.size(), 3U);
    // Now there is room, which deleting a training has made.
    ASSERT_TRUE(device::beginChange());
    fs::remove(nameOf(2));
    state.dictionary[1].selected = 1;
    saveDictionary(SaveMode::unselected);
    EXPECT_EQ(bytesOf(std::string(device::indexCopyName)), copy);
    EXPECT_EQ(bytesOf("dictionary.2"), index.substr(0, 152));
    loadDictionary();
    ASSERT_EQ(state.dictionary.size(), 2U);
    EXPECT_EQ(state.dictionary[1].fileName, nameOf(3));
    EXPECT_FALSE(copyLies());
}

TEST_F(IndexRecovery, WithoutRoomForACopyTheOldIndexStays) {
    writeBytes("dictionary.2", index + "rest");
    loadDictionary();
    {
        const stand_ins::FileSizeLimit full(300);
        saveDictionary(SaveMode::all);
    }
    EXPECT_EQ(bytesOf("dictionary.2"), index + "rest");
    EXPECT_FALSE(copyLies());
    EXPECT_FALSE(fs::exists(device::unfinishedCopyName));
}

// There is room for the copy but none beside it: the old index stays until there is.
TEST_F(IndexRecovery, AnIndexThatCouldNotBeWrittenInFullIsTakenUpWhenThereIsRoom) {
    const std::string old = index.substr(304) + index.substr(0, 304);
    writeBytes("dictionary.2", old);
    loadDictionary();
    ASSERT_TRUE(device::layCopyBeside(index));
    {
        const stand_ins::FileSizeLimit full(300);
        saveDictionary(SaveMode::all);
        EXPECT_EQ(bytesOf("dictionary.2"), old);
        EXPECT_TRUE(copyLies());
    }
    EXPECT_FALSE(fs::exists(device::unfinishedIndexName));
    loadDictionary();
    EXPECT_EQ(state.dictionary.size(), 3U);
    EXPECT_FALSE(copyLies());
}

TEST_F(IndexRecovery, LinksAreNotFollowedToACopyOrThroughOne) {
    writeBytes("elsewhere", device::encodeIndexCopy({.index = index}));
    fs::create_symlink("elsewhere", device::indexCopyName);
    device_tests::expectUnreadableIndex();
    loadDictionary();
    fs::remove(device::indexCopyName);

    leaveCopy();
    writeBytes("precious", "precious");
    fs::create_symlink("precious", device::unfinishedCopyName);
    loadDictionary();
    EXPECT_EQ(state.dictionary.size(), 3U);
    EXPECT_EQ(bytesOf("precious"), "precious");
}

TEST_F(IndexRecovery, InterruptedRenamesAreCompleted) {
    const std::string old = indexRecord(1, 1).bytes + indexRecord(0x15, 2).bytes;
    writeBytes("dictionary.2", old);
    fs::rename(nameOf(2), nameOf(0x15));
    loadDictionary();
    state.dictionary[1].fileName = nameOf(2);
    device::PendingName pending[] = {{.record = 1, .oldName = nameOf(0x15)}};
    ASSERT_TRUE(device::announceRenaming(pending));
    device::leaveTree();  // cut off here
    loadDictionary();
    EXPECT_TRUE(fs::exists(nameOf(2)));
    EXPECT_FALSE(fs::exists(nameOf(0x15)));
    EXPECT_EQ(bytesOf("dictionary.2"), indexRecord(1, 1).bytes + indexRecord(2, 2).bytes);
    EXPECT_FALSE(copyLies());
}

// The bike has taken the number that the first rename set free.
TEST_F(IndexRecovery, ATrainingThatCameSinceKeepsItsFile) {
    const std::string old = indexRecord(1, 1).bytes + indexRecord(3, 2).bytes;
    writeBytes("dictionary.2", old);
    fs::remove(nameOf(2));
    loadDictionary();
    state.dictionary[1].fileName = nameOf(2);
    device::PendingName pending[] = {{.record = 1, .oldName = nameOf(3)}};
    ASSERT_TRUE(device::announceRenaming(pending));
    fs::rename(nameOf(3), nameOf(2));
    device::leaveTree();  // cut off here
    writeTrainingFile(3);
    writeBytes("dictionary.2", old + indexRecord(3, 9).bytes);
    loadDictionary();
    EXPECT_EQ(bytesOf("dictionary.2"),
              indexRecord(1, 1).bytes + indexRecord(2, 2).bytes + indexRecord(3, 9).bytes);
    EXPECT_TRUE(fs::exists(nameOf(2)));
    EXPECT_TRUE(fs::exists(nameOf(3)));
}

// The names of a copy mean nothing where somebody has put another index.
TEST_F(IndexRecovery, NothingIsRenamedBesideAnotherIndex) {
    writeBytes("dictionary.2", indexRecord(1, 1).bytes + indexRecord(3, 2).bytes);
    fs::remove(nameOf(2));
    loadDictionary();
    state.dictionary[1].fileName = nameOf(2);
    device::PendingName pending[] = {{.record = 1, .oldName = nameOf(3)}};
    ASSERT_TRUE(device::announceRenaming(pending));
    device::leaveTree();
    const std::string other = indexRecord(3, 77).bytes + indexRecord(1, 1).bytes;
    writeBytes("dictionary.2", other);
    loadDictionary();
    EXPECT_TRUE(fs::exists(nameOf(3)));
    EXPECT_FALSE(fs::exists(nameOf(2)));
    EXPECT_EQ(bytesOf("dictionary.2"), other);
    EXPECT_EQ(state.dictionary.size(), 2U);
}

// Of which the card gives nothing: one that claims more bytes than any memory holds counts as such.
class UnreadableCopy : public IndexRecovery {
  protected:
    void SetUp() override {
        IndexRecovery::SetUp();
        writeBytes(std::string(device::indexCopyName), "");
        fs::resize_file(device::indexCopyName, std::uintmax_t{1} << 42U);
    }
};

TEST_F(UnreadableCopy, DoesNotHideAnIndexWhoseTrainingsAreAllThere) {
    writeBytes("dictionary.2", index);
    loadDictionary();
    EXPECT_EQ(state.dictionary.size(), 3U);
    EXPECT_TRUE(state.dictionaryReadOnly);
    EXPECT_FALSE(state.dictionaryUnreadable);
}

TEST_F(UnreadableCopy, HidesAnIndexThatMayBePartOfAnotherOne) {
    const std::string unsure[] = {index + indexRecord(4, 4).bytes, index + "rest",
                                  indexRecord(1).int32(108, 0).bytes};
    for (const std::string& bytes : unsure) {
        writeBytes("dictionary.2", bytes);
        device_tests::expectUnreadableIndex();
        loadDictionary();
        EXPECT_TRUE(state.dictionaryUnreadable);
        EXPECT_FALSE(state.dictionaryReadOnly);
        EXPECT_EQ(bytesOf("dictionary.2"), bytes);
    }
}

TEST_F(UnreadableCopy, LetsNothingBeChanged) {
    writeBytes("dictionary.2", index);
    loadDictionary();
    EXPECT_FALSE(device::beginChange());
    state.dictionary.pop_back();
    saveDictionary(SaveMode::all);
    device::PendingName pending[] = {{.record = 1, .oldName = nameOf(2)}};
    EXPECT_FALSE(device::announceRenaming(pending));
    EXPECT_EQ(bytesOf("dictionary.2"), index);
    EXPECT_TRUE(copyLies());
    // Not even when it can be read again, before it is.
    leaveCopy();
    EXPECT_FALSE(device::beginChange());
    saveDictionary(SaveMode::all);
    EXPECT_EQ(bytesOf("dictionary.2"), index);
    loadDictionary();
    EXPECT_FALSE(state.dictionaryReadOnly);
    EXPECT_TRUE(device::beginChange());
    saveDictionary(SaveMode::all);
    EXPECT_EQ(bytesOf("dictionary.2"), index);
}

TEST_F(IndexRecovery, ACopyThatCameSinceTheLoadKeepsFilesFromBeingTouched) {
    writeBytes("dictionary.2", index);
    loadDictionary();
    leaveCopy();
    EXPECT_FALSE(device::beginChange());
    loadDictionary();
    EXPECT_TRUE(device::beginChange());
    device::leaveTree();
}

// Another program is in the middle of replacing the index.
TEST_F(IndexRecovery, WhatAnotherProgramIsAtWorkOnIsLeftAlone) {
    writeBytes("dictionary.2", index);
    leaveCopy();
    const int theirs = open(".", O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(theirs, LOCK_EX), 0);
    loadDictionary();
    EXPECT_TRUE(copyLies());
    EXPECT_EQ(state.dictionary.size(), 3U);
    close(theirs);
    // It may have died between two renames: what was listed meanwhile may have other names by now.
    EXPECT_FALSE(device::beginChange());
    loadDictionary();
    EXPECT_FALSE(copyLies());
    EXPECT_TRUE(device::beginChange());
    device::leaveTree();
}

TEST_F(IndexRecovery, TheTreeIsHeldFromTheFirstRenameToTheLoad) {
    writeBytes("dictionary.2", index);
    loadDictionary();
    state.dictionary[2].fileName = nameOf(9);
    device::PendingName pending[] = {{.record = 2, .oldName = nameOf(3)}};
    ASSERT_TRUE(device::announceRenaming(pending));
    const int other = open(".", O_RDONLY | O_DIRECTORY);
    EXPECT_NE(flock(other, LOCK_EX | LOCK_NB), 0);
    fs::rename(nameOf(3), nameOf(9));
    saveDictionary(SaveMode::all);
    EXPECT_NE(flock(other, LOCK_EX | LOCK_NB), 0);
    loadDictionary();
    EXPECT_EQ(state.dictionary.size(), 3U);
    EXPECT_FALSE(copyLies());
    EXPECT_EQ(flock(other, LOCK_EX | LOCK_NB), 0);
    EXPECT_FALSE(device::layCopyBeside(index));
    close(other);
}

// A rename that was cut off may have lost the name, and a check of the card may bring the file
// back.
TEST_F(IndexRecovery, ATrainingUnderNeitherOfItsNamesKeepsItsRecord) {
    const std::string renamed =
        indexRecord(1, 1).bytes + indexRecord(2, 2).bytes + indexRecord(3, 3).bytes;
    device::IndexCopy copy{.index = renamed};
    copy.renames.push_back({.position = 152, .oldName = nameOf(9)});
    fs::remove(nameOf(2));
    writeBytes("dictionary.2", renamed);
    writeBytes(std::string(device::indexCopyName), device::encodeIndexCopy(copy));
    for (int save = 0; save < 3; ++save) {
        loadDictionary();
        ASSERT_EQ(state.dictionary.size(), 2U);
        EXPECT_FALSE(state.dictionaryReadOnly);
        EXPECT_EQ(state.untoldRecords, indexRecord(2, 2).bytes);
        ASSERT_TRUE(device::beginChange());
        saveDictionary(SaveMode::all);
        EXPECT_EQ(bytesOf("dictionary.2"),
                  indexRecord(1, 1).bytes + indexRecord(3, 3).bytes + indexRecord(2, 2).bytes);
    }
    writeTrainingFile(9);
    loadDictionary();
    EXPECT_EQ(state.dictionary.size(), 3U);
    EXPECT_TRUE(fs::exists(nameOf(2)));
    EXPECT_FALSE(fs::exists(nameOf(9)));
    EXPECT_TRUE(state.untoldRecords.empty());
    EXPECT_FALSE(copyLies());
}

}  // namespace
