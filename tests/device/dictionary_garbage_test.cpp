// Whatever bytes are called "dictionary.2", loading ends in the message or in records.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <random>

#include "device/dictionary.h"
#include "tests/device/card_fixture.h"

namespace {

using device::loadDictionary;
using device::state;
using device_tests::writeBytes;
using device_tests::writeTrainingFile;

using DictionaryGarbage = device_tests::CardTest;

long mostMemoryUsed() {  // KiB, the most since the process began
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// In memory of the system's, where a hole takes up nothing and is read at once; on a disk the
// system would fill 4 GiB of its own with the zeros first.
TEST_F(DictionaryGarbage, FourGibibytesOfZerosNeedNoMemoryAndHideNoRecordBehindThem) {
    constexpr off_t hole = off_t{152} * 28'300'000;
    static_assert(hole > (off_t{1} << 32U));
    const int file = memfd_create("dictionary.2", MFD_CLOEXEC);
    if (file < 0 || ftruncate(file, hole) != 0) GTEST_SKIP() << "no sparse files in memory here";
    const std::string path = "/proc/self/fd/" + std::to_string(file);
    std::ofstream(path, std::ios::binary | std::ios::app)
        << device_tests::indexRecord(7).text(12, "Ende").bytes;
    std::filesystem::create_symlink(path, "dictionary.2");
    writeTrainingFile(7);
    const long before = mostMemoryUsed();
    loadDictionary();
    close(file);
    ASSERT_EQ(state.dictionary.size(), 1U);
    EXPECT_EQ(state.dictionary[0].description, "Ende");
    EXPECT_LT(mostMemoryUsed() - before, 64 * 1024);
}

// It would take most of an hour to read.
TEST_F(DictionaryGarbage, ATebibyteGivesTheMessageAtOnce) {
    writeBytes("dictionary.2", device_tests::indexRecord(7).bytes);
    writeTrainingFile(7);
    std::error_code error;
    std::filesystem::resize_file("dictionary.2", 1ULL << 40U, error);
    if (error) GTEST_SKIP() << "no sparse files here: " << error.message();
    device_tests::expectUnreadableIndex();
    loadDictionary();
    EXPECT_TRUE(state.dictionaryUnreadable);
}

TEST_F(DictionaryGarbage, OnlyOnesWithoutATrainingFileDropEveryRecord) {
    writeBytes("dictionary.2", std::string(1'000'000, '\xFF'));
    loadDictionary();
    EXPECT_TRUE(state.dictionary.empty());
}

std::size_t runOnOf(const device::DictionaryRecord& record) {
    return record.description.size() - std::min<std::size_t>(record.description.size(), 64);
}

// Every record's text would run on to the end of the file: 13,157 texts of 1 MB on average.
TEST_F(DictionaryGarbage, OnlyOnesWithATrainingFileRunOnByNoMoreThanTheFileHas) {
    constexpr std::size_t length = 2'000'000;
    writeTrainingFile(0xFFFFFFFFFFFFFFFFU);
    writeBytes("dictionary.2", std::string(length, '\xFF'));
    loadDictionary();
    ASSERT_EQ(state.dictionary.size(), length / 152);
    EXPECT_EQ(state.dictionary.front().description, std::string(4096, '\xFF'));
    EXPECT_EQ(state.dictionary.back().description, std::string(64, '\xFF'));
    std::size_t runOn = 0;
    for (const auto& record : state.dictionary)
        runOn += runOnOf(record);
    EXPECT_EQ(runOn, length);
    state = {};
}

// What is allowed for all is not spent on texts that end in their own bytes.
TEST_F(DictionaryGarbage, TextsOfTheirOwnSixtyFourBytesLeaveTheRunningOnToOthers) {
    constexpr std::size_t count = 1000;
    writeTrainingFile(0xFFFFFFFFFFFFFFFFU);
    std::string record(152, '\xFF');
    record[76] = '\0';
    std::string index;
    for (std::size_t i = 0; i < count; ++i)
        index += record;
    index += std::string(40 * 152, '\xFF');
    writeBytes("dictionary.2", index);
    loadDictionary();
    ASSERT_EQ(state.dictionary.size(), count + 40);
    std::size_t longest = 0;
    for (const auto& kept : state.dictionary)
        longest = std::max(longest, kept.description.size());
    EXPECT_EQ(longest, 4096U);
    state = {};
}

TEST_F(DictionaryGarbage, ThousandsOfRandomIndicesEndInTheMessageOrInRecords) {
    std::mt19937_64 random(20131218);
    for (const std::uint64_t number : {0ULL, 1ULL, 0xFFFFFFFFFFFFFFFFULL})
        writeTrainingFile(number);
    std::size_t keptInAll = 0;
    for (int round = 0; round < 2000; ++round) {
        SCOPED_TRACE(round);
        std::string bytes(random() % 1000, '\0');
        // Few different bytes make texts that run on and zeros that end them; many make noise.
        const std::uint64_t variety = 1 + random() % 256;
        for (char& byte : bytes) {
            byte = static_cast<char>(static_cast<unsigned char>(random() % variety * 255));
        }
        // Noise never hits a training file by itself.
        for (std::size_t start = 0; start + 8 <= bytes.size(); start += 152) {
            const std::uint64_t choice = random() % 4;
            if (choice == 0) continue;
            const char fill = choice == 3 ? '\xFF' : '\0';
            bytes.replace(start, 8, std::string(8, fill));
            if (choice == 2) bytes[start] = '\x01';
        }
        // A new file each time: some file systems wait for the disk when one is emptied and
        // refilled.
        std::filesystem::remove("dictionary.2");
        writeBytes("dictionary.2", bytes);
        const std::size_t whole = bytes.size() / 152;
        if (whole == 0) device_tests::expectUnreadableIndex();
        loadDictionary();
        if (whole == 0) {
            ASSERT_EQ(state.dictionary.size(), 1U);
            ASSERT_EQ(state.dictionary[0], device::DictionaryRecord{});
            continue;
        }
        ASSERT_LE(state.dictionary.size(), whole);
        keptInAll += state.dictionary.size();
        for (std::size_t i = 0; i < state.dictionary.size(); ++i) {
            const auto& record = state.dictionary[i];
            ASSERT_EQ(record.fileName.size(), 16U);
            ASSERT_NE(record.rideTime, 0);
            ASSERT_LE(record.description.size(), bytes.size());
            ASSERT_EQ(record.description.find_first_of(std::string_view("\0\r\n", 3)),
                      std::string::npos);
            if (i > 0) {
                ASSERT_LE(state.dictionary[i - 1].startDate, record.startDate);
            }
        }
        // What was read can be written, whatever it is. Not in each round: saving waits for the
        // disk.
        if (round % 64 != 0) continue;
        device::saveDictionary(device::SaveMode::all);
        ASSERT_GE(device_tests::bytesOf("dictionary.2").size(), 152 * state.dictionary.size());
    }
    EXPECT_GT(keptInAll, 1000U);  // the rounds above did reach the records
}

}  // namespace
