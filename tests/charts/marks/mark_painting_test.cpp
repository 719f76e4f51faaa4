// Small pictures of each kind of mark, pixel by pixel.
#include "charts/marks/mark_painting.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/charts/chart_test.h"

namespace {

using services::rgb;
using services::Surface;

Surface blankSurface(int width, int height) {
    Surface surface;
    services::resizeSurface(surface, width, height, 1.0);
    return surface;
}

// One letter a pixel: "." white, the others as the test names them, "?" for any other colour.
std::vector<std::string> picture(const Surface& surface,
                                 const std::map<std::uint32_t, char>& letters) {
    std::vector<std::string> rows;
    for (int y = 0; y < surface.deviceHeight; ++y) {
        std::string row;
        for (int x = 0; x < surface.deviceWidth; ++x) {
            const std::uint32_t pixel =
                surface.pixels[static_cast<std::size_t>(y) *
                                   static_cast<std::size_t>(surface.deviceWidth) +
                               static_cast<std::size_t>(x)];
            const auto found = letters.find(pixel);
            row += pixel == 0xFFFFFFFFU ? '.' : found == letters.end() ? '?' : found->second;
        }
        rows.push_back(row);
    }
    return rows;
}

using Rows = std::vector<std::string>;

TEST(MarkPainting, BarsAreHalfTransparent) {
    Surface surface = blankSurface(8, 4);
    charts::BarMarks red;
    red.width = 3;
    red.bars = {{1, 1, 3}};
    charts::paintBars(surface, red, rgb(255, 0, 0));
    charts::BarMarks blue;
    blue.width = 3;
    blue.bars = {{3, 2, 2}, {6, 3, 1}};
    charts::paintBars(surface, blue, rgb(0, 0, 255));
    EXPECT_EQ(picture(surface, {{0xFFFF7F7FU, 'r'}, {0xFF7F7FFFU, 'b'}, {0xFF7F3FBFU, 'm'}}),
              (Rows{"........", ".rrr....", ".rrmbb..", ".rrmbbbb"}));
}

TEST(MarkPainting, BarsWithoutHeightShowNothing) {
    Surface surface = blankSurface(4, 4);
    charts::BarMarks marks;
    marks.width = 2;
    marks.bars = {{0, 2, 0}, {1, 2, -2}};
    charts::paintBars(surface, marks, rgb(255, 0, 0));
    EXPECT_EQ(picture(surface, {}), (Rows{"....", "....", "....", "...."}));
}

TEST(MarkPainting, LinesAreTwoPixelsWide) {
    Surface surface = blankSurface(8, 3);
    const std::vector<charts::LineMark> marks = {{1, 2, 3, 0, 2, 4}, {3, 0, 5, 0, 4, 6}};
    charts::paintLine(surface, marks, rgb(1, 2, 3));
    EXPECT_EQ(picture(surface, {{0xFF010203U, 'l'}}), (Rows{"...llll.", "..ll....", ".ll....."}));
}

TEST(MarkPainting, CirclesAndSquaresAreFilled) {
    Surface surface = blankSurface(12, 5);
    charts::PointMarks circles;
    circles.size = 2;
    circles.points = {{2, 2}};
    charts::paintCircles(surface, circles, rgb(1, 2, 3));
    charts::PointMarks squares;
    squares.size = 3;
    squares.points = {{6, 1}, {8, 2}};
    charts::paintSquares(surface, squares, rgb(4, 5, 6));
    EXPECT_EQ(
        picture(surface, {{0xFF010203U, 'c'}, {0xFF040506U, 's'}}),
        (Rows{".ccc........", "ccccc.sss...", "ccccc.sssss.", "ccccc.sssss.", ".ccc....sss."}));
}

TEST(MarkPainting, TheMeanCrossesThePlotAndTheTrendIsRed) {
    Surface surface = blankSurface(10, 4);
    const charts::ChartFrame frame = chart_tests::frameOf(2, 0, 7, 4);
    charts::paintMean(surface, frame, {1, 1.0}, rgb(1, 2, 3));
    charts::paintTrend(surface, {50.0, 2, 3, 4, 2, 2.0});
    EXPECT_EQ(picture(surface, {{0xFF010203U, 'm'}, {0xFFFF0000U, 't'}}),
              (Rows{"..........", "..mmmmm...", "....t.....", "..tt......"}));
}

TEST(MarkPainting, GridRulesAreGreyAndTheBorderBlack) {
    Surface surface = blankSurface(6, 4);
    const std::vector<charts::GridRule> rules = {
        {.vertical = true, .x = 5, .y = 0, .length = 4, .border = true},
        {.vertical = true, .x = 2, .y = 1, .length = 2, .border = false},
        {.vertical = false, .x = 1, .y = 3, .length = 3, .border = false}};
    charts::paintGrid(surface, rules);
    EXPECT_EQ(picture(surface, {{0xFFC8C8C8U, 'g'}, {0xFF000000U, 'b'}}),
              (Rows{".....b", "..g..b", "..g..b", ".ggg.b"}));
}

TEST(MarkPainting, TheFrameStandsAroundThePlot) {
    Surface surface = blankSurface(9, 8);
    charts::paintFrame(surface, chart_tests::frameOf(2, 3, 5, 3));
    EXPECT_EQ(picture(surface, {{0xFF000000U, 'f'}}),
              (Rows{".........", ".fffffff.", ".f.....f.", ".f.....f.", ".f.....f.", ".f.....f.",
                    ".fffffff.", "........."}));
}

TEST(MarkPainting, NegativePlotsPaintNoFrameAndNoMean) {
    Surface surface = blankSurface(9, 3);
    const charts::ChartFrame frame = chart_tests::frameOf(5, 1, -4, 1);
    charts::paintFrame(surface, frame);
    charts::paintMean(surface, frame, {1, 1.0}, rgb(1, 2, 3));
    EXPECT_EQ(picture(surface, {}), (Rows{".........", ".........", "........."}));
}

}  // namespace
