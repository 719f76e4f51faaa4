#include "device/training_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "services/disk/numbered_files.h"
#include "tests/device/card_fixture.h"

namespace {

using device::loadTraining;
using device::state;
using device_tests::RecordBytes;
using device_tests::writeBytes;

class TrainingFiles : public device_tests::CardTest {
  protected:
    void SetUp() override {
        CardTest::SetUp();
        state.dictionary = {{.fileName = "000000000000000a", .selected = 1}};
    }

    static void expectUnreadable(const std::string& name) {
        stand_ins::expectMessage("Dateifehler", "Die Datei 'data\\result\\ergo_bike\\" + name +
                                                    "' ist leer oder wurde nicht gefunden!");
    }

    static std::string samples(std::size_t count) {
        std::string bytes;
        for (std::size_t i = 0; i < count; ++i) {
            bytes += RecordBytes(44).put(0, i, 4).put(20, 0xFFFF, 2).put(22, 0x80, 1).bytes;
        }
        return bytes;
    }
};

TEST_F(TrainingFiles, OnlyWholeSamplesCount) {
    writeBytes("000000000000000a", samples(5) + std::string(20, 'x'));
    loadTraining();
    ASSERT_EQ(state.samples.size(), 5U);
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(state.samples[i].elapsedTime, static_cast<std::int32_t>(i));
        EXPECT_EQ(state.samples[i].watt, -1);
        EXPECT_EQ(state.samples[i].gear, -128);
    }
}

TEST_F(TrainingFiles, AFileWithoutAWholeSampleGivesTheMessageAndNoSamples) {
    struct Row {
        const char* name;
        void (*prepare)();
    };
    const Row rows[] = {
        {"missing", [] {}},
        {"empty", [] { writeBytes("000000000000000a", ""); }},
        {"43 bytes", [] { writeBytes("000000000000000a", std::string(43, 'x')); }},
        {"a directory",
         [] {
             std::filesystem::remove("000000000000000a");
             std::filesystem::create_directory("000000000000000a");
         }},
        {"a FIFO, which must not block",
         [] {
             std::filesystem::remove("000000000000000a");
             ASSERT_EQ(mkfifo("000000000000000a", 0600), 0);
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        row.prepare();
        state.samples.resize(3);
        expectUnreadable("000000000000000a");
        loadTraining();
        EXPECT_TRUE(state.samples.empty());
    }
}

TEST_F(TrainingFiles, ALoadReplacesTheWholeTable) {
    state.samples.resize(1000);
    writeBytes("000000000000000a", samples(1));
    loadTraining();
    EXPECT_EQ(state.samples.size(), 1U);
}

TEST_F(TrainingFiles, TheFirstSelectedRecordInTableOrderIsLoaded) {
    writeBytes("0000000000000001", samples(1));
    writeBytes("0000000000000002", samples(2));
    writeBytes("0000000000000003", samples(3));
    state.dictionary = {{.fileName = "0000000000000001", .startDate = 1, .selected = 0},
                        {.fileName = "0000000000000003", .startDate = 3, .selected = 1},
                        {.fileName = "0000000000000002", .startDate = 2, .selected = 1}};
    loadTraining();
    EXPECT_EQ(state.samples.size(), 3U);
}

TEST_F(TrainingFiles, NothingSelectedEmptiesTheTableWithoutAMessage) {
    struct Row {
        const char* name;
        std::vector<device::DictionaryRecord> dictionary;
    };
    const Row rows[] = {
        {"no records", {}},
        {"none selected", {{.fileName = "000000000000000a", .selected = 0}}},
        {"the record of a failed load", {device::DictionaryRecord{}}},
        {"a selected record without a name", {{.fileName = "", .selected = 1}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        state.dictionary = row.dictionary;
        state.samples.resize(3);
        loadTraining();
        EXPECT_TRUE(state.samples.empty());
    }
}

// A day with a sample each second is read in several blocks.
TEST_F(TrainingFiles, ADayOfSamplesIsReadInOrder) {
    writeBytes("000000000000000a", samples(86'400) + std::string(43, 'x'));
    loadTraining();
    ASSERT_EQ(state.samples.size(), 86'400U);
    for (std::size_t i = 0; i < state.samples.size(); ++i) {
        ASSERT_EQ(state.samples[i].elapsedTime, static_cast<std::int32_t>(i));
    }
}

TEST_F(TrainingFiles, AFileThatShrankWhileBeingReadIsAFailure) {
    writeBytes("000000000000000a", samples(3));
    for (const std::int64_t length : {44 * 4, 44 * 100'000}) {
        ASSERT_TRUE(services::readFile(0, "000000000000000a"));
        EXPECT_FALSE(device::readTrainingSamples(0, length).has_value()) << length;
    }
    ASSERT_TRUE(services::readFile(0, "000000000000000a"));
    EXPECT_EQ(device::readTrainingSamples(0, 44 * 3 + 43).value().size(), 3U);
    services::closeFile(0);
}

TEST_F(TrainingFiles, NoMoreSamplesAreReadThanTheLengthAtOpening) {
    writeBytes("000000000000000a", samples(3));
    ASSERT_TRUE(services::readFile(0, "000000000000000a"));
    EXPECT_EQ(device::readTrainingSamples(0, 44 * 2).value().size(), 2U);
    services::closeFile(0);
}

TEST_F(TrainingFiles, ATebibyteGivesTheMessageInsteadOfACrash) {
    writeBytes("000000000000000a", "");
    std::error_code error;
    std::filesystem::resize_file("000000000000000a", 1ULL << 40U, error);
    if (error) GTEST_SKIP() << "no sparse files here: " << error.message();
    expectUnreadable("000000000000000a");
    loadTraining();
    EXPECT_TRUE(state.samples.empty());
}

TEST_F(TrainingFiles, TheFileIsClosedAgain) {
    writeBytes("000000000000000a", samples(1));
    loadTraining();
    EXPECT_EQ(services::lengthOfFile(0), -1);
    writeBytes("000000000000000a", "x");
    expectUnreadable("000000000000000a");
    loadTraining();
    EXPECT_EQ(services::lengthOfFile(0), -1);
}

}  // namespace
