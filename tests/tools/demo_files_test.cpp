#include "tools/demo_files.h"

#include <gtest/gtest.h>

#include "device/device_tree.h"
#include "device/dictionary.h"
#include "device/training_file.h"
#include "tests/device/card_fixture.h"
#include "tests/files/file_size_limit.h"

namespace {

using device::state;
using device_tests::bytesOf;
using device_tests::writeBytes;
using tools::DemoOptions;
using tools::parseDemoOptions;
using tools::writeDemoCard;
namespace fs = std::filesystem;

constexpr const char* tree = "card/data/result/ergo_bike/";

using DemoCard = device_tests::CardTest;

TEST(DemoOptionsParsing, UnderstandsDirectoryTrainingsAndSeedInAnyOrder) {
    struct Row {
        std::vector<const char*> arguments;
        DemoOptions options;
    };
    const Row rows[] = {
        {{"card"}, {"card", 300, 1}},
        {{"card", "--trainings", "7"}, {"card", 7, 1}},
        {{"--seed", "18446744073709551615", "card"}, {"card", 300, 18446744073709551615U}},
        {{"--trainings", "5000", "card", "--seed", "0"}, {"card", 5000, 0}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(parseDemoOptions(row.arguments), row.options) << row.arguments[0];
    }
}

TEST(DemoOptionsParsing, RefusesWhatMakesNoSense) {
    const std::vector<std::vector<const char*>> rows = {
        {},
        {""},
        {"a", "b"},
        {"--trainings", "5"},
        {"card", "--trainings"},
        {"card", "--trainings", ""},
        {"card", "--trainings", "0"},
        {"card", "--trainings", "-1"},
        {"card", "--trainings", "5001"},
        {"card", "--trainings", "99999999999"},
        {"card", "--trainings", "12x"},
        {"card", "--seed", "-1"},
        {"card", "--seed", "18446744073709551616"},
        {"card", "--unknown"},
        {"-h"},
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_FALSE(parseDemoOptions(rows[i]).has_value()) << "row " << i;
    }
}

TEST_F(DemoCard, TheProgramReadsEveryTrainingOfIt) {
    ASSERT_EQ(writeDemoCard({"card", 12, 3}), "");
    fs::current_path(directory / "card");
    ASSERT_EQ(device::locateDeviceTree(), device::TreeLocation::below);
    device::loadDictionary();
    ASSERT_EQ(state.dictionary.size(), 12U);
    for (std::size_t i = 0; i < 12; ++i) {
        const auto& record = state.dictionary[i];
        EXPECT_EQ(record.fileName, device_tests::nameOf(i + 1));
        for (auto& other : state.dictionary)
            other.selected = other.fileName == record.fileName;
        device::loadTraining();
        ASSERT_FALSE(state.samples.empty());
        EXPECT_EQ(state.samples.back().elapsedTime, record.rideTime);
        EXPECT_EQ(state.samples.back().distance, record.distance);
        EXPECT_EQ(state.samples.back().kJoule, record.kJoule);
    }
}

TEST_F(DemoCard, TheSeedAloneDecidesWhatIsWritten) {
    ASSERT_EQ(writeDemoCard({"card", 3, 1}), "");
    ASSERT_EQ(writeDemoCard({"same", 3, 1}), "");
    ASSERT_EQ(writeDemoCard({"other", 3, 2}), "");
    for (const char* name : {"dictionary.2", "0000000000000001", "0000000000000003"}) {
        const std::string file = std::string("/data/result/ergo_bike/") + name;
        EXPECT_TRUE(bytesOf("card" + file) == bytesOf("same" + file)) << name;
        EXPECT_FALSE(bytesOf("card" + file) == bytesOf("other" + file)) << name;
    }
}

TEST_F(DemoCard, AnExistingIndexIsNeverWrittenOver) {
    fs::create_directories(tree);
    writeBytes(std::string(tree) + "dictionary.2", "years of trainings");
    EXPECT_NE(writeDemoCard({"card", 1, 1}), "");
    EXPECT_EQ(bytesOf(std::string(tree) + "dictionary.2"), "years of trainings");
    EXPECT_FALSE(fs::exists(std::string(tree) + "0000000000000001"));
}

TEST_F(DemoCard, AnExistingTrainingFileIsNeverWrittenOver) {
    fs::create_directories(tree);
    writeBytes(std::string(tree) + "0000000000000002", "a training");
    EXPECT_NE(writeDemoCard({"card", 3, 1}), "");
    EXPECT_EQ(bytesOf(std::string(tree) + "0000000000000002"), "a training");
    EXPECT_FALSE(fs::exists(std::string(tree) + "dictionary.2"));
}

TEST_F(DemoCard, AFileThatCantBeFinishedIsNotLeftBehind) {
    {
        const files_tests::FileSizeLimit full(1000);
        EXPECT_NE(writeDemoCard({"card", 2, 1}), "");
    }
    EXPECT_TRUE(fs::is_empty(tree));
    EXPECT_EQ(writeDemoCard({"card", 2, 1}), "");
}

TEST_F(DemoCard, ADirectoryThatCantBeMadeIsReported) {
    writeBytes("card", "a file in the way");
    EXPECT_NE(writeDemoCard({"card", 1, 1}), "");
}

}  // namespace
