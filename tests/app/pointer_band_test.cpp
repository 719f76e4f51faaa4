#include "app/pointer_band.h"

#include "app/event_loop.h"
#include "app/main_window.h"
#include "app/startup.h"
#include "charts/values/chart_options.h"
#include "tests/app/app_test.h"
#include "tests/builders/card_builder.h"

namespace {

using services::Event;
using services::EventKind;
using stand_ins::world;

constexpr int chartTop = 22;      // one and a half heights of the test font
constexpr int chartBottom = 540;  // 20 pixels above the end of a picture of 560

// The program on a card of three trainings of 101, 102 and 103 W, its line marked in the menu.
class PointerBand : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        builders::writeCard(directory, 3);
        ASSERT_TRUE(app::startUp({}));
        choose(203);
    }

    static void choose(int item) { app::dispatchEvent({.kind = EventKind::menu, .item = item}); }
    static void click(int button) {
        app::dispatchEvent(
            {.kind = EventKind::click, .control = app::chartImageControl, .data = button});
    }
    static void clickLeft() { click(0); }
    static void clickRight() { click(1); }
    static void tickAt(int y) {
        world.pointerY = y;
        app::dispatchEvent({.kind = EventKind::timer, .item = 1});
    }

    static stand_ins::WindowRecord& window() { return world.windows.at(services::mainWindow); }
    static const services::Surface& picture() { return window().images.at(app::chartImageControl); }

    static bool timerRuns() { return window().timers.contains(1); }

    static void expectIdle() {
        EXPECT_FALSE(app::state.tracking);
        EXPECT_FALSE(timerRuns());
        EXPECT_EQ(0, charts::state.bandStart);
    }
    static void expectLimits(int value, float lower, float upper) {
        const charts::Limits& limits = charts::state.limits[static_cast<std::size_t>(value)];
        EXPECT_EQ(lower, limits.lower) << value;
        EXPECT_EQ(upper, limits.upper) << value;
    }
    static void setLimits(int value, float lower, float upper) {
        charts::state.limits[static_cast<std::size_t>(value)] = {.lower = lower, .upper = upper};
    }
};

TEST_F(PointerBand, ALeftClickStartsTheTimerAndASecondOneStopsIt) {
    clickLeft();
    EXPECT_TRUE(app::state.tracking);
    EXPECT_EQ((std::map<int, int>{{1, 20}}), window().timers);
    clickLeft();
    expectIdle();
    expectLimits(3, 0, 0);
}

TEST_F(PointerBand, DraggedOverTheLowerHalfItSetsTheLimitsAndDrawsTheChartByThem) {
    const auto before = picture().pixels;
    clickLeft();
    tickAt(chartBottom);
    tickAt(281);
    clickLeft();
    expectIdle();
    expectLimits(3, 101, 102);
    EXPECT_NE(before, picture().pixels);
}

TEST_F(PointerBand, DraggedFromTheBottomToTheTopItSetsTheDatasOwnMinimumAndMaximum) {
    clickLeft();
    tickAt(chartBottom + 19);
    tickAt(-30);
    clickLeft();
    expectLimits(3, 101, 103);
}

TEST_F(PointerBand, IsDrawnOverTheFinishedPictureAndLeavesThatAlone) {
    const services::Surface clean = picture();
    clickLeft();
    tickAt(100);
    EXPECT_EQ(clean.pixels, picture().pixels);
    tickAt(200);
    services::Surface expected = clean;
    services::drawFrame(expected, 62, 100, 900 - 2 * 63 + 2, 100, services::black);
    EXPECT_EQ(expected.pixels, picture().pixels);
    EXPECT_NE(clean.pixels, picture().pixels);
    // The band of a moment ago is gone.
    tickAt(50);
    expected = clean;
    services::drawFrame(expected, 62, 50, 900 - 2 * 63 + 2, 50, services::black);
    EXPECT_EQ(expected.pixels, picture().pixels);
    EXPECT_EQ(clean.pixels, app::state.chartImage.pixels);
    tickAt(100);
    EXPECT_EQ(clean.pixels, picture().pixels);
}

TEST_F(PointerBand, ComputesNothingWhileItFollows) {
    clickLeft();
    tickAt(100);
    const std::size_t textsBefore = world.texts.size();
    for (int y = 101; y < 300; ++y)
        tickAt(y);
    EXPECT_EQ(textsBefore, world.texts.size());
}

TEST_F(PointerBand, APointerThatRestsNeedsNoNewPicture) {
    clickLeft();
    tickAt(100);
    tickAt(200);
    const int before = window().imagesShown;
    tickAt(200);
    EXPECT_EQ(before, window().imagesShown);
}

TEST_F(PointerBand, AtOrAboveTheImagesEdgeIsAtThePlotsTop) {
    for (const int y : {1, 0, -1, -500}) {
        SCOPED_TRACE(y);
        clickLeft();
        tickAt(y);
        EXPECT_EQ(chartTop, charts::state.bandStart);
        EXPECT_TRUE(app::state.tracking);
        clickLeft();
        expectLimits(3, 0, 0);
    }
}

TEST_F(PointerBand, ARightClickRemovesTheLimitsOfThatValueOnlyFromAnyState) {
    setLimits(3, 101, 102);
    setLimits(7, 1, 2);
    clickRight();
    expectLimits(3, 0, 0);
    expectLimits(7, 1, 2);
    expectIdle();

    setLimits(3, 101, 102);
    clickLeft();
    tickAt(100);
    tickAt(200);
    clickRight();
    expectLimits(3, 0, 0);
    expectIdle();
    EXPECT_EQ(app::state.chartImage.pixels, picture().pixels);
}

TEST_F(PointerBand, ActsAfterEveryMenuItemUpToTheTrends) {
    for (const int last : {771, 750, 719, 703, 701, 700, 603, 203, 2, 0, -3, -2147483647}) {
        SCOPED_TRACE(last);
        app::state.lastMenuItem = last;
        clickLeft();
        EXPECT_TRUE(timerRuns());
        clickLeft();
        EXPECT_FALSE(timerRuns());
        setLimits(3, 101, 102);
        clickRight();
        expectLimits(3, 0, 0);
    }
}

TEST_F(PointerBand, DoesNothingAfterAMenuItemBehindTheTrends) {
    setLimits(3, 101, 102);
    for (const int last : {800, 803, 871, 900, 903, 971, 1000, 1001, 2147483647}) {
        SCOPED_TRACE(last);
        app::state.lastMenuItem = last;
        clickLeft();
        expectIdle();
        clickRight();
        expectLimits(3, 101, 102);
    }
}

TEST_F(PointerBand, GoesOnAfterAMenuItemWithoutClicksUntilAnotherLetsThemActAgain) {
    clickLeft();
    tickAt(chartBottom);
    world.colourAnswers.push_back({charts::state.colours[3], charts::state.colours[3]});
    choose(903);
    tickAt(281);
    clickLeft();
    EXPECT_TRUE(app::state.tracking);
    EXPECT_TRUE(timerRuns());
    choose(603);
    clickLeft();
    expectIdle();
    expectLimits(3, 101, 102);
}

TEST_F(PointerBand, AfterAMeanLineItActsOnTheHighestMarkedValue) {
    choose(203);  // off again
    choose(103);
    choose(107);
    choose(603);
    setLimits(3, 101, 102);
    setLimits(7, 20, 30);
    clickRight();
    expectLimits(3, 101, 102);
    expectLimits(7, 0, 0);
}

TEST_F(PointerBand, AfterATrendLineItActsOnTheHighestMarkedValueOfEitherChart) {
    for (const int trend : {703, 711, 750, 771}) {
        SCOPED_TRACE(trend);
        choose(trend);
        app::state.currentChart = charts::ChartKind::overview;
        setLimits(3, 101, 102);
        clickRight();
        expectLimits(3, 0, 0);
        clickLeft();
        tickAt(chartBottom);
        tickAt(281);
        clickLeft();
        expectLimits(3, 101, 102);
    }
}

TEST_F(PointerBand, InTheTrainingChartUsesTheSamples) {
    choose(203);  // off again
    for (const std::int16_t watt : {std::int16_t{90}, std::int16_t{120}, std::int16_t{150}}) {
        device::TrainingSample sample;
        sample.watt = watt;
        device::state.samples.push_back(sample);
    }
    choose(259);
    clickLeft();
    tickAt(chartTop);
    tickAt(281);
    clickLeft();
    expectLimits(59, 120, 150);
}

TEST_F(PointerBand, IgnoresTicksWithoutABandAndOtherTimers) {
    tickAt(100);
    expectIdle();
    clickLeft();
    world.pointerY = 100;
    app::dispatchEvent({.kind = EventKind::timer, .item = 2});
    EXPECT_EQ(0, charts::state.bandStart);
}

// The size of the settings is another one after they were loaded again.
TEST_F(PointerBand, MeasuresByThePictureNotByTheStoredSize) {
    settings::state.windowHeight = 2000;
    clickLeft();
    tickAt(chartBottom);
    tickAt(chartTop);
    clickLeft();
    expectLimits(3, 101, 103);
}

TEST_F(PointerBand, KeepsItsStartWhenTheWindowIsResizedMeanwhile) {
    clickLeft();
    tickAt(chartBottom);
    tickAt(300);
    window().height = 400;
    app::dispatchEvent({.kind = EventKind::resize});
    EXPECT_EQ(chartBottom, charts::state.bandStart);  // now below the plot, which reaches to 380
    tickAt(22);
    clickLeft();
    // Only the pointer is kept inside the plot, so the start gives a limit below the data.
    EXPECT_LT(charts::state.limits[3].lower, 101.0F);
    EXPECT_EQ(103.0F, charts::state.limits[3].upper);
    expectIdle();
}

TEST_F(PointerBand, IgnoresOtherButtons) {
    click(2);
    click(-1);
    expectIdle();
}

TEST_F(PointerBand, WhoseValueLostItsMarkHalfWayDoesNotComeBack) {
    clickLeft();
    tickAt(100);
    choose(20);
    clickLeft();
    EXPECT_FALSE(timerRuns());
    choose(203);
    clickLeft();
    tickAt(300);
    EXPECT_EQ(300, charts::state.bandStart);
}

TEST_F(PointerBand, OverAnEmptyPictureIsHarmless) {
    device::state.dictionary.clear();
    clickLeft();
    tickAt(100);
    tickAt(200);
    clickLeft();
    expectIdle();
    expectLimits(3, 0, 0);
}

TEST_F(PointerBand, EscapeEndsTheProgramInTheMiddleOfABand) {
    clickLeft();
    tickAt(100);
    choose(99);
    EXPECT_TRUE(app::state.quit);
}

}  // namespace
