#include "charts/chart_state.h"

#include <gtest/gtest.h>

namespace {

using services::rgb;

TEST(ChartState, BothChartsStartWithTheSameTwentyColours) {
    const services::Colour expected[] = {
        rgb(0, 0, 255),   rgb(32, 32, 170), rgb(0, 190, 0),   rgb(64, 64, 64),  rgb(128, 0, 0),
        rgb(128, 128, 0), rgb(200, 64, 32), rgb(0, 200, 200), rgb(0, 128, 128), rgb(204, 204, 0),
        rgb(0, 0, 255),   rgb(32, 32, 170), rgb(0, 190, 0),   rgb(64, 64, 64),  rgb(128, 0, 0),
        rgb(128, 128, 0), rgb(200, 64, 32), rgb(0, 200, 200), rgb(0, 128, 128), rgb(204, 204, 0)};
    const charts::ColourTable colours = charts::builtInColours();
    for (std::size_t i = 0; i < 20; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(colours[i], expected[i]);
        EXPECT_EQ(colours[50 + i], expected[i]);
    }
}

TEST(ChartState, TheLastTwoTrainingValuesStartWithOddColours) {
    const charts::ColourTable colours = charts::builtInColours();
    EXPECT_EQ(colours[70], 0x00F16EEB);
    EXPECT_EQ(colours[71], 0x0153542F);
}

TEST(ChartState, AllOtherColoursStartAtZero) {
    const charts::ColourTable colours = charts::builtInColours();
    ASSERT_EQ(colours.size(), 73U);
    for (std::size_t i = 20; i < 50; ++i)
        EXPECT_EQ(colours[i], 0) << i;
    EXPECT_EQ(colours[72], 0);
}

TEST(ChartState, ResettingBringsBackColoursAndRemovesLimits) {
    charts::state.colours[3] = 7;
    charts::state.limits[3] = {1, 2};
    charts::state = {};
    EXPECT_EQ(charts::state.colours, charts::builtInColours());
    for (const charts::Limits& limits : charts::state.limits) {
        EXPECT_EQ(limits.lower, 0);
        EXPECT_EQ(limits.upper, 0);
    }
}

}  // namespace
