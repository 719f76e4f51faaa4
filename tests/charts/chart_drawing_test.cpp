// The whole chart: what is drawn over what, which texts, when nothing is drawn. The test font is 7
// wide and 15 high, so a 500 by 200 image has a plot of 374 by 158 at (63, 22).
#include "charts/chart_drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <vector>

#include "charts/marks/mark_geometry.h"
#include "charts/marks/mark_painting.h"
#include "tests/charts/chart_test.h"

namespace stand_ins {

static void PrintTo(const TextCall& call, std::ostream* out) {
    *out << "\"" << services::latin1ToUtf8(call.text) << "\" at " << call.x << "," << call.y
         << " colour " << call.colour;
}

}  // namespace stand_ins

namespace {

using chart_tests::mark;
using charts::ChartKind;
using charts::Option;
using services::rgb;
using services::Surface;
using services::operator""_l1;
using stand_ins::TextCall;
using stand_ins::world;

constexpr std::uint32_t whitePixel = 0xFFFFFFFFU;
constexpr std::uint32_t blackPixel = 0xFF000000U;
constexpr std::uint32_t gridPixel = 0xFFC8C8C8U;

class ChartDrawing : public chart_tests::ChartTest {
  protected:
    void SetUp() override {
        chart_tests::ChartTest::SetUp();
        services::resizeSurface(surface, 500, 200, 1.0);
        for (services::Colour& colour : charts::state.colours)
            colour = rgb(1, 2, 3);
    }

    std::uint32_t pixel(int x, int y) const {
        return surface
            .pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(surface.deviceWidth) +
                    static_cast<std::size_t>(x)];
    }

    // Three selected trainings, power 100, 150, 200 and pulse 120, 110, 130.
    void loadThreeTrainings() {
        device::state.dictionary = chart_tests::recordsOfWatt({100, 150, 200});
        const float pulses[] = {120, 110, 130};
        const std::int32_t rideTimes[] = {3600, 3600, 1805};
        for (std::size_t i = 0; i < 3; ++i) {
            device::state.dictionary[i].pulse = pulses[i];
            device::state.dictionary[i].rideTime = rideTimes[i];
        }
        device::state.dictionary[0].startDate = 1362506624;
        device::state.dictionary[1].startDate = 1362592000;
        device::state.dictionary[2].startDate = 1362592000;
    }

    Surface surface;
};

std::vector<TextCall> bottomLineOfThreeTrainings() {
    return {{63, 180, "05.03.2013", 0},
            {177, 180, "2:30:05 / 3 = 0:50:02", 0},
            {367, 180, "06.03.2013", 0}};
}

TEST_F(ChartDrawing, NothingAtAllIsDrawnOfASingleTraining) {
    device::state.dictionary = chart_tests::recordsOfWatt({100});
    device::state.samples = chart_tests::samplesOfWatt({1, 2, 3});
    mark(3, Option::line);
    mark(4, Option::line);  // without data, but nobody looks
    services::fillSurface(surface, rgb(9, 9, 9));
    const auto before = surface.pixels;
    EXPECT_FALSE(charts::drawChart(ChartKind::overview, surface));
    EXPECT_EQ(surface.pixels, before);
    EXPECT_TRUE(world.texts.empty());
    EXPECT_TRUE(services::itemMark(204));
    device::state.dictionary.clear();
    EXPECT_FALSE(charts::drawChart(ChartKind::overview, surface));
    EXPECT_EQ(surface.pixels, before);
}

TEST_F(ChartDrawing, NothingAtAllIsDrawnOfASingleSample) {
    loadThreeTrainings();
    device::state.samples = chart_tests::samplesOfWatt({100});
    mark(59, Option::line);
    services::fillSurface(surface, rgb(9, 9, 9));
    const auto before = surface.pixels;
    EXPECT_FALSE(charts::drawChart(ChartKind::training, surface));
    device::state.samples.clear();
    EXPECT_FALSE(charts::drawChart(ChartKind::training, surface));
    EXPECT_EQ(surface.pixels, before);
    EXPECT_TRUE(world.texts.empty());
}

TEST_F(ChartDrawing, WithoutMarksThereAreGridAndFrameOnAFreshGround) {
    loadThreeTrainings();
    services::fillSurface(surface, rgb(9, 9, 9));
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));
    EXPECT_TRUE(world.texts.empty());
    Surface expected;
    services::resizeSurface(expected, 500, 200, 1.0);
    for (int k = 1; k <= 9; ++k) {
        services::fillBox(expected, 63, 22 + 15 * k, 374, 1, charts::gridColour);
    }
    services::drawFrame(expected, 62, 20, 376, 161, services::black);
    EXPECT_EQ(surface.pixels, expected.pixels);
}

// The line belongs to a lower value number than the bars and is drawn over them all the same; where
// bars of two values meet, both show.
TEST_F(ChartDrawing, BarsLieHalfTransparentBehindTheMarksOfEveryValue) {
    loadThreeTrainings();
    charts::state.colours[0] = rgb(0, 128, 0);
    charts::state.colours[3] = rgb(255, 0, 0);
    charts::state.colours[5] = rgb(0, 0, 255);
    mark(0, Option::line);
    mark(3, Option::bars);
    mark(5, Option::bars);
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));

    const charts::ChartFrame frame = charts::chartFrame(500, 200);
    charts::ValueSeries series;
    charts::BarMarks bars;
    charts::computeSeries(ChartKind::overview, 3, series);
    charts::computeBars(frame, series, bars);
    ASSERT_EQ(bars.bars.size(), 3U);
    // The third bar is the highest of both values: blue over red.
    const int x = bars.bars[2].x + bars.width - 2;
    EXPECT_EQ(pixel(x, 30), 0xFF7F3FBFU);
    // Of the second bar only the red half reaches the plot's middle.
    EXPECT_EQ(pixel(bars.bars[1].x + bars.width - 2, 150), 0xFFFF7F7FU);

    charts::computeSeries(ChartKind::overview, 0, series);
    std::vector<charts::LineMark> line;
    charts::computeLine(frame, series, line);
    for (const charts::LineMark& segment : line) {
        EXPECT_EQ(pixel(segment.x1, segment.y1), 0xFF008000U);
        EXPECT_EQ(pixel(segment.x2, segment.y2), 0xFF008000U);
    }
}

TEST_F(ChartDrawing, StylesOfOneValueAreDrawnInTheirOrderAndTheFrameLast) {
    loadThreeTrainings();
    charts::state.colours[3] = rgb(255, 0, 0);
    charts::state.colours[5] = rgb(0, 0, 255);
    for (const Option option : {Option::circles, Option::squares, Option::mean, Option::trend}) {
        mark(3, option);
    }
    mark(5, Option::line);
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));

    const charts::ChartFrame frame = charts::chartFrame(500, 200);
    charts::ValueSeries series;
    Surface expected;
    services::resizeSurface(expected, 500, 200, 1.0);
    charts::paintGrid(expected, charts::gridRules(frame, charts::GridKind::horizontal));
    charts::computeSeries(ChartKind::overview, 3, series);
    charts::PointMarks points;
    charts::computeCircles(frame, series, points);
    charts::paintCircles(expected, points, rgb(255, 0, 0));
    charts::computeSquares(frame, series, points);
    charts::paintSquares(expected, points, rgb(255, 0, 0));
    charts::paintMean(expected, frame, *charts::computeMean(frame, series), rgb(255, 0, 0));
    charts::paintTrend(expected, *charts::computeTrend(frame, series));
    charts::computeSeries(ChartKind::overview, 5, series);
    std::vector<charts::LineMark> line;
    charts::computeLine(frame, series, line);
    charts::paintLine(expected, line, rgb(0, 0, 255));
    charts::paintFrame(expected, frame);
    EXPECT_EQ(surface.pixels, expected.pixels);
}

TEST_F(ChartDrawing, ACloudOfTheOtherChartMakesTheGridSquare) {
    loadThreeTrainings();
    mark(62, Option::cloud);
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));
    EXPECT_TRUE(world.texts.empty());
    EXPECT_EQ(pixel(63 + 158 + 2, 100), blackPixel);
    EXPECT_EQ(pixel(63 + 15, 100), gridPixel);
    EXPECT_EQ(pixel(63 + 159, 22 + 15), gridPixel);
    EXPECT_EQ(pixel(63 + 200, 22 + 15), whitePixel);
}

TEST_F(ChartDrawing, AMeanOfALowerNumberKeepsTheGridOfRules) {
    loadThreeTrainings();
    mark(3, Option::mean);
    mark(5, Option::cloud);
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));
    EXPECT_EQ(pixel(63 + 300, 22 + 15), gridPixel);
}

TEST_F(ChartDrawing, TextsOfOneValue) {
    loadThreeTrainings();
    mark(3, Option::line);
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));
    std::vector<TextCall> expected = {{70, 6, "Watt", rgb(1, 2, 3)},
                                      {42, 166, "100", rgb(1, 2, 3)},
                                      {42, 22, "200", rgb(1, 2, 3)}};
    for (const TextCall& call : bottomLineOfThreeTrainings())
        expected.push_back(call);
    EXPECT_EQ(world.texts, expected);
}

// First the texts of the overlays, value by value; then those of every marked item, with the line
// below the plot only once.
TEST_F(ChartDrawing, TextsOfSeveralItemsStandSideBySideAndStacked) {
    loadThreeTrainings();
    charts::state.colours[3] = rgb(255, 0, 0);
    charts::state.colours[5] = rgb(0, 0, 255);
    mark(3, Option::bars);
    mark(3, Option::mean);
    mark(5, Option::trend);
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));
    const services::Colour red = rgb(255, 0, 0);
    const services::Colour blue = rgb(0, 0, 255);
    // Power: mean row 22 + 157 / 2 = 100.5. Pulse: 120 against 130, mean row also 100.5 and its
    // right end 100.5 - 1.005 * 7.6923 = 92.77.
    std::vector<TextCall> expected = {{42, 93, "150", red},
                                      {63 + 372 + 7, 85, "7,69%", blue},
                                      {70, 6, "Watt", red},
                                      {42, 166, "100", red},
                                      {42, 22, "200", red}};
    for (const TextCall& call : bottomLineOfThreeTrainings())
        expected.push_back(call);
    for (const TextCall& call : std::vector<TextCall>{{105, 6, "Watt", red},
                                                      {42, 150, "100", red},
                                                      {42, 37, "200", red},
                                                      {140, 6, "Puls", blue},
                                                      {42, 136, "110", blue},
                                                      {42, 52, "130", blue}}) {
        expected.push_back(call);
    }
    EXPECT_EQ(world.texts, expected);
}

TEST_F(ChartDrawing, EachCloudWritesItsMaximumBesideTheSquare) {
    loadThreeTrainings();
    mark(3, Option::cloud);
    mark(5, Option::cloud);
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));
    ASSERT_GE(world.texts.size(), 2U);
    EXPECT_EQ(world.texts[0], (TextCall{230, 22, "200", rgb(1, 2, 3)}));
    EXPECT_EQ(world.texts[1], (TextCall{230, 37, "130", rgb(1, 2, 3)}));
    // The second of two points of the power: 200 over 150, at most 3 from the right end.
    EXPECT_EQ(pixel(63 + 157 - 3, 22 + 157 - 78), 0xFF010203U);
}

TEST_F(ChartDrawing, ACloudWithoutDataKeepsItsPlaceAmongTheMaxima) {
    loadThreeTrainings();
    for (auto& record : device::state.dictionary)
        record.watt = 0;
    mark(3, Option::cloud);
    mark(5, Option::cloud);
    stand_ins::expectMessage("Fehler"_l1, "Das Menü 'Watt' enthält keine Daten!"_l1);
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));
    ASSERT_FALSE(world.texts.empty());
    EXPECT_EQ(world.texts[0], (TextCall{230, 37, "130", rgb(1, 2, 3)}));
}

TEST_F(ChartDrawing, TheFrameIsDrawnAfterTheTexts) {
    loadThreeTrainings();
    mark(3, Option::line);
    int texts = 0;
    world.beforeText = [&](const Surface& picture) {
        ++texts;
        EXPECT_NE(blackPixel, picture.pixels[20 * 500 + 62]);
    };
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));
    EXPECT_GT(texts, 0);
    EXPECT_EQ(pixel(62, 20), blackPixel);
}

TEST_F(ChartDrawing, EveryMarkedItemWithoutDataIsReportedAndItsMarkRemoved) {
    loadThreeTrainings();
    for (auto& record : device::state.dictionary)
        record.unknown1 = 0;
    mark(3, Option::line);
    mark(4, Option::bars);
    mark(4, Option::cloud);
    mark(4, Option::trend);
    mark(5, Option::mean);
    stand_ins::expectMessage("Fehler"_l1, "Das Menü 'Unbekannt1' enthält keine Daten!"_l1);
    stand_ins::expectMessage("Fehler"_l1, "Das Menü 'Unbekannt1' enthält keine Daten!"_l1);
    stand_ins::expectMessage("Fehler"_l1, "Das Menü 'Unbekannt1' enthält keine Daten!"_l1);
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));
    EXPECT_FALSE(services::itemMark(104));
    EXPECT_FALSE(services::itemMark(504));
    EXPECT_FALSE(services::itemMark(704));
    EXPECT_TRUE(services::itemMark(203));
    EXPECT_TRUE(services::itemMark(605));
    // The items after it are drawn; each item without data has moved their labels by a "_".
    const auto puls = std::find_if(world.texts.begin(), world.texts.end(),
                                   [](const TextCall& call) { return call.text == "Puls"; });
    ASSERT_NE(puls, world.texts.end());
    EXPECT_EQ(puls->x, 63 + 7 + 28 + 3 * 7 + 7);

    world.texts.clear();
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));  // no message again
}

TEST_F(ChartDrawing, TheMarkOfAnItemWithoutDataIsRemovedAfterItsMessage) {
    loadThreeTrainings();
    mark(4, Option::line);
    stand_ins::expectMessage("Fehler"_l1, "Das Menü 'Unbekannt1' enthält keine Daten!"_l1);
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));
    EXPECT_FALSE(services::itemMark(204));
    EXPECT_TRUE(world.texts.empty());
    EXPECT_EQ(pixel(62, 20), blackPixel);
}

TEST_F(ChartDrawing, TrainingsThatAreNotSelectedStillCountForTheFrame) {
    loadThreeTrainings();
    for (auto& record : device::state.dictionary)
        record.selected = 0;
    mark(3, Option::line);
    stand_ins::expectMessage("Fehler"_l1, "Das Menü 'Watt' enthält keine Daten!"_l1);
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));
    EXPECT_EQ(pixel(62, 20), blackPixel);
    EXPECT_TRUE(world.texts.empty());
}

TEST_F(ChartDrawing, TheOpenedTrainingIsTheFirstSelectedOne) {
    loadThreeTrainings();
    device::state.samples = chart_tests::samplesOfWatt({100, 200});
    device::state.dictionary[0].selected = 0;
    device::state.dictionary[1].description = "Intervalle"_l1;
    device::state.dictionary[1].endDate = 1362592000 + 45;
    mark(59, Option::line);
    mark(59, Option::circles);
    EXPECT_TRUE(charts::drawChart(ChartKind::training, surface));
    const std::vector<TextCall> expected = {
        {70, 6, "Watt", rgb(1, 2, 3)},  {42, 166, "100", rgb(1, 2, 3)},
        {42, 22, "200", rgb(1, 2, 3)},  {63, 180, "06.03.2013 17:46:40", 0},
        {215, 180, "Intervalle", 0},    {388, 180, "0:00:45", 0},
        {105, 6, "Watt", rgb(1, 2, 3)}, {42, 150, "100", rgb(1, 2, 3)},
        {42, 37, "200", rgb(1, 2, 3)}};
    EXPECT_EQ(world.texts, expected);
}

TEST_F(ChartDrawing, WithoutASelectedTrainingTheLineBelowThePlotIsMissing) {
    device::state.samples = chart_tests::samplesOfWatt({100, 200});
    mark(59, Option::line);
    EXPECT_TRUE(charts::drawChart(ChartKind::training, surface));
    EXPECT_EQ(world.texts.size(), 3U);
}

TEST_F(ChartDrawing, MarksOfTheOtherChartAreNotDrawn) {
    loadThreeTrainings();
    device::state.samples = chart_tests::samplesOfWatt({100, 200});
    mark(59, Option::line);
    mark(54, Option::line);  // without data
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));
    EXPECT_TRUE(world.texts.empty());
    EXPECT_TRUE(services::itemMark(254));
}

TEST_F(ChartDrawing, LimitsOfTheValueAreApplied) {
    loadThreeTrainings();
    charts::state.limits[3] = {120, 160};
    charts::state.limits[5] = {1, 2};
    mark(3, Option::line);
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));
    ASSERT_GE(world.texts.size(), 3U);
    EXPECT_EQ(world.texts[1].text, "120");
    EXPECT_EQ(world.texts[2].text, "160");
}

TEST_F(ChartDrawing, AMeanOfNothingDrawsNeitherMeanNorTrend) {
    loadThreeTrainings();
    charts::state.limits[3] = {500, 0};  // above the maximum of the data
    mark(3, Option::mean);
    mark(3, Option::trend);
    EXPECT_TRUE(charts::drawChart(ChartKind::overview, surface));
    ASSERT_FALSE(world.texts.empty());
    EXPECT_EQ(world.texts[0].text, "Watt");
    for (const TextCall& call : world.texts)
        EXPECT_NE(call.text, "NaN");
}

TEST_F(ChartDrawing, SeriesOfUnknownNumbersHaveNoData) {
    loadThreeTrainings();
    for (const int number : {-1, 20, 72}) {
        charts::ValueSeries series = chart_tests::seriesOf({1}, 1, 1);
        charts::computeSeries(ChartKind::overview, number, series);
        EXPECT_FALSE(series.hasData);
        EXPECT_TRUE(series.values.empty());
    }
}

TEST_F(ChartDrawing, LimitsOfATrainingsValueAreApplied) {
    loadThreeTrainings();
    device::state.samples = chart_tests::samplesOfWatt({100, 150, 200});
    charts::state.limits[59] = {120, 160};
    // Of the same place in the overview, and of a neighbour.
    charts::state.limits[9] = {1, 2};
    charts::state.limits[58] = {3, 4};
    mark(59, Option::line);
    EXPECT_TRUE(charts::drawChart(ChartKind::training, surface));
    ASSERT_GE(world.texts.size(), 3U);
    EXPECT_EQ(world.texts[1].text, "120");
    EXPECT_EQ(world.texts[2].text, "160");
}

}  // namespace
