#include "tools/demo_files.h"

#include <gtest/gtest.h>

#include "device/device_tree.h"
#include "device/dictionary.h"
#include "device/training_file.h"
#include "tests/device/card_fixture.h"
#include "tests/stand_ins/file_size_limit.h"

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

const services::DateValue noon = services::makeDate(2026, 3, 14, 12, 0, 0);
const services::DateValue lastMoment = services::makeDate(2013, 12, 18, 23, 59, 59);

TEST(DemoOptionsParsing, UnderstandsDirectoryTrainingsSeedAndDayInAnyOrder) {
    struct Row {
        std::vector<const char*> arguments;
        DemoOptions options;
    };
    const Row rows[] = {
        {{"card"}, {"card", 300, 1, noon}},
        {{"card", "--trainings", "7"}, {"card", 7, 1, noon}},
        {{"--seed", "18446744073709551615", "card"}, {"card", 300, 18446744073709551615U, noon}},
        {{"--trainings", "5000", "card", "--seed", "0"}, {"card", 5000, 0, noon}},
        {{"card", "--until", "2013-12-18"}, {"card", 300, 1, lastMoment}},
        {{"--until", "2012-02-29", "card"},
         {"card", 300, 1, services::makeDate(2012, 2, 29, 23, 59, 59)}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(parseDemoOptions(row.arguments, noon), row.options) << row.arguments[0];
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
        {"card", "--until"},
        {"card", "--until", ""},
        {"card", "--until", "18.12.2013"},
        {"card", "--until", "2013-12-18 "},
        {"card", "--until", "2013-2-30"},
        {"card", "--until", "2013-02-30"},
        {"card", "--until", "2013-00-01"},
        {"card", "--until", "2013-13-01"},
        {"card", "--until", "2013-+1-01"},
        {"card", "--until", "2009-12-31"},
        {"card", "--until", "2038-01-01"},
        {"card", "--unknown"},
        {"-h"},
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_FALSE(parseDemoOptions(rows[i], noon).has_value()) << "row " << i;
    }
}

TEST(DemoOptionsParsing, AClockThatRunsInAnotherCenturyIsNotBelieved) {
    const auto until = [](services::DateValue now) {
        const std::vector<const char*> arguments = {"card"};
        const auto options = parseDemoOptions(arguments, now);
        return options ? services::dayText(options->until) : "none";
    };
    EXPECT_EQ(until(0), "01.01.2010");
    EXPECT_EQ(until(services::makeDate(2009, 12, 31, 23, 59, 59)), "01.01.2010");
    EXPECT_EQ(until(services::makeDate(2037, 12, 31, 23, 59, 59)), "31.12.2037");
    EXPECT_EQ(until(services::makeDate(2107, 6, 1, 0, 0, 0)), "31.12.2037");
}

TEST_F(DemoCard, TheLastTrainingIsOfTheWantedDay) {
    ASSERT_EQ(writeDemoCard({"card", 3, 1, noon}), "");
    fs::current_path(directory / "card");
    ASSERT_EQ(device::locateDeviceTree(), device::TreeLocation::below);
    device::loadDictionary();
    ASSERT_EQ(state.dictionary.size(), 3U);
    EXPECT_EQ(services::dayText(state.dictionary[2].startDate), "14.03.2026");
    EXPECT_LE(state.dictionary[2].endDate, noon);
    EXPECT_NE(services::dayText(state.dictionary[1].startDate), "14.03.2026");
}

TEST_F(DemoCard, TheProgramReadsEveryTrainingOfIt) {
    ASSERT_EQ(writeDemoCard({"card", 12, 3, lastMoment}), "");
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

TEST_F(DemoCard, SeedAndDayAloneDecideWhatIsWritten) {
    ASSERT_EQ(writeDemoCard({"card", 3, 1, lastMoment}), "");
    ASSERT_EQ(writeDemoCard({"same", 3, 1, lastMoment}), "");
    ASSERT_EQ(writeDemoCard({"other", 3, 2, lastMoment}), "");
    for (const char* name : {"dictionary.2", "0000000000000001", "0000000000000003"}) {
        const std::string file = std::string("/data/result/ergo_bike/") + name;
        EXPECT_TRUE(bytesOf("card" + file) == bytesOf("same" + file)) << name;
        EXPECT_FALSE(bytesOf("card" + file) == bytesOf("other" + file)) << name;
    }
}

TEST_F(DemoCard, AnExistingIndexIsNeverWrittenOver) {
    fs::create_directories(tree);
    writeBytes(std::string(tree) + "dictionary.2", "years of trainings");
    EXPECT_NE(writeDemoCard({"card", 1, 1, lastMoment}), "");
    EXPECT_EQ(bytesOf(std::string(tree) + "dictionary.2"), "years of trainings");
    EXPECT_FALSE(fs::exists(std::string(tree) + "0000000000000001"));
}

TEST_F(DemoCard, AnExistingTrainingFileIsNeverWrittenOver) {
    fs::create_directories(tree);
    writeBytes(std::string(tree) + "0000000000000002", "a training");
    EXPECT_NE(writeDemoCard({"card", 3, 1, lastMoment}), "");
    EXPECT_EQ(bytesOf(std::string(tree) + "0000000000000002"), "a training");
    EXPECT_FALSE(fs::exists(std::string(tree) + "dictionary.2"));
}

TEST_F(DemoCard, AFileThatCantBeFinishedIsNotLeftBehind) {
    {
        const stand_ins::FileSizeLimit full(1000);
        EXPECT_NE(writeDemoCard({"card", 2, 1, lastMoment}), "");
    }
    EXPECT_TRUE(fs::is_empty(tree));
    EXPECT_EQ(writeDemoCard({"card", 2, 1, lastMoment}), "");
}

TEST_F(DemoCard, ADirectoryThatCantBeMadeIsReported) {
    writeBytes("card", "a file in the way");
    EXPECT_NE(writeDemoCard({"card", 1, 1, lastMoment}), "");
}

}  // namespace
