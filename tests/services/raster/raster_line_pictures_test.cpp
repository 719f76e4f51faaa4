// Lines and circles, drawn here.
#include <gtest/gtest.h>

#include "tests/services/raster/raster_pictures.h"

namespace {

using namespace raster_tests;
using services::black;

const Picture lines[] = {
    {"OnePoint", 3, 3, 1, {Kind::line, 1, 1, 1, 1, black}, R"(
...
.#.
...
)"},
    {"OnePointOutside", 3, 1, 1, {Kind::line, 3, 0, 3, 0, black}, "\n...\n"},
    {"BothEndsIncluded", 5, 1, 1, {Kind::line, 1, 0, 3, 0, black}, "\n.###.\n"},
    {"Vertical", 1, 5, 1, {Kind::line, 0, 3, 0, 1, black}, "\n.\n#\n#\n#\n.\n"},
    {"Diagonal", 3, 3, 1, {Kind::line, 0, 0, 2, 2, black}, R"(
#..
.#.
..#
)"},
    {"OtherDiagonal", 3, 3, 1, {Kind::line, 0, 2, 2, 0, black}, R"(
..#
.#.
#..
)"},
    {"HalvesGoDownward", 5, 3, 1, {Kind::line, 0, 0, 4, 2, black}, R"(
#....
.##..
...##
)"},
    {"HalvesGoDownwardFromTheOtherEnd", 5, 3, 1, {Kind::line, 4, 2, 0, 0, black}, R"(
#....
.##..
...##
)"},
    {"HalvesGoDownwardOnTheWayUp", 5, 3, 1, {Kind::line, 0, 2, 4, 0, black}, R"(
....#
..##.
##...
)"},
    {"HalvesGoDownwardOnTheWayUpFromTheOtherEnd", 5, 3, 1, {Kind::line, 4, 0, 0, 2, black}, R"(
....#
..##.
##...
)"},
    {"HalvesGoRightward", 3, 5, 1, {Kind::line, 0, 0, 2, 4, black}, R"(
#..
.#.
.#.
..#
..#
)"},
    {"HalvesGoRightwardOnTheWayLeft", 3, 5, 1, {Kind::line, 2, 0, 0, 4, black}, R"(
..#
..#
.#.
.#.
#..
)"},
    {"ThirdsGoToTheNearest", 4, 2, 1, {Kind::line, 0, 0, 3, 1, black}, R"(
##..
..##
)"},
    {"CutOnBothSides", 5, 3, 1, {Kind::line, -4, -2, 8, 4, black}, R"(
#....
.##..
...##
)"},
    {"FromExtremeToExtreme",
     3,
     3,
     1,
     {Kind::line, smallest + 1, smallest + 1, largest, largest, black},
     R"(
#..
.#.
..#
)"},
    {"FromExtremeToExtremeDownward",
     3,
     3,
     1,
     {Kind::line, smallest + 3, largest, largest, smallest + 3, black},
     R"(
..#
.#.
#..
)"},
    // Squares of two at (0, 0), (1, 1), (2, 1) and (3, 2).
    {"ThickAtOneAndAHalf", 4, 3, 1.5, {Kind::line, 0, 0, 2, 1, black}, R"(
##....
####..
.####.
...##.
......
)"},
    {"ThickAndSteepAtOneAndAHalf", 3, 4, 1.5, {Kind::line, 1, 2, 0, 0, black}, R"(
##...
###..
.##..
.###.
..##.
.....
)"},
    {"ThickAtAlmostOne", 3, 2, 1.1, {Kind::line, 0, 0, 1, 0, black}, R"(
###
###
)"},
    {"ThickAndCutAtTheTopLeft", 3, 3, 3, {Kind::line, -1, -1, -1, -1, black}, R"(
.........
.........
.........
.........
.........
.........
.........
.........
.........
)"},
    {"OnePointDoubled", 3, 2, 2, {Kind::line, 1, 0, 1, 0, black}, R"(
..##..
..##..
......
......
)"},
};
INSTANTIATE_TEST_SUITE_P(Line, RasterPicture, testing::ValuesIn(lines), nameOf);

const Picture circles[] = {
    {"OfNegativeRadius", 3, 1, 1, {Kind::circle, 1, 0, -1, 0, black}, "\n...\n"},
    {"OfSmallestRadius", 3, 1, 1, {Kind::circle, 1, 0, smallest, 0, black}, "\n...\n"},
    {"OfRadiusNought", 3, 3, 1, {Kind::circle, 1, 1, 0, 0, black}, R"(
...
.#.
...
)"},
    {"OfRadiusOne", 5, 5, 1, {Kind::circle, 2, 2, 1, 0, black}, R"(
.....
.###.
.###.
.###.
.....
)"},
    {"OfRadiusTwo", 7, 7, 1, {Kind::circle, 3, 3, 2, 0, black}, R"(
.......
..###..
.#####.
.#####.
.#####.
..###..
.......
)"},
    {"OfRadiusFour", 9, 9, 1, {Kind::circle, 4, 4, 4, 0, black}, R"(
..#####..
.#######.
#########
#########
#########
#########
#########
.#######.
..#####..
)"},
    {"CutAtTheTopLeft", 4, 4, 1, {Kind::circle, 0, 0, 2, 0, black}, R"(
###.
###.
##..
....
)"},
    {"CutAtTheBottomRight", 3, 3, 1, {Kind::circle, 3, 3, 2, 0, black}, R"(
...
..#
.##
)"},
    {"WithTheMiddleOutside", 2, 5, 1, {Kind::circle, -2, 2, 2, 0, black}, R"(
..
#.
#.
#.
..
)"},
    {"OfRadiusTwoAtOneAndAHalf", 6, 6, 1.5, {Kind::circle, 2, 2, 2, 0, black}, R"(
...##....
.######..
.######..
########.
########.
.######..
.######..
...##....
.........
)"},
    // The middle of logical pixel 1 stands at 4.5 half pixels: rounded to 5.
    {"OfRadiusNoughtAtOneAndAHalf", 3, 3, 1.5, {Kind::circle, 1, 1, 0, 0, black}, R"(
.....
.....
..#..
.....
.....
)"},
    // The middle stands at 4 half pixels, between four pixels that are all further than 1.25 away.
    {"OfRadiusNoughtBetweenThePixels", 3, 3, 1.25, {Kind::circle, 1, 1, 0, 0, black}, R"(
....
....
....
....
)"},
    {"OfLargestRadiusAroundTheSurface", 3, 2, 3, {Kind::circle, 0, 0, largest, 0, black}, R"(
#########
#########
#########
#########
#########
#########
)"},
    {"OfLargestRadiusEndingInTheSurface",
     4,
     2,
     1,
     {Kind::circle, smallest + 2, 0, largest, 0, black},
     "\n##..\n##..\n"},
    {"OfLargestRadiusAtAnotherCorner",
     2,
     1,
     1,
     {Kind::circle, largest, largest, 9, 0, black},
     "\n..\n"},
};
INSTANTIATE_TEST_SUITE_P(Circle, RasterPicture, testing::ValuesIn(circles), nameOf);

}  // namespace
