// In the test font every character is 7 wide and 15 high.
#include "charts/marks/chart_texts.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <ostream>

#include "tests/charts/chart_test.h"

namespace charts {

static void PrintTo(const PlacedText& text, std::ostream* out) {
    *out << "\"" << services::latin1ToUtf8(text.text) << "\" at " << text.x << "," << text.y
         << " colour " << text.colour;
}

}  // namespace charts

namespace {

using chart_tests::frameOf;
using chart_tests::seriesOf;
using charts::PlacedText;
using charts::ValueSeries;

constexpr services::Colour colour = 0x123456;
constexpr int wattValue = 3;
constexpr int distanceValue = 10;

const charts::ChartFrame wideFrame = frameOf(63, 22, 374, 158);
const charts::ChartFrame highFrame = frameOf(63, 22, 130, 214);

TEST(ChartTexts, LabelMinimumAndMaximumOfOneItem) {
    charts::ItemTextPlace place;
    const auto texts =
        charts::itemTexts(wideFrame, wattValue, seriesOf({80, 200}, 80, 200), colour, place);
    ASSERT_EQ(texts.size(), 3U);
    EXPECT_EQ(texts[0], (PlacedText{70, 6, "Watt", colour}));  // 22 - 16.5 = 5.5
    EXPECT_EQ(texts[1], (PlacedText{49, 166, "80", colour}));  // 158 + 7.5 = 165.5
    EXPECT_EQ(texts[2], (PlacedText{42, 22, "200", colour}));
    EXPECT_EQ(place.labelOffset, 7 + 28);
    EXPECT_EQ(place.count, 1);
}

TEST(ChartTexts, LabelsStandSideBySideAndExtremesAreStacked) {
    charts::ItemTextPlace place;
    const ValueSeries series = seriesOf({80, 200}, 80, 200);
    charts::itemTexts(wideFrame, wattValue, series, colour, place);
    const auto second = charts::itemTexts(wideFrame, distanceValue, series, colour, place);
    ASSERT_EQ(second.size(), 3U);
    EXPECT_EQ(second[0], (PlacedText{63 + 35 + 7, 6, "km", colour}));
    EXPECT_EQ(second[1], (PlacedText{28, 150, "80.00", colour}));  // 165.5 - 15 = 150.5
    EXPECT_EQ(second[2], (PlacedText{21, 37, "200.00", colour}));
    const auto third = charts::itemTexts(wideFrame, distanceValue, series, colour, place);
    EXPECT_EQ(third[0].x, 63 + 56 + 7);
    EXPECT_EQ(third[1].y, 136);  // 165.5 - 30 = 135.5
    EXPECT_EQ(third[2].y, 52);
}

TEST(ChartTexts, AnItemWithoutDataOnlyMovesTheNextLabel) {
    charts::ItemTextPlace place;
    EXPECT_TRUE(charts::itemTexts(wideFrame, wattValue, {}, colour, place).empty());
    EXPECT_EQ(place.labelOffset, 7);
    EXPECT_EQ(place.count, 0);
}

TEST(ChartTexts, WhatIsNotFiniteIsWrittenInWords) {
    charts::ItemTextPlace place;
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const auto texts =
        charts::itemTexts(wideFrame, wattValue, seriesOf({nan}, nan, infinity), colour, place);
    ASSERT_EQ(texts.size(), 3U);
    EXPECT_EQ(texts[1], (PlacedText{42, 166, "NaN", colour}));
    EXPECT_EQ(texts[2], (PlacedText{0, 22, "+Infinity", colour}));
}

TEST(ChartTexts, TheRidingTimeIsWrittenAsADuration) {
    charts::ItemTextPlace place;
    const auto texts =
        charts::itemTexts(wideFrame, 9, seriesOf({60, 3725}, 60, 3725), colour, place);
    EXPECT_EQ(texts[1].text, "0:01:00");
    EXPECT_EQ(texts[2].text, "1:02:05");
}

TEST(ChartTexts, OverviewsBottomLineTellsDaysAndRidingTimes) {
    ValueSeries series = seriesOf({1, 2, 3}, 1, 3);
    series.firstDate = 1362506624.0F;
    series.lastDate = 1362592000.0F;
    series.totalRideTime = 9005.0F;  // 3001.67 each
    const auto texts = charts::overviewBottomLine(wideFrame, series);
    EXPECT_EQ(texts[0], (PlacedText{63, 180, "05.03.2013", 0}));  // 158 + 22.5 = 180.5
    EXPECT_EQ(texts[1], (PlacedText{63 + 187 - 73, 180, "2:30:05 / 3 = 0:50:02", 0}));
    EXPECT_EQ(texts[2], (PlacedText{63 + 374 - 70, 180, "06.03.2013", 0}));
}

TEST(ChartTexts, TheAverageRidingTimeIsRoundedToTheEvenSecond) {
    ValueSeries series = seriesOf({1, 2}, 1, 2);
    series.totalRideTime = 121;
    EXPECT_EQ(charts::overviewBottomLine(wideFrame, series)[1].text, "0:02:01 / 2 = 0:01:00");
    series.totalRideTime = 123;
    EXPECT_EQ(charts::overviewBottomLine(wideFrame, series)[1].text, "0:02:03 / 2 = 0:01:02");
}

TEST(ChartTexts, TrainingsBottomLineTellsStartDescriptionAndDuration) {
    device::DictionaryRecord record;
    record.startDate = 1362506624;
    record.endDate = 1362506624 + 3725;
    record.description = "Kurz";
    const auto texts = charts::trainingBottomLine(wideFrame, record);
    EXPECT_EQ(texts[0], (PlacedText{63, 180, "05.03.2013 18:03:44", 0}));
    EXPECT_EQ(texts[1], (PlacedText{63 + 187 - 14, 180, "Kurz", 0}));
    EXPECT_EQ(texts[2], (PlacedText{63 + 374 - 49, 180, "1:02:05", 0}));
}

TEST(ChartTexts, ADurationOfMoreThan32BitsIsNoProblem) {
    device::DictionaryRecord record;
    record.startDate = std::numeric_limits<std::int32_t>::min();
    record.endDate = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(charts::trainingBottomLine(wideFrame, record)[2].text, "1193046:28:15");
}

// Both halves by whole-number division, toward zero: -27 div 2 is -13, 35 div 2 is 17.
TEST(ChartTexts, MiddleTextsAreCentredByWholeNumbers) {
    device::DictionaryRecord record;
    record.description = "abcde";
    EXPECT_EQ(charts::trainingBottomLine(frameOf(63, 22, 101, 158), record)[1].x, 63 + 50 - 17);
    EXPECT_EQ(charts::trainingBottomLine(frameOf(63, 22, -27, 158), record)[1].x, 63 - 13 - 17);
}

TEST(ChartTexts, TheMeanStandsLeftOfItsLineWithAPoint) {
    const ValueSeries series = seriesOf({80, 200}, 80, 200, 140.125F);
    EXPECT_EQ(charts::meanText(wideFrame, distanceValue, series, {100, 100.25}, colour),
              (PlacedText{21, 93, "140.12", colour}));  // 100.25 - 7.5 = 92.75
    EXPECT_EQ(charts::meanText(wideFrame, wattValue, series, {100, 100.0}, colour),
              (PlacedText{42, 92, "140", colour}));
}

TEST(ChartTexts, TheTrendsPerCentStandsRightOfItsEndWithAComma) {
    charts::TrendMark mark = {50.0, 63, 108, 433, 36, 36.0};
    EXPECT_EQ(charts::trendText(wideFrame, mark, colour),
              (PlacedText{63 + 372 + 7, 28, "50,00%", colour}));  // 28.5
    mark.percent = -800.126;
    EXPECT_EQ(charts::trendText(wideFrame, mark, colour).text, "-800,13%");
}

TEST(ChartTexts, CloudTextsAreStackedRightOfASquareInAWidePlot) {
    const ValueSeries series = seriesOf({80, 200}, 80, 200);
    charts::CloudTextPlace place;
    place.count = 1;
    EXPECT_EQ(charts::cloudText(wideFrame, distanceValue, series, colour, place),
              (PlacedText{63 + 158 + 2 + 7, 22, "200,00", colour}));
    place.count = 3;
    EXPECT_EQ(charts::cloudText(wideFrame, wattValue, series, colour, place),
              (PlacedText{230, 52, "200", colour}));
}

TEST(ChartTexts, CloudTextsAreStackedRightOfAHighPlot) {
    const ValueSeries series = seriesOf({80, 200}, 80, 200);
    charts::CloudTextPlace place;
    place.count = 1;
    EXPECT_EQ(charts::cloudText(highFrame, distanceValue, series, colour, place),
              (PlacedText{63 + 130 + 2 + 7, 22, "200,00", colour}));
    place.count = 2;
    EXPECT_EQ(charts::cloudText(highFrame, wattValue, series, colour, place),
              (PlacedText{63 + 130 + 2 + 7, 22 + 15, "200", colour}));
}

// Eight of nine characters' room, then all of it, then more than there is.
TEST(ChartTexts, ALongCloudTextOfAHighPlotIsShownWhole) {
    charts::CloudTextPlace place;
    place.count = 1;
    const auto textOf = [&](float maximum) {
        return charts::cloudText(highFrame, distanceValue, seriesOf({80, maximum}, 80, maximum),
                                 colour, place);
    };
    EXPECT_EQ(textOf(20000), (PlacedText{256 - 8 * 7, 22, "20000,00", colour}));
    EXPECT_EQ(textOf(200000), (PlacedText{63 + 130 + 1, 22, "200000,00", colour}));
    EXPECT_EQ(textOf(2000000), (PlacedText{63 + 130 + 1, 22, "2000000,00", colour}));
}

}  // namespace
