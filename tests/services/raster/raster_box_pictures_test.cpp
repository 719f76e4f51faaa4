// Boxes, frames and rules, drawn here.
#include <gtest/gtest.h>

#include "tests/services/raster/raster_pictures.h"

namespace {

using namespace raster_tests;
using services::black;
using services::Surface;

TEST_P(RasterPicture, IsAsDrawnHere) {
    const Picture& picture = GetParam();
    Surface surface = surfaceOf(picture.width, picture.height, picture.pixelRatio);
    paint(surface, picture.mark);
    EXPECT_EQ(pictureOf(surface), picture.expected + 1);

    Surface slow = surfaceOf(picture.width, picture.height, picture.pixelRatio);
    paintSlowly(slow, picture.mark);
    EXPECT_EQ(pictureOf(slow), picture.expected + 1) << "in the reference painter";
}

const Picture boxes[] = {
    {"Inside", 5, 4, 1, {Kind::box, 1, 1, 3, 2, black}, R"(
.....
.###.
.###.
.....
)"},
    {"CutOnEverySide", 3, 2, 1, {Kind::box, -1, -1, 5, 4, black}, R"(
###
###
)"},
    {"CutAtTheTopLeft", 3, 2, 1, {Kind::box, -1, -1, 3, 2, black}, R"(
##.
...
)"},
    {"WithoutWidth", 3, 1, 1, {Kind::box, 1, 0, 0, 1, black}, "\n...\n"},
    {"WithNegativeWidth", 3, 1, 1, {Kind::box, 2, 0, -2, 1, black}, "\n...\n"},
    {"WithoutHeight", 3, 1, 1, {Kind::box, 1, 0, 1, 0, black}, "\n...\n"},
    {"WithNegativeHeight", 3, 1, 1, {Kind::box, 1, 1, 1, -1, black}, "\n...\n"},
    {"RightOfTheSurface", 3, 1, 1, {Kind::box, 3, 0, 1, 1, black}, "\n...\n"},
    {"LeftOfTheSurface", 3, 1, 1, {Kind::box, -1, 0, 1, 1, black}, "\n...\n"},
    {"FromTheSmallestToTheLargest",
     3,
     1,
     1,
     {Kind::box, smallest, smallest, largest, largest, black},
     "\n...\n"},
    {"AcrossEverythingRightOfOne",
     3,
     1,
     1,
     {Kind::box, 1, smallest + 2, largest, largest, black},
     "\n.##\n"},
    {"EndingBeyondTheLargestNumber",
     3,
     1,
     1,
     {Kind::box, 2, 0, largest, largest, black},
     "\n..#\n"},
    // Edges at 1.25: 0, 1, 3, 4, 5. So the second logical pixel is two wide.
    {"OnePixelThatBecomesTwo", 4, 2, 1.25, {Kind::box, 1, 0, 1, 1, black}, R"(
.##..
.....
.....
)"},
    {"OnePixelThatStaysOne", 4, 2, 1.25, {Kind::box, 2, 0, 1, 1, black}, R"(
...#.
.....
.....
)"},
    // Edges at 1.5: 0, 2, 3, 5, 6.
    {"OneAndAHalf", 4, 3, 1.5, {Kind::box, 1, 1, 2, 1, black}, R"(
......
......
..###.
......
......
)"},
    // Halves go upward below zero, too: -1.5 to -1, so this one ends in front of the surface's
    // edge.
    {"OneAndAHalfBelowZero", 2, 1, 1.5, {Kind::box, -1, 0, 1, 1, black}, "\n...\n...\n"},
    {"Doubled", 3, 2, 2, {Kind::box, 1, 0, 1, 1, black}, R"(
..##..
..##..
......
......
)"},
};
INSTANTIATE_TEST_SUITE_P(Box, RasterPicture, testing::ValuesIn(boxes), nameOf);

const Picture frames[] = {
    {"Inside", 6, 5, 1, {Kind::frame, 1, 1, 4, 3, black}, R"(
......
.####.
.#..#.
.####.
......
)"},
    {"OnePixel", 3, 3, 1, {Kind::frame, 1, 1, 1, 1, black}, R"(
...
.#.
...
)"},
    {"WithoutWidth", 3, 1, 1, {Kind::frame, 1, 0, 0, 1, black}, "\n...\n"},
    {"WithoutHeight", 3, 1, 1, {Kind::frame, 1, 0, 1, 0, black}, "\n...\n"},
    {"WithNegativeSize", 3, 1, 1, {Kind::frame, 1, 0, -1, -1, black}, "\n...\n"},
    {"CutAtTheTopLeft", 3, 3, 1, {Kind::frame, -1, -1, 3, 3, black}, R"(
.#.
##.
...
)"},
    {"AroundTheSurface", 3, 2, 1, {Kind::frame, -1, -1, 5, 4, black}, "\n...\n...\n"},
    {"OnePixelThickAtOneAndAQuarter", 4, 4, 1.25, {Kind::frame, 0, 0, 4, 4, black}, R"(
#####
#...#
#...#
#...#
#####
)"},
    {"TwoPixelsThickAtOneAndAHalf", 4, 4, 1.5, {Kind::frame, 0, 0, 4, 4, black}, R"(
######
######
##..##
##..##
######
######
)"},
    {"WhoseSidesMeet", 4, 2, 1.5, {Kind::frame, 1, 0, 2, 2, black}, R"(
..###.
..###.
..###.
)"},
};
INSTANTIATE_TEST_SUITE_P(Frame, RasterPicture, testing::ValuesIn(frames), nameOf);

const Picture rules[] = {
    {"Horizontal", 5, 3, 1, {Kind::horizontalRule, 1, 1, 3, 0, black}, R"(
.....
.###.
.....
)"},
    {"Vertical", 3, 5, 1, {Kind::verticalRule, 1, 1, 3, 0, black}, R"(
...
.#.
.#.
.#.
...
)"},
    {"HorizontalWithoutLength", 2, 1, 1, {Kind::horizontalRule, 0, 0, 0, 0, black}, "\n..\n"},
    {"VerticalWithoutLength", 2, 1, 1, {Kind::verticalRule, 0, 0, 0, 0, black}, "\n..\n"},
    {"HorizontalOfNegativeLength", 2, 1, 1, {Kind::horizontalRule, 1, 0, -1, 0, black}, "\n..\n"},
    {"VerticalOfNegativeLength", 2, 1, 1, {Kind::verticalRule, 0, 1, -1, 0, black}, "\n..\n"},
    {"HorizontalAcrossEverything",
     2,
     2,
     1,
     {Kind::horizontalRule, -5, 1, largest, 0, black},
     "\n..\n##\n"},
    // A box would be two pixels thick here, and one pixel a logical pixel further on.
    {"HorizontalAtOneAndAQuarter", 4, 3, 1.25, {Kind::horizontalRule, 1, 1, 2, 0, black}, R"(
.....
.###.
.....
.....
)"},
    {"VerticalAtOneAndAQuarter", 3, 4, 1.25, {Kind::verticalRule, 1, 1, 2, 0, black}, R"(
....
.#..
.#..
.#..
....
)"},
    {"HorizontalAtOneAndAHalf", 4, 3, 1.5, {Kind::horizontalRule, 1, 1, 2, 0, black}, R"(
......
......
..###.
..###.
......
)"},
    {"VerticalAtOneAndAHalf", 4, 3, 1.5, {Kind::verticalRule, 1, 1, 1, 0, black}, R"(
......
......
..##..
......
......
)"},
    {"VerticalAtOneAndThreeQuarters", 3, 1, 1.75, {Kind::verticalRule, 1, 0, 1, 0, black}, R"(
..##.
..##.
)"},
};
INSTANTIATE_TEST_SUITE_P(Rule, RasterPicture, testing::ValuesIn(rules), nameOf);

}  // namespace
