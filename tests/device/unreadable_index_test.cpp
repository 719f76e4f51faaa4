// Commands beside an index that could not be read, or that is not the one that was.
#include <filesystem>

#include "device/dictionary.h"
#include "device/index_recovery.h"
#include "tests/device/card_fixture.h"
#include "tests/stand_ins/file_size_limit.h"

namespace {

namespace fs = std::filesystem;
using device::state;
using device_tests::bytesOf;
using device_tests::indexRecord;
using device_tests::nameOf;
using device_tests::writeBytes;
using device_tests::writeTrainingFile;

class UnreadableIndex : public device_tests::CardTest {
  protected:
    static void loadInVain() {
        device_tests::expectUnreadableIndex();
        device::loadDictionary();
        ASSERT_TRUE(state.dictionaryUnreadable);
    }
};

TEST_F(UnreadableIndex, LetsNothingBeRenamed) {
    loadInVain();
    state.dictionary[0].fileName = nameOf(2);
    device::PendingName pending[] = {{.record = 0, .oldName = nameOf(1)}};
    EXPECT_FALSE(device::announceRenaming(pending));
    EXPECT_TRUE(fs::is_empty(directory));
}

TEST_F(UnreadableIndex, IsNotTakenForAnotherOne) {
    loadInVain();
    EXPECT_TRUE(device::isIndexAsLoaded());
    writeBytes("dictionary.2", indexRecord(1).bytes);
    EXPECT_TRUE(device::isIndexAsLoaded());
}

TEST_F(UnreadableIndex, AnIndexThatVanishedIsNotTheOneThatWasLoaded) {
    writeTrainingFile(1);
    writeBytes("dictionary.2", indexRecord(1).bytes);
    device::loadDictionary();
    EXPECT_TRUE(device::isIndexAsLoaded());
    fs::remove("dictionary.2");
    EXPECT_FALSE(device::isIndexAsLoaded());
}

// Somebody has put a directory in the index's place: the copy is not lost for it.
TEST_F(UnreadableIndex, ADirectoryInItsPlaceLeavesTheCopy) {
    writeTrainingFile(1);
    writeBytes(std::string(device::indexCopyName),
               device::encodeIndexCopy({.index = indexRecord(1).bytes}));
    fs::create_directory("dictionary.2");
    loadInVain();
    EXPECT_TRUE(fs::is_directory("dictionary.2"));
    EXPECT_FALSE(device::hasIndex(""));

    fs::remove("dictionary.2");
    device::loadDictionary();
    EXPECT_EQ(bytesOf("dictionary.2"), indexRecord(1).bytes);
}

// What was loaded came from the copy, and of what lay there nothing could be read.
TEST_F(UnreadableIndex, AnEmptyOneIsNotTheSameAsNone) {
    writeTrainingFile(1);
    writeBytes(std::string(device::indexCopyName),
               device::encodeIndexCopy({.index = indexRecord(1).bytes}));
    writeBytes("dictionary.2", "");
    const stand_ins::FileSizeLimit full(100);
    EXPECT_TRUE(device::hasIndex(""));
    device::loadDictionary();
    ASSERT_EQ(state.dictionary.size(), 1U);
    EXPECT_EQ(state.dictionary[0].fileName, nameOf(1));
    EXPECT_TRUE(device::isIndexAsLoaded());
    fs::remove("dictionary.2");
    EXPECT_FALSE(device::isIndexAsLoaded());
    EXPECT_TRUE(device::hasIndex("")) << "the copy stands in for it";
}

// A new index without a record is an index, though none that can be loaded.
TEST_F(UnreadableIndex, AnEmptyOneCountsAsThere) {
    EXPECT_FALSE(device::hasIndex(""));
    writeBytes("dictionary.2", "");
    EXPECT_TRUE(device::hasIndex(""));
}

}  // namespace
