#include "services/raster/raster.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tests/services/raster/reference_painter.h"

namespace services {
namespace {

constexpr int smallest = std::numeric_limits<int>::min();
constexpr int largest = std::numeric_limits<int>::max();
constexpr double ratios[] = {1, 1.1, 1.25, 1.5, 1.75, 2, 3};

Surface surfaceOf(int width, int height, double pixelRatio = 1) {
    Surface surface;
    resizeSurface(surface, width, height, pixelRatio);
    return surface;
}

// One line per row: '#' black, '.' white, '?' any other colour.
std::string pictureOf(const Surface& surface) {
    std::string picture;
    std::size_t index = 0;
    for (int y = 0; y < surface.deviceHeight; ++y) {
        for (int x = 0; x < surface.deviceWidth; ++x, ++index) {
            const std::uint32_t pixel = surface.pixels.at(index);
            picture += pixel == 0xFF000000U ? '#' : pixel == 0xFFFFFFFFU ? '.' : '?';
        }
        picture += '\n';
    }
    return picture;
}

std::uint32_t pixelAt(const Surface& surface, int x, int y) {
    return surface.pixels.at(static_cast<std::size_t>(y) *
                                 static_cast<std::size_t>(surface.deviceWidth) +
                             static_cast<std::size_t>(x));
}

enum class Kind {
    surface,
    box,
    blendedBox,
    frame,
    horizontalRule,
    verticalRule,
    line,
    circle,
};
constexpr Kind kinds[] = {Kind::surface,        Kind::box,          Kind::blendedBox, Kind::frame,
                          Kind::horizontalRule, Kind::verticalRule, Kind::line,       Kind::circle};
constexpr std::string_view kindNames[] = {
    "fillSurface",        "fillBox",          "blendBox", "drawFrame",
    "drawHorizontalRule", "drawVerticalRule", "drawLine", "fillCircle"};

// A call of a procedure with as many of a, b, c and d as it takes.
struct Mark {
    Kind kind;
    int a;
    int b;
    int c;
    int d;
    Colour colour;
};

std::ostream& operator<<(std::ostream& stream, const Mark& mark) {
    return stream << kindNames[static_cast<std::size_t>(mark.kind)] << "(" << mark.a << ", "
                  << mark.b << ", " << mark.c << ", " << mark.d << ", colour " << mark.colour
                  << ")";
}

void paint(Surface& surface, const Mark& m) {
    switch (m.kind) {
        case Kind::surface:
            return fillSurface(surface, m.colour);
        case Kind::box:
            return fillBox(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::blendedBox:
            return blendBox(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::frame:
            return drawFrame(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::horizontalRule:
            return drawHorizontalRule(surface, m.a, m.b, m.c, m.colour);
        case Kind::verticalRule:
            return drawVerticalRule(surface, m.a, m.b, m.c, m.colour);
        case Kind::line:
            return drawLine(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::circle:
            return fillCircle(surface, m.a, m.b, m.c, m.colour);
    }
}

void paintSlowly(Surface& surface, const Mark& m) {
    namespace slow = reference_painter;
    switch (m.kind) {
        case Kind::surface:
            return slow::fillSurface(surface, m.colour);
        case Kind::box:
            return slow::fillBox(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::blendedBox:
            return slow::blendBox(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::frame:
            return slow::drawFrame(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::horizontalRule:
            return slow::drawHorizontalRule(surface, m.a, m.b, m.c, m.colour);
        case Kind::verticalRule:
            return slow::drawVerticalRule(surface, m.a, m.b, m.c, m.colour);
        case Kind::line:
            return slow::drawLine(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::circle:
            return slow::fillCircle(surface, m.a, m.b, m.c, m.colour);
    }
}

// Sizes.

TEST(Raster, AResizedSurfaceIsWhite) {
    Surface surface = surfaceOf(4, 2);
    fillSurface(surface, black);
    EXPECT_EQ(pictureOf(surface), "####\n####\n");
    resizeSurface(surface, 3, 1, 1);
    EXPECT_EQ(pictureOf(surface), "...\n");
}

TEST(Raster, SizesAndRatiosOutsideTheirRangesAreCut) {
    struct Case {
        const char* name;
        int width, height;
        double pixelRatio;
        int expectedWidth, expectedHeight;
        double expectedRatio;
        int deviceWidth, deviceHeight;
    };
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    const Case cases[] = {
        {"plain", 5, 3, 1.0, 5, 3, 1.0, 5, 3},
        {"halves are rounded upward", 5, 3, 1.5, 5, 3, 1.5, 8, 5},
        {"no width", 0, 3, 2.0, 0, 3, 2.0, 0, 6},
        {"negative width", -1, 3, 1.0, 0, 3, 1.0, 0, 3},
        {"smallest width and height", smallest, smallest, 1.0, 0, 0, 1.0, 0, 0},
        {"small ratio", 5, 3, 0.5, 5, 3, 1.0, 5, 3},
        {"negative ratio", 5, 3, -2.0, 5, 3, 1.0, 5, 3},
        {"infinite ratio", 5, 3, infinity, 5, 3, 1.0, 5, 3},
        {"ratio that is no number", 5, 3, notANumber, 5, 3, 1.0, 5, 3},
        {"large ratio", 2, 1, 65.0, 2, 1, 64.0, 128, 64},
        {"largest ratio", 2, 1, std::numeric_limits<double>::max(), 2, 1, 64.0, 128, 64},
        {"widest", 32767, 1, 1.0, 32767, 1, 1.0, 32767, 1},
        {"too wide", 32768, 1, 1.0, 32768, 1, 1.0, 32767, 1},
        {"too high in device pixels", 1, 20000, 3.0, 1, 20000, 3.0, 3, 32767},
        {"largest width of an empty image", largest, 0, 64.0, largest, 0, 64.0, 32767, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Surface surface = surfaceOf(c.width, c.height, c.pixelRatio);
        EXPECT_EQ(surface.width, c.expectedWidth);
        EXPECT_EQ(surface.height, c.expectedHeight);
        EXPECT_EQ(surface.pixelRatio, c.expectedRatio);
        EXPECT_EQ(surface.deviceWidth, c.deviceWidth);
        EXPECT_EQ(surface.deviceHeight, c.deviceHeight);
        EXPECT_EQ(surface.pixels.size(), static_cast<std::size_t>(c.deviceWidth) *
                                             static_cast<std::size_t>(c.deviceHeight));
        EXPECT_TRUE(std::all_of(surface.pixels.begin(), surface.pixels.end(),
                                [](std::uint32_t pixel) { return pixel == 0xFFFFFFFFU; }));
    }
}

TEST(Raster, PixelsHoldRedGreenAndBlueFromTheTopDown) {
    Surface surface = surfaceOf(1, 1);
    fillSurface(surface, rgb(0x12, 0x34, 0x56));
    EXPECT_EQ(pixelAt(surface, 0, 0), 0xFF123456U);
}

// Pictures. Expected rows are those of the whole surface, after a first line break.

struct Picture {
    const char* name;
    int width, height;
    double pixelRatio;
    Mark mark;
    const char* expected;
};

void PrintTo(const Picture& picture, std::ostream* stream) {
    *stream << picture.name << ": " << picture.mark;
}

class RasterPicture : public testing::TestWithParam<Picture> {};

TEST_P(RasterPicture, IsAsDrawnHere) {
    const Picture& picture = GetParam();
    Surface surface = surfaceOf(picture.width, picture.height, picture.pixelRatio);
    paint(surface, picture.mark);
    EXPECT_EQ(pictureOf(surface), picture.expected + 1);

    Surface slow = surfaceOf(picture.width, picture.height, picture.pixelRatio);
    paintSlowly(slow, picture.mark);
    EXPECT_EQ(pictureOf(slow), picture.expected + 1) << "in the reference painter";
}

std::string nameOf(const testing::TestParamInfo<Picture>& info) {
    return info.param.name;
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

TEST(Raster, ABlendedBoxHalvesColourAndOldPixel) {
    struct Case {
        const char* name;
        Colour old;
        Colour colour;
        std::uint32_t expected;
    };
    const Case cases[] = {
        {"black over black", black, black, 0xFF000000U},
        {"black over white", white, black, 0xFF7F7F7FU},
        {"white over black", black, white, 0xFF808080U},
        {"white over white stays white", white, white, 0xFFFFFFFFU},
        {"orange over black", black, rgb(200, 100, 1), 0xFF643201U},
        {"orange over white", white, rgb(200, 100, 1), 0xFFE3B180U},
        {"orange over grey blue", rgb(11, 22, 33), rgb(200, 100, 1), 0xFF693D11U},
        {"odd channels do not spill into their neighbours", rgb(1, 1, 1), rgb(0, 0, 0),
         0xFF000000U},
        {"each channel alone", rgb(255, 0, 254), rgb(0, 255, 2), 0xFF7F8080U},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        // 21 columns are two blocks and five single pixels.
        Surface surface = surfaceOf(23, 3);
        fillSurface(surface, c.old);
        const std::uint32_t old = pixelAt(surface, 0, 0);
        blendBox(surface, 1, 1, 21, 1, c.colour);
        for (int y = 0; y < 3; ++y) {
            for (int x = 0; x < 23; ++x) {
                const bool covered = y == 1 && x >= 1 && x < 22;
                EXPECT_EQ(pixelAt(surface, x, y), covered ? c.expected : old) << x << ", " << y;
            }
        }
    }
}

TEST(Raster, ABlendedBoxCoversTheSamePixelsAsABox) {
    for (const double ratio : ratios) {
        SCOPED_TRACE(ratio);
        for (int width = -1; width < 12; ++width) {
            Surface opaque = surfaceOf(8, 6, ratio);
            Surface half = opaque;
            fillBox(opaque, -2 + width / 2, 1, width, 3, black);
            blendBox(half, -2 + width / 2, 1, width, 3, black);
            std::string expected = pictureOf(opaque);
            std::replace(expected.begin(), expected.end(), '#', '?');
            EXPECT_EQ(pictureOf(half), expected);
        }
    }
}

// How often the pixels of a row of boxes are covered, by painting each on its own.
std::vector<int> coverage(double ratio, int boxWidth, int boxHeight) {
    Surface surface = surfaceOf(13, 7, ratio);
    std::vector<int> counts(surface.pixels.size());
    for (int y = -2 * boxHeight; y < 7; y += boxHeight) {
        for (int x = -2 * boxWidth; x < 13; x += boxWidth) {
            fillSurface(surface, white);
            fillBox(surface, x, y, boxWidth, boxHeight, black);
            for (std::size_t i = 0; i < counts.size(); ++i) {
                if (surface.pixels[i] == 0xFF000000U) ++counts[i];
            }
        }
    }
    return counts;
}

TEST(Raster, NeighboursNeitherOverlapNorLeaveAGap) {
    for (const double ratio : ratios) {
        SCOPED_TRACE(ratio);
        for (const int size : {1, 2, 3, 5}) {
            const std::vector<int> counts = coverage(ratio, size, size);
            EXPECT_EQ(std::count(counts.begin(), counts.end(), 1),
                      static_cast<std::ptrdiff_t>(counts.size()));
        }
    }
}

TEST(Raster, RulesAreEquallyThickWhereverTheyStand) {
    for (const double ratio : ratios) {
        SCOPED_TRACE(ratio);
        const auto thickness = static_cast<std::ptrdiff_t>(std::floor(ratio + 0.5));
        for (int position = 0; position < 20; ++position) {
            Surface surface = surfaceOf(24, 24, ratio);
            const std::ptrdiff_t deviceLength = surface.deviceWidth;
            drawHorizontalRule(surface, 0, position, 24, black);
            EXPECT_EQ(std::count(surface.pixels.begin(), surface.pixels.end(), 0xFF000000U),
                      thickness * deviceLength);
            fillSurface(surface, white);
            drawVerticalRule(surface, position, 0, 24, black);
            EXPECT_EQ(std::count(surface.pixels.begin(), surface.pixels.end(), 0xFF000000U),
                      thickness * deviceLength);
        }
    }
}

// The covered rows and columns without the white around them.
std::string shapeOf(const Surface& surface) {
    std::string shape;
    int left = surface.deviceWidth;
    int right = 0;
    for (int y = 0; y < surface.deviceHeight; ++y) {
        for (int x = 0; x < surface.deviceWidth; ++x) {
            if (pixelAt(surface, x, y) == 0xFF000000U) {
                left = std::min(left, x);
                right = std::max(right, x + 1);
            }
        }
    }
    for (int y = 0; y < surface.deviceHeight; ++y) {
        std::string row;
        for (int x = left; x < right; ++x) {
            row += pixelAt(surface, x, y) == 0xFF000000U ? '#' : '.';
        }
        if (row.find('#') != std::string::npos) shape += row + '\n';
    }
    return shape;
}

TEST(Raster, ABoxIsCopiedFromAnotherSurface) {
    Surface from = surfaceOf(6, 4);
    fillSurface(from, black);
    Surface to = surfaceOf(6, 4);
    copyBox(to, from, {4, -3, 99, 2});
    copyBox(to, from, {1, 3, 2, 4});
    copyBox(to, from, {3, 2, 3, 4});
    EXPECT_EQ(pictureOf(to), "....##\n....##\n......\n.#....\n");
}

TEST(Raster, CirclesOfOneRadiusHaveAtMostFourShapes) {
    for (const double ratio : ratios) {
        SCOPED_TRACE(ratio);
        for (int radius = 0; radius < 4; ++radius) {
            std::set<std::string> shapes;
            for (int y = 5; y < 15; ++y) {
                for (int x = 5; x < 15; ++x) {
                    Surface surface = surfaceOf(20, 20, ratio);
                    fillCircle(surface, x, y, radius, black);
                    shapes.insert(shapeOf(surface));
                }
            }
            EXPECT_LE(shapes.size(), 4U) << "radius " << radius;
            // Nothing at all is one of them where a radius of 0 falls between the pixels.
            if (radius > 0) {
                EXPECT_EQ(shapes.count(""), 0U) << "radius " << radius;
            }
        }
    }
}

TEST(Raster, LinesAreTheSameFromBothEnds) {
    std::mt19937 random(7);
    for (const double ratio : ratios) {
        for (int i = 0; i < 300; ++i) {
            const auto coordinate = [&random] { return static_cast<int>(random() % 40) - 10; };
            const int x1 = coordinate(), y1 = coordinate(), x2 = coordinate(), y2 = coordinate();
            Surface there = surfaceOf(20, 20, ratio);
            Surface back = there;
            drawLine(there, x1, y1, x2, y2, black);
            drawLine(back, x2, y2, x1, y1, black);
            ASSERT_EQ(pictureOf(there), pictureOf(back))
                << x1 << ", " << y1 << " to " << x2 << ", " << y2 << " at " << ratio;
        }
    }
}

// A part of a large picture must be what a small surface at that place shows.
TEST(Raster, CutLinesCoverThePixelsOfUncutOnes) {
    std::mt19937 random(11);
    constexpr int offset = 40;
    for (const double ratio : {1.0, 2.0, 3.0}) {  // whole ratios: shifting keeps all roundings
        const auto s = static_cast<int>(ratio);
        for (int i = 0; i < 200; ++i) {
            const auto coordinate = [&random] { return static_cast<int>(random() % 90); };
            const int x1 = coordinate(), y1 = coordinate(), x2 = coordinate(), y2 = coordinate();
            Surface whole = surfaceOf(95, 95, ratio);
            Surface part = surfaceOf(12, 12, ratio);
            drawLine(whole, x1, y1, x2, y2, black);
            drawLine(part, x1 - offset, y1 - offset, x2 - offset, y2 - offset, black);
            for (int y = 0; y < part.deviceHeight; ++y) {
                for (int x = 0; x < part.deviceWidth; ++x) {
                    ASSERT_EQ(pixelAt(part, x, y), pixelAt(whole, x + offset * s, y + offset * s))
                        << x1 << ", " << y1 << " to " << x2 << ", " << y2 << " at " << ratio;
                }
            }
        }
    }
}

// Billions of steps each, if anything outside the surface were walked.
TEST(Raster, ExtremeMarksCostNoMoreThanTheSurface) {
    Surface surface = surfaceOf(20, 10, 1.25);
    for (int i = 0; i < 2000; ++i) {
        drawLine(surface, smallest, smallest + i, largest, largest - i, black);
        drawLine(surface, i, smallest, -i, largest, black);
        fillCircle(surface, i, largest, largest - i, black);
        fillCircle(surface, 0, 0, largest, white);
        drawFrame(surface, -i, -i, largest, largest, black);
    }
    EXPECT_EQ(pixelAt(surface, 0, 0), 0xFFFFFFFFU);
}

// The squares of these circles differ by less than a double can tell: the half width that doubles
// give for the outermost row is 0 instead of 33, 1287 instead of 1288, and 306 instead of 304.
TEST(Raster, TheOutermostRowsOfHugeCirclesAreExact) {
    struct Case {
        const char* name;
        double pixelRatio;
        int centreY;
        int radius;
    };
    const Case cases[] = {
        {"doubles say nothing", 4.0 / 3, -2'147'183'647, 2'147'183'647},
        {"doubles say less", 1.2345678, -2'147'194'347, 2'147'194'348},
        {"doubles say more", 1.2345678, -2'147'195'076, 2'147'195'077},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Surface fast = surfaceOf(1200, 6, c.pixelRatio);
        Surface slow = fast;
        fillCircle(fast, 600, c.centreY, c.radius, black);
        reference_painter::fillCircle(slow, 600, c.centreY, c.radius, black);
        EXPECT_TRUE(fast.pixels == slow.pixels);
        // The row in question begins and ends within the surface.
        bool partlyCovered = false;
        for (int y = 0; y < slow.deviceHeight; ++y) {
            partlyCovered =
                partlyCovered || (pixelAt(slow, 0, y) == 0xFFFFFFFFU &&
                                  pixelAt(slow, slow.deviceWidth / 2, y) == 0xFF000000U);
        }
        EXPECT_TRUE(partlyCovered);
    }
}

// Random marks against the reference painter.

class RandomMarks {
  public:
    explicit RandomMarks(unsigned seed) : random(seed) {}

    int between(int low, int high) {
        const auto span = static_cast<std::uint64_t>(std::int64_t{high} - low + 1);
        return static_cast<int>(low + static_cast<std::int64_t>(random() % span));
    }

    int coordinate(int size) {
        switch (nearby ? -1 : between(0, 8)) {
            case 0:
                return between(-100, 100);
            case 1:
                return between(-100'000, 100'000);
            case 2:
                return between(smallest, largest);
            case 3:
                return between(smallest, smallest + 2);
            case 4:
                return between(largest - 2, largest);
            default:
                return between(-2, size + 1);
        }
    }

    int length(int size) {
        switch (nearby ? -1 : between(0, 6)) {
            case 0:
                return between(-100, 100);
            case 1:
                return between(0, largest);
            case 2:
                return between(largest - 2, largest);
            case 3:
                return between(smallest, 0);
            default:
                return between(0, size + 2);
        }
    }

    Mark mark(const Surface& surface) {
        const Kind kind = kinds[static_cast<std::size_t>(
            between(between(0, 7) == 0 ? 0 : 1, static_cast<int>(std::size(kinds)) - 1))];
        const Colour colour = between(smallest, largest);
        nearby = between(0, 2) > 0;
        const int x = coordinate(surface.width);
        const int y = coordinate(surface.height);
        const bool towardsSurface = between(0, 1) == 0;
        if (kind == Kind::line) {
            if (!towardsSurface) {
                return {kind, x, y, coordinate(surface.width), coordinate(surface.height), colour};
            }
            // Through a point near the surface, however far away the ends are.
            return {kind,
                    x,
                    y,
                    cut(2.0 * between(-2, surface.width + 2) - x),
                    cut(2.0 * between(-2, surface.height + 2) - y),
                    colour};
        }
        if (kind == Kind::circle) {
            const int radius = length(surface.width);
            if (!towardsSurface) return {kind, x, y, radius, 0, colour};
            // Its border passes the surface, at its outermost points in half of the cases.
            const double angle = between(0, 1) == 0 ? between(0, 3) * 90.0 : between(0, 359);
            const double radians = angle * 3.14159265358979 / 180;
            return {kind,
                    cut(between(-2, surface.width + 2) + radius * std::cos(radians)),
                    cut(between(-2, surface.height + 2) + radius * std::sin(radians)),
                    radius,
                    0,
                    colour};
        }
        return {kind, x, y, length(surface.width), length(surface.height), colour};
    }

  private:
    static int cut(double value) {
        return static_cast<int>(std::clamp<double>(std::round(value), smallest, largest));
    }

    std::mt19937_64 random;
    bool nearby = false;  // so that enough marks are seen: two thirds are not far from the surface
};

struct RandomRun {
    double pixelRatio;
    int largestSide;  // logical; the reference painter is slow
    int marks;
};

void PrintTo(const RandomRun& run, std::ostream* stream) {
    *stream << run.pixelRatio;
}

class RasterRandomMarks : public testing::TestWithParam<RandomRun> {};

TEST_P(RasterRandomMarks, ArePaintedAsByTheReferencePainter) {
    const RandomRun& run = GetParam();
    RandomMarks random(20'240'229);
    const std::uint32_t guard = 0xDEADBEEFU;
    int visible = 0;
    for (int i = 0; i < run.marks; ++i) {
        Surface fast = surfaceOf(random.between(0, run.largestSide),
                                 random.between(1, run.largestSide), run.pixelRatio);
        for (std::uint32_t& pixel : fast.pixels) {
            pixel = 0xFF000000U | static_cast<std::uint32_t>(random.between(0, 0xFFFFFF));
        }
        Surface slow = fast;
        const std::vector<std::uint32_t> before = fast.pixels;
        const std::size_t size = before.size();
        fast.pixels.resize(size + 64, guard);

        const Mark mark = random.mark(fast);
        paint(fast, mark);
        paintSlowly(slow, mark);
        if (slow.pixels != before) ++visible;

        const auto end = fast.pixels.begin() + static_cast<std::ptrdiff_t>(size);
        ASSERT_EQ(std::count(end, fast.pixels.end(), guard), 64)
            << "mark " << i << " reaches below the surface: " << mark;
        const auto wrong =
            std::mismatch(slow.pixels.begin(), slow.pixels.end(), fast.pixels.begin());
        const auto index = static_cast<int>(wrong.first - slow.pixels.begin());
        ASSERT_EQ(wrong.first, slow.pixels.end())
            << "mark " << i << ": " << mark << " on " << fast.width << " x " << fast.height
            << " at " << run.pixelRatio << ", first wrong device pixel " << index % fast.deviceWidth
            << ", " << index / fast.deviceWidth;
    }
    EXPECT_GT(visible, run.marks / 12) << "most of these marks test nothing";
}

INSTANTIATE_TEST_SUITE_P(AtRatio, RasterRandomMarks,
                         testing::Values(RandomRun{1, 24, 10'000}, RandomRun{1.1, 20, 5000},
                                         RandomRun{1.25, 20, 5000}, RandomRun{1.5, 16, 5000},
                                         RandomRun{1.75, 16, 5000}, RandomRun{2, 12, 5000},
                                         RandomRun{3, 10, 5000}, RandomRun{7.3, 3, 1000},
                                         RandomRun{64, 1, 300}));

}  // namespace
}  // namespace services
