#include "tools/demo_plan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "services/text/dates.h"

namespace {

using tools::planTrainings;
using tools::Random;

TEST(DemoRandom, TheSequenceIsTheSameOnEveryMachine) {
    Random random{1};
    EXPECT_EQ(tools::nextBits(random), 0x910A2DEC89025CC1U);
    EXPECT_EQ(tools::nextBits(random), 0xBEEB8DA1658EEC67U);
}

TEST(DemoRandom, IntegersReachBothEndsAndNeverLeaveThem) {
    Random random{7};
    std::set<int> seen;
    for (int i = 0; i < 1000; ++i)
        seen.insert(tools::nextInteger(random, -2, 3));
    EXPECT_EQ(seen, (std::set<int>{-2, -1, 0, 1, 2, 3}));
}

TEST(DemoPlan, YearsOfTrainingsEndInDecember2013) {
    Random random{1};
    const auto trainings = planTrainings(400, random);
    ASSERT_EQ(trainings.size(), 400U);
    EXPECT_EQ(services::dayText(trainings.back().startDate), "18.12.2013");
    EXPECT_LE(services::year(trainings.front().startDate), 2011);
    // About three a week: 400 in 2.5 to 4 years.
    const auto days = (trainings.back().startDate - trainings.front().startDate) / 86'400;
    EXPECT_GT(days, 900);
    EXPECT_LT(days, 1500);
    for (std::size_t i = 1; i < trainings.size(); ++i) {
        EXPECT_GE(trainings[i].startDate / 86'400, trainings[i - 1].startDate / 86'400 + 1);
    }
}

TEST(DemoPlan, NobodyTrainsInTheHolidays) {
    Random random{3};
    for (const auto& training : planTrainings(1000, random)) {
        const auto date = services::calendarDate(training.startDate);
        const int key = date.month * 100 + date.day;
        EXPECT_FALSE(key >= 722 && key <= 812) << key;
        EXPECT_FALSE(key >= 1223 || key <= 102) << key;
    }
}

TEST(DemoPlan, EveryTrainingIsRideable) {
    Random random{5};
    std::set<std::string> descriptions;
    int withoutBelt = 0;
    for (const auto& training : planTrainings(1000, random)) {
        int seconds = 0;
        for (const auto& stretch : training.stretches)
            seconds += stretch.seconds;
        EXPECT_GE(seconds, 20 * 60) << training.description;
        EXPECT_LE(seconds, 90 * 60) << training.description;
        EXPECT_LE(training.description.size(), 63U);
        EXPECT_LT(training.stretches.front().from, 0.5) << "no warm-up";
        EXPECT_LT(training.stretches.back().to, 0.5) << "no cool-down";
        EXPECT_GE(training.sampleSeconds, 1);
        EXPECT_LE(training.sampleSeconds, 3);
        descriptions.insert(training.description);
        if (!training.withPulseBelt) ++withoutBelt;
    }
    EXPECT_GE(descriptions.size(), 8U);
    EXPECT_GT(withoutBelt, 10);
    EXPECT_LT(withoutBelt, 150);
    EXPECT_TRUE(std::ranges::any_of(descriptions, [](const std::string& text) {
        return text.find('\xFC') != std::string::npos;  // an umlaut, in Latin-1
    }));
}

TEST(DemoPlan, TheRiderGetsFitterOverTheYears) {
    Random random{1};
    const auto trainings = planTrainings(300, random);
    double first = 0;
    double last = 0;
    for (std::size_t i = 0; i < 50; ++i) {
        first += trainings[i].thresholdPower / 50;
        last += trainings[trainings.size() - 1 - i].thresholdPower / 50;
    }
    EXPECT_GT(last, first + 15);
}

}  // namespace
