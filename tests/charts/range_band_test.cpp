#include "charts/range_band.h"

#include <cmath>

#include "tests/charts/chart_test.h"

namespace {

using chart_tests::frameOf;
using chart_tests::mark;
using charts::BandAction;
using charts::BandBox;
using charts::BandStep;
using charts::ChartFrame;
using charts::ChartKind;
using charts::Limits;
using charts::Option;

TEST(RangeBand, MapsItsEdgesToValuesInSinglePrecision) {
    struct Row {
        const char* name;
        float minimum, maximum;
        int top, height, from, to;
        float lower, upper;
    };
    // Those marked * come out differently in double precision.
    for (const Row& row : {
             Row{"whole plot", 101, 103, 22, 518, 22, 540, 101, 103},
             Row{"lower half", 101, 103, 22, 518, 281, 540, 101, 102},
             Row{"drawn upward", 101, 103, 22, 518, 540, 281, 101, 102},
             Row{"one pixel", 101, 103, 22, 518, 22, 23, 102.99614F, 103},
             Row{"smallest window", 60, 80.5F, 22, 214, 50, 200, 63.448597F, 77.8177567F},
             Row{"high window", 0.125F, 7.0833333F, 22, 1038, 100, 101, 6.55374956F, 6.56045294F},
             Row{"three pixels *", 1, 3, 20, 3, 21, 22, 1.66666675F, 2.33333325F},
             Row{"negative *", -5, 100, 22, 518, 100, 200, 63.9189148F, 84.1891861F},
             Row{"large *", 1e8F, 1.5e9F, 22, 518, 100, 333, 659459456.0F, 1.28918912e9F},
         }) {
        SCOPED_TRACE(row.name);
        const Limits limits = charts::limitsOfBand(frameOf(63, row.top, 700, row.height),
                                                   row.minimum, row.maximum, row.from, row.to);
        EXPECT_EQ(row.lower, limits.lower);
        EXPECT_EQ(row.upper, limits.upper);
    }
}

TEST(RangeBand, OfAPlotWithoutHeightHasNoFiniteLimits) {
    const Limits flat = charts::limitsOfBand(frameOf(63, 22, 700, 0), 1, 3, 10, 20);
    EXPECT_FALSE(std::isfinite(flat.lower));
    EXPECT_FALSE(std::isfinite(flat.upper));
    const Limits infinite = charts::limitsOfBand(frameOf(63, 22, 700, 100), 1, INFINITY, 22, 122);
    EXPECT_TRUE(std::isnan(infinite.lower));
}

TEST(RangeBand, PositionsAreClampedIntoThePlot) {
    const ChartFrame frame = frameOf(63, 22, 700, 518);
    struct Row {
        int position, clamped;
    };
    for (const Row& row : {Row{1, 22}, Row{21, 22}, Row{22, 22}, Row{23, 23}, Row{540, 540},
                           Row{541, 540}, Row{2147483647, 540}, Row{0, 0}}) {
        EXPECT_EQ(row.clamped, charts::clampToPlot(frame, row.position)) << row.position;
    }
}

TEST(RangeBand, IsAsWideAsThePlotOrAsTheCloudsSquareIsHigh) {
    const ChartFrame frame = frameOf(63, 22, 700, 518);
    for (const int item : {103, 203, 303, 403}) {
        EXPECT_EQ((BandBox{62, 100, 702, 150}), charts::bandBox(frame, item, 100, 250)) << item;
    }
    EXPECT_EQ((BandBox{62, 100, 521, 150}), charts::bandBox(frame, 503, 100, 250));
    EXPECT_EQ((BandBox{62, 100, 521, 150}), charts::bandBox(frame, 571, 100, 250));
    // Not clamped to the square where the plot is narrower than high.
    EXPECT_EQ((BandBox{62, 100, 521, 150}),
              charts::bandBox(frameOf(63, 22, 200, 518), 503, 100, 250));
}

TEST(RangeBand, WithThePointerAboveItsStartIsTheSameRectangleTurnedOver) {
    const ChartFrame frame = frameOf(63, 22, 700, 518);
    EXPECT_EQ((BandBox{62, 100, 702, 150}), charts::bandBox(frame, 203, 250, 100));
    EXPECT_EQ((BandBox{62, 100, 702, 0}), charts::bandBox(frame, 203, 100, 100));
}

class BandItem : public chart_tests::ChartTest {
  protected:
    static int itemAfter(int lastItem) {
        return charts::bandItem(lastItem, charts::readMarkedOptions());
    }
};

TEST_F(BandItem, IsTheLastChosenStyleWhileThatIsMarked) {
    mark(3, Option::line);
    mark(7, Option::bars);
    EXPECT_EQ(203, itemAfter(203));
    EXPECT_EQ(107, itemAfter(107));
    mark(3, Option::cloud);
    EXPECT_EQ(503, itemAfter(503));
    mark(59, Option::squares);
    EXPECT_EQ(459, itemAfter(459));
}

TEST_F(BandItem, IsElseTheHighestMarkedValueWithItsLowestStyle) {
    mark(3, Option::bars);
    mark(7, Option::bars);
    mark(7, Option::cloud);
    mark(7, Option::squares);
    mark(8, Option::mean);   // no style
    mark(9, Option::trend);  // no style
    mark(3, Option::mean);
    for (const int last : {603, 608, 703, 0, 1, 20, 99, -3, 103 + 1, 700, 1000, 120, 149, 599, 803,
                           2147483647, -2147483647}) {
        EXPECT_EQ(107, itemAfter(last)) << last;
    }
}

TEST_F(BandItem, MayBelongToTheOtherChart) {
    mark(3, Option::bars);
    mark(71, Option::circles);
    EXPECT_EQ(371, itemAfter(0));
    EXPECT_EQ(103, itemAfter(103));
}

TEST_F(BandItem, IsNoneWithoutAMarkedStyle) {
    EXPECT_EQ(0, itemAfter(0));
    EXPECT_EQ(0, itemAfter(203));
    mark(3, Option::mean);
    EXPECT_EQ(0, itemAfter(603));
    EXPECT_EQ(0, itemAfter(203));
}

class BandSteps : public chart_tests::ChartTest {
  protected:
    void SetUp() override {
        ChartTest::SetUp();
        device::state.dictionary = chart_tests::recordsOfWatt({60, 70, 80});
        device::state.samples = chart_tests::samplesOfWatt({90, 120, 150});
        mark(3, Option::line);
    }

    const ChartFrame frame = frameOf(63, 22, 700, 200);
    ChartKind chart = ChartKind::overview;
    int lastItem = 203;

    BandStep follow(int position) {
        return charts::stepBand(position, lastItem, true, chart, frame);
    }
    BandStep finish() {
        return charts::stepBand(charts::finishBand, lastItem, false, chart, frame);
    }
    BandStep reset() { return charts::stepBand(charts::resetBand, lastItem, false, chart, frame); }

    static void expectLimits(int value, float lower, float upper) {
        const Limits& limits = charts::state.limits[static_cast<std::size_t>(value)];
        EXPECT_EQ(lower, limits.lower) << value;
        EXPECT_EQ(upper, limits.upper) << value;
    }
};

TEST_F(BandSteps, TheFirstTickOnlyBeginsTheBand) {
    EXPECT_EQ(BandAction::nothing, follow(100).action);
    EXPECT_EQ(100, charts::state.bandStart);
    EXPECT_EQ(100, charts::state.bandEnd);
}

TEST_F(BandSteps, TheBandFollowsThePointerWhenThatMoved) {
    follow(100);
    BandStep step = follow(150);
    EXPECT_EQ(BandAction::showBand, step.action);
    EXPECT_EQ((BandBox{62, 100, 702, 50}), step.box);
    EXPECT_EQ(BandAction::nothing, follow(150).action);
    step = follow(40);
    EXPECT_EQ(BandAction::showBand, step.action);
    EXPECT_EQ((BandBox{62, 40, 702, 60}), step.box);
    EXPECT_EQ(100, charts::state.bandStart);
    EXPECT_EQ(40, charts::state.bandEnd);
    step = follow(5000);
    EXPECT_EQ((BandBox{62, 100, 702, 122}), step.box);
}

TEST_F(BandSteps, ACloudsBandIsAsWideAsItsSquare) {
    mark(3, Option::cloud);
    lastItem = 503;
    follow(100);
    EXPECT_EQ((BandBox{62, 100, 203, 50}), follow(150).box);
}

TEST_F(BandSteps, FromTheBottomToTheTopTheLimitsAreTheDatasOwn) {
    follow(4000);
    follow(1);
    EXPECT_EQ(BandAction::redraw, finish().action);
    expectLimits(3, 60, 80);
    EXPECT_EQ(0, charts::state.bandStart);
}

TEST_F(BandSteps, TheLimitsAreOnTheScaleOfTheChartAsLastDrawn) {
    follow(122);
    follow(222);
    finish();
    expectLimits(3, 60, 70);
    // The lower half again, of the chart that now shows 60 to 70.
    follow(222);
    follow(122);
    finish();
    expectLimits(3, 60, 65);
}

TEST_F(BandSteps, InTheTrainingChartTheSamplesCount) {
    mark(59, Option::bars);
    lastItem = 159;
    chart = ChartKind::training;
    follow(122);
    follow(22);
    finish();
    expectLimits(59, 120, 150);
    expectLimits(3, 0, 0);
}

TEST_F(BandSteps, ASecondClickAtTheSameHeightOnlyClearsTheBand) {
    charts::state.limits[3] = {.lower = 61, .upper = 79};
    follow(100);
    follow(150);
    follow(100);
    EXPECT_EQ(BandAction::redraw, finish().action);
    expectLimits(3, 61, 79);
    EXPECT_EQ(0, charts::state.bandStart);
}

TEST_F(BandSteps, OnlyTheSecondClickEndsTheBand) {
    follow(100);
    follow(150);
    EXPECT_EQ(BandAction::nothing, charts::stepBand(150, lastItem, false, chart, frame).action);
    expectLimits(3, 0, 0);
    EXPECT_EQ(100, charts::state.bandStart);
}

TEST_F(BandSteps, TwoClicksWithoutATickBetweenSetNoLimits) {
    EXPECT_EQ(BandAction::redraw, finish().action);
    expectLimits(3, 0, 0);
    EXPECT_EQ(0, charts::state.bandStart);
}

TEST_F(BandSteps, AResetRemovesTheLimitsOfItsValueOnly) {
    charts::state.limits[3] = {.lower = 61, .upper = 79};
    charts::state.limits[7] = {.lower = 5, .upper = 6};
    charts::state.limits[59] = {.lower = 100, .upper = 0};
    follow(100);
    follow(150);
    EXPECT_EQ(BandAction::redraw, reset().action);
    expectLimits(3, 0, 0);
    expectLimits(7, 5, 6);
    expectLimits(59, 100, 0);
    EXPECT_EQ(0, charts::state.bandStart);
    EXPECT_EQ(0, charts::state.bandEnd);
}

TEST_F(BandSteps, AfterAMeanLineTheyActOnTheHighestMarkedValue) {
    for (device::DictionaryRecord& record : device::state.dictionary)
        record.speed = record.watt / 2;
    mark(3, Option::bars);
    mark(7, Option::bars);
    mark(3, Option::mean);
    lastItem = 603;
    follow(22);
    follow(122);
    finish();
    expectLimits(3, 0, 0);
    expectLimits(7, 35, 40);
}

TEST_F(BandSteps, AValueOfTheOtherChartKeepsItsLimits) {
    mark(59, Option::line);
    charts::state.limits[59] = {.lower = 100, .upper = 140};
    lastItem = 0;  // so that the search finds value 59 in the overview
    follow(100);
    EXPECT_EQ(BandAction::showBand, follow(150).action);
    finish();
    expectLimits(59, 100, 140);
    expectLimits(3, 0, 0);
    EXPECT_EQ(0, charts::state.bandStart);
    EXPECT_EQ(BandAction::redraw, reset().action);
    expectLimits(59, 100, 140);
    expectLimits(3, 0, 0);
}

TEST_F(BandSteps, WithoutAMarkedStyleNothingHappens) {
    services::setItemMark(203, false);
    charts::state.limits[3] = {.lower = 61, .upper = 79};
    EXPECT_EQ(BandAction::nothing, follow(100).action);
    EXPECT_EQ(BandAction::nothing, finish().action);
    EXPECT_EQ(BandAction::nothing, reset().action);
    EXPECT_EQ(0, charts::state.bandStart);
    expectLimits(3, 61, 79);
}

TEST_F(BandSteps, WithoutDataTheyEndWithoutLimits) {
    device::state.dictionary.clear();
    follow(100);
    follow(150);
    finish();
    expectLimits(3, 0, 0);
}

TEST_F(BandSteps, InAnImageWithoutAPlotTheyAreHarmless) {
    for (const int height : {0, 1, 20, 41, 42}) {
        const ChartFrame tiny = charts::chartFrame(10, height);
        for (const int position : {1, 500, 3, 2147483647}) {
            charts::stepBand(position, lastItem, true, chart, tiny);
            charts::stepBand(charts::finishBand, lastItem, false, chart, tiny);
            charts::stepBand(charts::resetBand, lastItem, false, chart, tiny);
        }
        expectLimits(3, 0, 0);
    }
}

}  // namespace
