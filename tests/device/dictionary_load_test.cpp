#include <gtest/gtest.h>

#include "device/dictionary.h"
#include "services/disk/numbered_files.h"
#include "tests/device/card_fixture.h"

namespace {

using device::loadDictionary;
using device::state;
using device_tests::indexRecord;
using device_tests::RecordBytes;
using device_tests::writeBytes;
using device_tests::writeTrainingFile;

class DictionaryLoad : public device_tests::CardTest {
  protected:
    static std::vector<std::string> names() {
        std::vector<std::string> found;
        for (const auto& record : state.dictionary)
            found.push_back(record.fileName);
        return found;
    }

    static void expectSingleZeroRecord() {
        ASSERT_EQ(state.dictionary.size(), 1U);
        EXPECT_EQ(state.dictionary[0], device::DictionaryRecord{});
    }
};

TEST_F(DictionaryLoad, ABadIndexGivesTheMessageAndOneAllZeroRecord) {
    struct Row {
        const char* name;
        void (*prepare)();
    };
    const Row rows[] = {
        {"missing", [] {}},
        {"empty", [] { writeBytes("dictionary.2", ""); }},
        {"151 bytes", [] { writeBytes("dictionary.2", indexRecord(1).bytes.substr(0, 151)); }},
        {"a directory",
         [] {
             std::filesystem::remove("dictionary.2");
             std::filesystem::create_directory("dictionary.2");
         }},
    };
    writeTrainingFile(1);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        row.prepare();
        state.dictionary.assign(3, {.fileName = "old"});
        device_tests::expectUnreadableIndex();
        loadDictionary();
        expectSingleZeroRecord();
    }
}

TEST_F(DictionaryLoad, OnlyWholeRecordsCount) {
    writeTrainingFile(1);
    writeTrainingFile(2);
    const std::string two = indexRecord(1).bytes + indexRecord(2).bytes;
    struct Row {
        std::size_t length;
        std::size_t records;
    };
    for (const Row& row : {Row{152, 1}, Row{303, 1}, Row{304, 2}, Row{305, 2}}) {
        writeBytes("dictionary.2", (two + "x").substr(0, row.length));
        loadDictionary();
        EXPECT_EQ(state.dictionary.size(), row.records) << row.length;
    }
}

TEST_F(DictionaryLoad, TheTableIsReplacedAndEveryRecordSelected) {
    writeTrainingFile(0x4A3F1C);
    writeBytes("dictionary.2", indexRecord(0x4A3F1C).text(12, "L\xE4ngere Zeit").bytes);
    state.dictionary.assign(5, {.fileName = "old"});
    loadDictionary();
    ASSERT_EQ(names(), std::vector<std::string>{"00000000004a3f1c"});
    EXPECT_EQ(state.dictionary[0].description, "L\xE4ngere Zeit");
    EXPECT_EQ(state.dictionary[0].selected, 1);
    EXPECT_EQ(state.dictionary[0].rideTime, 3600);
}

TEST_F(DictionaryLoad, RecordsWithoutRidingTimeAreDroppedThoughTheirFileExists) {
    for (const std::uint64_t number : {1U, 2U, 3U})
        writeTrainingFile(number);
    writeBytes("dictionary.2", indexRecord(1).bytes + indexRecord(2).int32(108, 0).bytes +
                                   indexRecord(3).int32(108, -1).bytes);
    loadDictionary();
    EXPECT_EQ(names(), (std::vector<std::string>{"0000000000000001", "0000000000000003"}));
}

TEST_F(DictionaryLoad, RecordsWithoutAReadableTrainingFileAreDropped) {
    writeTrainingFile(1);
    std::filesystem::create_directory(device_tests::nameOf(2));
    writeBytes(device_tests::nameOf(4), "");  // openable is enough
    writeBytes("dictionary.2", indexRecord(3).bytes + indexRecord(1).bytes + indexRecord(2).bytes +
                                   indexRecord(4).bytes);
    loadDictionary();
    EXPECT_EQ(names(), (std::vector<std::string>{"0000000000000001", "0000000000000004"}));
}

TEST_F(DictionaryLoad, WhenAllAreDroppedTheTableIsEmptyWithoutAMessage) {
    writeBytes("dictionary.2", indexRecord(1).bytes + indexRecord(2).bytes);
    loadDictionary();
    EXPECT_TRUE(state.dictionary.empty());
}

TEST_F(DictionaryLoad, RecordsAreSortedBySignedStartDate) {
    for (const std::uint64_t number : {1U, 2U, 3U, 4U})
        writeTrainingFile(number);
    writeBytes("dictionary.2", indexRecord(1, 2'000'000'000).bytes + indexRecord(2, 0).bytes +
                                   indexRecord(3, -5).bytes + indexRecord(4, 7).bytes);
    loadDictionary();
    EXPECT_EQ(names(), (std::vector<std::string>{"0000000000000003", "0000000000000002",
                                                 "0000000000000004", "0000000000000001"}));
}

TEST_F(DictionaryLoad, EqualStartDatesStayInFileOrder) {
    std::string index;
    std::vector<std::string> expected;
    for (std::uint64_t number = 100; number > 0; --number) {
        writeTrainingFile(number);
        index += indexRecord(number, 42).bytes;
        expected.push_back(device_tests::nameOf(number));
    }
    writeBytes("dictionary.2", index);
    loadDictionary();
    EXPECT_EQ(names(), expected);
}

TEST_F(DictionaryLoad, ADescriptionEndsAtNulCrOrLf) {
    struct Row {
        std::string_view stored;
        std::string_view read;
    };
    using namespace std::string_view_literals;
    const Row rows[] = {
        {"", ""},
        {"abc\0def"sv, "abc"},
        {"abc\rdef", "abc"},
        {"abc\ndef", "abc"},
        {"\rabc", ""},
        {" \x01\xFF\x80 ", " \x01\xFF\x80 "},
    };
    writeTrainingFile(1);
    for (const Row& row : rows) {
        writeBytes("dictionary.2", indexRecord(1).text(12, row.stored).bytes);
        loadDictionary();
        ASSERT_EQ(state.dictionary.size(), 1U);
        EXPECT_EQ(state.dictionary[0].description, row.read);
    }
}

// The 64 bytes are no limit for reading: only a NUL, CR, LF or the end of the file ends a text.
TEST_F(DictionaryLoad, ADescriptionWithoutNulRunsOnIntoTheFieldsBehindIt) {
    writeTrainingFile(1);
    writeBytes("dictionary.2", indexRecord(1, 0x00636261).text(12, std::string(64, 'x')).bytes);
    loadDictionary();
    ASSERT_EQ(state.dictionary.size(), 1U);
    EXPECT_EQ(state.dictionary[0].description, std::string(64, 'x') + "abc");
    EXPECT_EQ(state.dictionary[0].startDate, 0x00636261);
}

TEST_F(DictionaryLoad, ADescriptionRunsOnIntoTheNextRecordAndItsFieldsStayInPlace) {
    writeTrainingFile(0x6161616161616161U);
    writeTrainingFile(0x0000000000006262U);
    RecordBytes first(152);
    first.bytes.assign(152, 'a');
    writeBytes("dictionary.2", first.bytes + indexRecord(0x6262).bytes);
    loadDictionary();
    ASSERT_EQ(names(), (std::vector<std::string>{"0000000000006262", "6161616161616161"}));
    EXPECT_EQ(state.dictionary[1].description, std::string(140, 'a') + "bb");
    EXPECT_EQ(state.dictionary[1].unknown6, 0x61616161);
    EXPECT_EQ(state.dictionary[0].description, "");
    EXPECT_EQ(state.dictionary[0].rideTime, 3600);
}

TEST_F(DictionaryLoad, ADescriptionEndsAtTheEndOfTheFile) {
    writeTrainingFile(0x6161616161616161U);
    writeBytes("dictionary.2", std::string(152 + 30, 'a'));
    loadDictionary();
    ASSERT_EQ(state.dictionary.size(), 1U);
    EXPECT_EQ(state.dictionary[0].description, std::string(140 + 30, 'a'));
}

// Blocks must not show: the record at a block's end reads its text out of the next one.
TEST_F(DictionaryLoad, ADescriptionRunsOnAcrossTheBlocksOfReading) {
    constexpr std::size_t count = 20'000;  // about 3 MB
    writeTrainingFile(0x6161616161616161U);
    // Every text ends in the next record's type, those around the end of the first mebibyte (6,898
    // records) run on for much longer.
    const auto runsFar = [](std::size_t i) { return i >= 6'800 && i < 7'000; };
    std::string index(count * 152, 'a');
    for (std::size_t i = 1; i < count; ++i) {
        if (!runsFar(i - 1)) index[i * 152 + 11] = '\0';
    }
    writeBytes("dictionary.2", index);
    loadDictionary();
    ASSERT_EQ(state.dictionary.size(), count);
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < count; ++i) {
        // All start dates are equal, so table order is file order.
        std::size_t expected = i + 1 == count ? 140 : 151;
        if (runsFar(i))
            expected = std::min((7'001 - i) * 152 + 11 - 12, device::longestDescription);
        if (state.dictionary[i].description.size() != expected) ++wrong;
    }
    EXPECT_EQ(wrong, 0U);
}

TEST_F(DictionaryLoad, AFileThatShrankWhileBeingReadIsAFailure) {
    for (const std::uint64_t number : {1U, 2U})
        writeTrainingFile(number);
    writeBytes("dictionary.2", indexRecord(1).bytes + indexRecord(2).bytes + std::string(100, 'x'));
    ASSERT_TRUE(services::readFile(0, "dictionary.2"));
    for (const std::int64_t length : {152 * 3, 152 * 6'901, 152 * 100'000})
        EXPECT_FALSE(device::readDictionaryRecords(0, length).has_value()) << length;
    const auto records = device::readDictionaryRecords(0, 152 * 2 + 151);
    services::closeFile(0);
    ASSERT_TRUE(records.has_value());
    EXPECT_EQ(records->size(), 2U);
}

TEST_F(DictionaryLoad, AReadErrorIsNotTheEndOfTheFile) {
    // A regular file of which the beginning can't be read.
    if (!services::readFile(0, "/proc/self/mem")) GTEST_SKIP() << "no such file here";
    EXPECT_FALSE(device::readDictionaryRecords(0, 152).has_value());
    EXPECT_FALSE(device::readDictionaryRecords(0, 152 * 100'000).has_value());
    services::closeFile(0);
    EXPECT_FALSE(device::readDictionaryRecords(0, 152).has_value());  // not open
}

TEST_F(DictionaryLoad, AnIndexOfWhichLessArrivesThanItsLengthGivesTheMessage) {
    // The system claims a page for this file and gives a few bytes.
    const char* const claimsMore = "/sys/class/net/lo/mtu";
    std::error_code error;
    if (std::filesystem::file_size(claimsMore, error) < 152 || error)
        GTEST_SKIP() << "no such file here";
    std::filesystem::create_symlink(claimsMore, "dictionary.2");
    device_tests::expectUnreadableIndex();
    loadDictionary();
    expectSingleZeroRecord();
    EXPECT_TRUE(state.dictionaryUnreadable);
    EXPECT_EQ(services::lengthOfFile(0), -1);
}

TEST_F(DictionaryLoad, NothingIsReadBeyondTheLengthAtOpening) {
    for (const std::uint64_t number : {1U, 2U})
        writeTrainingFile(number);
    const std::string first = indexRecord(1, 0x61616161).text(12, std::string(64, 'a')).bytes;
    std::string runningOn = first;
    runningOn.replace(76, 76, std::string(76, 'a'));
    writeBytes("dictionary.2", runningOn + indexRecord(2).text(0, "aaaaaaaaaaaa").bytes);
    ASSERT_TRUE(services::readFile(0, "dictionary.2"));
    const auto records = device::readDictionaryRecords(0, 152 + 5);
    EXPECT_FALSE(device::readDictionaryRecords(0, 151).has_value());
    EXPECT_FALSE(device::readDictionaryRecords(0, -1).has_value());
    services::closeFile(0);
    ASSERT_TRUE(records.has_value());
    ASSERT_EQ(records->size(), 1U);
    EXPECT_EQ((*records)[0].description, std::string(140 + 5, 'a'));
}

TEST_F(DictionaryLoad, OneAfterAnotherEachRecordsOwnTrainingFileIsLookedFor) {
    writeTrainingFile(1);
    writeTrainingFile(3);
    std::string index;
    for (const std::uint64_t number : {2U, 1U, 1U, 2U, 2U, 3U, 0U, 1U})
        index += indexRecord(number).bytes;
    writeBytes("dictionary.2", index);
    loadDictionary();
    const std::string one = device_tests::nameOf(1);
    EXPECT_EQ(names(), (std::vector<std::string>{one, one, device_tests::nameOf(3), one}));
}

TEST_F(DictionaryLoad, AGoodLoadClearsWhatAFailedOneSaid) {
    EXPECT_FALSE(state.dictionaryUnreadable);
    device_tests::expectUnreadableIndex();
    loadDictionary();
    EXPECT_TRUE(state.dictionaryUnreadable);
    writeTrainingFile(1);
    writeBytes("dictionary.2", indexRecord(1).bytes);
    loadDictionary();
    EXPECT_FALSE(state.dictionaryUnreadable);
}

TEST_F(DictionaryLoad, TheFileIsClosedAgain) {
    writeTrainingFile(1);
    writeBytes("dictionary.2", indexRecord(1).bytes);
    loadDictionary();
    EXPECT_EQ(services::lengthOfFile(0), -1);
    writeBytes("dictionary.2", "short");
    device_tests::expectUnreadableIndex();
    loadDictionary();
    EXPECT_EQ(services::lengthOfFile(0), -1);
}

}  // namespace
