#include "charts/marks/chart_frame.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

#include "tests/charts/chart_test.h"

namespace {

using chart_tests::frameOf;
using charts::ChartFrame;
using charts::GridKind;
using charts::GridRule;
using charts::MarkedOptions;
using charts::Option;

void setMark(MarkedOptions& marks, int value, Option option) {
    auto& bits = marks.bits[static_cast<std::size_t>(value)];
    bits = static_cast<std::uint8_t>(bits | (1U << static_cast<unsigned>(option)));
}

// The test font: nine characters are 63 wide; one and a half heights are 22.5, rounded to 22.
TEST(ChartFrameTest, LeavesRoomForTheTextsAroundThePlot) {
    const ChartFrame frame = charts::chartFrame(500, 200);
    EXPECT_EQ(frame.imageWidth, 500);
    EXPECT_EQ(frame.imageHeight, 200);
    EXPECT_EQ(frame.left, 63);
    EXPECT_EQ(frame.top, 22);
    EXPECT_EQ(frame.width, 374);
    EXPECT_EQ(frame.height, 158);
}

TEST(ChartFrameTest, TheSmallestWindowHasAPlot) {
    const ChartFrame frame = charts::chartFrame(256, 256);
    EXPECT_EQ(frame.width, 130);
    EXPECT_EQ(frame.height, 214);
}

TEST(ChartFrameTest, ATinyImageHasANegativePlot) {
    const ChartFrame frame = charts::chartFrame(100, 30);
    EXPECT_EQ(frame.left, 63);
    EXPECT_EQ(frame.width, -26);
    EXPECT_EQ(frame.height, -12);
}

TEST(ChartFrameTest, SizesBeyondAnyImageAreCut) {
    const int least = std::numeric_limits<int>::min();
    const int most = std::numeric_limits<int>::max();
    EXPECT_EQ(charts::chartFrame(least, least).width, -126);
    EXPECT_EQ(charts::chartFrame(most, most).imageWidth, 32767);
    for (const ChartFrame& frame :
         {charts::chartFrame(least, most), charts::chartFrame(most, least)}) {
        EXPECT_EQ(charts::gridRules(frame, GridKind::square).size(), 19U);
        EXPECT_EQ(charts::gridRules(frame, GridKind::horizontal).size(), 9U);
    }
}

TEST(ChartFrameTest, TheFirstCloudOrMeanDecidesTheGrid) {
    struct Row {
        const char* name;
        std::vector<std::pair<int, Option>> marked;
        GridKind grid;
    };
    const Row rows[] = {
        {"nothing", {}, GridKind::horizontal},
        {"other options", {{0, Option::bars}, {5, Option::trend}}, GridKind::horizontal},
        {"a mean", {{5, Option::mean}}, GridKind::horizontal},
        {"a cloud", {{5, Option::cloud}}, GridKind::square},
        {"both of one value", {{5, Option::mean}, {5, Option::cloud}}, GridKind::square},
        {"the cloud first", {{4, Option::cloud}, {5, Option::mean}}, GridKind::square},
        {"the mean first", {{4, Option::mean}, {5, Option::cloud}}, GridKind::horizontal},
        {"the mean first, of the very first value",
         {{0, Option::mean}, {1, Option::cloud}},
         GridKind::horizontal},
        {"the cloud first, of the very first value",
         {{0, Option::cloud}, {1, Option::mean}},
         GridKind::square},
        {"a cloud of the other chart", {{71, Option::cloud}}, GridKind::square},
        {"a mean of the overview before a cloud of the training",
         {{19, Option::mean}, {50, Option::cloud}},
         GridKind::horizontal},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        MarkedOptions marks;
        for (const auto& [value, option] : row.marked)
            setMark(marks, value, option);
        EXPECT_EQ(charts::gridKind(marks), row.grid);
    }
}

void expectRule(const GridRule& rule, bool vertical, int x, int y, int length, bool border) {
    EXPECT_EQ(rule.vertical, vertical);
    EXPECT_EQ(rule.x, x);
    EXPECT_EQ(rule.y, y);
    EXPECT_EQ(rule.length, length);
    EXPECT_EQ(rule.border, border);
}

TEST(ChartFrameTest, NineRulesCrossThePlot) {
    const auto rules = charts::gridRules(frameOf(63, 22, 374, 158), GridKind::horizontal);
    ASSERT_EQ(rules.size(), 9U);
    for (int k = 1; k <= 9; ++k) {
        SCOPED_TRACE(k);
        expectRule(rules[static_cast<std::size_t>(k - 1)], false, 63, 22 + 15 * k, 374, false);
    }
}

TEST(ChartFrameTest, InAWidePlotTheSquareIsAsHighAsThePlot) {
    const auto rules = charts::gridRules(frameOf(63, 22, 374, 158), GridKind::square);
    ASSERT_EQ(rules.size(), 19U);
    expectRule(rules[0], true, 63 + 158 + 2, 21, 160, true);
    for (int k = 1; k <= 9; ++k) {
        SCOPED_TRACE(k);
        const auto index = static_cast<std::size_t>(2 * k - 1);
        expectRule(rules[index], true, 63 + 15 * k, 21, 160, false);
        expectRule(rules[index + 1], false, 63, 22 + 15 * k, 160, false);
    }
}

TEST(ChartFrameTest, InAHighPlotTheSquareIsAsWideAsThePlot) {
    const auto rules = charts::gridRules(frameOf(63, 22, 130, 214), GridKind::square);
    ASSERT_EQ(rules.size(), 19U);
    expectRule(rules[0], false, 62, 22 + 130 + 2, 132, true);
    for (int k = 1; k <= 9; ++k) {
        SCOPED_TRACE(k);
        const auto index = static_cast<std::size_t>(2 * k - 1);
        expectRule(rules[index], true, 63 + 13 * k, 21, 132, false);
        expectRule(rules[index + 1], false, 63, 22 + 13 * k, 132, false);
    }
}

TEST(ChartFrameTest, APlotAsWideAsHighCountsAsWide) {
    const auto rules = charts::gridRules(frameOf(10, 5, 100, 100), GridKind::square);
    expectRule(rules[0], true, 112, 4, 102, true);
}

TEST(ChartFrameTest, NegativePlotsHaveRulesWithoutPixels) {
    const auto rules = charts::gridRules(frameOf(63, 22, -26, 100), GridKind::square);
    expectRule(rules[0], false, 62, 22 - 26 + 2, -24, true);
    expectRule(rules[1], true, 61, 21, -24, false);  // -26 div 10 is -2
    expectRule(rules[2], false, 63, 20, -24, false);
}

}  // namespace
