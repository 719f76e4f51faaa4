#include "files/list_layout.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using files::FontMeasures;
using files::ListWindowSize;
using services::Box;

// Buttons of 126 pixels where there is room, the width of the longest text.
const files::ButtonTexts five = {42, 112, 49, 77, 63};
const files::ButtonTexts three = {49, 49, 63};

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
    const auto layout = files::layOutList(font, {1192, 792}, five);
    EXPECT_EQ(layout.list, (Box{10, 10, 1178, 747}));
}

TEST(ListLayout, ButtonsStandEvenlyAlongTheBottomRow) {
    // y = 792 - 28.5 = 763.5, height = 25.5; the row goes from 7 to 1185.
    const auto layout = files::layOutList(font, {1192, 792}, five);
    ASSERT_EQ(layout.buttons.size(), 5U);
    const int x[] = {7, 270, 533, 796, 1059};
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(layout.buttons[i], (Box{x[i], 764, 126, 26})) << i;
}

TEST(ListLayout, ThreeButtonsReachFromEdgeToEdgeToo) {
    const auto layout = files::layOutList(font, {1000, 500}, three);
    ASSERT_EQ(layout.buttons.size(), 3U);
    EXPECT_EQ(layout.buttons[0].x, 7);
    EXPECT_EQ(layout.buttons[1].x, 440);  // 440.5
    EXPECT_EQ(layout.buttons[2].x + layout.buttons[2].width, 1000 - 7);
}

TEST(ListLayout, ButtonsAreWideEnoughForTheirTextInAnyFont) {
    for (const auto& [text, width] : {std::pair{40, 119}, {105, 119}, {106, 120}, {300, 314}}) {
        const auto layout = files::layOutList(font, {2000, 500}, {20, text, 20});
        for (const Box& button : layout.buttons)
            EXPECT_EQ(button.width, width);
    }
}

TEST(ListLayout, WhereEqualButtonsHaveNoRoomEachIsAsWideAsItsTextNeeds) {
    // 5 * 126 and 6 gaps of 7
    EXPECT_EQ(files::layOutList(font, {672, 500}, five).buttons[0].width, 126);
    const auto layout = files::layOutList(font, {671, 500}, five);
    const int widths[] = {56, 126, 63, 91, 77};
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(layout.buttons[i].width, widths[i]) << i;
    EXPECT_EQ(layout.buttons.front().x, 7);
    EXPECT_EQ(layout.buttons.back().x + layout.buttons.back().width, 671 - 7);
}

TEST(ListLayout, InTheSmallestWindowTheButtonsDoNotOverlap) {
    for (const files::ButtonTexts& texts : {three, five}) {
        const ListWindowSize smallest = files::smallestListWindow(font, texts);
        const auto layout = files::layOutList(font, smallest, texts);
        for (std::size_t i = 1; i < layout.buttons.size(); ++i) {
            EXPECT_EQ(layout.buttons[i].x,
                      layout.buttons[i - 1].x + layout.buttons[i - 1].width + 7);
        }
        EXPECT_EQ(layout.buttons.back().x + layout.buttons.back().width, smallest.width - 7);
        EXPECT_LE(layout.list.y + layout.list.height, layout.buttons[0].y);
        EXPECT_GT(layout.list.height, 0);
    }
}

TEST(ListLayout, WithoutButtonsIsHarmless) {
    EXPECT_TRUE(files::layOutList(font, {100, 100}, {}).buttons.empty());
    EXPECT_EQ(files::smallestListWindow(font, {}).width, 7);
}

TEST(ListLayout, AWindowWithoutRoomHasNoNegativeSizes) {
    const auto layout = files::layOutList(font, {0, 0}, five);
    EXPECT_EQ(layout.list.width, 0);
    EXPECT_EQ(layout.list.height, 0);
}

}  // namespace
