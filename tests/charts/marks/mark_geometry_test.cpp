// Every style on small plots, with positions worked out by hand.
#include "charts/marks/mark_geometry.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "tests/charts/marks/mark_records.h"

namespace {

using namespace chart_tests;
using namespace charts;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

TEST(MarkGeometry, BarsOfFiveValues) {
    const BarMarks marks = barsOf(smallFrame, risingSeries);
    EXPECT_EQ(marks.width, 19);
    EXPECT_EQ(marks.bars,
              (std::vector<BarMark>{
                  {14, 105, 0}, {37, 80, 25}, {60, 55, 50}, {84, 30, 75}, {107, 5, 100}}));
}

TEST(MarkGeometry, LineOfFiveValues) {
    EXPECT_EQ(lineOf(smallFrame, risingSeries), (std::vector<LineMark>{{23, 105, 46, 80, 24, 47},
                                                                       {46, 80, 70, 55, 47, 71},
                                                                       {70, 55, 93, 30, 71, 94},
                                                                       {93, 30, 116, 5, 94, 117}}));
}

// Every circle lies wholly inside: the first is pushed right and up, the last left and down, to
// 19.5, 95.5 and 120.5, 14.5.
TEST(MarkGeometry, CirclesOfFiveValues) {
    const PointMarks marks = pointsOf(charts::computeCircles, smallFrame, risingSeries);
    EXPECT_EQ(marks.size, 9);
    EXPECT_EQ(marks.points,
              (std::vector<PointMark>{{20, 96}, {47, 80}, {70, 55}, {93, 30}, {120, 14}}));
}

// The fourth, at 20 1/3, is pushed up although it lies inside: it must keep its own side's
// distance.
TEST(MarkGeometry, SquaresOfFiveValues) {
    const PointMarks marks = pointsOf(charts::computeSquares, smallFrame, risingSeries);
    EXPECT_EQ(marks.size, 19);
    EXPECT_EQ(marks.points,
              (std::vector<PointMark>{{10, 86}, {37, 70}, {60, 45}, {84, 5}, {107, 5}}));
}

// Each value over the one before it, in a square of 100.
TEST(MarkGeometry, CloudOfFiveValues) {
    const PointMarks marks = pointsOf(charts::computeCloud, smallFrame, risingSeries);
    EXPECT_EQ(marks.size, 2);
    EXPECT_EQ(marks.points, (std::vector<PointMark>{{35, 102}, {60, 80}, {85, 55}, {107, 30}}));
}

// At the low end of an axis by 1.5 (11.5 and 6.5 go to the even pixel), at the high end by 3.
TEST(MarkGeometry, CloudPointsMoveInByTheRadiusOrTwiceTheRadius) {
    const auto falling = pointsOf(charts::computeCloud, smallFrame, seriesOf({5, 1}, 1, 5));
    EXPECT_EQ(falling.points, (std::vector<PointMark>{{12, 6}}));
    const auto rising = pointsOf(charts::computeCloud, smallFrame, seriesOf({1, 5}, 1, 5));
    EXPECT_EQ(rising.points, (std::vector<PointMark>{{107, 102}}));
}

TEST(MarkGeometry, MeanOfFiveValues) {
    const auto mark = charts::computeMean(smallFrame, risingSeries);
    ASSERT_TRUE(mark.has_value());
    EXPECT_EQ(mark->y, 55);
    EXPECT_EQ(mark->exactY, 55.0);
}

TEST(MarkGeometry, TheMeanIsRoundedToTheEvenPixel) {
    // A quarter of 102 above the bottom row 107: 81.5.
    const auto mark = charts::computeMean(frameOf(10, 5, 122, 103), seriesOf({1, 5}, 1, 5, 2));
    ASSERT_TRUE(mark.has_value());
    EXPECT_EQ(mark->y, 82);
    EXPECT_EQ(mark->exactY, 81.5);
}

// Of five values the middle one belongs to neither half: 1 + 2 against 4 + 5.
TEST(MarkGeometry, TrendOfFiveValues) {
    const auto mark = charts::computeTrend(smallFrame, risingSeries);
    ASSERT_TRUE(mark.has_value());
    EXPECT_NEAR(mark->percent, 66.6666667, 1e-6);
    EXPECT_EQ(mark->x1, 10);
    EXPECT_EQ(mark->y1, 92);  // 55 + 0.55 * 66.67
    EXPECT_EQ(mark->x2, 128);
    EXPECT_EQ(mark->y2, 18);
    EXPECT_NEAR(mark->exactY2, 18.3333333, 1e-6);
}

TEST(MarkGeometry, TrendOfTwoTwoFourFour) {
    // The mean stands at row 56, halfway up a plot of 102.
    const ChartFrame frame = frameOf(10, 5, 122, 103);
    const auto mark = charts::computeTrend(frame, seriesOf({2, 2, 4, 4}, 2, 4, 3));
    ASSERT_TRUE(mark.has_value());
    EXPECT_EQ(mark->percent, 50.0);
    EXPECT_EQ(mark->y1, 84);  // 1.5 * 56: lower on screen, so the line rises from left to right
    EXPECT_EQ(mark->y2, 28);  // 0.5 * 56
    EXPECT_NEAR(mark->exactY2, 28.0, 1e-9);
}

TEST(MarkGeometry, TheTrendStaysInsideThePlot) {
    const auto falling = charts::computeTrend(smallFrame, seriesOf({9, 9, 1, 1}, 1, 9, 5));
    ASSERT_TRUE(falling.has_value());
    EXPECT_EQ(falling->percent, -800.0);
    EXPECT_EQ(falling->y1, 5);
    EXPECT_EQ(falling->y2, 105);
}

TEST(MarkGeometry, TrendsThatAreNotDrawn) {
    struct Row {
        const char* name;
        ValueSeries series;
    };
    ValueSeries noData = seriesOf({2, 2, 4, 4}, 2, 4, 3);
    noData.hasData = false;
    const Row rows[] = {
        {"no data", noData},
        {"no values", seriesOf({}, 2, 4, 3)},
        {"one value", seriesOf({3}, 3, 3, 3)},
        {"first half without sum", seriesOf({-1, 1, 2, 2}, -1, 2, 1)},
        {"second half without sum", seriesOf({2, 2, -1, 1}, -1, 2, 1)},
        {"not a number in a half", seriesOf({nan, 2, 4, 4}, 2, 4, 3)},
        {"mean of nothing", seriesOf({8, 8}, 8, 5, nan)},
        {"an infinite half", seriesOf({2, infinity}, 2, infinity, infinity)},
        {"more per cent than a float holds", seriesOf({1e38F, 1e-38F}, 1e-38F, 1e38F, 5e37F)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_FALSE(charts::computeTrend(smallFrame, row.series).has_value());
    }
}

// The middle one of three is in neither half even when it is not a number.
TEST(MarkGeometry, TheMiddleOfAnOddNumberIsInNeitherHalf) {
    for (const float middle : {1.0F, 5.0F, nan}) {
        SCOPED_TRACE(middle);
        const auto mark = charts::computeTrend(smallFrame, seriesOf({2, middle, 4}, 1, 5, 3));
        ASSERT_TRUE(mark.has_value());
        EXPECT_EQ(mark->percent, 50.0);
    }
}

}  // namespace
