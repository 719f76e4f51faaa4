#include <gtest/gtest.h>

#include <bit>

#include "device/dictionary.h"
#include "services/disk/numbered_files.h"
#include "tests/device/card_fixture.h"

namespace {

using device::loadDictionary;
using device::saveDictionary;
using device::SaveMode;
using device::state;
using device_tests::bytesOf;
using device_tests::indexRecord;
using device_tests::writeBytes;
using device_tests::writeTrainingFile;

using DictionarySave = device_tests::CardTest;

// Values that a reader or writer could bend on the way: NaN payloads, infinities, negative zeros.
std::string thousandOddRecords() {
    const std::uint32_t floats[] = {0x7FA12345, 0xFFC54321, 0x7F800000, 0x80000000,
                                    0x00000001, 0x42FE0000, 0xFF7FFFFF};
    std::string index;
    for (std::uint32_t i = 0; i < 1000; ++i) {
        auto record = indexRecord(i * 7919U, static_cast<std::int32_t>(i / 3) - 100);
        record.int32(8, static_cast<std::int32_t>(i) - 500);
        record.text(12, std::string(i % 64, static_cast<char>(0x80 + i % 0x80)));
        std::uint32_t next = i;
        for (const std::size_t offset :
             {84U, 88U, 92U, 96U, 100U, 104U, 112U, 116U, 124U, 128U, 132U, 136U, 140U}) {
            record.put(offset, floats[next++ % std::size(floats)], 4);
        }
        if (i % 5 == 0) record.real(92, 0).real(96, 0);  // not measured
        record.int32(108, static_cast<std::int32_t>(i) - 2000);
        for (const std::size_t offset : {80U, 120U, 144U, 148U}) {
            record.put(offset, i * 2654435761U, 4);
        }
        index += record.bytes;
    }
    return index;
}

TEST_F(DictionarySave, LoadingAndSavingAllGivesBackTheSameBytes) {
    for (std::uint32_t i = 0; i < 1000; ++i)
        writeTrainingFile(i * 7919U);
    const std::string index = thousandOddRecords();
    writeBytes("dictionary.2", index);
    loadDictionary();
    ASSERT_EQ(state.dictionary.size(), 1000U);
    saveDictionary(SaveMode::all);
    EXPECT_TRUE(bytesOf("dictionary.2") == index);
}

TEST_F(DictionarySave, OnlyUnselectedRecordsStayInStartDateOrder) {
    std::string index;
    for (std::uint32_t i = 1; i <= 5; ++i) {
        writeTrainingFile(i);
        index += indexRecord(i, 1000 - static_cast<std::int32_t>(i)).bytes;
    }
    writeBytes("dictionary.2", index);
    loadDictionary();
    for (auto& record : state.dictionary) {
        record.selected = record.fileName == device_tests::nameOf(2) ||
                          record.fileName == device_tests::nameOf(4);
    }
    saveDictionary(SaveMode::unselected);
    EXPECT_EQ(bytesOf("dictionary.2"),
              indexRecord(5, 995).bytes + indexRecord(3, 997).bytes + indexRecord(1, 999).bytes);
    loadDictionary();
    EXPECT_EQ(state.dictionary.size(), 3U);
}

TEST_F(DictionarySave, TableOrderIsFileOrder) {
    state.dictionary = {{.fileName = "0000000000000009", .startDate = 9},
                        {.fileName = "0000000000000001", .startDate = 1}};
    saveDictionary(SaveMode::all);
    const std::string written = bytesOf("dictionary.2");
    ASSERT_EQ(written.size(), 304U);
    EXPECT_EQ(written[0], '\x09');
    EXPECT_EQ(written[152], '\x01');
}

TEST_F(DictionarySave, NotMeasuredIsWrittenAsZeroAndReadsZeroUntilTheReload) {
    writeTrainingFile(1);
    const std::string stored = indexRecord(1).real(92, 1.0F).real(96, 0.0F).bytes;
    writeBytes("dictionary.2", stored);
    loadDictionary();
    ASSERT_EQ(state.dictionary.size(), 1U);
    EXPECT_EQ(state.dictionary[0].pulse, 1.0F);
    EXPECT_EQ(state.dictionary[0].rpm, 1.0F);
    saveDictionary(SaveMode::all);
    EXPECT_EQ(bytesOf("dictionary.2"), indexRecord(1).real(92, 0).real(96, 0).bytes);
    EXPECT_EQ(state.dictionary[0].pulse, 0.0F);
    EXPECT_EQ(state.dictionary[0].rpm, 0.0F);
    loadDictionary();
    EXPECT_EQ(state.dictionary[0].pulse, 1.0F);
    EXPECT_EQ(state.dictionary[0].rpm, 1.0F);
}

TEST_F(DictionarySave, RecordsThatAreNotWrittenKeepTheirValues) {
    state.dictionary = {{.fileName = "0000000000000001", .pulse = 1, .rpm = 1, .selected = 1}};
    saveDictionary(SaveMode::unselected);
    EXPECT_EQ(bytesOf("dictionary.2"), "");
    EXPECT_EQ(state.dictionary[0].pulse, 1.0F);
    EXPECT_EQ(state.dictionary[0].rpm, 1.0F);
}

TEST_F(DictionarySave, AnEmptyTableLeavesAnEmptyFile) {
    writeBytes("dictionary.2", indexRecord(1).bytes);
    saveDictionary(SaveMode::all);
    EXPECT_EQ(bytesOf("dictionary.2"), "");
}

TEST_F(DictionarySave, AnIndexThatCouldNotBeReadIsNotReplaced) {
    const std::string unread = indexRecord(1).bytes.substr(0, 151);
    writeBytes("dictionary.2", unread);
    device_tests::expectUnreadableIndex();
    loadDictionary();
    for (const SaveMode mode : {SaveMode::all, SaveMode::unselected}) {
        saveDictionary(mode);
        EXPECT_EQ(bytesOf("dictionary.2"), unread);
    }
    std::filesystem::remove("dictionary.2");
    saveDictionary(SaveMode::all);
    EXPECT_FALSE(std::filesystem::exists("dictionary.2"));
}

TEST_F(DictionarySave, AfterAGoodLoadTheIndexIsWrittenAgain) {
    device_tests::expectUnreadableIndex();
    loadDictionary();
    writeTrainingFile(1);
    writeBytes("dictionary.2", indexRecord(1).bytes + "rest");
    loadDictionary();
    saveDictionary(SaveMode::all);
    EXPECT_EQ(bytesOf("dictionary.2"), indexRecord(1).bytes);
}

// A card's index may be linked into a copy or a backup: that one is not this program's to write.
TEST_F(DictionarySave, ALinkIsReplacedAndWhatItLedToStays) {
    state.dictionary = {{.fileName = "0000000000000001"}};
    const std::string written = "\x01" + std::string(151, '\0');
    for (const bool symbolic : {true, false}) {
        SCOPED_TRACE(symbolic);
        writeBytes("elsewhere", "years of trainings");
        std::filesystem::remove("dictionary.2");
        symbolic ? std::filesystem::create_symlink("elsewhere", "dictionary.2")
                 : std::filesystem::create_hard_link("elsewhere", "dictionary.2");
        saveDictionary(SaveMode::all);
        EXPECT_EQ(bytesOf("elsewhere"), "years of trainings");
        EXPECT_EQ(bytesOf("dictionary.2"), written);
        EXPECT_FALSE(std::filesystem::is_symlink("dictionary.2"));
    }
}

TEST_F(DictionarySave, AnIndexThatCantBeCreatedIsPassedOverInSilence) {
    std::filesystem::create_directory("dictionary.2");
    state.dictionary = {{.fileName = "0000000000000001", .pulse = 1}};
    saveDictionary(SaveMode::all);
    EXPECT_TRUE(std::filesystem::is_directory("dictionary.2"));
    EXPECT_EQ(state.dictionary[0].pulse, 1.0F);
}

// Nothing is cut: where such a text was meant to end nobody knows.
TEST_F(DictionarySave, ADescriptionThatRanOnIsWrittenWithAllThatWasRead) {
    writeTrainingFile(1);
    const std::string stored = indexRecord(1, 0x00636261).text(12, std::string(64, 'x')).bytes;
    writeBytes("dictionary.2", stored);
    loadDictionary();
    saveDictionary(SaveMode::all);
    std::string expected = stored;
    expected.insert(76, "abc");
    EXPECT_EQ(bytesOf("dictionary.2"), expected);
}

TEST_F(DictionarySave, ARecordIsWrittenAtTheCurrentPositionOfAnyFile) {
    state.dictionary = {{.fileName = "00000000000000ff"},
                        {.fileName = "00000000000000fe", .rpm = 1}};
    ASSERT_TRUE(services::createFile(3, "other"));
    ASSERT_TRUE(services::writeText(3, "head"));
    EXPECT_TRUE(device::writeDictionaryRecord(3, 1));
    EXPECT_FALSE(device::writeDictionaryRecord(3, 2));  // no such record
    services::closeFile(3);
    EXPECT_FALSE(device::writeDictionaryRecord(3, 0));  // not open
    EXPECT_EQ(bytesOf("other"), "head\xFE" + std::string(151, '\0'));
    EXPECT_EQ(state.dictionary[1].rpm, 0.0F);
}

TEST_F(DictionarySave, TheFileIsClosedAgain) {
    state.dictionary = {{.fileName = "0000000000000001"}};
    saveDictionary(SaveMode::all);
    EXPECT_EQ(services::lengthOfFile(0), -1);
}

}  // namespace
