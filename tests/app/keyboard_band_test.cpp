// The band over the chart without a pointer.
#include "app/event_loop.h"
#include "app/main_window.h"
#include "app/startup.h"
#include "charts/chart_state.h"
#include "tests/app/app_test.h"
#include "tests/builders/card_builder.h"

namespace {

using services::EventKind;
using stand_ins::world;

constexpr int chartTop = 22;      // one and a half heights of the test font
constexpr int chartBottom = 540;  // 20 pixels above the end of a picture of 560
constexpr int chartLeft = 63;     // the width of "000:00:00"

// The program on a card of three trainings of 101, 102 and 103 W, its line marked in the menu.
class KeyboardBand : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        builders::writeCard(directory, 3);
        ASSERT_TRUE(app::startUp({}));
        choose(203);
        world.pointerY = 300;  // wherever it is, it must not matter
    }

    static void choose(int item) { app::dispatchEvent({.kind = EventKind::menu, .item = item}); }
    static void press(int key, int modifier = services::noModifier) {
        app::dispatchEvent({.kind = EventKind::key,
                            .control = app::chartImageControl,
                            .item = key,
                            .data = modifier});
    }
    static void pressTimes(int times, int key, int modifier) {
        for (int i = 0; i < times; ++i)
            press(key, modifier);
    }
    static void space() { press(services::spaceKey); }
    static void click(int button) {
        app::dispatchEvent(
            {.kind = EventKind::click, .control = app::chartImageControl, .data = button});
    }
    static void tick() { app::dispatchEvent({.kind = EventKind::timer, .item = 1}); }

    static const services::Surface& picture() {
        return world.windows.at(services::mainWindow).images.at(app::chartImageControl);
    }
    static bool timerRuns() { return world.windows.at(services::mainWindow).timers.contains(1); }

    static void expectLimits(int value, float lower, float upper) {
        const charts::Limits& limits = charts::state.limits[static_cast<std::size_t>(value)];
        EXPECT_EQ(lower, limits.lower) << value;
        EXPECT_EQ(upper, limits.upper) << value;
    }
    // The chart with a rectangle from one height to another; a line when they are one pixel apart.
    static std::vector<std::uint32_t> chartWithBand(int from, int to) {
        services::Surface surface = app::state.chartImage;
        services::drawFrame(surface, chartLeft - 1, from, surface.width - 2 * chartLeft + 2,
                            to - from, services::black);
        return surface.pixels;
    }
};

TEST_F(KeyboardBand, TheChartHasTheKeyboardFromTheStart) {
    EXPECT_EQ(app::chartImageControl, world.windows.at(services::mainWindow).focus);
}

TEST_F(KeyboardBand, FromTheBottomToTheMiddleSetsTheSameLimitsAsThePointer) {
    press(services::upKey, services::shiftModifier);  // the mark appears at the bottom
    space();
    pressTimes(26, services::upKey, services::controlModifier);
    press(services::downKey, services::shiftModifier);
    EXPECT_EQ(chartWithBand(chartBottom - 259, chartBottom), picture().pixels);
    EXPECT_FALSE(timerRuns());
    space();
    expectLimits(3, 101, 102);
    EXPECT_FALSE(app::state.tracking);
    EXPECT_EQ(app::state.chartImage.pixels, picture().pixels);
}

TEST_F(KeyboardBand, TheMarkIsALineOverTheChartThatStaysInThePlot) {
    press(services::upKey, services::shiftModifier);
    EXPECT_EQ(chartWithBand(chartBottom, chartBottom + 1), picture().pixels);
    pressTimes(3, services::downKey, services::controlModifier);
    EXPECT_EQ(chartWithBand(chartBottom, chartBottom + 1), picture().pixels);
    press(services::upKey, services::shiftModifier);
    EXPECT_EQ(chartWithBand(chartBottom - 1, chartBottom), picture().pixels);
    pressTimes(100, services::upKey, services::controlModifier);
    EXPECT_EQ(chartWithBand(chartTop, chartTop + 1), picture().pixels);
    expectLimits(3, 0, 0);
}

TEST_F(KeyboardBand, DownBeginsAtTheTop) {
    press(services::downKey, services::controlModifier);
    EXPECT_EQ(chartWithBand(chartTop, chartTop + 1), picture().pixels);
}

TEST_F(KeyboardBand, ABandOfNoHeightIsStillSeenAsALineAndSetsNothing) {
    press(services::downKey, services::shiftModifier);
    space();
    EXPECT_EQ(chartWithBand(chartTop, chartTop + 1), picture().pixels);
    press(services::downKey, services::shiftModifier);
    press(services::upKey, services::shiftModifier);
    EXPECT_EQ(chartWithBand(chartTop, chartTop + 1), picture().pixels);
    space();
    expectLimits(3, 0, 0);
    EXPECT_EQ(app::state.chartImage.pixels, picture().pixels);
}

TEST_F(KeyboardBand, SpaceWithoutAMarkDoesNothing) {
    space();
    EXPECT_FALSE(app::state.tracking);
    EXPECT_FALSE(timerRuns());
}

TEST_F(KeyboardBand, DeleteRemovesTheLimitsOfThatValueOnlyAndEndsTheBand) {
    charts::state.limits[3] = {.lower = 101, .upper = 102};
    charts::state.limits[7] = {.lower = 1, .upper = 2};
    press(services::upKey, services::shiftModifier);
    space();
    pressTimes(5, services::upKey, services::controlModifier);
    press(services::deleteKey);
    expectLimits(3, 0, 0);
    expectLimits(7, 1, 2);
    EXPECT_FALSE(app::state.tracking);
    EXPECT_EQ(0, app::state.keyPosition);
    EXPECT_EQ(app::state.chartImage.pixels, picture().pixels);
}

TEST_F(KeyboardBand, ThePointerHasNoPartInABandOfTheKeys) {
    press(services::upKey, services::shiftModifier);
    space();
    pressTimes(5, services::upKey, services::controlModifier);
    const auto before = picture().pixels;
    tick();  // one that waited
    EXPECT_EQ(before, picture().pixels);
}

TEST_F(KeyboardBand, AClickEndsWhatTheKeysBeganAndSpaceWhatAClickBegan) {
    press(services::upKey, services::shiftModifier);
    space();
    pressTimes(26, services::upKey, services::controlModifier);
    press(services::downKey, services::shiftModifier);
    click(0);
    expectLimits(3, 101, 102);
    EXPECT_FALSE(app::state.bandByKeys);

    press(services::deleteKey);
    click(0);
    EXPECT_TRUE(timerRuns());
    world.pointerY = chartBottom;
    tick();
    press(services::upKey, services::controlModifier);  // the pointer leads
    EXPECT_EQ(0, app::state.keyPosition);
    world.pointerY = 281;
    tick();
    space();
    EXPECT_FALSE(timerRuns());
    expectLimits(3, 101, 102);
}

TEST_F(KeyboardBand, ActsOnlyWhileClicksWould) {
    charts::state.limits[3] = {.lower = 101, .upper = 102};
    app::state.lastMenuItem = 803;
    press(services::upKey, services::shiftModifier);
    space();
    press(services::deleteKey);
    EXPECT_EQ(0, app::state.keyPosition);
    EXPECT_FALSE(app::state.tracking);
    expectLimits(3, 101, 102);
}

TEST_F(KeyboardBand, WithoutAMarkedStyleShowsNothingAndSetsNothing) {
    choose(203);  // off again
    press(services::upKey, services::shiftModifier);
    EXPECT_EQ(app::state.chartImage.pixels, picture().pixels);
    space();
    pressTimes(5, services::upKey, services::controlModifier);
    EXPECT_EQ(app::state.chartImage.pixels, picture().pixels);
    space();
    EXPECT_FALSE(app::state.tracking);
    expectLimits(3, 0, 0);
}

TEST_F(KeyboardBand, BeginsInsideThePlotOfAWindowThatBecameLower) {
    press(services::upKey, services::shiftModifier);
    world.windows.at(services::mainWindow).height = 300;
    app::dispatchEvent({.kind = EventKind::resize});
    space();
    EXPECT_EQ(280, charts::state.bandStart);
    EXPECT_EQ(280, app::state.keyPosition);
}

TEST_F(KeyboardBand, OtherKeysDoNothing) {
    const int before = world.windows.at(services::mainWindow).imagesShown;
    for (const int key : {0, services::returnKey, 39, -1, 2147483647})
        press(key);
    EXPECT_EQ(before, world.windows.at(services::mainWindow).imagesShown);
}

TEST_F(KeyboardBand, IsToldWithThePicture) {
    const services::Text& description =
        world.windows.at(services::mainWindow).controlDescriptions.at(app::chartImageControl);
    EXPECT_NE(services::Text::npos, description.find("Leertaste")) << description;
}

}  // namespace
