#include "tools/demo_plan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>

#include "services/text/dates.h"
#include "tools/demo_files.h"

namespace {

using tools::planTrainings;
using tools::Random;

const services::DateValue lastMoment = services::makeDate(2013, 12, 18, 23, 59, 59);

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

TEST(DemoPlan, YearsOfTrainingsEndOnTheWantedDay) {
    Random random{1};
    const auto trainings = planTrainings(400, lastMoment, random);
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

TEST(DemoPlan, TheLastTrainingIsOfTheWantedDayAlsoInTheHolidays) {
    for (const auto& [year, month, day] :
         {std::array{2026, 7, 31}, {2026, 12, 31}, {2027, 1, 1}, {2028, 2, 29}}) {
        Random random{4};
        const auto end = services::makeDate(year, month, day, 23, 59, 59);
        const auto trainings = planTrainings(20, end, random);
        ASSERT_EQ(trainings.size(), 20U);
        EXPECT_EQ(services::dayText(trainings.back().startDate), services::dayText(end));
        EXPECT_GT(end - trainings.front().startDate, 19 * 86'400);
    }
}

TEST(DemoPlan, NoTrainingIsYetToCome) {
    for (int hour = 0; hour < 24; ++hour) {
        Random random{6};
        const auto now = services::makeDate(2026, 3, 13, hour, 15, 0);
        const auto trainings = planTrainings(5, now, random);
        const auto end = trainings.back().startDate + tools::lengthOf(trainings.back());
        EXPECT_LE(end, now);
        EXPECT_EQ(services::dayText(end), "13.03.2026");
        EXPECT_GT(trainings[4].startDate, trainings[3].startDate + tools::lengthOf(trainings[3]));
        if (hour == 23) {
            EXPECT_GE(services::calendarDate(end).hour, 17);
        }
    }
}

TEST(DemoPlan, TheLongestCardFitsIntoTheDatesOfACard) {
    Random random{1};
    const auto first = services::makeDate(tools::firstDemoYear, 1, 1, 0, 0, 0);
    EXPECT_GT(planTrainings(tools::mostDemoTrainings, first, random).front().startDate, 0);
    const auto last = services::makeDate(tools::lastDemoYear, 12, 31, 23, 59, 59);
    EXPECT_EQ(services::dayText(planTrainings(2, last, random).back().startDate), "31.12.2037");
}

TEST(DemoPlan, NobodyTrainsInTheHolidays) {
    Random random{3};
    for (const auto& training : planTrainings(1000, lastMoment, random)) {
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
    for (const auto& training : planTrainings(1000, lastMoment, random)) {
        const int seconds = tools::lengthOf(training);
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
    const auto trainings = planTrainings(300, lastMoment, random);
    double first = 0;
    double last = 0;
    for (std::size_t i = 0; i < 50; ++i) {
        first += trainings[i].thresholdPower / 50;
        last += trainings[trainings.size() - 1 - i].thresholdPower / 50;
    }
    EXPECT_GT(last, first + 15);
}

}  // namespace
