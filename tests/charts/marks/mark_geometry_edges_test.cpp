// Marks of few values, of many, of constant ones, and of what is not finite or far away.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "tests/charts/marks/mark_records.h"

namespace {

using namespace chart_tests;
using namespace charts;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

// Gap 20, one bar of 83 1/3; alone it has no scale and stands at half the height.
TEST(MarkGeometry, OneValue) {
    const ValueSeries series = seriesOf({7}, 7, 7, 7);
    const BarMarks bars = barsOf(smallFrame, series);
    EXPECT_EQ(bars.width, 83);
    EXPECT_EQ(bars.bars, (std::vector<BarMark>{{30, 55, 50}}));
    EXPECT_TRUE(lineOf(smallFrame, series).empty());
    // Both clamps of each axis apply, the second wins: 130 - 41.5 and 105 - 41.5.
    const PointMarks circles = pointsOf(charts::computeCircles, smallFrame, series);
    EXPECT_EQ(circles.size, 41);
    EXPECT_EQ(circles.points, (std::vector<PointMark>{{88, 64}}));
    const PointMarks squares = pointsOf(charts::computeSquares, smallFrame, series);
    EXPECT_EQ(squares.size, 83);
    EXPECT_EQ(squares.points, (std::vector<PointMark>{{10, 5}}));
    EXPECT_TRUE(pointsOf(charts::computeCloud, smallFrame, series).points.empty());
    EXPECT_EQ(charts::computeMean(smallFrame, series)->y, 55);
}

// Gap 10, bars 45 5/6 wide.
TEST(MarkGeometry, TwoValues) {
    const ValueSeries series = seriesOf({1, 3}, 1, 3, 2);
    const BarMarks bars = barsOf(smallFrame, series);
    EXPECT_EQ(bars.width, 46);
    EXPECT_EQ(bars.bars, (std::vector<BarMark>{{20, 105, 0}, {75, 5, 100}}));
    EXPECT_EQ(lineOf(smallFrame, series), (std::vector<LineMark>{{41, 105, 96, 5, 42, 97}}));
    const auto trend = charts::computeTrend(smallFrame, series);
    ASSERT_TRUE(trend.has_value());
    EXPECT_NEAR(trend->percent, 66.6666667, 1e-6);
}

// Gap 6 2/3, bars 31.48 wide, 37.78 apart.
TEST(MarkGeometry, ThreeValues) {
    const BarMarks bars = barsOf(smallFrame, seriesOf({1, 5, 3}, 1, 5, 3));
    EXPECT_EQ(bars.width, 31);
    EXPECT_EQ(bars.bars, (std::vector<BarMark>{{17, 105, 0}, {54, 5, 100}, {92, 55, 50}}));
}

// More values than pixels: a tenth of a pixel each.
TEST(MarkGeometry, NarrowSlotsHaveMarksOfTheSmallestSize) {
    const std::vector<float> values(1000, 3.0F);
    const ValueSeries series = seriesOf(values, 1, 5, 3);
    const BarMarks bars = barsOf(smallFrame, series);
    EXPECT_EQ(bars.width, 1);
    ASSERT_EQ(bars.bars.size(), 1000U);
    EXPECT_EQ(bars.bars.front(), (BarMark{10, 55, 50}));  // 10.02
    EXPECT_EQ(bars.bars.back(), (BarMark{130, 55, 50}));  // 10.02 + 0.11998 * 999 = 129.88
    EXPECT_EQ(pointsOf(charts::computeCircles, smallFrame, series).size, 4);
    EXPECT_EQ(pointsOf(charts::computeSquares, smallFrame, series).size, 6);
    EXPECT_EQ(pointsOf(charts::computeCloud, smallFrame, series).size, 2);
    EXPECT_EQ(lineOf(smallFrame, series).size(), 999U);
}

// Two values on 108 pixels: gap 9, bar 41.25, so the line starts at exactly 37.5. Rounded by itself
// 37.5 goes up to 38 and 38.5 goes down to 38: the line is not doubled at that end.
TEST(MarkGeometry, TheSecondStrokeOfALineIsRoundedByItself) {
    EXPECT_EQ(lineOf(frameOf(10, 5, 110, 101), seriesOf({1, 3}, 1, 3)),
              (std::vector<LineMark>{{38, 105, 88, 5, 38, 89}}));
}

TEST(MarkGeometry, TopAndHeightOfABarAreRoundedEachByItself) {
    // Half of 101: a height of 50.5 becomes 50, a top of 55.5 becomes 56; together they reach row
    // 106. In a plot one row lower the top 56.5 becomes 56 too and the bar ends above the bottom.
    EXPECT_EQ(barsOf(frameOf(10, 5, 122, 102), seriesOf({3}, 1, 5)).bars,
              (std::vector<BarMark>{{30, 56, 50}}));
    EXPECT_EQ(barsOf(frameOf(10, 6, 122, 102), seriesOf({3}, 1, 5)).bars,
              (std::vector<BarMark>{{30, 56, 50}}));
}

TEST(MarkGeometry, AConstantSeriesStandsAtHalfTheHeight) {
    const ValueSeries series = seriesOf({4, 4}, 4, 4, 4);
    EXPECT_EQ(barsOf(smallFrame, series).bars, (std::vector<BarMark>{{20, 55, 50}, {75, 55, 50}}));
    EXPECT_EQ(lineOf(smallFrame, series), (std::vector<LineMark>{{41, 55, 96, 55, 42, 97}}));
    EXPECT_EQ(pointsOf(charts::computeCloud, smallFrame, series).points,
              (std::vector<PointMark>{{60, 55}}));
    EXPECT_EQ(charts::computeMean(smallFrame, series)->y, 55);
    const auto trend = charts::computeTrend(smallFrame, series);
    ASSERT_TRUE(trend.has_value());
    EXPECT_EQ(trend->percent, 0.0);
    EXPECT_EQ(trend->y1, 55);
    EXPECT_EQ(trend->y2, 55);
}

TEST(MarkGeometry, WithoutDataThereAreNoMarks) {
    ValueSeries noData = risingSeries;
    noData.hasData = false;
    for (const ValueSeries& series : {noData, seriesOf({}, 1, 5, 3), ValueSeries{}}) {
        EXPECT_TRUE(barsOf(smallFrame, series).bars.empty());
        EXPECT_TRUE(lineOf(smallFrame, series).empty());
        EXPECT_TRUE(pointsOf(charts::computeCircles, smallFrame, series).points.empty());
        EXPECT_TRUE(pointsOf(charts::computeSquares, smallFrame, series).points.empty());
        EXPECT_TRUE(pointsOf(charts::computeCloud, smallFrame, series).points.empty());
        EXPECT_FALSE(charts::computeMean(smallFrame, series).has_value());
        EXPECT_FALSE(charts::computeTrend(smallFrame, series).has_value());
    }
}

TEST(MarkGeometry, MarksThatAreNotFiniteAreLeftOutAndTheOthersKeepTheirPlaces) {
    const ValueSeries series = seriesOf({1, nan, 3, 4, 5}, 1, 5, 3.25F);
    EXPECT_EQ(barsOf(smallFrame, series).bars,
              (std::vector<BarMark>{{14, 105, 0}, {60, 55, 50}, {84, 30, 75}, {107, 5, 100}}));
    EXPECT_EQ(lineOf(smallFrame, series),
              (std::vector<LineMark>{{70, 55, 93, 30, 71, 94}, {93, 30, 116, 5, 94, 117}}));
    EXPECT_EQ(pointsOf(charts::computeCircles, smallFrame, series).points,
              (std::vector<PointMark>{{20, 96}, {70, 55}, {93, 30}, {120, 14}}));
    EXPECT_EQ(pointsOf(charts::computeSquares, smallFrame, series).points,
              (std::vector<PointMark>{{10, 86}, {60, 45}, {84, 5}, {107, 5}}));
    EXPECT_EQ(pointsOf(charts::computeCloud, smallFrame, series).points,
              (std::vector<PointMark>{{85, 55}, {107, 30}}));
}

TEST(MarkGeometry, InfiniteEndsOfTheScaleLeaveOutWhatTheyMakeUndefined) {
    // Finite values lie at the bottom of an infinite scale; the infinite one has no place.
    const ValueSeries endless = seriesOf({1, infinity}, 1, infinity, infinity);
    EXPECT_EQ(barsOf(smallFrame, endless).bars, (std::vector<BarMark>{{20, 105, 0}}));
    EXPECT_FALSE(charts::computeMean(smallFrame, endless).has_value());
    // Infinite minimum and maximum are no range of 0: nothing stands at half the height.
    for (const ValueSeries& series :
         {seriesOf({infinity, infinity}, infinity, infinity, infinity),
          seriesOf({nan, 2}, nan, 2, nan), seriesOf({-infinity, 2}, -infinity, 2, -infinity)}) {
        EXPECT_TRUE(barsOf(smallFrame, series).bars.empty());
        EXPECT_TRUE(lineOf(smallFrame, series).empty());
        EXPECT_TRUE(pointsOf(charts::computeCircles, smallFrame, series).points.empty());
        EXPECT_TRUE(pointsOf(charts::computeSquares, smallFrame, series).points.empty());
        EXPECT_TRUE(pointsOf(charts::computeCloud, smallFrame, series).points.empty());
        EXPECT_FALSE(charts::computeMean(smallFrame, series).has_value());
    }
}

TEST(MarkGeometry, ANotANumberHasNoPlaceInAConstantSeries) {
    EXPECT_EQ(barsOf(smallFrame, seriesOf({nan, 4}, 4, 4, 4)).bars,
              (std::vector<BarMark>{{75, 55, 50}}));
}

// The overview's minimum can lie above a value; its mark stands below the plot.
TEST(MarkGeometry, AValueBelowTheMinimumStandsBelowThePlot) {
    const ValueSeries series = seriesOf({2, 3, 3, 5}, 3, 5);
    EXPECT_EQ(barsOf(smallFrame, series).bars.front().y, 155);
    EXPECT_EQ(barsOf(smallFrame, series).bars.front().height, -50);
    EXPECT_EQ(lineOf(smallFrame, series).front().y1, 155);
    // Bars are 24 wide: circles and squares are kept inside.
    EXPECT_EQ(pointsOf(charts::computeCircles, smallFrame, series).points.front().y, 93);
    EXPECT_EQ(pointsOf(charts::computeSquares, smallFrame, series).points.front().y, 81);
}

// The overview's data 2, 0, 3, 3: the 0 makes the minimum forget the 2 and then gives way to the
// first 3. Gap 5, bars 23.96 wide and 28.75 apart, points of the line 28.96 apart.
TEST(MarkGeometry, AValueBelowAMinimumThatIsTheMaximumStandsInfinitelyFarBelow) {
    std::vector<device::DictionaryRecord> records(4);
    const float watts[] = {2, 0, 3, 3};
    for (std::size_t i = 0; i < records.size(); ++i) {
        records[i].watt = watts[i];
        records[i].selected = 1;
    }
    ValueSeries series;
    charts::computeOverviewSeries(3, records, {}, series);
    ASSERT_EQ(series.values, (std::vector<float>{2, 3, 3, 3}));
    ASSERT_EQ(series.minimum, 3.0F);
    ASSERT_EQ(series.maximum, 3.0F);

    EXPECT_EQ(barsOf(smallFrame, series).bars,
              (std::vector<BarMark>{{44, 55, 50}, {72, 55, 50}, {101, 55, 50}}));
    const std::vector<LineMark> line = lineOf(smallFrame, series);
    ASSERT_EQ(line.size(), 2U);
    EXPECT_EQ(line.front(), (LineMark{55, 55, 84, 55, 56, 85}));
    // 24 wide, and the lower edge is 105.
    EXPECT_EQ(pointsOf(charts::computeCircles, smallFrame, series).points,
              (std::vector<PointMark>{{22, 93}, {56, 55}, {84, 55}, {118, 55}}));
    EXPECT_EQ(pointsOf(charts::computeSquares, smallFrame, series).points,
              (std::vector<PointMark>{{10, 81}, {44, 43}, {72, 43}, {101, 43}}));
    EXPECT_EQ(pointsOf(charts::computeCloud, smallFrame, series).points,
              (std::vector<PointMark>{{60, 102}, {60, 55}, {60, 55}}));
    EXPECT_EQ(charts::computeMean(smallFrame, series)->y, 55);
}

TEST(MarkGeometry, MarksBeyond32BitsAreLeftOut) {
    const float minimum = 3.0F;
    const float maximum = std::nextafter(minimum, 4.0F);
    const ValueSeries series = seriesOf({1e-30F, minimum, maximum}, minimum, maximum);
    const ChartFrame frame = frameOf(10, 5, 122, 1001);
    const BarMarks bars = barsOf(frame, series);
    ASSERT_EQ(bars.bars.size(), 2U);
    EXPECT_EQ(bars.bars.front().y, 1005);
    EXPECT_EQ(bars.bars.back().y, 5);
    EXPECT_EQ(lineOf(frame, series).size(), 1U);
    EXPECT_EQ(pointsOf(charts::computeCircles, frame, series).points.size(), 3U);
}

// An image narrower than its margins: the marks go leftward.
TEST(MarkGeometry, ANegativePlotWidthTurnsTheMarksAround) {
    const ChartFrame frame = frameOf(63, 5, -26, 101);
    const ValueSeries series = seriesOf({1, 3}, 1, 3, 2);
    // Gap -2 1/3, bars -10.69 wide: at 60.67 and 47.83.
    const BarMarks bars = barsOf(frame, series);
    EXPECT_EQ(bars.width, 1);
    EXPECT_EQ(bars.bars, (std::vector<BarMark>{{61, 105, 0}, {48, 5, 100}}));
    // From 63 - 7.13, by -13.03.
    EXPECT_EQ(lineOf(frame, series), (std::vector<LineMark>{{56, 105, 43, 5, 57, 44}}));
    // The right edge, at 35, lies left of the left one; the second clamp wins.
    EXPECT_EQ(pointsOf(charts::computeCircles, frame, series).points,
              (std::vector<PointMark>{{31, 101}, {31, 9}}));
    EXPECT_EQ(pointsOf(charts::computeSquares, frame, series).points,
              (std::vector<PointMark>{{29, 99}, {29, 5}}));
    const auto trend = charts::computeTrend(frame, series);
    ASSERT_TRUE(trend.has_value());
    EXPECT_EQ(trend->x1, 63);
    EXPECT_EQ(trend->x2, 33);
}

}  // namespace
