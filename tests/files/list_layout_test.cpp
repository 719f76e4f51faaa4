#include "files/list_layout.h"

#include <gtest/gtest.h>

namespace {

using files::FontMeasures;
using files::ListWindowSize;
using services::Box;

constexpr FontMeasures font = {.characterWidth = 7, .textHeight = 15};

TEST(ListLayout, TheWindowIsAsWideAsItsColumnsWhenTheMainWindowIs) {
    // 7 * 131 * 1.3 = 1192.1
    EXPECT_EQ(files::listWindowSize(font, 1192, 800), (ListWindowSize{1192, 792}));
    EXPECT_EQ(files::listWindowSize(font, 2000, 256), (ListWindowSize{1192, 198}));
}

TEST(ListLayout, ANarrowMainWindowGivesANarrowerList) {
    EXPECT_EQ(files::listWindowSize(font, 1191, 800).width, 1089);
    EXPECT_EQ(files::listWindowSize(font, 256, 256).width, 198);
}

TEST(ListLayout, WidthsAreRoundedToTheNearestPixelHalvesToTheEvenOne) {
    // 10 * 131 * 1.3 = 1703, 5 * 131 * 1.3 = 851.5
    EXPECT_EQ(files::listWindowSize({10, 15}, 4000, 800).width, 1703);
    EXPECT_EQ(files::listWindowSize({5, 15}, 4000, 800).width, 852);
}

TEST(ListLayout, TheListFillsTheWindowAboveTheButtons) {
    const auto layout = files::layOutList(font, {1192, 792}, 5, 126);
    EXPECT_EQ(layout.list, (Box{10, 10, 1178, 747}));
}

TEST(ListLayout, ButtonsStandEvenlyAlongTheBottomRow) {
    // y = 792 - 28.5 = 763.5, height = 25.5; the row goes from 7 to 1185.
    const auto layout = files::layOutList(font, {1192, 792}, 5, 126);
    ASSERT_EQ(layout.buttons.size(), 5U);
    const int x[] = {7, 270, 533, 796, 1059};
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(layout.buttons[i], (Box{x[i], 764, 126, 26})) << i;
}

TEST(ListLayout, ThreeButtonsReachFromEdgeToEdgeToo) {
    const auto layout = files::layOutList(font, {1000, 500}, 3, 119);
    ASSERT_EQ(layout.buttons.size(), 3U);
    EXPECT_EQ(layout.buttons[0].x, 7);
    EXPECT_EQ(layout.buttons[1].x, 440);  // 440.5
    EXPECT_EQ(layout.buttons[2].x + layout.buttons[2].width, 1000 - 7);
}

TEST(ListLayout, ButtonsAreWideEnoughForTheirTextInAnyFont) {
    EXPECT_EQ(files::listButtonWidth(font, 40), 119);
    EXPECT_EQ(files::listButtonWidth(font, 105), 119);
    EXPECT_EQ(files::listButtonWidth(font, 106), 120);
    EXPECT_EQ(files::listButtonWidth(font, 300), 314);
}

TEST(ListLayout, InTheSmallestWindowTheButtonsDoNotOverlap) {
    for (const int buttons : {3, 5}) {
        const ListWindowSize smallest = files::smallestListWindow(font, buttons, 126);
        const auto layout = files::layOutList(font, smallest, buttons, 126);
        for (std::size_t i = 1; i < layout.buttons.size(); ++i)
            EXPECT_GT(layout.buttons[i].x, layout.buttons[i - 1].x + 126);
        EXPECT_EQ(layout.buttons.back().x + 126, smallest.width - 7);
        EXPECT_LE(layout.list.y + layout.list.height, layout.buttons[0].y);
        EXPECT_GT(layout.list.height, 0);
    }
}

TEST(ListLayout, AWindowWithoutRoomHasNoNegativeSizes) {
    const auto layout = files::layOutList(font, {0, 0}, 5, 126);
    EXPECT_EQ(layout.list.width, 0);
    EXPECT_EQ(layout.list.height, 0);
}

}  // namespace
